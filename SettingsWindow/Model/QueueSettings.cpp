#include "QueueSettings.h"

#include "FileURL.h"
#include "optionName.h"
#include "queueFields.h"
#include "sentences.h"
#include "settingSources.h"
#include "typedValues.h"

#include <algorithm>
#include <strings.h>
#include <utility>

namespace Model {
namespace {

/// Stands in the place of a PIN or a password that is not to be seen.
constexpr std::string_view kHiddenSecret = "SECRET";

constexpr std::string_view kWatermarkText = "com.kalmira.pde.watermark.text";
constexpr std::string_view kPlaceholders = "com.kalmira.pde.watermark.placeholders";

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

bool isTyped(std::string_view value)
{
    return value.starts_with(kTyped);
}

std::string_view typedText(std::string_view value)
{
    return isTyped(value) ? value.substr(kTyped.size()) : value;
}

/// "true" as "True": so the filter reads it.
std::string spelt(const QueueField &field, const std::string &value)
{
    if (field.field.kind != Kind::Flag)
        return value;
    return isSameName(value, "true") ? "True" : "False";
}

} // namespace

//
// What is set, and what follows from it
//

class QueueSettings::Parts {
public:
    Parts(PPD ppd, const std::string &language, JobOptions queueDefaults)
        : _ppd(std::move(ppd)),
          _queueDefaults(std::move(queueDefaults)),
          _fields(queueFields(_ppd, language)),
          _isPDF(takesPDF(_ppd))
    {
        load({});
    }

    std::vector<Field> fields(Page page) const;
    std::string value(std::string_view id) const;
    std::optional<Words> set(std::string_view id, std::string_view value);
    std::vector<Problem> problems() const;
    void load(const JobOptions &options);
    JobOptions options(Secrets secrets) const;
    JobOptions optionsOver(const JobOptions &added, Secrets secrets) const;
    bool hasSecrets() const;
    bool isSecret(std::string_view option) const;

private:
    /// How a field stands.
    struct State {
        std::string standard;                ///< what counts when nobody sets it
        std::optional<std::string> set = {}; ///< what it was set to
        bool counts = false;                 ///< that has an effect
        int age = 0;                         ///< the smaller it is, the earlier it was set
    };

    // Looking up.
    std::optional<std::size_t> indexOf(std::string_view id) const;
    std::optional<std::size_t> indexOfOption(const std::string &option) const;
    std::optional<std::size_t> indexOfKey(std::string_view key) const;
    const std::string &effective(std::size_t field) const;
    std::string valueOfKey(std::string_view key) const;
    std::optional<Words> objectionTo(std::size_t field) const;
    bool isTextOf(const QueueField &field) const;

    // What follows from what is set.
    void settle();
    bool settleOnce(const std::vector<std::size_t> &fields);
    void markBase();
    void findStandards();
    std::string standardOf(const QueueField &field) const;
    void mark(std::size_t field);
    void learnWhatIsFed();
    JobOptions keysOfJob() const;
    std::vector<std::size_t> setFields() const;
    bool canCount(std::size_t field) const;

    // Why not.
    std::optional<Words> whyUseless(std::size_t field) const;
    const Choice *choiceThatSays(const QueueField &field, const std::string &value) const;
    std::optional<Words> whyForced(const QueueField &field) const;
    std::optional<Words> whyMarkerIsMissing(const QueueField &field) const;
    std::optional<Words> whyConditionFails(const Condition &condition) const;
    std::optional<Words> whyNotChoose(const QueueField &field, const std::string &value) const;
    bool holds(const Condition &condition) const;
    Words labelOfKey(std::string_view key) const;
    Words labelOfOption(const std::string &option) const;
    Words labelOfValue(std::optional<std::size_t> field, const std::string &value) const;
    Field shown(std::size_t field) const;

    // Options of a job.
    void take(const JobOptions::value_type &option);
    std::optional<std::string> valueFrom(const QueueField &field, const std::string &text) const;
    std::optional<std::string> valueThatFeeds(const QueueField &field,
                                              const std::string &text) const;
    std::string textOf(const QueueField &field, const std::string &value) const;
    std::string textOf(const QueueField &field, const std::string &value, Secrets secrets) const;
    bool isSent(std::size_t field, Secrets secrets) const;
    void forgetAliases(const QueueField &field);

    PPD _ppd;
    JobOptions _queueDefaults;
    std::vector<QueueField> _fields;
    bool _isPDF;

    std::vector<State> _states; ///< of the fields
    JobOptions _foreign;        ///< of others
    int _ages = 0;

