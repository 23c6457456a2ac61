#include "settingRules.h"

#include "KLPrintOptions.h"
#include "ObjectFormat.h"
#include "Text.h"
#include "settingSources.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <sstream>

namespace {

using Limits = PPD::TypedLimits;
using Kind = Limits::Kind;

//
// The rules of a PPD
//

/// The option that feeds the key, else the key.
std::string nameOf(const std::string &key, const PPD &ppd)
{
    for (const PPD::Attribute &line : ppd.attributes("KLSettingSource")) {
        if (line.value == key && ppd.hasOption(line.specifier))
            return line.specifier;
    }
    return key;
}

std::optional<Kind> kindNamed(const std::string &name)
{
    if (name == "Digits")
        return Kind::Digits;
    if (name == "Characters")
        return Kind::Characters;
    return std::nullopt;
}

/// The rule that a line "KLSettingRule" says, not yet named; nullopt when it says none.
std::optional<SettingRule> ruleOf(const PPD::Attribute &line)
{
    std::istringstream words(line.value);
    SettingRule rule = {};
    const auto kind = kindNamed(line.specifier);
    if (!kind || !(words >> rule.key >> rule.limits.from >> rule.limits.to))
        return std::nullopt;
    rule.limits.kind = *kind;
    return rule;
}

std::vector<SettingRule> statedRules(const PPD &ppd)
{
    std::vector<SettingRule> rules;
    for (const PPD::Attribute &line : ppd.attributes("KLSettingRule")) {
        if (auto rule = ruleOf(line)) {
            rule->name = nameOf(rule->key, ppd);
            rules.push_back(std::move(*rule));
        }
    }
    return rules;
}

std::vector<SettingRule> rulesOfTypedValues(const PPD &ppd)
{
    std::vector<SettingRule> rules;
    for (const PPD::Attribute &line : ppd.attributes("KLSettingSource")) {
        if (const auto limits = ppd.typedLimits(line.specifier))
            rules.push_back({line.value, line.specifier, *limits, true});
    }
    return rules;
}

//
// Keeping to one
//

std::size_t countOfCharacters(std::string_view text)
{
    return static_cast<std::size_t>(std::ranges::count_if(
        text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

bool isWithin(double number, const Limits &limits)
{
    return number >= limits.from && number <= limits.to;
}

bool isNumberWithin(std::string_view text, const Limits &limits)
{
    double number = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
    return end.ec == std::errc() && end.ptr == text.data() + text.size() &&
           isWithin(number, limits);
}

bool isWithin(std::string_view value, const Limits &limits)
{
    switch (limits.kind) {
    case Kind::Digits:
        return value.find_first_not_of("0123456789") == std::string_view::npos &&
               isWithin(static_cast<double>(value.size()), limits);
    case Kind::Characters:
        return isWithin(static_cast<double>(countOfCharacters(value)), limits);
    case Kind::Number:
        return isNumberWithin(value, limits);
    }
    return true;
}

std::string inWords(const Limits &limits)
{
    std::ostringstream words;
    words.imbue(std::locale::classic());
    if (limits.kind == Kind::Number)
        words << "be a number from " << limits.from << " to " << limits.to;
    else if (limits.from == limits.to)
        words << "have " << limits.from;
    else
        words << "have " << limits.from << " to " << limits.to;
    if (limits.kind == Kind::Digits)
        words << " digits and nothing else";
    else if (limits.kind == Kind::Characters)
        words << " characters";
    return words.str();
}

std::optional<std::string> objectionTo(const SettingRule &rule, const KLPrintOptions &options)
{
    const auto value = options.valueForKey(rule.key);
    if (!value || keepsTo(rule, Platform::description(*value)))
        return std::nullopt;
    return rule.name + " must " + inWords(rule.limits);
}

//
// Encrypted passwords
//

std::optional<std::string> objectionToEncryption(const KLPrintOptions &options)
{
    const auto password = options.valueForKeyWithDefault("job-password", "");
    const auto encryption = options.valueForKeyWithDefault("job-password-encryption", "none");
    if (!feeds(options.ppd(), "job-password") || password == KLValue("") ||
        encryption == KLValue("none"))
        return std::nullopt;
    return "job-password must not be encrypted (job-password-encryption), the printer could not be "
           "told it";
}

} // namespace

std::vector<SettingRule> settingRules(const PPD &ppd)
{
    std::vector<SettingRule> rules = statedRules(ppd);
    std::ranges::move(rulesOfTypedValues(ppd), std::back_inserter(rules));
    return rules;
}

bool keepsTo(const SettingRule &rule, std::string_view value)
{
    return (value.empty() && rule.emptyMayPass) || isWithin(value, rule.limits);
}

std::optional<std::string> objectionToSettings(const KLPrintOptions &options)
{
    if (auto objection = objectionToEncryption(options))
        return objection;
    for (const SettingRule &rule : settingRules(options.ppd())) {
        if (auto objection = objectionTo(rule, options))
            return objection;
    }
    return std::nullopt;
}

bool isSettingRule(const PPD::Attribute &line)
{
    return ruleOf(line).has_value();
}
