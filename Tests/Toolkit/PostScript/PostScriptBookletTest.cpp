#include "PostScriptCommands.h"

#include "MinimalPPD.h"
#include "ToolkitError.h"
#include "ToolkitPostScript.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fmt/format.h>

using Support::Colour;
using Support::kBlue;
using Support::kRed;
using Support::kWhite;
using Support::RenderedPage;
using Support::Rendering;
using Support::renderText;
using testing::HasSubstr;
using testing::Not;

namespace {

Booklet booklet(Ordering ordering = Ordering::LeftToRight)
{
    return {.pageSize = "A4", .centreMargin = 0, .outerMargin = 0, .ordering = ordering};
}

constexpr double kSheetWidth = 595.28;
constexpr double kSheetHeight = 841.89;

/// The colour on a sheet, in the places of the sheet as it lies on its long edge.
Colour colourAt(const RenderedPage &sheet, double x, double y)
{
    return sheet.colourAt({sheet.width() - y, x});
}

constexpr double kLeft = kSheetHeight / 4;
constexpr double kRight = kSheetHeight * 3 / 4;
constexpr double kMiddle = kSheetWidth / 2;

Colour colourOf(std::size_t page)
{
    return {static_cast<std::uint8_t>(page), 0, 255};
}

/// A page filled with a colour of its own.
std::string colouredPage(std::size_t page)
{
    return fmt::format("{} 255 div 0 1 setrgbcolor 0 0 200 300 rectfill showpage\n", page);
}

PostScriptSample colouredPages(std::size_t count)
{
    PostScriptSample sample;
    for (std::size_t page = 1; page <= count; ++page)
        sample.pages.push_back(colouredPage(page));
    return sample;
}

/// The booklet's pages in the order in which they are read: the sheets are put into each other and
/// folded so that the first front's reading half is outside.
std::vector<Colour> folded(const std::vector<RenderedPage> &sides, Ordering ordering)
{
    std::vector<Colour> book(sides.size() * 2);
    for (std::size_t side = 0; side < sides.size(); ++side) {
        const Colour left = colourAt(sides[side], kLeft, kMiddle);
        const Colour right = colourAt(sides[side], kRight, kMiddle);
        const bool isFront = side % 2 == 0;
        const bool earlyIsRight = isFront == (ordering == Ordering::LeftToRight);
        book[side] = earlyIsRight ? right : left;
        book[book.size() - 1 - side] = earlyIsRight ? left : right;
    }
    return book;
}

Rendering rendered(std::string_view document)
{
    return renderText(document, {.resolution = 36});
}

void expectReadsInOrder(const Rendering &sheets, std::size_t pages, Ordering ordering)
{
    SCOPED_TRACE(pages);
    const auto book = folded(sheets.pages, ordering);
    ASSERT_EQ((pages + 3) / 4 * 4, book.size());
    for (std::size_t page = 1; page <= book.size(); ++page)
        ASSERT_EQ(page <= pages ? colourOf(page) : kWhite, book[page - 1]) << "page " << page;
}

} // namespace

// --- Order ---------------------------------------------------------------------------------------

class PostScriptBookletOrderTest : public testing::TestWithParam<Ordering> {};

TEST_P(PostScriptBookletOrderTest, BookletsOf1To64PagesReadInOrderOnceFolded)
{
    std::vector<std::string> booklets;
    for (std::size_t pages = 1; pages <= 64; ++pages)
        booklets.push_back(processed(colouredPages(pages).text(), booklet(GetParam())));
    const std::vector<Rendering> all = Support::renderEach(booklets, {.resolution = 12});
    for (std::size_t pages = 1; pages <= all.size(); ++pages) {
        EXPECT_EQ("", all[pages - 1].log);
        expectReadsInOrder(all[pages - 1], pages, GetParam());
    }
}

INSTANTIATE_TEST_SUITE_P(BothWays, PostScriptBookletOrderTest,
                         testing::Values(Ordering::LeftToRight, Ordering::RightToLeft),
                         [](const auto &instance) {
                             return instance.param == Ordering::LeftToRight ? "LTR" : "RTL";
                         });

// --- Geometry ------------------------------------------------------------------------------------

TEST(PostScriptBookletTest, SheetIsUprightWithItsHalvesTurned)
{
    const auto sheets = rendered(processed(colouredPages(4).text(), booklet()));
    ASSERT_EQ(2U, sheets.pages.size());
    EXPECT_NEAR(kSheetWidth, sheets.pages[0].width(), 2);
    EXPECT_NEAR(kSheetHeight, sheets.pages[0].height(), 2);
    EXPECT_EQ(colourOf(4), colourAt(sheets.pages[0], kLeft, kMiddle));
    EXPECT_EQ(colourOf(1), colourAt(sheets.pages[0], kRight, kMiddle));
    EXPECT_EQ(colourOf(2), colourAt(sheets.pages[1], kLeft, kMiddle));
    EXPECT_EQ(colourOf(3), colourAt(sheets.pages[1], kRight, kMiddle));
}

TEST(PostScriptBookletTest, PagesStandUprightOnBothSidesOfTheLyingSheet)
{
    PostScriptSample sample;
    for (int page = 0; page < 4; ++page) // red at the foot, at the left
        sample.pages.emplace_back("1 0 0 setrgbcolor 0 0 50 50 rectfill showpage\n");
    for (const auto &sheet : rendered(processed(sample.text(), booklet())).pages) {
        // 200 by 300 points become 397 by 595, centred in a half of 421 by 595.
        EXPECT_EQ(kRed, colourAt(sheet, 20, 10));
        EXPECT_EQ(kWhite, colourAt(sheet, 20, 150));
        EXPECT_EQ(kWhite, colourAt(sheet, 150, 10));
        EXPECT_EQ(kRed, colourAt(sheet, kSheetHeight / 2 + 20, 10));
    }
}

TEST(PostScriptBookletTest, MarginsAreKeptClear)
{
    Booklet request = booklet();
    request.centreMargin = 40;
    request.outerMargin = 30;
    PostScriptSample sample = colouredPages(4);
    sample.setup = "<< /PageSize [400 400] >> setpagedevice\n";
    for (auto &page : sample.pages)
        page = "0 0 1 setrgbcolor 0 0 400 400 rectfill showpage\n";
    const auto sheets = renderText(processed(sample.text(), request), {.resolution = 144});
    // Each half: 30 to 400.9 and 440.9 to 811.9; a square of 370.9, centred in a height of 535.3.
    const auto box = sheets.pages.at(0).boxOf(kBlue);
    EXPECT_NEAR(30, box->bottom, 1);
    EXPECT_NEAR(kSheetHeight - 30, box->top, 1);
    EXPECT_NEAR((kSheetWidth - 370.9) / 2, box->left, 1);
    EXPECT_NEAR((kSheetWidth + 370.9) / 2, box->right, 1);
    EXPECT_EQ(kWhite, colourAt(sheets.pages[0], 402, kMiddle));
    EXPECT_EQ(kWhite, colourAt(sheets.pages[0], 439, kMiddle));
    EXPECT_EQ(kBlue, colourAt(sheets.pages[0], 399, kMiddle));
    EXPECT_EQ(kBlue, colourAt(sheets.pages[0], 443, kMiddle));
}

TEST(PostScriptBookletTest, MarginsThatLeaveNoRoomAreRefused)
{
    Booklet request = booklet();
    request.outerMargin = 290;
    EXPECT_THROW(processed(colouredPages(4).text(), request), ToolkitError);
}

TEST(PostScriptBookletTest, PageIsClippedToItsOwnArea)
{
    PostScriptSample sample;
    sample.setup = "<< /PageSize [300 300] >> setpagedevice\n";
    sample.pages.assign(4, "1 0 0 setrgbcolor -900 -900 2000 2000 rectfill showpage\n");
    const auto sheets = rendered(processed(sample.text(), booklet()));
    EXPECT_EQ(kRed, colourAt(sheets.pages[0], kLeft, kMiddle));
    EXPECT_EQ(kWhite, colourAt(sheets.pages[0], kLeft, 20));
    EXPECT_EQ(kWhite, colourAt(sheets.pages[0], kLeft, kSheetWidth - 20));
}

