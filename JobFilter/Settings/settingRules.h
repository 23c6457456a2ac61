#pragma once

#include "PPD.h"

#include <optional>
#include <string>

class KLPrintOptions;

// How values must look that the printer would else not take, in lines of the PPD's own; one without
// such lines has no rules.
//
//   *KLSettingRule Digits: "KEY FROM TO"       only digits, at least FROM and at most TO of them
//   *KLSettingRule Characters: "KEY FROM TO"   so many characters (code points of UTF-8)
//
// Beside these the limits of what may be typed for an option (ParamCustom) are rules for the
// setting that the option feeds: libcups and lp(1) do not enforce them. An empty value keeps to
// those, it says that there is none.

/// Why the job must not be printed: a value that breaks a rule, whoever said it, or a password that
/// came encrypted (job-password-encryption) and so cannot be told to the printer.
/// @return a sentence for the user that names the option, or the key where no option feeds it, and
///         the rule, and never the value; nullopt when all is well, and for a rule that is no rule
std::optional<std::string> objectionToSettings(const KLPrintOptions &options);

/// Whether the line, a "KLSettingRule", says a rule.
bool isSettingRule(const PPD::Attribute &line);
