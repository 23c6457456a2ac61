// What a watermark makes of documents that are too large to be held in memory: they are copied
// while they are read, before all is known that the watermark depends on.

#include "DSCDocument.h"
#include "PostScriptCommands.h"
#include "ToolkitPostScript.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace {

/// So many lines that they are more than is held in memory at any time.
std::string manyLines(std::string_view line)
{
    std::string lines;
    while (lines.size() < 2 * FileWindow::kSize)
        lines += line;
    return lines;
}

const std::string kFilling = manyLines("% what a page draws\n");
const std::string kComments = manyLines("%%PageResources: font Helvetica\n");

std::string replaced(std::string text, std::string_view part, std::string_view other)
{
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at))
        text.replace(at, part.size(), other), at += other.size();
    return text;
}

Watermark draft(bool above)
{
    return {.above = above,
            .font = "Helvetica",
            .angle = 30,
            .colour = {1, 0, 0},
            .position = {50, 120},
            .size = 24,
            .text = "Draft"};
}

/// A document: each "@" stands for content, and each "#" for comments on a page, many or none.
struct Case {
    const char *name;
    const char *body;
    std::string header = {};
    PageSelection pages = {};
    std::optional<TextPlace> place = {};
    const char *textWithPlaceholders = nullptr;
};

void PrintTo(const Case &example, std::ostream *stream)
{
    *stream << example.name;
}

} // namespace

class PostScriptLargeDocumentsTest : public testing::TestWithParam<Case> {
protected:
    static std::string output(bool above, std::string_view content, std::string_view comments)
    {
        const Case &example = GetParam();
        Watermark watermark = draft(above);
        watermark.pages = example.pages;
        watermark.place = example.place;
        watermark.hasPlaceholders = example.textWithPlaceholders != nullptr;
        if (watermark.hasPlaceholders)
            watermark.text = example.textWithPlaceholders;
        const std::string text =
            "%!PS-Adobe-3.0\n" + example.header + "%%EndComments\n" + example.body;
        return processed(replaced(replaced(text, "@", content), "#", comments), watermark);
    }
};

