#include "EndToEndTest.h"

#include "Waiting.h"

using Support::comesTrue;
using Support::lpOption;
using Support::PJLJob;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

class FaultsTest : public EndToEndTest {
protected:
    static bool temporaryFileBegins(const std::string &prefix)
    {
        for (const std::string &name : scheduler().temporaryFiles())
            if (name.starts_with(prefix))
                return true;
        return false;
    }

    /// Cancels the job; then it has neither processes nor files.
    static void expectNothingLeftAfterCancelling(int job)
    {
        scheduler().run({"cancel", std::to_string(job)});
        EXPECT_EQ("canceled", scheduler().waitForJob(job).state);
        printer().stall(false); // the backend wants to get rid of what it has
        EXPECT_TRUE(comesTrue([] { return scheduler().jobProcesses().empty(); }))
            << scheduler().log(job);
        EXPECT_THAT(strayFiles(), IsEmpty());
    }

    static int submit(const std::string &queue, const std::string &name,
                      const std::vector<std::string> &arguments = {})
    {
        std::vector<std::string> call = {"-d", queue};
        call.insert(call.end(), arguments.begin(), arguments.end());
        call.push_back(document(name));
        return scheduler().submit(call);
    }
};

TEST_F(FaultsTest, JobCancelledWhileThePrinterReadsLeavesNoFileAndNoProcess)
{
    printer().stall(true);
    // Straight to our filter: a chain that makes PDF on the way leaves nothing of the length.
    const int job =
        submit(kQueue, "long.ps", {"-o", "document-format=application/vnd.cups-postscript"});
    ASSERT_TRUE(comesTrue([&] {
        return scheduler().log(job).find("Connected to printer") != std::string::npos &&
               temporaryFileBegins("jobfilter-");
    })) << scheduler().log(job);
    expectNothingLeftAfterCancelling(job);
}

TEST_F(FaultsTest, JobCancelledWhileTheToolkitRunsLeavesNoFileAndNoProcess)
{
    const int job = submit(kSlowToolkitQueue, "sample.ps", {"-o", "BookletPaperSize=A3"});
    ASSERT_TRUE(comesTrue([&] { return temporaryFileBegins("toolkit-"); })) << scheduler().log(job);
    expectNothingLeftAfterCancelling(job);
}

TEST_F(FaultsTest, TenJobsAtOnceKeepTheirSettingsToThemselves)
{
    std::vector<int> jobs;
    for (int number = 0; number < 10; number++)
        jobs.push_back(submit(
            number % 2 == 0 ? kQueue : kNoToolkitQueue,
            number % 3 == 0 ? "sample.pdf" : "sample.ps",
            {"-t", "job " + std::to_string(number), "-o",
             lpOption("com.kalmira.pde.print-mode-ovm.departmentCode", std::to_string(number))}));
    for (const int job : jobs)
        EXPECT_EQ("completed", scheduler().waitForJob(job).state) << scheduler().log(job);
    const auto received = printer().jobs();
    ASSERT_EQ(10U, received.size());
    for (int number = 0; number < 10; number++) {
        const std::string name = "@PJL JOB NAME = \"job " + std::to_string(number) + "\"";
        const auto job = std::ranges::find_if(
            received, [&](const std::string &bytes) { return bytes.find(name) != bytes.npos; });
        ASSERT_NE(received.end(), job) << name;
        EXPECT_THAT(Support::problemsOfPJLJob(*job), IsEmpty());
        EXPECT_THAT(*job, HasSubstr(dssc("ACCESSCODE=" + std::to_string(number) + "\r\n")));
    }
    EXPECT_THAT(strayFiles(), IsEmpty());
}

// The message stands until the next one comes, that of the backend: only the log keeps it.
TEST_F(FaultsTest, ToolkitFailureShowsUpAsThePrintersMessageAndTheJobIsPrinted)
{
    const int job = submit(kBrokenToolkitQueue, "sample.ps", {"-o", "BookletPaperSize=A3"});
    EXPECT_EQ("completed", scheduler().waitForJob(job).state);
    // The first error of a job is the printer's message. Where no system bus runs, cups-filters 2
    // complains of that before we have anything to say.
    if (scheduler().log(job).find("Failed to connect to system bus") == std::string::npos) {
        EXPECT_THAT(scheduler().log(job),
                    HasSubstr("Set job-printer-state-message to \"Unable to apply booklet mode\""));
    }
    EXPECT_THAT(scheduler().log(job), HasSubstr("Unable to apply booklet mode: out of ideas"));
    ASSERT_EQ(1U, printer().jobs().size());
    EXPECT_THAT(Support::problemsOfPJLJob(printer().jobs()[0]), IsEmpty());
}

