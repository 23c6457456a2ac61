#include "PostScriptCommands.h"

#include "ToolkitPostScript.h"
#include "WatermarkPlaces.h"

#include <gtest/gtest.h>

namespace {

using Support::RenderedPage;
using Support::renderText;

std::vector<RenderedPage> rendered(std::string_view document)
{
    const auto result = renderText(document, {.resolution = 144});
    EXPECT_EQ("", result.log);
    return result.pages;
}

std::string page(int width, int height, const std::string &contents)
{
    return "%%BeginPageSetup\n<< /PageSize [" + std::to_string(width) + " " +
           std::to_string(height) + "] >> setpagedevice\n%%EndPageSetup\n" + contents;
}

/// Of several sizes, with marks, and with a graphics state that is nobody's business.
PostScriptSample pagesOfAllKinds()
{
    const std::string marks = "0 0 1 setrgbcolor 5 5 9 9 rectfill ";
    return {
        .setup = "",
        .pages = {page(300, 200, marks + "showpage\n"),
                  page(200, 300, "save " + marks + "90 rotate 0.3 0.4 scale showpage restore\n"),
                  page(200, 400, "gsave 9 9 50 50 rectclip " + marks + "showpage grestore\n")}};
}

PostScriptSample blankPages(std::size_t count)
{
    return {.pages = std::vector<std::string>(count, "showpage\n")};
}

Watermark saying(const char *text, bool above = true)
{
    Watermark watermark = Support::watermarkOf({"", "centre", 20}, above);
    watermark.text = text;
    watermark.hasPlaceholders = true;
    return watermark;
}

/// The pages say what texts without placeholders say.
void expectTexts(const std::vector<const char *> &texts, const std::string &document)
{
    const auto pages = rendered(document);
    ASSERT_EQ(texts.size(), pages.size());
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const auto wanted = rendered(processed(blankPages(1).text(), saying(texts[i]))).at(0);
        EXPECT_GT(10U, pages[i].countChanges(wanted, [](auto was, auto is) { return was != is; }))
            << texts[i];
    }
}

void expectSame(const std::vector<RenderedPage> &wanted, const std::vector<RenderedPage> &pages)
{
    ASSERT_EQ(wanted.size(), pages.size());
    for (std::size_t i = 0; i < pages.size(); ++i)
        EXPECT_GT(10U,
                  pages[i].countChanges(wanted[i], [](auto was, auto is) { return was != is; }));
}

class PostScriptPlacesTest : public testing::TestWithParam<Support::PlaceExample> {};

} // namespace

TEST_P(PostScriptPlacesTest, EachPageHasTheTextInItsPlace)
{
    for (const bool above : {true, false}) {
        const Watermark watermark = Support::watermarkOf(GetParam(), above);
        const auto pages = rendered(processed(pagesOfAllKinds().text(), watermark));
        ASSERT_EQ(3U, pages.size());
        for (std::size_t i = 0; i < pages.size(); ++i) {
            SCOPED_TRACE(i);
            Support::expectPlaces(watermark, pages[i]);
        }
    }
}

/// The page of a booklet's half is the document's, before the booklet is made and afterwards.
TEST_P(PostScriptPlacesTest, AHalfOfABookletIsAPage)
{
    const Watermark watermark = Support::watermarkOf(GetParam(), true);
    const auto positions = Support::positioned(watermark, {200, 300});
    const Command booklet = Booklet{"A4", 0, 0, Ordering::LeftToRight};
    const std::string document = blankPages(4).text();
    std::string before = document;
    for (const Watermark &position : positions)
        before = processed(before, position);
    expectSame(rendered(processed(before, booklet)),
               rendered(processed(processed(document, watermark), booklet)));
}

/// The paper is portrait: the page is 300 points wide and 200 high when it is read.
TEST_P(PostScriptPlacesTest, ALandscapePageCountsAsItIsRead)
{
    const PostScriptSample sample{.pages = {"%%PageOrientation: Landscape\nshowpage\n"}};
    const Watermark watermark = Support::watermarkOf(GetParam(), true);
    std::string wanted = sample.text();
    // A position is one on an upright page, from which it is moved: here back to what is wanted.
    for (const Watermark &position : Support::positioned(watermark, {300, 200}))
        wanted = processed(wanted, Support::onLandscapePage(position, 300, 200));
    expectSame(rendered(wanted), rendered(processed(sample.text(), watermark)));
}

