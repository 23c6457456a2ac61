#include "PDFBuilder.h"
#include "Program.h"
#include "TemporaryFolder.h"
#include "Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <vector>

using Support::ProgramCall;
using Support::ProgramResult;
using Support::runProgram;
using Support::TemporaryFolder;
using testing::IsEmpty;

namespace {

const std::string kMarker = "\033%-12345X";
const std::string kPages = "%!PS-Adobe-3.0\n%%Page: 1 1\nshowpage\n%%Page: 2 2\nshowpage\n%%EOF\n";

/// As the scheduler's own filters make it: a header and an end around the pages.
std::string inOthersJobControl(const std::string &pages)
{
    return kMarker + "@PJL JOB\n@PJL COMMENT DSSC PRINT ACCESSCODE=\r\n" +
           "@PJL ENTER LANGUAGE = POSTSCRIPT\r\n" + pages + "\004" + kMarker + "@PJL EOJ\n" +
           kMarker;
}

/// A pipe that the program reads as its standard input, without a byte in it.
class WaitingInput {
public:
    WaitingInput()
    {
        if (pipe2(_ends, O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
    }
    ~WaitingInput()
    {
        close(_ends[0]);
        close(_ends[1]);
    }
    WaitingInput(const WaitingInput &) = delete;
    WaitingInput &operator=(const WaitingInput &) = delete;

    void connect() const { dup2(_ends[0], STDIN_FILENO); }

    /// Whether the program, and whatever it has started, has let go of the pipe. The test itself
    /// reads no more from then on.
    bool isLetGo()
    {
        close(_ends[0]);
        _ends[0] = -1;
        return Support::comesTrue([this] { return write(_ends[1], "x", 1) < 0 && errno == EPIPE; });
    }

private:
    int _ends[2] = {};
};

class ChainProgramTest : public testing::Test {
protected:
    ChainProgramTest() { std::signal(SIGPIPE, SIG_IGN); }

    ProgramCall call(const std::string &program, const std::string &input,
                     const std::string &options = "") const
    {
        return {.arguments = {program, "7", "anna", "Report", "2", options},
                .environment = {{"PPD", KL_SAMPLE_PPD}, {"TMPDIR", temporaries.path()}},
                .input = input};
    }
    ProgramCall chain(const std::string &input) const { return call(KL_CHAIN, input); }
    ProgramCall chainOfFile(const std::string &path) const
    {
        ProgramCall result = chain("not this");
        result.arguments.push_back(path);
        return result;
    }

    /// What the two filters make of it one behind the other.
    ProgramResult asTwoFilters(const std::string &input, const std::string &options = "") const
    {
        const auto stripped = runProgram(call(KL_NOJCL, input, options));
        auto printed = runProgram(call(JOBFILTER_PROGRAM, stripped.output, options));
        printed.errors.insert(0, stripped.errors);
        return printed;
    }

    /// Nothing is printed of a job of which the companion has not got hold.
    void expectUnreadable(const ProgramCall &unreadable) const
    {
        const auto result = runProgram(unreadable);
        EXPECT_EQ("CRIT: Unable to read from input\nCRIT: Unable to spool print job\n",
                  result.errors);
        EXPECT_EQ("", result.output);
        EXPECT_EQ(1, result.exitStatus);
        EXPECT_THAT(temporaries.names(), IsEmpty());
    }

    bool isSpooling() const
    {
        return Support::comesTrue([this] { return !temporaries.names().empty(); });
    }

    TemporaryFolder folder;
    TemporaryFolder temporaries;
};

TEST_F(ChainProgramTest, PrintsWhatTheTwoFiltersPrintInARow)
{
    Support::PDFBuilder pdf;
    pdf.addPage("/MediaBox [0 0 9 9]");
    const std::string jobs[] = {
        kPages,         inOthersJobControl(kPages),       "", "\0\377binary\n\r\n",
        pdf.document(), kPages + std::string(300000, '%')};
    for (const std::string &job : jobs) {
        for (const std::string options : {"", "PrintMode=Private KLPrivatePIN=Custom.4711"}) {
            const auto expected = asTwoFilters(job, options);
            const auto result = runProgram(call(KL_CHAIN, job, options));
            EXPECT_EQ(expected.output, result.output);
            EXPECT_EQ(expected.errors, result.errors);
            EXPECT_EQ(0, result.exitStatus);
            EXPECT_THAT(temporaries.names(), IsEmpty());
        }
    }
}

TEST_F(ChainProgramTest, CountsThePagesAndTakesOthersJobControlOut)
{
    const auto result = runProgram(chain(inOthersJobControl(kPages)));
    EXPECT_THAT(result.errors, testing::StartsWith("PAGE: 1 2\nPAGE: 2 2\n"));
    const std::string body = "@PJL ENTER LANGUAGE = POSTSCRIPT\r\n" + kPages + kMarker;
    EXPECT_THAT(result.output, testing::HasSubstr(body));
    EXPECT_THAT(result.output, testing::Not(testing::HasSubstr("ACCESSCODE")));
}

TEST_F(ChainProgramTest, JobInAFileIsPrintedAndStays)
{
    const std::string path = folder.write("job", inOthersJobControl(kPages));
    EXPECT_EQ(runProgram(chain(inOthersJobControl(kPages))).output,
              runProgram(chainOfFile(path)).output);
    EXPECT_EQ(inOthersJobControl(kPages), Support::readFile(path));
}

TEST_F(ChainProgramTest, JobThatCannotBeReadIsNotPrinted)
{
    expectUnreadable(chainOfFile(folder.file("missing")));
    ProgramCall ofFolder = chain("");
    ofFolder.inChild = [] {
        close(STDIN_FILENO);
        open("/", O_RDONLY);
    };
    expectUnreadable(ofFolder);
}

TEST_F(ChainProgramTest, CompanionThatIsKilledPrintsNothing)
{
    WaitingInput input;
    ProgramCall killed = chain("");
    killed.inChild = [&] { input.connect(); };
    killed.afterStart = [this](pid_t program) {
        EXPECT_TRUE(isSpooling());
        const std::string children =
            "/proc/" + std::to_string(program) + "/task/" + std::to_string(program) + "/children";
        kill(std::stoi(Support::readFile(children)), SIGKILL);
    };
    const auto result = runProgram(killed);
    EXPECT_EQ("CRIT: Unable to spool print job\n", result.errors);
    EXPECT_EQ("", result.output);
    EXPECT_EQ(1, result.exitStatus);
    EXPECT_THAT(temporaries.names(), IsEmpty());
}

TEST_F(ChainProgramTest, JobThatCannotBeKeptIsSaidOnce)
{
    ProgramCall nowhere = chain(kPages + std::string(1 << 20, '%'));
    nowhere.environment["TMPDIR"] = "/nowhere";
    const auto result = runProgram(nowhere);
    EXPECT_EQ("CRIT: Unable to spool print job\n", result.errors);
    EXPECT_EQ(1, result.exitStatus);
}

TEST_F(ChainProgramTest, OutputThatCannotBeWrittenFailsTheJob)
{
    ProgramCall toFullDisk = chain("pages");
    toFullDisk.inChild = [] {
        close(STDOUT_FILENO);
        open("/dev/full", O_WRONLY);
    };
    const auto result = runProgram(toFullDisk);
    EXPECT_THAT(result.errors, testing::EndsWith("CRIT: Unable to process input print data\n"));
    EXPECT_EQ(1, result.exitStatus);
}

TEST_F(ChainProgramTest, CancelledJobLeavesNoFileAndNoProcessAndDiesByItsSignal)
{
    for (const int signalNumber : {SIGTERM, SIGINT, SIGHUP}) {
        WaitingInput input;
        ProgramCall cancelled = chain("");
        cancelled.inChild = [&] { input.connect(); };
        cancelled.afterStart = [&](pid_t program) {
            EXPECT_TRUE(isSpooling());
            kill(program, signalNumber);
        };
        const auto result = runProgram(cancelled);
        EXPECT_EQ(signalNumber, result.signal);
        EXPECT_EQ("", result.errors);
        EXPECT_THAT(temporaries.names(), IsEmpty());
        EXPECT_TRUE(input.isLetGo());
    }
}

TEST_F(ChainProgramTest, CompanionDoesNotOutliveTheChain)
{
    WaitingInput input;
    ProgramCall killed = chain("");
    killed.inChild = [&] { input.connect(); };
    killed.afterStart = [this](pid_t program) {
        EXPECT_TRUE(isSpooling());
        kill(program, SIGKILL);
    };
    EXPECT_EQ(SIGKILL, runProgram(killed).signal);
    EXPECT_TRUE(input.isLetGo());
}

// A parent may ignore the signal that tells of children; who asks for them then is not told.
TEST_F(ChainProgramTest, ParentThatIgnoresTheEndOfChildrenChangesNothing)
{
    ProgramCall ignoring = chain(kPages);
    ignoring.inChild = [] { std::signal(SIGCHLD, SIG_IGN); };
    EXPECT_EQ(0, runProgram(ignoring).exitStatus);
}

TEST_F(ChainProgramTest, OtherArgumentCountsGetTheUsageText)
{
    const auto result = runProgram({.arguments = {KL_CHAIN, "1", "anna", "title", "1"}});
    EXPECT_EQ("Unexpected number of arguments. Usage:\n\n" + std::string(KL_CHAIN) +
                  " job-id username job-title num-copies options [ file ]\n",
              result.errors);
    EXPECT_EQ("", result.output);
    EXPECT_EQ(1, result.exitStatus);
}

TEST(FilterProgramTest, EachFilterAnswersWhatItIs)
{
    const std::pair<const char *, std::string> filters[] = {{JOBFILTER_PROGRAM, "jobfilter"},
                                                            {KL_NOJCL, "jobfilter-nojcl"},
                                                            {KL_CHAIN, "jobfilter-chain"}};
    for (const auto &[path, name] : filters) {
        const auto version = runProgram({.arguments = {path, "--version"}});
        EXPECT_EQ(name + " " KL_VERSION "\n", version.output);
        EXPECT_EQ(0, version.exitStatus);
        const auto help = runProgram({.arguments = {path, "--help"}});
        EXPECT_THAT(help.output, testing::StartsWith("Usage: " + name + " job-id username "));
        EXPECT_EQ("", version.errors + help.errors);
        EXPECT_EQ(0, help.exitStatus);
        // Anything else is a wrong number of arguments.
        EXPECT_EQ(1, runProgram({.arguments = {path, "--version", "--help"}}).exitStatus);
        EXPECT_EQ(1, runProgram({.arguments = {path, "--fast"}}).exitStatus);
    }
}

} // namespace
