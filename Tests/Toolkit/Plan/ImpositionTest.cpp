#include "Imposition.h"

#include "ToolkitError.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

const Booklet kNoMargins = {"A4", 0, 0, Ordering::LeftToRight};

Booklet bookletOf(std::uint64_t signatureSheets, Ordering ordering = Ordering::LeftToRight)
{
    Booklet booklet = kNoMargins;
    booklet.ordering = ordering;
    booklet.signatureSheets = signatureSheets;
    return booklet;
}

/// Folds each signature in the middle, its sheets one in the other, and reads one behind the other:
/// the page numbers in reading order, 0 for a blank one.
std::vector<std::size_t> read(std::size_t pages, const Booklet &booklet)
{
    std::vector<std::size_t> book;
    std::vector<std::size_t> secondHalf;
    for (std::size_t side = 0; side < bookletSideCount(pages); ++side) {
        const SheetSide content = bookletSide(side, pages, booklet);
        // Seen from the front, the half on the side of the fold's far end is read last.
        const bool mirrored = (side % 2 == 1) != (booklet.ordering == Ordering::RightToLeft);
        book.push_back((mirrored ? content.left : content.right).value_or(0));
        secondHalf.push_back((mirrored ? content.right : content.left).value_or(0));
        if (content.endsSignature) {
            book.insert(book.end(), secondHalf.rbegin(), secondHalf.rend());
            secondHalf.clear();
        }
    }
    return book;
}

std::vector<std::size_t> numbered(std::size_t pages)
{
    std::vector<std::size_t> book((pages + 3) / 4 * 4);
    for (std::size_t page = 0; page < pages; ++page)
        book[page] = page + 1;
    return book;
}

/// The sides as text, "4|1 2|3", with "-" for a blank half.
std::string sidesOf(std::size_t pages, const Booklet &booklet)
{
    const auto half = [](const std::optional<std::size_t> &page) {
        return page ? std::to_string(*page) : "-";
    };
    std::string sides;
    for (std::size_t side = 0; side < bookletSideCount(pages); ++side) {
        const SheetSide content = bookletSide(side, pages, booklet);
        sides += (side == 0 ? "" : " ") + half(content.left) + "|" + half(content.right);
    }
    return sides;
}

/// The sides of a booklet without blank halves, as they are with fewer pages or the other way
/// round.
std::string changed(const std::string &sides, std::size_t pages, Ordering ordering)
{
    std::string text;
    std::istringstream words(sides);
    for (std::string word; words >> word;) {
        const auto bar = word.find('|');
        std::string halves[] = {word.substr(0, bar), word.substr(bar + 1)};
        if (ordering == Ordering::RightToLeft)
            std::swap(halves[0], halves[1]);
        for (std::string &half : halves)
            half = std::stoull(half) > pages ? "-" : half;
        text += (text.empty() ? "" : " ") + halves[0] + "|" + halves[1];
    }
    return text;
}

} // namespace

TEST(ImpositionTest, ReadsInOrderOnceFolded)
{
    for (std::size_t pages = 1; pages <= 64; ++pages) {
        for (const std::uint64_t sheets : {0U, 1U, 2U, 3U, 5U, 16U, 17U, 1'000'000U}) {
            EXPECT_EQ(numbered(pages), read(pages, bookletOf(sheets))) << pages << " " << sheets;
            EXPECT_EQ(numbered(pages), read(pages, bookletOf(sheets, Ordering::RightToLeft)))
                << pages << " " << sheets;
        }
    }
}

TEST(ImpositionTest, SignaturesHaveTheirSheetsAndTheLastOneWhatIsNeeded)
{
    // Booklets of 1 to 6 sheets in signatures of 1, 2 and 3, all halves of which carry a page.
    const std::string one = "4|1 2|3";
    const std::string two = "8|1 2|7 6|3 4|5";
    const std::string three = "12|1 2|11 10|3 4|9 8|5 6|7";
    const std::string twoTwice = two + " 16|9 10|15 14|11 12|13";
    const std::vector<std::vector<std::string>> expected = {
        {one, one + " 8|5 6|7", one + " 8|5 6|7 12|9 10|11",
         one + " 8|5 6|7 12|9 10|11 16|13 14|15",
         one + " 8|5 6|7 12|9 10|11 16|13 14|15 20|17 18|19",
         one + " 8|5 6|7 12|9 10|11 16|13 14|15 20|17 18|19 24|21 22|23"},
        {one, two, two + " 12|9 10|11", twoTwice, twoTwice + " 20|17 18|19",
         twoTwice + " 24|17 18|23 22|19 20|21"},
        {one, two, three, three + " 16|13 14|15", three + " 20|13 14|19 18|15 16|17",
         three + " 24|13 14|23 22|15 16|21 20|17 18|19"},
    };
    for (std::uint64_t sheets = 1; sheets <= 3; ++sheets) {
        for (std::size_t pages = 1; pages <= 24; ++pages) {
            SCOPED_TRACE(std::to_string(pages) + " pages, signatures of " + std::to_string(sheets));
            const std::string &full = expected[sheets - 1][(pages - 1) / 4];
            for (const Ordering ordering : {Ordering::LeftToRight, Ordering::RightToLeft})
                EXPECT_EQ(changed(full, pages, ordering),
                          sidesOf(pages, bookletOf(sheets, ordering)));
        }
    }
}

