#include "PDFAnnotation.h"

#include "MinimalPPD.h"
#include "PDFBuilder.h"
#include "Program.h"
#include "Rendering.h"
#include "ToolkitError.h"
#include "ToolkitPDF.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using Support::Colour;
using Support::kBlack;
using Support::kBlue;
using Support::kGreen;
using Support::kRed;
using Support::kWhite;
using Support::PDFBuilder;
using Support::RenderedPage;

constexpr double kWidth = 200;
constexpr double kHeight = 180;
constexpr Colour kCyan = {0, 255, 255};

/// A sheet of which each half takes a page as it is.
constexpr char kSheet[] = "*PageSize Test/Test: \"\"\n*PaperDimension Test/Test: \"180 400\"\n";

/// One page with a cyan bar from 100 to 110 points from the left and one annotation.
std::string document(const std::string &annotation)
{
    PDFBuilder builder;
    builder.addPage("/MediaBox [0 0 200 180] /Annots [<< /Type /Annot " + annotation + " >>]",
                    "0 1 1 rg 100 0 10 180 re f");
    return builder.document();
}

std::string booklet(const std::string &document)
{
    return processedPDF(document,
                        Booklet{.pageSize = "Test",
                                .centreMargin = 0,
                                .outerMargin = 0,
                                .ordering = Ordering::LeftToRight},
                        Support::minimalPPD(kSheet));
}

/// The first side of the booklet; its right half is the page.
class Side {
public:
    explicit Side(const std::string &annotation, double resolution = 72)
        : _side(Support::renderText(booklet(document(annotation)), {.resolution = resolution})
                    .pages.at(0))
    {
    }
    Colour at(double x, double y) const { return _side.colourAt({kWidth + x, y}); }
    std::size_t pixelsOf(Colour colour) const
    {
        return static_cast<std::size_t>(
            std::lround(_side.shareOf(colour) * _side.width() * _side.height()));
    }

private:
    RenderedPage _side;
};

/// An annotation that prints: its name and its entries.
struct Sample {
    const char *name;
    const char *entries;
};

class PDFAnnotationKindTest : public testing::TestWithParam<Sample> {
protected:
    /// The page as Poppler shows it, with a drawing of its own.
    static RenderedPage shownByPoppler(const std::string &document, double resolution)
    {
        const Support::TemporaryFolder folder;
        Support::runOrThrow({"pdftoppm", "-r", std::to_string(resolution), "-aa", "no", "-aaVector",
                             "no", "-singlefile", folder.write("page.pdf", document),
                             folder.file("page")});
        return {Support::readFile(folder.file("page.ppm")), resolution};
    }
};

INSTANTIATE_TEST_SUITE_P(
    Kinds, PDFAnnotationKindTest,
    testing::Values(
        Sample{"Square", "/Subtype /Square /C [1 0 0] /IC [0 1 0] /BS << /W 6 >>"},
        Sample{"SquareOfBorder", "/Subtype /Square /C [1 0 0] /Border [0 0 8]"},
        Sample{"Circle", "/Subtype /Circle /C [1 0 0] /IC [0 0 1] /BS << /W 6 >>"},
        Sample{"Dashed", "/Subtype /Square /C [1 0 0] /BS << /W 6 /S /D /D [10 5] >>"},
        Sample{"Translucent", "/Subtype /Square /IC [1 0 0] /C [1 0 0] /CA 0.5 /BS << /W 20 >>"},
        Sample{"Line", "/Subtype /Line /L [60 60 140 110] /C [1 0 0] /BS << /W 6 >>"},
        Sample{"LineThatLeavesItsRectangle",
               "/Subtype /Line /L [20 20 180 160] /C [1 0 0] /BS << /W 6 >>"},
        Sample{"Polygon", "/Subtype /Polygon /Vertices [60 60 100 110 140 60] /C [1 0 0] "
                          "/IC [0 1 0] /BS << /W 6 >>"},
        Sample{"PolyLine",
               "/Subtype /PolyLine /Vertices [60 60 100 110 140 60] /C [1 0 0] /BS << /W 6 >>"},
        Sample{"Ink", "/Subtype /Ink /InkList [[60 60 100 110 140 60] [60 115 140 115]] "
                      "/C [1 0 0] /BS << /W 6 >>"},
        Sample{"Highlight",
               "/Subtype /Highlight /QuadPoints [60 110 140 110 60 60 140 60] /C [1 1 0]"},
        Sample{"Grey", "/Subtype /Square /IC [0.5] /C [0] /BS << /W 6 >>"}),
    [](const auto &instance) { return instance.param.name; });

