#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

/// Takes the job control out of a stream of page data, block by block.
///
/// A job-control block begins at each universal exit language marker (byte 27 and "%-12345X"),
/// wherever it stands. It goes up to and including the line that enters a page language ("@PJL
/// ENTER LANGUAGE", in any letter case), or up to a line that begins with "%!", to the next marker
/// or to the end, whichever comes first. The "%!" is kept, also directly behind the marker. Lines
/// end at LF, CR or CR LF. Bytes 4 (control-D) right before a marker or the end are dropped too.
///
/// Dropping joins what stood around the dropped bytes. Page data that so complete a marker, whose
/// beginning ends what was kept before them, count as one: they are dropped and begin a job-control
/// block. The beginning stays; it has been handed over, and is no marker by itself.
///
/// All other bytes are kept as they are, in order. So, for every stream, however it is cut into
/// blocks:
/// - What is kept holds no marker.
/// - A stream without job control, which is one that holds no marker and does not end in control-D,
///   is kept byte for byte.
/// - What is kept is without job control in this sense.
///
/// Memory does not grow with the stream. A copy goes on from where the original stands, with the
/// same sink. One thread.
class KLJobControlStripper {
public:
    /// Takes bytes that are kept; the view is valid during the call only.
    using Sink = std::function<void(std::string_view)>;

    /// @param sink  not empty; called from strip() and finish(), never with an empty view. What it
    ///              throws comes through; the stripper is of no use then.
    explicit KLJobControlStripper(Sink sink);

    /// Takes the next bytes of the stream. The last few may be held back until more come.
    void strip(std::string_view block);

    /// The stream has ended: hands over what was held back and belongs to the page data.
    void finish();

    /// True once bytes have been dropped.
    bool hasDropped() const { return _hasDropped; }

    /// True once bytes have been handed to the sink.
    bool hasKept() const { return _hasKept; }

private:
    std::string_view holdMarkerBytes(std::string_view bytes);
    std::size_t keptMatchBefore(char byte) const;
    void takeMarker();
    void takeHeldBytes();
    std::string_view takeUpToEscape(std::string_view bytes);
    std::string_view take(std::string_view bytes);
    void keep(std::string_view bytes);
    void writePendingEnds();
    std::string_view skipJobControl(std::string_view bytes);
    bool beginsWithSkippedLineFeed(std::string_view bytes);
    void enterPageData();
    void noteLineByte(char byte);
    bool lineEntersLanguage() const;
    void hand(std::string_view bytes);

    Sink _sink;
    std::size_t _keptMatch = 0;   ///< with so many bytes of a marker ends what was handed over
    std::size_t _matchStart = 0;  ///< the marker's bytes from this one...
    std::size_t _matched = 0;     ///< ...to this one ended the stream so far and are held back
    std::size_t _pendingEnds = 0; ///< control-Ds that ended the page data so far
    bool _inJobControl = false;
    bool _skipsLineFeed = false; ///< the line before ended in CR: a LF belongs to it
    std::string _lineStart;      ///< in job control: the line's beginning, in normal form
    bool _hasDropped = false;
    bool _hasKept = false;
};
