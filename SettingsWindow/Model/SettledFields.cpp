#include "SettledFields.h"

#include "fieldValues.h"
#include "optionName.h"
#include "sentences.h"
#include "settingSources.h"

#include <algorithm>
#include <strings.h>
#include <utility>

namespace Model {
namespace {

/// More rounds than settings that depend on one another: what swings stops.
constexpr int kMostRounds = 10;

bool isSameName(const std::string &left, const std::string &right)
{
    return strcasecmp(left.c_str(), right.c_str()) == 0;
}

const std::string *find(const JobOptions &options, std::string_view name)
{
    const auto found = std::ranges::find(options, name, &JobOptions::value_type::first);
    return found != options.end() ? &found->second : nullptr;
}

/// The value of a key, whatever ending its name has.
const std::string *findKey(const JobOptions &options, std::string_view key)
{
    const auto found = std::ranges::find_if(
        options, [key](const auto &option) { return optionName(option.first).key == key; });
    return found != options.end() ? &found->second : nullptr;
}

} // namespace

SettledFields::SettledFields(PPD ppd, const std::string &language, JobOptions queueDefaults)
    : _ppd(std::move(ppd)),
      _queueDefaults(std::move(queueDefaults)),
      _fields(queueFields(_ppd, language)),
      _isPDF(takesPDF(_ppd))
{
    setAll({}, {});
}

//
// Looking up
//

std::optional<std::size_t> SettledFields::withId(std::string_view id) const
{
    for (std::size_t index = 0; index < _fields.size(); ++index)
        if (_fields[index].field.id == id)
            return index;
    return std::nullopt;
}

std::optional<std::size_t> SettledFields::ofOption(const std::string &option) const
{
    for (std::size_t index = 0; index < _fields.size(); ++index) {
        const QueueField &field = _fields[index];
        if (field.isOption ? isSameName(field.option, option) : field.key == optionName(option).key)
            return index;
    }
    return std::nullopt;
}

std::optional<std::size_t> SettledFields::ofKey(std::string_view key) const
{
    for (std::size_t index = 0; index < _fields.size(); ++index)
        if (_fields[index].key == key)
            return index;
    return std::nullopt;
}

const std::string &SettledFields::effective(std::size_t field) const
{
    if (const auto *forced = find(_forced, _fields[field].option))
        return *forced;
    const State &state = _states[field];
    return state.counts ? *state.set : state.standard;
}

std::string SettledFields::valueOfKey(std::string_view key) const
{
    for (std::size_t index = 0; index < _fields.size(); ++index) {
        const QueueField &field = _fields[index];
        if (field.key == key && (!field.isOption || field.option == key))
            return std::string(typedText(effective(index)));
    }
    if (const auto *fed = find(_fed, key))
        return *fed;
    if (const auto *foreign = findKey(_foreign, key))
        return *foreign;
    if (const auto *standard = findKey(_queueDefaults, key))
        return *standard;
    const SettingKey *const setting = findSettingKey(key);
    return setting != nullptr ? std::string(setting->standard) : std::string();
}

//
// Setting
//

/// Options of the field's own name that it has no use for, as a choice that the PPD no longer has,
/// would count instead of what it is set to.
void SettledFields::forgetNamesakes(std::size_t field)
{
    std::erase_if(_foreign, [&](const auto &option) { return ofOption(option.first) == field; });
}

/// Options of others that say the same of a field in other words ("sides") do so no longer.
void SettledFields::forgetAliases(const QueueField &field)
{
    if (!field.isOption || _foreign.empty())
        return;
    const auto isAlias = [&](const JobOptions::value_type &option) {
        _ppd.markDefaults();
        _ppd.mark(_queueDefaults);
        const auto before = _ppd.markedChoice(field.option);
        _ppd.mark(JobOptions{option});
        return _ppd.markedChoice(field.option) != before;
    };
    if (std::erase_if(_foreign, isAlias) > 0)
        findStandards();
}

void SettledFields::set(std::size_t field, std::string value)
{
    forgetNamesakes(field);
    forgetAliases(_fields[field]);
    State &state = _states[field];
    state.age = ++_ages;
    if (value == state.standard)
        state.set.reset();
    else
        state.set = std::move(value);
    settle();
}

void SettledFields::setAll(const std::vector<std::pair<std::size_t, std::string>> &values,
                           JobOptions foreign)
{
    _states.assign(_fields.size(), {});
    _foreign = std::move(foreign);
    for (const auto &[field, value] : values)
        forgetNamesakes(field);
    findStandards();
    for (const auto &[field, value] : values) {
        if (value == _states[field].standard)
            continue;
        _states[field].set = value;
        _states[field].age = ++_ages;
    }
    settle();
}

//
// What follows from what is set
//

void SettledFields::markBase()
{
    _ppd.markDefaults();
    _ppd.mark(_queueDefaults);
    _ppd.mark(_foreign);
}

std::string SettledFields::standardOf(const QueueField &field) const
{
    if (field.isOption) {
        const auto typed = _ppd.typedValue(field.option);
        return typed ? std::string(kTyped) + *typed : _ppd.markedChoice(field.option).value_or("");
    }
    const std::string *own = findKey(_queueDefaults, field.key);
    if (own == nullptr)
        return std::string(field.setting->standard);
    return valueFromText(_ppd, field, *own).value_or(*own);
}

void SettledFields::findStandards()
{
    markBase();
    for (std::size_t index = 0; index < _fields.size(); ++index)
        _states[index].standard = standardOf(_fields[index]);
}

void SettledFields::mark(std::size_t field)
{
    const QueueField &marked = _fields[field];
    if (marked.isOption)
        _ppd.mark(JobOptions{{marked.option, effective(field)}});
}

/// The options of the job that are no options of the PPD.
JobOptions SettledFields::keysOfJob() const
{
    JobOptions keys = _foreign;
    for (std::size_t index = 0; index < _fields.size(); ++index) {
        const QueueField &field = _fields[index];
        if (!field.isOption && _states[index].counts)
            keys.emplace_back(field.option, textFromValue(field, effective(index)));
    }
    for (const auto &option : _queueDefaults) {
        if (findKey(keys, optionName(option.first).key) == nullptr)
            keys.push_back(option);
    }
    return keys;
}

void SettledFields::learnWhatIsFed()
{
    const JobOptions keys = keysOfJob();
    _forced = chosenOptions(_ppd, keys);
    for (const auto &[option, choice] : _forced)
        _ppd.mark(option, choice);
    _fed = fedSettings(_ppd, keys);
}

bool SettledFields::holds(const Condition &condition) const
{
    if (condition.inPDF && !_isPDF)
        return true;
    const std::string value = valueOfKey(condition.key);
    const bool has = condition.value.empty() ? !value.empty() : value == condition.value;
    return has != condition.isNot;
}

/// Whether what the field is set to can have an effect beside all that has one.
bool SettledFields::canCount(std::size_t field) const
{
    const QueueField &asked = _fields[field];
    if (whyUseless(field))
        return false;
    return _states[field].counts || !asked.isOption ||
           _ppd.conflictsOf(asked.option, *_states[field].set).empty();
}

/// The fields that were set, the earliest first: of two that exclude each other it counts.
std::vector<std::size_t> SettledFields::setFields() const
{
    std::vector<std::size_t> fields;
    for (std::size_t index = 0; index < _fields.size(); ++index)
        if (_states[index].set)
            fields.push_back(index);
    std::ranges::sort(fields, {}, [this](std::size_t index) { return _states[index].age; });
    return fields;
}

/// @return whether anything has changed
bool SettledFields::settleOnce(const std::vector<std::size_t> &fields)
{
    learnWhatIsFed();
    bool hasChanged = false;
    for (const std::size_t field : fields) {
        const bool counts = canCount(field);
        hasChanged |= counts != _states[field].counts;
        _states[field].counts = counts;
        mark(field);
    }
    return hasChanged;
}

/// One setting may make another possible: so it is asked again until nothing changes any more.
void SettledFields::settle()
{
    markBase();
    _forced.clear();
    for (State &state : _states)
        state.counts = false;
    const std::vector<std::size_t> fields = setFields();
    int round = 0;
    while (round < kMostRounds && settleOnce(fields))
        ++round;
    learnWhatIsFed();
}

//
// Why not
//

Words SettledFields::labelOfKey(std::string_view key) const
{
    if (const auto field = ofKey(key))
        return _fields[*field].field.label;
    const SettingKey *const setting = findSettingKey(key);
    return setting != nullptr ? Words{setting->label} : asTheyAre(std::string(key));
}

Words SettledFields::labelOfOption(const std::string &option) const
{
    const auto field = ofOption(option);
    return field ? _fields[*field].field.label : asTheyAre(option);
}

Words SettledFields::labelOfValue(std::optional<std::size_t> field, const std::string &value) const
{
    return field ? _fields[*field].labelOf(value) : asTheyAre(value);
}

std::optional<Words> SettledFields::whyForced(const QueueField &field) const
{
    if (!field.isOption || find(_forced, field.option) == nullptr)
        return std::nullopt;
    const std::string choice = field.option + ' ' + *find(_forced, field.option);
    for (const PPD::Attribute &line : _ppd.attributes("KLChoiceSource")) {
        const auto source = ofOption(line.specifier);
        if (line.value == choice && source && effective(*source) != "None")
            return Words{kSaidBy, {_fields[*source].field.label}};
    }
    return Words{kSaidElsewhere};
}

std::optional<Words> SettledFields::whyMarkerIsMissing(const QueueField &field) const
{
    if (field.marker.empty())
        return std::nullopt;
    bool always = false;
    const MarkedBy choices = choicesWithMarker(_ppd, field.marker, &always);
    const bool isThere = std::ranges::any_of(choices, [this](const auto &choice) {
        return _ppd.markedChoice(choice.first) == choice.second;
    });
    if (always || isThere || choices.empty())
        return std::nullopt;
    const auto &[option, choice] = choices.front();
    return Words{kOnlyWith, {labelOfOption(option), labelOfValue(ofOption(option), choice)}};
}

std::optional<Words> SettledFields::whyConditionFails(const Condition &condition) const
{
    if (holds(condition))
        return std::nullopt;
    const Words label = labelOfKey(condition.key);
    if (condition.value.empty())
        return Words{condition.isNot ? kNotWithAny : kOnlyWithAny, {label}};
    const auto other = ofKey(condition.key);
    const std::string value(condition.value);
    const Choice *const choice = other ? choiceForKey(_ppd, _fields[*other], value) : nullptr;
    const Words words = choice != nullptr ? choice->label : labelOfValue(other, value);
    return Words{condition.isNot ? kNotWith : kOnlyWith, {label, words}};
}

/// Why nothing that the field is set to would have an effect.
std::optional<Words> SettledFields::whyUseless(std::size_t field) const
{
    const QueueField &asked = _fields[field];
    if (asked.isOption && asked.key != asked.option && findKey(_foreign, asked.key) != nullptr)
        return Words{kSaidElsewhere};
    if (auto why = whyForced(asked))
        return why;
    if (auto why = whyMarkerIsMissing(asked))
        return why;
    for (const Condition &condition : asked.conditions) {
        if (auto why = whyConditionFails(condition))
            return why;
    }
    return std::nullopt;
}

std::optional<Words> SettledFields::whyNotChoose(std::size_t field, const std::string &value) const
{
    const QueueField &asked = _fields[field];
    if (!asked.isOption || value == effective(field) || value == _states[field].standard)
        return std::nullopt;
    const auto conflicts = _ppd.conflictsOf(asked.option, value);
    if (conflicts.empty())
        return std::nullopt;
    const auto &[option, choice] = conflicts.front();
    return Words{kNotWith, {labelOfOption(option), labelOfValue(ofOption(option), choice)}};
}

} // namespace Model
