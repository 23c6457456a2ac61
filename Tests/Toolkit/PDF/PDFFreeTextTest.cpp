#include "PDFFreeText.h"

#include "TextMeasuring.h"
#include "ToolkitError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::SizeIs;

class PDFFreeTextTest : public testing::Test {
protected:
    Platform::TextShaper texts;
};

TEST_F(PDFFreeTextTest, ADefaultAppearanceSaysSizeAndColour)
{
    EXPECT_EQ(9.5, textAppearance("/Helv 9.5 Tf 0 g").size);
    EXPECT_EQ(14, textAppearance("0 0 1 rg/Helv 14 Tf").size);
    EXPECT_THAT(textAppearance("/Helv 12 Tf 0 0 1 rg").colour, ElementsAre(0, 0, 1));
    EXPECT_THAT(textAppearance("0.5 g /Helv 12 Tf").colour, ElementsAre(0.5));
    EXPECT_THAT(textAppearance("0 1 .5 0 k").colour, ElementsAre(0, 1, 0.5, 0));
}

TEST_F(PDFFreeTextTest, WhatADefaultAppearanceDoesNotSayIsBlackOf12Points)
{
    for (const char *text : {"", "/Helv 0 Tf", "/Helv -3 Tf", "Tf", "rg", "1 rg", "a b c rg",
                             "/Helv Tf", "////", "/Helv twelve Tf", "1 2 3"}) {
        EXPECT_EQ(12, textAppearance(text).size) << text;
        EXPECT_THAT(textAppearance(text).colour, ElementsAre(0)) << text;
    }
}

TEST_F(PDFFreeTextTest, LinesAreNoWiderThanTheBoxAndAsFew)
{
    // A word has about 27 points at this size.
    const auto lines = linesInBox(texts, "Anna Anna Anna Anna Anna", 12, 70, 200, 0);
    ASSERT_THAT(lines, SizeIs(3));
    for (const TextLine &line : lines)
        EXPECT_LT(line.text.advance, 70);
    EXPECT_GT(lines[0].text.advance, 50);
    EXPECT_LT(lines[2].text.advance, 40);
}

TEST_F(PDFFreeTextTest, TheFirstLineIsAtTheTopAndTheOthersBelow)
{
    const auto lines = linesInBox(texts, "A\r\nB\rC\n\nE", 10, 100, 100, 0);
    ASSERT_THAT(lines, SizeIs(5));
    EXPECT_NEAR(100 - lines[0].text.ascent, lines[0].start.y, 0.01);
    const double height = lines[0].start.y - lines[1].start.y;
    EXPECT_NEAR(lines[0].text.size().height, height, 0.01);
    EXPECT_NEAR(lines[0].start.y - 4 * height, lines[4].start.y, 0.01);
}

TEST_F(PDFFreeTextTest, LinesStandLeftInTheMiddleOrRight)
{
    const double width = linesInBox(texts, "Anna", 12, 100, 100, 0).at(0).text.advance;
    EXPECT_EQ(0, linesInBox(texts, "Anna", 12, 100, 100, 0).at(0).start.x);
    EXPECT_NEAR(50 - width / 2, linesInBox(texts, "Anna", 12, 100, 100, 0.5).at(0).start.x, 0.01);
    EXPECT_NEAR(100 - width, linesInBox(texts, "Anna", 12, 100, 100, 1).at(0).start.x, 0.01);
}

TEST_F(PDFFreeTextTest, ATextThatDoesNotFitIsSetSmaller)
{
    const std::string text = "A text that is much longer than what the box has room for";
    const auto lines = linesInBox(texts, text, 12, 60, 30, 0);
    EXPECT_GE(lines.back().start.y - lines.back().text.descent, -0.01);
    for (const TextLine &line : lines)
        EXPECT_LE(line.text.advance, 60.01);
    EXPECT_LE(linesInBox(texts, "Unbreakable", 12, 20, 30, 0).at(0).text.advance, 20.01);
    EXPECT_NEAR(12,
                linesInBox(texts, "A", 12, 60, 30, 0).at(0).text.size().height /
                    linesInBox(texts, "A", 1, 60, 30, 0).at(0).text.size().height,
                0.01);
}

TEST_F(PDFFreeTextTest, ACharacterThatNoFontHasIsRefusedByItsCodePoint)
{
    try {
        linesInBox(texts, "Anna\nsays \U0010FFFD and \U0010FFFC", 12, 200, 200, 0);
        FAIL() << "not refused";
    } catch (const ToolkitError &error) {
        EXPECT_STREQ("There is no font to draw a note of the document with: U+10FFFD.",
                     error.what());
    }
}

TEST_F(PDFFreeTextTest, ABoxWithoutRoomEndsTheSearch)
{
    EXPECT_THAT(linesInBox(texts, "Anna", 12, 0, 0, 0), SizeIs(1));
    EXPECT_THAT(linesInBox(texts, "Anna", 12, -5, -5, 0), SizeIs(1));
    EXPECT_THAT(linesInBox(texts, "", 12, 50, 50, 0), SizeIs(0));
}

} // namespace