TEST(PostScriptBookletTest, UnknownSheetIsRefused)
{
    Booklet request = booklet();
    request.pageSize = "Nothing";
    EXPECT_THROW(processed(colouredPages(4).text(), request), ToolkitError);
}

// --- Signatures and creep ------------------------------------------------------------------------

TEST(PostScriptBookletTest, SignaturesAreFoldedOneBehindTheOther)
{
    for (const Ordering ordering : {Ordering::LeftToRight, Ordering::RightToLeft}) {
        Booklet request = booklet(ordering);
        request.signatureSheets = 2;
        const auto sides = rendered(processed(colouredPages(19).text(), request)).pages;
        ASSERT_EQ(10U, sides.size());
        // Signatures of two sheets, two and one.
        std::vector<Colour> book;
        for (const auto &[first, end] : {std::pair(0, 4), {4, 8}, {8, 10}}) {
            const auto part = folded({sides.begin() + first, sides.begin() + end}, ordering);
            book.insert(book.end(), part.begin(), part.end());
        }
        for (std::size_t page = 1; page <= 20; ++page)
            EXPECT_EQ(page <= 19 ? colourOf(page) : kWhite, book.at(page - 1)) << page;
    }
}

TEST(PostScriptBookletTest, PagesOfInnerSheetsMoveTowardsTheFold)
{
    Booklet request = booklet();
    request.centreMargin = 40;
    request.outerMargin = 30;
    request.creep = 10;
    PostScriptSample sample;
    // As high as the halves of 535.28 points, and wider.
    sample.setup = "<< /PageSize [400 400] >> setpagedevice\n";
    sample.pages.assign(12, "0 0 1 setrgbcolor -9 -9 999 999 rectfill showpage\n");
    const auto sides = renderText(processed(sample.text(), request), {.resolution = 144}).pages;
    ASSERT_EQ(6U, sides.size());
    // Each half: from 30 to 400.9 without creep, which is 20 for the innermost of three sheets.
    for (std::size_t side = 0; side < 6; ++side) {
        SCOPED_TRACE(side);
        const double moved = 10.0 * static_cast<double>(side / 2);
        const auto colour = [&](double x) { return colourAt(sides[side], x, kMiddle); };
        EXPECT_EQ(kWhite, colour(30 + moved - 2));
        EXPECT_EQ(kBlue, colour(30 + moved + 2));
        EXPECT_EQ(kBlue, colour(380.9 + moved - 2));
        EXPECT_EQ(kWhite, colour(380.9 + moved + 2));
        EXPECT_EQ(kWhite, colour(460.9 - moved - 2));
        EXPECT_EQ(kBlue, colour(460.9 - moved + 2));
        EXPECT_EQ(kBlue, colour(811.9 - moved - 2));
        EXPECT_EQ(kWhite, colour(811.9 - moved + 2));
    }
}

TEST(PostScriptBookletTest, CreepThatLeavesNoRoomIsRefused)
{
    Booklet request = booklet();
    request.creep = 200; // half of the sheet is 421 wide
    EXPECT_THROW(processed(colouredPages(12).text(), request), ToolkitError);
    EXPECT_NO_THROW(processed(colouredPages(8).text(), request));
}

// --- Landscape pages -----------------------------------------------------------------------------

namespace {

/// 300 by 200 points, blue; the left foot is red, the left head green.
constexpr char kLandscapePage[] = "0 0 1 setrgbcolor -9 -9 999 999 rectfill\n"
                                  "1 0 0 setrgbcolor 0 0 50 50 rectfill\n"
                                  "0 1 0 setrgbcolor 0 150 50 50 rectfill showpage\n";
constexpr char kLandscapeSize[] = "<< /PageSize [300 200] >> setpagedevice\n";

Booklet turningBooklet(Ordering ordering = Ordering::LeftToRight)
{
    Booklet request = booklet(ordering);
    request.turnLandscape = true;
    return request;
}

/// Turned, the page is 397 by 595 points and stands in the middle of its half of 421 by 595.
void expectTurned(const RenderedPage &sheet, double middle, bool counterClockwise = true)
{
    const double left = middle - 180;
    const double right = middle + 180;
    EXPECT_EQ(counterClockwise ? Support::kGreen : kBlue, colourAt(sheet, left, 10));
    EXPECT_EQ(counterClockwise ? kRed : kBlue, colourAt(sheet, right, 10));
    EXPECT_EQ(counterClockwise ? kBlue : kRed, colourAt(sheet, left, kSheetWidth - 10));
    EXPECT_EQ(counterClockwise ? kBlue : Support::kGreen, colourAt(sheet, right, kSheetWidth - 10));
    EXPECT_EQ(kWhite, colourAt(sheet, middle - 203, kMiddle));
    EXPECT_EQ(kWhite, colourAt(sheet, middle + 203, kMiddle));
}

} // namespace

TEST(PostScriptBookletTest, LandscapePagesAreTurnedToFillTheirHalves)
{
    PostScriptSample sample;
    sample.setup = kLandscapeSize;
    sample.pages.assign(4, kLandscapePage);
    for (const Ordering ordering : {Ordering::LeftToRight, Ordering::RightToLeft}) {
        const auto sheets = rendered(processed(sample.text(), turningBooklet(ordering)));
        EXPECT_EQ("", sheets.log);
        ASSERT_EQ(2U, sheets.pages.size());
        for (const auto &sheet : sheets.pages) {
            expectTurned(sheet, kLeft, ordering == Ordering::LeftToRight);
            expectTurned(sheet, kRight, ordering == Ordering::LeftToRight);
        }
    }
}

TEST(PostScriptBookletTest, OnlyLandscapePagesAreTurned)
{
    PostScriptSample sample = colouredPages(4);
    sample.pages[0] = std::string(kLandscapeSize) + kLandscapePage;
    const auto sheets = rendered(processed(sample.text(), turningBooklet()));
    expectTurned(sheets.pages.at(0), kRight);
    EXPECT_EQ(colourOf(4), colourAt(sheets.pages[0], kLeft, 5));
    EXPECT_EQ(colourOf(2), colourAt(sheets.pages.at(1), kLeft, 5));
    EXPECT_EQ(colourOf(3), colourAt(sheets.pages[1], kRight, 5));
}

TEST(PostScriptBookletTest, NoPageIsTurnedOnAHalfThatIsWiderThanHigh)
{
    PostScriptSample sample;
    sample.setup = kLandscapeSize;
    sample.pages.assign(1, kLandscapePage);
    Booklet request = turningBooklet();
    request.pageSize = "strip_x_200x500mm"; // halves of 708.7 by 566.9 points
    const auto sheets = rendered(processed(sample.text(), request));
    // By 2.36 to 708.7 by 472.4 points, upright.
    const RenderedPage &sheet = sheets.pages.at(0);
    const auto at = [&](double x, double y) { return sheet.colourAt({sheet.width() - y, x}); };
    EXPECT_EQ(kRed, at(708.7 + 20, 67));
    EXPECT_EQ(Support::kGreen, at(708.7 + 20, 500));
    EXPECT_EQ(kBlue, at(1417.3 - 20, 500));
}

TEST(PostScriptBookletTest, WithoutTheOptionNoPageIsTurned)
{
    PostScriptSample sample;
    sample.setup = kLandscapeSize;
    sample.pages.assign(4, kLandscapePage);
    const std::string output = processed(sample.text(), booklet());
    EXPECT_EQ(0U, countOf("Turned", output));
    const auto sheets = rendered(output);
    EXPECT_EQ(kWhite, colourAt(sheets.pages.at(0), kRight, 20));
    EXPECT_EQ(kBlue, colourAt(sheets.pages[0], kRight, kMiddle));
}

