#include "EndToEndTest.h"

#include "Rendering.h"

using Support::lpOption;
using Support::PJLJob;
using testing::Contains;
using testing::HasSubstr;

namespace {

/// Our own toolkit on a real queue, with page data as the scheduler's filters make them.
class ToolkitTest : public EndToEndTest, public testing::WithParamInterface<const char *> {
protected:
    static PJLJob printWith(const std::vector<std::string> &options)
    {
        return print(kQueue, document(GetParam()), options);
    }

    static std::vector<Support::RenderedPage> pagesOf(const PJLJob &job)
    {
        return Support::renderText(job.body, {.resolution = 36}).pages;
    }

    inline static const std::string kWatermark =
        lpOption("com.kalmira.pde.watermark.text", "DRAFT");
};

TEST_P(ToolkitTest, WatermarkIsOnEveryPageInItsColour)
{
    const auto plain = pagesOf(printWith({}));
    const auto marked =
        pagesOf(printWith({kWatermark, lpOption("com.kalmira.pde.watermark.color", "1,0,0")}));
    ASSERT_EQ(kPages, plain.size());
    ASSERT_EQ(kPages, marked.size());
    for (std::size_t page = 0; page < kPages; page++) {
        EXPECT_EQ(0, plain[page].shareOf(Support::kRed)) << page;
        EXPECT_GT(marked[page].shareOf(Support::kRed), 0) << page;
    }
}

// Two sheets: 8 | 1, 2 | 7, 6 | 3, 4 | 5, of which 6 to 8 are blank.
TEST_P(ToolkitTest, BookletOfFivePagesHasFourSidesAndIsBoundAtTheShortEdge)
{
    const PJLJob job = printWith({"BookletPaperSize=A3"});
    EXPECT_EQ(4U, copiesOfEachSide(job.body).size());
    EXPECT_THAT(headerLines(job), Contains(dssc("DUPLEX=SHORTEDGE")));
}

TEST_P(ToolkitTest, FrontCoverComesFromItsOwnTray)
{
    const PJLJob job =
        printWith({"InputSlot=Tray2", "UseFrontCover=True", "FrontCoverPrintStyle=NoPrint",
                   "FrontCoverSource=SheetFeedBypass"});
    EXPECT_EQ(kPages + 1, copiesOfEachSide(job.body).size());
    EXPECT_THAT(job.body, HasSubstr("/MediaPosition 0>>"));
}

TEST_P(ToolkitTest, WatermarkBookletAndCoverGoTogether)
{
    const PJLJob job =
        printWith({kWatermark, "BookletPaperSize=A3", "UseBackCover=True",
                   "BackCoverPrintStyle=NoPrint", "BackCoverSource=SheetFeedBypass"});
    EXPECT_EQ(5U, copiesOfEachSide(job.body).size());
    EXPECT_THAT(headerLines(job), Contains(dssc("DUPLEX=SHORTEDGE")));
}

INSTANTIATE_TEST_SUITE_P(Documents, ToolkitTest, testing::Values("sample.ps", "sample.pdf"),
                         [](const auto &test) { return std::string(test.param).substr(7); });

} // namespace
