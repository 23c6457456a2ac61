#include "settingSources.h"

#include "optionName.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace {

const std::string *find(const JobOptions &options, std::string_view name)
{
    const auto found = std::ranges::find(options, name, &JobOptions::value_type::first);
    return found != options.end() ? &found->second : nullptr;
}

/// Whether the job has a value of its own under the key, of whatever kind.
bool carries(const JobOptions &job, const std::string &key)
{
    return std::ranges::any_of(
        job, [&key](const auto &option) { return optionName(option.first).key == key; });
}

std::optional<std::string> saidByOption(const PPD &ppd, const std::string &option)
{
    const auto choice = ppd.markedChoice(option);
    if (!choice || *choice == "None")
        return std::nullopt;
    const auto typed = ppd.typedValue(option);
    return typed ? typed : valueOfChoice(ppd, option, *choice);
}

/// What a source says; nullopt when it says nothing.
std::optional<std::string> saidBy(const std::string &source, const PPD &ppd, const JobOptions &job)
{
    std::optional<std::string> said;
    if (ppd.hasOption(source))
        said = saidByOption(ppd, source);
    else if (const std::string *value = find(job, source))
        said = *value;
    return said && !said->empty() ? said : std::nullopt;
}

/// The choice that a line "KLChoiceSource" says, and its option; nullopt when the PPD does not have
/// them.
std::optional<JobOptions::value_type> choiceOf(const PPD &ppd, const PPD::Attribute &line)
{
    std::istringstream words(line.value);
    std::string option;
    std::string choice;
    words >> option >> choice;
    const auto spelt = ppd.choiceAsSpelt(option, choice);
    return spelt ? std::optional(std::pair(*ppd.optionAsSpelt(option), *spelt)) : std::nullopt;
}

} // namespace

JobOptions fedSettings(const PPD &ppd, const JobOptions &job)
{
    JobOptions fed;
    for (const PPD::Attribute &line : ppd.attributes("KLSettingSource")) {
        if (carries(job, line.value) || find(fed, line.value) != nullptr)
            continue;
        if (auto said = saidBy(line.specifier, ppd, job))
            fed.emplace_back(line.value, std::move(*said));
    }
    return fed;
}

JobOptions chosenOptions(const PPD &ppd, const JobOptions &job)
{
    JobOptions chosen;
    for (const PPD::Attribute &line : ppd.attributes("KLChoiceSource")) {
        if (auto choice = choiceOf(ppd, line); choice && saidBy(line.specifier, ppd, job))
            chosen.push_back(std::move(*choice));
    }
    return chosen;
}

std::string valueOfChoice(const PPD &ppd, const std::string &option, const std::string &choice)
{
    const std::string specifier = std::string(option).append(".").append(choice);
    for (const PPD::Attribute &line : ppd.attributes("KLSettingValue")) {
        if (line.specifier == specifier)
            return line.value;
    }
    return choice;
}

bool feeds(const PPD &ppd, std::string_view source)
{
    const auto names = [source](const PPD::Attribute &line) { return line.specifier == source; };
    return std::ranges::any_of(ppd.attributes("KLSettingSource"), names) ||
           std::ranges::any_of(ppd.attributes("KLChoiceSource"), names);
}