/// The page's size is known by a comment, or as soon as the page has asked for it.
TEST(PostScriptBookletTest, SizeInForceDecidesWhetherAPageIsTurned)
{
    PostScriptSample byComment;
    byComment.setup = "";
    byComment.pages.assign(1, kLandscapePage);
    std::string text = byComment.text();
    text.insert(text.find('\n') + 1, "%%DocumentMedia: X 300 200 0 () ()\n");
    expectTurned(rendered(processed(text, turningBooklet())).pages.at(0), kRight);

    PostScriptSample byRequest = colouredPages(1);
    byRequest.pages[0] = "0 setgray 0 0 200 300 rectfill save 9 9 scale initmatrix\n" +
                         std::string(kLandscapeSize) + "gsave 9 9 scale initgraphics " +
                         "matrix defaultmatrix setmatrix grestore initclip initmatrix\n" +
                         kLandscapePage + "restore\n";
    expectTurned(rendered(processed(byRequest.text(), turningBooklet())).pages.at(0), kRight);
    byRequest.pages[0] = std::string(kLandscapeSize) + kLandscapePage +
                         "<< /PageSize [200 300] >> setpagedevice\n" + colouredPage(1);
    EXPECT_EQ(
        colourOf(1),
        colourAt(rendered(processed(byRequest.text(), turningBooklet())).pages.at(0), kRight, 5));
}

// --- The page's own size -------------------------------------------------------------------------

namespace {

/// Where the marks of a sheet's first page lie, from the sheet's lower left corner as it lies.
Support::Box boxOfFirstPage(const std::string &document, const std::string &ppd = {})
{
    const auto sheets = renderText(processed(document, booklet(), ppd), {.resolution = 72});
    const auto box = sheets.pages.at(0).boxOf(kRed);
    if (!box)
        throw std::runtime_error("the page is blank");
    return {box->bottom, kSheetWidth - box->right, box->top, kSheetWidth - box->left};
}

/// A document of one page, all red, whatever its size.
std::string redPage(const std::string &setup, const std::string &page = "",
                    const std::string &header = "")
{
    return "%!PS-Adobe-3.0\n" + header + "%%EndComments\n%%BeginSetup\n" + setup +
           "%%EndSetup\n%%Page: 1 1\n" + page +
           "1 0 0 setrgbcolor -9 -9 9999 9999 rectfill showpage\n%%EOF\n";
}

constexpr double kHalf = kSheetHeight / 2;

void expectSize(double width, double height, const Support::Box &box)
{
    const double scale = std::min(kHalf / width, kSheetWidth / height);
    EXPECT_NEAR(width * scale, box.right - box.left, 1.5);
    EXPECT_NEAR(height * scale, box.top - box.bottom, 1.5);
    EXPECT_NEAR(kHalf + kHalf / 2, (box.left + box.right) / 2, 1.5);
    EXPECT_NEAR(kSheetWidth / 2, (box.top + box.bottom) / 2, 1.5);
}

} // namespace

TEST(PostScriptBookletTest, SizeIsTheOneInForce)
{
    const std::string media = "%%DocumentMedia: X 100 500 0 () ()\n";
    expectSize(400, 300,
               boxOfFirstPage(redPage("<< /PageSize [400 300] >> setpagedevice\n", "", media)));
    expectSize(200, 250,
               boxOfFirstPage(redPage("<< /PageSize [400 300] >> setpagedevice\n",
                                      "<< /PageSize [200 250] >> setpagedevice\n", media)));
}

TEST(PostScriptBookletTest, SizeIsTheMediaCommentsWhereNothingWasAskedFor)
{
    const std::string media = "%%DocumentMedia: X 100 500 0 () ()\n%%+ Y 200 250 0 () ()\n";
    expectSize(100, 500, boxOfFirstPage(redPage("", "", media)));
    expectSize(200, 250, boxOfFirstPage(redPage("", "%%PageMedia: Y\n", media)));
    expectSize(612, 792, boxOfFirstPage(redPage("", "%%PageMedia: Letter\n", media)));
}

TEST(PostScriptBookletTest, SizeIsThePPDsDefaultWhereNoCommentTells)
{
    std::string ppd = Support::minimalPPD();
    const std::string standard = "*DefaultPageSize: A4";
    ppd.replace(ppd.find(standard), standard.size(), "*DefaultPageSize: Letter");
    expectSize(612, 792, boxOfFirstPage(redPage("", "", "%%BoundingBox: 0 0 50 50\n"), ppd));
}

TEST(PostScriptBookletTest, SizeIsTheSheetsWhereNothingTells)
{
    expectSize(kSheetWidth, kSheetHeight, boxOfFirstPage(redPage("")));
}

TEST(PostScriptBookletTest, SizeOfOnePageDoesNotReachTheNext)
{
    PostScriptSample sample;
    sample.pages.assign(4, "1 0 0 setrgbcolor -9 -9 9999 9999 rectfill showpage\n");
    sample.pages[0] = "<< /PageSize [300 300] >> setpagedevice\n" + sample.pages[0];
    sample.pages[1] = "1 1 0 setrgbcolor 0 0 200 300 rectfill showpage\n";
    const auto sheets = rendered(processed(sample.text(), booklet()));
    EXPECT_EQ(kWhite, colourAt(sheets.pages[0], kRight, 20));
    EXPECT_EQ(kRed, colourAt(sheets.pages[0], kLeft, 20));
    EXPECT_EQ((Colour{255, 255, 0}), colourAt(sheets.pages[1], kLeft, 20));
}

// --- Whatever a page does ------------------------------------------------------------------------

namespace {

struct Page {
    const char *name;
    const char *prolog;
    const char *setup;
    const char *page; ///< fills its 200 by 300 points with the colour that "colour" sets
};

void PrintTo(const Page &page, std::ostream *stream)
{
    *stream << page.name;
}

} // namespace

class PostScriptBookletPageTest : public testing::TestWithParam<Page> {};

/// Both halves of both sides show their page, all of it and nothing beside it.
TEST_P(PostScriptBookletPageTest, StaysInItsHalf)
{
    PostScriptSample sample;
    sample.prolog = GetParam().prolog;
    sample.setup = "<< /PageSize [200 300] >> setpagedevice\n" + std::string(GetParam().setup);
    for (int page = 1; page <= 4; ++page) {
        sample.pages.push_back(fmt::format("/colour {{ {} 255 div 0 1 setrgbcolor }} def\n", page) +
                               GetParam().page);
    }
    const auto sheets = renderText(processed(sample.text(), booklet()), {.resolution = 72});
    EXPECT_EQ("", sheets.log);
    ASSERT_EQ(2U, sheets.pages.size());
    const std::size_t order[2][2] = {{4, 1}, {2, 3}};
    for (std::size_t side = 0; side < 2; ++side) {
        const double inset = (kHalf - kSheetWidth * 2 / 3) / 2;
        for (std::size_t half = 0; half < 2; ++half) {
            SCOPED_TRACE(fmt::format("side {} half {}", side, half));
            const Colour colour = colourOf(order[side][half]);
            const double left = static_cast<double>(half) * kHalf + inset;
            const double right = left + kSheetWidth * 2 / 3;
            for (const double y : {3.0, kMiddle, kSheetWidth - 3}) {
                EXPECT_EQ(colour, colourAt(sheets.pages[side], left + 3, y)) << y;
                EXPECT_EQ(colour, colourAt(sheets.pages[side], right - 3, y)) << y;
                EXPECT_EQ(kWhite, colourAt(sheets.pages[side], left - 3, y)) << y;
                EXPECT_EQ(kWhite, colourAt(sheets.pages[side], right + 3, y)) << y;
            }
        }
    }
}

#define FILL "colour 0 0 200 300 rectfill "

