#include "Ink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::DoubleNear;
using testing::ElementsAre;

Ink ink(std::vector<double> colour, bool overprint = true)
{
    return inkOf({.above = true,
                  .font = "",
                  .angle = 0,
                  .colour = std::move(colour),
                  .position = {},
                  .size = 1,
                  .text = "",
                  .overprint = overprint});
}

auto near(double value)
{
    return DoubleNear(value, 1e-9);
}

TEST(InkTest, TheColourCoversEverythingUnlessThePageShowsThrough)
{
    EXPECT_THAT(ink({0.8, 0.2, 0.2}, false).colour, ElementsAre(0.8, 0.2, 0.2));
    EXPECT_EQ(1, ink({0.8, 0.2, 0.2}, false).share);
    EXPECT_EQ(1, ink({1}, false).share);
}

TEST(InkTest, LightColoursComeOutAsTheyAreOnWhite)
{
    // White paper and ink together: paper * (1 - share) + ink * share.
    EXPECT_THAT(ink({0.8}).colour, ElementsAre(near(0)));
    EXPECT_NEAR(0.2, ink({0.8}).share, 1e-9);
    EXPECT_THAT(ink({1, 0.9, 0.8}).colour, ElementsAre(near(1), near(0.5), near(0)));
    EXPECT_NEAR(0.2, ink({1, 0.9, 0.8}).share, 1e-9);
    EXPECT_THAT(ink({0, 0.1, 0.2, 0}).colour, ElementsAre(near(0), near(0.5), near(1), near(0)));
    EXPECT_NEAR(0.2, ink({0, 0.1, 0.2, 0}).share, 1e-9);
}

TEST(InkTest, DarkColoursCoverAQuarter)
{
    for (const auto &colour : std::vector<std::vector<double>>{
             {0}, {0.5}, {1, 0, 0}, {0.7, 0.7, 0}, {0, 0, 0, 1}, {0.3, 0.3, 0, 0}})
        EXPECT_EQ(0.25, ink(colour).share);
    EXPECT_THAT(ink({0.5}).colour, ElementsAre(near(0)));
    EXPECT_THAT(ink({0.7, 0.7, 0.4}).colour, ElementsAre(near(0.5), near(0.5), near(0)));
}

TEST(InkTest, WhiteCoversNothing)
{
    for (const auto &colour : std::vector<std::vector<double>>{{1}, {1, 1, 1}, {0, 0, 0, 0}})
        EXPECT_EQ(0, ink(colour).share);
}

} // namespace
