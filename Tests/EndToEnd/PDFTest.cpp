#include "EndToEndTest.h"
#include "PageFinder.h"

#include "Watermarks.h"

#include <qpdf/QPDF.hh>

using Support::PJLJob;
using testing::Contains;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// Our own toolkit on the queue of a printer that takes PDF.
class PDFTest : public EndToEndTest {
protected:
    static PJLJob printWith(const std::vector<std::string> &options,
                            const std::string &path = document("sample.pdf"))
    {
        const PJLJob job = print(kPDFQueue, path, options);
        EXPECT_THAT(job.body, StartsWith("%PDF-"));
        EXPECT_THAT(headerLines(job), Contains("@PJL ENTER LANGUAGE = PDF"));
        return job;
    }

    static std::vector<Support::RenderedPage> pagesOf(const PJLJob &job)
    {
        return Support::renderText(job.body, {.resolution = 36}).pages;
    }

    /// What the catalogue asks for.
    static std::string duplexOf(const std::string &document)
    {
        QPDF pdf;
        pdf.processMemoryFile("document", document.data(), document.size());
        return pdf.getRoot().getKey("/ViewerPreferences").getKey("/Duplex").getName();
    }

    static std::string keptDocument(const std::string &name)
    {
        return std::string(KL_DOCUMENTS) + "/" + name;
    }
};

TEST_F(PDFTest, TheDocumentStandsBetweenHeaderAndEndAndNothingElse)
{
    const PJLJob job = printWith({"copies=2"});
    EXPECT_THAT(headerLines(job), Contains("@PJL SET COPIES = 2"));
    const auto pages = pagesOf(job);
    // The chain of cups-filters 2 sets each page anew: the same marks, but not to the pixel.
    const std::string log = scheduler().log(scheduler().latestJob(kPDFQueue));
    if (log.find("cfFilterPDFToPDF") == std::string::npos) {
        EXPECT_EQ(Support::renderFile(document("sample.pdf"), {.resolution = 36}).pages, pages);
    }
    EXPECT_EQ(kPages, pages.size());
    EXPECT_THAT(job.body, testing::EndsWith("%%EOF\n"));
}

TEST_F(PDFTest, WatermarkIsOnEveryPageAndChangesNothingElse)
{
    const auto plain = pagesOf(printWith({}));
    const auto marked = pagesOf(printWith(redWatermark()));
    ASSERT_EQ(kPages, marked.size());
    for (std::size_t page = 0; page < kPages; ++page) {
        ASSERT_TRUE(marked[page].boxOf(Support::kRed)) << page;
        EXPECT_EQ(marked[0].boxOf(Support::kRed)->left, marked[page].boxOf(Support::kRed)->left);
        EXPECT_EQ(0U, Support::changesBesideText(plain[page], marked[page], true));
    }
}

TEST_F(PDFTest, BookletUnderAWatermarkReadsInOrder)
{
    for (const char *name :
         {"office-1.pdf", "office-7.pdf", "chromium-7.pdf", "tex-7.pdf", "tex-200.pdf"}) {
        SCOPED_TRACE(name);
        auto options = redWatermark();
        options.push_back("BookletPaperSize=A3");
        const std::string path = keptDocument(name);
        const PJLJob job = printWith(options, path);
        EXPECT_THAT(headerLines(job), Contains(dssc("DUPLEX=SHORTEDGE")));
        EXPECT_EQ("/DuplexFlipShortEdge", duplexOf(job.body));

        const PageFinder &finder = PageFinder::of(path);
        const auto sides = renderedFromAfar(job.body).pages;
        ASSERT_EQ((finder.pages() + 3) / 4 * 2, sides.size());
        for (std::size_t at = 0; at < sides.size(); ++at)
            finder.expectSideOfBooklet(at, BookletSide(sides[at], BookletSide::Landscape));
    }
}

// PDF cannot choose trays: the rest of what was asked for is there all the same.
TEST_F(PDFTest, CoversAreRefusedAndTheOthersPrinted)
{
    auto options = redWatermark();
    options.insert(options.end(), {"UseFrontCover=True", "FrontCoverPrintStyle=NoPrint",
                                   "FrontCoverSource=Tray3"});
    const auto pages = pagesOf(printWith(options));
    ASSERT_EQ(kPages, pages.size());
    for (const auto &page : pages)
        EXPECT_TRUE(page.boxOf(Support::kRed));
    EXPECT_THAT(scheduler().log(), HasSubstr("Unable to apply cover pages: Cover pages need a "
                                             "PostScript document: PDF cannot choose trays."));
}

TEST_F(PDFTest, CoversThatWillDoWithTheJobsPaperArePagesOfIt)
{
    const std::vector<std::string> options = {
        "CoverPagesInPDF=True",       "UseFrontCover=True",    "FrontCoverPrintStyle=Print1",
        "FrontCoverSource=Tray3",     "Duplex=DuplexNoTumble", "UseBackCover=True",
        "BackCoverPrintStyle=NoPrint"};
    const auto pages = pagesOf(printWith(options));
    const auto plain = pagesOf(printWith({}));
    ASSERT_EQ(5U, kPages);
    // Page 1 and its blank back, pages 2 to 5, the blank cover.
    ASSERT_EQ(7U, pages.size());
    EXPECT_EQ(plain[0], pages[0]);
    EXPECT_EQ(0, pages[1].coverage());
    for (std::size_t page = 1; page < 5; ++page)
        EXPECT_EQ(plain[page], pages[page + 1]);
    EXPECT_EQ(0, pages[6].coverage());
    EXPECT_THAT(scheduler().log(),
                HasSubstr("The covers are printed on the paper of the job: a PDF "
                          "cannot choose trays"));
}

} // namespace
