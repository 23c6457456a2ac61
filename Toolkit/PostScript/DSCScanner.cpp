#include "DSCScanner.h"

#include <algorithm>
#include <charconv>

namespace {

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

bool isBlank(char byte)
{
    return kBlanks.find(byte) != std::string_view::npos;
}

bool isLineEnd(char byte)
{
    return byte == '\n' || byte == '\r';
}

/// Where the first line end is; the size when there is none.
std::size_t lineEndIn(std::string_view bytes)
{
    return static_cast<std::size_t>(std::ranges::find_if(bytes, isLineEnd) - bytes.begin());
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
    if (text.size() == keyword.size())
        return text == keyword;
    return text.size() > keyword.size() &&
           (text[keyword.size()] == ':' || isBlank(text[keyword.size()])) &&
           text.starts_with(keyword);
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
    : _window(file, end, watched), _place{begin}, _end(std::min(end, file.size()))
{
    const std::string start = file.text(0, kLongestText);
    const std::size_t lineEnd = lineEndIn(start);
    _linesEndWithCR =
        lineEnd + 1 < start.size() && start[lineEnd] == '\r' && start[lineEnd + 1] != '\n';
    _fileIsWhole = endsWithEOF(file);
}

std::optional<DSCComment> DSCScanner::next()
{
    while (auto comment = nextLine(_place)) {
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

/// The bytes from a position on, as the window gives them.
std::string_view DSCScanner::from(std::uint64_t position, std::size_t atLeast)
{
    if (_beforeLettingGo && !_window.holds(position, atLeast))
        _beforeLettingGo();
    return _window.from(position, atLeast);
}

/// The next line that begins with "%%". The place moves behind it, or to the end.
std::optional<DSCComment> DSCScanner::nextLine(Place &place)
{
    if (!findLine(place))
        return std::nullopt;
    DSCComment comment = commentAt(place.position);
    place = {comment.end};
    return comment;
}

/// Moves the place to the next line that begins with "%%".
/// @return false when there is none; the place is the end then
bool DSCScanner::findLine(Place &place)
{
    while (true) {
        const std::string_view bytes = from(place.position, 2);
        if (bytes.size() < 2) {
            place = {_end};
            return false;
        }
        for (auto sign = bytes.find('%'); sign < bytes.size() - 1; sign = bytes.find('%', sign)) {
            const char before = sign > 0 ? bytes[sign - 1] : place.before;
            if (bytes[sign + 1] == '%' && isLineEnd(before)) {
                place = {place.position + sign, before};
                return true;
            }
            ++sign;
        }
        // The last byte may be the first of two signs.
        place = {place.position + bytes.size() - 1, bytes[bytes.size() - 2]};
    }
}

DSCComment DSCScanner::commentAt(std::uint64_t position)
{
    DSCComment comment;
    comment.begin = position;
    const std::string_view bytes = from(position, kLongestText);
    comment.text = bytes.substr(0, lineEndIn(bytes.substr(0, kLongestText)));
    comment.end = behindLine(position + comment.text.size());
    return comment;
}

std::uint64_t DSCScanner::behindLine(std::uint64_t position)
{
    while (true) {
        const std::string_view bytes = from(position, 2);
        if (bytes.empty())
            return _end;
        const std::size_t lineEnd = lineEndIn(bytes);
        if (lineEnd == bytes.size()) {
            position += bytes.size();
            continue;
        }
        if (bytes[lineEnd] == '\n' || _linesEndWithCR)
            return position + lineEnd + 1;
        const bool isPair = from(position + lineEnd, 2).starts_with("\r\n");
        return position + lineEnd + (isPair ? 2 : 1);
    }
}

/// Moves the place behind a section of data.
void DSCScanner::passOver(const DSCComment &begin, DataSection &section)
{
    const auto behind = _wrongCounts < kMostWrongCounts ? behindCount(begin) : std::nullopt;
    if (behind) {
        if (const auto end = endCommentNear(*behind, section.end)) {
            _place = {behindLine(*end)};
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
    if (reachesEnd)
        _place = {_end};
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
    const std::string_view bytes = from(position, keyword.size() + 4);
    const auto begin = std::min(bytes.find_first_not_of(" \t\r\n"), bytes.size());
    const std::string_view found = bytes.substr(begin, keyword.size());
    if (begin > 4 || found.empty() || !keyword.starts_with(found))
        return std::nullopt;
    return position + begin;
}

/// Moves the place behind the next end comment of that kind.
/// @return false when there is none; the place stays where it is then
bool DSCScanner::findEndComment(DataSection &section)
{
    if (section.hasNoEnd)
        return false;
    Place place = _place;
    while (const auto comment = nextLine(place)) {
        if (comment->is(section.end)) {
            _place = place;
            return true;
        }
    }
    section.hasNoEnd = true;
    return false;
}