    JobOptions _fed;    ///< what sources say
    JobOptions _forced; ///< what sources choose
};

std::optional<std::size_t> QueueSettings::Parts::indexOf(std::string_view id) const
{
    for (std::size_t index = 0; index < _fields.size(); ++index)
        if (_fields[index].field.id == id)
            return index;
    return std::nullopt;
}

std::optional<std::size_t> QueueSettings::Parts::indexOfOption(const std::string &option) const
{
    for (std::size_t index = 0; index < _fields.size(); ++index) {
        const QueueField &field = _fields[index];
        if (field.isOption ? isSameName(field.option, option) : field.key == optionName(option).key)
            return index;
    }
    return std::nullopt;
}

std::optional<std::size_t> QueueSettings::Parts::indexOfKey(std::string_view key) const
{
    for (std::size_t index = 0; index < _fields.size(); ++index)
        if (_fields[index].key == key)
            return index;
    return std::nullopt;
}

const std::string &QueueSettings::Parts::effective(std::size_t field) const
{
    if (const auto *forced = find(_forced, _fields[field].option))
        return *forced;
    const State &state = _states[field];
    return state.counts ? *state.set : state.standard;
}

std::string QueueSettings::Parts::valueOfKey(std::string_view key) const
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
// What follows from what is set
//

void QueueSettings::Parts::markBase()
{
    _ppd.markDefaults();
    _ppd.mark(_queueDefaults);
    _ppd.mark(_foreign);
}

std::string QueueSettings::Parts::standardOf(const QueueField &field) const
{
    if (field.isOption) {
        const auto typed = _ppd.typedValue(field.option);
        return typed ? std::string(kTyped) + *typed : _ppd.markedChoice(field.option).value_or("");
    }
    const std::string *own = findKey(_queueDefaults, field.key);
    if (own == nullptr)
        return std::string(field.setting->standard);
    return valueFrom(field, *own).value_or(*own);
}

void QueueSettings::Parts::findStandards()
{
    markBase();
    for (std::size_t index = 0; index < _fields.size(); ++index)
        _states[index].standard = standardOf(_fields[index]);
}

void QueueSettings::Parts::mark(std::size_t field)
{
    const QueueField &marked = _fields[field];
    if (marked.isOption)
        _ppd.mark(JobOptions{{marked.option, effective(field)}});
}

/// The options of the job that are no options of the PPD.
JobOptions QueueSettings::Parts::keysOfJob() const
{
    JobOptions keys = _foreign;
    for (std::size_t index = 0; index < _fields.size(); ++index) {
        const QueueField &field = _fields[index];
        if (!field.isOption && _states[index].counts)
            keys.emplace_back(field.option, textOf(field, effective(index)));
    }
    for (const auto &option : _queueDefaults) {
        if (findKey(keys, optionName(option.first).key) == nullptr)
            keys.push_back(option);
    }
    return keys;
}

void QueueSettings::Parts::learnWhatIsFed()
{
    const JobOptions keys = keysOfJob();
    _forced = chosenOptions(_ppd, keys);
    for (const auto &[option, choice] : _forced)
        _ppd.mark(option, choice);
    _fed = fedSettings(_ppd, keys);
}

bool QueueSettings::Parts::holds(const Condition &condition) const
{
    if (condition.inPDF && !_isPDF)
        return true;
    const std::string value = valueOfKey(condition.key);
    const bool has = condition.value.empty() ? !value.empty() : value == condition.value;
    return has != condition.isNot;
}

/// Whether what the field is set to can have an effect beside all that has one.
bool QueueSettings::Parts::canCount(std::size_t field) const
{
    const QueueField &asked = _fields[field];
    if (whyUseless(field))
        return false;
    return _states[field].counts || !asked.isOption ||
           _ppd.conflictsOf(asked.option, *_states[field].set).empty();
}

/// The fields that were set, the earliest first: of two that exclude each other it counts.
std::vector<std::size_t> QueueSettings::Parts::setFields() const
{
    std::vector<std::size_t> fields;
    for (std::size_t index = 0; index < _fields.size(); ++index)
        if (_states[index].set)
            fields.push_back(index);
    std::ranges::sort(fields, {}, [this](std::size_t index) { return _states[index].age; });
    return fields;
}

/// @return whether anything has changed
bool QueueSettings::Parts::settleOnce(const std::vector<std::size_t> &fields)
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
void QueueSettings::Parts::settle()
{
    markBase();
    _forced.clear();
    for (State &state : _states)
        state.counts = false;
    const std::vector<std::size_t> fields = setFields();
    for (int round = 0; round < kMostRounds && settleOnce(fields); ++round)
        continue;
    learnWhatIsFed();
}

//
// Why not
//

Words QueueSettings::Parts::labelOfKey(std::string_view key) const
{
    if (const auto field = indexOfKey(key))
        return _fields[*field].field.label;
    const SettingKey *const setting = findSettingKey(key);
    return setting != nullptr ? Words{setting->label} : asTheyAre(std::string(key));
}

Words QueueSettings::Parts::labelOfOption(const std::string &option) const
{
    const auto field = indexOfOption(option);
    return field ? _fields[*field].field.label : asTheyAre(option);
}

/// The choice that stands for the value of a key; null when there is none.
const Choice *QueueSettings::Parts::choiceThatSays(const QueueField &field,
                                                   const std::string &value) const
{
    const bool isFeeding = field.isOption && field.option != field.key;
    for (const Choice &choice : field.field.choices) {
        const std::string said =
            isFeeding ? valueOfChoice(_ppd, field.option, choice.name) : choice.name;
        if (said == value && !(isFeeding && choice.name == "None"))
            return &choice;
    }
    return nullptr;
}

std::optional<Words> QueueSettings::Parts::whyForced(const QueueField &field) const
{
    if (!field.isOption || find(_forced, field.option) == nullptr)
        return std::nullopt;
    const std::string choice = field.option + ' ' + *find(_forced, field.option);
    for (const PPD::Attribute &line : _ppd.attributes("KLChoiceSource")) {
        const auto source = indexOfOption(line.specifier);
        if (line.value == choice && source && effective(*source) != "None")
            return Words{kSaidBy, {_fields[*source].field.label}};
    }
    return Words{kSaidElsewhere};
}

Words QueueSettings::Parts::labelOfValue(std::optional<std::size_t> field,
                                         const std::string &value) const
{
    return field ? _fields[*field].labelOf(value) : asTheyAre(value);
}

std::optional<Words> QueueSettings::Parts::whyMarkerIsMissing(const QueueField &field) const
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
    return Words{kOnlyWith, {labelOfOption(option), labelOfValue(indexOfOption(option), choice)}};
}

