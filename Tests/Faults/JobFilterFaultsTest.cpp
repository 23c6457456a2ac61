// What becomes of a job when any one of jobfilter's calls fails, when it is cancelled at any of
// them, and when the toolkit is killed at any of its own.

#include "FaultTest.h"

#include "ICCProfile.h"
#include "MinimalPPD.h"
#include "PJLChecker.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <iostream>
#include <map>
#include <random>
#include <sched.h>
#include <set>
#include <stdexcept>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;
namespace calls = Support::SystemCalls;
using Support::Fault;
using Support::FaultedRun;
using testing::Contains;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr char kNoHeader[] =
    "ERROR: Unable to create the job header, the job's settings may not be applied";
constexpr char kUnprotected[] = "CRIT: Unable to create the job header of a protected job\n";
constexpr char kNoToolkit[] =
    "INFO: A required component could not be found, some print settings may not be applied";
constexpr char kToolkitNotUsed[] = "DEBUG: The toolkit is not used: ";
constexpr char kSettings[] = "com.kalmira.pde.print-mode-ovm.departmentCode=4711 PageSize=Letter ";
constexpr char kAllCommands[] =
    "com.kalmira.pde.watermark.text=Draft BookletPaperSize=A4 UseFrontCover=true ";
/// What moves the pages from file to file.
const std::vector<int> kMoves = {SYS_splice, SYS_sendfile};
constexpr char kForced[] = "FORCE_DEVICECOLOR=1";
constexpr char kNotForced[] = "FORCE_DEVICECOLOR=0";

/// The toolkit's commands: their words, and what is said when one fails.
const std::map<std::string, std::string> kFailures = {
    {"watermark", "Unable to apply watermark"},
    {"booklet", "Unable to apply booklet mode"},
    {"coverpages", "Unable to apply cover pages"}};
using Commands = std::set<std::string>;

std::string document()
{
    std::string pages = "%!PS-Adobe-3.0\n%%Pages: 3\n%%EndComments\n";
    for (int page = 1; page <= 3; ++page) {
        const std::string number = std::to_string(page);
        pages += "%%Page: " + number + " " + number + "\n";
        for (int square = 0; square < 600; ++square)
            pages += std::to_string(square) + " 10 50 50 rectfill\n";
        pages += "showpage\n";
    }
    return pages + "%%EOF\n";
}

std::string jobControl(const std::string &keyword, const std::string &line)
{
    return "*JCLOpenUI *" + keyword + ": PickOne\n*OrderDependency: 30 JCLSetup *" + keyword +
           "\n*Default" + keyword + ": True\n*" + keyword + " True: \"" + line +
           "<0D><0A>\"\n*JCLCloseUI: *" + keyword + "\n";
}

class JobFilterFaultsTest : public FaultTest {
protected:
    JobFilterFaultsTest()
    {
        fs::create_directories(folder.file("Panel.bundle/Contents/Linux"));
        // Longer than libcups' buffer, so that it is read in several pieces.
        std::string comments;
        while (comments.size() < 10000)
            comments += "*% " + std::string(70, '-') + "\n";
        folder.write("queue.ppd",
                     Support::minimalPPD(
                         comments + "*APDialogExtension: \"" + folder.file("Panel.bundle") +
                         "\"\n" +
                         jobControl("PrintMode", "@PJL COMMENT DSSC PRINT PRINTMODE=NORMAL") +
                         jobControl("DepartmentCode", "@PJL COMMENT DSSC PRINT ACCESSCODE=") +
                         jobControl("Collate", "@PJL COMMENT DSSC PRINT COLLATE=ON")));
    }

    // Three toolkits

    void useRealToolkit() const
    {
        fs::remove(toolkit);
        fs::create_symlink(KL_TOOLKIT, toolkit);
    }
    /// The real one, but for the commands that the environment's FAIL names.
    void usePartlyFailingToolkit() const
    {
        folder.writeScript(kToolkitName, std::string(kMayFail) + "exec " KL_TOOLKIT " \"$@\"\n");
    }
    /// Stamps the job with the command's word, in no time; fails likewise.
    void useStampingToolkit() const
    {
        folder.writeScript(kToolkitName, std::string(kMayFail) +
                                             "for a; do input=$output; output=$a; done\n"
                                             "{ cat \"$input\"; echo \"%% $1\"; } > \"$output\"\n");
    }