// What is inked there is inked here in the same colour, but for the edges.
TEST_P(PDFAnnotationKindTest, IsDrawnAsPopplerDrawsIt)
{
    const std::string annotation = std::string("/F 4 /Rect [50 50 150 120] ") + GetParam().entries;
    const Side side(annotation, 144);
    const RenderedPage page = shownByPoppler(document(annotation), 144);
    std::size_t inked = 0;
    std::size_t different = 0;
    const auto isNear = [](int one, int other) { return std::abs(one - other) <= 2; };
    for (double y = 0.25; y < kHeight; y += 0.5) {
        for (double x = 0.25; x < kWidth; x += 0.5) {
            const Colour there = page.colourAt({x, y});
            const Colour here = side.at(x, y);
            const bool isBare = there == kWhite || there == kCyan;
            inked += isBare ? 0U : 1U;
            different += isNear(there.red, here.red) && isNear(there.green, here.green) &&
                                 isNear(there.blue, here.blue)
                             ? 0U
                             : 1U;
        }
    }
    EXPECT_GT(inked, 500U);
    EXPECT_LT(different, inked / 6) << inked;
}

TEST(PDFAnnotationTest, ASquareHasItsBorderInsideAndItsInterior)
{
    const Side side("/F 4 /Subtype /Square /Rect [50 50 150 120] /C [1 0 0] /IC [0 1 0] "
                    "/BS << /W 6 >>");
    EXPECT_EQ(kWhite, side.at(48, 80));
    EXPECT_EQ(kRed, side.at(52, 80));
    EXPECT_EQ(kRed, side.at(55, 80));
    EXPECT_EQ(kGreen, side.at(58, 80));
    EXPECT_EQ(kGreen, side.at(105, 80));
    EXPECT_EQ(kRed, side.at(105, 118));
    EXPECT_EQ(kCyan, side.at(105, 122));
}

TEST(PDFAnnotationTest, DifferencesMakeTheRectangleSmaller)
{
    const Side side("/F 4 /Subtype /Square /Rect [50 50 150 120] /IC [0 1 0] /C [] "
                    "/BS << /W 0 >> /RD [10 20 30 5]");
    EXPECT_EQ(kWhite, side.at(58, 80));
    EXPECT_EQ(kGreen, side.at(62, 72));
    EXPECT_EQ(kWhite, side.at(62, 68));
    EXPECT_EQ(kGreen, side.at(118, 113));
    EXPECT_EQ(kWhite, side.at(122, 113));
    EXPECT_EQ(kWhite, side.at(118, 117));
}

TEST(PDFAnnotationTest, DifferencesThatLeaveNoRoomDoNotCount)
{
    for (const char *differences : {"90 0 90 0", "0 40 0 30", "-200 0 0 0"}) {
        SCOPED_TRACE(differences);
        const Side side("/F 4 /Subtype /Circle /Rect [50 50 150 120] /IC [0 1 0] /C [] "
                        "/BS << /W 0 >> /RD [" +
                        std::string(differences) + "]");
        EXPECT_EQ(kGreen, side.at(52, 85));
        EXPECT_EQ(kGreen, side.at(148, 85));
        EXPECT_EQ(kWhite, side.at(45, 85));
    }
}