TEST(ImpositionTest, ASheetKnowsHowDeepItLiesAndWhetherItEndsItsSignature)
{
    // 5 sheets in signatures of 3: three of them, then two.
    const std::size_t depths[] = {0, 0, 1, 1, 2, 2, 0, 0, 1, 1};
    for (std::size_t side = 0; side < 10; ++side) {
        const SheetSide content = bookletSide(side, 20, bookletOf(3));
        EXPECT_EQ(depths[side], content.depth) << side;
        EXPECT_EQ(side == 5 || side == 9, content.endsSignature) << side;
    }
    EXPECT_EQ(4U, bookletSide(9, 20, bookletOf(0)).depth);
    EXPECT_FALSE(bookletSide(5, 20, bookletOf(0)).endsSignature);
    EXPECT_TRUE(bookletSide(9, 20, bookletOf(0)).endsSignature);
}

TEST(ImpositionTest, FirstFrontHasTheLastPageOnTheLeft)
{
    const SheetSide front = bookletSide(0, 8, kNoMargins);
    EXPECT_EQ(8U, front.left);
    EXPECT_EQ(1U, front.right);
    const SheetSide back = bookletSide(1, 8, kNoMargins);
    EXPECT_EQ(2U, back.left);
    EXPECT_EQ(7U, back.right);
    const SheetSide next = bookletSide(2, 8, kNoMargins);
    EXPECT_EQ(6U, next.left);
    EXPECT_EQ(3U, next.right);
}

TEST(ImpositionTest, RightToLeftExchangesTheHalves)
{
    const SheetSide front = bookletSide(0, 8, bookletOf(0, Ordering::RightToLeft));
    EXPECT_EQ(1U, front.left);
    EXPECT_EQ(8U, front.right);
}

TEST(ImpositionTest, MissingPagesAreBlank)
{
    const SheetSide front = bookletSide(0, 5, kNoMargins);
    EXPECT_EQ(std::nullopt, front.left);
    EXPECT_EQ(1U, front.right);
    EXPECT_EQ(4U, bookletSideCount(5));
    EXPECT_EQ(0U, bookletSideCount(0));
}

TEST(ImpositionTest, CentreMarginIsSharedByTheTwoHalves)
{
    const SheetLayout layout = sheetLayout({600, 800}, {"A4", 20, 30, Ordering::LeftToRight});
    EXPECT_EQ(800, layout.width);
    EXPECT_EQ(600, layout.height);
    EXPECT_EQ(30, layout.left.x);
    EXPECT_EQ(30, layout.left.y);
    EXPECT_EQ(360, layout.left.width); // 400 - 10 - 30
    EXPECT_EQ(540, layout.left.height);
    EXPECT_EQ(410, layout.right.x);
    EXPECT_EQ(360, layout.right.width);
}

TEST(ImpositionTest, SheetGivenOnItsLongEdgeIsTheSame)
{
    EXPECT_EQ(800, sheetLayout({800, 600}, kNoMargins).width);
}

TEST(ImpositionTest, MarginsThatLeaveLessThan36PointsAreRefused)
{
    EXPECT_NO_THROW(sheetLayout({600, 800}, {"A4", 728, 0, Ordering::LeftToRight}));
    EXPECT_THROW(sheetLayout({600, 800}, {"A4", 729, 0, Ordering::LeftToRight}), ToolkitError);
    EXPECT_NO_THROW(sheetLayout({600, 800}, {"A4", 0, 282, Ordering::LeftToRight}));
    EXPECT_THROW(sheetLayout({600, 800}, {"A4", 0, 282.1, Ordering::LeftToRight}), ToolkitError);
}

TEST(ImpositionTest, PageIsScaledBySmallerRatioAndCentred)
{
    const Placement down = placementInArea({800, 800}, {10, 20, 400, 600});
    EXPECT_EQ(0.5, down.scale);
    EXPECT_EQ(10, down.x);
    EXPECT_EQ(120, down.y);
    const Placement up = placementInArea({100, 300}, {10, 20, 400, 600});
    EXPECT_EQ(2, up.scale);
    EXPECT_EQ(110, up.x);
    EXPECT_EQ(20, up.y);
}

// --- Creep ---------------------------------------------------------------------------------------