INSTANTIATE_TEST_SUITE_P(
    Pages, PostScriptBookletPageTest,
    testing::Values(
        Page{"Plain", "", "", FILL "showpage\n"},
        Page{"InitialMatrix", "", "", "9 9 scale initmatrix " FILL "showpage\n"},
        Page{"InitialGraphics", "", "",
             "9 9 scale 0 0 1 1 rectclip initgraphics " FILL "showpage\n"},
        Page{"InitialClip", "", "", "0 0 1 1 rectclip initclip " FILL "showpage\n"},
        Page{"InitialClipWithAPath", "", "",
             "0 0 1 1 rectclip colour newpath 0 0 moveto 200 0 lineto 200 300 lineto 0 300 lineto\n"
             "closepath initclip fill showpage\n"},
        Page{"ClipBeyondThePage", "", "",
             "initclip colour -900 -900 2000 2000 rectfill showpage\n"},
        Page{"DefaultMatrix", "", "",
             "9 9 scale matrix defaultmatrix setmatrix " FILL "showpage\n"},
        Page{"DefaultMatrixWithAnOffset", "", "",
             "[1 0 0 1 50 60] matrix defaultmatrix matrix concatmatrix setmatrix\n"
             "colour -50 -60 200 300 rectfill showpage\n"},
        Page{"MatrixFromTheSetup", "", "/kept matrix currentmatrix def\n",
             "9 9 scale kept setmatrix " FILL "showpage\n"},
        Page{"MatrixFromTheProlog", "/kept matrix currentmatrix def\n", "",
             "9 9 scale kept setmatrix " FILL "showpage\n"},
        Page{"OwnMatrixBack", "", "",
             "matrix currentmatrix 9 9 scale setmatrix " FILL "showpage\n"},
        Page{"MatrixBoundInTheProlog", "/home { initmatrix initclip } bind def\n", "",
             "9 9 scale 0 0 1 1 rectclip home " FILL "showpage\n"},
        Page{"WhiteOnceMore", "", "", "0 setgray 0 0 90 90 rectfill erasepage " FILL "showpage\n"},
        Page{"CopyPage", "", "", FILL "copypage showpage\n"},
        Page{"BoundShowpage", "/EP { level restore showpage } bind def\n", "",
             "/level save def 9 9 scale gsave initmatrix " FILL "EP\n"},
        Page{"SavedState", "", "", "save " FILL "showpage restore\n"},
        Page{"StateSavedInTheSetup", "", "/level save def\n",
             "colour currentrgbcolor level restore /level save def setrgbcolor\n"
             "0 0 200 300 rectfill showpage\n"},
        Page{"ColourKeptInAState", "", "",
             "gsave 9 9 scale grestore " FILL "grestore grestore showpage grestoreall\n"},
        Page{"TooManyRestores", "", "", "9 9 scale grestore grestore " FILL "showpage grestore\n"},
        Page{"TooManySavedStates", "", "",
             "gsave gsave 2 2 scale gsave initmatrix " FILL "showpage\n"},
        Page{"RestoreAll", "", "", "gsave 9 9 scale grestoreall " FILL "showpage\n"},
        Page{"RestoreAllInASavedState", "", "",
             "save gsave 9 9 scale grestoreall " FILL "showpage restore\n"},
        Page{"Operands", "", "", FILL "1 2 (three) mark showpage\n"},
        Page{"OpenDictionaries", "", "", FILL "9 dict begin /rectfill { } def showpage\n"},
        Page{"RedefinedNames", "", "",
             FILL
             "9 dict begin /true false def /exec { } def /get { } def /gsave { } def showpage\n"},
        Page{"SizeInThePage", "", "", "<< /PageSize [200 300] >> setpagedevice " FILL "showpage\n"},
        Page{"SizeAfterMarks", "", "",
             "0 setgray -9 -9 999 999 rectfill << /PageSize [300 200] >> setpagedevice\n"
             "0 setgray -9 -9 999 999 rectfill << /PageSize [200 300] >> setpagedevice\n" FILL
             "showpage\n"},
        Page{"SizeInASavedState", "", "",
             "save << /PageSize [300 200] >> setpagedevice restore " FILL "showpage\n"},
        Page{"SizeBoundInTheProlog",
             "/size { 2 array astore << exch /PageSize exch >> setpagedevice } bind def\n", "",
             "200 300 size " FILL "showpage\n"},
        Page{"SizeAsAsked", "", "",
             "currentpagedevice /PageSize get aload pop 300 eq exch 200 eq and { " FILL "} if\n"
             "showpage\n"},
        Page{
            "DuplexAndMore", "", "",
            "<< /Duplex false /Tumble false /PageSize [200 300] /ImagingBBox null /NumCopies 1 >>\n"
            "setpagedevice " FILL "showpage\n"},
        Page{"MediaInThePage", "", "", "<< /MediaColor (red) >> setpagedevice " FILL "showpage\n"},
        Page{"MediaInASavedState", "", "",
             "save << /MediaColor (red) >> setpagedevice " FILL "showpage restore\n"},
        Page{"MediaInASavedStateShownAfterRestore", "", "",
             "save save << /MediaColor (red) >> setpagedevice gsave gsave " FILL "restore\n"
             "save 9 9 scale restore restore initgraphics showpage\n"},
        Page{"MediaInAStateSavedInTheSetup", "", "/level save def\n",
             "colour currentrgbcolor level restore /level save def\n"
             "<< /MediaColor (red) >> setpagedevice setrgbcolor\n"
             "0 0 200 300 rectfill showpage\n"},
        Page{"MediaOfTheSetupInASavedState", "",
             "/level save def << /MediaColor (red) >> setpagedevice\n",
             "colour currentrgbcolor level restore /level save def setrgbcolor\n"
             "0 0 200 300 rectfill showpage\n"},
        Page{"MediaAfterMarks", "", "",
             FILL "<< /MediaColor (blue) >> setpagedevice " FILL "showpage\n"},
        Page{"MediaInAKeptState", "", "",
             "gsave << /MediaColor (red) >> setpagedevice " FILL "showpage grestore\n"},
        Page{"OperatorsThemselves",
             "/get2 { systemdict exch get exec } def /EP { /showpage get2 } bind def\n",
             "<< /PageSize [200 300] >> /setpagedevice get2\n",
             "9 9 scale /initmatrix get2 " FILL
             "<< /PageSize [200 300] >> /setpagedevice get2\n" FILL "EP\n"},
        Page{"ValuesTakenAtOnce",
             "/EP { //grestore //initgraphics //gsave //showpage } def\n"
             "/SZ { 2 array astore << exch /PageSize exch >> //setpagedevice } def\n",
             "",
             "//gsave 9 9 scale //save 9 9 scale //restore //initmatrix 200 300 SZ\n"
             "//currentpagedevice /PageSize get 0 get 200 eq { " FILL "} if EP\n"},
        Page{"NamedSize", "", "",
             "userdict /a4 known { a4 } if\n"
             "<< /PageSize [200 300] >> setpagedevice " FILL "showpage\n"},
        Page{"GlobalMemory", "", "",
             "true setglobal << /PageSize [200 300] /MediaColor (red) >> setpagedevice\n"
             "currentpagedevice pop false setglobal " FILL "showpage\n"},
        Page{"DefinitionsInGlobalMemory",
             "true setglobal /box { 0 0 200 300 rectfill } bind def\n"
             "false setglobal\n",
             "", "colour box showpage\n"}),
    [](const auto &page) { return std::string(page.param.name); });

// --- The sheets ----------------------------------------------------------------------------------

TEST(PostScriptBookletTest, SheetAsksForItsSizeAndForBothSides)
{
    EXPECT_EQ("SET PageSize 595.276 841.89 ImagingBBox null \n"
              "SET Duplex true Tumble true \n"
              "SHOW\nSHOW\n",
              deviceLog(processed(colouredPages(3).text(), booklet())));
}

