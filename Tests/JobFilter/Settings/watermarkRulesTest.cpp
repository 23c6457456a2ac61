#include "watermarkRules.h"

#include <gtest/gtest.h>

// watermarkOrientationFragment

TEST(WatermarkOrientationFragmentTest, EachTurnHasItsFragment)
{
    EXPECT_EQ("exch dup 0.0 translate 90 rotate exch", watermarkOrientationFragment(4));
    EXPECT_EQ("dup 0.0 exch translate -90 rotate", watermarkOrientationFragment(5));
    EXPECT_EQ("2 copy translate 180 rotate exch", watermarkOrientationFragment(6));
}

TEST(WatermarkOrientationFragmentTest, AnyOtherValueIsPortrait)
{
    for (const std::int64_t orientation : {-4, 0, 1, 2, 3, 7, 8, 45})
        EXPECT_EQ("exch", watermarkOrientationFragment(orientation)) << orientation;
}

// escapedWatermarkText. A text that needs escaping: see KLPrintOptionsWatermarkTest.

TEST(EscapedWatermarkTextTest, TextWithoutBackslashAndParenthesisStaysAsItIs)
{
    for (const char *text : {"", "DRAFT", "/[]{}<>%@%n\r\n\t", "Größe 厚紙 \xff"})
        EXPECT_EQ(text, escapedWatermarkText(text));
}
