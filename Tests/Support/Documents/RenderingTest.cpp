#include "Rendering.h"

#include "PDFBuilder.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace Support;

namespace {

constexpr char kTwoPages[] = "%!PS\n"
                             "<< /PageSize [200 100] >> setpagedevice\n"
                             "1 0 0 setrgbcolor 10 20 30 40 rectfill\n"
                             "0 0 1 0 setcmykcolor 100 20 50 10 rectfill showpage\n"
                             "(second) =\n"
                             "0 0 0 1 setcmykcolor 0 50 200 50 rectfill showpage\n";

void expectBox(Box expected, std::optional<Box> box)
{
    ASSERT_TRUE(box.has_value());
    EXPECT_DOUBLE_EQ(expected.left, box->left);
    EXPECT_DOUBLE_EQ(expected.bottom, box->bottom);
    EXPECT_DOUBLE_EQ(expected.right, box->right);
    EXPECT_DOUBLE_EQ(expected.top, box->top);
}

} // namespace

TEST(RenderingTest, PagesHaveTheirSizeInPoints)
{
    const auto rendering = renderText(kTwoPages);
    ASSERT_EQ(2U, rendering.pages.size());
    EXPECT_DOUBLE_EQ(200, rendering.pages[0].width());
    EXPECT_DOUBLE_EQ(100, rendering.pages[0].height());
    EXPECT_EQ("second\n", rendering.log);
}

TEST(RenderingTest, PlacesAndBoxesAreCountedFromTheLowerLeft)
{
    const auto page = renderText(kTwoPages).pages.at(0);
    EXPECT_EQ(kRed, page.colourAt({10.5, 20.5}));
    EXPECT_EQ(kWhite, page.colourAt({10.5, 19.5}));
    EXPECT_EQ((Colour{255, 255, 0}), page.colourAt({149.5, 29.5}));
    expectBox({10, 20, 40, 60}, page.boxOf(kRed));
    expectBox({10, 20, 150, 60}, page.inkBox());
    EXPECT_FALSE(page.boxOf(kGreen).has_value());
    EXPECT_THROW(page.colourAt({200, 0}), std::out_of_range);
}

TEST(RenderingTest, PopplerRendersThePagesOfAPDFDocument)
{
    PDFBuilder pdf;
    pdf.addPage("/MediaBox [0 0 400 300] /CropBox [100 100 300 200]",
                "1 0 0 rg 110 120 30 40 re f");
    pdf.addPage("/MediaBox [0 0 200 100]", "0 0 1 rg 0 50 200 50 re f");
    const TemporaryFolder folder;
    const auto pages = renderFileWithPoppler(folder.write("document", pdf.document())).pages;
    ASSERT_EQ(2U, pages.size());
    EXPECT_DOUBLE_EQ(200, pages[0].width());
    expectBox({10, 20, 40, 60}, pages[0].boxOf(kRed));
    expectBox({0, 50, 200, 100}, pages[1].boxOf(kBlue));
    EXPECT_THROW(renderFileWithPoppler(folder.file("missing")), std::runtime_error);
}

TEST(RenderingTest, CentreIsTheCentreOfGravity)
{
    const auto pages = renderText(kTwoPages).pages;
    const auto red = pages.at(0).centreOf(kRed);
    ASSERT_TRUE(red.has_value());
    EXPECT_NEAR(25, red->x, 1e-9);
    EXPECT_NEAR(40, red->y, 1e-9);
    const auto ink = pages.at(1).inkCentre();
    ASSERT_TRUE(ink.has_value());
    EXPECT_NEAR(100, ink->x, 1e-9);
    EXPECT_NEAR(75, ink->y, 1e-9);
}

TEST(RenderingTest, ResolutionChangesThePixelsAndNotThePoints)
{
    const auto page = renderText(kTwoPages, {.resolution = 144}).pages.at(0);
    EXPECT_DOUBLE_EQ(200, page.width());
    expectBox({10, 20, 40, 60}, page.boxOf(kRed));
}

TEST(RenderingTest, SharesAreCountedOverTheWholePage)
{
    const auto pages = renderText(kTwoPages).pages;
    EXPECT_DOUBLE_EQ(0.5, pages.at(1).coverage());
    EXPECT_DOUBLE_EQ(0.5, pages.at(1).shareOf(kBlack));
    EXPECT_DOUBLE_EQ(30 * 40 / 20000.0, pages.at(0).shareOf(kRed));
}

TEST(RenderingTest, BlankPageHasNoInk)
{
    const auto pages = renderText("%!PS\nshowpage\n").pages;
    ASSERT_EQ(1U, pages.size());
    EXPECT_FALSE(pages[0].inkBox().has_value());
    EXPECT_FALSE(pages[0].inkCentre().has_value());
    EXPECT_EQ(0, pages[0].coverage());
}

TEST(RenderingTest, PagesAreEqualOnlyPixelForPixel)
{
    const auto pages = renderText("%!PS\n"
                                  "5 5 1 1 rectfill showpage\n"
                                  "5 5 1 1 rectfill showpage\n"
                                  "6 5 1 1 rectfill showpage\n")
                           .pages;
    EXPECT_TRUE(pages.at(0) == pages.at(1));
    EXPECT_FALSE(pages.at(0) == pages.at(2));
}

TEST(RenderingTest, ChangesAreCountedPixelForPixelOnPagesOfOneSize)
{
    const auto pages = renderText(kTwoPages).pages;
    const auto isOther = [](Colour was, Colour is) { return was != is; };
    EXPECT_EQ(0U, pages[0].countChanges(pages[0], isOther));
    // The red box is black from 50 on, and the rest of the black half was white.
    const auto turnedWhite = [](Colour was, Colour is) { return was != kWhite && is == kWhite; };
    EXPECT_EQ(30U * 30 + 50 * 10, pages[1].countChanges(pages[0], turnedWhite));
    EXPECT_EQ(30U * 30 + 50 * 10 + 200 * 50, pages[1].countChanges(pages[0], isOther));
    const auto finer = renderText(kTwoPages, {.resolution = 144}).pages;
    EXPECT_THROW(finer[0].countChanges(pages[0], isOther), std::invalid_argument);
}

TEST(RenderingTest, PostScriptErrorIsThrownWithItsName)
{
    try {
        renderText("%!PS\nnosuchoperator\n");
        FAIL() << "no error";
    } catch (const std::runtime_error &error) {
        EXPECT_NE(std::string::npos, std::string(error.what()).find("undefined"));
    }
}

TEST(RenderingTest, DocumentThatNeverEndsIsStopped)
{
    EXPECT_THROW(renderText("%!PS\n{} loop\n", {.timeLimit = std::chrono::seconds(1)}),
                 std::runtime_error);
}
