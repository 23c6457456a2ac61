// An option string, into the store of a queue.

#include "Fuzzing.h"
#include "KLPrintOptions.h"
#include "Numbers.h"
#include "Queue.h"
#include "ppdLibrary.h"

#include <algorithm>
#include <map>
#include <set>
#include <span>
#include <strings.h>
#include <vector>

namespace {

using Option = std::pair<std::string, std::string>;

/// What the library reads from the string.
std::vector<Option> parsed(const std::string &optionString)
{
    cups_option_t *options = nullptr;
    const int count = cupsParseOptions(optionString.c_str(), 0, &options);
    std::vector<Option> result;
    for (const cups_option_t &option : std::span(options, static_cast<std::size_t>(count)))
        result.emplace_back(option.name, option.value);
    cupsFreeOptions(count, options);
    return result;
}

/// Takes the suffix off the key. @return whether it was there
bool takeSuffix(std::string &key, std::string_view suffix)
{
    if (key.size() < suffix.size() || key.substr(key.size() - suffix.size()) != suffix)
        return false;
    key.resize(key.size() - suffix.size());
    return true;
}

/// How the PPD spells the choice, which may be given in any letter case; the text itself where the
/// PPD has no such choice.
std::string asThePPDSpellsIt(const PPD &ppd, const std::string &option, const std::string &text)
{
    const ppd_option_t *found = ppdFindOption(ppd.file(), option.c_str());
    std::string spelt = text;
    for (int i = found != nullptr ? found->num_choices : 0; i-- > 0;) {
        const char *choice = found->choices[i].choice;
        if (text == choice)
            return text;
        if (strcasecmp(text.c_str(), choice) == 0)
            spelt = choice;
    }
    return spelt;
}

std::map<std::string, KLValue> modelOfStore(const PPD &ppd, const std::vector<Option> &options)
{
    std::map<std::string, KLValue> entries;
    for (auto [key, text] : options) {
        text = asThePPDSpellsIt(ppd, key, text);
        if (text == "true" || text == "false")
            text = text == "true" ? "True" : "False";
        if (takeSuffix(key, "..n."))
            entries[key] = Platform::integerFromText(text);
        else if (takeSuffix(key, "..b."))
            entries[key] = Platform::booleanFromText(text);
        else
            entries[key] = text;
    }
    return entries;
}

/// The options the other way round, written so that the library reads them as they are.
/// @return nullopt for options that cannot be written so, or whose order means something
std::optional<std::string> reversed(std::vector<Option> options)
{
    std::set<std::string> keys;
    std::string optionString;
    std::ranges::reverse(options);
    for (const auto &[name, value] : options) {
        std::string key = name;
        if (!takeSuffix(key, "..n."))
            takeSuffix(key, "..b.");
        if (!keys.insert(key).second)
            return std::nullopt;
        optionString += name + "=\"";
        for (const char c : value)
            optionString += c == '"' || c == '\\' ? std::string{'\\', c} : std::string{c};
        optionString += "\" ";
    }
    auto readBack = parsed(optionString);
    std::ranges::sort(readBack);
    std::ranges::sort(options);
    return readBack == options ? std::optional(optionString) : std::nullopt;
}

void requireEntries(const KLPrintOptions &store, const std::map<std::string, KLValue> &entries,
                    std::string_view invariant)
{
    for (const auto &[key, value] : entries)
        Fuzz::require(store.valueForKey(key) == value, invariant);
}

/// What the job does not say, the PPD does, in its own words.
void requireChoices(const KLPrintOptions &store, const std::map<std::string, KLValue> &entries)
{
    for (const char *keyword : {"PageSize", "Duplex", "InputSlot", "MediaType", "PrintMode"}) {
        if (entries.contains(keyword))
            continue;
        // A page size that the PPD does not have leaves the library with none marked.
        const ppd_choice_t *choice = ppdFindMarkedChoice(store.ppd().file(), keyword);
        const auto expected = choice ? std::optional<KLValue>(choice->choice) : std::nullopt;
        Fuzz::require(store.valueForKey(keyword) == expected,
                      "what the job leaves open is what the PPD marks");
    }
}

} // namespace

void Fuzz::tryInput(std::string_view input)
{
    static MemoryFile ppd;
    [[maybe_unused]] static const bool ready = [] {
        ppd.assign(queuePPD());
        return setenv("PPD", ppd.path().c_str(), 1) == 0;
    }();
    const std::string optionString(input.substr(0, input.find('\0')));
    const auto options = parsed(optionString);
    const KLPrintOptions store(optionString);
    const auto entries = modelOfStore(store.ppd(), options);
    requireEntries(store, entries, "the job's options are stored as they are written");
    requireChoices(store, entries);
    askEverything(store);
    if (const auto other = reversed(options))
        requireEntries(KLPrintOptions(*other), entries, "the order of the options means nothing");
}
