#include "PostScriptCommands.h"

#include "ToolkitError.h"
#include "ToolkitPostScript.h"

#include <gtest/gtest.h>

using Support::RenderedPage;
using Support::renderText;

namespace {

constexpr char kNoPages[] = "The PostScript document has no page comments.";
constexpr char kInsideEmbedded[] = "The PostScript document ends inside an embedded document.";

const Watermark kWatermark = {false, "Helvetica", 30, {1, 0, 0}, {50, 120}, 24, "Draft"};
const Booklet kBooklet = {"A4", 0, 0, Ordering::LeftToRight};
const CoverPages kCovers = {.back = {CoverStyle::NoPrint, "None", "Auto"},
                            .front = {CoverStyle::NoPrint, "None", "Auto"},
                            .source = "Auto",
                            .media = "None",
                            .duplex = "none"};

/// Data that look like the end of the embedded document and like a page of the outer one.
std::string binary()
{
    const std::string bytes =
        "currentfile 24 string readstring\n%%EndDocument\n%%Page: 9\npop pop\n";
    return "%%BeginBinary: " + std::to_string(bytes.size()) + "\n" + bytes + "%%EndBinary\n";
}

/// A document with pages of its own, and one with such pages inside it.
std::string embedded()
{
    const std::string begin = "%!PS-Adobe-3.0 EPSF-3.0\n%%Pages: 2\n%%EndComments\n";
    return "save /showpage { } def\n%%BeginDocument: outer.eps\n" + begin + "%%Page: 1 1\n" +
           binary() + "%%BeginDocument: inner.eps\n" + begin +
           "%%Page: 1 1\nshowpage\n%%Trailer\n%%EOF\n%%EndDocument\n"
           "%%Page: 2 2\n0 1 0 setrgbcolor 50 0 50 100 rectfill showpage\n%%Trailer\n%%EOF\n"
           "%%EndDocument\nrestore\n";
}

std::string page(int number, const std::string &content = "")
{
    const std::string text = std::to_string(number);
    return "%%Page: " + text + " " + text + "\n0 0 1 setrgbcolor 0 0 200 100 rectfill\n" + content +
           "showpage\n";
}

const std::string kHead =
    "%!PS-Adobe-3.0\n%%Pages: 9\n%%EndComments\n%%BeginProlog\n%%EndProlog\n%%BeginSetup\n"
    "<< /PageSize [200 300] >> setpagedevice\n%%EndSetup\n";
const std::string kDocument =
    kHead + page(1, binary()) + page(2, embedded()) + page(3) + "%%Trailer\n%%EOF\n";

/// Where the comment has been read so far that it counts.
std::size_t behind(const std::string &comment, std::size_t from = 0)
{
    return kDocument.find("\n" + comment, from) + 1 + std::string_view("%%Page").size();
}

/// How many pages of its own the document has when it is cut off there.
int pagesWithin(std::size_t size)
{
    const std::size_t first = behind("%%Page: 1 1");
    const std::size_t second = behind("%%Page: 2 2");
    const std::size_t third = behind("%%Page: 3 3");
    return size < first ? 0 : size < second ? 1 : size < third ? 2 : 3;
}

bool isInsideEmbedded(std::size_t size)
{
    const std::string begin = "%%BeginDocument";
    const std::string end = "%%EndDocument";
    return size >= kDocument.find(begin) + begin.size() && size < kDocument.rfind(end) + end.size();
}

/// What the command makes of it, or says about it.
std::string outcome(const std::string &document, const Command &command)
{
    try {
        return processed(document, command);
    } catch (const ToolkitError &error) {
        return error.what();
    }
}

std::size_t linesThatEndWith(const std::string &name, const std::string &document)
{
    return countOf(name + "\n", document);
}

} // namespace

