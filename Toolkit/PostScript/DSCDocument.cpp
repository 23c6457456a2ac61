#include "DSCDocument.h"

#include "DSCScanner.h"
#include "JobControl.h"
#include "PostScriptWords.h"
#include "ToolkitError.h"

#include <algorithm>

namespace {

constexpr std::string_view kOperatorDictionary = "systemdict";

/// Whether nothing but white space lies between the two positions.
bool isBlank(const InputFile &file, std::uint64_t begin, std::uint64_t end)
{
    constexpr std::uint64_t kMost = 1024;
    return end - begin <= kMost &&
           file.text(begin, end).find_first_not_of(" \t\r\n\f") == std::string::npos;
}

bool beginsAnotherPart(std::string_view line)
{
    return line.starts_with("%%Begin") || line.starts_with("%%Page:") ||
           line.starts_with("%%EndProlog") || line.starts_with("%%EndSetup") ||
           line.starts_with("%%Trailer") || line.starts_with("%%EOF");
}

/// Comments behind a %%Page comment that still tell about the page.
bool tellsAboutPage(const DSCComment &comment)
{
    const std::string_view text = comment.text;
    return (text.starts_with("%%Page") && !comment.is("%%PageTrailer")) ||
           text.starts_with("%%Viewing") || comment.is("%%+");
}

/// Takes in what a comment says of the orientation; words that are not known say nothing.
void readOrientation(const DSCComment &comment, DSCOrientation &orientation)
{
    if (comment.value() == "Portrait")
        orientation = DSCOrientation::Portrait;
    else if (comment.value() == "Landscape")
        orientation = DSCOrientation::Landscape;
}

/// Comments that only the header of a document has.
bool isOfHeader(const DSCComment &comment)
{
    return comment.is("%%BoundingBox") || comment.is("%%EndComments");
}

/// The word that a page is ended with; empty for one that ends otherwise or that says nothing.
std::string lastWordOf(const InputFile &file, const DSCPage &page)
{
    static const std::set<std::string_view> kMeaningless = {"def",         "end", "grestore",
                                                            "grestoreall", "pop", "restore"};
    constexpr std::uint64_t kMost = 1024;
    const std::uint64_t begin = std::max(page.content, page.end - std::min(page.end, kMost));
    std::string last;
    for (PostScriptWords words(file, begin, page.end); const auto word = words.next();)
        last = word->text;
    const bool isName = !last.empty() && !last.starts_with('/') && last != "{" && last != "}";
    return isName && !kMeaningless.contains(last) ? last : std::string();
}

/// Where one of the words stands last.
std::optional<std::uint64_t> lastOf(const std::set<std::string> &sought, PostScriptWords words)
{
    std::optional<std::uint64_t> last;
    while (const auto word = words.next()) {
        if (sought.contains(word->text))
            last = word->begin;
    }
    return last;
}

} // namespace

/// Goes through the comments in the order of the file and notes where the parts lie.
class DSCReader {
public:
    DSCReader(DSCDocument &document, const DSCDocument::Progress &progress)
        : _document(document),
          _progress(progress),
          _scanner(document._file, 0, document._file.size(), kOperatorDictionary)
    {
        if (_progress)
            _scanner.beforeLettingGo([this] { tellProgress(); });
    }
    DSCReader(const DSCReader &) = delete;
    DSCReader &operator=(const DSCReader &) = delete;

    void read();

private:
    enum class Part { Preamble, Body, Pages };

    void findHeaderEnd();
    void readDocumentComment(const DSCComment &comment);
    void readPreamble(const DSCComment &comment);
    void beginProlog(const DSCComment &comment);
    void readBody(const DSCComment &comment);
    void beginSetup(const DSCComment &comment);
    void readOpenPart(const DSCComment &comment);
    void readPage(const DSCComment &comment);
    void beginPage(const DSCComment &comment);
    void readTrailer(const DSCComment &comment);
    void finish();
    std::optional<std::uint64_t> restOfLastPage() const;
    void readTrailerBehind(std::uint64_t restOfPage);
    void tellProgress();

    DSCDocument &_document;
    const DSCDocument::Progress &_progress;
    DSCScanner _scanner;
    Part _part = Part::Preamble;
    std::string_view _inside; ///< what ends the section of the preamble that is being passed
    std::string_view _openPart = "%%EndProlog"; ///< what ends the one ahead of the pages
    bool _openPartHasBegun = false;             ///< with a comment of its own
    bool _pagesAreNone = false;                 ///< so far: their comments lie in that part
    std::optional<std::uint64_t> _setupBehindNone;
    bool _inTrailer = false;
    bool _hasEnded = false; ///< of the document, or of one that is embedded without a word
};