TEST(PDFAnnotationTest, WithoutAColourLinesAreBlackAndWithAnEmptyOneThereAreNone)
{
    EXPECT_EQ(kBlack,
              Side("/F 4 /Subtype /Square /Rect [50 50 150 120] /BS << /W 6 >>").at(53, 80));
    EXPECT_EQ(kWhite,
              Side("/F 4 /Subtype /Square /Rect [50 50 150 120] /C [] /BS << /W 6 >>").at(53, 80));
}

TEST(PDFAnnotationTest, ColoursMayBeCMYK)
{
    const Side side("/F 4 /Subtype /Square /Rect [50 50 150 120] /C [1 1 0 0] /IC [0 1 1 0] "
                    "/BS << /W 6 >>");
    EXPECT_EQ(kBlue, side.at(53, 80));
    EXPECT_EQ(kRed, side.at(70, 80));
}

// The border and the interior show through as one.
TEST(PDFAnnotationTest, OpacityIsThatOfTheWhole)
{
    const Side side("/F 4 /Subtype /Square /Rect [50 50 150 120] /C [1 0 0] /IC [1 0 0] /CA 0.5 "
                    "/BS << /W 20 >>");
    for (const double x : {55.0, 65.0, 80.0, 97.0}) {
        EXPECT_EQ(255, side.at(x, 85).red) << x;
        EXPECT_NEAR(128, side.at(x, 85).green, 1) << x;
    }
}

TEST(PDFAnnotationTest, WhatIsBelowAHighlightShowsThrough)
{
    for (const char *corners : {"50 80 150 80 50 50 150 50", "50 50 150 50 150 80 50 80"}) {
        const Side side("/F 4 /Subtype /Highlight /Rect [50 50 150 80] /C [1 1 0] /QuadPoints [" +
                        std::string(corners) + "]");
        EXPECT_EQ((Colour{255, 255, 0}), side.at(60, 52)) << corners;
        EXPECT_EQ((Colour{255, 255, 0}), side.at(148, 65)) << corners;
        EXPECT_EQ(kGreen, side.at(105, 78)) << corners;
        EXPECT_EQ(kWhite, side.at(60, 83)) << corners;
    }
}

/// How far above the lower edge of a text the red line along it is: from, to.
std::pair<double, double> heightsOf(const std::string &kind)
{
    const Side side("/F 4 /Subtype /" + kind +
                    " /Rect [50 50 150 82] /C [1 0 0] /QuadPoints [50 82 150 82 50 50 150 50]");
    std::pair<double, double> heights = {100, -1};
    for (double y = 0.5; y < kHeight; ++y) {
        for (double x = 50.5; x < 95; ++x) {
            if (side.at(x, y) == kRed)
                heights = {std::min(heights.first, y - 50.5), std::max(heights.second, y - 49.5)};
        }
    }
    return heights;
}

TEST(PDFAnnotationTest, LinesAlongATextAreAtItsFootOrInItsMiddle)
{
    EXPECT_NEAR(2, heightsOf("Underline").first, 1.1);
    EXPECT_NEAR(4, heightsOf("Underline").second, 1.1);
    EXPECT_NEAR(15, heightsOf("StrikeOut").first, 1.1);
    EXPECT_NEAR(17, heightsOf("StrikeOut").second, 1.1);
    EXPECT_NEAR(1, heightsOf("Squiggly").first, 1.5);
    EXPECT_NEAR(5, heightsOf("Squiggly").second, 1.5);
}

TEST(PDFAnnotationTest, AFreeTextIsABoxWithItsTextInTheColourOfTheText)
{
    const Side side("/F 4 /Subtype /FreeText /Rect [120 50 190 120] /DA (/Helv 20 Tf 0 0 1 rg) "
                    "/C [0 1 0] /Contents (Anna) /BS << /W 4 >>");
    EXPECT_EQ(kBlue, side.at(122, 60));
    EXPECT_EQ(kGreen, side.at(130, 60));
    std::size_t letters = 0;
    for (double y = 90; y < 115; ++y) {
        for (double x = 126; x < 184; ++x)
            letters += side.at(x, y) == kBlue ? 1U : 0U;
    }
    EXPECT_GT(letters, 100U);
    EXPECT_LT(letters, 600U);
}

