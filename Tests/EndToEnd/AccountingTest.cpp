#include "EndToEndTest.h"

#include <stdexcept>
#include <tuple>

using testing::Combine;
using testing::ElementsAre;
using testing::Values;

namespace {

/// What the scheduler makes of the pages that are counted for it.
class AccountingTest : public EndToEndTest {
protected:
    /// Prints with lp(1) and waits until the job is over, which must be completed.
    /// @return its number
    static int printedJob(const std::vector<std::string> &arguments)
    {
        const int job = scheduler().submit(arguments);
        EXPECT_EQ("completed", scheduler().waitForJob(job).state) << scheduler().log(job);
        return job;
    }

    static int impressions(int job)
    {
        return scheduler().jobNumber(job, "job-impressions-completed");
    }

    static int sheets(int job) { return scheduler().jobNumber(job, "job-media-sheets-completed"); }

    /// A queue of a test's own, with the sample PPD or another, that asks the printer nothing.
    static void addQueue(const std::string &name, const std::vector<std::string> &options,
                         const std::string &ppd = Support::readFile(KL_SAMPLE_PPD))
    {
        const Support::TemporaryFolder folder;
        scheduler().addQueue(name, folder.write("ppd", ppd + "*cupsSNMPSupplies: False\n"),
                             printer().deviceURI(), options);
    }

    /// A queue whose jobs are refused once so many pages have been printed on it.
    static void addLimitedQueue(const std::string &name, int pages)
    {
        addQueue(name,
                 {"-o", "job-quota-period=3600", "-o", "job-page-limit=" + std::to_string(pages)});
    }

    static void expectRefusal(const std::vector<std::string> &arguments)
    {
        EXPECT_THAT(
            [&] { scheduler().submit(arguments); },
            testing::ThrowsMessage<std::runtime_error>(testing::HasSubstr("Quota limit reached")));
    }
};

/// Queue, document and its pages, copies.
using Wish = std::tuple<const char *, std::pair<const char *, int>, int>;

class AccountingOfDocumentsTest : public AccountingTest,
                                  public testing::WithParamInterface<Wish> {};

TEST_P(AccountingOfDocumentsTest, EveryPageCountsOnceForEachCopy)
{
    const auto &[queue, document, copies] = GetParam();
    const auto &[name, pages] = document;
    const int job =
        printedJob({"-d", queue, "-n", std::to_string(copies), EndToEndTest::document(name)});
    EXPECT_EQ(pages * copies, impressions(job));
    EXPECT_THAT(scheduler().pageLog(job), ElementsAre("total " + std::to_string(pages * copies)));
}

INSTANTIATE_TEST_SUITE_P(PostScript, AccountingOfDocumentsTest,
                         Combine(Values("office"),
                                 Values(std::pair("sample.ps", 5), std::pair("sample.pdf", 5),
                                        std::pair("sample.png", 1), std::pair("sample.txt", 5)),
                                 Values(1, 3)));
INSTANTIATE_TEST_SUITE_P(PDF, AccountingOfDocumentsTest,
                         Combine(Values("pdf"),
                                 Values(std::pair("sample.ps", 5), std::pair("sample.png", 1)),
                                 Values(1, 3)));

TEST_F(AccountingTest, UncollatedCopiesCountLikeCollatedOnes)
{
    EXPECT_EQ(15, impressions(printedJob(
                      {"-d", kQueue, "-n", "3", "-o", "Collate=False", document("sample.ps")})));
}

TEST_F(AccountingTest, CopiesThatTheHeaderHasFromAnOptionCount)
{
    EXPECT_EQ(20, impressions(printedJob(
                      {"-d", kQueue, "-o", "com.kalmira.copies=4", document("sample.ps")})));
}

TEST_F(AccountingTest, SeveralPagesOnASideAreOnePage)
{
    EXPECT_EQ(3,
              impressions(printedJob({"-d", kQueue, "-o", "number-up=2", document("sample.pdf")})));
}

TEST_F(AccountingTest, PagesThatAreLeftOutDoNotCount)
{
    EXPECT_EQ(
        2, impressions(printedJob({"-d", kQueue, "-o", "page-ranges=2-3", document("sample.ps")})));
}

// The toolkit puts them two on a side only after they have been counted.
TEST_F(AccountingTest, PagesOfABookletCountAsThoseOfTheDocument)
{
    EXPECT_EQ(5, impressions(printedJob(
                     {"-d", kQueue, "-o", "BookletPaperSize=A3", document("sample.ps")})));
}

TEST_F(AccountingTest, FilesOfAJobAddUp)
{
    EXPECT_EQ(
        6, impressions(printedJob({"-d", kQueue, document("sample.ps"), document("sample.png")})));
}

TEST_F(AccountingTest, BannersCountOnceForAllCopies)
{
    EXPECT_EQ(17, impressions(printedJob({"-d", kQueue, "-n", "3", "-o",
                                          "job-sheets=standard,standard", document("sample.ps")})));
}

TEST_F(AccountingTest, JobBehindAReachedQuotaIsRefused)
{
    addLimitedQueue("limited", 8);
    const std::vector<std::string> job = {"-d", "limited", document("sample.ps")};
    printedJob(job); // 5 of 8
    printedJob(job); // 10 of 8
    expectRefusal(job);
}

TEST_F(AccountingTest, QuotaCountsSidesAndNotSheets)
{
    addLimitedQueue("sides", 5);
    const std::vector<std::string> job = {"-d", "sides", "-o", "sides=two-sided-long-edge",
                                          document("sample.ps")};
    EXPECT_EQ(2, sheets(printedJob(job)));
    expectRefusal(job);
}

// What the guide says of the scheduler's own counting of sheets.
TEST_F(AccountingTest, SheetsAreHalfTheSidesRoundedDownWhereTheJobSaysSidesAlone)
{
    const int asSides = printedJob(
        {"-d", kQueue, "-n", "3", "-o", "sides=two-sided-long-edge", document("sample.ps")});
    EXPECT_EQ(15, impressions(asSides));
    EXPECT_EQ(7, sheets(asSides));
    const int asDuplex =
        printedJob({"-d", kQueue, "-n", "3", "-o", "Duplex=DuplexNoTumble", document("sample.ps")});
    EXPECT_EQ(15, impressions(asDuplex));
    EXPECT_EQ(15, sheets(asDuplex));
}

TEST_F(AccountingTest, RawJobCountsAsOnePage)
{
    EXPECT_EQ(1, impressions(printedJob({"-d", kQueue, "-o", "raw", document("sample.ps")})));
}

TEST_F(AccountingTest, DocumentWithoutStructureCountsNothing)
{
    const Support::TemporaryFolder folder;
    const std::string path = folder.write("plain.ps", "%!\nshowpage showpage\n");
    const int job = printedJob({"-d", kQueue, path});
    const int pages = wasPDFOnTheWay(job) ? 2 : 0; // what PDF is made of has a structure again
    EXPECT_EQ(pages, impressions(job));
    EXPECT_THAT(scheduler().pageLog(job), ElementsAre("total " + std::to_string(pages)));
}

TEST_F(AccountingTest, QueueThatDoesNotAskCountsNothing)
{
    std::string ppd = Support::readFile(KL_SAMPLE_PPD);
    const std::string line = "*KLPageAccounting: True\n";
    ASSERT_NE(std::string::npos, ppd.find(line));
    ppd.erase(ppd.find(line), line.size());
    addQueue("silent", {}, ppd);
    EXPECT_EQ(0, impressions(printedJob({"-d", "silent", document("sample.ps")})));
}

} // namespace
