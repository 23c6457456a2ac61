// The settings of a queue: lines of lpoptions, an option string, values that are typed, and a PPD.

#include "QueueSettings.h"

#include "Fuzzing.h"
#include "PPD.h"
#include "Queue.h"
#include "commandLine.h"
#include "keptLines.h"

#include <algorithm>
#include <array>
#include <optional>

namespace {

using Fuzz::require;
using Model::Field;
using Model::KeptLines;
using Model::QueueSettings;

/// Fields of which a choice is made; each settles all others anew.
constexpr std::size_t kMostChosen = 8;

std::string unescaped(std::string_view text)
{
    std::string lines(text);
    std::ranges::replace(lines, '\r', '\n'); // the input's own lines are the fuzzer's
    return lines;
}

/// libcups reads and we write names and values that are neither empty nor have bytes that end them.
bool canBeKept(const JobOptions &options)
{
    return std::ranges::all_of(options, [](const auto &option) {
        return !option.second.empty() &&
               option.first.find_first_of(" \t\r\n\"'=#\\{}") == std::string::npos;
    });
}

JobOptions sorted(JobOptions options)
{
    std::ranges::sort(options);
    return options;
}

// MARK: settings

std::vector<Field> allFields(const QueueSettings &settings)
{
    std::vector<Field> fields;
    for (const Model::Page page : Model::kPages)
        for (Field &field : settings.fields(page))
            fields.push_back(std::move(field));
    return fields;
}

/// A choice is taken, or refused and nothing changed.
void choose(QueueSettings &settings, const Field &field)
{
    const std::string before = settings.value(field.id);
    const std::string &wanted = field.choices.back().name;
    const bool isRefused = settings.set(field.id, wanted).has_value();
    const std::string after = settings.value(field.id);
    if (!field.choices.back().possible && wanted != before)
        require(after != wanted || isRefused, "what is not possible cannot be chosen");
    if (isRefused)
        require(after == before || after == wanted, "a refusal changes nothing else");
}

/// What comes out goes in again, by itself and as an option string.
void requireRoundTrip(QueueSettings &settings)
{
    const JobOptions options = settings.options();
    if (canBeKept(options))
        require(sorted(parsedOptions(Model::optionString(options))) == sorted(options),
                "an option string says the options");
    Model::commandLine({}, options, "-document");
    settings.load(options);
    const JobOptions once = settings.options();
    settings.load(once);
    require(settings.options() == once, "what was loaded comes out as it was");
    for (const Model::Problem &problem : settings.problems())
        require(!problem.words.isEmpty(), "a problem is said in words");
}

void trySettings(PPD ppd, const std::string &optionString, std::string_view typed)
{
    QueueSettings settings(std::move(ppd), "de_DE");
    settings.load(parsedOptions(optionString));
    requireRoundTrip(settings);
    while (!typed.empty()) {
        const std::string field(Fuzz::takeField(typed));
        settings.set(field, Fuzz::takeField(typed));
    }
    std::size_t chosen = 0;
    for (const Field &field : allFields(settings)) {
        require(!field.label.isEmpty(), "a field is called something");
        require(field.possible || !field.whyNot.isEmpty(), "what is not possible says why");
        if (!field.choices.empty() && ++chosen <= kMostChosen)
            choose(settings, field);
    }
    settings.optionsOver(parsedOptions(optionString), Model::Secrets::Hidden);
    requireRoundTrip(settings);
}

// MARK: what is kept

void tryKeeping(std::string_view lines, const JobOptions &options)
{
    static Fuzz::MemoryFile file;
    file.assign(lines);
    int error = 0;
    auto kept = KeptLines::read(file.path(), &error);
    require(kept && error == 0, "any file can be read");
    for (const std::string &set : kept->setsOf("office"))
        require(kept->has("office", set), "a set that is listed is there");
    const JobOptions others = kept->optionsOf("other", {});
    if (!canBeKept(options))
        return;
    kept->keep("office", "set", options);
    require(sorted(kept->optionsOf("office", "set")) == sorted(options),
            "what is kept is what is read");
    kept->rename("office", "set", "new");
    require(sorted(kept->optionsOf("office", "new")) == sorted(options),
            "a name is all that changes");
    kept->remove("office", "new");
    require(!kept->has("office", "new"), "what is removed is gone");
    require(kept->optionsOf("other", {}) == others, "other queues are left alone");
}

} // namespace

void Fuzz::tryInput(std::string_view input)
{
    static MemoryFile file;
    const std::string kept = unescaped(takeLine(input));
    const std::string optionString(takeLine(input));
    const std::string_view typed = takeLine(input);
    tryKeeping(kept, parsedOptions(optionString));
    file.assign(input.starts_with("*PPD-Adobe") ? std::string(input)
                                                : queuePPD(std::string(input)));
    std::string whyNot;
    if (auto ppd = PPD::open(file.path(), &whyNot))
        trySettings(std::move(*ppd), optionString, typed);
    else
        require(!whyNot.empty(), "a PPD that cannot be read says why");
}