INSTANTIATE_TEST_SUITE_P(Places, PostScriptPlacesTest, testing::ValuesIn(Support::kPlaceExamples),
                         &Support::nameOf);

TEST(PostScriptPagesTest, EachPageHasItsOwnText)
{
    for (const bool above : {true, false})
        expectTexts({"Page 1 of 3 [[]]", "Page 2 of 3 [[]]", "Page 3 of 3 [[]]"},
                    processed(blankPages(3).text(), saying("Page [page] of [pages] [[]]", above)));
}

TEST(PostScriptPagesTest, FurtherSheetsOfAPageHaveItsText)
{
    const PostScriptSample sample{.pages = {"showpage showpage\n", "showpage\n"}};
    for (const bool above : {true, false})
        expectTexts({"1", "1", "2"}, processed(sample.text(), saying("[page]", above)));
}

TEST(PostScriptPagesTest, WhatADocumentRestoresBringsNoTextBack)
{
    const PostScriptSample sample{
        .pages = {"/before save def showpage\n", "before restore showpage\n", "showpage\n"}};
    for (const bool above : {true, false})
        expectTexts({"1", "2", "3"}, processed(sample.text(), saying("[page]", above)));
}

TEST(PostScriptPagesTest, ATextWithAPositionDiffersToo)
{
    Watermark watermark = saying("[page]");
    watermark.place = {};
    watermark.position = {50, 100};
    const auto pages = rendered(processed(blankPages(2).text(), watermark));
    watermark.hasPlaceholders = false;
    watermark.text = "2";
    expectSame(rendered(processed(blankPages(1).text(), watermark)), {pages.at(1)});
}

TEST(PostScriptPagesTest, TilesHaveTheTextOfThePage)
{
    Watermark watermark = Support::watermarkOf({"", "tiled", 20}, false);
    watermark.text = "No [page]";
    watermark.hasPlaceholders = true;
    const auto pages = rendered(processed(blankPages(2).text(), watermark));
    watermark.text = "No 2";
    expectSame(rendered(processed(blankPages(1).text(), watermark)), {pages.at(1)});
}

TEST(PostScriptPagesTest, APageIsCountedWhereverItsTextIsWanted)
{
    Watermark watermark = saying("[page]/[pages]");
    watermark.pages = pageSelectionFromText("even").value();
    const auto pages = rendered(processed(blankPages(3).text(), watermark));
    ASSERT_EQ(3U, pages.size());
    EXPECT_FALSE(pages[0].inkBox());
    expectSame(rendered(processed(blankPages(1).text(), saying("2/3"))), {pages[1]});
    EXPECT_FALSE(pages[2].inkBox());
}

TEST(PostScriptPagesTest, ASecondTextStandsBesideTheFirst)
{
    Watermark corner = saying("[page]");
    corner.place = textPlaceFromText("top-left").value();
    const auto pages =
        rendered(processed(processed(blankPages(2).text(), corner), saying("[page][page]")));
    corner.text = "2";
    expectSame(rendered(processed(processed(blankPages(1).text(), corner), saying("22"))),
               {pages.at(1)});
}

TEST(PostScriptPagesTest, TheTextsOfManyPagesShareTheirShapes)
{
    const auto size = [](std::size_t pages, const char *text) {
        return processed(blankPages(pages).text(), saying(text)).size();
    };
    const auto growth = size(600, "Page [page] of [pages]") - size(200, "Page [page] of [pages]");
    const auto anyway = size(600, "Page [pages]") - size(200, "Page [pages]");
    EXPECT_GT(400U * 300, growth - anyway);
}

/// A level 1 interpreter knows no size: the comments do.
TEST(PostScriptPagesTest, WithoutAPageDeviceTheCommentsTellTheSize)
{
    std::string text = blankPages(1).text();
    text.insert(text.find("%%EndComments"), "%%DocumentMedia: Small 200 300 0 () ()\n");
    text.insert(0, "%!\n");
    const Watermark watermark = Support::watermarkOf({"", "top-right"}, true);
    const std::string done = processed(text.substr(3), watermark);
    EXPECT_NE(std::string::npos, done.find("/usualWidth 200 def\n/usualHeight 300 def\n"));
}
