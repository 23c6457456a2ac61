#include "MinimalPPD.h"
#include "Program.h"
#include "TemporaryFolder.h"
#include "Waiting.h"
#include "ppdLibrary.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr char kNoToolkit[] =
    "INFO: A required component could not be found, some print settings may not be applied\n";

/// What stands behind the body of a job with that page size.
std::string jobEnd(const std::string &pageSize = "A4")
{
    return "\033%-12345X@PJL COMMENT DSSC PRINT JOBENDINFO PAGES=1\r\n"
           "@PJL COMMENT DSSC PRINT JOBENDINFO PAGESIZE=" +
           pageSize + "\r\n@PJL EOJ\n";
}

/// The built program with a queue's PPD and a temporary directory of its own.
class JobFilterProgramTest : public testing::Test {
protected:
    /// The call for a job that comes on standard input.
    Support::ProgramCall call(const std::string &input, const std::string &options = "") const
    {
        Support::ProgramCall result;
        result.arguments = {JOBFILTER_PROGRAM, "7", "anna", "Report", "2", options};
        result.environment = {{"PPD", ppdPath}, {"TMPDIR", temporaries.path()}};
        result.input = input;
        return result;
    }

    /// The call for a job whose file is named.
    Support::ProgramCall callWithFile(const std::string &path) const
    {
        Support::ProgramCall result = call("");
        result.arguments.push_back(path);
        return result;
    }

    /// The header as libcups itself makes it, with the copies behind the line that names the job.
    std::string header(const std::string &user = "anna", const std::string &title = "Report") const
    {
        ppd_file_t *ppd = ppdOpenFile(ppdPath.c_str());
        ppdMarkDefaults(ppd);
        const std::string path = folder.file("header");
        FILE *stream = std::fopen(path.c_str(), "wb");
        ppdEmitJCL(ppd, stream, 7, user.c_str(), title.c_str());
        std::fclose(stream);
        ppdClose(ppd);
        std::string text = Support::readFile(path);
        const auto jobName = text.find("@PJL JOB NAME");
        return text.insert(text.find('\n', jobName) + 1, "@PJL SET COPIES = 2\r\n");
    }

    void waitForSpoolFile() const
    {
        EXPECT_TRUE(Support::comesTrue([this] { return !temporaries.names().empty(); }));
        EXPECT_THAT(temporaries.names(), ElementsAre(StartsWith("jobfilter-")));
    }

    Support::TemporaryFolder folder;
    std::string ppdPath = folder.write("queue.ppd", Support::minimalPPD());
    Support::TemporaryFolder temporaries; ///< the program's temporary directory
};

/// Root reads and writes everything: a program that root starts becomes someone else, who may
/// reach the test's folder all the same.
void becomeOrdinaryUser()
{
    if (geteuid() == 0 && setuid(65534) != 0)
        _exit(99);
}

/// Makes standard input a socket that holds the bytes, of which it takes some 200 kB.
void readFromSocket(const std::string &bytes)
{
    std::array<int, 2> ends = {};
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) != 0 ||
        write(ends[1], bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()) ||
        dup2(ends[0], STDIN_FILENO) < 0)
        _exit(99);
    close(ends[0]);
    close(ends[1]);
}

std::string binaryBody()
{
    std::string body = "%!PS-Adobe-3.0\n\033%-12345X\r\r\n\n";
    for (int repeat = 0; repeat < 300; ++repeat) {
        for (int byte = 0; byte < 256; ++byte)
            body += static_cast<char>(byte);
    }
    return body;
}

} // namespace

// Arguments

TEST_F(JobFilterProgramTest, TooFewOrTooManyArgumentsGetTheUsage)
{
    for (const std::size_t count : {1U, 5U, 8U}) {
        Support::ProgramCall wrong = call("job");
        wrong.arguments.resize(count, "x");
        const auto result = runProgram(wrong);
        EXPECT_EQ("Unexpected number of arguments. Usage:\n\n" + wrong.arguments[0] +
                      " job-id username job-title num-copies options [ file ]\n",
                  result.errors);
        EXPECT_EQ("", result.output);
        EXPECT_EQ(1, result.exitStatus);
    }
    EXPECT_THAT(temporaries.names(), IsEmpty());
}

