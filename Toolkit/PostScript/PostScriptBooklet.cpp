#include "PostScriptCommands.h"

#include "DSCDocument.h"
#include "DocumentWriter.h"
#include "Imposition.h"
#include "PostScriptText.h"
#include "ProcSets.h"
#include "ToolkitError.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fmt/format.h>
#include <string>

namespace {

/// What the document says about itself and what is no longer so in the booklet.
constexpr std::array<std::string_view, 7> kDocumentComments = {
    "%%Pages",       "%%BoundingBox",   "%%HiResBoundingBox",  "%%PageOrder",
    "%%Orientation", "%%DocumentMedia", "%%DocumentPaperSizes"};

/// What structures a page, or tells about it, and has no place within a half.
constexpr std::array<std::string_view, 8> kPageComments = {
    "%%BeginPageSetup",       "%%EndPageSetup",    "%%PageTrailer", "%%PageBoundingBox",
    "%%PageHiResBoundingBox", "%%PageOrientation", "%%PageMedia",   "%%PageRequirements"};

/// Writes one booklet.
class BookletWriter {
public:
    BookletWriter(const Booklet &booklet, const Job &job);

    void write();

private:
    void writeHeader();
    void writeProlog();
    void writeSide(std::size_t side);
    void writeHalf(std::size_t pageNumber, const Rectangle &area);
    PageSize mediaOf(const DSCPage &page) const;
    std::string request() const;
    std::string procSet() const;

    const Booklet &_booklet;
    const DSCDocument _document;
    const SheetLayout _layout;
    const PageSize _sheet;       ///< upright
    const PageSize _defaultSize; ///< of a page about which no comment says more
    DocumentWriter _writer;
};

BookletWriter::BookletWriter(const Booklet &booklet, const Job &job)
    : _booklet(booklet),
      _document(job.input),
      _layout(sheetLayout(sheetSize(booklet, job.ppdPath), booklet)),
      _sheet{_layout.height, _layout.width},
      _defaultSize(defaultPageSize(job.ppdPath).value_or(_sheet)),
      _writer(_document, job.output)
{
}

void BookletWriter::write()
{
    // What lies elsewhere would be printed behind a booklet of blank pages.
    if (_document.hasEmptyPagesOnly())
        throw ToolkitError("No page comment of the PostScript document has a page behind it.");
    writeHeader();
    writeProlog();
    for (std::size_t side = 0; side < bookletSideCount(_document.pages().size()); ++side)
        writeSide(side);
    _writer.copyWithout(_document.trailer(), kDocumentComments);
    _writer.finish();
}

/// The name of the sheet's size where a comment has room for one word: a name that describes
/// itself (libcups takes any text in front of the measures) would be read as several.
std::string mediaName(const std::string &pageSize)
{
    const bool isWord = std::ranges::all_of(
        pageSize, [](unsigned char c) { return c > ' ' && c < 0x7F && c != '(' && c != ')'; });
    return isWord ? pageSize : "Booklet";
}

void BookletWriter::writeHeader()
{
    const std::uint64_t firstLine = _document.endOfFirstLine();
    _writer.copy({0, firstLine});
    _writer.lines(fmt::format("%%Pages: {}\n"
                              "%%PageOrder: Ascend\n"
                              "%%Orientation: Landscape\n"
                              "%%BoundingBox: 0 0 {} {}\n"
                              "%%DocumentMedia: {} {} {} 0 () ()\n",
                              bookletSideCount(_document.pages().size()), std::ceil(_sheet.width),
                              std::ceil(_sheet.height), mediaName(_booklet.pageSize),
                              postScriptNumber(_sheet.width), postScriptNumber(_sheet.height)));
    _writer.copyWithout({firstLine, _document.header().end}, kDocumentComments);
}

/// All between header and first page.
void BookletWriter::writeProlog()
{
    const std::uint64_t procedures = _document.beginOfProcedures();
    const std::uint64_t firstPage = _document.pages().front().begin;
    const bool hasSetup = _document.beginOfSetup().has_value();
    const std::uint64_t setup = _document.beginOfSetup().value_or(firstPage);
    _writer.copyWithout({_document.header().end, procedures}, kPageComments);
    _writer.procedures("KLToolkitBooklet", request(), procSet());
    _writer.proceduresForCutOffPage();
    _writer.copy({procedures, setup});
    if (!hasSetup)
        _writer.lines("%%BeginSetup\n");
    _writer.call("KLToolkitBookletSheet");
    if (!hasSetup)
        _writer.lines("%%EndSetup\n");
    _writer.copy({setup, firstPage});
    _writer.callAheadOfPages();
}

/// What the procedures have to know of the booklet (Booklet.ps).
std::string BookletWriter::request() const
{
    const DSCPage anyPage;
    const PageSize defaultSize = mediaOf(anyPage);
    return "/sheetSize [" + postScriptNumbers(std::array{_sheet.width, _sheet.height}) +
           "] def\n/defaultSize [" +
           postScriptNumbers(std::array{defaultSize.width, defaultSize.height}) + "] def\n";
}

/// With those for turned pages in their place, if pages are to be turned.
std::string BookletWriter::procSet() const
{
    constexpr std::string_view kPlace = "% TurnedPages.ps\n";
    const int turn = turnOfLandscapePages(_booklet);
    const std::string turnedPages =
        turn == 0 ? "" : fmt::format("/turn {} def\n{}", turn, kTurnedPagesProcSet);
    std::string text(kBookletProcSet);
    return text.replace(text.find(kPlace), kPlace.size(), turnedPages);
}

PageSize BookletWriter::mediaOf(const DSCPage &page) const
{
    return _document.mediaOf(page).value_or(_defaultSize);
}

void BookletWriter::writeSide(std::size_t side)
{
    struct Half {
        std::optional<std::size_t> page;
        Rectangle area;
    };
    const std::size_t pages = _document.pages().size();
    const SheetSide content = bookletSide(side, pages, _booklet);
    const SheetLayout layout = layoutAtDepth(_layout, content.depth, pages, _booklet);
    std::array<Half, 2> halves = {{{content.left, layout.left}, {content.right, layout.right}}};
    // The earlier page comes first: on a front, what it asks of the device can then be done at
    // once.
    if (content.left && content.right && *content.right < *content.left)
        std::swap(halves[0], halves[1]);

    _writer.lines(fmt::format("%%Page: {0} {0}\n", side + 1));
    for (const Half &half : halves) {
        if (half.page)
            writeHalf(*half.page, half.area);
    }
    _writer.call("KLToolkitBookletShow");
    const bool isBack = side % 2 == 1;
    if (isBack)
        _writer.call("KLToolkitBookletEndSheet");
    // To the procedures each signature is a booklet of its own.
    if (content.endsSignature)
        _writer.call("KLToolkitBookletEnd");
}

void BookletWriter::writeHalf(std::size_t pageNumber, const Rectangle &area)
{
    const DSCPage &page = _document.pages()[pageNumber - 1];
    const PageSize media = mediaOf(page);
    const std::string geometry = postScriptNumbers(
        std::array{area.x, area.y, area.width, area.height, media.width, media.height});
    _writer.call("KLToolkitBookletHalf", geometry);
    _writer.copyContent(page, kPageComments);
    _writer.call("KLToolkitBookletEndHalf");
}

} // namespace

void applyToPostScript(const Booklet &booklet, const Job &job)
{
    BookletWriter(booklet, job).write();
}
