// The stream's push loop and its two ways of passing through, against the slow model.
//
// The input is rules, one a line and an empty line behind them, and then the stream. A rule is
// PREFIX, BEFORE, AFTER, AT ONCE and perhaps REPLACEMENT, with tabs between them; "~" in a rule
// stands for a line feed. What is to be passed through until a marker is passed until the first
// prefix.

#include "KLPrintJob.h"

#include "Fuzzing.h"
#include "MemoryStreams.h"
#include "StreamModel.h"
#include "StreamProcess.h"

#include <algorithm>
#include <map>

using Support::LineEdit;
using Support::LineRule;
using Support::modelOfPassingLine;
using Support::modelOfPassingMarker;
using Support::PassedThrough;

namespace {

/// The model takes one byte after another off the front of the text.
constexpr std::size_t kLongestStream = 2000;
constexpr std::size_t kMostRules = 8;

std::string takeText(std::string_view &line)
{
    std::string text(Fuzz::takeField(line));
    std::ranges::replace(text, '~', '\n');
    return text;
}

/// Rules with different prefixes, in the order of the prefixes.
std::vector<LineRule> takeRules(std::string_view &input)
{
    std::map<std::string, LineEdit> edits;
    for (auto line = Fuzz::takeLine(input); !line.empty(); line = Fuzz::takeLine(input)) {
        const std::string prefix = takeText(line);
        LineEdit edit = {
            .before = takeText(line), .after = takeText(line), .atOnce = takeText(line)};
        if (!line.empty())
            edit.replacement = takeText(line);
        if (!prefix.empty() && edits.size() < kMostRules)
            edits[prefix] = edit;
    }
    std::vector<LineRule> rules;
    for (const auto &[prefix, edit] : edits)
        rules.push_back({prefix, edit});
    return rules;
}

void tryProcess(const std::string &stream, const std::vector<LineRule> &rules)
{
    const LineEdit end = {.before = "lost", .after = "lost", .atOnce = "."};
    const Support::ProcessedStream result = Support::process(stream, rules, end);
    const auto expected = Support::modelOfProcess(stream, rules, end);
    Fuzz::requireEqual(expected.output, result.output, "process() writes what the model writes");
    Fuzz::require(expected == result, "process() shows its actions what the model shows them");
}

std::string restOf(KLPrintJob &job)
{
    std::string rest;
    while (const auto line = job.readLine()) {
        const auto lineFeed = line->find('\n');
        Fuzz::require(lineFeed == std::string::npos || lineFeed == line->size() - 1,
                      "a line has one line feed at most, at its end");
        rest += *line;
    }
    return rest;
}

template <class Pass>
PassedThrough passThrough(const std::string &stream, const Pass &pass)
{
    const Support::MemoryOutput output;
    KLPrintJob job(Support::openInput(stream), true, output.stream(), false);
    const bool found = pass(job);
    return {found, output.bytes(), restOf(job)};
}

} // namespace

void Fuzz::tryInput(std::string_view input)
{
    const auto rules = takeRules(input);
    const std::string stream(input.substr(0, kLongestStream));
    require(modelOfPassingLine(stream) ==
                passThrough(stream, [](auto &job) { return job.passDataThroughUntilEndOfLine(); }),
            "a line passes as the model passes it");
    if (rules.empty())
        return; // the action for the end must not queue then
    tryProcess(stream, rules);
    const std::string &marker = rules.front().prefix;
    require(
        modelOfPassingMarker(stream, marker) ==
            passThrough(stream, [&](auto &job) { return job.passDataThroughUntilMarker(marker); }),
        "all up to the marker passes as the model passes it");
}