std::optional<Words> QueueSettings::Parts::whyConditionFails(const Condition &condition) const
{
    if (holds(condition))
        return std::nullopt;
    const Words label = labelOfKey(condition.key);
    if (condition.value.empty())
        return Words{condition.isNot ? kNotWithAny : kOnlyWithAny, {label}};
    const auto other = indexOfKey(condition.key);
    const std::string value(condition.value);
    const Choice *const choice = other ? choiceThatSays(_fields[*other], value) : nullptr;
    const Words words = choice != nullptr ? choice->label : labelOfValue(other, value);
    return Words{condition.isNot ? kNotWith : kOnlyWith, {label, words}};
}

/// Why nothing that the field is set to would have an effect.
std::optional<Words> QueueSettings::Parts::whyUseless(std::size_t field) const
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

/// Why the PPD does not let the option have the value now.
std::optional<Words> QueueSettings::Parts::whyNotChoose(const QueueField &field,
                                                        const std::string &value) const
{
    if (!field.isOption)
        return std::nullopt;
    const auto conflicts = _ppd.conflictsOf(field.option, value);
    if (conflicts.empty())
        return std::nullopt;
    const auto &[option, choice] = conflicts.front();
    return Words{kNotWith, {labelOfOption(option), labelOfValue(indexOfOption(option), choice)}};
}

Field QueueSettings::Parts::shown(std::size_t index) const
{
    const QueueField &field = _fields[index];
    Field shown = field.field;
    std::optional<Words> whyNot = whyUseless(index);
    bool canChange = !field.isOption || shown.choices.empty();
    std::optional<Words> whyNoChange;
    const auto look = [&](const std::string &value) {
        // What the queue has by itself can be had again: what it excludes has no effect then.
        const bool isFree = value == effective(index) || value == _states[index].standard;
        auto why = isFree ? std::nullopt : whyNotChoose(field, value);
        canChange |= !why && value != effective(index);
        if (why && !whyNoChange)
            whyNoChange = why;
        return why;
    };
    for (Choice &choice : shown.choices) {
        const auto why = look(choice.name);
        choice.possible = !why;
        choice.whyNot = why.value_or(Words{});
    }
    if (shown.typed)
        look(std::string(kTyped) + "1");
    if (!whyNot && !canChange)
        whyNot = whyNoChange;
    shown.possible = !whyNot;
    shown.whyNot = whyNot.value_or(Words{});
    return shown;
}

