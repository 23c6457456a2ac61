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
        block = holdMarkerBytes(block);
        if (_matched == kMarker.size()) {
            takeMarker();
        } else if (!block.empty()) {
            takeHeldBytes();
            block = takeUpToEscape(block);
        }
    }
}

void KLJobControlStripper::finish()
{
    takeHeldBytes();
    _hasDropped = _hasDropped || _pendingEnds > 0;
}

/// @return what is left of the bytes behind those that begin a marker, or go on with it.
std::string_view KLJobControlStripper::holdMarkerBytes(std::string_view bytes)
{
    if (_matchStart == _matched)
        _matchStart = _matched = keptMatchBefore(bytes.front());
    while (!bytes.empty() && _matched < kMarker.size() && bytes.front() == kMarker[_matched]) {
        _matched++;
        bytes.remove_prefix(1);
    }
    return bytes;
}

/// How many bytes of a marker end what was kept, where this byte may go on with them.
std::size_t KLJobControlStripper::keptMatchBefore(char byte) const
{
    const bool followsDirectly = !_inJobControl && _pendingEnds == 0;
    return followsDirectly && byte != kMarker.front() ? _keptMatch : 0;
}

void KLJobControlStripper::takeMarker()
{
    _matchStart = _matched = 0;
    _pendingEnds = 0;
    _skipsLineFeed = false;
    _inJobControl = true;
    _hasDropped = true;
    _lineStart.clear();
}

/// The bytes that are held back have not become a marker.
void KLJobControlStripper::takeHeldBytes()
{
    if (_matchStart == _matched)
        return;
    take(kMarker.substr(_matchStart, _matched - _matchStart));
    if (!_inJobControl)
        _keptMatch = _matched;
    _matchStart = _matched = 0;
}

/// Takes bytes up to the next that begins a marker, or goes on with one. @return what is left.
std::string_view KLJobControlStripper::takeUpToEscape(std::string_view bytes)
{
    const auto escape = std::min(bytes.find(kMarker.front()), bytes.size());
    const auto left = take(bytes.substr(0, escape));
    return bytes.substr(escape - left.size());
}

/// Takes bytes in which no marker begins.
/// @return what is left where job control ends: bytes of which the first may belong to a marker.
std::string_view KLJobControlStripper::take(std::string_view bytes)
{
    if (_inJobControl)
        return skipJobControl(bytes);
    if (beginsWithSkippedLineFeed(bytes))
        return bytes.substr(1);
    keep(bytes);
    return {};
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
    static constexpr auto kEnds = [] {
        std::array<char, 4096> ends{};
        ends.fill(kControlD);
        return ends;
    }();
    while (_pendingEnds > 0) {
        const auto length = std::min(_pendingEnds, kEnds.size());
        hand({kEnds.data(), length});
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

bool KLJobControlStripper::beginsWithSkippedLineFeed(std::string_view bytes)
{
    return !bytes.empty() && std::exchange(_skipsLineFeed, false) && bytes.front() == '\n';
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
    _keptMatch = 0;
    _sink(bytes);
}