TEST_F(JobFilterProgramTest, AJobIdThatIsNoNumberCountsAsZeroAndCopiesGoAsTheyStand)
{
    Support::ProgramCall odd = call("body");
    odd.arguments[1] = "seven";
    odd.arguments[4] = "many";
    const auto result = runProgram(odd);
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_THAT(result.output,
                HasSubstr("DISPLAY = \"0 anna Report\"\n@PJL SET COPIES = many\r\n"));
    EXPECT_THAT(result.output, EndsWith("body" + jobEnd()));
}

// Complete jobs

TEST_F(JobFilterProgramTest, AJobFromStandardInputIsHeaderBodyAndJobEnd)
{
    const auto result = runProgram(call(binaryBody()));
    EXPECT_EQ(header() + binaryBody() + jobEnd(), result.output);
    EXPECT_EQ(kNoToolkit, result.errors);
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_THAT(temporaries.names(), IsEmpty());
}

TEST_F(JobFilterProgramTest, AJobFromAFileIsTheSameAndTheFileStays)
{
    const std::string path = folder.write("job.ps", binaryBody());
    const auto result = runProgram(callWithFile(path));
    EXPECT_EQ(header() + binaryBody() + jobEnd(), result.output);
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_EQ(binaryBody(), Support::readFile(path));
    EXPECT_THAT(temporaries.names(), IsEmpty());
}

// Pipes and files are moved by the kernel, these are not.
TEST_F(JobFilterProgramTest, AJobFromASocketOntoTheEndOfAFileIsTheSame)
{
    const std::string outputPath = folder.write("log", "before ");
    Support::ProgramCall call = this->call("");
    call.inChild = [&] {
        readFromSocket(binaryBody());
        dup2(open(outputPath.c_str(), O_WRONLY | O_APPEND), STDOUT_FILENO);
    };
    EXPECT_EQ(0, runProgram(call).exitStatus);
    EXPECT_EQ("before " + header() + binaryBody() + jobEnd(), Support::readFile(outputPath));
    EXPECT_THAT(temporaries.names(), IsEmpty());
}

TEST_F(JobFilterProgramTest, AnEmptyJobIsHeaderAndJobEnd)
{
    const auto result = runProgram(call(""));
    EXPECT_EQ(header() + jobEnd(), result.output);
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_THAT(temporaries.names(), IsEmpty());
}

TEST_F(JobFilterProgramTest, ANamedFileIsReadInsteadOfStandardInput)
{
    Support::ProgramCall both = callWithFile(folder.write("job.ps", "from the file"));
    both.input = "from standard input";
    EXPECT_EQ(header() + "from the file" + jobEnd(), runProgram(both).output);
}

TEST_F(JobFilterProgramTest, TheHeaderNamesTheArgumentsWhateverTheOptionsSay)
{
    const auto result =
        runProgram(call("", "com.kalmira.username=berta com.kalmira.jobname=Secret"));
    EXPECT_EQ(header("anna", "Report") + jobEnd(), result.output);
}

TEST_F(JobFilterProgramTest, TheJobEndNamesThePageSize)
{
    EXPECT_THAT(runProgram(call("x", "PageSize=Letter")).output, EndsWith("x" + jobEnd("Letter")));
    EXPECT_THAT(runProgram(call("x", "PageSize='A 4\t%s\r\n@PJL \033%'")).output,
                EndsWith("x" + jobEnd("A 4 %s  @PJL  %")));
}

TEST_F(JobFilterProgramTest, WithoutAPageSizeTheJobEndSaysA4)
{
    Support::writeFile(ppdPath, "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n"
                                "*JCLBegin: \"<1B>%-12345X@PJL JOB<0A>\"\n"
                                "*JCLToPSInterpreter: \"@PJL ENTER LANGUAGE=POSTSCRIPT<0A>\"\n"
                                "*JCLEnd: \"<1B>%-12345X\"\n");
    EXPECT_EQ(header() + "x" + jobEnd("A4"), runProgram(call("x")).output);
}

