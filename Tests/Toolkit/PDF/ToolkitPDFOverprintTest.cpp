#include "PDFBuilder.h"
#include "PackagedFonts.h"
#include "Program.h"
#include "Rendering.h"
#include "TemporaryFolder.h"
#include "ToolkitPDF.h"
#include "Watermarks.h"

#include <gtest/gtest.h>

// A text that lets the page show through, in PDF.

namespace {

using Support::Colour;
using Support::RenderedPage;

constexpr double kResolution = 144;
/// White paint beneath the left half of the text, black beneath the next quarter, green at its end.
constexpr char kPage[] = "1 g 0 0 150 200 re f 0 g 150 0 50 200 re f 0 1 0 rg 200 0 100 200 re f\n";

Watermark block(std::vector<double> colour)
{
    return {.above = true,
            .font = Support::manyScriptsFont().name,
            .angle = 0,
            .colour = std::move(colour),
            .position = {30, 60},
            .size = 60,
            .text = "█████",
            .overprint = true};
}

std::string onePage()
{
    Support::PDFBuilder builder;
    builder.addPage("/MediaBox [0 0 300 200]", kPage);
    return builder.document();
}

/// The page with the text on it, as Ghostscript and as Poppler draw it.
std::vector<RenderedPage> marks(const Watermark &watermark)
{
    const Support::TemporaryFolder folder;
    const std::string path = folder.write("marked.pdf", processedPDF(onePage(), watermark));
    const std::string picture = Support::runOrThrow({"pdftoppm", "-r", "144", path});
    return {Support::renderFile(path, {.resolution = kResolution}).pages.at(0),
            RenderedPage(picture, kResolution)};
}

void expectNear(const Colour &expected, const Colour &actual)
{
    constexpr int kClose = 2;
    EXPECT_NEAR(expected.red, actual.red, kClose);
    EXPECT_NEAR(expected.green, actual.green, kClose);
    EXPECT_NEAR(expected.blue, actual.blue, kClose);
}

constexpr Support::Point kOnWhite = {100, 90};
constexpr Support::Point kOnBlack = {175, 90};
constexpr Support::Point kOnGreen = {215, 90};

} // namespace

TEST(ToolkitPDFOverprintTest, BlackDarkensByAQuarter)
{
    for (const RenderedPage &page : marks(block({0}))) {
        expectNear({191, 191, 191}, page.colourAt(kOnWhite));
        expectNear({0, 0, 0}, page.colourAt(kOnBlack));
        expectNear({0, 191, 0}, page.colourAt(kOnGreen));
    }
}

TEST(ToolkitPDFOverprintTest, BlackMarksStayBlackBeneathEveryColour)
{
    for (const RenderedPage &page : marks(block({1, 0, 0}))) {
        expectNear({255, 191, 191}, page.colourAt(kOnWhite));
        expectNear({0, 0, 0}, page.colourAt(kOnBlack));
        expectNear({0, 191, 0}, page.colourAt(kOnGreen));
    }
}

TEST(ToolkitPDFOverprintTest, ALightColourIsItselfOnWhite)
{
    for (const RenderedPage &page : marks(block({0.8, 0.9, 1})))
        expectNear({204, 230, 255}, page.colourAt(kOnWhite));
}

TEST(ToolkitPDFOverprintTest, NothingBesideTheTextChanges)
{
    Watermark none = block({1}); // white
    const auto before = marks(none);
    const auto after = marks(block({0}));
    const Support::Box box = Support::inkBoxOf(block({0}));
    for (std::size_t i = 0; i < before.size(); ++i) {
        EXPECT_EQ(before[i].colourAt({box.left - 2, 90}), after[i].colourAt({box.left - 2, 90}));
        EXPECT_EQ(before[i].colourAt({100, box.top + 2}), after[i].colourAt({100, box.top + 2}));
        EXPECT_LT(0U, after[i].countChanges(before[i], [](Colour was, Colour is) {
            return was == Support::kWhite && is != was;
        }));
    }
}

TEST(ToolkitPDFOverprintTest, WhiteLeavesThePageAsItIs)
{
    const auto before = Support::renderText(onePage(), {.resolution = kResolution}).pages.at(0);
    EXPECT_EQ(before, marks(block({1, 1, 1})).at(0));
}

TEST(ToolkitPDFOverprintTest, TheDocumentIsOfAVersionThatKnowsTransparency)
{
    std::string document = onePage();
    ASSERT_TRUE(document.starts_with("%PDF-1."));
    document[7] = '2';
    EXPECT_TRUE(processedPDF(document, block({0})).starts_with("%PDF-1.4"));
    Watermark opaque = block({0});
    opaque.overprint = false;
    EXPECT_TRUE(processedPDF(document, opaque).starts_with("%PDF-1.2"));
    document[7] = '7';
    EXPECT_TRUE(processedPDF(document, block({0})).starts_with("%PDF-1.7"));
}
