#include "PDFBuilder.h"
#include "Rendering.h"
#include "ToolkitPDF.h"
#include "ToolkitPostScript.h"

#include <gtest/gtest.h>

// A text on some of the pages only, in both kinds of documents.

namespace {

using Support::kRed;
using Support::RenderedPage;

Watermark draft(const char *pages, bool above)
{
    return {.above = above,
            .font = "Helvetica",
            .angle = 0,
            .colour = {1, 0, 0},
            .position = {20, 50},
            .size = 30,
            .text = "Draft",
            .pages = pageSelectionFromText(pages).value()};
}

/// One letter for each sheet: "x" where the text is, "-" where nothing is.
std::string marksOn(const std::vector<RenderedPage> &pages)
{
    std::string marks;
    for (const RenderedPage &page : pages)
        marks += page.boxOf(kRed) ? 'x' : page.coverage() == 0 ? '-' : '?';
    return marks;
}

std::vector<RenderedPage> rendered(const std::string &document)
{
    return Support::renderText(document).pages;
}

std::string onPDF(const char *pages, bool above)
{
    Support::PDFBuilder builder;
    for (int page = 0; page < 5; ++page)
        builder.addPage("/MediaBox [0 0 200 300]", "");
    return marksOn(rendered(processedPDF(builder.document(), draft(pages, above))));
}

std::string onPostScript(const char *pages, bool above)
{
    const std::string page = "showpage\n";
    return marksOn(rendered(processed(
        PostScriptSample{.pages = {page, page, page, page, page}}.text(), draft(pages, above))));
}

struct Case {
    const char *pages;
    const char *marks;
};

} // namespace

TEST(ToolkitWatermarkPagesTest, TheTextIsOnThePagesThatAreAskedFor)
{
    for (const auto &[pages, marks] :
         {Case{"not-first", "-xxxx"}, Case{"odd", "x-x-x"}, Case{"2-3,5-9", "-xx-x"}}) {
        for (const bool above : {true, false}) {
            EXPECT_EQ(marks, onPDF(pages, above)) << pages;
            EXPECT_EQ(marks, onPostScript(pages, above)) << pages;
        }
    }
}

TEST(ToolkitWatermarkPagesTest, APageBeyondTheEndIsNoError)
{
    EXPECT_EQ("-----", onPDF("6-", true));
    EXPECT_EQ("-----", onPostScript("6-", true));
}

TEST(ToolkitWatermarkPagesTest, FurtherSheetsOfAPostScriptPageBelongToIt)
{
    const PostScriptSample sample{
        .pages = {"showpage copypage showpage\n", "showpage showpage\n", "showpage showpage\n"}};
    for (const bool above : {true, false}) {
        EXPECT_EQ("xxx--xx", marksOn(rendered(processed(sample.text(), draft("odd", above)))));
        EXPECT_EQ("---xx--", marksOn(rendered(processed(sample.text(), draft("even", above)))));
    }
}

TEST(ToolkitWatermarkPagesTest, APostScriptPageIsCountedWhateverItCallsItself)
{
    for (const bool above : {true, false}) {
        std::string text = PostScriptSample{.pages = {"showpage\n", "showpage\n"}}.text();
        text.replace(text.find("%%Page: 1 1"), 11, "%%Page: 2 7");
        EXPECT_EQ("x-", marksOn(rendered(processed(text, draft("first", above)))));
    }
}

TEST(ToolkitWatermarkPagesTest, MarksStayWithTheirPagesInABooklet)
{
    // The sides of the sheets: 4 and 1, 2 and 3.
    const std::string page = "showpage\n";
    const PostScriptSample sample{.pages = {page, page, page, page}};
    const Booklet booklet = {
        .pageSize = "A4", .centreMargin = 0, .outerMargin = 0, .ordering = Ordering::LeftToRight};
    for (const bool above : {true, false}) {
        const auto sides = [&](const char *pages) {
            return marksOn(
                rendered(processed(processed(sample.text(), draft(pages, above)), booklet)));
        };
        EXPECT_EQ("x-", sides("first"));
        EXPECT_EQ("-x", sides("2-3"));
        EXPECT_EQ("xx", sides("even"));
    }
}

TEST(ToolkitWatermarkPagesTest, AWatermarkForEachKindOfPage)
{
    const std::string page = "showpage\n";
    const PostScriptSample sample{.pages = {page, page, page}};
    Watermark other = draft("even", true);
    other.colour = {0, 0, 1};
    for (const bool above : {true, false}) {
        const auto pages =
            rendered(processed(processed(sample.text(), draft("odd", above)), other));
        ASSERT_EQ(3U, pages.size());
        for (std::size_t i = 0; i < pages.size(); ++i) {
            EXPECT_EQ(i % 2 == 0, pages[i].boxOf(kRed).has_value());
            EXPECT_EQ(i % 2 == 1, pages[i].boxOf(Support::kBlue).has_value());
        }
    }
}

TEST(ToolkitWatermarkPagesTest, NothingMoreIsWrittenWhereAllPagesHaveIt)
{
    const PostScriptSample sample{.pages = {"showpage\n", "showpage\n"}};
    EXPECT_EQ(processed(sample.text(), draft("1-", true)),
              processed(sample.text(), draft("1,2", true)));
    EXPECT_EQ(0U, countOf("UnmarkedPage", processed(sample.text(), draft("odd,even", true))));
}
