#include "headerText.h"

#include <gtest/gtest.h>

TEST(headerTextTest, EveryControlCharacterBecomesABlank)
{
    for (int c = 0; c < 0x20; ++c)
        EXPECT_EQ("a b", headerText("a" + std::string(1, static_cast<char>(c)) + "b")) << c;
    EXPECT_EQ("a b", headerText("a\x7F"
                                "b"));
}

TEST(headerTextTest, AllOtherBytesStay)
{
    std::string bytes;
    for (int c = 0x20; c < 0x100; ++c) {
        if (c != 0x7F)
            bytes += static_cast<char>(c);
    }
    EXPECT_EQ(bytes, headerText(bytes));
    EXPECT_EQ("%n %s %@ \"\\", headerText("%n %s %@ \"\\"));
}

TEST(headerTextTest, NumbersAreWrittenInDecimal)
{
    EXPECT_EQ("-3", headerText(std::int64_t{-3}));
    EXPECT_EQ("1", headerText(true));
}

TEST(headerTextTest, AnAbsentValueIsEmpty)
{
    EXPECT_EQ("", headerText(std::nullopt));
}