TEST(PostScriptBookletTest, RequestsForSizeAndDuplexGiveWayWhereverTheyStand)
{
    PostScriptSample sample = colouredPages(4);
    sample.prolog = "/ask { << /PageSize [9 9] /Duplex false /Tumble false >> setpagedevice } bind "
                    "def\n/askAgain /setpagedevice load def\nask\n";
    sample.setup = "[{\n%%BeginFeature: *Duplex None\n<< /Duplex false >> setpagedevice\n"
                   "%%EndFeature\n} stopped cleartomark\nask << /PageSize [200 300] >> askAgain\n"
                   "statusdict begin false setduplexmode false settumble end\n";
    sample.pages[1] = "ask << /PageSize [200 300] >> setpagedevice\n" + sample.pages[1];
    sample.trailer = "ask\n";
    EXPECT_EQ("SET PageSize 595.276 841.89 ImagingBBox null \n"
              "SET Duplex true Tumble true \n"
              "SHOW\nSHOW\n",
              deviceLog(processed(sample.text(), booklet())));
}

TEST(PostScriptBookletTest, OtherRequestsOfTheSetupStay)
{
    PostScriptSample sample = colouredPages(4);
    sample.setup =
        "<< /PageSize [200 300] /Duplex false /Tumble true /MediaColor (red) >> setpagedevice\n";
    EXPECT_EQ("SET PageSize 595.276 841.89 ImagingBBox null \n"
              "SET Duplex true Tumble true \n"
              "SET MediaColor red \n"
              "SHOW\nSHOW\n",
              deviceLog(processed(sample.text(), booklet())));
}

namespace {

constexpr char kSheetsOwn[] = "SET PageSize 595.276 841.89 ImagingBBox null \n"
                              "SET Duplex true Tumble true \n";
constexpr char kBothSides[] = "SHOW\nSHOW\n";

/// What these pages ask for, each ahead of its marks; "" for nothing.
std::string logOfRequests(const std::vector<std::string> &requests)
{
    PostScriptSample sample = colouredPages(requests.size());
    for (std::size_t page = 0; page < requests.size(); ++page)
        sample.pages[page] = requests[page] + sample.pages[page];
    const std::string log = deviceLog(processed(sample.text(), booklet()));
    EXPECT_TRUE(log.starts_with(kSheetsOwn)) << log;
    return log.substr(std::min(log.size(), std::string(kSheetsOwn).size()));
}

std::string colourRequest(const std::string &colour)
{
    return "<< /PageSize [200 300] /MediaColor (" + colour + ") >> setpagedevice\n";
}

const std::string kSet = "SET MediaColor ";

} // namespace

TEST(PostScriptBookletTest, FirstPageOfASheetSaysWhatItIsLike)
{
    std::vector<std::string> requests;
    for (int page = 1; page <= 8; ++page)
        requests.push_back(colourRequest("c" + std::to_string(page)));
    // Sheet one has the pages 1 and 8, 2 and 7; sheet two 3 and 6, 4 and 5. The request of page 2
    // is in force from page 3 on, that of page 4 behind the last sheet, as are all that follow.
    EXPECT_EQ(kSet + "c1 \n" + kBothSides + kSet + "c2 \n" + kSet + "c3 \n" + kBothSides + kSet +
                  "c4 \n" + kSet + "c8 \n",
              logOfRequests(requests));
}

TEST(PostScriptBookletTest, FirstPageFromAnotherTrayIsTheFirstSheet)
{
    EXPECT_EQ(kSet + "cover \n" + kBothSides + kSet + "plain \n" + kBothSides + kBothSides,
              logOfRequests({colourRequest("cover"), colourRequest("plain"), "", "", "", "", "", "",
                             "", "", "", ""}));
    const std::string again = colourRequest("plain");
    EXPECT_EQ(
        kSet + "cover \n" + kBothSides + kSet + "plain \n" + kBothSides,
        logOfRequests({colourRequest("cover"), again, again, again, again, again, again, again}));
}

TEST(PostScriptBookletTest, PageBehindTheMiddleDoesNotChangeTheSheets)
{
    EXPECT_EQ(std::string(kBothSides) + kBothSides + kSet + "last \n",
              logOfRequests({"", "", "", "", "", "", "", colourRequest("last")}));
    EXPECT_EQ(std::string(kBothSides) + kBothSides + kSet + "last \n",
              logOfRequests({"", "", "", "", colourRequest("x"), "", "",
                             colourRequest("y") + colourRequest("last")}));
}

TEST(PostScriptBookletTest, RequestsBehindTheMiddleOfASignatureAreMadeBeforeTheNext)
{
    PostScriptSample sample = colouredPages(12);
    for (std::size_t page = 0; page < 8; ++page)
        sample.pages[page] = colourRequest("c" + std::to_string(page + 1)) + sample.pages[page];
    Booklet request = booklet();
    request.signatureSheets = 1;
    // Each signature is a sheet: pages 1 to 4, then 5 to 8, then 9 to 12, which ask for nothing.
    EXPECT_EQ(std::string(kSheetsOwn) + kSet + "c1 \n" + kBothSides + kSet + "c2 \n" + kSet +
                  "c4 \n" + kSet + "c5 \n" + kBothSides + kSet + "c6 \n" + kSet + "c8 \n" +
                  kBothSides,
              deviceLog(processed(sample.text(), request)));
}

namespace {

/// Prints what the device has been asked for, and how many saved states are open.
const std::string kTell = "currentpagedevice /MediaColor 2 copy known { get } { pop pop null } "
                          "ifelse (is ) print ==\n"
                          "vmstatus pop pop (level ) print ==\n";

const std::string kBefore = "is null\nlevel 1\n"; // Ghostscript runs a file in a saved state

} // namespace

TEST(PostScriptBookletTest, RequestInASavedStateIsOverWithItsSheet)
{
    const std::string asked = "save " + colourRequest("red");
    PostScriptSample sample = colouredPages(12);
    for (const std::size_t page : {0U, 1U, 4U, 11U})
        sample.pages[page] = kTell + asked + sample.pages[page] + "restore\n";
    for (const std::size_t page : {2U, 6U})
        sample.pages[page] = kTell + sample.pages[page];
    const std::string output = processed(sample.text(), booklet());
    const std::string within = "is (red)\nlevel 2\n"; // until the sheet is out
    const std::string red = "SET MediaColor red \n";
    EXPECT_EQ(kSheetsOwn + kBefore + red + within + "SHOW\n" + within + "SHOW\n" + kBefore +
                  kBothSides + kBefore + red + "SHOW\n" + within + "SHOW\n",
              deviceLog(output));

    const auto sheets = rendered(output);
    const auto book = folded(sheets.pages, Ordering::LeftToRight);
    for (std::size_t page = 1; page <= 12; ++page)
        EXPECT_EQ(colourOf(page), book.at(page - 1)) << page;
}

TEST(PostScriptBookletTest, RestoreBeyondAStateThatIsLeftOpenWaitsForTheEndOfTheSheet)
{
    PostScriptSample sample = colouredPages(8);
    sample.pages[0] = "/outer save def " + colourRequest("red") + "save pop\n" + sample.pages[0] +
                      "outer restore\n" + kTell;
    sample.pages[2] = kTell + sample.pages[2];
    EXPECT_EQ(kSheetsOwn + kSet + "red \nis (red)\nlevel 3\n" + kBothSides + kBefore + kBothSides,
              deviceLog(processed(sample.text(), booklet())));
}

TEST(PostScriptBookletTest, RequestsInSavedStatesOfEveryPageAreMadeInTime)
{
    PostScriptSample sample = colouredPages(64); // more than an interpreter saves in each other
    for (auto &page : sample.pages)
        page = "save " + colourRequest("red") + page + "restore\n";
    std::string expected = kSheetsOwn;
    for (int sheet = 0; sheet < 16; ++sheet)
        expected += kSet + "red \n" + kBothSides;
    EXPECT_EQ(expected, deviceLog(processed(sample.text(), booklet())));
}

TEST(PostScriptBookletTest, RequestInAKeptGraphicsStateIsMadeInTime)
{
    EXPECT_EQ(kSet + "red \n" + kBothSides,
              logOfRequests(
                  {"gsave gsave 9 9 scale " + colourRequest("red") + "grestore\n", "", "", ""}));
}

