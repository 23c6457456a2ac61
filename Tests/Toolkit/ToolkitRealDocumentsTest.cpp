#include "PostScriptCommands.h"

#include "Program.h"
#include "ToolkitError.h"
#include "ToolkitPostScript.h"
#include "Watermarks.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <functional>

using Support::changesBesideText;
using Support::Colour;
using Support::kRed;
using Support::kWhite;
using Support::Rendering;
using Support::renderText;

namespace {

void run(std::vector<std::string> arguments)
{
    const auto result = Support::runProgram({.arguments = std::move(arguments)});
    if (result.exitStatus != 0)
        throw std::runtime_error(result.errors + result.output);
}

/// Every page has a band of a colour of its own, and text.
std::string source(std::size_t pages)
{
    std::string text = "%!PS\n<< /PageSize [420 595] >> setpagedevice\n";
    for (std::size_t page = 1; page <= pages; ++page) {
        text += fmt::format("0 {} 255 div 1 setrgbcolor 0 0 420 150 rectfill\n"
                            "0 setgray /Times-Roman 20 selectfont 50 500 moveto (Page {}) show\n"
                            "/Courier 9 selectfont 50 450 moveto (and more) show showpage\n",
                            page, page);
    }
    return text;
}

Colour colourOf(std::size_t page)
{
    return {0, static_cast<std::uint8_t>(page), 255};
}

using Folder = Support::TemporaryFolder;

std::string byGhostscript(const Folder &folder, const std::string &pdf)
{
    run({"gs", "-q", "-sDEVICE=ps2write", "-o", folder.file("out.ps"), pdf});
    return folder.file("out.ps");
}

std::string byPoppler(const Folder &folder, const std::string &pdf)
{
    run({"pdftops", pdf, folder.file("out.ps")});
    return folder.file("out.ps");
}

std::string byPopplerWithBinary(const Folder &folder, const std::string &pdf)
{
    run({"pdftops", "-level3", "-binary", "-duplex", "-paper", "match", pdf,
         folder.file("out.ps")});
    return folder.file("out.ps");
}

std::string byCairo(const Folder &folder, const std::string &pdf)
{
    run({"pdftocairo", "-ps", "-origpagesizes", pdf, folder.file("out.ps")});
    return folder.file("out.ps");
}

/// As a queue's chain hands it on, with the printer's features in it.
std::string byTheChain(const Folder &folder, const std::string &pdf)
{
    const std::string plain = byPoppler(folder, pdf);
    const std::string pstops =
        Support::packagedFile("/usr/lib/cups/filter/pstops", "cups-core-drivers");
    const auto result =
        Support::runProgram({.arguments = {pstops, "1", "user", "title", "1",
                                           "InputSlot=Tray2 Duplex=DuplexNoTumble", plain},
                             .environment = {{"PPD", KL_SAMPLE_PPD}}});
    if (result.exitStatus != 0)
        throw std::runtime_error(result.errors);
    // Job control is not part of the document.
    const auto begin = result.output.find("%!");
    return folder.write("chain.ps", result.output.substr(begin));
}

struct Producer {
    const char *name;
    std::function<std::string(const Folder &, const std::string &)> make;
};

void PrintTo(const Producer &producer, std::ostream *stream)
{
    *stream << producer.name;
}

class ToolkitRealDocumentsTest : public testing::TestWithParam<Producer> {
protected:
    std::string document(std::size_t pages) const
    {
        const std::string pdf = _folder.file("source.pdf");
        run({"gs", "-q", "-sDEVICE=pdfwrite", "-o", pdf,
             _folder.write("source.ps", source(pages))});
        return Support::readFile(GetParam().make(_folder, pdf));
    }

private:
    Folder _folder;
};

Watermark draft(bool above)
{
    return {above, "Helvetica-Bold", 30, {1, 0, 0}, {100, 250}, 60, "Draft"};
}

} // namespace

TEST_P(ToolkitRealDocumentsTest, WatermarkIsOnEveryPage)
{
    const std::string text = document(3);
    const Rendering before = renderText(text);
    ASSERT_EQ(3U, before.pages.size());
    for (const bool above : {true, false}) {
        const Rendering after = renderText(processed(text, draft(above)));
        ASSERT_EQ(3U, after.pages.size());
        EXPECT_EQ(before.log, after.log);
        for (std::size_t page = 0; page < 3; ++page) {
            EXPECT_GT(after.pages[page].shareOf(kRed), 0.01);
            EXPECT_EQ(after.pages[0].boxOf(kRed)->left, after.pages[page].boxOf(kRed)->left);
            EXPECT_EQ(after.pages[0].boxOf(kRed)->bottom, after.pages[page].boxOf(kRed)->bottom);
            EXPECT_EQ(0U, changesBesideText(before.pages[page], after.pages[page], above));
        }
    }
}

