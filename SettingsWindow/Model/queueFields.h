#pragma once

#include "PPD.h"
#include "QueueSettings.h"
#include "SettingKeys.h"
#include "settingRules.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Model {

/// What stands in front of a value that was typed for a choice.
inline constexpr std::string_view kTyped = "Custom.";

/// A field with what it is made of.
struct QueueField {
    Field field; ///< as it is when everything is possible
    Page page;
    bool isOption;             ///< of the PPD, else a key of ours
    std::string option;        ///< the name of the job's option: the keyword, or the key
    std::string key;           ///< what its value is stored under; empty for no key of ours
    const SettingKey *setting; ///< that key; null when it is not known
    std::vector<Condition> conditions = {};
    std::string_view marker = {}; ///< of the header line without which it has no effect
    std::vector<SettingRule> rules = {};

    /// What a choice is called; what is typed is called "Another value".
    Words labelOf(std::string_view value) const;
};

/// An option and its choice that bring a line into the header.
using MarkedBy = std::vector<std::pair<std::string, std::string>>;

/// The fields of a PPD and of the keys that it has no field for, page by page.
std::vector<QueueField> queueFields(const PPD &ppd, const std::string &language);

/// The choices that put a line with that marker into the header.
/// @param always  becomes whether it is there whatever is chosen; not null
MarkedBy choicesWithMarker(const PPD &ppd, std::string_view marker, bool *always);

/// Whether the PPD is of a queue whose jobs come as PDF.
bool takesPDF(const PPD &ppd);

/// Whether the PPD names this filter, as "jobfilter" or "jobfilter-chain".
bool namesThisFilter(const PPD &ppd);

} // namespace Model