TEST(PostScriptBookletTest, LateRequestThatFailsDoesNotEndTheJob)
{
    const std::string wrong = "{ << /HWResolution (x) >> setpagedevice } stopped cleartomark\n";
    PostScriptSample sample = colouredPages(4);
    for (auto &page : sample.pages)
        page = "mark " + wrong + page;
    const auto sheets = rendered(processed(sample.text(), booklet()));
    EXPECT_EQ("", sheets.log);
    const auto book = folded(sheets.pages, Ordering::LeftToRight);
    for (std::size_t page = 1; page <= 4; ++page)
        EXPECT_EQ(colourOf(page), book.at(page - 1)) << page;
}

TEST(PostScriptBookletTest, ProceduresOfTheDeviceAreCalledForEachPage)
{
    // A mark of the setup's own on every page, one beneath and one on top.
    PostScriptSample sample = colouredPages(3);
    sample.setup += "<< /BeginPage { pop 0 1 0 setrgbcolor 0 200 200 100 rectfill }\n"
                    "/EndPage { 2 ne exch pop dup { gsave matrix defaultmatrix setmatrix initclip\n"
                    "1 0 0 setrgbcolor 50 100 100 50 rectfill grestore } if } >> setpagedevice\n";
    for (auto &page : sample.pages)
        page = "90 rotate 0 0 1 setrgbcolor 0 -200 100 200 rectfill showpage\n";
    const auto sheets = rendered(processed(sample.text(), booklet()));
    ASSERT_EQ(2U, sheets.pages.size());
    const auto expectMarks = [](const RenderedPage &sheet, double middle) {
        EXPECT_EQ(kBlue, colourAt(sheet, middle, 100));
        EXPECT_EQ(kRed, colourAt(sheet, middle, 250));
        EXPECT_EQ(Support::kGreen, colourAt(sheet, middle, 500));
    };
    expectMarks(sheets.pages[0], kRight);
    expectMarks(sheets.pages[1], kLeft);
    expectMarks(sheets.pages[1], kRight);
    for (const double y : {100.0, 250.0, 500.0})
        EXPECT_EQ(kWhite, colourAt(sheets.pages[0], kLeft, y));
}

TEST(PostScriptBookletTest, RequestThatIsInForceAlreadyDoesNotDisturbTheSheet)
{
    PostScriptSample sample = colouredPages(4);
    for (auto &page : sample.pages)
        page = "<< /MediaColor (red) >> setpagedevice\n" + page;
    EXPECT_EQ("SET PageSize 595.276 841.89 ImagingBBox null \n"
              "SET Duplex true Tumble true \n"
              "SET MediaColor red \n"
              "SHOW\nSHOW\n",
              deviceLog(processed(sample.text(), booklet())));
}

TEST(PostScriptBookletTest, CommentsTellTheTruth)
{
    PostScriptSample sample = colouredPages(5);
    std::string text = sample.text();
    const std::string count = "%%Pages: 5\n";
    text.replace(
        text.find(count), count.size(),
        "%%Pages: (atend)\n%%BoundingBox: (atend)\n%%HiResBoundingBox: 1 1 9 9\n"
        "%%PageOrder: Descend\n%%Orientation: Portrait\n%%DocumentMedia: X 200 300 0 () ()\n"
        "%%+ Y 200 300 0 () ()\n");
    text.insert(text.find("%%EOF"), "%%Pages: 5\n%%BoundingBox: 1 2 3 4\n");
    const std::string output = processed(text, booklet());
    EXPECT_EQ(1U, countOf("%%Pages: 4\n", output));
    EXPECT_EQ(1U, countOf("%%Pages:", output));
    EXPECT_EQ(1U, countOf("%%BoundingBox: 0 0 596 842\n", output));
    EXPECT_EQ(1U, countOf("BoundingBox:", output));
    EXPECT_EQ(1U, countOf("%%PageOrder: Ascend\n", output));
    EXPECT_EQ(1U, countOf("%%PageOrder:", output));
    EXPECT_EQ(1U, countOf("%%Orientation: Landscape\n", output));
    EXPECT_EQ(1U, countOf("%%Orientation:", output));
    EXPECT_EQ(0U, countOf("%%+", output));
    EXPECT_EQ(4U, countOf("\n%%Page:", output));
    EXPECT_THAT(output, HasSubstr("\n%%Page: 4 4\n"));
}

TEST(PostScriptBookletTest, SizeWhoseNameIsNotAWordDoesNotGetIntoTheComments)
{
    Booklet request = booklet();
    for (const char *name : {"zzz text_x_210x297mm", "zzz\nshowpage_x_210x297mm"}) {
        request.pageSize = name;
        const std::string output = processed(colouredPages(1).text(), request);
        EXPECT_THAT(output, HasSubstr("\n%%DocumentMedia: Booklet 595.2756 841.8898 0 () ()\n"));
        EXPECT_THAT(output, Not(HasSubstr("zzz")));
    }
    EXPECT_THAT(processed(colouredPages(1).text(), booklet()), HasSubstr("\n%%DocumentMedia: A4 "));
}

TEST(PostScriptBookletTest, DocumentWithoutSetupGetsOne)
{
    const std::string page = "0 0 1 setrgbcolor 0 0 200 300 rectfill showpage\n";
    const std::string output = processed("%!PS-Adobe-3.0\n<< /PageSize [200 300] >> setpagedevice\n"
                                         "%%Page: 1 1\n" +
                                             page + "%%Page: 2 2\n" + page + "%%Page: 3 3\n" + page,
                                         booklet());
    EXPECT_THAT(output,
                HasSubstr("%%BeginSetup\nKLToolkitBookletSheet.1\n%%EndSetup\n%%Page: 1 1"));
    const auto sheets = rendered(output);
    ASSERT_EQ(2U, sheets.pages.size());
    EXPECT_EQ(kWhite, colourAt(sheets.pages[0], kLeft, kMiddle));
    EXPECT_EQ(kBlue, colourAt(sheets.pages[0], kRight, kMiddle));
    EXPECT_EQ(kBlue, colourAt(sheets.pages[1], kRight, kMiddle));
}

// --- What the setup has made of the graphics state -----------------------------------------------

namespace {

/// What a setup may leave behind, and then a page, which draws a line and a box.
const std::vector<std::string> kStates = {
    "0.5 0.8 scale 9 setlinewidth 1 setlinecap [20 15] 1 setdash 1 0 0 setrgbcolor\n",
    "30 rotate 50 0 translate 9 setlinewidth 2 setlinejoin newpath 0 0 moveto\n"
    "90 0 lineto 20 90 lineto clip newpath\n",
    "0.5 0.5 scale [/Indexed /DeviceRGB 1 <00ff000000ff>] setcolorspace 1 setcolor\n"
    "100 100 moveto 300 300 lineto\n",
    "0.4 setgray { dup 0.5 lt { pop 0 } if } settransfer\n",
};
constexpr char kMarks[] = "20 20 moveto 90 20 lineto 20 190 lineto stroke\n"
                          "30 50 60 50 rectfill showpage\n";

/// How a page frames its marks, so that the state of the setup is there again behind it.
struct Frame {
    const char *setup;
    const char *before;
    const char *behind;
};
const std::vector<Frame> kFrames = {
    {"", "save\n", "restore\n"},
    {"", "gsave\n", "grestore\n"},
    {"", "save gsave\n", "grestoreall restore\n"},
    {"/level save def\n", "level restore /level save def\n", ""},
    {"/level save def\n", "", "level restore /level save def\n"},
    {"/level save def\n",
     "level restore /level save def << /MediaType (x) >> setpagedevice\n"
     "level restore /level save def\n",
     ""},
};

std::string withoutSetupComments(std::string text)
{
    for (const std::string comment : {"%%BeginSetup\n", "%%EndSetup\n"})
        text.erase(text.find(comment), comment.size());
    return text;
}

void expectSameBooklets(const std::string &expected, const std::vector<std::string> &documents,
                        const Booklet &request)
{
    std::vector<std::string> booklets = {processed(expected, request)};
    for (const std::string &document : documents)
        booklets.push_back(processed(document, request));
    const auto results = Support::renderEach(booklets, {.resolution = 36});
    ASSERT_EQ(2U, results[0].pages.size());
    for (std::size_t index = 1; index < results.size(); ++index) {
        EXPECT_EQ("", results[index].log) << index;
        EXPECT_TRUE(results[0].pages == results[index].pages) << index;
    }
}

/// Of documents with four pages that begin with the state of the setup.
void expectStateOnEveryPage(const std::string &state, const PostScriptSample &plain,
                            const Booklet &request)
{
    PostScriptSample expected = plain;
    expected.pages.assign(4, state + kMarks);
    std::vector<std::string> documents;
    for (const Frame &frame : kFrames) {
        PostScriptSample sample = plain;
        sample.setup += state + frame.setup;
        sample.pages.assign(4, std::string(frame.before) + kMarks + frame.behind);
        documents.push_back(sample.text());
        if (std::string(frame.setup).empty())
            documents.push_back(withoutSetupComments(sample.text()));
    }
    expectSameBooklets(expected.text(), documents, request);
}

} // namespace

