#pragma once

#include "KLPJLHandler.h"

#include <memory>

class KLPrintJob;

/// The action that gives the PJL header of a print job its job settings, made for
/// KLPJLHandler::enumeratePJLFromPrintJobUsingBlock().
///
/// Called for a line, it decides by that line and the job's options alone, and edits it through
/// the handler. Markers are lines that begin like this, letter case included:
/// - DSSC "ACCESSCODE=": carries the department code; removed when the job has none.
/// - DSSC "COLLATE=": gets "FORCE_DEVICECOLOR=" before it. That is 1 exactly when the job names by
///   a file URL the standard sRGB profile, the colour matching is not the vendor's and the print
///   settings' colour matching mode is not the number 0; 0 otherwise, also when the URL or the
///   profile is not usable. The file is opened only when it decides, and one of more than 8 MiB is
///   not the standard profile.
/// - DSSC "DOCUMENTTYPE=ADVANCED": gets the advanced colour settings behind it.
/// - DSSC "PRINTMODE=": gets the user's login and domain, then the private print code or the
///   document box.
/// - "@PJL JOB NAME": gets the copies behind it.
/// All other lines pass unchanged. Any subset of the markers in any order and number will do.
///
/// Every value goes through headerText(). An absent user name or box value makes a line with an
/// empty value. Nothing is logged, and no value makes it fail.
///
/// The action shares the print job and holds nothing else; the options are asked for at each call.
/// @param printJob  not null; its printOptions() are set before the first call
KLPJLHandler::Action handlePJL(std::shared_ptr<const KLPrintJob> printJob);
