#include "KLPostScriptPageCounter.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr char kControlD = '\x04';
/// All that the comments have to say stands in these bytes of a line.
constexpr std::size_t kLongestLine = 256;
/// An end comment so many bytes before or behind the place that a count says is where it should be:
/// line ends are counted by some and not by others.
constexpr std::uint64_t kNear = 4;

bool isLineEnd(char byte)
{
    return byte == '\n' || byte == '\r';
}

bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t';
}

/// Whether the line is this comment, with or without a value.
bool isComment(std::string_view line, std::string_view keyword)
{
    return line.starts_with(keyword) &&
           (line.size() == keyword.size() || line[keyword.size()] == ':' ||
            isBlank(line[keyword.size()]));
}

/// What follows the keyword, without blanks before it.
std::string_view valueOf(std::string_view line)
{
    line.remove_prefix(std::min(line.find_first_of(": \t"), line.size()));
    line.remove_prefix(std::min(line.find_first_not_of(": \t"), line.size()));
    return line;
}

/// The number of bytes in "1234 Hex Bytes", or the nearest there is; nullopt when there is none,
/// and for lines.
std::optional<std::uint64_t> countedBytes(std::string_view value)
{
    std::uint64_t number = UINT64_MAX; // stays so for what is larger
    const auto [rest, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    if (error == std::errc::invalid_argument || value.find("Lines") != std::string_view::npos)
        return std::nullopt;
    return number;
}

} // namespace

void KLPostScriptPageCounter::count(std::string_view block)
{
    while (!block.empty())
        block = _inLine ? readLine(block) : findLine(block);
}

std::optional<std::size_t> KLPostScriptPageCounter::pages() const
{
    KLPostScriptPageCounter whole = *this;
    if (whole._inLine)
        whole.takeLine(); // the last one may lack its line end
    if (whole._isUnclear || !whole._dataEnd.empty() || whole._depth > 0 ||
        whole._pagesOfDocument == 0)
        return std::nullopt;
    return whole._pages;
}

/// Goes to the next line that begins with "%". @return what is left of the bytes, from there on
std::string_view KLPostScriptPageCounter::findLine(std::string_view bytes)
{
    lookAtStart(bytes);
    auto sign = bytes.find('%');
    while (sign != std::string_view::npos &&
           !beginsLine(sign > 0 ? bytes[sign - 1] : _before, _position + sign))
        sign = bytes.find('%', sign + 1);

    const auto passed = std::min(sign, bytes.size());
    pass(bytes.substr(0, passed));
    if (sign != std::string_view::npos) {
        _inLine = true;
        _line.clear();
        _lineBegin = _position;
        _followsControlD = _before == kControlD;
    }
    return bytes.substr(passed);
}

/// Whatever stands in front of the first document may draw pages of its own.
void KLPostScriptPageCounter::lookAtStart(std::string_view bytes)
{
    if (!_isAtStart)
        return;
    const auto first = bytes.find_first_not_of("\x04\r\n\t ");
    if (first == std::string_view::npos)
        return;
    _isAtStart = false;
    _isUnclear = bytes[first] != '%';
}

bool KLPostScriptPageCounter::beginsLine(char before, std::uint64_t position) const
{
    if (isLineEnd(before) || before == kControlD)
        return true;
    // Counted data need no line end before their end comment. The count begins behind a line end of
    // one byte or two.
    return _behindCount > 0 && (position == _behindCount || position == _behindCount + 1);
}

void KLPostScriptPageCounter::pass(std::string_view bytes)
{
    _before = bytes.empty() ? _before : bytes.back();
    _position += bytes.size();
}

/// Reads the line on. @return what is left of the bytes, from its end on
std::string_view KLPostScriptPageCounter::readLine(std::string_view bytes)
{
    auto length = std::min(bytes.find_first_of("\r\n"), bytes.size());
    bool isWhole = length < bytes.size();
    // Where counted data end, a line of theirs does, too.
    if (_position < _behindCount && _behindCount - _position <= length) {
        length = static_cast<std::size_t>(_behindCount - _position);
        isWhole = true;
    }
    _line += bytes.substr(0, std::min(length, kLongestLine - _line.size()));
    pass(bytes.substr(0, length));
    if (isWhole)
        takeLine();
    return bytes.substr(length);
}

void KLPostScriptPageCounter::takeLine()
{
    _inLine = false;
    if (!_dataEnd.empty())
        takeLineOfData();
    else
        takeComment();
}

void KLPostScriptPageCounter::takeLineOfData()
{
    if (!isComment(_line, _dataEnd))
        return;
    if (_lineBegin + kNear < _behindCount) {
        _hasInnerEnd = true;
        return;
    }
    _isUnclear = _isUnclear || (_hasInnerEnd && _lineBegin > _behindCount + kNear);
    _dataEnd = {};
    _behindCount = 0;
}

void KLPostScriptPageCounter::takeComment()
{
    if (isComment(_line, "%%BeginBinary"))
        beginData("%%EndBinary");
    else if (isComment(_line, "%%BeginData"))
        beginData("%%EndData");
    else if (isComment(_line, "%%BeginDocument"))
        beginEmbeddedDocument();
    else if (isComment(_line, "%%EndDocument"))
        _depth -= _depth > 0 ? 1 : 0;
    else if (_depth > 0)
        return;
    else if (_line.starts_with("%!") && (_mayBegin || _followsControlD))
        beginDocument();
    else if (_line.starts_with("%%Page:"))
        beginPage();
    else if (isComment(_line, "%%EOF"))
        _mayBegin = true;
}

/// The line begins data that this comment ends.
void KLPostScriptPageCounter::beginData(std::string_view end)
{
    const auto bytes = countedBytes(valueOf(_line));
    _dataEnd = end;
    _hasInnerEnd = false;
    // They begin behind the line's end, which is taken for one byte.
    const auto begin = _position + 1;
    _behindCount = bytes ? begin + std::min(*bytes, UINT64_MAX - begin) : 0;
}

void KLPostScriptPageCounter::beginEmbeddedDocument()
{
    // The whole of a document that does not keep the conventions, which pstops calls one page.
    _isUnclear = _isUnclear || (_depth == 0 && valueOf(_line) == "nondsc");
    ++_depth;
}

void KLPostScriptPageCounter::beginDocument()
{
    _isUnclear =
        _isUnclear || !_line.starts_with("%!PS-Adobe-") || (_inDocument && _pagesOfDocument == 0);
    _inDocument = true;
    _mayBegin = false;
    _pagesOfDocument = 0;
}

void KLPostScriptPageCounter::beginPage()
{
    _isUnclear = _isUnclear || !_inDocument;
    // The end before was that of a document on the page before.
    _mayBegin = false;
    ++_pages;
    ++_pagesOfDocument;
}
