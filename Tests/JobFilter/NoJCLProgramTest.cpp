#include "PDFBuilder.h"
#include "Program.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <vector>

using Support::ProgramCall;
using Support::runProgram;
using Support::TemporaryFolder;

namespace {

const std::string kMarker = "\033%-12345X";
const std::string kPages = "%!PS-Adobe-3.0\nshowpage\n%%EOF\n";
const std::string kJob = kMarker + "@PJL ENTER LANGUAGE=POSTSCRIPT\n" + kPages + kMarker;
constexpr char kUnableToRead[] = "CRIT: Unable to read from input\n";
constexpr char kUnableToWrite[] = "CRIT: Unable to write print data\n";

ProgramCall call(const std::string &input)
{
    return {.arguments = {KL_NOJCL, "1", "anna", "title", "1", ""}, .input = input};
}

ProgramCall callWithFile(const std::string &path)
{
    return {.arguments = {KL_NOJCL, "1", "anna", "title", "1", "", path}};
}

TEST(NoJCLProgramTest, JobOnStandardInput)
{
    const auto result = runProgram(call(kJob));
    EXPECT_EQ(kPages, result.output);
    EXPECT_EQ("", result.errors);
    EXPECT_EQ(0, result.exitStatus);
}

TEST(NoJCLProgramTest, JobInAFileThatStaysAsItIs)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("job", kJob);
    const auto result = runProgram(callWithFile(path));
    EXPECT_EQ(kPages, result.output);
    EXPECT_EQ("", result.errors);
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_EQ(kJob, Support::readFile(path));
}

TEST(NoJCLProgramTest, OtherArgumentCountsGetTheUsageText)
{
    for (const std::vector<std::string> &arguments :
         {std::vector<std::string>{KL_NOJCL, "1", "anna", "title", "1"},
          std::vector<std::string>{KL_NOJCL, "1", "anna", "title", "1", "", "job", "more"}}) {
        const auto result = runProgram({.arguments = arguments});
        EXPECT_EQ("Unexpected number of arguments. Usage:\n\n" + arguments[0] +
                      " job-id username job-title num-copies options [ file ]\n",
                  result.errors);
        EXPECT_EQ("", result.output);
        EXPECT_EQ(1, result.exitStatus);
    }
}

TEST(NoJCLProgramTest, EmptyJobStaysEmpty)
{
    const auto result = runProgram(call(""));
    EXPECT_EQ("", result.output);
    EXPECT_EQ("", result.errors);
    EXPECT_EQ(0, result.exitStatus);
}

TEST(NoJCLProgramTest, JobOfNothingButJobControlSaysSo)
{
    const auto result = runProgram(call(kMarker + "@PJL EOJ\n" + kMarker));
    EXPECT_EQ("", result.output);
    EXPECT_EQ("ERROR: The job holds job control only, there is nothing to print\n", result.errors);
    EXPECT_EQ(0, result.exitStatus);
}

TEST(NoJCLProgramTest, MarkerThatLeavingOutAnotherWouldJoinGoesWithItsJobControl)
{
    const auto result = runProgram(call("%!PS\n\033%-123" + kMarker +
                                        "@PJL ENTER LANGUAGE=POSTSCRIPT\n"
                                        "45X@PJL SET INJ=1\r\n"));
    EXPECT_EQ("%!PS\n\033%-123", result.output);
    EXPECT_EQ("", result.errors);
    EXPECT_EQ(0, result.exitStatus);
}

TEST(NoJCLProgramTest, UnreadableJobs)
{
    const TemporaryFolder folder;
    for (const std::string &path : {folder.file("missing"), folder.path()}) {
        const auto result = runProgram(callWithFile(path));
        EXPECT_EQ(kUnableToRead, result.errors);
        EXPECT_EQ(1, result.exitStatus);
    }
}

TEST(NoJCLProgramTest, ReadErrorInTheMiddleIsReported)
{
    ProgramCall onDirectory = call("");
    onDirectory.inChild = [] {
        close(0);
        open("/", O_RDONLY);
    };
    const auto result = runProgram(onDirectory);
    EXPECT_EQ(kUnableToRead, result.errors);
    EXPECT_EQ(1, result.exitStatus);
}