TEST_P(ToolkitRealDocumentsTest, BookletHasEveryPageInItsPlace)
{
    const std::size_t count = 11;
    const Booklet request = {"A4", 20, 20, Ordering::LeftToRight};
    const Rendering sheets =
        renderText(processed(processed(document(count), draft(true)), request), {.resolution = 36});
    ASSERT_EQ(6U, sheets.pages.size());
    // Turned by a quarter: the foot of the left page is at the right, in the lower half.
    for (std::size_t side = 0; side < 6; ++side) {
        const auto &sheet = sheets.pages[side];
        const std::size_t early = side + 1;
        const std::size_t late = 12 - side;
        const Colour lower = sheet.colourAt({sheet.width() - 60, sheet.height() / 4});
        const Colour upper = sheet.colourAt({sheet.width() - 60, sheet.height() * 3 / 4});
        const bool isFront = side % 2 == 0;
        EXPECT_EQ(colourOf(early), isFront ? upper : lower);
        EXPECT_EQ(late <= count ? colourOf(late) : kWhite, isFront ? lower : upper);
        EXPECT_GT(sheet.shareOf(kRed), late <= count ? 0.008 : 0.004);
    }
}

TEST_P(ToolkitRealDocumentsTest, CoversAreAroundIt)
{
    const CoverPages request = {.back = {CoverStyle::NoPrint, "None", "Auto"},
                                .front = {CoverStyle::NoPrint, "None", "Auto"},
                                .source = "Auto",
                                .media = "None",
                                .duplex = "none"};
    const std::string text = document(2);
    const Rendering before = renderText(text, {.resolution = 36});
    const Rendering after = renderText(processed(text, request), {.resolution = 36});
    ASSERT_EQ(4U, after.pages.size());
    EXPECT_EQ(0, after.pages[0].coverage());
    EXPECT_EQ(before.pages[0], after.pages[1]);
    EXPECT_EQ(before.pages[1], after.pages[2]);
    EXPECT_EQ(0, after.pages[3].coverage());
}

INSTANTIATE_TEST_SUITE_P(Producers, ToolkitRealDocumentsTest,
                         testing::Values(Producer{"Ghostscript", byGhostscript},
                                         Producer{"Poppler", byPoppler},
                                         Producer{"PopplerWithBinary", byPopplerWithBinary},
                                         Producer{"Cairo", byCairo}, Producer{"Chain", byTheChain}),
                         [](const auto &producer) { return std::string(producer.param.name); });

/// groff shows pages by a bound procedure, behind a restore.
TEST(ToolkitGroffDocumentTest, SampleHasTheWatermarkAndFolds)
{
    const std::string text = Support::readFile(KL_SAMPLE_DOCUMENT);
    const Rendering before = renderText(text);
    const std::string marked = processed(text, draft(true));
    const Rendering after = renderText(marked);
    ASSERT_EQ(before.pages.size(), after.pages.size());
    for (std::size_t page = 0; page < after.pages.size(); ++page) {
        EXPECT_GT(after.pages[page].shareOf(kRed), 0.005);
        EXPECT_EQ(0U, changesBesideText(before.pages[page], after.pages[page], true));
    }
    const Rendering sheets =
        renderText(processed(marked, Booklet{"A3", 0, 0, Ordering::LeftToRight}));
    EXPECT_EQ((before.pages.size() + 3) / 4 * 2, sheets.pages.size());
}

namespace {

/// The watermark is on every page and the booklet holds them, whatever the document does with the
/// operators.
void expectMarkedAndFolded(const std::string &text, std::size_t count)
{
    const Rendering before = renderText(text);
    ASSERT_EQ(count, before.pages.size());
    for (const bool above : {true, false}) {
        const std::string marked = processed(text, draft(above));
        const Rendering after = renderText(marked);
        ASSERT_EQ(count, after.pages.size());
        for (std::size_t page = 0; page < count; ++page) {
            EXPECT_TRUE(after.pages[page].boxOf(kRed));
            EXPECT_EQ(0U, changesBesideText(before.pages[page], after.pages[page], above));
        }
        const Rendering sheets =
            renderText(processed(marked, Booklet{"A4", 0, 0, Ordering::LeftToRight}));
        ASSERT_EQ((count + 3) / 4 * 2, sheets.pages.size());
        for (std::size_t side = 0; side < std::min(count, sheets.pages.size()); ++side)
            EXPECT_TRUE(sheets.pages[side].boxOf(kRed)) << side;
    }
}

} // namespace

