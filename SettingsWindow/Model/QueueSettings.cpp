#include "QueueSettings.h"

#include "SettledFields.h"
#include "fieldValues.h"
#include "optionName.h"
#include "sentences.h"
#include "typedValues.h"

#include <algorithm>
#include <utility>

namespace Model {
namespace {

/// Stands in the place of a PIN or a password that is not to be seen.
constexpr std::string_view kHiddenSecret = "SECRET";

constexpr std::string_view kWatermarkText = "com.kalmira.pde.watermark.text";
constexpr std::string_view kPlaceholders = "com.kalmira.pde.watermark.placeholders";

bool holds(const JobOptions &options, std::string_view name)
{
    return std::ranges::find(options, name, &JobOptions::value_type::first) != options.end();
}

} // namespace

class QueueSettings::Parts {
public:
    Parts(PPD ppd, const std::string &language, const JobOptions &queueDefaults)
        : _settled(std::move(ppd), language, queueDefaults)
    {
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
    using Values = std::vector<std::pair<std::size_t, std::string>>;

    Field shown(std::size_t index) const;
    std::optional<Words> objectionToChoosing(std::size_t index, const std::string &value) const;
    std::optional<Words> objectionTo(std::size_t index) const;
    bool take(const JobOptions::value_type &option, Values &values) const;
    std::string textOf(std::size_t index, Secrets secrets) const;
    bool isSent(std::size_t index, Secrets secrets) const;

    const QueueField &at(std::size_t index) const { return _settled.fields()[index]; }
    std::size_t count() const { return _settled.fields().size(); }

    SettledFields _settled;
};

//
// What a window shows
//

Field QueueSettings::Parts::shown(std::size_t index) const
{
    Field shown = at(index).field;
    std::optional<Words> whyNot = _settled.whyUseless(index);
    std::optional<Words> whyNoChange;
    bool canChange = shown.choices.empty();
    const auto look = [&](const std::string &value) {
        auto why = _settled.whyNotChoose(index, value);
        canChange |= !why && value != _settled.effective(index);
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
        look(std::string(kTyped));
    if (!whyNot && !canChange)
        whyNot = whyNoChange;
    shown.possible = !whyNot;
    shown.whyNot = whyNot.value_or(Words{});
    return shown;
}

std::vector<Field> QueueSettings::Parts::fields(Page page) const
{
    std::vector<Field> fields;
    for (std::size_t index = 0; index < count(); ++index)
        if (at(index).page == page)
            fields.push_back(shown(index));
    return fields;
}

std::string QueueSettings::Parts::value(std::string_view id) const
{
    const auto index = _settled.withId(id);
    if (!index)
        return {};
    const auto &set = _settled.stateOf(*index).set;
    // A choice shows what counts; what was typed is not taken out of its user's hands.
    const bool wasTyped =
        set && takesText(at(*index)) && (at(*index).field.kind != Kind::Choice || isTyped(*set));
    return wasTyped ? *set : _settled.effective(*index);
}

//
// Setting
//

std::optional<Words> QueueSettings::Parts::objectionTo(std::size_t index) const
{
    const QueueField &field = at(index);
    const auto &set = _settled.stateOf(index).set;
    if (!set || !takesText(field) || (field.field.kind == Kind::Choice && !isTyped(*set)))
        return std::nullopt;
    const std::string_view text = typedText(*set);
    if (field.option == "PageSize")
        return objectionToPageSize(_settled.ppd(), text);
    const bool hasPlaceholders =
        field.key == kWatermarkText && _settled.valueOfKey(kPlaceholders) == "True";
    return objectionToText(field, text, hasPlaceholders);
}

std::optional<Words> QueueSettings::Parts::objectionToChoosing(std::size_t index,
                                                               const std::string &value) const
{
    const Field field = shown(index);
    if (!field.possible)
        return field.whyNot;
    const auto choice = std::ranges::find(field.choices, value, &Choice::name);
    if (choice != field.choices.end())
        return choice->possible ? std::nullopt : std::optional(choice->whyNot);
    const bool isFlag = field.kind == Kind::Flag && (value == "True" || value == "False");
    const bool mayBeTyped = takesText(at(index)) && (field.kind != Kind::Choice || isTyped(value));
    return isFlag || mayBeTyped ? _settled.whyNotChoose(index, value) : Words{kNoSuchChoice};
}

std::optional<Words> QueueSettings::Parts::set(std::string_view id, std::string_view value)
{
    const auto index = _settled.withId(id);
    if (!index)
        return std::nullopt;
    const std::string wanted(value);
    if (auto objection = objectionToChoosing(*index, wanted))
        return objection;
    _settled.set(*index, wanted);
    return objectionTo(*index);
}

std::vector<Problem> QueueSettings::Parts::problems() const
{
    std::vector<Problem> problems;
    for (std::size_t index = 0; index < count(); ++index) {
        auto objection = _settled.stateOf(index).counts ? objectionTo(index) : std::nullopt;
        if (objection)
            problems.push_back({at(index).field.id, std::move(*objection)});
    }
    return problems;
}

//
// From options of a job
//

/// @return whether it is one for a field, whose value is added
bool QueueSettings::Parts::take(const JobOptions::value_type &option, Values &values) const
{
    const auto &[name, text] = option;
    const auto own = _settled.ofOption(name);
    const auto fed = own ? std::nullopt : _settled.ofKey(optionName(name).key);
    std::optional<std::string> value;
    if (own)
        value = valueFromText(_settled.ppd(), at(*own), text);
    else if (fed)
        value = valueThatFeeds(_settled.ppd(), at(*fed), text);
    if (value)
        values.emplace_back(own ? *own : *fed, std::move(*value));
    return value.has_value();
}

void QueueSettings::Parts::load(const JobOptions &options)
{
    Values values;
    JobOptions foreign;
    for (const auto &option : options)
        if (!take(option, values))
            foreign.push_back(option);
    _settled.setAll(values, std::move(foreign));
}

//
// To options of a job
//

std::string QueueSettings::Parts::textOf(std::size_t index, Secrets secrets) const
{
    const QueueField &field = at(index);
    if (field.field.isSecret && secrets == Secrets::Hidden)
        return std::string(field.isOption ? kTyped : "").append(kHiddenSecret);
    return textFromValue(field, *_settled.stateOf(index).set);
}

bool QueueSettings::Parts::isSent(std::size_t index, Secrets secrets) const
{
    const SettledFields::State &state = _settled.stateOf(index);
    return state.counts && *state.set != kTyped && !objectionTo(index) &&
           (secrets != Secrets::LeftOut || !at(index).field.isSecret);
}

JobOptions QueueSettings::Parts::options(Secrets secrets) const
{
    JobOptions options;
    for (std::size_t index = 0; index < count(); ++index)
        if (isSent(index, secrets))
            options.emplace_back(at(index).option, textOf(index, secrets));
    for (const auto &[name, value] : _settled.foreign()) {
        const bool isHidden = secrets == Secrets::Hidden && isSecret(name);
        options.emplace_back(name, isHidden ? std::string(kHiddenSecret) : value);
    }
    return options;
}

JobOptions QueueSettings::Parts::optionsOver(const JobOptions &added, Secrets secrets) const
{
    JobOptions all = options(secrets);
    for (const auto &[name, value] : added) {
        const auto index = _settled.ofOption(name);
        if (!index || holds(all, at(*index).option))
            continue;
        const std::string standard = textFromValue(at(*index), _settled.stateOf(*index).standard);
        if (standard != value)
            all.emplace_back(at(*index).option, standard);
    }
    return all;
}

bool QueueSettings::Parts::hasSecrets() const
{
    for (std::size_t index = 0; index < count(); ++index)
        if (at(index).field.isSecret && isSent(index, Secrets::AsTheyAre))
            return true;
    return std::ranges::any_of(_settled.foreign(),
                               [this](const auto &option) { return isSecret(option.first); });
}

bool QueueSettings::Parts::isSecret(std::string_view option) const
{
    const std::string name(option);
    const SettingKey *const setting = findSettingKey(optionName(name).key);
    const auto index = _settled.ofOption(name);
    return (setting != nullptr && setting->isSecret) || name == "job-password" ||
           (index && at(*index).field.isSecret);
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
