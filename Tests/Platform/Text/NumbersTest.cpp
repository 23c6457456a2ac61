#include "Numbers.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

using namespace Platform;

TEST(NumbersTest, AnIntegerIsReadAsFarAsItGoes)
{
    EXPECT_EQ(12, integerFromText("12abc"));
    EXPECT_EQ(-12, integerFromText(" \t\n-12.9"));
    EXPECT_EQ(12, integerFromText("+12"));
    EXPECT_EQ(7, integerFromText("007"));
}

TEST(NumbersTest, NoDigitsAreZero)
{
    for (const char *text : {"", "True", "-", "+-1", "- 1", ".5", "0x1F"})
        EXPECT_EQ(0, integerFromText(text)) << text;
}

TEST(NumbersTest, AnIntegerBeyondTheRangeIsTheNearestLimit)
{
    EXPECT_EQ(std::numeric_limits<std::int64_t>::max(), integerFromText("9223372036854775807"));
    EXPECT_EQ(std::numeric_limits<std::int64_t>::max(), integerFromText("9223372036854775808"));
    EXPECT_EQ(std::numeric_limits<std::int64_t>::min(), integerFromText("-9223372036854775808"));
    EXPECT_EQ(std::numeric_limits<std::int64_t>::min(), integerFromText("-99999999999999999999"));
}

TEST(NumbersTest, BlanksInFrontOfANumberAreSkippedInUTF8Only)
{
    EXPECT_EQ(12, integerFromText("\xC2\xA0 12\xC3\xA9"));
    EXPECT_EQ(12, integerFromText("12\xE9"));
    EXPECT_EQ(0, integerFromText(" 12\xE9"));
    EXPECT_TRUE(booleanFromText("1\xE9"));
    EXPECT_FALSE(booleanFromText(" 1\xE9"));
    EXPECT_EQ(1.5, doubleFromText("1.5\xE9"));
    EXPECT_EQ(0.0, doubleFromText(" 1.5\xE9"));
}

TEST(NumbersTest, ABooleanIsTrueForYesTrueAndDigitsAboveZero)
{
    for (const char *text : {"1", "Y", "yes", "T", "true", "True", " 9", "-1", "+001", "0y"})
        EXPECT_TRUE(booleanFromText(text)) << text;
    for (const char *text : {"", "no", "00", "0", "False", "on", "--1", " ", "0 1", "+"})
        EXPECT_FALSE(booleanFromText(text)) << text;
}

TEST(NumbersTest, ADoubleIsReadAsFarAsItGoes)
{
    EXPECT_EQ(45.0, doubleFromText("45"));
    EXPECT_EQ(-0.5, doubleFromText(" -.5x"));
    EXPECT_EQ(1500.0, doubleFromText("+1.5e3"));
    EXPECT_EQ(2.0, doubleFromText("2,5"));
    EXPECT_EQ(3.0, doubleFromText("3e"));
    EXPECT_EQ(4.0, doubleFromText("4."));
}

TEST(NumbersTest, WhatIsNoNumberIsZero)
{
    for (const char *text : {"", "inf", "nan", "-infinity", ".", "-", "abc", "0x10", "e5"})
        EXPECT_EQ(0.0, doubleFromText(text)) << text;
}

TEST(NumbersTest, ADoubleBeyondTheRangeIsInfiniteOrZero)
{
    EXPECT_EQ(std::numeric_limits<double>::infinity(), doubleFromText("1e999"));
    EXPECT_EQ(-std::numeric_limits<double>::infinity(), doubleFromText("-1e999"));
    EXPECT_EQ(0.0, doubleFromText("1e-999"));
    EXPECT_EQ(std::numeric_limits<double>::infinity(), doubleFromText("1" + std::string(400, '0')));
    EXPECT_EQ(0.0, doubleFromText("0." + std::string(400, '0') + "1"));
}

TEST(NumbersTest, AMinusZeroKeepsItsSign)
{
    EXPECT_TRUE(std::signbit(doubleFromText("-0")));
}
