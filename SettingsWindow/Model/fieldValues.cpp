#include "fieldValues.h"

#include "FileURL.h"
#include "settingSources.h"

#include <algorithm>
#include <strings.h>

namespace Model {
namespace {

/// "true" as "True": so the filter reads it.
std::string flagFrom(const std::string &text)
{
    return strcasecmp(text.c_str(), "true") == 0 ? "True" : "False";
}

std::optional<std::string> typed(const QueueField &field, const std::string &text)
{
    return field.field.typed ? std::optional(std::string(kTyped) + text) : std::nullopt;
}

std::optional<std::string> valueFromURL(const std::string &text)
{
    const auto url = Platform::FileURL::withString(text);
    return url ? std::optional(url->path()) : std::nullopt;
}

std::optional<std::string> valueOfOption(const PPD &ppd, const QueueField &field,
                                         const std::string &text)
{
    if (auto choice = ppd.choiceAsSpelt(field.option, text))
        return choice;
    return isTyped(text) ? typed(field, std::string(typedText(text))) : std::nullopt;
}

} // namespace

bool isTyped(std::string_view value)
{
    return value.starts_with(kTyped);
}

std::string_view typedText(std::string_view value)
{
    return isTyped(value) ? value.substr(kTyped.size()) : value;
}

bool takesText(const QueueField &field)
{
    return field.field.typed ||
           (field.field.kind != Kind::Choice && field.field.kind != Kind::Flag);
}

std::optional<std::string> valueFromText(const PPD &ppd, const QueueField &field,
                                         const std::string &text)
{
    if (field.isOption)
        return valueOfOption(ppd, field, text);
    switch (field.field.kind) {
    case Kind::Flag:
        return flagFrom(text);
    case Kind::File:
        return valueFromURL(text);
    case Kind::Choice:
        break;
    default:
        return text;
    }
    const auto &choices = field.field.choices;
    const bool isChoice = std::ranges::find(choices, text, &Choice::name) != choices.end();
    return isChoice ? std::optional(text) : typed(field, text);
}

std::string textFromValue(const QueueField &field, const std::string &value)
{
    if (field.isOption)
        return value;
    if (field.field.kind == Kind::File) {
        const auto url = Platform::FileURL::withPath(value);
        return url ? url->text() : value;
    }
    return field.field.typed ? std::string(typedText(value)) : value;
}

const Choice *choiceForKey(const PPD &ppd, const QueueField &field, const std::string &value)
{
    const bool isFeeding = field.isOption && field.option != field.key;
    for (const Choice &choice : field.field.choices) {
        const std::string said =
            isFeeding ? valueOfChoice(ppd, field.option, choice.name) : choice.name;
        if (said == value && !(isFeeding && choice.name == "None"))
            return &choice;
    }
    return nullptr;
}

std::optional<std::string> valueThatFeeds(const PPD &ppd, const QueueField &field,
                                          const std::string &text)
{
    if (const Choice *choice = choiceForKey(ppd, field, text))
        return choice->name;
    return text.empty() ? std::nullopt : typed(field, text);
}

} // namespace Model