TEST(PostScriptTruncatedTest, EveryBeginIsServedWithAllItsPagesOrRefusedInOneLine)
{
    for (std::size_t size = 2; size <= kDocument.size(); ++size) {
        SCOPED_TRACE(size);
        const std::string document = kDocument.substr(0, size);
        const auto pages = static_cast<std::size_t>(pagesWithin(size));
        const std::string folded = outcome(document, kBooklet);
        const std::string covered = outcome(document, kCovers);
        if (pages == 0 || isInsideEmbedded(size)) {
            const std::string reason = pages == 0 ? kNoPages : kInsideEmbedded;
            ASSERT_EQ(reason, folded);
            ASSERT_EQ(reason, covered);
            continue;
        }
        ASSERT_EQ(pages, linesThatEndWith(" KLToolkitBookletHalf.1", folded));
        ASSERT_EQ(2U, linesThatEndWith("\nKLToolkitBookletShow.1", folded));
        ASSERT_EQ(2U, linesThatEndWith("\nKLToolkitCoverPagesBlank.1", covered));
        const std::string count = "%%Pages: " + std::to_string(pages + 2) + "\n";
        ASSERT_EQ(1U, countOf(count, covered));
    }
}

/// Finding a font takes its time: not at every byte.
TEST(PostScriptTruncatedTest, WatermarkIsOnAllItsPagesToo)
{
    for (std::size_t size = 2; size <= kDocument.size(); size += 13) {
        SCOPED_TRACE(size);
        const auto pages = static_cast<std::size_t>(pagesWithin(size));
        const std::string output = outcome(kDocument.substr(0, size), kWatermark);
        if (pages == 0 || isInsideEmbedded(size))
            ASSERT_EQ(pages == 0 ? kNoPages : kInsideEmbedded, output);
        else
            ASSERT_EQ(pages, linesThatEndWith("\nKLToolkitWatermarkPage.1", output));
    }
}

/// Their count is right, but what it leads to is not the whole comment.
TEST(PostScriptTruncatedTest, DataThatAreCutOffInTheirEndCommentEndInTheOutputToo)
{
    const std::string data = "1\n%%EndData\n%%BeginDocument: inner.eps\n";
    const std::string document = kHead + "%%Page: 1 1\n%%BeginData: 3 ASCII Lines\n" + data;
    const std::string comment = "%%EndData";
    for (std::size_t size = 1; size <= comment.size(); ++size) {
        SCOPED_TRACE(size);
        const std::string folded = outcome(document + comment.substr(0, size), kBooklet);
        EXPECT_EQ(1U, linesThatEndWith(" KLToolkitBookletHalf.1", folded));
        // The first run left two sets of procedures, so that the second has number 3.
        EXPECT_EQ(2U, linesThatEndWith(" KLToolkitBookletHalf.3", outcome(folded, kBooklet)));
    }
}

TEST(PostScriptTruncatedTest, WhatIsServedPrintsItsWholePages)
{
    const auto isBlue = [](const RenderedPage &page) {
        return page.colourAt({10, 10}) == Support::kBlue;
    };
    for (const std::string end : {"restore\n", "%%Page: 3 3\n0 0 1"}) {
        SCOPED_TRACE(end);
        const std::string document = kDocument.substr(0, kDocument.rfind(end) + end.size());
        const auto marked = renderText(processed(document, kWatermark)).pages;
        ASSERT_EQ(end.starts_with("%%Page") ? 2U : 1U, marked.size());
        EXPECT_TRUE(isBlue(marked[0]) && marked[0].boxOf(Support::kRed));

        const auto sheets = renderText(processed(document, kBooklet)).pages;
        ASSERT_EQ(2U, sheets.size());
        EXPECT_GT(sheets[0].shareOf(Support::kBlue), 0.1); // page 1
        EXPECT_GT(sheets[1].shareOf(Support::kBlue), 0.1); // page 2, of which all marks are there
        EXPECT_GT(sheets[1].shareOf(Support::kGreen), 0.02);

        const auto covered = renderText(processed(document, kCovers)).pages;
        ASSERT_GE(covered.size(), 3U);
        EXPECT_EQ(0, covered.front().coverage());
        EXPECT_TRUE(isBlue(covered[1]));
        EXPECT_EQ(0, covered.back().coverage());
    }
}
