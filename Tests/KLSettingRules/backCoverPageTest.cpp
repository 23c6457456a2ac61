#include "backCoverPage.h"

#include "BackCoverPages.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Support;

namespace {

void expectPages(const BackCoverPages &expected, const std::optional<std::string> &style,
                 bool oneSided, bool frontPrintedOnce)
{
    for (auto total = expected.kFewest; total <= expected.kMost; ++total)
        EXPECT_EQ(expected.forTotal(total), backCoverPage(total, style, oneSided, frontPrintedOnce))
            << style.value_or("none") << ", " << total << " pages, one-sided " << oneSided
            << ", front once " << frontPrintedOnce;
}

} // namespace

TEST(BackCoverPageTest, BlankSheetFollowsTheLastPage)
{
    expectPages(kBehindTheLast, "NoPrint", true, true);
    expectPages(kBehindTheLast, "NoPrint", true, false);
    expectPages(kBehindTheLast, "NoPrint", false, true);
    expectPages(kBehindTheLast, "NoPrint", false, false);
}

TEST(BackCoverPageTest, SheetPrintedOnceHoldsTheLastPage)
{
    expectPages(kLast, "Print1", true, true);
    expectPages(kLast, "Print1", true, false);
    expectPages(kLast, "Print1", false, true);
    expectPages(kLast, "Print1", false, false);
}

TEST(BackCoverPageTest, OneSidedSheetPrintedLikeTheJobHoldsTheLastPage)
{
    expectPages(kLast, "Print", true, true);
    expectPages(kLast, "Print", true, false);
}

TEST(BackCoverPageTest, TwoSidedSheetBeginsAtAnEvenPageBehindAFrontCoverPrintedOnce)
{
    expectPages(kLastEven, "Print", false, true);
}

TEST(BackCoverPageTest, TwoSidedSheetBeginsAtAnOddPageOtherwise)
{
    expectPages(kLastOdd, "Print", false, false);
}

TEST(BackCoverPageTest, UnknownOrMissingStyleMeansNoBackCover)
{
    for (const char *style : {"", "noprint", "print", "PRINT1", "Print2"})
        expectPages(kNever, style, true, false);
    expectPages(kNever, std::nullopt, false, true);
    expectPages(kNever, std::nullopt, true, false);
}

TEST(BackCoverPageTest, HugeTotalsAreCountedWithoutTrouble)
{
    constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
    constexpr auto kLeast = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(kMost, backCoverPage(kMost, "Print", false, false));
    EXPECT_EQ(kMost - 1, backCoverPage(kMost, "Print", false, true));
    EXPECT_EQ(kLeast, backCoverPage(kMost, "NoPrint", false, false));
    EXPECT_EQ(kLeast + 1, backCoverPage(kLeast, "NoPrint", false, false));
    EXPECT_EQ(-1, backCoverPage(kLeast, "Print1", false, false));
}
