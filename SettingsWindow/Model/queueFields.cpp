#include "queueFields.h"

#include "headerMarkers.h"
#include "pinnedUser.h"
#include "sentences.h"

#include <algorithm>
#include <map>
#include <optional>
#include <sstream>

namespace Model {
namespace {

/// The group that is for the administrator alone.
constexpr std::string_view kInstallableOptions = "InstallableOptions";

/// Behind all that have a place of their own.
constexpr int kLast = 10000;

/// A field and where it stands on its page.
struct PlacedField {
    QueueField field;
    std::string group; ///< of the PPD, by its name
    bool isPlaced;     ///< its page is known
    int rank;
};

//
// What a PPD is like
//

bool hasMarker(std::string_view code, std::string_view marker)
{
    while (!code.empty()) {
        const std::size_t end = code.find('\n');
        if (isMarkerLine(code.substr(0, end), marker))
            return true;
        code.remove_prefix(end == std::string_view::npos ? code.size() : end + 1);
    }
    return false;
}

std::string_view markerFor(Needs needs)
{
    switch (needs) {
    case Needs::AccessCodeLine:
        return kAccessCodeMarker;
    case Needs::FreeUser:
    case Needs::PrintModeLine:
        return kPrintModeMarker;
    case Needs::CollateLine:
        return kCollateMarker;
    case Needs::AdvancedColorLine:
        return kAdvancedColorMarker;
    default:
        return {};
    }
}

bool hasToolkit(const PPD &ppd)
{
    return !ppd.attribute("APDialogExtension").value_or("").empty();
}

bool hasMarkerLine(const PPD &ppd, std::string_view marker)
{
    bool always = false;
    return !choicesWithMarker(ppd, marker, &always).empty() || always;
}

/// Whether the setting can have an effect on the queue at all.
bool canUse(const PPD &ppd, const SettingKey &setting)
{
    const std::string_view marker = markerFor(setting.needs);
    if (!marker.empty() && !hasMarkerLine(ppd, marker))
        return false;
    switch (setting.needs) {
    case Needs::OwnOption:
        return ppd.hasOption(std::string(setting.key));
    case Needs::FreeUser:
        return !pinsUser(ppd);
    case Needs::Toolkit:
        return hasToolkit(ppd);
    case Needs::ToolkitForPDF:
        return hasToolkit(ppd) && takesPDF(ppd);
    case Needs::ToolkitForTrays:
        return hasToolkit(ppd) && !takesPDF(ppd);
    default:
        return true;
    }
}

/// The key that an option of the PPD is, or the first one that it feeds; empty when it is none.
std::string keyOf(const PPD &ppd, const std::string &keyword)
{
    if (findSettingKey(keyword) != nullptr)
        return keyword;
    for (const PPD::Attribute &line : ppd.attributes("KLSettingSource")) {
        if (line.specifier == keyword)
            return line.value;
    }
    return {};
}

/// Whether the option makes that choice by being set (KLChoiceSource).
bool choosesByItself(const PPD &ppd, const std::string &keyword, const Condition &condition)
{
    const std::string choice = std::string(condition.key) + ' ' + std::string(condition.value);
    return std::ranges::any_of(ppd.attributes("KLChoiceSource"), [&](const PPD::Attribute &line) {
        return line.specifier == keyword && line.value == choice;
    });
}

//
// What is typed
//

std::vector<SettingRule> rulesFor(const PPD &ppd, const std::string &key)
{
    std::vector<SettingRule> rules = settingRules(ppd);
    std::erase_if(rules, [&key](const SettingRule &rule) { return rule.key != key; });
    return rules;
}

/// The kind of what is typed, by the rules and, where they leave it open, by the key.
Kind typedKind(const std::vector<SettingRule> &rules, Kind otherwise)
{
    for (const SettingRule &rule : rules) {
        if (rule.limits.kind == PPD::TypedLimits::Kind::Digits)
            return Kind::Digits;
        if (rule.limits.kind == PPD::TypedLimits::Kind::Number && otherwise != Kind::Length)
            return Kind::Number;
    }
    return otherwise;
}

std::optional<Limits> limitsOf(const std::vector<SettingRule> &rules)
{
    if (rules.empty())
        return std::nullopt;
    Limits limits = {rules.front().limits.from, rules.front().limits.to};
    for (const SettingRule &rule : rules) {
        limits.from = std::max(limits.from, rule.limits.from);
        limits.to = std::min(limits.to, rule.limits.to);
    }
    return limits;
}

/// What may be typed for an option; nothing where it would be several values at once, but for the
/// size of a page.
void addTyping(QueueField &made, const PPD &ppd, const PPD::ShownOption &option)
{
    const bool isPageSize = option.keyword == "PageSize";
    if (!option.typing || (!option.typing->isAlone && !isPageSize))
        return;
    made.rules = rulesFor(ppd, made.key);
    if (const auto limits = ppd.typedLimits(option.keyword);
        limits && made.rules.empty() && !isPageSize)
        made.rules.push_back({made.key, option.keyword, *limits, true});
    Kind kind = option.typing->isLength ? Kind::Length : Kind::Text;
    if (made.setting != nullptr && made.setting->kind != Kind::Choice)
        kind = made.setting->kind;
    made.field.typed = typedKind(made.rules, kind);
    made.field.typedLabel = asTheyAre(isPageSize ? option.words : option.typing->words);
    made.field.limits = limitsOf(made.rules);
}

//
// The fields of the PPD
//

std::vector<Condition> conditionsOf(const PPD &ppd, const QueueField &made)
{
    std::vector<Condition> conditions;
    if (made.setting != nullptr)
        conditions.assign(made.setting->conditions.begin(), made.setting->conditions.end());
    std::erase_if(conditions, [&](const Condition &condition) {
        return choosesByItself(ppd, made.option, condition);
    });
    return conditions;
}

bool isYesOrNo(const PPD::ShownOption &option)
{
    const auto has = [&option](std::string_view choice) {
        return std::ranges::find(option.choices, choice, &PPD::ShownChoice::name) !=
               option.choices.end();
    };
    return option.isFlag && option.choices.size() == 2 && has("True") && has("False");
}

/// libcups puts options without a group into one that no PPD has words for.
Words wordsOfGroup(const PPD::ShownOption &option)
{
    const bool isOfLibcups = option.group == kGeneral && option.groupWords == kGeneral;
    return isOfLibcups ? Words{kGeneral} : asTheyAre(option.groupWords);
}

QueueField fieldOf(const PPD &ppd, const PPD::ShownOption &option)
{
    const std::string key = keyOf(ppd, option.keyword);
    const SettingKey *const setting = findSettingKey(key);
    const bool isSecret =
        setting != nullptr ? setting->isSecret : option.typing && option.typing->isHidden;
    QueueField made = {.field = {.id = option.keyword,
                                 .label = asTheyAre(option.words),
                                 .group = wordsOfGroup(option),
                                 .kind = isYesOrNo(option) ? Kind::Flag : Kind::Choice,
                                 .isSecret = isSecret},
                       .page = setting != nullptr ? setting->page : Page::Printer,
                       .isOption = true,
                       .option = option.keyword,
                       .key = key,
                       .setting = setting};
    for (const PPD::ShownChoice &choice : option.choices)
        made.field.choices.push_back({.name = choice.name, .label = asTheyAre(choice.words)});
    made.conditions = conditionsOf(ppd, made);
    made.marker = setting != nullptr ? markerFor(setting->needs) : std::string_view();
    addTyping(made, ppd, option);
    return made;
}

int rankOf(const SettingKey &setting)
{
    return 2 * static_cast<int>(&setting - settingKeys().data());
}

/// An option that brings a marker into the header stands before the first setting that needs it.
const SettingKey *settingThatNeeds(const PPD &ppd, const std::string &keyword)
{
    for (const SettingKey &setting : settingKeys()) {
        bool always = false;
        const std::string_view marker = markerFor(setting.needs);
        if (marker.empty() || marker == kCollateMarker || marker == kPrintModeMarker)
            continue;
        for (const auto &[option, choice] : choicesWithMarker(ppd, marker, &always)) {
            if (option == keyword)
                return &setting;
        }
    }
    return nullptr;
}

PlacedField placed(const PPD &ppd, const PPD::ShownOption &option, int number)
{
    PlacedField place = {fieldOf(ppd, option), option.group, true, kLast + number};
    if (place.field.setting != nullptr) {
        if (place.field.page != Page::Printer)
            place.rank = rankOf(*place.field.setting);
    } else if (const SettingKey *setting = settingThatNeeds(ppd, option.keyword)) {
        place.field.page = setting->page;
        place.rank = rankOf(*setting) - 1;
    } else {
        place.isPlaced = false;
    }
    return place;
}

/// An option that nobody knows stands with the others of its group where they are all of one page.
void placeByGroup(std::vector<PlacedField> &fields)
{
    std::map<std::string, std::optional<Page>> pages;
    for (const PlacedField &field : fields) {
        if (!field.isPlaced)
            continue;
        const auto [entry, isNew] = pages.try_emplace(field.group, field.field.page);
        if (!isNew && entry->second != field.field.page)
            entry->second.reset();
    }
    for (PlacedField &field : fields) {
        if (!field.isPlaced && pages[field.group])
            field.field.page = *pages[field.group];
    }
}

std::vector<PlacedField> fieldsOfOptions(const PPD &ppd, const std::string &language)
{
    std::vector<PlacedField> fields;
    int number = 0;
    for (const PPD::ShownOption &option : ppd.shownOptions(language)) {
        PlacedField field = placed(ppd, option, ++number);
        const SettingKey *const setting = field.field.setting;
        const bool isOurs = setting != nullptr;
        if (isOurs ? canUse(ppd, *setting) : option.group != kInstallableOptions)
            fields.push_back(std::move(field));
    }
    placeByGroup(fields);
    return fields;
}

//
// The fields of keys
//

std::vector<Choice> choicesOf(const SettingKey &setting, const std::vector<PlacedField> &fields)
{
    std::vector<Choice> choices;
    for (const KeyChoice &choice : setting.choices)
        choices.push_back({.name = std::string(choice.value), .label = {choice.label}});
    for (const PlacedField &field : fields) {
        if (setting.choicesOf.empty() || field.field.option != setting.choicesOf)
            continue;
        for (const Choice &choice : field.field.field.choices) {
            if (std::ranges::find(choices, choice.name, &Choice::name) == choices.end())
                choices.push_back(choice);
        }
    }
    return choices;
}

QueueField fieldOf(const PPD &ppd, const SettingKey &setting,
                   const std::vector<PlacedField> &fields)
{
    QueueField made = {.field = {.id = std::string(setting.key),
                                 .label = {setting.label},
                                 .kind = setting.kind,
                                 .choices = choicesOf(setting, fields),
                                 .isSecret = setting.isSecret},
                       .page = setting.page,
                       .isOption = false,
                       .option = std::string(setting.key) + (setting.isInteger ? "..n." : ""),
                       .key = std::string(setting.key),
                       .setting = &setting,
                       .conditions = {setting.conditions.begin(), setting.conditions.end()},
                       .marker = markerFor(setting.needs),
                       .rules = rulesFor(ppd, std::string(setting.key))};
    if (setting.isOpen)
        made.field.typed = typedKind(made.rules, Kind::Text);
    else if (setting.kind != Kind::Choice && setting.kind != Kind::Flag)
        made.field.kind = typedKind(made.rules, setting.kind);
    made.field.limits = limitsOf(made.rules);
    return made;
}

/// Whether a field of the PPD is, or feeds, the key.
bool isThere(std::string_view key, const std::vector<PlacedField> &fields)
{
    return std::ranges::any_of(fields,
                               [key](const PlacedField &field) { return field.field.key == key; });
}

void addFieldsOfKeys(std::vector<PlacedField> &fields, const PPD &ppd)
{
    const std::vector<PlacedField> options = fields;
    for (const SettingKey &setting : settingKeys()) {
        if (setting.label.empty() || setting.needs == Needs::OwnOption ||
            isThere(setting.key, options) || !canUse(ppd, setting))
            continue;
        QueueField field = fieldOf(ppd, setting, options);
        if (setting.choicesOf.empty() || field.field.choices.size() > 1)
            fields.push_back({std::move(field), {}, true, rankOf(setting)});
    }
}

/// Without those that could only be used with what the queue does not have.
void leaveOutUseless(std::vector<PlacedField> &fields, bool isPDF)
{
    const std::vector<PlacedField> all = fields;
    std::erase_if(fields, [&](const PlacedField &field) {
        return std::ranges::any_of(field.field.conditions, [&](const Condition &condition) {
            const SettingKey *const other = findSettingKey(condition.key);
            const bool hasValue =
                other != nullptr && (condition.value.empty() ? !other->standard.empty()
                                                             : other->standard == condition.value);
            return (isPDF || !condition.inPDF) && !isThere(condition.key, all) &&
                   hasValue == condition.isNot;
        });
    });
}

} // namespace

Words QueueField::labelOf(std::string_view value) const
{
    const auto found = std::ranges::find(field.choices, value, &Choice::name);
    if (found != field.choices.end())
        return found->label;
    if (field.kind == Kind::Flag)
        return {value == "True" ? kYes : kNo};
    return {kAnother};
}

std::vector<QueueField> queueFields(const PPD &ppd, const std::string &language)
{
    std::vector<PlacedField> fields = fieldsOfOptions(ppd, language);
    addFieldsOfKeys(fields, ppd);
    leaveOutUseless(fields, takesPDF(ppd));
    std::ranges::stable_sort(fields, [](const PlacedField &left, const PlacedField &right) {
        return std::pair(left.field.page, left.rank) < std::pair(right.field.page, right.rank);
    });
    std::vector<QueueField> sorted;
    sorted.reserve(fields.size());
    for (PlacedField &field : fields)
        sorted.push_back(std::move(field.field));
    return sorted;
}

MarkedBy choicesWithMarker(const PPD &ppd, std::string_view marker, bool *always)
{
    *always = hasMarker(ppd.headerBegin().value_or(""), marker) ||
              hasMarker(ppd.headerEnd().value_or(""), marker);
    MarkedBy choices;
    for (const PPD::Option &option : ppd.options()) {
        for (const PPD::Choice &choice : option.choices) {
            if (option.jobControl && hasMarker(choice.code, marker))
                choices.emplace_back(option.keyword, choice.name);
        }
    }
    return choices;
}

bool takesPDF(const PPD &ppd)
{
    return std::ranges::any_of(ppd.filters(), [](const std::string &line) {
        return line.starts_with("application/vnd.cups-pdf") || line.starts_with("application/pdf");
    });
}

bool namesThisFilter(const PPD &ppd)
{
    return std::ranges::any_of(ppd.filters(), [](const std::string &line) {
        const std::string program = line.substr(line.find_last_of(" \t/") + 1);
        return program == "jobfilter" || program == "jobfilter-chain";
    });
}

} // namespace Model