void DSCReader::read()
{
    _document._endOfFirstLine = _scanner.behindLine(0);
    findHeaderEnd();
    _document._beginOfProcedures = _document._headerEnd;
    while (const auto comment = _scanner.next()) {
        if (comment->is("%%BeginExitServer"))
            throw ToolkitError("The PostScript document leaves its job (exitserver), and what is "
                               "defined for its pages would be gone.");
        if (comment->end <= _document._headerEnd)
            readDocumentComment(*comment);
        else if (comment->is("%%Page"))
            beginPage(*comment);
        else if (_part == Part::Preamble)
            readPreamble(*comment);
        else if (_part == Part::Body)
            readBody(*comment);
        else
            readPage(*comment);
    }
    finish();
}

/// In the header and in the trailer.
void DSCReader::readDocumentComment(const DSCComment &comment)
{
    _document._media.readDocumentComment(comment);
    if (comment.is("%%Orientation") || comment.is("%%PageOrientation"))
        readOrientation(comment, _document._orientation);
}

/// The header ends with its end comment, or before the first line that is no comment.
void DSCReader::findHeaderEnd()
{
    FileWindow window(_document._file, _document._file.size());
    std::uint64_t line = 0;
    while (true) {
        const std::string_view text = window.from(line, DSCScanner::kLongestText);
        if (text.size() < 2 || text[0] != '%' || text[1] <= ' ' || beginsAnotherPart(text))
            break;
        line = _scanner.behindLine(line);
        if (text.starts_with("%%EndComments"))
            break;
    }
    _document._headerEnd = line;
}

/// Between header and prolog: preview and defaults, whose comments are not our concern.
void DSCReader::readPreamble(const DSCComment &comment)
{
    if (!_inside.empty()) {
        if (comment.is(_inside)) {
            _inside = {};
            _document._beginOfProcedures = comment.end;
        } else if (comment.is("%%PageMedia")) {
            _document._media.setDefault(_document._media.numberFromPageComment(comment));
        } else if (comment.is("%%PageOrientation")) {
            readOrientation(comment, _document._orientation);
        }
        return;
    }
    if (isBlank(_document._file, _document._beginOfProcedures, comment.begin)) {
        if (comment.is("%%BeginDefaults"))
            _inside = "%%EndDefaults";
        else if (comment.is("%%BeginPreview"))
            _inside = "%%EndPreview";
        else if (comment.is("%%BeginProlog"))
            beginProlog(comment);
        if (!_inside.empty())
            return;
    }
    _part = Part::Body;
    readBody(comment);
}

void DSCReader::beginProlog(const DSCComment &comment)
{
    _document._beginOfProcedures = comment.end;
    _openPartHasBegun = true;
}

void DSCReader::readBody(const DSCComment &comment)
{
    if (comment.is("%%EndProlog") || comment.is("%%EndSetup"))
        _openPart = {};
    if (comment.is("%%EndProlog"))
        _document._beginOfSetup = {}; // it would lie in the prolog, in a procedure perhaps
    else if (comment.is("%%BeginSetup"))
        beginSetup(comment);
    else if (comment.is("%%BeginResource") &&
             comment.value().starts_with("procset " + std::string(DSCDocument::kOurProcSets)))
        ++_document._countOfOurProcSets;
}

void DSCReader::beginSetup(const DSCComment &comment)
{
    _openPart = "%%EndSetup";
    _openPartHasBegun = true;
    if (!_document._beginOfSetup)
        _document._beginOfSetup = comment.end;
}

void DSCReader::beginPage(const DSCComment &comment)
{
    if (_pagesAreNone) {
        _document._pages.clear();
        _pagesAreNone = false;
        if (!_document._beginOfSetup)
            _document._beginOfSetup = _setupBehindNone;
    }
    if (!_document._pages.empty())
        _document._pages.back().end = comment.begin;
    _document._pages.push_back({comment.begin, comment.end, comment.end});
    _part = Part::Pages;
    // What looked like the trailer belonged to a document embedded without a word.
    _inTrailer = false;
    _hasEnded = false;
}

/// The page comments so far may be some that stand in the prolog or in the setup, if these end only
/// here. But there may be a document with a prolog of its own in the page: of several pages that is
/// believed only where that part has begun.
void DSCReader::readOpenPart(const DSCComment &comment)
{
    if (_document._pages.size() > 1 && !_openPartHasBegun)
        _openPart = {};
    const bool endsPart = !_openPart.empty() && comment.is(_openPart);
    _pagesAreNone = _pagesAreNone || endsPart;
    if (endsPart || isOfHeader(comment))
        _openPart = {};
    else if (_pagesAreNone && comment.is("%%BeginSetup") && !_setupBehindNone)
        _setupBehindNone = comment.end;
}

