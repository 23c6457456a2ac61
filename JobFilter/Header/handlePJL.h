#pragma once

#include "KLPJLHandler.h"

#include <memory>

class KLPrintJob;

/// The action that gives the PJL header of a print job its job settings, made for
/// KLPJLHandler::enumeratePJLFromPrintJobUsingBlock().
///
/// Called for a line, it decides by that line and the job's options alone, and edits it through
/// the handler. Markers are lines that begin like this, letter case included; of the keys that they
/// ask for, values that are compared must be text in exactly this form, unless it says otherwise.
/// - DSSC "ACCESSCODE=": carries "com.kalmira.pde.print-mode-ovm.departmentCode"; removed when
///   there is none.
/// - DSSC "COLLATE=": gets "FORCE_DEVICECOLOR=" before it. That is 1 exactly when
///   "com.kalmira.pde.q5.color-profile" names by a file URL the standard sRGB profile,
///   "AP_ColorMatchingMode" is not "AP_VendorColorMatching" and
///   "com.apple.print.PrintSettings.PMColorMatchingMode" is not the number 0; 0 otherwise, also
///   when the URL or the profile is not usable. The file is opened only when it decides, and one of
///   more than 8 MiB is not the standard profile.
/// - DSSC "DOCUMENTTYPE=ADVANCED": gets the colour settings behind it, from keys that begin with
///   "com.kalmira.pde.advancedcolorsettings.". With "mode" "Standard", one line for each that is
///   there: "RGB PROFILE=" from "rgb-source", "CMYK PROFILE=" from "cmyk-source", "OUTPUT PROFILE="
///   from "cmyk-dest", "USE PROFILE=" from "device-color-only", "RENDERING INTENT=" from
///   "rendering-intent". With any other mode and with none, "EXTRADOCUMENTTYPE=" from
///   "customized-rgb-profile", "DEFAULT" when there is none.
/// - DSSC "PRINTMODE=": gets before it "USERLOGIN=" from "com.kalmira.username", and "DOMAINNAME="
///   from "com.kalmira.domainname" when there is one. Then,
///   with "PrintMode" "Private": behind it "PRIVPRINT=" from
///   "com.kalmira.pde.print-mode-ovm.privatePassword" when there is one, and no box;
///   else with "StoreToDocStore" "true", in any letter case: before it the document box, from keys
///   that begin with "com.kalmira.pde.docstore.": "BOX=1", "BOXNO=" from "boxNumber", "BOXNAME="
///   from "boxName", "BOXFOLDER=" from "boxFolder", and "BOXPASSWORD=" from "boxPassword", else
///   "BOXPASSWORDEX=" from "boxPasswordEx", else neither. With "PrintAsWell" "False" the line
///   itself becomes "PRINTMODE=BOX".
/// - "@PJL JOB NAME": gets "@PJL SET COPIES = " behind it, from "com.kalmira.copies", default "1".
/// All other lines pass unchanged. Any subset of the markers in any order and number will do.
///
/// Every value goes through headerText(), numbers in their text form. An absent user name or box
/// value makes a line with an empty value. Nothing is logged, and no value makes it fail.
///
/// The action shares the print job and holds nothing else; the options are asked for at each call.
/// @param printJob  not null; its printOptions() are set before the first call
KLPJLHandler::Action handlePJL(std::shared_ptr<const KLPrintJob> printJob);