TEST_F(JobFilterProgramTest, APPDWithoutJobControlGivesNoHeader)
{
    Support::writeFile(ppdPath, "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n");
    EXPECT_EQ("x" + jobEnd("A4"), runProgram(call("x")).output);
}

TEST_F(JobFilterProgramTest, ATitleInUTF8IsKeptWhereThePPDTakesIt)
{
    Support::writeFile(ppdPath, Support::minimalPPD("*cupsPJLCharset: \"UTF-8\"\n"));
    Support::ProgramCall job = call("x");
    job.arguments[3] = "Caf\xC3\xA9";
    EXPECT_THAT(runProgram(job).output, StartsWith("\033%-12345X@PJL\n"
                                                   "@PJL JOB NAME = \"Caf\xC3\xA9\" DISPLAY = "
                                                   "\"7 anna Caf\xC3\xA9\"\n"
                                                   "@PJL SET COPIES = 2\r\n"));
}

TEST_F(JobFilterProgramTest, WhatThePPDPutsBehindTheLanguageLineIsNotSent)
{
    Support::writeFile(ppdPath,
                       "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n"
                       "*JCLBegin: \"<1B>%-12345X@PJL JOB<0A>\"\n"
                       "*JCLToPSInterpreter: \"@PJL ENTER LANGUAGE=POSTSCRIPT<0A>lost<0A>\"\n"
                       "*JCLEnd: \"<1B>%-12345X\"\n");
    EXPECT_THAT(runProgram(call("x")).output,
                EndsWith("@PJL ENTER LANGUAGE=POSTSCRIPT\nx" + jobEnd()));
}

TEST_F(JobFilterProgramTest, AnOptionStringFromHellIsSurvived)
{
    std::string many;
    for (int number = 0; number < 10000; ++number)
        many += "k" + std::to_string(number) + "=v ";
    for (const std::string &options :
         {many, std::string(100000, 'x') + "=" + std::string(20000, 'y'),
          std::string("a='unclosed"), std::string("a=%n%s%@ b=\"%1$@\""),
          std::string("a=\xFF\xFE b=\x01\x1B\r\n"), std::string("='"), std::string("{")}) {
        const auto result = runProgram(call("x", options));
        EXPECT_EQ(0, result.exitStatus) << options.substr(0, 40);
        EXPECT_EQ(header() + "x" + jobEnd(), result.output) << options.substr(0, 40);
    }
}

// The toolkit's place

TEST_F(JobFilterProgramTest, ABundleWithoutTheToolkitIsSaidOnce)
{
    const std::string bundle = folder.file("Panel.bundle");
    fs::create_directory(bundle);
    Support::writeFile(ppdPath, Support::minimalPPD("*APDialogExtension: \"" + bundle + "\"\n"));
    const auto result = runProgram(call("x"));
    EXPECT_EQ(kNoToolkit, result.errors);
    EXPECT_EQ(header() + "x" + jobEnd(), result.output);
}

TEST_F(JobFilterProgramTest, AMissingBundleIsSaidOnce)
{
    Support::writeFile(ppdPath, Support::minimalPPD("*APDialogExtension: \"/missing\"\n"));
    EXPECT_EQ(kNoToolkit, runProgram(call("x")).errors);
}

// Failures

TEST_F(JobFilterProgramTest, AMissingTemporaryDirectoryFailsTheSpooling)
{
    Support::ProgramCall lost = call("x");
    lost.environment["TMPDIR"] = folder.file("missing");
    const auto result = runProgram(lost);
    EXPECT_EQ("CRIT: Unable to spool print job\n", result.errors);
    EXPECT_EQ("", result.output);
    EXPECT_EQ(1, result.exitStatus);
}

TEST_F(JobFilterProgramTest, AReadOnlyTemporaryDirectoryFailsTheSpooling)
{
    fs::permissions(folder.path(), fs::perms(0755));
    fs::permissions(temporaries.path(), fs::perms(0555));
    Support::ProgramCall readOnly = call("x");
    readOnly.inChild = &becomeOrdinaryUser;
    const auto result = runProgram(readOnly);
    EXPECT_EQ("CRIT: Unable to spool print job\n", result.errors);
    EXPECT_EQ("", result.output);
    EXPECT_EQ(1, result.exitStatus);
    EXPECT_THAT(temporaries.names(), IsEmpty());
}