// The scheduler breaks a line that is too long for it and obeys what the rest begins with.
TEST_F(FaultsTest, LongErrorTextOfTheToolkitCannotSpeakToTheScheduler)
{
    const std::string font(1000, 'f');
    const std::string beginning =
        "DEBUG: Unable to apply watermark: out of ideas for " + font + " ";
    const std::string text = std::string(2047 - beginning.size(), 't') + "ERROR: smuggled";
    const int job = submit(kBrokenToolkitQueue, "sample.ps",
                           {"-o", "com.kalmira.pde.watermark.font=" + font, "-o",
                            "com.kalmira.pde.watermark.text='" + text + "'"});
    EXPECT_EQ("completed", scheduler().waitForJob(job).state);
    EXPECT_THAT(scheduler().log(job), HasSubstr("out of ideas for fff"));
    EXPECT_THAT(scheduler().log(job), Not(HasSubstr("] smuggled"))); // a line of its own
}

TEST_F(FaultsTest, QueueWithoutTheToolkitPrintsAndSaysWhatIsMissing)
{
    const int job = submit(kNoToolkitQueue, "sample.ps", {"-o", "BookletPaperSize=A3"});
    EXPECT_EQ("completed", scheduler().waitForJob(job).state);
    ASSERT_EQ(1U, printer().jobs().size());
    EXPECT_THAT(Support::problemsOfPJLJob(printer().jobs()[0]), IsEmpty());
    EXPECT_THAT(scheduler().log(job),
                HasSubstr("A required component could not be found, some print settings may not be "
                          "applied"));
}

TEST_F(FaultsTest, NoCopiesAtAllIsWhatThePrinterIsTold)
{
    EXPECT_THAT(headerLines(print(kQueue, document("sample.ps"), {"com.kalmira.copies=0"})),
                Contains("@PJL SET COPIES = 0"));
}

TEST_F(FaultsTest, JobOfNothingButJobControlHasNoPage)
{
    const Support::TemporaryFolder folder;
    const std::string path =
        folder.write("empty.ps", "\033%-12345X@PJL JOB\r\n"
                                 "@PJL ENTER LANGUAGE=POSTSCRIPT\r\n\033%-12345X");
    const int job = scheduler().submit({"-d", kQueue, path});
    scheduler().waitForJob(job);
    if (wasPDFOnTheWay(job))
        GTEST_SKIP() << "this chain ends a job without pages before it comes to ours";
    EXPECT_THAT(copiesOfEachSide(finishedJob(job).body), IsEmpty());
}

TEST_F(FaultsTest, JobsOwnHeaderIsReplacedByOurs)
{
    const Support::TemporaryFolder folder;
    const std::string sample = Support::readFile(document("sample.ps"));
    for (const std::string header :
         {"\033%-12345X@PJL JOB\r\n@PJL SET COPIES=99\r\n@PJL ENTER LANGUAGE=POSTSCRIPT\r\n",
          "\033%-12345X@PJL JOB\r\n@PJL SET COPIES=99\r\n", "\033%-12345X"}) {
        const PJLJob job = print(kQueue, folder.write("own.ps", header + sample + "\033%-12345X"));
        EXPECT_THAT(job.header, Not(HasSubstr("COPIES=99")));
        EXPECT_EQ(kPages, copiesOfEachSide(job.body).size());
    }
}

// libcups writes no header then; the pages and the end of the job still come.
TEST_F(FaultsTest, QueueWhosePPDEntersNoLanguagePrintsWithoutHeader)
{
    const int job = submit(kHeadlessQueue, "sample.ps");
    EXPECT_EQ("completed", scheduler().waitForJob(job).state);
    ASSERT_EQ(1U, printer().jobs().size());
    const std::string bytes = printer().jobs()[0];
    EXPECT_THAT(bytes, testing::StartsWith("%!PS-Adobe-3.0\n"));
    EXPECT_EQ(bytes.find("\033%-12345X"), bytes.rfind("\033%-12345X"));
    EXPECT_THAT(bytes, testing::EndsWith("@PJL EOJ\n"));
}

TEST_F(FaultsTest, BodyThatEndsInsideAMarkerIsPrinted)
{
    const Support::TemporaryFolder folder;
    const std::string sample = Support::readFile(document("sample.ps"));
    EXPECT_EQ(
        kPages,
        copiesOfEachSide(print(kQueue, folder.write("cut.ps", sample + "\033%-123")).body).size());
}

TEST_F(FaultsTest, MarkerInTheMiddleOfBinaryDataDoublesNoHeader)
{
    const Support::TemporaryFolder folder;
    std::string sample = Support::readFile(document("sample.ps"));
    sample.insert(sample.find("%%Trailer"), "\001\377\033%-12345X@PJL INFO STATUS\r\n\377\001\n");
    const int job = scheduler().submit({"-d", kQueue, folder.write("marked.ps", sample)});
    scheduler().waitForJob(job);
    if (wasPDFOnTheWay(job))
        GTEST_SKIP() << "this chain reads the document, and what was put in is no PostScript";
    finishedJob(job);
}

TEST_F(FaultsTest, LongTitlesInAnyScriptKeepTheHeaderWhole)
{
    std::string title;
    for (int letter = 0; letter < 120; letter++)
        title += "Ä";
    const int job = submit(kQueue, "sample.ps", {"-t", title});
    EXPECT_EQ("completed", scheduler().waitForJob(job).state);
    ASSERT_EQ(1U, printer().jobs().size());
    EXPECT_THAT(Support::problemsOfPJLJob(printer().jobs()[0]), IsEmpty());
}

} // namespace