std::vector<Field> QueueSettings::Parts::fields(Page page) const
{
    std::vector<Field> fields;
    for (std::size_t index = 0; index < _fields.size(); ++index)
        if (_fields[index].page == page)
            fields.push_back(shown(index));
    return fields;
}

//
// Values
//

std::string QueueSettings::Parts::value(std::string_view id) const
{
    const auto field = indexOf(id);
    if (!field)
        return {};
    const State &state = _states[*field];
    const Kind kind = _fields[*field].field.kind;
    const bool isText = kind != Kind::Choice && kind != Kind::Flag;
    // A choice shows what counts; what was typed is not taken out of its user's hands.
    return state.set && (isText || isTyped(*state.set)) ? *state.set : effective(*field);
}

bool QueueSettings::Parts::isTextOf(const QueueField &field) const
{
    return field.field.typed ||
           (field.field.kind != Kind::Choice && field.field.kind != Kind::Flag);
}

std::optional<Words> QueueSettings::Parts::objectionTo(std::size_t index) const
{
    const QueueField &field = _fields[index];
    const State &state = _states[index];
    if (!state.set || *state.set == state.standard || !isTextOf(field) ||
        (field.field.typed && !isTyped(*state.set)))
        return std::nullopt;
    const std::string_view text = typedText(*state.set);
    if (field.isOption && field.option == "PageSize")
        return objectionToPageSize(_ppd, text);
    const bool hasPlaceholders = field.key == kWatermarkText && valueOfKey(kPlaceholders) == "True";
    return objectionToText(field, text, hasPlaceholders);
}

std::optional<Words> QueueSettings::Parts::set(std::string_view id, std::string_view value)
{
    const auto index = indexOf(id);
    if (!index)
        return std::nullopt;
    const std::string wanted = spelt(_fields[*index], std::string(value));
    const Field field = shown(*index);
    if (!field.possible)
        return field.whyNot;
    const auto choice = std::ranges::find(field.choices, wanted, &Choice::name);
    if (choice != field.choices.end() && !choice->possible)
        return choice->whyNot;
    const bool isTypedHere = field.typed && isTyped(wanted);
    if (field.kind == Kind::Choice && choice == field.choices.end() && !isTypedHere)
        return Words{kNoSuchChoice};

    forgetAliases(_fields[*index]);
    _states[*index].set = wanted;
    _states[*index].age = ++_ages;
    if (wanted == _states[*index].standard)
        _states[*index].set.reset();
    settle();
    return objectionTo(*index);
}

std::vector<Problem> QueueSettings::Parts::problems() const
{
    std::vector<Problem> problems;
    for (std::size_t index = 0; index < _fields.size(); ++index) {
        if (!_states[index].counts)
            continue;
        if (auto objection = objectionTo(index))
            problems.push_back({_fields[index].field.id, std::move(*objection)});
    }
    return problems;
}

//
// Options of a job
//

/// What an option's value is as a value of the field; nullopt when it is none.
std::optional<std::string> QueueSettings::Parts::valueFrom(const QueueField &field,
                                                           const std::string &text) const
{
    if (field.isOption) {
        if (auto choice = _ppd.choiceAsSpelt(field.option, text))
            return choice;
        return field.field.typed && isTyped(text) ? std::optional(text) : std::nullopt;
    }
    if (field.field.kind == Kind::Flag)
        return spelt(field, text);
    if (field.field.kind == Kind::File) {
        const auto url = Platform::FileURL::withString(text);
        return url ? std::optional(url->path()) : std::nullopt;
    }
    if (field.field.kind != Kind::Choice ||
        std::ranges::find(field.field.choices, text, &Choice::name) != field.field.choices.end())
        return text;
    return field.field.typed ? std::optional(std::string(kTyped) + text) : std::nullopt;
}

/// The value by which an option of the PPD feeds its key that text; nullopt when it cannot.
std::optional<std::string> QueueSettings::Parts::valueThatFeeds(const QueueField &field,
                                                                const std::string &text) const
{
    if (const Choice *choice = choiceThatSays(field, text))
        return choice->name;
    return field.field.typed && !text.empty() ? std::optional(std::string(kTyped) + text)
                                              : std::nullopt;
}

/// Takes an option for a field, or keeps it apart.
void QueueSettings::Parts::take(const JobOptions::value_type &option)
{
    auto index = indexOfOption(option.first);
    auto value = index ? valueFrom(_fields[*index], option.second) : std::nullopt;
    if (!index && (index = indexOfKey(optionName(option.first).key)))
        value = valueThatFeeds(_fields[*index], option.second);
    if (!value) {
        _foreign.push_back(option);
        return;
    }
    _states[*index].set = std::move(value);
    _states[*index].age = ++_ages;
}

