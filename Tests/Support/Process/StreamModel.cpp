#include "StreamModel.h"

namespace Support {
namespace {

/// Takes the next byte off the front of the text; nullopt when there is none.
std::optional<char> takeByte(std::string &text)
{
    if (text.empty())
        return std::nullopt;
    const char byte = text[0];
    text = text.substr(1);
    return byte;
}

/// Takes a line off the front of the text, up to and including its line feed.
std::string takeLine(std::string &text)
{
    std::string line;
    while (const auto byte = takeByte(text)) {
        line += *byte;
        if (*byte == '\n')
            break;
    }
    return line;
}

/// The push loop as a machine that is in one step at a time.
class ProcessModel {
public:
    ProcessModel(const std::string &input, const std::vector<LineRule> &rules)
        : _input(input), _states(rules.size())
    {
        for (std::size_t i = 0; i < rules.size(); ++i)
            _states[i].rule = rules[i];
    }

    ProcessedStream run(const LineEdit &end)
    {
        for (Step step = Step::ReadByte; step != Step::End;)
            step = perform(step);
        apply(end); // nothing is flushed behind it
        return _result;
    }

private:
    enum class Step { ReadByte, CompareByte, Match, NoMatch, Reset, End };

    struct State {
        LineRule rule = {};
        std::string matched = {};
        bool failed = false;
    };

    Step perform(Step step)
    {
        switch (step) {
        case Step::ReadByte:
            return readByte();
        case Step::CompareByte:
            return compareByte();
        case Step::Match:
            return match();
        case Step::NoMatch:
            return noMatch();
        case Step::Reset:
            return reset();
        case Step::End:
            break;
        }
        return Step::End;
    }

    Step readByte()
    {
        const auto byte = takeByte(_input);
        if (!byte)
            return Step::End;
        _byte = *byte;
        _result.currentLine += _byte;
        return Step::CompareByte;
    }

    Step compareByte()
    {
        for (State &state : _states) {
            const std::string candidate = state.matched + _byte;
            if (candidate == state.rule.prefix) {
                _matching = &state;
                return Step::Match;
            }
            if (candidate == state.rule.prefix.substr(0, candidate.size())) {
                state.matched = candidate;
            } else {
                state.matched.clear();
                state.failed = true;
            }
        }
        for (const State &state : _states) {
            if (!state.failed)
                return Step::ReadByte;
        }
        return Step::NoMatch;
    }

    Step match()
    {
        _result.currentLine += takeLine(_input);
        _result.seen.push_back({_matching->rule.prefix, _result.currentLine});
        apply(_matching->rule.edit);
        flush();
        return Step::Reset;
    }

    Step noMatch()
    {
        flush();
        const PassedThrough passed = modelOfPassingLine(_input);
        _result.output += passed.output;
        _input = passed.rest;
        return passed.found ? Step::Reset : Step::End;
    }

    Step reset()
    {
        for (State &state : _states) {
            state.matched.clear();
            state.failed = false;
        }
        return Step::ReadByte;
    }

    void apply(const LineEdit &edit)
    {
        _before += edit.before;
        _result.output += edit.atOnce;
        if (edit.replacement)
            _result.currentLine = *edit.replacement;
        _after += edit.after;
    }

    void flush()
    {
        _result.output += _before + _result.currentLine + _after;
        _before.clear();
        _result.currentLine.clear();
        _after.clear();
    }

    std::string _input;
    std::vector<State> _states;
    char _byte = 0;
    State *_matching = nullptr;
    std::string _before;
    std::string _after;
    ProcessedStream _result;
};

} // namespace

ProcessedStream modelOfProcess(const std::string &input, const std::vector<LineRule> &rules,
                               const LineEdit &end)
{
    return ProcessModel(input, rules).run(end);
}

PassedThrough modelOfPassingLine(const std::string &input)
{
    PassedThrough result = {false, "", input};
    while (const auto byte = takeByte(result.rest)) {
        result.output += *byte;
        result.found = *byte == '\n' || *byte == '\r';
        if (*byte == '\n')
            return result;
        if (*byte == '\r') {
            const auto next = takeByte(result.rest);
            if (!next)
                return result;
            result.output += *next;
            if (*next != '\n')
                result.rest = *next + result.rest; // and it will be read, and written, again
            return result;
        }
    }
    return result;
}

PassedThrough modelOfPassingMarker(const std::string &input, const std::string &marker)
{
    PassedThrough result = {false, "", input};
    std::string matched;
    while (const auto byte = takeByte(result.rest)) {
        const std::string candidate = matched + *byte;
        if (candidate == marker.substr(0, candidate.size()))
            matched = candidate;
        else
            matched.clear(); // the byte is not tried again
        result.output += *byte;
        result.found = matched == marker;
        if (result.found)
            return result;
    }
    return result;
}

} // namespace Support
