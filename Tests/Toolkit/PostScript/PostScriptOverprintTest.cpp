#include "PostScriptCommands.h"

#include "PackagedFonts.h"
#include "ToolkitPostScript.h"
#include "Watermarks.h"

#include <gtest/gtest.h>

// A text that lets the page show through, in PostScript: dots with gaps between.

namespace {

using Support::Colour;
using Support::kBlack;
using Support::kBlue;
using Support::kRed;
using Support::kWhite;
using Support::RenderedPage;

Watermark draft(std::vector<double> colour, bool overprint = true)
{
    return {.above = true,
            .font = "Helvetica-Bold",
            .angle = 30,
            .colour = std::move(colour),
            .position = {50, 80},
            .size = 40,
            .text = "Draft",
            .overprint = overprint};
}

RenderedPage marked(const std::string &page, const Watermark &watermark, double resolution = 300)
{
    const PostScriptSample sample{.pages = {page}};
    return Support::renderText(processed(sample.text(), watermark), {.resolution = resolution})
        .pages.at(0);
}

/// How much of the text's area is inked.
double shareOfText(const std::string &page, const Watermark &watermark, double resolution = 300)
{
    Watermark opaque = watermark;
    opaque.overprint = false;
    const RenderedPage solid = marked(page, opaque, resolution);
    const RenderedPage dots = marked(page, watermark, resolution);
    const RenderedPage none = marked(page, draft({1}), resolution);
    const auto isOther = [](Colour was, Colour is) { return is != was; };
    const double all = static_cast<double>(solid.countChanges(none, isOther));
    return static_cast<double>(dots.countChanges(none, isOther)) / all;
}

/// Whether a part of a page that is all text is made of squares with so many pixels a side.
bool isMadeOfSquares(int side, double resolution)
{
    Watermark block = draft({0});
    block.font = Support::manyScriptsFont().name;
    block.angle = 0;
    block.text = "█";
    const RenderedPage page = marked("showpage\n", block, resolution);
    const auto colourOfPixel = [&](int column, int row) {
        return page.colourAt({(column + 0.5) * 72 / resolution, (row + 0.5) * 72 / resolution});
    };
    const int left = static_cast<int>(60 * resolution / 72);
    const int bottom = static_cast<int>(90 * resolution / 72);
    for (int column = left; column < left + 24; ++column) {
        for (int row = bottom; row < bottom + 24; ++row) {
            if (colourOfPixel(column, row) !=
                colourOfPixel(column - column % side, row - row % side))
                return false;
        }
    }
    return true;
}

const std::string kBlank = "showpage\n";
/// White paint over blue paint.
const std::string kPainted = "0 0 1 setrgbcolor 0 0 200 300 rectfill "
                             "1 setgray 60 0 140 300 rectfill showpage\n";

} // namespace

TEST(PostScriptOverprintTest, BlackCoversAQuarterAtEveryResolution)
{
    for (const double resolution : {72.0, 144.0, 300.0, 600.0})
        EXPECT_NEAR(0.25, shareOfText(kBlank, draft({0}), resolution), 0.01) << resolution;
}

TEST(PostScriptOverprintTest, ADotIsAThreeHundredthOfAnInchOrAPixel)
{
    EXPECT_FALSE(isMadeOfSquares(2, 144));
    EXPECT_TRUE(isMadeOfSquares(2, 600));
    EXPECT_FALSE(isMadeOfSquares(4, 600));
    EXPECT_TRUE(isMadeOfSquares(4, 1200));
}

TEST(PostScriptOverprintTest, LighterColoursCoverLess)
{
    // In sixteenths.
    EXPECT_NEAR(0.1875, shareOfText(kBlank, draft({0.8})), 0.01);
    EXPECT_NEAR(0.125, shareOfText(kBlank, draft({0.9, 0.9, 0.88})), 0.01);
    EXPECT_NEAR(0.0625, shareOfText(kBlank, draft({0, 0.01, 0, 0})), 0.01);
    EXPECT_EQ(kWhite, marked(kBlank, draft({1, 1, 1})).colourAt({100, 100}));
    EXPECT_EQ(0, marked(kBlank, draft({0, 0, 0, 0})).coverage());
}