    /// Leaves every output empty.
    void useQuickToolkit() const
    {
        fs::remove(toolkit);
        fs::create_symlink("/usr/bin/true", toolkit);
    }

    // Two ways in

    Support::ProgramCall callWithInput(const std::string &options = kSettings) const
    {
        Support::ProgramCall result;
        result.arguments = {
            JOBFILTER_PROGRAM, "7", "anna",
            "Report",          "2", options + "com.kalmira.pde.q5.color-profile=file://" + profile};
        result.environment = {{"PPD", folder.file("queue.ppd")}, {"TMPDIR", temporaries}};
        result.input = job;
        return withFewFonts(result);
    }
    Support::ProgramCall callWithFile() const
    {
        auto result = callWithInput();
        result.input.clear();
        result.arguments.push_back(folder.write("job.ps", job));
        return result;
    }

    /// What the printer gets when these commands fail and all else works.
    std::string outputWithout(const Commands &failing, Support::ProgramCall call) const
    {
        std::string words;
        for (const std::string &command : failing)
            words += command + " ";
        call.environment["FAIL"] = words;
        const auto result = Support::runProgram(call);
        EXPECT_EQ(0, result.exitStatus) << result.errors;
        EXPECT_THAT(Support::problemsOfPJLJob(result.output), IsEmpty());
        return result.output;
    }

    /// All that the printer can get of the job, by the commands that fail.
    void learnOutputs(const Support::ProgramCall &call, const Commands &commands)
    {
        for (unsigned chosen = 0; chosen < 1U << commands.size(); ++chosen) {
            Commands failing;
            unsigned bit = 1;
            for (const std::string &command : commands) {
                if ((chosen & bit) != 0)
                    failing.insert(command);
                bit <<= 1U;
            }
            outputs[failing] = outputWithout(failing, call);
        }
        allCommands = commands;
        const std::string whole = outputs.at({});
        ASSERT_NE(std::string::npos, whole.find(kForced));
        ASSERT_NE(std::string::npos, whole.find("ACCESSCODE=4711"));
    }

    /// What was sent, going by what was said.
    std::string outputThatFits(const FaultedRun &run) const
    {
        const auto lines = saidLines(run.result.errors);
        Commands failed;
        for (const auto &[command, failure] : kFailures) {
            if (std::ranges::find(lines, "ERROR: " + failure) != lines.end())
                failed.insert(command);
        }
        const bool withoutToolkit = std::ranges::find(lines, kNoToolkit) != lines.end();
        std::string output = outputs.at(withoutToolkit ? allCommands : failed);
        if (std::ranges::find(lines, kNoHeader) != lines.end())
            output.erase(0, Support::splitPJLJob(output)->header.size());
        // A profile that cannot be read is not the standard one.
        if (run.where.find(profile) != std::string::npos &&
            run.result.output.find(kNotForced) != std::string::npos)
            output.replace(output.find(kForced), std::string(kForced).size(), kNotForced);
        return output;
    }

    /// Where the font library cannot read its configuration it says so in words of its own.
    static void dropFontLibrarysWords(std::vector<std::string> &lines)
    {
        bool isTheirs = false;
        std::erase_if(lines, [&](const std::string &line) {
            isTheirs = line.starts_with("Fontconfig error: ") ||
                       (isTheirs && !line.starts_with("ERROR: ") && !line.starts_with("DEBUG: "));
            return isTheirs;
        });
    }

    /// Only lines that are documented, each with those that belong to it.
    static void expectKnownLines(const FaultedRun &run)
    {
        auto lines = saidLines(run.result.errors);
        if (!lines.empty() && lines.back().starts_with("CRIT: "))
            lines.pop_back();
        std::erase(lines, ""); // the toolkit's own words may end in a line end
        // Of counters, in the build that has them.
        std::erase_if(lines, [](const auto &line) { return line.starts_with("LLVM Profile "); });
        dropFontLibrarysWords(lines);
        std::string awaited; // what the line before announced
        for (const std::string &line : lines) {
            if (!awaited.empty()) {
                EXPECT_THAT(line, StartsWith(awaited));
            }
            const bool isFailure = std::ranges::any_of(
                kFailures, [&](const auto &entry) { return line == "ERROR: " + entry.second; });
            EXPECT_TRUE(!awaited.empty() || isFailure || line == kNoHeader || line == kNoToolkit ||
                        line.starts_with(kToolkitNotUsed))
                << line;
            awaited = isFailure ? "DEBUG: " + line.substr(7) + ": " : "";
        }
        EXPECT_EQ("", awaited);
    }

