#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Support {

// A second print job stream, for comparison with the real one: written for nothing but to be read
// beside the rules. It works on texts in memory, takes one byte after another off their front, and
// is as slow as that sounds.

/// What an action does with its line.
struct LineEdit {
    std::string before = {};                     ///< queued in front of it
    std::string after = {};                      ///< queued behind it
    std::string atOnce = {};                     ///< written at once
    std::optional<std::string> replacement = {}; ///< put in its place
};

/// What to do with lines of one beginning.
struct LineRule {
    std::string prefix;
    LineEdit edit;
};

/// An action that was run.
struct SeenLine {
    std::string prefix; ///< whose action
    std::string line;   ///< the current line it found
    bool operator==(const SeenLine &) const = default;
};

/// What process() comes to.
struct ProcessedStream {
    std::string output;
    std::vector<SeenLine> seen; ///< in order
    std::string currentLine;    ///< what it holds in the end
    bool operator==(const ProcessedStream &) const = default;
};

/// Pushes the input through the rules.
/// @param rules  not empty, in the order in which each byte is compared
/// @param end    what the action for the end of the input does
ProcessedStream modelOfProcess(const std::string &input, const std::vector<LineRule> &rules,
                               const LineEdit &end);

/// A stretch that was passed through.
struct PassedThrough {
    bool found;         ///< whether its end was there
    std::string output; ///< what was written
    std::string rest;   ///< what is still to be read
    bool operator==(const PassedThrough &) const = default;
};

/// As passDataThroughUntilEndOfLine() does it.
PassedThrough modelOfPassingLine(const std::string &input);
/// As passDataThroughUntilMarker() does it.
/// @param marker  not empty
PassedThrough modelOfPassingMarker(const std::string &input, const std::string &marker);

} // namespace Support
