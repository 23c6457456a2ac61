#include "TextPlace.h"

#include <gtest/gtest.h>
#include <string>

namespace {

constexpr PageSize kPage = {200, 300};
constexpr Platform::TextSize kBox = {40, 10};

Watermark placed(std::string_view place, double angle = 0, double distance = 10)
{
    Watermark watermark = {};
    watermark.angle = angle;
    watermark.place = textPlaceFromText(place).value();
    watermark.place->distance = distance;
    return watermark;
}

Watermark fitted(std::string_view place, double angle = 0, double distance = 10)
{
    Watermark watermark = placed(place, angle, distance);
    watermark.place->fitted = true;
    return watermark;
}

/// The only text of a watermark on a page.
PlacedText only(const Watermark &watermark, const Platform::TextSize &box = kBox,
                const PageSize &page = kPage)
{
    const auto texts = placedTexts(watermark, box, page);
    EXPECT_EQ(1U, texts.size());
    return texts.at(0);
}

void expectCorner(double x, double y, const PlacedText &text)
{
    EXPECT_NEAR(x, text.corner.x, 1e-9);
    EXPECT_NEAR(y, text.corner.y, 1e-9);
}

TEST(TextPlaceTest, APositionStaysWhatItIs)
{
    Watermark watermark = {};
    watermark.position = {12, 34};
    watermark.angle = 56;
    const PlacedText text = only(watermark);
    expectCorner(12, 34, text);
    EXPECT_EQ(56, text.angle);
    EXPECT_EQ(1, text.scale);
}

TEST(TextPlaceTest, TheCentreIsThatOfThePage)
{
    expectCorner(80, 145, only(placed("centre")));
    expectCorner(280, 95, only(placed("centre"), kBox, {600, 200}));
}

TEST(TextPlaceTest, TheNinePlacesKeepTheirDistance)
{
    expectCorner(10, 280, only(placed("top-left")));
    expectCorner(80, 280, only(placed("top")));
    expectCorner(150, 280, only(placed("top-right")));
    expectCorner(10, 145, only(placed("left")));
    expectCorner(150, 145, only(placed("right")));
    expectCorner(10, 10, only(placed("bottom-left")));
    expectCorner(80, 10, only(placed("bottom")));
    expectCorner(150, 10, only(placed("bottom-right")));
}

TEST(TextPlaceTest, HalfAnInchIsTheDistanceThatNobodyAskedFor)
{
    EXPECT_EQ(36, textPlaceFromText("top")->distance);
}

/// It is 10 wide and 40 high then.
TEST(TextPlaceTest, ATurnedTextKeepsItsDistanceToo)
{
    expectCorner(20, 250, only(placed("top-left", 90)));
    expectCorner(180, 50, only(placed("bottom-right", -90)));
    expectCorner(50, 20, only(placed("bottom-left", 180)));
}

TEST(TextPlaceTest, ASpotIsTheMiddleOfTheText)
{
    expectCorner(30, 220, only(placed("25%,75%")));
    expectCorner(55, 205, only(placed("25%,75%", 90)));
    expectCorner(-20, 325, only(placed("0%,110%")));
    EXPECT_EQ(90, only(placed("25%,75%", 90)).angle);
}

TEST(TextPlaceTest, AFittedTextIsAsWideAsThePageLessTheDistances)
{
    const PlacedText text = only(fitted("centre"));
    EXPECT_DOUBLE_EQ(4.5, text.scale);
    expectCorner(10, 127.5, text);
    expectCorner(10, 245, only(fitted("top")));
}

TEST(TextPlaceTest, AFittedTextIsNoHigherThanThePageLessTheDistances)
{
    EXPECT_DOUBLE_EQ(7, only(fitted("centre"), {10, 40}).scale);
    EXPECT_DOUBLE_EQ(7, only(fitted("centre"), {0, 40}).scale);
    EXPECT_DOUBLE_EQ(7, only(fitted("centre", 90)).scale); // 10 wide, 40 high
}

TEST(TextPlaceTest, DistancesLeaveATenthOfThePage)
{
    EXPECT_DOUBLE_EQ(0.5, only(fitted("centre", 0, 500)).scale);
}

TEST(TextPlaceTest, ThePageDecidesTheSlopeAndTheSizeOfADiagonal)
{
    // 3 to 4: a cosine of 0.6, a sine of 0.8. The rectangle around is 76 by 92.
    const PlacedText text = only(placed("diagonal", -20, 0), {100, 20}, {300, 400});
    EXPECT_NEAR(53.1301, text.angle, 1e-4);
    EXPECT_DOUBLE_EQ(300.0 / 76, text.scale);
    expectCorner(150 - (60 - 16) / 2.0 * 300 / 76, 200 - (80 + 12) / 2.0 * 300 / 76, text);
    EXPECT_DOUBLE_EQ(240.0 / 76, only(placed("diagonal", 0, 30), {100, 20}, {300, 400}).scale);
}

TEST(TextPlaceTest, TilesCoverThePageInRowsThatAreMoved)
{
    const auto texts = placedTexts(placed("tiled"), {20, 10}, {100, 100});
    // Rows 20 apart, texts 30 apart: five rows that meet the page, of 3 and of 4 by turns.
    ASSERT_EQ(17U, texts.size());
    expectCorner(10, 5, texts.at(0));
    expectCorner(40, 5, texts.at(1));
    expectCorner(-5, 25, texts.at(3));
    expectCorner(40, 45, texts.at(8)); // in the very middle
}

TEST(TextPlaceTest, TurnedTilesLieAlongTheirText)
{
    // No text ends at the page's edge: with a sine, rounding decides whether that meets the page.
    const auto texts = placedTexts(placed("tiled", 90), {20, 10}, {100, 98});
    ASSERT_EQ(17U, texts.size());
    expectCorner(95, 9, texts.at(0)); // the lowest row is the one to the right
    EXPECT_EQ(90, texts.at(0).angle);
}

TEST(TextPlaceTest, TinyTilesDrawApart)
{
    const auto texts = placedTexts(placed("tiled", 0, 0), {0.01, 0.01}, {10'000, 10'000});
    EXPECT_GT(texts.size(), 4000U);
    EXPECT_LE(texts.size(), 101U * 101U);
}

TEST(TextPlaceTest, OtherWordsAreNoPlaces)
{
    for (const char *text :
         {"", "center", "Centre", "top left", "50,50", "50%", "50%50%", "50%,", "a%,5%", "50%,50",
          "50%,50%,50%", "50 %,50%", "1e1%,5%", "%,%", "1000001%,0%"})
        EXPECT_FALSE(textPlaceFromText(text)) << text;
}

} // namespace
