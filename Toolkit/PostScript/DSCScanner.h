#pragma once

#include "InputFile.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

/// One line of a PostScript document that begins with "%%".
struct DSCComment {
    std::uint64_t begin = 0; ///< position of its first byte
    std::uint64_t end = 0;   ///< behind its line end
    std::string text;        ///< without line end, at most DSCScanner::kLongestText bytes

    /// Whether it is this one ("%%Page"), with or without a value behind a colon or a blank.
    bool is(std::string_view keyword) const;
    /// What follows the keyword, without blanks around it; empty when nothing does. A part of
    /// `text`.
    std::string_view value() const;
};

/// Finds the comments that structure a document (DSC 3.0), in the order of the file. One pass; what
/// reads throws ToolkitError when reading fails.
///
/// What lies inside embedded documents (%%BeginDocument), counted binary and counted data is
/// content, whatever it looks like, and the comments that frame it are passed over with it. A
/// count that is wrong is mended where the end comment shows it. Lines end with CR, LF or both.
/// Needs the same memory for every document.
class DSCScanner {
public:
    /// In bytes. Longer comments are cut.
    static constexpr std::size_t kLongestText = 1024;

    /// @param file     stays the caller's, who keeps it at least as long
    /// @param begin    a line begins here
    /// @param end      the scan ends here
    /// @param watched  a word to look out for; empty for none. Its bytes stay the caller's.
    DSCScanner(const InputFile &file, std::uint64_t begin, std::uint64_t end,
               std::string_view watched = {});

    /// Has a function called whenever the scan is about to let go of bytes that it holds. It may
    /// ask for passed() and for what is held, and nothing else.
    void beforeLettingGo(std::function<void()> function) { _beforeLettingGo = std::move(function); }

    /// What lies ahead of this position has been scanned, and the comments in it have been
    /// returned.
    std::uint64_t passed() const { return _place.position; }

    /// Where the bytes begin that the scan holds in memory just now.
    std::uint64_t beginOfHeld() const { return _window.begin(); }
    /// Those bytes from a position on, past what has been scanned.
    /// @return valid until the scan goes on; empty for a position that is not held
    std::string_view held(std::uint64_t position) const { return _window.held(position); }

    /// The next comment outside all data.
    /// @return nullopt at the end
    std::optional<DSCComment> next();

    /// The begin of the line that follows the one at this position; the end after the last line.
    std::uint64_t behindLine(std::uint64_t position);

    /// Once next() has come to the end: whether that lies inside an embedded document.
    bool endedInsideDocument() const { return _depth > 0; }

    /// Once next() has come to the end: what is missing of the comment that should end the data
    /// that this lies inside. All of it, or the rest where it is cut off; empty outside data.
    std::string_view missingEndOfData() const { return _missingEndOfData; }

    /// Once next() has come to the end: whether the watched word stands anywhere but far inside
    /// counted data.
    bool hasSeenWatched() const { return _window.hasSeenWatched(); }

private:
    struct DataSection {
        std::string_view begin;
        std::string_view end;
        bool hasNoEnd = false; ///< none follows: a second search would find none either
    };

    struct Place {
        std::uint64_t position;
        char before = '\n'; ///< the byte in front of it
    };

    std::string_view from(std::uint64_t position, std::size_t atLeast);
    std::optional<DSCComment> nextLine(Place &place);
    bool findLine(Place &place);
    DSCComment commentAt(std::uint64_t position);
    void passOver(const DSCComment &begin, DataSection &section);
    std::optional<std::uint64_t> behindCount(const DSCComment &begin);
    std::optional<std::uint64_t> endCommentNear(std::uint64_t position, std::string_view keyword);
    bool findEndComment(DataSection &section);

    FileWindow _window;
    std::function<void()> _beforeLettingGo;
    Place _place;
    std::uint64_t _end;
    bool _linesEndWithCR = false; ///< alone, so that a LF behind it belongs to what follows
    std::uint64_t _depth = 0;     ///< of embedded documents
    DataSection _binary{"%%BeginBinary", "%%EndBinary"};
    DataSection _data{"%%BeginData", "%%EndData"};
    std::string_view _missingEndOfData;
    unsigned _wrongCounts = 0;
    bool _fileIsWhole; ///< it ends with an %%EOF comment
};