    /// The job, as far as it had come, or nothing.
    void expectKeptJob(const FaultedRun &run) const
    {
        const auto kept = temporaryFiles();
        if (kept.empty())
            return;
        ASSERT_EQ(1U, kept.size());
        const std::string bytes = Support::readFile(kept.front());
        if (run.result.errors.find("Unable to spool") != std::string::npos ||
            run.result.errors.find("Out of memory") != std::string::npos) {
            EXPECT_TRUE(job.starts_with(bytes) || isBody(bytes));
        } else {
            EXPECT_TRUE(bytes == job || isBody(bytes));
        }
    }

    bool isBody(const std::string &bytes) const
    {
        return std::ranges::any_of(outputs, [&](const auto &output) {
            return Support::splitPJLJob(output.second)->body == bytes;
        });
    }

    /// Whether it was a look at the name of a temporary file that was struck. The file stays: under
    /// that name there might be another's.
    bool hidesAName(const NamedFault &fault, const FaultedRun &run) const
    {
        return fault.fault.systemCalls == calls::kStatus &&
               run.where.find(temporaries) != std::string::npos;
    }

    /// Complete, or complete but for what lines say, or failed with a line that says so.
    void expectAllOrALine(const NamedFault &fault, const FaultedRun &run) const
    {
        EXPECT_TRUE(run.struck || run.result.exitStatus == 0);
        const std::string expected = outputThatFits(run);
        if (lostItsLine(fault, run)) {
            EXPECT_THAT(outputs,
                        Contains(testing::Pair(testing::_, StartsWith(run.result.output))));
            return;
        }
        expectKnownLines(run);
        if (run.result.exitStatus == 0) {
            EXPECT_EQ(expected, run.result.output);
            if (!hidesAName(fault, run)) {
                EXPECT_THAT(temporaryFiles(), IsEmpty());
            }
            return;
        }
        EXPECT_EQ(1, run.result.exitStatus);
        EXPECT_THAT(expected, StartsWith(run.result.output));
        const auto lines = saidLines(run.result.errors);
        EXPECT_THAT(lines.empty() ? "no line" : lines.back(), StartsWith("CRIT: "));
        expectKeptJob(run);
    }

    /// Gone without a trace, but for what had been sent.
    void expectCancelled(const FaultedRun &run) const
    {
        EXPECT_EQ(run.struck ? SIGTERM : 0, run.result.signal);
        expectKnownLines(run);
        EXPECT_THAT(outputThatFits(run), StartsWith(run.result.output));
        EXPECT_THAT(temporaryFiles(), IsEmpty());
    }

    static constexpr char kMayFail[] = "case \" $FAIL \" in *\" $1 \"*) exit 9;; esac\n";
    static constexpr char kToolkitName[] = "Panel.bundle/Contents/Linux/toolkit";
    const std::string toolkit = folder.file(kToolkitName);
    std::string job = document();
    const std::string profile = folder.write("srgb.icc", Support::standardSRGBProfile());
    std::map<Commands, std::string> outputs;
    Commands allCommands;
};

} // namespace

// A plain job

TEST_F(JobFilterFaultsTest, PlainJobWithAnySystemCallThatFails)
{
    useRealToolkit();
    learnOutputs(callWithInput(), {});
    for (const NamedFault &fault : faultsOfSystemCalls())
        strikeEveryCall(
            fault, [this] { return callWithInput(); },
            [&](const FaultedRun &run) { expectAllOrALine(fault, run); });
}

TEST_F(JobFilterFaultsTest, JobFileWithAnySystemCallThatFails)
{
    useRealToolkit();
    learnOutputs(callWithFile(), {});
    for (const NamedFault &fault : faultsOfSystemCalls()) {
        const auto check = [&](const FaultedRun &run) {
            expectAllOrALine(fault, run);
            EXPECT_EQ(job, Support::readFile(folder.file("job.ps")));
            EXPECT_THAT(temporaryFiles(), IsEmpty());
        };
        strikeEveryCall(
            fault, [this] { return callWithFile(); }, check);
    }
}

