#include "DSCScanner.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr std::string_view kLineEnds = "\r\n";
constexpr std::string_view kBlanks = " \t";

/// Each wrong count may cost a look at the rest of the document. After so many of them, counts are
/// no longer believed.
constexpr unsigned kMostWrongCounts = 16;

std::string_view withoutBlanks(std::string_view text)
{
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool isLineEnd(char byte)
{
    return byte == '\n' || byte == '\r';
}

/// What the value of "%%BeginData: 1234 Hex Bytes" counts.
struct Count {
    std::uint64_t number = 0;
    bool ofLines = false;
};

std::optional<Count> countFromValue(std::string_view value)
{
    Count count;
    const auto [rest, error] =
        std::from_chars(value.data(), value.data() + value.size(), count.number);
    if (error != std::errc())
        return std::nullopt;
    count.ofLines = value.ends_with("Lines");
    return count;
}

bool endsWithEOF(const InputFile &file)
{
    constexpr std::uint64_t kMost = 64;
    std::string end = file.text(file.size() - std::min(file.size(), kMost), file.size());
    end.resize(end.find_last_not_of(" \t\r\n") + 1);
    return end.ends_with("%%EOF");
}

} // namespace

bool DSCComment::is(std::string_view keyword) const
{
    if (!text.starts_with(keyword))
        return false;
    return text.size() == keyword.size() || text[keyword.size()] == ':' ||
           kBlanks.find(text[keyword.size()]) != std::string_view::npos;
}

std::string_view DSCComment::value() const
{
    const std::string_view whole = text;
    const auto separator = whole.find_first_of(": \t");
    if (separator == std::string_view::npos)
        return {};
    return withoutBlanks(whole.substr(separator + 1));
}

DSCScanner::DSCScanner(const InputFile &file, std::uint64_t begin, std::uint64_t end,
                       std::string_view watched)
    : _window(file, end, watched), _position(begin), _end(std::min(end, file.size()))
{
    const std::string start = file.text(0, kLongestText);
    const auto lineEnd = start.find_first_of(kLineEnds);
    _linesEndWithCR = lineEnd != std::string::npos && start[lineEnd] == '\r' &&
                      lineEnd + 1 < start.size() && start[lineEnd + 1] != '\n';
    _fileIsWhole = endsWithEOF(file);
}

std::optional<DSCComment> DSCScanner::next()
{
    while (auto comment = nextLine()) {
        if (comment->is(_binary.begin))
            passOver(*comment, _binary);
        else if (comment->is(_data.begin))
            passOver(*comment, _data);
        else if (comment->is("%%BeginDocument"))
            ++_depth;
        else if (comment->is("%%EndDocument"))
            _depth -= _depth > 0 ? 1 : 0;
        else if (_depth == 0)
            return comment;
    }
    return std::nullopt;
}

std::optional<DSCComment> DSCScanner::nextLine()
{
    const auto begin = findLine();
    if (!begin)
        return std::nullopt;
    DSCComment comment = commentAt(*begin);
    _position = comment.end;
    _before = '\n';
    return comment;
}

/// The next line that begins with "%%", from the position on.
std::optional<std::uint64_t> DSCScanner::findLine()
{
    while (true) {
        const std::string_view bytes = _window.from(_position, 2);
        if (bytes.size() < 2) {
            _position = _end;
            return std::nullopt;
        }
        for (auto sign = bytes.find('%'); sign < bytes.size() - 1; sign = bytes.find('%', sign)) {
            const char before = sign > 0 ? bytes[sign - 1] : _before;
            if (bytes[sign + 1] == '%' && isLineEnd(before))
                return _position + sign;
            ++sign;
        }
        // The last byte may be the first of two signs.
        _before = bytes[bytes.size() - 2];
        _position += bytes.size() - 1;
    }
}

DSCComment DSCScanner::commentAt(std::uint64_t position)
{
    DSCComment comment;
    comment.begin = position;
    const std::string_view bytes = _window.from(position, kLongestText);
    comment.text = bytes.substr(0, std::min(bytes.find_first_of(kLineEnds), kLongestText));
    comment.end = behindLine(position + comment.text.size());
    return comment;
}

std::uint64_t DSCScanner::behindLine(std::uint64_t position)
{
    while (true) {
        const std::string_view bytes = _window.from(position, 2);
        if (bytes.empty())
            return _end;
        const auto lineEnd = bytes.find_first_of(kLineEnds);
        if (lineEnd == std::string_view::npos) {
            position += bytes.size();
            continue;
        }
        if (bytes[lineEnd] == '\n' || _linesEndWithCR)
            return position + lineEnd + 1;
        const bool isPair = _window.from(position + lineEnd, 2).starts_with("\r\n");
        return position + lineEnd + (isPair ? 2 : 1);
    }
}

/// Moves the position behind a section of data.
void DSCScanner::passOver(const DSCComment &begin, DataSection &section)
{
    const auto behind = _wrongCounts < kMostWrongCounts ? behindCount(begin) : std::nullopt;
    if (behind) {
        if (const auto end = endCommentNear(*behind, section.end)) {
            _position = behindLine(*end);
            const auto there = std::min<std::uint64_t>(_end - *end, section.end.size());
            _missingEndOfData = section.end.substr(static_cast<std::size_t>(there));
            return;
        }
    }
    // The count is wrong, or the document ends too early.
    ++_wrongCounts;
    const bool othersEnd = !section.hasNoEnd;
    if (findEndComment(section))
        return;
    const bool reachesEnd = othersEnd && behind && *behind >= _end && !_fileIsWhole;
    _position = reachesEnd ? _end : begin.end;
    _before = '\n';
    _missingEndOfData = reachesEnd ? section.end : std::string_view();
}

/// Where the data end by their count; nullopt when there is none.
std::optional<std::uint64_t> DSCScanner::behindCount(const DSCComment &begin)
{
    const auto count = countFromValue(begin.value());
    if (!count)
        return std::nullopt;
    if (!count->ofLines)
        return begin.end + std::min(count->number, _end - begin.end);

    std::uint64_t position = begin.end;
    for (std::uint64_t line = 0; line < count->number && position < _end; ++line)
        position = behindLine(position);
    return position;
}

/// The end comment, if it stands there, perhaps behind a line end or two that were not counted, or
/// what the end of the document leaves of it.
std::optional<std::uint64_t> DSCScanner::endCommentNear(std::uint64_t position,
                                                        std::string_view keyword)
{
    const std::string_view bytes = _window.from(position, keyword.size() + 4);
    const auto begin = std::min(bytes.find_first_not_of(" \t\r\n"), bytes.size());
    const std::string_view found = bytes.substr(begin, keyword.size());
    if (begin > 4 || found.empty() || !keyword.starts_with(found))
        return std::nullopt;
    return position + begin;
}

/// Moves the position behind the next end comment of that kind.
/// @return false when there is none; the position is the end then
bool DSCScanner::findEndComment(DataSection &section)
{
    if (section.hasNoEnd)
        return false;
    while (const auto comment = nextLine()) {
        if (comment->is(section.end))
            return true;
    }
    section.hasNoEnd = true;
    return false;
}
