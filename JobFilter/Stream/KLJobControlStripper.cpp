#include "KLJobControlStripper.h"

#include "PJL.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr std::string_view kMarker = kUniversalExitLanguageMarker;
constexpr std::string_view kPageDataStart = "%!";
constexpr char kControlD = '\x04';

bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t';
}

bool isLineEnd(char byte)
{
    return byte == '\n' || byte == '\r';
}

/// Upper case for ASCII letters, whatever the locale says.
char upperCase(char byte)
{
    return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
}

bool isLetter(char byte)
{
    return upperCase(byte) >= 'A' && upperCase(byte) <= 'Z';
}

} // namespace

KLJobControlStripper::KLJobControlStripper(Sink sink) : _sink(std::move(sink)) {}

void KLJobControlStripper::strip(std::string_view block)
{
    while (!block.empty()) {
        if (_matched == 0) {
            const auto escape = std::min(block.find(kMarker.front()), block.size());
            takeData(block.substr(0, escape));
            block.remove_prefix(escape);
        }
        while (!block.empty() && _matched < kMarker.size() && block.front() == kMarker[_matched]) {
            _matched++;
            block.remove_prefix(1);
        }
        if (_matched == kMarker.size())
            takeMarker();
        else if (!block.empty())
            // The byte that broke the match is looked at again: it may begin a marker itself.
            takeData(kMarker.substr(0, std::exchange(_matched, 0)));
    }
}

void KLJobControlStripper::finish()
{
    takeData(kMarker.substr(0, std::exchange(_matched, 0)));
    _hasDropped = _hasDropped || _pendingEnds > 0;
}

void KLJobControlStripper::takeMarker()
{
    _matched = 0;
    _pendingEnds = 0;
    _skipsLineFeed = false;
    _inJobControl = true;
    _hasDropped = true;
    _lineStart.clear();
}

void KLJobControlStripper::takeData(std::string_view bytes)
{
    if (_inJobControl)
        bytes = skipJobControl(bytes);
    if (!_inJobControl)
        keep(skipLineFeed(bytes));
}

/// Hands over page data but for the control-Ds at its end, which may end all of it.
void KLJobControlStripper::keep(std::string_view bytes)
{
    const auto lastKept = bytes.find_last_not_of(kControlD);
    const auto length = lastKept == std::string_view::npos ? 0 : lastKept + 1;
    if (length > 0) {
        writePendingEnds();
        hand(bytes.substr(0, length));
    }
    _pendingEnds += bytes.size() - length;
}

void KLJobControlStripper::writePendingEnds()
{
    // Piece by piece: there may be as many as the stream is long.
    std::array<char, 4096> ends;
    ends.fill(kControlD);
    while (_pendingEnds > 0) {
        const auto length = std::min(_pendingEnds, ends.size());
        hand({ends.data(), length});
        _pendingEnds -= length;
    }
}

/// @return what is left of the bytes behind the job control; all are gone if it goes on.
std::string_view KLJobControlStripper::skipJobControl(std::string_view bytes)
{
    for (std::size_t i = 0; i < bytes.size(); i++) {
        if (isLineEnd(bytes[i])) {
            if (lineEntersLanguage()) {
                enterPageData();
                _skipsLineFeed = bytes[i] == '\r';
                return bytes.substr(i + 1);
            }
            _lineStart.clear();
            continue;
        }
        noteLineByte(bytes[i]);
        if (_lineStart == kPageDataStart) {
            enterPageData();
            hand(kPageDataStart);
            return bytes.substr(i + 1);
        }
    }
    return {};
}

std::string_view KLJobControlStripper::skipLineFeed(std::string_view bytes)
{
    if (bytes.empty() || !std::exchange(_skipsLineFeed, false) || bytes.front() != '\n')
        return bytes;
    return bytes.substr(1);
}

void KLJobControlStripper::enterPageData()
{
    _inJobControl = false;
    _lineStart.clear();
}

/// Keeps as much of the line as the decision needs, in upper case, each run of blanks as one.
void KLJobControlStripper::noteLineByte(char byte)
{
    if (_lineStart.size() > kEnterLanguage.size())
        return;
    if (byte == kControlD && _lineStart.empty())
        return; // some drivers put it in front of "%!", to end whatever came before
    if (!isBlank(byte))
        _lineStart += upperCase(byte);
    else if (!_lineStart.ends_with(' '))
        _lineStart += ' ';
}

bool KLJobControlStripper::lineEntersLanguage() const
{
    return _lineStart.starts_with(kEnterLanguage) &&
           (_lineStart.size() == kEnterLanguage.size() || !isLetter(_lineStart.back()));
}

void KLJobControlStripper::hand(std::string_view bytes)
{
    _hasKept = true;
    _sink(bytes);
}