TEST_F(JobFilterProgramTest, ATemporaryDirectoryWhosePathIsTooLongFailsTheSpooling)
{
    // 1023 bytes, the most that a path may have: none is left for the file's name.
    std::string longest = temporaries.path();
    while (longest.size() < 1023 - 200)
        longest += "/" + std::string(150, 'd');
    longest += "/" + std::string(1023 - longest.size() - 1, 'e');
    fs::create_directories(longest);
    Support::ProgramCall tooLong = call("x");
    tooLong.environment["TMPDIR"] = longest;
    const auto result = runProgram(tooLong);
    EXPECT_EQ("CRIT: Unable to spool print job\n", result.errors);
    EXPECT_EQ("", result.output);
    EXPECT_EQ(1, result.exitStatus);
    EXPECT_TRUE(fs::is_empty(longest));
}

TEST_F(JobFilterProgramTest, AFullDiskFailsTheSpoolingAndThePartlyWrittenFileStays)
{
    Support::ProgramCall full = call(std::string(100000, 'x'));
    full.inChild = [] {
        const rlimit limit = {30000, 30000};
        setrlimit(RLIMIT_FSIZE, &limit);
    };
    const auto result = runProgram(full);
    EXPECT_EQ("CRIT: Unable to spool print job\n", result.errors);
    EXPECT_EQ("", result.output);
    EXPECT_EQ(1, result.exitStatus);
    ASSERT_EQ(1U, temporaries.names().size());
    EXPECT_EQ(std::string(30000, 'x'),
              Support::readFile(temporaries.file(temporaries.names().front())));
}

TEST_F(JobFilterProgramTest, AFullDiskAtTheLastBufferedBytesFailsTheSpooling)
{
    // Fewer bytes than one stdio buffer: only closing the file brings the failure to light.
    Support::ProgramCall full = call("");
    full.inChild = [] {
        readFromSocket("short");
        const rlimit limit = {2, 2};
        setrlimit(RLIMIT_FSIZE, &limit);
    };
    const auto result = runProgram(full);
    EXPECT_EQ("CRIT: Unable to spool print job\n", result.errors);
    EXPECT_EQ(1, result.exitStatus);
}

TEST_F(JobFilterProgramTest, StandardInputThatCannotBeReadFailsTheSpooling)
{
    Support::ProgramCall folderAsInput = call("");
    folderAsInput.inChild = [] { dup2(open("/", O_RDONLY), STDIN_FILENO); };
    const auto result = runProgram(folderAsInput);
    EXPECT_EQ("CRIT: Unable to spool print job\n", result.errors);
    EXPECT_EQ(1, result.exitStatus);
}

TEST_F(JobFilterProgramTest, AJobFileThatCannotBeReadIsSaidSo)
{
    ASSERT_EQ(0, mkfifo(folder.file("fifo").c_str(), 0600));
    for (const std::string &path : {folder.file("missing"), folder.path(), folder.file("fifo")}) {
        const auto result = runProgram(callWithFile(path));
        EXPECT_EQ(std::string(kNoToolkit) + "CRIT: Unable to read from input\n", result.errors);
        EXPECT_EQ("", result.output);
        EXPECT_EQ(1, result.exitStatus);
    }
}

TEST_F(JobFilterProgramTest, AnUnreadableJobFileIsSaidSo)
{
    fs::permissions(folder.path(), fs::perms(0755));
    const std::string path = folder.write("job.ps", "x");
    fs::permissions(path, fs::perms::none);
    Support::ProgramCall unreadable = callWithFile(path);
    unreadable.inChild = &becomeOrdinaryUser;
    const auto result = runProgram(unreadable);
    EXPECT_THAT(result.errors, EndsWith("CRIT: Unable to read from input\n"));
    EXPECT_EQ(1, result.exitStatus);
}