TEST(NoJCLProgramTest, FullDiskIsReportedForLongAndForShortJobs)
{
    for (const std::size_t pages : {1U, 10000U}) {
        std::string job;
        for (std::size_t page = 0; page < pages; page++)
            job += kPages;
        ProgramCall toFullDisk = call(job);
        toFullDisk.inChild = [] {
            close(1);
            open("/dev/full", O_WRONLY);
        };
        const auto result = runProgram(toFullDisk);
        EXPECT_EQ(kUnableToWrite, result.errors) << pages;
        EXPECT_EQ(1, result.exitStatus);
    }
}

TEST(NoJCLProgramTest, ReaderThatHasGoneIsAFailedWrite)
{
    ProgramCall toClosedPipe = call(kPages);
    toClosedPipe.inChild = [] {
        int ends[2];
        if (pipe(ends) == 0) {
            dup2(ends[1], 1);
            close(ends[0]);
            close(ends[1]);
        }
    };
    const auto result = runProgram(toClosedPipe);
    EXPECT_EQ(kUnableToWrite, result.errors);
    EXPECT_EQ(1, result.exitStatus);
}

TEST(NoJCLProgramTest, ClosedStandardStreamsAreFailures)
{
    ProgramCall withoutOutput = call(kPages);
    withoutOutput.inChild = [] { close(1); };
    EXPECT_EQ(1, runProgram(withoutOutput).exitStatus);
    ProgramCall withoutInput = call("");
    withoutInput.inChild = [] { close(0); };
    EXPECT_EQ(1, runProgram(withoutInput).exitStatus);
}

// The worst there is: bytes that may all belong to the end of the page data, and a line without
// end.
TEST(NoJCLProgramTest, MemoryDoesNotGrowWithTheJob)
{
    const TemporaryFolder folder;
    constexpr std::size_t kLong = std::size_t(1) << 26;
    constexpr long kMuch = 8 * 1024; // KiB
    // All are in their files before a program starts: it begins as big as this one is.
    const std::string little = folder.write("little", "a");
    const std::string ends = folder.write("ends", std::string(kLong, '\x04') + "a");
    const std::string line = folder.write("line", kMarker + std::string(kLong, 'x'));
    const auto memoryFor = [&](const std::string &path) {
        ProgramCall toNowhere = callWithFile(path);
        toNowhere.inChild = [] {
            close(1);
            open("/dev/null", O_WRONLY);
        };
        const auto result = runProgram(toNowhere);
        EXPECT_EQ(0, result.exitStatus);
        return result.peakMemory;
    };
    const long memoryForLittle = memoryFor(little);
    EXPECT_LT(memoryFor(ends), memoryForLittle + kMuch);
    EXPECT_LT(memoryFor(line), memoryForLittle + kMuch);
}

class NoJCLAccountingTest : public testing::Test {
protected:
    /// Runs the filter on a queue that asks for accounting.
    Support::ProgramResult run(const std::string &input, const std::string &copies = "1",
                               const std::string &options = "") const
    {
        return runProgram({.arguments = {KL_NOJCL, "1", "anna", "title", copies, options},
                           .environment = {{"PPD", KL_SAMPLE_PPD}, {"TMPDIR", _folder.path()}},
                           .input = input});
    }

    /// The names of files that were left behind.
    std::vector<std::string> files() const { return _folder.names(); }

    static inline const std::string kTwoPages =
        "%!PS-Adobe-3.0\n%%Page: 1 1\nshowpage\n%%Page: 2 2\nshowpage\n%%EOF\n";

private:
    TemporaryFolder _folder;
};

std::string twoPagesOfPDF()
{
    Support::PDFBuilder builder;
    builder.addPage("/MediaBox [0 0 9 9]");
    builder.addPage("/MediaBox [0 0 9 9]");
    return builder.document();
}