TEST(PostScriptOverprintTest, TheDotsHaveThePureColour)
{
    const auto dots = [](std::vector<double> colour) {
        return marked(kBlank, draft(std::move(colour)));
    };
    EXPECT_TRUE(dots({0.7}).boxOf(kBlack));
    EXPECT_TRUE(dots({1, 0.8, 0.8}).boxOf(kRed));
    EXPECT_TRUE(dots({0, 0.4, 0.4, 0}).boxOf(kRed));
}

TEST(PostScriptOverprintTest, TheDotsLieWithinTheText)
{
    Watermark watermark = draft({1, 0, 0});
    const auto found = marked(kBlank, watermark).boxOf(kRed);
    ASSERT_TRUE(found);
    const Support::Box wanted = Support::inkBoxOf(watermark);
    EXPECT_NEAR(wanted.left, found->left, 1.5);
    EXPECT_NEAR(wanted.right, found->right, 1.5);
    EXPECT_NEAR(wanted.bottom, found->bottom, 1.5);
    EXPECT_NEAR(wanted.top, found->top, 1.5);
    watermark.overprint = false;
    const RenderedPage solid = marked(kBlank, watermark);
    EXPECT_EQ(0U, marked(kBlank, draft({1, 0, 0})).countChanges(solid, [](Colour was, Colour is) {
        return was == kWhite && is != kWhite;
    }));
}

TEST(PostScriptOverprintTest, ThePageShowsThroughAndHidesNothing)
{
    EXPECT_NEAR(0.25, shareOfText(kPainted, draft({1, 0, 0})), 0.01);
    // Over the white paint as well as over the blue.
    const auto found = marked(kPainted, draft({1, 0, 0})).boxOf(kRed);
    ASSERT_TRUE(found);
    EXPECT_LT(found->left, 58);
    EXPECT_GT(found->right, 120);
}

TEST(PostScriptOverprintTest, APagesOwnStateDoesNotMatter)
{
    for (const char *state :
         {"true setglobal showpage\n", "90 rotate 3 3 scale showpage\n",
          "/DeviceCMYK setcolorspace true setoverprint showpage\n",
          "10 10 20 20 rectclip showpage\n", "10 45 { pop } setscreen showpage\n",
          "save showpage restore\n", "/setcolor { (mine) print } def showpage\n",
          "/makepattern null def /colour null def /cell null def showpage\n"})
        EXPECT_NEAR(0.25, shareOfText(state, draft({0}), 144), 0.02) << state;
}

TEST(PostScriptOverprintTest, EverySheetOfAPageHasIt)
{
    const PostScriptSample sample{.pages = {"showpage copypage\n", "showpage\n"}};
    const auto pages =
        Support::renderText(processed(sample.text(), draft({0})), {.resolution = 300}).pages;
    ASSERT_EQ(3U, pages.size());
    EXPECT_GT(pages[0].coverage(), 0.001);
    EXPECT_EQ(pages[0], pages[1]);
    EXPECT_EQ(pages[0], pages[2]);
}

TEST(PostScriptOverprintTest, ItStaysInTheHalvesOfABooklet)
{
    const PostScriptSample sample{.pages = {kPainted, kBlank}};
    const Booklet booklet = {
        .pageSize = "A4", .centreMargin = 0, .outerMargin = 0, .ordering = Ordering::LeftToRight};
    const auto sheets = Support::renderText(
        processed(processed(sample.text(), draft({1, 0, 0})), booklet), {.resolution = 300});
    ASSERT_EQ(2U, sheets.pages.size());
    const auto back = Support::renderText(
        processed(processed(sample.text(), draft({1, 0, 0}, false)), booklet), {.resolution = 300});
    for (std::size_t side = 0; side < 2; ++side) {
        const double solid = back.pages[side].shareOf(kRed);
        EXPECT_GT(solid, 0);
        EXPECT_NEAR(0.25, sheets.pages[side].shareOf(kRed) / solid, 0.01) << side;
    }
}

TEST(PostScriptOverprintTest, CanBeRunTwice)
{
    const PostScriptSample sample{.pages = {kBlank}};
    Watermark second = draft({1, 0, 0});
    second.position = {50, 180};
    const auto page =
        Support::renderText(processed(processed(sample.text(), draft({0, 0, 1})), second),
                            {.resolution = 300})
            .pages.at(0);
    EXPECT_NEAR(page.shareOf(kRed), page.shareOf(kBlue), page.shareOf(kRed) / 50);
    EXPECT_GT(page.shareOf(kRed), 0.001);
}