TEST_F(JobFilterProgramTest, OutputThatCannotBeWrittenFailsTheJobAndKeepsTheSpoolFile)
{
    for (const std::size_t size : {std::size_t{0}, std::size_t{100}, std::size_t{100000}}) {
        Support::ProgramCall full = call(std::string(size, 'x'));
        full.inChild = [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); };
        const auto result = runProgram(full);
        EXPECT_EQ(std::string(kNoToolkit) + "CRIT: Unable to process input print data\n",
                  result.errors)
            << size;
        EXPECT_EQ(1, result.exitStatus) << size;
        ASSERT_EQ(1U, temporaries.names().size()) << size;
        fs::remove(temporaries.file(temporaries.names().front()));
    }
}

TEST_F(JobFilterProgramTest, AnOutputThatIsFullAtAnyByteFailsTheJob)
{
    const std::string whole = header() + std::string(10000, 'x') + jobEnd();
    const std::string path = folder.write("job.ps", std::string(10000, 'x'));
    const std::string out = folder.file("out");
    // Coarsely through header and body, closely through the job end.
    for (rlim_t room = 0; room < whole.size(); room += room + 997 < whole.size() - 150 ? 997 : 7) {
        Support::ProgramCall full = callWithFile(path);
        full.inChild = [&] {
            dup2(open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
            const rlimit limit = {room, room};
            setrlimit(RLIMIT_FSIZE, &limit);
        };
        // The header's own temporary file falls under the limit, too.
        const auto result = runProgram(full);
        ASSERT_EQ(1, result.exitStatus) << room;
        ASSERT_EQ(whole.substr(0, room), Support::readFile(out)) << room;
    }
}

TEST_F(JobFilterProgramTest, AReaderThatHasGoneIsAFailedWriteNotASignal)
{
    Support::ProgramCall gone = call(std::string(1000000, 'x'));
    gone.inChild = [] {
        int ends[2];
        if (pipe(ends) == 0)
            dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
    };
    const auto result = runProgram(gone);
    EXPECT_THAT(result.errors, EndsWith("CRIT: Unable to process input print data\n"));
    EXPECT_EQ(1, result.exitStatus);
}

TEST_F(JobFilterProgramTest, APipeThatMayNotBeWaitedForIsAFailedReadOrWrite)
{
    // The program itself holds the other end: the pipe neither ends nor moves on.
    const auto makePipe = [] {
        std::array<int, 2> ends = {};
        if (pipe2(ends.data(), O_NONBLOCK) != 0)
            _exit(99);
        return ends;
    };
    Support::ProgramCall halfRead = call("");
    halfRead.inChild = [&] {
        const auto ends = makePipe();
        if (write(ends[1], "half a job", 10) != 10 || dup2(ends[0], STDIN_FILENO) < 0)
            _exit(99);
    };
    auto result = runProgram(halfRead);
    EXPECT_EQ("CRIT: Unable to spool print job\n", result.errors);
    EXPECT_EQ(1, result.exitStatus);

    Support::ProgramCall halfWritten =
        callWithFile(folder.write("job.ps", std::string(1000000, 'x')));
    halfWritten.inChild = [&] { dup2(makePipe()[1], STDOUT_FILENO); };
    result = runProgram(halfWritten);
    EXPECT_THAT(result.errors, EndsWith("CRIT: Unable to process input print data\n"));
    EXPECT_EQ(1, result.exitStatus);
}

TEST_F(JobFilterProgramTest, WithoutAPPDTheJobFailsAndLeavesNothing)
{
    Support::ProgramCall lost = call("x");
    lost.environment["PPD"] = folder.file("missing.ppd");
    const auto result = runProgram(lost);
    EXPECT_EQ("CRIT: Unable to open PPD file " + folder.file("missing.ppd") +
                  ": No such file or directory\n",
              result.errors);
    EXPECT_EQ("", result.output);
    EXPECT_EQ(1, result.exitStatus);
    EXPECT_THAT(temporaries.names(), IsEmpty());
}

TEST_F(JobFilterProgramTest, ALineBreakInThePPDsNameMakesNoSecondLine)
{
    Support::ProgramCall lost = call("x");
    lost.environment["PPD"] = "/missing\nPPD: x";
    EXPECT_EQ("CRIT: Unable to open PPD file /missing PPD: x: No such file or directory\n",
              runProgram(lost).errors);
}

// Closed standard streams

TEST_F(JobFilterProgramTest, NoFileOfOursTakesTheNumberOfAClosedStream)
{
    const std::string path = folder.write("job.ps", binaryBody());
    Support::ProgramCall withoutInput = callWithFile(path);
    withoutInput.inChild = [] { close(STDIN_FILENO); };
    EXPECT_EQ(header() + binaryBody() + jobEnd(), runProgram(withoutInput).output);

    Support::ProgramCall withoutErrors = callWithFile(path);
    withoutErrors.inChild = [] { close(STDERR_FILENO); };
    EXPECT_EQ(header() + binaryBody() + jobEnd(), runProgram(withoutErrors).output);

    Support::ProgramCall withoutOutput = callWithFile(path);
    withoutOutput.inChild = [] { close(STDOUT_FILENO); };
    const auto result = runProgram(withoutOutput);
    EXPECT_EQ(1, result.exitStatus);
    EXPECT_THAT(result.errors, EndsWith("CRIT: Unable to process input print data\n"));
    EXPECT_EQ(binaryBody(), Support::readFile(path));
}

TEST_F(JobFilterProgramTest, TheSpoolFileDoesNotTakeTheNumberOfClosedStandardError)
{
    Support::ProgramCall withoutErrors = call("");
    int waiting[2];
    ASSERT_EQ(0, pipe2(waiting, O_CLOEXEC));
    withoutErrors.inChild = [&waiting] {
        dup2(waiting[0], STDIN_FILENO);
        close(STDERR_FILENO);
    };
    withoutErrors.afterStart = [this, &waiting](pid_t program) {
        waitForSpoolFile();
        EXPECT_EQ("/dev/null", fs::read_symlink("/proc/" + std::to_string(program) + "/fd/2"));
        close(waiting[1]);
    };
    EXPECT_EQ(0, runProgram(withoutErrors).exitStatus);
    close(waiting[0]);
}

TEST_F(JobFilterProgramTest, AClosedStandardInputIsNoEmptyJob)
{
    Support::ProgramCall closed = call("");
    closed.inChild = [] { close(STDIN_FILENO); };
    const auto result = runProgram(closed);
    EXPECT_EQ("CRIT: Unable to spool print job\n", result.errors);
    EXPECT_EQ(1, result.exitStatus);
}

// Cancelled jobs

TEST_F(JobFilterProgramTest, ACancelledJobLeavesNoFileAndDiesByItsSignal)
{
    for (const int signalNumber : {SIGTERM, SIGINT, SIGHUP}) {
        Support::ProgramCall cancelled = call("");
        int waiting[2];
        ASSERT_EQ(0, pipe2(waiting, O_CLOEXEC));
        // Standard input stays open without a byte in it: the program waits inside its spooling.
        cancelled.inChild = [&waiting] { dup2(waiting[0], STDIN_FILENO); };
        cancelled.afterStart = [this, signalNumber](pid_t program) {
            waitForSpoolFile();
            kill(program, signalNumber);
        };
        const auto result = runProgram(cancelled);
        EXPECT_EQ(signalNumber, result.signal);
        EXPECT_EQ("", result.errors);
        EXPECT_THAT(temporaries.names(), IsEmpty());
        close(waiting[0]);
        close(waiting[1]);
    }
}

TEST_F(JobFilterProgramTest, ASignalThatIsIgnoredStaysIgnored)
{
    // The scheduler's own protection, or nohup(1)'s.
    Support::ProgramCall protectedCall = call("");
    int waiting[2];
    ASSERT_EQ(0, pipe2(waiting, O_CLOEXEC));
    protectedCall.inChild = [&waiting] {
        std::signal(SIGHUP, SIG_IGN);
        dup2(waiting[0], STDIN_FILENO);
    };
    protectedCall.afterStart = [this, &waiting](pid_t program) {
        waitForSpoolFile();
        kill(program, SIGHUP);
        close(waiting[1]);
    };
    EXPECT_EQ(0, runProgram(protectedCall).exitStatus);
    close(waiting[0]);
}