/// A watermark does not depend on how much the pages draw.
TEST_P(PostScriptLargeDocumentsTest, GetWhatSmallOnesGet)
{
    for (const bool above : {true, false}) {
        const std::string large = output(above, kFilling, kComments);
        EXPECT_TRUE(output(above, "", "") == replaced(replaced(large, kFilling, ""), kComments, ""))
            << above;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Documents, PostScriptLargeDocumentsTest,
    testing::Values(
        Case{"Plain", "%%Page: 1 1\n@showpage\n%%Page: 2 2\n@showpage\n%%Trailer\n%%EOF\n"},
        Case{"WithProlog", "%%BeginProlog\n/systemdict pop\n@%%EndProlog\n%%Page: 1 1\n@showpage\n"
                           "%%Page: 2 2\n@showpage\n%%Trailer\n@%%EOF\n"},
        Case{"WithItsOperatorsNamedLate", "%%Page: 1 1\n@showpage\n%%Page: 2 2\n"
                                          "systemdict /showpage get exec\n@showpage\n%%EOF\n"},
        Case{"WithItsOperatorsNamedAtTheEnd",
             "%%Page: 1 1\n@showpage\n%%Trailer\nsystemdict /showpage get pop\n%%EOF\n"},
        Case{"WithALandscapePageLate", "%%Page: 1 1\n@showpage\n%%Page: 2 2\n"
                                       "%%PageOrientation: Landscape\n@showpage\n%%EOF\n"},
        Case{"WithAPortraitPageLate", "%%Page: 1 1\n%%PageOrientation: Landscape\n@showpage\n"
                                      "%%Page: 2 2\n%%PageOrientation: Portrait\n@showpage\n"
                                      "%%Page: 3 3\n@showpage\n%%EOF\n"},
        Case{"WithAPageThatTellsLate", "%%Page: 1 1\n%%PageOrientation: Landscape\n@showpage\n"
                                       "%%Page: 2 2\ngsave\n@%%PageOrientation: Landscape\n"
                                       "grestore showpage\n%%Page: 3 3\n@showpage\n%%EOF\n"},
        Case{
            "WithOrientationAtTheEnd",
            "%%Page: 1 1\n@showpage\n%%Page: 2 2\n@showpage\n%%Trailer\n%%Orientation: Landscape\n",
            "%%Orientation: (atend)\n"},
        Case{"WithMediaAtTheEnd",
             "%%Page: 1 1\n@showpage\n%%Trailer\n%%DocumentMedia: Odd 300 400 0 () ()\n%%EOF\n",
             "%%DocumentMedia: (atend)\n",
             {},
             TextPlace{}},
        Case{"WithPagesThatHaveNone",
             "%%Page: 1 1\n@showpage\n%%Page: 2 2\n@showpage\n%%Page: 3 3\n@showpage\n%%EOF\n",
             {},
             pageSelectionFromText("1-2").value()},
        Case{"WithAFirstPageThatHasNone",
             "%%Page: 1 1\n@showpage\n%%Page: 2 2\n@showpage\n%%Page: 3 3\n@showpage\n%%EOF\n",
             {},
             pageSelectionFromText("2-").value()},
        Case{"WithManyCommentsOnAPage", "%%Page: 1 1\n@showpage\n%%Page: 2 2\n#"
                                        "%%PageOrientation: Portrait\n@showpage\n%%EOF\n"},
        Case{"WithPageNumbers",
             "%%Page: 1 1\n@showpage\n%%Page: 2 2\n@showpage\n%%EOF\n",
             {},
             {},
             {},
             "[page]"},
        Case{"WithTheCountOfPages",
             "%%Page: 1 1\n@showpage\n%%Page: 2 2\n@showpage\n%%EOF\n",
             {},
             {},
             {},
             "of [pages]"},
        Case{"WithAPageCommentInTheProlog",
             "%%BeginProlog\n%%Page: 0 0\n@%%EndProlog\n%%Page: 1 1\n@showpage\n"
             "%%Page: 2 2\n@showpage\n%%EOF\n"},
        Case{"WithAPageAheadOfThePages", "%%EndProlog\n@showpage\n%%Page: 1 1\n@showpage\n"
                                         "%%Page: 2 2\n@showpage\n%%EOF\n"},
        Case{"WithATrailerInTheLastPage",
             "%%Page: 1 1\n@showpage\n%%Page: 2 2\n10 10 moveto\n@%%Trailer\n"
             "@showpage\n%%Trailer\n%%EOF\n"},
        Case{"WithoutAnEnd", "%%Page: 1 1\n@showpage\n%%Page: 2 2\n@showpage\n"},
        Case{"WithAnEndInside", "%%Page: 1 1\n@%!PS-Adobe-3.0\n%%Trailer\n%%EOF\n@showpage\n"
                                "%%Page: 2 2\n@showpage\n%%Trailer\n@%%EOF\n%%Trailer\n%%EOF\n"},
        Case{"WithADocumentInside", "%%Page: 1 1\n%%BeginDocument: inner\n%!PS-Adobe-3.0\n"
                                    "%%Page: 1 1\n@%%Trailer\n%%EOF\n%%EndDocument\n@showpage\n"
                                    "%%Page: 2 2\n@showpage\n%%EOF\n"},
        Case{"WithDataThatIsNotCounted", "%%Page: 1 1\n@%%BeginData\n%%Page: 9 9\n@%%EndData\n"
                                         "@showpage\n%%Page: 2 2\n@showpage\n%%EOF\n"},
        Case{"WithDataThatDoesNotEnd",
             "%%Page: 1 1\n@%%BeginData\n@\n%%Page: 2 2\n@showpage\n%%EOF\n"}),
    [](const auto &example) { return example.param.name; });

namespace {

std::string largeDocument()
{
    PostScriptSample sample;
    for (int page = 0; page < 4; ++page)
        sample.pages.push_back(kFilling + "showpage\n");
    return sample.text();
}

/// Bytes that this process has read from files so far.
std::uint64_t bytesRead()
{
    std::ifstream counters("/proc/self/io");
    std::string name;
    std::uint64_t value = 0;
    while (counters >> name >> value) {
        if (name == "rchar:")
            return value;
    }
    throw std::runtime_error("/proc/self/io does not tell");
}

} // namespace

TEST(PostScriptLargeWatermarkTest, ReadsTheDocumentOnce)
{
    const Support::TemporaryFolder folder;
    const std::string text = largeDocument();
    const Platform::Stream input = Platform::openForReading(folder.write("input.ps", text));
    const Platform::Stream output = Platform::openForWriting(folder.file("output.ps"));
    processed(PostScriptSample{.pages = {"showpage\n"}}.text(), draft(true)); // reads the fonts

    const std::uint64_t before = bytesRead();
    Platform::TextShaper texts;
    applyToPostScript(draft(true), {input.get(), output.get(), texts, {}});
    EXPECT_GT(text.size() + text.size() / 4, bytesRead() - before);
}

/// Also where the watermark takes less room than it seemed to.
TEST(PostScriptLargeWatermarkTest, NothingIsLeftOfAnAttemptThatWasWrong)
{
    std::string pages;
    for (int page = 0; page < 40'000; ++page)
        pages += "%%Page: 1 1\nshowpage\n";
    const std::string header = "%!PS-Adobe-3.0\n%%Orientation: Landscape\n%%EndComments\n";
    const std::string trailer = "%%Trailer\n%%Orientation: Portrait\n%%EOF\n";
    const std::string output = processed(header + pages + trailer, draft(true));
    EXPECT_EQ(0U, countOf("KLToolkitWatermarkTurned", output));
    EXPECT_EQ(output.size() - trailer.size(), output.find(trailer));
}