TEST_F(JobFilterFaultsTest, PlainJobWithAnyAllocationThatFails)
{
    useRealToolkit();
    learnOutputs(callWithInput(), {});
    const auto check = [&](const FaultedRun &run) {
        expectAllOrALine(kNoMemory, run);
        EXPECT_EQ(run.struck ? "CRIT: Out of memory\n" : "", run.result.errors);
    };
    EXPECT_LT(100U, strikeEveryCall(
                        kNoMemory, [this] { return callWithInput(); }, check));
}

TEST_F(JobFilterFaultsTest, PlainJobCancelledAtAnyTime)
{
    useRealToolkit();
    learnOutputs(callWithInput(), {});
    EXPECT_LT(30U, strikeEveryCall(
                       signalAtSystemCalls(SIGTERM), [this] { return callWithInput(); },
                       [&](const FaultedRun &run) { expectCancelled(run); }));
}

// A job for the toolkit

namespace {

class JobForTheToolkitFaultsTest : public JobFilterFaultsTest {
protected:
    JobForTheToolkitFaultsTest()
    {
        // A toolkit that is killed leaves no picture of its memory.
        constexpr rlimit kNone = {0, 0};
        setrlimit(RLIMIT_CORE, &kNone);
    }

    Support::ProgramCall callForAllCommands() const
    {
        return callWithInput(std::string(kSettings) + kAllCommands);
    }
    void learnAllOutputs()
    {
        learnOutputs(callForAllCommands(), {"watermark", "booklet", "coverpages"});
    }
    void learnOutputsOfTheRealToolkit()
    {
        usePartlyFailingToolkit();
        learnAllOutputs();
        useRealToolkit();
    }

    std::uint64_t strikeEveryCallOfTheJob(const NamedFault &fault)
    {
        return strikeEveryCall(
            fault, [this] { return callForAllCommands(); },
            [&](const FaultedRun &run) { expectAllOrALine(fault, run); });
    }
    void strikeEveryCallOfTheJob(const std::vector<std::string> &names)
    {
        for (const NamedFault &fault : faultsOfSystemCalls()) {
            if (std::ranges::find(names, fault.name) != names.end())
                strikeEveryCallOfTheJob(fault);
        }
    }

    /// The moments at which something of the job changes hands.
    static std::vector<int> callsThatMatter()
    {
        std::vector<int> some;
        for (const auto *kind : {&calls::kPipe, &calls::kStart, &calls::kWait, &calls::kWrite,
                                 &calls::kSeek, &calls::kChangeFile})
            some.insert(some.end(), kind->begin(), kind->end());
        return some;
    }
};

} // namespace

TEST_F(JobForTheToolkitFaultsTest, AnyOpenReadOrWriteThatFails)
{
    learnOutputsOfTheRealToolkit();
    strikeEveryCallOfTheJob({"open: too many files", "read: input/output error", "write: no space",
                             "read: half", "write: half", "seek: input/output error"});
}

TEST_F(JobForTheToolkitFaultsTest, AnyOtherSystemCallThatFails)
{
    learnOutputsOfTheRealToolkit();
    strikeEveryCallOfTheJob({"status: input/output error", "pipe: too many files",
                             "start of a child: no process", "map: no memory",
                             "change of a file: input/output error", "wait: interrupted",
                             "close: input/output error"});
}

TEST_F(JobForTheToolkitFaultsTest, AnySystemCallThatFailsBesideCommandsThatFail)
{
    useStampingToolkit();
    learnAllOutputs();
    for (const NamedFault &fault : faultsOfSystemCalls()) {
        if (fault.fault.systemCalls != calls::kPipe && fault.fault.systemCalls != calls::kStart &&
            fault.fault.systemCalls != calls::kWrite && fault.fault.systemCalls != calls::kWait)
            continue; // no other than with commands that work
        const auto call = [this] {
            auto failing = callForAllCommands();
            failing.environment["FAIL"] = "watermark coverpages";
            return failing;
        };
        strikeEveryCall(fault, call, [&](const FaultedRun &run) { expectAllOrALine(fault, run); });
    }
}

