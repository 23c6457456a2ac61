#include "PageSelection.h"

#include <gtest/gtest.h>
#include <string>

namespace {

/// The pages from 1 to 9 that a text selects, "none" for one that is refused.
std::string pagesOf(const char *text)
{
    const auto selection = pageSelectionFromText(text);
    if (!selection)
        return "none";
    std::string pages;
    for (std::uint64_t page = 1; page <= 9; ++page) {
        if (selection->contains(page))
            pages += std::to_string(page);
    }
    return pages;
}

TEST(PageSelectionTest, SelectsAllWithoutAText)
{
    EXPECT_TRUE(PageSelection().contains(1));
    EXPECT_TRUE(PageSelection().contains(1'000'000));
}

TEST(PageSelectionTest, KnowsWords)
{
    EXPECT_EQ("1", pagesOf("first"));
    EXPECT_EQ("23456789", pagesOf("not-first"));
    EXPECT_EQ("13579", pagesOf("odd"));
    EXPECT_EQ("2468", pagesOf("even"));
}

TEST(PageSelectionTest, KnowsPagesAndRanges)
{
    EXPECT_EQ("3", pagesOf("3"));
    EXPECT_EQ("2345", pagesOf("2-5"));
    EXPECT_EQ("7", pagesOf("7-7"));
    EXPECT_EQ("789", pagesOf("7-"));
    EXPECT_EQ("1", pagesOf("01"));
}

TEST(PageSelectionTest, AListSelectsWhatAnyOfItsPartsSelects)
{
    EXPECT_EQ("234589", pagesOf("2-5,8,9-"));
    EXPECT_EQ("12468", pagesOf("even,first"));
    EXPECT_EQ("3579", pagesOf("9,3,5,7,3"));
}

TEST(PageSelectionTest, APageBeyondTheEndIsNoError)
{
    EXPECT_EQ("", pagesOf("10"));
    EXPECT_EQ("9", pagesOf("9-4000000000"));
    EXPECT_EQ("9", pagesOf("9-99999999999999999999999"));
    EXPECT_EQ("", pagesOf("99999999999999999999999-"));
}

TEST(PageSelectionTest, AnythingElseIsNone)
{
    for (const char *text : {"",    ",",   "1,",    ",1",    "1,,2",    "0",   "0-3",   "5-2",
                             "-",   "-3",  "--3",   "1-2-3", "1 ",      " 1",  "1, 2",  "+1",
                             "1.5", "0x1", "First", "last",  "not-odd", "all", "1-odd", "\xD9\xA1"})
        EXPECT_EQ("none", pagesOf(text)) << text;
}

} // namespace