class PostScriptBookletStateTest : public testing::TestWithParam<std::string> {};

TEST_P(PostScriptBookletStateTest, IsThereOnEveryPageThatBringsItBack)
{
    expectStateOnEveryPage(GetParam(), {}, booklet());
}

TEST_P(PostScriptBookletStateTest, IsThereOnTurnedPages)
{
    Booklet request = booklet();
    request.turnLandscape = true;
    expectStateOnEveryPage(GetParam(), {.setup = "<< /PageSize [300 200] >> setpagedevice\n"},
                           request);
}

TEST_P(PostScriptBookletStateTest, IsThereOnTheFirstPageOnlyWhereNoneBringsItBack)
{
    PostScriptSample expected;
    expected.pages.assign(4, kMarks);
    PostScriptSample sample = expected;
    sample.setup += GetParam();
    expected.pages[0].insert(0, GetParam());
    expectSameBooklets(expected.text(), {sample.text()}, booklet());
}

INSTANTIATE_TEST_SUITE_P(States, PostScriptBookletStateTest, testing::ValuesIn(kStates),
                         [](const auto &example) {
                             return "State" + std::to_string(example.index);
                         });

TEST(PostScriptBookletTest, ProcedureAtTheBeginOfAPageIsNotUndoneByWhatPagesLeave)
{
    PostScriptSample expected;
    expected.pages.assign(4,
                          "0.5 0.5 scale 9 setlinewidth 1 0 0 setrgbcolor\n" + std::string(kMarks));
    PostScriptSample sample;
    sample.setup = "<< /PageSize [200 300] /BeginPage { pop 0.5 0.5 scale 9 setlinewidth\n"
                   "1 0 0 setrgbcolor } >> setpagedevice\n";
    sample.pages.assign(4, kMarks);
    expectSameBooklets(expected.text(), {sample.text()}, booklet());
}

// --- With the other commands ---------------------------------------------------------------------

TEST(PostScriptBookletTest, WatermarkStaysOnEveryPage)
{
    const Watermark watermark = {.above = true,
                                 .font = "Helvetica",
                                 .angle = 0,
                                 .colour = {1, 0, 0},
                                 .position = {60, 140},
                                 .size = 24,
                                 .text = "Draft"};
    for (const bool above : {true, false}) {
        PostScriptSample sample;
        sample.pages.assign(3, "0 0 1 setrgbcolor 0 0 200 100 rectfill showpage\n");
        Watermark request = watermark;
        request.above = above;
        const auto sheets =
            renderText(processed(processed(sample.text(), request), booklet()), {.resolution = 72});
        const auto shares = [&](std::size_t side) { return sheets.pages.at(side).shareOf(kRed); };
        EXPECT_GT(shares(0), 0.002);
        EXPECT_NEAR(2 * shares(0), shares(1), 0.0005); // page 1 alone, then pages 2 and 3
    }
}

TEST(PostScriptBookletTest, BookletOfABookletIsOneOfItsSheets)
{
    const std::string once = processed(colouredPages(4).text(), booklet());
    const auto sheets = rendered(processed(once, booklet()));
    ASSERT_EQ(2U, sheets.pages.size());
    // Its two sides are the two pages in the reading direction's first places.
    const double middleOfUpperHalf = kSheetWidth * 3 / 4;
    EXPECT_EQ(colourOf(1), colourAt(sheets.pages[0], kRight, middleOfUpperHalf));
    EXPECT_EQ(colourOf(3), colourAt(sheets.pages[1], kLeft, middleOfUpperHalf));
    EXPECT_EQ(kWhite, colourAt(sheets.pages[0], kLeft, kMiddle));
}

// --- Pages that would be lost --------------------------------------------------------------------

TEST(PostScriptBookletTest, DocumentWithNothingBehindItsPageCommentsIsRefused)
{
    PostScriptSample sample;
    sample.pages.assign(2, " \n");
    sample.trailer = colouredPage(1) + colouredPage(2);
    EXPECT_THROW(processed(sample.text(), booklet()), ToolkitError);
    sample.pages[1] = colouredPage(1);
    EXPECT_NO_THROW(processed(sample.text(), booklet()));
}

// --- Pages at which the program fails ------------------------------------------------------------

class PostScriptBookletFailureTest : public testing::TestWithParam<const char *> {};

/// All else is printed, and the page as far as it has come.
TEST_P(PostScriptBookletFailureTest, DoesNotTakeTheOtherPagesAlong)
{
    for (const std::size_t count : {3U, 4U, 9U}) {
        SCOPED_TRACE(count);
        PostScriptSample sample = colouredPages(count);
        sample.pages[2] = "0 0.6 0 setrgbcolor 0 0 200 300 rectfill " + std::string(GetParam()) +
                          "\n0 0 200 300 rectfill showpage\n";
        const auto sheets =
            Support::renderEach({processed(sample.text(), booklet())}, {.resolution = 36});
        ASSERT_EQ((count + 3) / 4 * 2, sheets[0].pages.size());
        const auto book = folded(sheets[0].pages, Ordering::LeftToRight);
        for (std::size_t page = 1; page <= count; ++page)
            EXPECT_EQ(page == 3 ? (Colour{0, 153, 0}) : colourOf(page), book[page - 1]) << page;
    }
}

/// The error is told, as it would be without the booklet, behind the last sheet.
TEST_P(PostScriptBookletFailureTest, IsToldInTheEnd)
{
    PostScriptSample sample = colouredPages(4);
    sample.pages[2] = std::string(GetParam()) + "\n" + sample.pages[2];
    sample.trailer = "(trailer) print\n";
    const auto results = Support::renderEach({sample.text(), processed(sample.text(), booklet())},
                                             {.resolution = 9});
    EXPECT_THAT(results[0].log, testing::StartsWith("error: "));
    EXPECT_EQ(results[0].log, results[1].log);
}

INSTANTIATE_TEST_SUITE_P(Errors, PostScriptBookletFailureTest,
                         testing::Values("unknownname", "1 0 div", "(text) 9 get", "pop pop",
                                         "save gsave 9 dict begin 1 2 (three) unknownname",
                                         "[ 1 2 3 { 1 { 9 { unknownname } repeat } repeat } exec",
                                         "9 9 scale /showpage { } def ) ( { >",
                                         "currentfile 9 string readstring\n012345678 pop add"));

TEST(PostScriptBookletTest, DocumentThatStopsItselfIsOver)
{
    PostScriptSample sample = colouredPages(8);
    sample.pages[2] = "stop\n";
    const auto results =
        Support::renderEach({processed(sample.text(), booklet())}, {.resolution = 9});
    EXPECT_EQ(2U, results[0].pages.size());
}