TEST(PDFAnnotationTest, OnlyWhatPrintsIsDrawn)
{
    for (const char *flags : {"", "/F 0 ", "/F 6 ", "/F 2 "}) {
        const Side side(std::string(flags) + "/Subtype /Square /Rect [50 50 90 120] /IC [1 0 0]");
        EXPECT_EQ(kWhite, side.at(70, 80)) << flags;
    }
}

TEST(PDFAnnotationTest, AnAppearanceOfItsOwnStands)
{
    for (const char *own : {"<< /N << /On null >> >>", "<< >>", "null", "7"}) {
        PDFBuilder builder;
        const std::string note = builder.add("<< /F 4 /Subtype /Square /Rect [50 50 90 120] "
                                             "/IC [1 0 0] /AP " +
                                             std::string(own) + " >>");
        builder.addPage("/MediaBox [0 0 200 180] /Annots [" + note + "]", "");
        const auto side = Support::renderText(booklet(builder.document())).pages.at(0);
        EXPECT_EQ(own == std::string("null") ? kRed : kWhite, side.colourAt({270, 80})) << own;
    }
}

TEST(PDFAnnotationTest, ALookThatADamagedDocumentLostIsNotMadeUp)
{
    PDFBuilder builder;
    const std::string look =
        builder.addStream("0 0 9 9 re f", "/Type /XObject /Subtype /Form /BBox [0 0 9 9]");
    builder.addPage("/MediaBox [0 0 200 180] /Annots [<< /F 4 /Subtype /Square "
                    "/Rect [50 50 90 120] /AP << /N " +
                        look + " >> >>]",
                    "0 0 9 9 re f");
    std::string document = builder.document();
    document.replace(document.find("\n3 0 obj"), 8, "\n3 0 ob_");
    EXPECT_THROW(booklet(document), ToolkitError);
}

TEST(PDFAnnotationTest, EntriesThatMakeNoSenseDrawNothing)
{
    for (const char *entries :
         {"/Subtype /Square", "/Subtype /Square /Rect [1 2 3]", "/Subtype /Square /Rect 7",
          "/Subtype /Line /Rect [50 50 90 90]", "/Subtype /Line /Rect [50 50 90 90] /L [50 50]",
          "/Subtype /Line /Rect [50 50 90 90] /L [50 50 /A 90]",
          "/Subtype /Line /Rect [50 50 90 90] /L [50 50 9999999999 90]",
          "/Subtype /Ink /Rect [50 50 90 90] /InkList 7",
          "/Subtype /Ink /Rect [50 50 90 90] /InkList [7 null [] [1]]",
          "/Subtype /Polygon /Rect [50 50 90 90] /Vertices << >>",
          "/Subtype /Highlight /Rect [50 50 90 90] /C [1 0 0]",
          "/Subtype /Highlight /Rect [50 50 90 90] /QuadPoints [50 50 60 60]",
          "/Subtype /Highlight /Rect [50 50 90 90] /QuadPoints [50 90 90 90 50 50 90 50]",
          "/Subtype /Highlight /Rect [50 50 90 90] /QuadPoints [50 90 90 90 50 50 90 50] /C []",
          "/Subtype /Underline /Rect [50 50 90 90] /C [1 0 0]",
          "/Subtype /Unknown /Rect [50 50 90 90] /IC [1 0 0]", "/Subtype 7 /Rect [50 50 90 90]"}) {
        const Side side(std::string("/F 4 ") + entries);
        EXPECT_EQ(static_cast<std::size_t>(10 * kHeight), side.pixelsOf(kCyan)) << entries;
        EXPECT_EQ(static_cast<std::size_t>(390 * kHeight), side.pixelsOf(kWhite)) << entries;
    }
}

} // namespace
