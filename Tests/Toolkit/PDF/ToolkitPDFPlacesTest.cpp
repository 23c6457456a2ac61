#include "PDFCommands.h"

#include "PDFBuilder.h"
#include "Program.h"
#include "TemporaryFolder.h"
#include "ToolkitPDF.h"
#include "WatermarkPlaces.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

using Support::PDFBuilder;
using Support::RenderedPage;

constexpr double kResolution = 144;

std::vector<RenderedPage> rendered(const std::string &document)
{
    return Support::renderText(document, {.resolution = kResolution, .arguments = {"-dUseCropBox"}})
        .pages;
}

/// Pages as Poppler draws them, which does not read a page's unit.
std::vector<RenderedPage> renderedByPoppler(const std::string &document)
{
    const Support::TemporaryFolder folder;
    Support::runOrThrow({"pdftoppm", "-aa", "no", "-aaVector", "no", "-cropbox", "-r", "144",
                         folder.write("in", document), folder.file("page")});
    std::vector<RenderedPage> pages;
    for (int number = 1; fs::exists(folder.file("page-" + std::to_string(number) + ".ppm"));
         ++number)
        pages.emplace_back(
            Support::readFile(folder.file("page-" + std::to_string(number) + ".ppm")), kResolution);
    return pages;
}

/// Upright, turned, cropped and of a unit of its own.
std::string pagesOfAllKinds()
{
    PDFBuilder builder;
    for (const char *entries : {"/MediaBox [0 0 300 200]", "/MediaBox [0 0 300 200] /Rotate 90",
                                "/MediaBox [-20 10 180 410] /Rotate 180",
                                "/MediaBox [0 0 400 500] /CropBox [50 60 350 280] /Rotate 270",
                                "/MediaBox [0 0 150 100] /UserUnit 2"})
        builder.addPage(entries, "0 0 1 rg 5 5 9 9 re f q 2 0 0 2 9 9 cm");
    return builder.document();
}

std::string blankPages(int count, std::string_view pagesEntries = {})
{
    PDFBuilder builder;
    for (int i = 0; i < count; ++i)
        builder.addPage("/MediaBox [0 0 300 200]", "");
    return builder.document(pagesEntries);
}

Watermark saying(const char *text, bool above = true)
{
    Watermark watermark = Support::watermarkOf({"", "centre", 20}, above);
    watermark.text = text;
    watermark.hasPlaceholders = true;
    return watermark;
}

/// The pages say what texts without placeholders say.
void expectTexts(const std::vector<const char *> &texts, const std::vector<RenderedPage> &pages,
                 bool above)
{
    ASSERT_EQ(texts.size(), pages.size());
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const RenderedPage wanted =
            rendered(processedPDF(blankPages(1), saying(texts[i], above))).at(0);
        EXPECT_GT(10U, pages[i].countChanges(wanted, [](auto was, auto is) { return was != is; }))
            << texts[i];
    }
}

class ToolkitPDFPlacesTest : public testing::TestWithParam<Support::PlaceExample> {};

} // namespace

TEST_P(ToolkitPDFPlacesTest, EachPageHasTheTextInItsPlace)
{
    for (const bool above : {true, false}) {
        const Watermark watermark = Support::watermarkOf(GetParam(), above);
        const std::string document = processedPDF(pagesOfAllKinds(), watermark);
        const auto pages = rendered(document);
        const auto pagesOfPoppler = renderedByPoppler(document);
        ASSERT_EQ(5U, pages.size());
        ASSERT_EQ(5U, pagesOfPoppler.size());
        for (std::size_t i = 0; i < pages.size(); ++i) {
            SCOPED_TRACE(i);
            Support::expectPlaces(watermark, pages[i]);
            if (i < 4)
                Support::expectPlaces(watermark, pagesOfPoppler[i]);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Places, ToolkitPDFPlacesTest, testing::ValuesIn(Support::kPlaceExamples),
                         &Support::nameOf);

TEST(ToolkitPDFPagesTest, TilesAreTextsInTheirPositions)
{
    const Watermark tiled = Support::watermarkOf({"", "tiled", 25, 30}, true);
    std::string wanted = blankPages(1);
    for (const Watermark &one : Support::positioned(tiled, {300, 200}))
        wanted = processedPDF(wanted, one);
    const auto page = rendered(processedPDF(blankPages(1), tiled)).at(0);
    EXPECT_GT(10U, page.countChanges(rendered(wanted).at(0),
                                     [](auto was, auto is) { return was != is; }));
}

TEST(ToolkitPDFPagesTest, EachPageHasItsOwnText)
{
    for (const bool above : {true, false}) {
        const auto document =
            processedPDF(blankPages(3), saying("Page [page] of [pages] [[]]", above));
        expectTexts({"Page 1 of 3 [[]]", "Page 2 of 3 [[]]", "Page 3 of 3 [[]]"},
                    rendered(document), above);
    }
}

TEST(ToolkitPDFPagesTest, PagesThatShareTheirResourcesDoNotShareTheText)
{
    const std::string document = blankPages(3, "/Resources << /XObject << >> >>");
    for (const bool above : {true, false})
        expectTexts({"1", "2", "3"}, rendered(processedPDF(document, saying("[page]", above))),
                    above);
}

TEST(ToolkitPDFPagesTest, ASecondTextStandsBesideTheFirst)
{
    const std::string shared = blankPages(2, "/Resources << /XObject << >> >>");
    Watermark corner = saying("[page]", false);
    corner.place = textPlaceFromText("top-left").value();
    const auto pages =
        rendered(processedPDF(processedPDF(shared, corner), saying("[page][page]", false)));
    ASSERT_EQ(2U, pages.size());
    for (std::size_t i = 0; i < 2; ++i) {
        corner.text = std::to_string(i + 1);
        const Watermark middle = saying(i == 0 ? "11" : "22", false);
        const auto wanted =
            rendered(processedPDF(processedPDF(blankPages(1), corner), middle)).at(0);
        EXPECT_GT(10U, pages[i].countChanges(wanted, [](auto was, auto is) { return was != is; }));
    }
}

TEST(ToolkitPDFPagesTest, APageIsCountedWhereverItsTextIsWanted)
{
    Watermark watermark = saying("[page]/[pages]");
    watermark.pages = pageSelectionFromText("even").value();
    const auto pages = rendered(processedPDF(blankPages(3), watermark));
    ASSERT_EQ(3U, pages.size());
    EXPECT_FALSE(pages[0].inkBox());
    expectTexts({"2/3"}, {pages[1]}, true);
    EXPECT_FALSE(pages[2].inkBox());
}

TEST(ToolkitPDFPagesTest, ALongerTextStandsInAPlaceOfItsOwn)
{
    const auto pages = rendered(processedPDF(blankPages(10), saying("[page] [page]")));
    ASSERT_EQ(10U, pages.size());
    expectTexts({"9 9", "10 10"}, {pages[8], pages[9]}, true);
}

/// The outlines of the number alone would take more.
TEST(ToolkitPDFPagesTest, TheTextsOfManyPagesShareTheirShapes)
{
    const auto size = [](int pages, const char *text) {
        return processedPDF(blankPages(pages), saying(text)).size();
    };
    const auto growth = size(600, "Page [page] of [pages]") - size(200, "Page [page] of [pages]");
    const auto anyway = size(600, "Page [pages]") - size(200, "Page [pages]");
    EXPECT_GT(400U * 700, growth - anyway);
}
