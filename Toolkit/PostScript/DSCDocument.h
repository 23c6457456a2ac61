#pragma once

#include "DSCMedia.h"
#include "DSCScanner.h"
#include "InputFile.h"
#include "PageSizes.h"

#include <cstdint>
#include <cstdio>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// Bytes of the document, from begin up to end.
struct DSCRange {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
};

/// How a page is held for reading. On portrait paper, the contents of a landscape page are turned
/// counter-clockwise by 90 degrees.
enum class DSCOrientation : std::uint8_t { Unsaid, Portrait, Landscape };

/// Where a page lies in the document.
struct DSCPage {
    std::uint64_t begin = 0;   ///< of its %%Page comment
    std::uint64_t content = 0; ///< behind it and the comments on the page that follow it
    std::uint64_t end = 0;
    std::uint32_t media = DSCMedia::kDefault; ///< a number of DSCMedia
    DSCOrientation orientation = DSCOrientation::Unsaid;
};

/// A PostScript document by the structuring conventions (DSC 3.0): where its parts lie. Nothing of
/// them is kept in memory but a few words for each page.
///
/// The parts follow each other without a gap: header, prolog (with defaults), setup, pages,
/// trailer. What counts is what is there, not what comments say about it: the pages are those
/// that have a %%Page comment, but for one that lies in the prolog or the setup, and the trailer
/// begins at the last %%Trailer or %%EOF that no page follows and no rest of one.
class DSCDocument {
public:
    /// How the names of all procedure sets begin that the toolkit adds to a document.
    static constexpr std::string_view kOurProcSets = "KLToolkit";

    /// Is told, now and then while a document is read, how far that is. Then:
    /// - All up to scanner.passed() belongs to what stands ahead of the pages or to pages; this
    ///   lies behind the begin of the content of the last page there is by now, whose end is not
    ///   known yet.
    /// - What is known of the parts ahead of the pages and of where pages begin is so to the end;
    ///   what is known of media and orientation, and of the operators' dictionary, may change.
    using Progress = std::function<void(const DSCDocument &soFar, const DSCScanner &scanner)>;

    /// Reads the whole file once. Job control around the document counts as if it were not there.
    /// @param stream    seekable; stays the caller's, who keeps it open at least as long
    /// @param progress  is told of larger documents only; may throw
    /// @throws ToolkitError when it cannot be read, has no page comments, ends inside an embedded
    ///         document or leaves the job that defines what it is given
    explicit DSCDocument(std::FILE *stream, const Progress &progress = {});
    DSCDocument(const DSCDocument &) = delete;
    DSCDocument &operator=(const DSCDocument &) = delete;

    const InputFile &file() const { return _file; }

    /// From the start of the file to the end of the header's comments.
    DSCRange header() const { return {0, _headerEnd}; }
    /// Behind the line that says what kind of file this is.
    std::uint64_t endOfFirstLine() const { return _endOfFirstLine; }
    /// Where procedures can be defined ahead of all that the document itself defines.
    std::uint64_t beginOfProcedures() const { return _beginOfProcedures; }
    /// Behind the %%BeginSetup comment; nullopt when there is none behind the prolog.
    std::optional<std::uint64_t> beginOfSetup() const { return _beginOfSetup; }
    /// At least one.
    const std::vector<DSCPage> &pages() const { return _pages; }
    /// The page's %%Page comment, read from the file.
    /// @throws ToolkitError when it cannot be read
    DSCComment pageComment(const DSCPage &page) const;
    /// Whether nothing but white space follows the comments of every page. Not when its end is
    /// missing: what the pages draw may be there.
    /// @throws ToolkitError when it cannot be read
    bool hasEmptyPagesOnly() const;
    /// From behind the last page to the end of the file.
    DSCRange trailer() const { return {_trailer, _file.size()}; }

    /// Whether what stands ahead of the pages runs one of some operators, as far as its words tell
    /// (see runsAnyOf()).
    /// @throws ToolkitError when it cannot be read
    bool runsAheadOfPages(const std::set<std::string> &operators) const;

    /// Whether a word stands anywhere ahead of the pages.
    /// @param word  of two bytes or more
    /// @throws ToolkitError when it cannot be read
    bool namesAheadOfPages(std::string_view word) const;

    /// Whether there is only one page, and it holds the end of the prolog or of the setup.
    bool hasPartInOnlyPage() const { return _hasPartInOnlyPage; }

    /// Whether the end of the document is there: a %%Trailer or an %%EOF comment.
    bool isComplete() const { return _complete; }
    /// Whether the page is the one that such an end is missing behind: it may stop anywhere.
    bool isCutOff(const DSCPage &page) const { return !_complete && page.end == _trailer; }
    /// What is missing of the comment that should end the data that the document ends inside: all
    /// of it, or the rest where it is cut off. Empty when it does not.
    std::string_view missingEndOfData() const { return _missingEndOfData; }
    /// Whether anything in it names the dictionary of the operators, where it may look for
    /// operators that have been given another meaning. What lies far inside counted data does not
    /// count.
    bool namesOperatorDictionary() const { return _namesOperatorDictionary; }
    /// How many procedure sets with a name that begins with kOurProcSets the document carries.
    unsigned countOfOurProcSets() const { return _countOfOurProcSets; }
    /// The size that media comments give a page; nullopt when they do not.
    std::optional<PageSize> mediaOf(const DSCPage &page) const { return _media.sizeOf(page.media); }
    /// What the comments say of a page or else of the whole document.
    DSCOrientation orientationOf(const DSCPage &page) const
    {
        return page.orientation == DSCOrientation::Unsaid ? _orientation : page.orientation;
    }

private:
    friend class DSCReader;

    InputFile _file;
    std::uint64_t _endOfFirstLine = 0;
    std::uint64_t _headerEnd = 0;
    std::uint64_t _beginOfProcedures = 0;
    std::optional<std::uint64_t> _beginOfSetup;
    std::vector<DSCPage> _pages;
    std::uint64_t _trailer = 0;
    bool _hasPartInOnlyPage = false;
    bool _complete = false;
    std::string_view _missingEndOfData;
    bool _namesOperatorDictionary = false;
    unsigned _countOfOurProcSets = 0;
    DSCMedia _media;
    DSCOrientation _orientation = DSCOrientation::Unsaid;
};

/// The label in a %%Page comment: one word, or a text with its parentheses.
/// @return "?" when the comment has none; else a part of the comment, good as long as that is
std::string_view labelOfPage(const DSCComment &comment);
