#include "Imposition.h"

#include "ToolkitError.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace {

/// Folds the sheets in the middle, one in the other, and reads: the page numbers in reading
/// order, 0 for a blank one.
std::vector<std::uint64_t> read(std::uint64_t pages, Ordering ordering)
{
    const std::uint64_t sides = bookletSideCount(pages);
    std::vector<std::uint64_t> book(sides * 2);
    for (std::uint64_t side = 0; side < sides; ++side) {
        const SheetSide content = bookletSide(side, pages, ordering);
        const bool mirrored = (side % 2 == 1) != (ordering == Ordering::RightToLeft);
        // Seen from the front, the half on the side of the fold's far end is read last.
        book[side] = (mirrored ? content.left : content.right).value_or(0);
        book[sides * 2 - 1 - side] = (mirrored ? content.right : content.left).value_or(0);
    }
    return book;
}

std::vector<std::uint64_t> numbered(std::uint64_t pages)
{
    std::vector<std::uint64_t> book((pages + 3) / 4 * 4);
    for (std::uint64_t page = 0; page < pages; ++page)
        book[page] = page + 1;
    return book;
}

const Booklet kNoMargins = {"A4", 0, 0, Ordering::LeftToRight};

} // namespace

TEST(ImpositionTest, ReadsInOrderOnceFolded)
{
    for (std::uint64_t pages = 1; pages <= 64; ++pages) {
        EXPECT_EQ(numbered(pages), read(pages, Ordering::LeftToRight)) << pages;
        EXPECT_EQ(numbered(pages), read(pages, Ordering::RightToLeft)) << pages;
    }
}

TEST(ImpositionTest, FirstFrontHasTheLastPageOnTheLeft)
{
    const SheetSide front = bookletSide(0, 8, Ordering::LeftToRight);
    EXPECT_EQ(8U, front.left);
    EXPECT_EQ(1U, front.right);
    const SheetSide back = bookletSide(1, 8, Ordering::LeftToRight);
    EXPECT_EQ(2U, back.left);
    EXPECT_EQ(7U, back.right);
    const SheetSide next = bookletSide(2, 8, Ordering::LeftToRight);
    EXPECT_EQ(6U, next.left);
    EXPECT_EQ(3U, next.right);
}

TEST(ImpositionTest, RightToLeftExchangesTheHalves)
{
    const SheetSide front = bookletSide(0, 8, Ordering::RightToLeft);
    EXPECT_EQ(1U, front.left);
    EXPECT_EQ(8U, front.right);
}

TEST(ImpositionTest, MissingPagesAreBlank)
{
    const SheetSide front = bookletSide(0, 5, Ordering::LeftToRight);
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