/// In a booklet of a booklet, too.
TEST(PostScriptBookletTest, FailureStaysWithinItsHalfOfEveryRun)
{
    PostScriptSample sample = colouredPages(4);
    sample.pages[1] = "unknownname\n";
    const std::string once = processed(sample.text(), booklet());
    const auto sheets = Support::renderEach({processed(once, booklet())}, {.resolution = 36})[0];
    EXPECT_EQ("error: undefined\n", sheets.log);
    ASSERT_EQ(2U, sheets.pages.size());
    const double middleOfUpperHalf = kSheetWidth * 3 / 4;
    EXPECT_EQ(colourOf(1), colourAt(sheets.pages[0], kRight, middleOfUpperHalf));
    EXPECT_EQ(colourOf(3), colourAt(sheets.pages[1], kLeft, middleOfUpperHalf));
}

// --- What has been shown -------------------------------------------------------------------------

TEST(PostScriptBookletTest, PageThatHasBeenShownIsNotMadeWhiteAgain)
{
    const std::string size = "<< /PageSize [200 300] >> setpagedevice\n";
    const std::string media = "<< /MediaColor (red) >> setpagedevice\n";
    PostScriptSample sample = colouredPages(4);
    for (const std::string &behind : {std::string("erasepage\n"), size, media, size + media}) {
        SCOPED_TRACE(behind);
        for (const char *show : {"showpage", "copypage"}) {
            PostScriptSample pages = sample;
            for (auto &page : pages.pages) {
                page.replace(page.find("showpage"), 8, show);
                page += behind;
            }
            const auto book =
                folded(rendered(processed(pages.text(), booklet())).pages, Ordering::LeftToRight);
            for (std::size_t page = 1; page <= 4; ++page)
                EXPECT_EQ(colourOf(page), book.at(page - 1)) << show << page;
        }
    }
}

TEST(PostScriptBookletTest, RequestBehindTheFirstPageIsForTheNextSheet)
{
    PostScriptSample sample = colouredPages(8);
    sample.pages[0] += "<< /MediaColor (red) >> setpagedevice\n";
    EXPECT_EQ("SET PageSize 595.276 841.89 ImagingBBox null \n"
              "SET Duplex true Tumble true \n"
              "SHOW\nSHOW\nSET MediaColor red \nSHOW\nSHOW\n",
              deviceLog(processed(sample.text(), booklet())));
}

// --- Damaged documents ---------------------------------------------------------------------------

class PostScriptBookletTruncatedTest : public testing::TestWithParam<const char *> {};

TEST_P(PostScriptBookletTruncatedTest, CutOffPageDoesNotTakeTheOthersAlong)
{
    std::string text = colouredPages(4).text();
    text.erase(text.find("%%Trailer"));
    text += "%%Page: 5 5\n0 0.6 0 setrgbcolor 0 0 200 300 rectfill " + std::string(GetParam());
    const auto sheets = rendered(processed(text, booklet()));
    ASSERT_EQ(4U, sheets.pages.size());
    EXPECT_EQ(colourOf(1), colourAt(sheets.pages[0], kRight, kMiddle));
    EXPECT_EQ(colourOf(2), colourAt(sheets.pages[1], kLeft, kMiddle));
    EXPECT_EQ(colourOf(3), colourAt(sheets.pages[2], kRight, kMiddle));
    EXPECT_EQ(colourOf(4), colourAt(sheets.pages[3], kLeft, kMiddle));
    EXPECT_EQ((Colour{0, 153, 0}), colourAt(sheets.pages[3], kRight, kMiddle));
}

INSTANTIATE_TEST_SUITE_P(Ends, PostScriptBookletTruncatedTest,
                         testing::Values("", "showp", "showpage", "(text", "{ 1 2 ", "<abc", "[ 1",
                                         "gsave save 9 dict begin",
                                         "currentfile 99 string readstring\nabc",
                                         "\n%%BeginBinary: 999\ncurrentfile 999 string readstring\n"
                                         "\n%%Page: 6 6\n"));

/// The next command counts the booklet's sides by their comments.
TEST(PostScriptBookletTest, CutOffDataDoNotHideTheSidesBehindThem)
{
    std::string text = colouredPages(1).text();
    text.erase(text.find("%%Trailer"));
    for (const char *data :
         {"%%BeginBinary: 99999\ncurrentfile 999 string readstring\n",
          "%%BeginBinary: 42\ncurrentfile 9 string readstring\n%%Page: 9\n\n%%EndBin"}) {
        const std::string sides = processed(text + data, booklet());
        EXPECT_THAT(processed(sides, CoverPages{}), HasSubstr("\n%%Pages: 2\n")) << data;
    }
}

TEST(PostScriptBookletTest, SetupThatTakesTheDeviceBackHasTheSheetsAllTheSame)
{
    PostScriptSample sample = colouredPages(4);
    sample.setup += "showpage grestore\n";
    Booklet request = booklet();
    request.pageSize = "A3"; // no printer's own
    const auto sides = rendered(processed(sample.text(), request)).pages;
    ASSERT_EQ(3U, sides.size()); // one of them ahead, on other paper
    EXPECT_NEAR(kSheetHeight, sides[1].width(), 2);
    EXPECT_EQ(colourOf(1), colourAt(sides[1], 2 * kSheetWidth * 3 / 4, kSheetHeight / 2));
}

TEST(PostScriptBookletTest, MarksAheadOfTheFirstCommentAreOnTheFirstSide)
{
    PostScriptSample sample;
    sample.setup += "0 0 1 setrgbcolor 20 200 90 90 rectfill\n";
    sample.pages.assign(4, "showpage\n");
    const auto sides = rendered(processed(sample.text(), booklet())).pages;
    ASSERT_EQ(2U, sides.size());
    const auto marks = sides[0].boxOf(kBlue);
    ASSERT_TRUE(marks); // as large as they are
    EXPECT_NEAR(20, marks->left, 2);
    EXPECT_NEAR(290, marks->top, 2);
    EXPECT_EQ(0, sides[1].coverage());
}

TEST(PostScriptBookletTest, PagesAheadOfTheFirstCommentHaveSheetsOfTheirOwn)
{
    PostScriptSample sample = colouredPages(4);
    const std::string shown = "0 0 1 setrgbcolor 0 0 90 90 rectfill showpage\n";
    const std::string asks = "<< /MediaType (x) >> setpagedevice\n";
    const auto sidesAhead = [&](const std::string &setup) {
        sample.setup = setup;
        return rendered(processed(sample.text(), booklet())).pages.size() - 2;
    };
    EXPECT_EQ(0U, sidesAhead(""));
    EXPECT_EQ(2U, sidesAhead(shown));
    EXPECT_EQ(2U, sidesAhead(shown + shown));
    EXPECT_EQ(4U, sidesAhead(shown + "copypage " + shown));
    EXPECT_EQ(1U, sidesAhead(shown + asks)); // what is asked for begins another sheet
    sample.prolog = shown;
    EXPECT_EQ(1U, sidesAhead("")); // as the request for the booklet's sheets does
    EXPECT_EQ(3U, sidesAhead(shown));
}

TEST(PostScriptBookletTest, SetupThatBeginsWithinTheProcedureOfAPrologIsNone)
{
    PostScriptSample sample = colouredPages(4);
    sample.prolog = "/never {\n%%BeginSetup\n} def\n";
    const auto sides = rendered(processed(sample.text(), booklet())).pages;
    ASSERT_EQ(2U, sides.size());
    EXPECT_NEAR(kSheetWidth, sides[0].width(), 2);
    EXPECT_EQ(colourOf(1), colourAt(sides[0], kRight, kMiddle));
}

/// The next command does not take the first side for a comment that has strayed into the setup.
TEST(PostScriptBookletTest, PageThatBeginsWithinTheSetupStaysAPage)
{
    const std::string text = "%!PS-Adobe-3.0\n%%EndComments\n%%BeginSetup\n%%Page: 1 1\n"
                             "%%EndSetup\nshowpage\n%%Trailer\n%%EOF\n";
    CoverPages backCover;
    backCover.back = {CoverStyle::NoPrint, "None", "Auto"};
    EXPECT_THAT(processed(processed(text, booklet()), CoverPages{}), HasSubstr("\n%%Pages: 2\n"));
    EXPECT_THAT(processed(processed(text, backCover), CoverPages{}), HasSubstr("\n%%Pages: 3\n"));
}
