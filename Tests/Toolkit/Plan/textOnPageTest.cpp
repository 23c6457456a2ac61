#include "textOnPage.h"

#include "ToolkitError.h"

#include <gtest/gtest.h>

namespace {

Watermark saying(const char *text)
{
    Watermark watermark = {};
    watermark.text = text;
    watermark.hasPlaceholders = true;
    return watermark;
}

std::string onPage7Of12(const char *text)
{
    try {
        return textOnPage(saying(text), 7, 12);
    } catch (const ToolkitError &error) {
        return error.what();
    }
}

TEST(textOnPageTest, PutsThePagesNumbersIn)
{
    EXPECT_EQ("Page 7 of 12", onPage7Of12("Page [page] of [pages]"));
    EXPECT_EQ("7712", onPage7Of12("[page][page][pages]"));
    EXPECT_EQ("", onPage7Of12(""));
    EXPECT_EQ("Σχέδιο 7", onPage7Of12("Σχέδιο [page]"));
}

TEST(textOnPageTest, DoubledBracketsAreSingleOnes)
{
    EXPECT_EQ("[page] 7", onPage7Of12("[[page]] [page]"));
    EXPECT_EQ("[7]", onPage7Of12("[[[page]]]"));
    EXPECT_EQ("][", onPage7Of12("]][["));
}

TEST(textOnPageTest, RefusesAnUnknownPlaceholder)
{
    constexpr char kUnknown[] = "The watermark's text has a placeholder that is not known.";
    EXPECT_EQ(kUnknown, onPage7Of12("[Page]"));
    EXPECT_EQ(kUnknown, onPage7Of12("[]"));
    EXPECT_EQ(kUnknown, onPage7Of12("[ page ]"));
    EXPECT_EQ(kUnknown, onPage7Of12("[page [page]"));
}

TEST(textOnPageTest, RefusesASingleBracket)
{
    constexpr char kSingle[] = "The watermark's text has a single bracket, which is written twice.";
    EXPECT_EQ(kSingle, onPage7Of12("["));
    EXPECT_EQ(kSingle, onPage7Of12("page]"));
    EXPECT_EQ(kSingle, onPage7Of12("[page]]"));
    EXPECT_EQ(kSingle, onPage7Of12("[[page]"));
    EXPECT_EQ(kSingle, onPage7Of12("[page"));
}

TEST(textOnPageTest, ATextWithoutPlaceholdersStaysAsItIs)
{
    Watermark watermark = saying("[page] [x] [[ ]");
    watermark.hasPlaceholders = false;
    EXPECT_EQ("[page] [x] [[ ]", textOnPage(watermark, 7, 12));
    EXPECT_FALSE(differsFromPageToPage(watermark, 12));
}

TEST(textOnPageTest, OnlyThePagesNumberDiffersFromPageToPage)
{
    EXPECT_TRUE(differsFromPageToPage(saying("[page]"), 2));
    EXPECT_FALSE(differsFromPageToPage(saying("[page]"), 1));
    EXPECT_FALSE(differsFromPageToPage(saying("[pages] [[page]]"), 12));
}

} // namespace