TEST_F(JobForTheToolkitFaultsTest, AnyAllocationThatFails)
{
    useQuickToolkit();
    learnAllOutputs();
    const auto check = [&](const FaultedRun &run) {
        expectAllOrALine(kNoMemory, run);
        EXPECT_EQ(run.struck ? "CRIT: Out of memory\n" : "", run.result.errors);
    };
    EXPECT_LT(200U, strikeEveryCall(
                        kNoMemory, [this] { return callForAllCommands(); }, check));
}

TEST_F(JobForTheToolkitFaultsTest, CancelledAtAnyTime)
{
    learnOutputsOfTheRealToolkit();
    const auto check = [&](const FaultedRun &run) { expectCancelled(run); };
    const auto call = [this] { return callForAllCommands(); };
    EXPECT_LT(20U,
              strikeEveryCall({"SIGTERM", {Fault::Kind::Signalled, callsThatMatter(), SIGTERM}},
                              call, check));
    EXPECT_LT(10U,
              strikeEveryCall({"SIGTERM while the toolkit is at work",
                               {Fault::Kind::ProgramSignalled, callsThatMatter(), SIGTERM, true}},
                              call, check));
}

TEST_F(JobForTheToolkitFaultsTest, ToolkitKilledAtAnyTime)
{
    learnOutputsOfTheRealToolkit();
    for (const int signalNumber : {SIGKILL, SIGTERM, SIGSEGV}) {
        const auto check = [&](const FaultedRun &run) {
            expectKnownLines(run);
            EXPECT_EQ(0, run.result.exitStatus);
            auto lines = saidLines(run.result.errors);
            std::erase(lines, ""); // the toolkit outlives its process for fonts, and says so
            // Killed while it answers, the process for fonts has answered in time, or has not.
            const bool hasAnswered = run.descriptor == STDOUT_FILENO && lines.empty();
            EXPECT_EQ(run.struck && !hasAnswered ? 2U : 0U, lines.size());
            EXPECT_EQ(outputThatFits(run), run.result.output);
            EXPECT_THAT(temporaryFiles(), IsEmpty());
        };
        EXPECT_LT(10U, strikeEveryCall(
                           {"toolkit killed by signal " + std::to_string(signalNumber),
                            {Fault::Kind::Signalled, callsThatMatter(), signalNumber, true}},
                           [this] { return callForAllCommands(); }, check));
    }
}

TEST_F(JobForTheToolkitFaultsTest, FileThatCannotBeRemovedStaysAndTheJobIsPrinted)
{
    learnOutputsOfTheRealToolkit();
    const auto check = [&](const FaultedRun &run) {
        EXPECT_EQ("", run.result.errors);
        EXPECT_EQ(0, run.result.exitStatus);
        EXPECT_EQ(outputs.at({}), run.result.output);
        EXPECT_EQ(run.struck ? 1U : 0U, temporaryFiles().size());
    };
    // The pages as they came, and as the first two commands and the last left them.
    EXPECT_EQ(4U, strikeEveryCall(
                      {"removal: not permitted", {Fault::Kind::Fails, calls::kRemove, EACCES}},
                      [this] { return callForAllCommands(); }, check));
}

TEST_F(JobForTheToolkitFaultsTest, FileWhoseNameCannotBeLookedAtStaysAndTheJobIsPrinted)
{
    learnOutputsOfTheRealToolkit();
    std::size_t left = 0;
    const auto check = [&](const FaultedRun &run) {
        if (run.result.exitStatus == 0 && run.result.errors.empty())
            left += temporaryFiles().size();
    };
    strikeEveryCall(
        {"status: not permitted", {Fault::Kind::Fails, calls::kStatus, EACCES}},
        [this] { return callForAllCommands(); }, check);
    // As with those that cannot be removed.
    EXPECT_EQ(4U, left);
}

// What was found, each by its name