void DSCReader::readPage(const DSCComment &comment)
{
    readOpenPart(comment);
    DSCPage &page = _document._pages.back();
    if (_inTrailer || comment.is("%%Trailer") || comment.is("%%EOF")) {
        readTrailer(comment);
        return;
    }
    if (comment.begin == page.content && tellsAboutPage(comment))
        page.content = comment.end;
    if (comment.is("%%PageMedia"))
        page.media = _document._media.numberFromPageComment(comment);
    else if (comment.is("%%PageOrientation") && page.orientation == DSCOrientation::Unsaid)
        readOrientation(comment, page.orientation);
}

void DSCReader::readTrailer(const DSCComment &comment)
{
    const bool isTrailer = comment.is("%%Trailer");
    if (!_inTrailer || (_hasEnded && isTrailer))
        _document._trailer = comment.begin;
    _inTrailer = true;
    _hasEnded = comment.is("%%EOF") || (_hasEnded && !isTrailer);
    readDocumentComment(comment);
}

void DSCReader::finish()
{
    if (_document._pages.empty())
        throw ToolkitError("The PostScript document has no page comments.");
    if (_scanner.endedInsideDocument())
        throw ToolkitError("The PostScript document ends inside an embedded document.");
    if (!_inTrailer)
        _document._trailer = _document._file.size();
    _document._pages.back().end = _document._trailer;
    if (const auto rest = restOfLastPage())
        readTrailerBehind(*rest);
    _document._complete = _inTrailer;
    _document._hasPartInOnlyPage = _pagesAreNone && _document._pages.size() == 1;
    _document._missingEndOfData = _scanner.missingEndOfData();
    _document._pages.back().end = _document._trailer;
    _document._namesOperatorDictionary = _scanner.hasSeenWatched();
}

/// Where the last page goes on behind what looks like the begin of the trailer: the word that ends
/// the pages is missing ahead of it and stands behind it.
std::optional<std::uint64_t> DSCReader::restOfLastPage() const
{
    const InputFile &file = _document._file;
    const std::vector<DSCPage> &pages = _document._pages;
    const DSCPage &last = pages.back();
    if (isBlank(file, last.content, last.end))
        return std::nullopt;
    std::set<std::string> ends = {"showpage"};
    if (pages.size() > 1)
        ends.insert({lastWordOf(file, pages.front()), lastWordOf(file, pages[pages.size() - 2])});
    const auto rest = lastOf(ends, {file, _document._trailer, file.size()});
    const bool isEnded = rest && lastOf(ends, {file, last.content, last.end});
    return isEnded ? std::nullopt : rest;
}

void DSCReader::readTrailerBehind(std::uint64_t restOfPage)
{
    DSCScanner scanner(_document._file, restOfPage, _document._file.size());
    auto comment = scanner.next();
    while (comment && !comment->is("%%Trailer") && !comment->is("%%EOF"))
        comment = scanner.next();
    _inTrailer = comment.has_value();
    _document._trailer = comment ? comment->begin : _document._file.size();
}

/// What looks like the trailer is left out: the end shows whether it is.
void DSCReader::tellProgress()
{
    if (_part != Part::Pages || _inTrailer)
        return;
    if (_scanner.passed() <= _document._pages.back().content)
        return; // among the comments that tell about the page
    _document._namesOperatorDictionary = _scanner.hasSeenWatched();
    _progress(_document, _scanner);
}

DSCDocument::DSCDocument(std::FILE *stream, const Progress &progress)
    : _file(withoutJobControl(InputFile(stream)))
{
    DSCReader(*this, progress).read();
}

bool DSCDocument::hasEmptyPagesOnly() const
{
    return _complete && std::ranges::all_of(_pages, [this](const DSCPage &page) {
               return isBlank(_file, page.content, page.end);
           });
}

bool DSCDocument::runsAheadOfPages(const std::set<std::string> &operators) const
{
    return runsAnyOf(operators, {_file, _headerEnd, _pages.front().begin});
}

bool DSCDocument::namesAheadOfPages(std::string_view word) const
{
    FileWindow window(_file, _pages.front().begin, word);
    std::uint64_t position = 0;
    std::string_view bytes = window.from(position, 1);
    while (!bytes.empty() && !window.hasSeenWatched()) {
        position += bytes.size();
        bytes = window.from(position, 1);
    }
    return window.hasSeenWatched();
}

DSCComment DSCDocument::pageComment(const DSCPage &page) const
{
    return DSCScanner(_file, page.begin, page.content).next().value_or(DSCComment());
}

std::string_view labelOfPage(const DSCComment &comment)
{
    const std::string_view value = comment.value();
    const auto end = value.starts_with('(') ? value.find(')') : value.find_first_of(" \t");
    if (value.empty() || value.starts_with("(atend)"))
        return "?";
    if (value.starts_with('('))
        return end == std::string_view::npos ? "?" : value.substr(0, end + 1);
    return value.substr(0, end);
}
