#include "EndToEndTest.h"
#include "PageFinder.h"

#include "DeviceLog.h"
#include "Rendering.h"
#include "Watermarks.h"

#include <algorithm>
#include <tuple>
#include <utility>

using Support::DeviceState;
using Support::PJLJob;
using Support::RenderedPage;
using Support::Rendering;
using Support::TemporaryFolder;
using testing::Contains;

namespace {

/// A program that makes documents. They look like a kept one, which is what it has made or what it
/// is given.
struct Producer {
    const char *name;
    const char *kept;   ///< "groff", "tex" or "office"
    const char *format; ///< of the kept document
    /// Makes the document out of the kept one; "in" and "out" stand for the files. Empty: it has
    /// made the kept one.
    std::vector<std::string> command = {};
    /// What the queue makes PostScript with; empty for its own choice.
    std::string renderer = "";
};

void PrintTo(const Producer &producer, std::ostream *stream)
{
    *stream << producer.name;
}

/// One document of each program.
const Producer kProducers[] = {
    {"groff", "groff", "ps"},
    {"TeX", "tex", "ps"},
    {"LibreOffice", "office", "pdf"},
    {"Ghostscript", "tex", "pdf", {"gs", "-q", "-sDEVICE=ps2write", "-o", "out", "in"}},
    {"Poppler", "office", "pdf", {"pdftops", "in", "out"}},
    {"Cairo", "office", "pdf", {"pdftocairo", "-ps", "in", "out"}},
};

/// Their other formats, and the other ways through the queue.
const Producer kOtherWays[] = {
    {"PdfTeXByPoppler", "tex", "pdf", {}, "pdftops"},
    {"LibreOfficeByCairo", "office", "pdf", {}, "pdftocairo"},
    {"GhostscriptPDF", "groff", "ps", {"gs", "-q", "-sDEVICE=pdfwrite", "-o", "out", "in"}},
    {"CairoPDF", "tex", "pdf", {"pdftocairo", "-pdf", "in", "out"}, "pdftops"},
    {"Chromium", "chromium", "pdf"},
};

std::string keptDocument(const Producer &producer, int pages)
{
    return std::string(KL_DOCUMENTS) + "/" + producer.kept + "-" + std::to_string(pages) + "." +
           producer.format;
}

class RealDocumentsTest : public EndToEndTest,
                          public testing::WithParamInterface<std::tuple<Producer, int>> {
protected:
    static const Producer &producer() { return std::get<0>(GetParam()); }
    static std::size_t pages() { return static_cast<std::size_t>(std::get<1>(GetParam())); }
    static const PageFinder &finder() { return PageFinder::of(keptPath()); }

    PJLJob printWith(std::vector<std::string> options) const
    {
        if (!producer().renderer.empty())
            options.push_back("pdftops-renderer=" + producer().renderer);
        return print(kQueue, document(), options);
    }

private:
    static std::string keptPath() { return keptDocument(producer(), std::get<1>(GetParam())); }

    std::string document() const
    {
        std::vector<std::string> command = producer().command;
        if (command.empty())
            return keptPath();
        std::ranges::replace(command, "in", keptPath());
        std::ranges::replace(command, "out", _folder.file("document"));
        const auto result = Support::runProgram({.arguments = std::move(command)});
        EXPECT_EQ(0, result.exitStatus) << result.errors;
        return _folder.file("document");
    }

    const TemporaryFolder _folder;
};

/// Trays and media of the two covers and of the job.
std::vector<std::string> covers(const std::string &style)
{
    return {"InputSlot=Tray2",
            "UseFrontCover=True",
            "FrontCoverPrintStyle=" + style,
            "FrontCoverSource=Tray3",
            "FrontCoverMediaType=Thick",
            "UseBackCover=True",
            "BackCoverPrintStyle=" + style,
            "BackCoverSource=SheetFeedBypass",
            "BackCoverMediaType=Recycled"};
}

std::vector<std::string> joined(std::vector<std::string> options,
                                const std::vector<std::string> &others)
{
    options.insert(options.end(), others.begin(), others.end());
    return options;
}

DeviceState fedFrom(std::string tray, std::string media, const DeviceState &duplex)
{
    DeviceState state = duplex;
    state["MediaPosition"] = std::move(tray);
    state["MEDIATYPE"] = std::move(media);
    return state;
}

/// The covers came out of their trays, on their media and on one side, and all else as the job's.
void expectFed(const std::string &log, std::size_t sides, const DeviceState &duplex)
{
    auto fed = Support::statesOfSides(log);
    for (DeviceState &state : fed) {
        state.erase("PageSize");
        state.erase("ImagingBBox");
    }
    // The queue's own words for it, and the page device's.
    const DeviceState oneSide = {{"DUPLEX", "OFF"}, {"Duplex", "false"}, {"Tumble", "false"}};
    std::vector<DeviceState> expected(sides + 1, fedFrom("2", "PLAIN", duplex));
    expected[0] = fedFrom("3", "THICK1", oneSide);
    expected[sides - 1] = fedFrom("0", "RECYCLED", oneSide);
    EXPECT_EQ(expected, fed);
}

// The front cover, the folded sheets, the back cover.
TEST_P(RealDocumentsTest, IsABookletUnderAWatermarkBetweenBlankCovers)
{
    const PJLJob job =
        printWith(joined(joined(redWatermark(), covers("NoPrint")), {"BookletPaperSize=A3"}));
    EXPECT_THAT(headerLines(job), Contains(dssc("DUPLEX=SHORTEDGE")));
    const Rendering sides = renderedFromAfar(job.body);
    const std::size_t padded = (pages() + 3) / 4 * 4;
    ASSERT_EQ(padded / 2 + 2, sides.pages.size());
    EXPECT_EQ(0, sides.pages.front().coverage());
    EXPECT_EQ(0, sides.pages.back().coverage());
    expectFed(sides.log, sides.pages.size(),
              {{"DUPLEX", "SHORTEDGE"}, {"Duplex", "true"}, {"Tumble", "true"}});

    for (std::size_t at = 0; at < padded / 2; ++at) {
        SCOPED_TRACE(at);
        finder().expectSideOfBooklet(at, BookletSide(sides.pages[at + 1], BookletSide::Turned));
    }
}

/// The middle of the text's box is in the middle of the page, a quarter of it up.
void expectWatermarkInPlace(const RenderedPage &page)
{
    Watermark expected = {.above = true,
                          .font = "Helvetica-Bold",
                          .angle = 0,
                          .colour = {1, 0, 0},
                          .position = {},
                          .size = 96,
                          .text = "DRAFT"};
    const auto text = Platform::shapeText(expected.text, expected.font, expected.size);
    expected.position = {595 / 2.0 - text.advance / 2,
                         842 / 4.0 - (text.ascent + text.descent + text.lineGap) / 2};
    const auto ink = Support::inkBoxOf(expected);
    const auto box = page.boxOf(Support::kRed);
    ASSERT_TRUE(box);
    EXPECT_NEAR((ink.left + ink.right) / 2, (box->left + box->right) / 2, 1);
    EXPECT_NEAR((ink.bottom + ink.top) / 2, (box->bottom + box->top) / 2, 1);
    EXPECT_NEAR(ink.right - ink.left, box->right - box->left, 2);
}

class RealDocumentsUnfoldedTest : public RealDocumentsTest {};

// Two-sided: the last one of the five inner pages has a blank back, so that the cover is a sheet of
// its own.
TEST_P(RealDocumentsUnfoldedTest, IsUnderAWatermarkWithItsOuterPagesAsCovers)
{
    ASSERT_EQ(7U, pages());
    const std::vector<std::size_t> order = {1, 2, 3, 4, 5, 6, 0, 7};
    const auto plain = Support::renderText(printWith({}).body).pages;
    ASSERT_EQ(7U, plain.size());
    const PJLJob job =
        printWith(joined(joined(redWatermark(), covers("Print1")), {"Duplex=DuplexNoTumble"}));
    const Rendering sides =
        Support::renderText(job.body, {.arguments = Support::deviceLogArguments()});
    expectFed(sides.log, order.size(),
              {{"DUPLEX", "LONGEDGE"}, {"Duplex", "true"}, {"Tumble", "false"}});
    ASSERT_EQ(order.size(), sides.pages.size());
    for (std::size_t side = 0; side < order.size(); ++side) {
        SCOPED_TRACE(side);
        if (order[side] == 0) {
            EXPECT_EQ(0, sides.pages[side].coverage());
            continue;
        }
        EXPECT_EQ(0U, Support::changesBesideText(plain[order[side] - 1], sides.pages[side], true));
        expectWatermarkInPlace(sides.pages[side]);
    }
}

std::string nameOf(const testing::TestParamInfo<std::tuple<Producer, int>> &test)
{
    return std::string(std::get<0>(test.param).name) + std::to_string(std::get<1>(test.param));
}

using testing::Combine;
using testing::Values;
using testing::ValuesIn;

INSTANTIATE_TEST_SUITE_P(Producers, RealDocumentsTest,
                         Combine(ValuesIn(kProducers), Values(1, 7, 200)), nameOf);
INSTANTIATE_TEST_SUITE_P(OtherWays, RealDocumentsTest, Combine(ValuesIn(kOtherWays), Values(1, 7)),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(Producers, RealDocumentsUnfoldedTest,
                         Combine(ValuesIn(kProducers), Values(7)), nameOf);
INSTANTIATE_TEST_SUITE_P(OtherWays, RealDocumentsUnfoldedTest,
                         Combine(ValuesIn(kOtherWays), Values(7)), nameOf);

} // namespace