void QueueSettings::Parts::load(const JobOptions &options)
{
    _states.assign(_fields.size(), {});
    _foreign.clear();
    for (const auto &option : options)
        take(option);
    findStandards();
    for (State &state : _states)
        if (state.set == state.standard)
            state.set.reset();
    settle();
}

/// Options of others that say the same of a field in other words ("sides") do so no longer.
void QueueSettings::Parts::forgetAliases(const QueueField &field)
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

std::string QueueSettings::Parts::textOf(const QueueField &field, const std::string &value) const
{
    if (field.isOption)
        return value;
    if (field.field.kind == Kind::File) {
        const auto url = Platform::FileURL::withPath(value);
        return url ? url->text() : value;
    }
    return field.field.typed ? std::string(typedText(value)) : value;
}

std::string QueueSettings::Parts::textOf(const QueueField &field, const std::string &value,
                                         Secrets secrets) const
{
    if (!field.field.isSecret || secrets != Secrets::Hidden)
        return textOf(field, value);
    return std::string(field.isOption ? kTyped : "").append(kHiddenSecret);
}

bool QueueSettings::Parts::isSent(std::size_t index, Secrets secrets) const
{
    const State &state = _states[index];
    return state.counts && *state.set != state.standard && *state.set != kTyped &&
           !objectionTo(index) && (secrets != Secrets::LeftOut || !_fields[index].field.isSecret);
}

JobOptions QueueSettings::Parts::options(Secrets secrets) const
{
    JobOptions options;
    for (std::size_t index = 0; index < _fields.size(); ++index)
        if (isSent(index, secrets))
            options.emplace_back(_fields[index].option,
                                 textOf(_fields[index], *_states[index].set, secrets));
    for (const auto &[name, value] : _foreign)
        options.emplace_back(name, secrets == Secrets::Hidden && isSecret(name)
                                       ? std::string(kHiddenSecret)
                                       : value);
    return options;
}

JobOptions QueueSettings::Parts::optionsOver(const JobOptions &added, Secrets secrets) const
{
    JobOptions all = options(secrets);
    for (const auto &[name, value] : added) {
        const auto index = indexOfOption(name);
        if (!index || find(all, _fields[*index].option) != nullptr)
            continue;
        const QueueField &field = _fields[*index];
        const std::string standard = textOf(field, _states[*index].standard);
        if (standard != value)
            all.emplace_back(field.option, standard);
    }
    return all;
}

bool QueueSettings::Parts::hasSecrets() const
{
    for (std::size_t index = 0; index < _fields.size(); ++index)
        if (_fields[index].field.isSecret && isSent(index, Secrets::AsTheyAre))
            return true;
    return std::ranges::any_of(_foreign,
                               [this](const auto &option) { return isSecret(option.first); });
}

bool QueueSettings::Parts::isSecret(std::string_view option) const
{
    const std::string name(option);
    const SettingKey *const setting = findSettingKey(optionName(name).key);
    const auto index = indexOfOption(name);
    return (setting != nullptr && setting->isSecret) || name == "job-password" ||
           (index && _fields[*index].field.isSecret);
}

//
// What others see of it
//

QueueSettings::QueueSettings(PPD ppd, const std::string &language, const JobOptions &queueDefaults)
    : _parts(std::make_unique<Parts>(std::move(ppd), language, queueDefaults))
{
}

QueueSettings::QueueSettings(QueueSettings &&) noexcept = default;
QueueSettings &QueueSettings::operator=(QueueSettings &&) noexcept = default;
QueueSettings::~QueueSettings() = default;

std::vector<Field> QueueSettings::fields(Page page) const
{
    return _parts->fields(page);
}

std::string QueueSettings::value(std::string_view id) const
{
    return _parts->value(id);
}

std::optional<Words> QueueSettings::set(std::string_view id, std::string_view value)
{
    return _parts->set(id, value);
}

std::vector<Problem> QueueSettings::problems() const
{
    return _parts->problems();
}

void QueueSettings::reset()
{
    _parts->load({});
}

void QueueSettings::load(const JobOptions &options)
{
    _parts->load(options);
}

JobOptions QueueSettings::options(Secrets secrets) const
{
    return _parts->options(secrets);
}

JobOptions QueueSettings::optionsOver(const JobOptions &added, Secrets secrets) const
{
    return _parts->optionsOver(added, secrets);
}

bool QueueSettings::hasSecrets() const
{
    return _parts->hasSecrets();
}

bool QueueSettings::isSecret(std::string_view option) const
{
    return _parts->isSecret(option);
}

} // namespace Model