TEST_F(JobFilterFaultsTest, PPDThatCannotBeReadToItsEndFailsTheJob)
{
    bool seen = false;
    const auto check = [&](const FaultedRun &run) {
        if (run.where.find("queue.ppd") == std::string::npos)
            return;
        seen = seen || run.result.errors == "CRIT: Unable to open PPD file " +
                                                folder.file("queue.ppd") +
                                                ": not all of it could be read\n";
        EXPECT_EQ("", run.result.exitStatus == 0 ? "" : run.result.output);
    };
    strikeEveryCall(
        {"read", {Fault::Kind::Fails, calls::kRead, EIO}}, [this] { return callWithInput(); },
        check);
    EXPECT_TRUE(seen);
}

TEST_F(JobFilterFaultsTest, HeaderThatCannotBeReadBackFailsTheJob)
{
    for (const auto &kind : {calls::kRead, calls::kSeek}) {
        int headers = 0;
        const auto check = [&](const FaultedRun &run) {
            if (run.where.find("memfd:") == std::string::npos)
                return;
            ++headers;
            EXPECT_EQ(1, run.result.exitStatus);
            EXPECT_THAT(run.result.errors,
                        testing::EndsWith("CRIT: Unable to process input print data\n"));
        };
        strikeEveryCall(
            {"header", {Fault::Kind::Fails, kind, EIO}}, [this] { return callWithInput(); }, check);
        EXPECT_LT(0, headers);
    }
}

// Whatever fails, a job that asked for protection goes out with the line that gives it, or not at
// all; then nothing of it is left.
TEST_F(JobFilterFaultsTest, ProtectedJobWithAnySystemCallThatFails)
{
    useRealToolkit();
    const auto call = [this] {
        return callWithInput(std::string(kSettings) + "StoreToDocStore=True PrintAsWell=False ");
    };
    learnOutputs(call(), {});
    const std::string whole = outputs.at({});
    ASSERT_NE(std::string::npos, whole.find("@PJL COMMENT DSSC PRINT PRINTMODE=BOX\r\n"));
    int refused = 0;
    for (const NamedFault &fault : faultsOfSystemCalls()) {
        const auto check = [&](const FaultedRun &run) {
            expectAllOrALine(fault, run);
            EXPECT_EQ(std::string::npos, run.result.errors.find(kNoHeader));
            if (run.result.errors.find(kUnprotected) == std::string::npos)
                return;
            ++refused;
            EXPECT_EQ("", run.result.output);
            EXPECT_THAT(temporaryFiles(), IsEmpty());
        };
        strikeEveryCall(fault, call, check);
    }
    // Two files for the header: each made, written, read and gone back in.
    EXPECT_LE(8, refused);
}

TEST_F(JobFilterFaultsTest, ProtectedJobWithoutMemoryForItsHeaderIsRefusedAndLeavesNothing)
{
    useRealToolkit();
    const auto call = [this] {
        return callWithInput(std::string(kSettings) + "StoreToDocStore=True PrintAsWell=False ");
    };
    learnOutputs(call(), {});
    int refused = 0;
    const auto check = [&](const FaultedRun &run) {
        if (!run.struck)
            return;
        EXPECT_EQ(1, run.result.exitStatus);
        if (run.result.errors == "CRIT: Out of memory\n")
            return; // before the header, or behind it
        ++refused;
        EXPECT_EQ(kUnprotected, run.result.errors);
        EXPECT_EQ("", run.result.output);
        EXPECT_THAT(temporaryFiles(), IsEmpty());
    };
    strikeEveryCall(kNoMemory, call, check);
    EXPECT_LT(10, refused);
}

// An error of bytes that seemed to be written is told once, by the next call: from a file server
// whose disk is full, for instance.
TEST_F(JobFilterFaultsTest, PagesThatCannotBeMovedFailTheJob)
{
    for (const int error : {EIO, ENOSPC, EPIPE}) {
        const auto check = [](const FaultedRun &run) {
            EXPECT_EQ(run.struck ? 1 : 0, run.result.exitStatus);
            EXPECT_TRUE(!run.struck || run.result.errors == "CRIT: Unable to spool print job\n" ||
                        run.result.errors.ends_with("CRIT: Unable to process input print data\n"));
        };
        EXPECT_LE(4U, strikeEveryCall(
                          {"move", {Fault::Kind::Fails, kMoves, error}},
                          [this] { return callWithInput(); }, check));
    }
}