namespace {

/// 600 by 800 points, margins of 20 and 30: halves from 30 to 390 and from 410 to 770.
const Booklet kCreeping = {.pageSize = "A4",
                           .centreMargin = 20,
                           .outerMargin = 30,
                           .ordering = Ordering::LeftToRight,
                           .signatureSheets = 3,
                           .creep = 2};

void expectHalves(const SheetLayout &layout, double left, double right, double width)
{
    EXPECT_EQ(left, layout.left.x);
    EXPECT_EQ(right, layout.right.x);
    for (const Rectangle &half : {layout.left, layout.right}) {
        EXPECT_EQ(width, half.width);
        EXPECT_EQ(30, half.y);
        EXPECT_EQ(540, half.height);
    }
    EXPECT_EQ(800, layout.width);
    EXPECT_EQ(600, layout.height);
}

SheetLayout atDepth(std::size_t depth, std::size_t pages, const Booklet &booklet)
{
    return layoutAtDepth(sheetLayout({600, 800}, booklet), depth, pages, booklet);
}

} // namespace

TEST(ImpositionTest, WithoutCreepAllSheetsAreAlike)
{
    Booklet booklet = kCreeping;
    booklet.creep = 0;
    for (const std::size_t depth : {0U, 1U, 2U})
        expectHalves(atDepth(depth, 12, booklet), 30, 410, 360);
}

TEST(ImpositionTest, PagesOfInnerSheetsMoveTowardsTheFold)
{
    // The innermost of three sheets sticks out by 4: the halves are 356 wide on each of them.
    expectHalves(atDepth(0, 12, kCreeping), 30, 414, 356);
    expectHalves(atDepth(1, 12, kCreeping), 32, 412, 356);
    expectHalves(atDepth(2, 12, kCreeping), 34, 410, 356); // to 390, where the clear strip begins
}

TEST(ImpositionTest, PagesAreOfOneSizeInSignaturesOfAllSizes)
{
    expectHalves(atDepth(0, 16, kCreeping), 30, 414, 356); // also that of a single sheet, the last
}

TEST(ImpositionTest, CreepIsThatOfTheSheetsThereAre)
{
    expectHalves(atDepth(0, 4, kCreeping), 30, 410, 360);
    expectHalves(atDepth(1, 5, kCreeping), 32, 410, 358);
    Booklet booklet = kCreeping;
    booklet.signatureSheets = 0;
    expectHalves(atDepth(5, 24, booklet), 40, 410, 350);
}

TEST(ImpositionTest, CreepThatLeavesLessThan36PointsIsRefused)
{
    Booklet booklet = kCreeping;
    booklet.creep = 162; // 360 - 2 * 162 is 36
    EXPECT_NO_THROW(atDepth(0, 12, booklet));
    booklet.creep = 162.1;
    EXPECT_THROW(atDepth(0, 12, booklet), ToolkitError);
    EXPECT_NO_THROW(atDepth(0, 8, booklet));
}

// --- Landscape pages -----------------------------------------------------------------------------

TEST(ImpositionTest, LandscapePagesTurnTheWayTheBookletIsRead)
{
    Booklet booklet = kNoMargins;
    EXPECT_EQ(0, turnOfLandscapePages(booklet));
    booklet.turnLandscape = true;
    EXPECT_EQ(90, turnOfLandscapePages(booklet));
    booklet.ordering = Ordering::RightToLeft;
    EXPECT_EQ(270, turnOfLandscapePages(booklet));
}

TEST(ImpositionTest, LandscapePageIsTurnedInAnUprightArea)
{
    // Turned it is 100 by 200, from (10, 120) to (110, 320).
    const Rectangle area = {10, 20, 100, 400};
    const Placement counterClockwise = placementInArea({200, 100}, area, 90);
    EXPECT_EQ(1, counterClockwise.scale);
    EXPECT_EQ(90, counterClockwise.turn);
    EXPECT_EQ(110, counterClockwise.x);
    EXPECT_EQ(120, counterClockwise.y);
    const Placement clockwise = placementInArea({200, 100}, area, 270);
    EXPECT_EQ(1, clockwise.scale);
    EXPECT_EQ(270, clockwise.turn);
    EXPECT_EQ(10, clockwise.x);
    EXPECT_EQ(320, clockwise.y);
}

TEST(ImpositionTest, NothingElseIsTurned)
{
    EXPECT_EQ(0, placementInArea({100, 200}, {0, 0, 100, 400}, 90).turn);
    EXPECT_EQ(0, placementInArea({100, 100}, {0, 0, 100, 400}, 90).turn);
    EXPECT_EQ(0, placementInArea({200, 100}, {0, 0, 400, 100}, 90).turn);
    EXPECT_EQ(0, placementInArea({200, 100}, {0, 0, 100, 100}, 90).turn);
    EXPECT_EQ(0, placementInArea({200, 100}, {0, 0, 100, 400}, 0).turn);
    EXPECT_EQ(0.5, placementInArea({200, 100}, {0, 0, 100, 400}).scale);
}