TEST_F(NoJCLAccountingTest, EachPageIsALineWithTheCopies)
{
    const auto result = run(kTwoPages, "3");
    EXPECT_EQ("PAGE: 1 3\nPAGE: 2 3\n", result.errors);
    EXPECT_EQ(kTwoPages, result.output);
    EXPECT_EQ(0, result.exitStatus);
}

TEST_F(NoJCLAccountingTest, PagesOfPDFToo)
{
    const auto result = run(twoPagesOfPDF(), "3");
    EXPECT_EQ("PAGE: 1 3\nPAGE: 2 3\n", result.errors);
    EXPECT_EQ(twoPagesOfPDF(), result.output);
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_THAT(files(), testing::IsEmpty());
}

TEST_F(NoJCLAccountingTest, JobControlAroundThePagesIsNoneOfThem)
{
    const auto result =
        run(kMarker + "@PJL COMMENT\n%%Page: 7 7\n@PJL ENTER LANGUAGE=POSTSCRIPT\n" + kTwoPages +
            kMarker + "@PJL EOJ\n");
    EXPECT_EQ("PAGE: 1 1\nPAGE: 2 1\n", result.errors);
    EXPECT_EQ(kTwoPages, result.output);
}

TEST_F(NoJCLAccountingTest, CopiesAreThoseOfTheHeader)
{
    EXPECT_EQ("PAGE: 1 4\nPAGE: 2 4\n", run(kTwoPages, "3", "com.kalmira.copies=4").errors);
}

TEST_F(NoJCLAccountingTest, DataWithoutStructureSayNothing)
{
    const std::string plain = "%!\nshowpage\nshowpage\n";
    const std::string damaged = twoPagesOfPDF().substr(0, 100);
    for (const std::string &data : {std::string(), plain, damaged}) {
        const auto result = run(data);
        EXPECT_EQ("", result.errors);
        EXPECT_EQ(data, result.output);
        EXPECT_EQ(0, result.exitStatus);
    }
}

TEST_F(NoJCLAccountingTest, PDFThatCannotBeKeptIsPrintedUncounted)
{
    const auto result = runProgram({.arguments = {KL_NOJCL, "1", "anna", "title", "1", ""},
                                    .environment = {{"PPD", KL_SAMPLE_PPD}, {"TMPDIR", "/nowhere"}},
                                    .input = twoPagesOfPDF()});
    EXPECT_EQ("", result.errors);
    EXPECT_EQ(twoPagesOfPDF(), result.output);
    EXPECT_EQ(0, result.exitStatus);
}

TEST_F(NoJCLAccountingTest, JobThatCouldNotBeWrittenIsNotCounted)
{
    const auto result = runProgram({.arguments = {KL_NOJCL, "1", "anna", "title", "1", ""},
                                    .environment = {{"PPD", KL_SAMPLE_PPD}},
                                    .input = kTwoPages,
                                    .inChild = [] {
                                        close(1);
                                        open("/dev/full", O_WRONLY);
                                    }});
    EXPECT_EQ(kUnableToWrite, result.errors);
    EXPECT_EQ(1, result.exitStatus);
}

TEST_F(NoJCLAccountingTest, QueueThatDoesNotAskGetsNoLines)
{
    const auto result = runProgram({.arguments = {KL_NOJCL, "1", "anna", "title", "1", ""},
                                    .environment = {{"PPD", "/nowhere"}},
                                    .input = kTwoPages});
    EXPECT_EQ("", result.errors);
    EXPECT_EQ(kTwoPages, result.output);
}

// Whatever is not asked for is not loaded: no libcups, no libqpdf.
TEST_F(NoJCLAccountingTest, LoadsNothingForPostScript)
{
    const auto result = runProgram({.arguments = {KL_NOJCL, "1", "anna", "title", "1", ""},
                                    .environment = {{"PPD", KL_SAMPLE_PPD}, {"LD_DEBUG", "files"}},
                                    .input = kTwoPages});
    EXPECT_THAT(result.errors, testing::HasSubstr("PAGE: 2 1\n"));
    EXPECT_THAT(result.errors, testing::HasSubstr("libc.so"));
    EXPECT_THAT(result.errors, testing::Not(testing::ContainsRegex("Module|libcups|libqpdf")));
}

} // namespace