TEST_F(JobFilterFaultsTest, PagesThatTheKernelDoesNotMoveAreCopied)
{
    useRealToolkit();
    learnOutputs(callWithInput(), {});
    for (const int error : {EINVAL, ENOSYS}) {
        const auto check = [&](const FaultedRun &run) {
            EXPECT_EQ("", run.result.errors);
            EXPECT_EQ(outputs.at({}), run.result.output);
        };
        EXPECT_LE(4U, strikeEveryCall(
                          {"move", {Fault::Kind::Fails, kMoves, error}},
                          [this] { return callWithInput(); }, check));
    }
}

TEST_F(JobForTheToolkitFaultsTest, WatermarkThatCannotBeMeasuredIsNotPutElsewhere)
{
    learnOutputsOfTheRealToolkit();
    int fonts = 0;
    const auto check = [&](const FaultedRun &run) {
        if (run.where.find("fonts.conf") == std::string::npos)
            return;
        ++fonts;
        EXPECT_THAT(run.result.errors,
                    testing::HasSubstr("ERROR: Unable to apply watermark\nDEBUG: Unable to apply "
                                       "watermark: There is no font to measure the text with\n"));
        EXPECT_EQ(outputs.at({"watermark"}), run.result.output);
    };
    strikeEveryCall(
        {"open", {Fault::Kind::Fails, calls::kOpen, EMFILE}},
        [this] { return callForAllCommands(); }, check);
    EXPECT_EQ(1, fonts);
}

// The world outside

namespace {

/// A job of a few hundred kilobytes, and a toolkit that stays out of it.
class LongJobFaultsTest : public JobFilterFaultsTest {
protected:
    LongJobFaultsTest()
    {
        for (int line = 0; line < 12000; ++line)
            job += std::to_string(line) + " is a line of a page that prints nothing at all\n";
        useRealToolkit();
        learnOutputs(callWithInput(), {});
        whole = outputs.at({});
    }

