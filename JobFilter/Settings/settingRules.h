#pragma once

#include "PPD.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

/// A rule for the values of a setting.
struct SettingRule {
    std::string key;
    std::string name; ///< what the user knows the setting by: the option that feeds it, or the key
    PPD::TypedLimits limits;
    bool emptyMayPass;
};

/// All rules of a PPD, the stated ones first. Of a key there may be several, and each counts.
std::vector<SettingRule> settingRules(const PPD &ppd);

/// Whether a value keeps to the rule.
bool keepsTo(const SettingRule &rule, std::string_view value);

/// Why the job must not be printed: a value that breaks a rule, whoever said it, or a password that
/// came encrypted (job-password-encryption) and so cannot be told to the printer.
/// @return a sentence for the user that names the option, or the key where no option feeds it, and
///         the rule, and never the value; nullopt when all is well, and for a rule that is no rule
std::optional<std::string> objectionToSettings(const KLPrintOptions &options);

/// Whether the line, a "KLSettingRule", says a rule.
bool isSettingRule(const PPD::Attribute &line);
