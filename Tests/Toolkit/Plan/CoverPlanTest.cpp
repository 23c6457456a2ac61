#include "CoverPlan.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string text(const PageRange &range)
{
    return range.isEmpty() ? "-" : std::to_string(range.first) + "-" + std::to_string(range.last);
}

std::string text(const std::optional<CoverSheet> &sheet)
{
    if (!sheet)
        return "none";
    return (sheet->oneSided ? "one:" : "two:") +
           (sheet->pages.isEmpty() ? "blank" : text(sheet->pages));
}

/// Front cover, job, back cover; "+" where a blank side fills a sheet.
std::string plan(std::int64_t pages, CoverStyle front, CoverStyle back, bool oneSided)
{
    const CoverPlan plan = coverPlan(pages, front, back, oneSided);
    return text(plan.front) + (plan.blankSideBehindFront ? "+ " : " ") + text(plan.job) +
           (plan.blankSideBehindJob ? "+ " : " ") + text(plan.back);
}

constexpr bool kOneSided = true;
constexpr bool kTwoSided = false;
using enum CoverStyle;

} // namespace

TEST(CoverPlanTest, NoCoverLeavesTheJobAlone)
{
    EXPECT_EQ("none 1-3 none", plan(3, None, None, kTwoSided));
}

TEST(CoverPlanTest, BlankSheetsGoAroundTheWholeJob)
{
    EXPECT_EQ("one:blank 1-4 one:blank", plan(4, NoPrint, NoPrint, kTwoSided));
    EXPECT_EQ("one:blank 1-3+ one:blank", plan(3, NoPrint, NoPrint, kTwoSided));
    EXPECT_EQ("one:blank 1-3 one:blank", plan(3, NoPrint, NoPrint, kOneSided));
}

TEST(CoverPlanTest, FrontCoverHoldsPageOneAlone)
{
    EXPECT_EQ("one:1-1 2-4 none", plan(4, Print1, None, kTwoSided));
    EXPECT_EQ("one:1-1 2-4 none", plan(4, Print, None, kOneSided));
    EXPECT_EQ("one:1-1 - none", plan(1, Print1, None, kTwoSided));
    EXPECT_EQ("one:1-1 - one:blank", plan(1, Print1, NoPrint, kTwoSided));
}

TEST(CoverPlanTest, FrontCoverOnBothSidesHoldsTwoPages)
{
    EXPECT_EQ("two:1-2 3-4 none", plan(4, Print, None, kTwoSided));
    EXPECT_EQ("two:1-2 - none", plan(2, Print, None, kTwoSided));
    EXPECT_EQ("two:1-1 - none", plan(1, Print, None, kTwoSided));
    EXPECT_EQ("two:1-2 - one:blank", plan(2, Print, NoPrint, kTwoSided));
}

TEST(CoverPlanTest, FrontCoverIsFilledWhereTheBackCoverFollows)
{
    EXPECT_EQ("two:1-1+ - one:2-2", plan(2, Print, Print1, kTwoSided));
    EXPECT_EQ("two:1-1+ - one:blank", plan(1, Print, NoPrint, kTwoSided));
}

TEST(CoverPlanTest, BackCoverTakesTheLastSheetOfTwo)
{
    EXPECT_EQ("none 1-4 two:5-5", plan(5, None, Print, kTwoSided));
    EXPECT_EQ("none 1-6 two:blank", plan(6, None, Print, kTwoSided));
    EXPECT_EQ("two:1-2 3-4 two:5-5", plan(5, Print, Print, kTwoSided));
    EXPECT_EQ("one:1-1 2-3 two:4-5", plan(5, Print1, Print, kTwoSided));
    EXPECT_EQ("one:1-1 2-5 two:6-6", plan(6, Print1, Print, kTwoSided));
    EXPECT_EQ("one:1-1 - two:2-2", plan(2, Print1, Print, kTwoSided));
    EXPECT_EQ("one:1-1 - one:2-2", plan(2, Print, Print, kOneSided));
}

TEST(CoverPlanTest, JobOfOddLengthIsFilledBeforeABackCover)
{
    EXPECT_EQ("none 1-3+ one:4-4", plan(4, None, Print1, kTwoSided));
    EXPECT_EQ("none 1-4 one:5-5", plan(5, None, Print1, kTwoSided));
    EXPECT_EQ("none 1-4 one:5-5", plan(5, None, Print1, kOneSided));
}