    std::string whole;
};

/// Takes the first bytes of what a program writes, and goes.
class LeavingReader {
public:
    explicit LeavingReader(std::size_t bytes) : _wanted(bytes)
    {
        if (pipe2(_ends.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("cannot make a pipe");
    }
    ~LeavingReader() { _thread.join(); }

    /// The program's part of Support::runProgram().
    void attach(Support::ProgramCall &call)
    {
        call.inChild = [this] { dup2(_ends[1], STDOUT_FILENO); };
        call.afterStart = [this](pid_t) {
            close(_ends[1]);
            _thread = std::thread([this] { read(); });
        };
    }
    const std::string &bytes() const { return _bytes; }

    /// What the pipe itself takes beyond that, in bytes: the filter widens it.
    static constexpr std::size_t kPipeSize = 256 << 10;

private:
    void read()
    {
        std::array<char, 4096> block = {};
        while (_bytes.size() < _wanted) {
            const auto count =
                ::read(_ends[0], block.data(), std::min(block.size(), _wanted - _bytes.size()));
            if (count <= 0)
                break;
            _bytes.append(block.data(), static_cast<std::size_t>(count));
        }
        close(_ends[0]);
    }

    std::size_t _wanted;
    std::array<int, 2> _ends = {};
    std::thread _thread;
    std::string _bytes;
};

/// A disk of a few pages of memory in place of a folder, seen by this test alone.
class SmallDisk {
public:
    /// @return why this machine does not let a test have one; empty when it does
    static std::string whyNot()
    {
        if (unshare(CLONE_NEWNS) != 0 ||
            mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
            return "a disk of its own is root's alone: " + std::string(std::strerror(errno));
        return {};
    }

    SmallDisk(const std::string &folder, int pages) : _folder(folder)
    {
        const std::string size = "size=" + std::to_string(pages * 4096);
        if (mount("none", folder.c_str(), "tmpfs", 0, size.c_str()) != 0)
            throw std::runtime_error("cannot mount");
    }
    ~SmallDisk() { umount2(_folder.c_str(), MNT_DETACH); }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

private:
    std::string _folder;
};

} // namespace

TEST_F(LongJobFaultsTest, ReaderThatGoesAfterAnyFourKilobytes)
{
    constexpr std::size_t kStep = 4096;
    ASSERT_LT(60 * kStep, whole.size());
    for (std::size_t taken = 0; taken <= whole.size(); taken += kStep) {
        SCOPED_TRACE(taken);
        LeavingReader reader(taken);
        auto call = callWithInput();
        reader.attach(call);
        const auto result = Support::runProgram(call);
        if (whole.size() - taken <= LeavingReader::kPipeSize && result.exitStatus == 0) {
            EXPECT_EQ("", result.errors); // the pipe had room for the rest
            EXPECT_THAT(temporaryFiles(), IsEmpty());
            continue;
        }
        EXPECT_EQ(1, result.exitStatus);
        EXPECT_EQ("CRIT: Unable to process input print data\n", result.errors);
        ASSERT_EQ(1U, temporaryFiles().size());
        EXPECT_EQ(job, Support::readFile(temporaryFiles().front()));
        clearTemporaryFiles();
    }
}

TEST_F(LongJobFaultsTest, CancelledAtARandomTime)
{
    auto call = callWithFile();
    const auto begin = std::chrono::steady_clock::now();
    Support::runProgram(call);
    const std::chrono::duration<double, std::micro> usual =
        std::chrono::steady_clock::now() - begin;
    std::minstd_rand random; // the same moments each time, as far as the machine goes along
    for (int run = 0; run < 40; ++run) {
        const double part = static_cast<double>(random()) / std::minstd_rand::max();
        call.afterStart = [&](pid_t program) {
            usleep(static_cast<useconds_t>(usual.count() * part));
            kill(program, SIGTERM);
        };
        const auto result = Support::runProgram(call);
        if (result.signal == 0) {
            EXPECT_EQ(0, result.exitStatus);
            EXPECT_EQ(whole, result.output);
        } else {
            EXPECT_EQ(SIGTERM, result.signal);
            EXPECT_THAT(whole, StartsWith(result.output));
        }
        EXPECT_EQ("", result.errors);
        EXPECT_THAT(temporaryFiles(), IsEmpty());
    }
}

TEST_F(JobForTheToolkitFaultsTest, DiskOfAnySizeThatIsFull)
{
    if (const std::string reason = SmallDisk::whyNot(); !reason.empty())
        GTEST_SKIP() << reason;
    learnOutputsOfTheRealToolkit();
    std::set<std::string> seen; // what went wrong, size by size
    int pages = 1;
    for (bool enough = false; !enough; ++pages) {
        ASSERT_GT(100, pages);
        SCOPED_TRACE(std::to_string(pages) + " pages");
        const SmallDisk disk(temporaries, pages);
        FaultedRun run = {};
        run.struck = true;
        run.result = Support::runProgram(callForAllCommands());
        expectAllOrALine({"full disk", {Fault::Kind::Fails}}, run);
        EXPECT_EQ(0, run.result.signal);
        enough = run.result.errors.empty();
        for (const std::string &line : saidLines(run.result.errors)) {
            if (!line.starts_with("DEBUG: "))
                seen.insert(line);
        }
    }
    std::cout << "[  STRUCK  ] " << pages - 1 << " x full disk\n";
    EXPECT_THAT(seen, testing::IsSupersetOf({"CRIT: Unable to spool print job",
                                             "ERROR: Unable to apply watermark",
                                             "ERROR: Unable to apply booklet mode"}));
}

TEST_F(LongJobFaultsTest, DiskOfAnySizeThatIsFullOfTheOutput)
{
    if (const std::string reason = SmallDisk::whyNot(); !reason.empty())
        GTEST_SKIP() << reason;
    const std::string disk = folder.file("disk");
    fs::create_directory(disk);
    for (int pages = 1; pages <= static_cast<int>(whole.size() / 4096) + 1; pages += 5) {
        const SmallDisk mounted(disk, pages);
        auto call = callWithFile();
        call.inChild = [&] {
            dup2(open((disk + "/out").c_str(), O_WRONLY | O_CREAT, 0600), STDOUT_FILENO);
        };
        const auto result = Support::runProgram(call);
        const std::string written = Support::readFile(disk + "/out");
        EXPECT_THAT(whole, StartsWith(written));
        EXPECT_EQ(written.size() == whole.size() ? 0 : 1, result.exitStatus);
        EXPECT_EQ(result.exitStatus == 0 ? "" : "CRIT: Unable to process input print data\n",
                  result.errors);
    }
}