/// Graphviz binds showpage to a name of its own and defines it to do nothing then.
TEST(ToolkitGraphvizDocumentTest, IsMarkedAndFolded)
{
    const Folder folder;
    const std::string graph = folder.write(
        "graph", "digraph { page=\"4,4\"; a -> b -> c -> d -> e -> f -> g -> h -> i -> j; }");
    run({"dot", "-Tps", "-o", folder.file("graph.ps"), graph});
    const std::string text = Support::readFile(folder.file("graph.ps"));
    expectMarkedAndFolded(text, countOf("\n%%Page:", text));
}

/// psutils ask whether names stand for operators, and build procedures of those that do.
TEST(ToolkitPSUtilsDocumentTest, IsMarkedAndFolded)
{
    const Folder folder;
    run({"psnup", "-q", "-pa4", "-2", KL_SAMPLE_DOCUMENT, folder.file("two.ps")});
    const std::string text = Support::readFile(folder.file("two.ps"));
    expectMarkedAndFolded(text, countOf("\n%%Page:", text));
}

TEST(ToolkitLongDocumentTest, TwoHundredPages)
{
    const Folder folder;
    run({"gs", "-q", "-sDEVICE=pdfwrite", "-o", folder.file("source.pdf"),
         folder.write("source.ps", source(200))});
    const std::string text = Support::readFile(byPoppler(folder, folder.file("source.pdf")));
    const Rendering sheets = renderText(
        processed(processed(text, draft(false)), Booklet{"Letter", 0, 0, Ordering::RightToLeft}),
        {.resolution = 18});
    ASSERT_EQ(100U, sheets.pages.size());
    for (const auto &sheet : sheets.pages)
        EXPECT_TRUE(sheet.boxOf(kRed));
}

// --- Cut off -------------------------------------------------------------------------------------

/// What is left of a real document prints as a booklet, all of its whole pages.
TEST_P(ToolkitRealDocumentsTest, CutOffAnywhereItIsServedOrRefused)
{
    const std::string text = document(4);
    const Booklet booklet = {"A4", 0, 0, Ordering::LeftToRight};
    const CoverPages covers = {.back = {CoverStyle::NoPrint, "None", "Auto"},
                               .front = {CoverStyle::Print1, "None", "Auto"},
                               .source = "Auto",
                               .media = "None",
                               .duplex = "none"};
    const std::string comment = "\n%%Page";
    const std::size_t firstPage = text.find(comment + ": ") + comment.size();
    for (std::size_t size = 0; size < text.size(); size += text.size() / 97) {
        SCOPED_TRACE(size);
        const std::string part = text.substr(0, size);
        if (size < firstPage) {
            EXPECT_THROW(processed(part, draft(true)), ToolkitError);
            EXPECT_THROW(processed(part, booklet), ToolkitError);
            EXPECT_THROW(processed(part, covers), ToolkitError);
            continue;
        }
        EXPECT_GT(processed(part, draft(true)).size(), part.size());
        EXPECT_GT(processed(part, booklet).size(), part.size());
        EXPECT_GT(processed(part, covers).size(), part.size());
    }

    const std::size_t thirdPage = text.find("\n%%Page: 3");
    const std::size_t fourthPage = text.find("\n%%Page: 4");
    for (const std::size_t size : {thirdPage + (fourthPage - thirdPage) / 3, fourthPage - 40}) {
        const Rendering sheets =
            renderText(processed(text.substr(0, size), booklet), {.resolution = 36});
        ASSERT_EQ(2U, sheets.pages.size());
        const auto &front = sheets.pages[0];
        EXPECT_EQ(colourOf(1), front.colourAt({front.width() - 60, front.height() * 3 / 4}));
        const auto &back = sheets.pages[1];
        EXPECT_EQ(colourOf(2), back.colourAt({back.width() - 60, back.height() / 4}));
    }
}
