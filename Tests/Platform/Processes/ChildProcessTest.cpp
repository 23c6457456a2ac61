#include "ChildProcess.h"

#include "Environment.h"
#include "TemporaryFolder.h"
#include "Waiting.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;
using Platform::ChildProcess;
using Platform::ChildProcessError;

namespace {

class ChildProcessTest : public testing::Test {
protected:
    /// The path of a script; "$D" in its lines is the test's folder.
    std::string script(const std::string &lines) const
    {
        return folder.writeScript("script", "D='" + folder.path() + "'\n" + lines);
    }

    /// Runs a script to its end. @return its termination status
    int run(const std::string &lines, const std::vector<std::string> &arguments = {}) const
    {
        ChildProcess child(script(lines), arguments);
        child.collectErrorText();
        return child.terminationStatus();
    }

    std::string read(const std::string &name) const { return Support::readFile(folder.file(name)); }

    static void waitForEndOf(const ChildProcess &child)
    {
        ASSERT_TRUE(Support::comesTrue([&child] { return !child.isRunning(); }));
    }

    void waitForFile(const std::string &name) const
    {
        ASSERT_TRUE(Support::comesTrue([&] { return fs::exists(folder.file(name)); }));
    }

    std::string complaintAbout(const std::string &program) const
    {
        try {
            const ChildProcess child(program, {});
        } catch (const ChildProcessError &error) {
            return error.what();
        }
        return {};
    }

    Support::TemporaryFolder folder;
};

/// The line of /proc/PID/status with that label, read by a script as a bit set.
std::string saveStatusLine(const std::string &label)
{
    return "grep '^" + label + ":' /proc/$$/status | cut -f 2 > $D/" + label;
}

/// What the system tells of this process under the label, a line without its line feed.
std::string ownStatusLine(const std::string &label)
{
    std::ifstream lines("/proc/self/status");
    std::string line;
    while (std::getline(lines, line) && !line.starts_with(label + ":")) {
    }
    return line;
}

unsigned long long bit(int signalNumber)
{
    return 1ULL << (signalNumber - 1);
}

/// A signal's disposition, put back in the end.
class ScopedSignal {
public:
    ScopedSignal(int signalNumber, void (*handler)(int))
        : _signalNumber(signalNumber), _before(std::signal(signalNumber, handler))
    {
    }
    ~ScopedSignal() { std::signal(_signalNumber, _before); }
    ScopedSignal(const ScopedSignal &) = delete;
    ScopedSignal &operator=(const ScopedSignal &) = delete;

private:
    int _signalNumber;
    void (*_before)(int);
};

} // namespace

// What the child gets

TEST_F(ChildProcessTest, ArgumentsArriveAsTheyStand)
{
    const std::vector<std::string> arguments = {
        "", "two words", "$HOME `id` \"'\\", "; touch $D/shell", "-n", "line\nbreak", "\xff"};
    EXPECT_EQ(0, run("printf '%s|' \"$#\" \"$@\" > $D/arguments", arguments));
    EXPECT_EQ("7||two words|$HOME `id` \"'\\|; touch $D/shell|-n|line\nbreak|\xff|",
              read("arguments"));
}

TEST_F(ChildProcessTest, InputAndOutputAreTheNullDevice)
{
    // Looked at first, saved afterwards: saving redirects.
    EXPECT_EQ(0, run("i=$(readlink /proc/$$/fd/0) && o=$(readlink /proc/$$/fd/1)\n"
                     "echo \"$i $o\" > $D/streams"));
    EXPECT_EQ("/dev/null /dev/null\n", read("streams"));
}

TEST_F(ChildProcessTest, NoDescriptorOfOursIsInherited)
{
    const int leaky = open("/dev/zero", O_RDONLY); // without O_CLOEXEC
    ASSERT_GE(leaky, 3);
    EXPECT_EQ(0, run("all=$(for f in /proc/$$/fd/*; do readlink $f; done)\n"
                     "echo \"$all\" > $D/open"));
    close(leaky);
    EXPECT_THAT(read("open"), testing::Not(testing::HasSubstr("/dev/zero")));
    EXPECT_THAT(read("open"), testing::HasSubstr("pipe:"));
}

TEST_F(ChildProcessTest, EnvironmentAndWorkingDirectoryAreInherited)
{
    const Support::ScopedEnvironment variable("KL_TEST_VARIABLE", "some value");
    EXPECT_EQ(0, run("echo \"$KL_TEST_VARIABLE\" > $D/inherited; pwd >> $D/inherited"));
    EXPECT_EQ("some value\n" + fs::current_path().string() + "\n", read("inherited"));
}

TEST_F(ChildProcessTest, LeadsAProcessGroupOfItsOwn)
{
    EXPECT_EQ(0, run("read pid name state parent group rest < /proc/$$/stat\n"
                     "[ $pid = $group ]"));
}

TEST_F(ChildProcessTest, AnIgnoredBrokenPipeSignalIsDeadlyInTheChild)
{
    const ScopedSignal ignored(SIGPIPE, SIG_IGN);
    EXPECT_EQ(0, run(saveStatusLine("SigIgn")));
    EXPECT_EQ(0U, std::stoull(read("SigIgn"), nullptr, 16) & bit(SIGPIPE));
}

TEST_F(ChildProcessTest, ASignalMaskOfTheCallersIsInheritedAndNoOther)
{
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    sigprocmask(SIG_BLOCK, &blocked, &before);
    // No shell: shells block signals of their own while they start something.
    ChildProcess child("/bin/grep", {"-qx", ownStatusLine("SigBlk"), "/proc/self/status"});
    const int status = child.terminationStatus();
    sigprocmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(0, status);
}

// A program whose file is open

TEST_F(ChildProcessTest, TheOpenFileIsStartedUnderItsPath)
{
    fs::copy_file(fs::canonical("/bin/sh"), folder.file("shell"));
    const Platform::Descriptor file(open(folder.file("shell").c_str(), O_PATH | O_CLOEXEC));
    fs::remove(folder.file("shell"));
    ChildProcess child(folder.file("shell"), {"-c", "[ $0 = " + folder.file("shell") + " ]"},
                       file.number());
    EXPECT_EQ(0, child.terminationStatus());
    EXPECT_THAT(complaintAbout(folder.file("shell")),
                testing::EndsWith(": No such file or directory"));
}

TEST_F(ChildProcessTest, AScriptIsStartedUnderItsPathToo)
{
    const std::string path = script("[ $0 = $D/script ] && exit 5");
    const Platform::Descriptor file(open(path.c_str(), O_PATH | O_CLOEXEC));
    EXPECT_EQ(5, ChildProcess(path, {}, file.number()).terminationStatus());
}

TEST_F(ChildProcessTest, AnOpenFileThatCannotRunIsReportedWithItsReason)
{
    const std::string plain = folder.write("plain", "");
    const Platform::Descriptor file(open(plain.c_str(), O_PATH | O_CLOEXEC));
    EXPECT_THROW(ChildProcess(plain, {}, file.number()), ChildProcessError);
}

// How it ends

TEST_F(ChildProcessTest, EveryExitStatusIsReported)
{
    const std::string program = script("exit $1");
    for (int status = 0; status <= 255; ++status)
        EXPECT_EQ(status, ChildProcess(program, {std::to_string(status)}).terminationStatus());
}

TEST_F(ChildProcessTest, ADeadlySignalIsReportedByItsNumber)
{
    for (const int signalNumber : {SIGTERM, SIGKILL, SIGPIPE})
        EXPECT_EQ(signalNumber, run("kill -" + std::to_string(signalNumber) + " $$"));
}

TEST_F(ChildProcessTest, TheStatusCanBeAskedForAgain)
{
    ChildProcess child(script("exit 7"), {});
    EXPECT_EQ(7, child.terminationStatus());
    EXPECT_EQ(7, child.terminationStatus());
    EXPECT_FALSE(child.isRunning());
    EXPECT_EQ("", child.collectErrorText());
}

TEST_F(ChildProcessTest, AChildCanBeWaitedForWhereItsSignalIsIgnored)
{
    const ScopedSignal ignored(SIGCHLD, SIG_IGN);
    EXPECT_EQ(3, run("exit 3"));
    struct sigaction after = {};
    sigaction(SIGCHLD, nullptr, &after);
    EXPECT_EQ(SIG_IGN, after.sa_handler);
}

TEST_F(ChildProcessTest, AChildThatNobodyWaitedForIsKilledWithItsGroup)
{
    {
        const ChildProcess child(script("sleep 100 & echo $! > $D/new; mv $D/new $D/pid; sleep 99"),
                                 {});
        waitForFile("pid");
    }
    const pid_t grandchild = std::stoi(read("pid"));
    // Its new parent may take a while to notice.
    const std::string stat = "/proc/" + std::to_string(grandchild) + "/stat";
    EXPECT_TRUE(Support::comesTrue([&] {
        return kill(grandchild, 0) != 0 || !fs::exists(stat) ||
               Support::readFile(stat).find(") Z ") != std::string::npos;
    }));
}

TEST_F(ChildProcessTest, WhatDoesNotStartIsReportedWithItsReason)
{
    const std::string missing = folder.file("missing");
    EXPECT_EQ("Unable to start " + missing + ": No such file or directory",
              complaintAbout(missing));
    EXPECT_EQ("Unable to start " + folder.path() + ": Permission denied",
              complaintAbout(folder.path()));
    const std::string plain = folder.write("plain", "exit 0\n");
    EXPECT_EQ("Unable to start " + plain + ": Permission denied", complaintAbout(plain));
    fs::permissions(plain, fs::perms::owner_all);
    EXPECT_EQ("Unable to start " + plain + ": Exec format error", complaintAbout(plain));
}

TEST_F(ChildProcessTest, AProgramIsNotLookedForInThePath)
{
    EXPECT_EQ("Unable to start true: No such file or directory", complaintAbout("true"));
}

TEST_F(ChildProcessTest, NoDescriptorIsLeftOpen)
{
    const auto openDescriptors = [] {
        return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
    };
    const auto before = openDescriptors();
    run("exit 0");
    complaintAbout(folder.file("missing"));
    EXPECT_EQ(before, openDescriptors());
}

TEST_F(ChildProcessTest, NoProcessIsLeftRunningOrUnwaitedFor)
{
    run("exit 0");
    complaintAbout(folder.file("missing"));
    EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG));
    EXPECT_EQ(ECHILD, errno);
}

// Its error text. A script that is to be heard waits a moment, for the look at whether it runs.

TEST_F(ChildProcessTest, ErrorTextIsCollectedByteForByte)
{
    ChildProcess child(script("sleep 0.2; printf 'one\\n\\377two\\n' >&2; echo lost"), {});
    EXPECT_EQ("one\n\xfftwo\n", child.collectErrorText());
    EXPECT_EQ(0, child.terminationStatus());
}

TEST_F(ChildProcessTest, ChildThatHasEndedAtTheFirstLookKeepsItsTextToItself)
{
    ChildProcess child(script("echo early >&2; exit 3"), {});
    waitForEndOf(child);
    EXPECT_EQ("", child.collectErrorText());
    EXPECT_EQ(3, child.terminationStatus());
}

TEST_F(ChildProcessTest, WholeTextIsThatOfAChildThatHasEndedToo)
{
    ChildProcess child(script("echo early >&2; exit 3"), {});
    waitForEndOf(child);
    EXPECT_EQ("early\n", child.collectWholeErrorText());
    EXPECT_EQ("", child.collectWholeErrorText());
    EXPECT_EQ(3, child.terminationStatus());
}

TEST_F(ChildProcessTest, TextFromBeforeTheFirstLookIsCollectedWhileTheChildRuns)
{
    ChildProcess child(script("echo early >&2; : > $D/written; sleep 0.3"), {});
    waitForFile("written");
    EXPECT_EQ("early\n", child.collectErrorText());
}

TEST_F(ChildProcessTest, ErrorTextWithoutEndIsReadToItsEndButNotKept)
{
    // "é" twice over the limit: of the one that lies across it nothing is kept.
    ChildProcess child(script("sleep 0.2; printf x >&2\n"
                              "yes é | tr -d '\\n' | head -c 40000000 >&2; exit 9"),
                       {});
    const std::string text = child.collectErrorText();
    EXPECT_EQ(ChildProcess::kMostErrorText - 1, text.size());
    EXPECT_TRUE(text.ends_with("é"));
    EXPECT_EQ(9, child.terminationStatus());
}

TEST_F(ChildProcessTest, TenMegabytesOfErrorTextBlockNobody)
{
    ChildProcess child(script("sleep 0.2; head -c 10485760 /dev/zero >&2; exit 9"), {});
    EXPECT_EQ(std::string(10485760, '\0'), child.collectErrorText());
    EXPECT_EQ(9, child.terminationStatus());
}

TEST_F(ChildProcessTest, AChildThatClosesItsErrorsIsStillWaitedFor)
{
    ChildProcess child(script("sleep 0.1; echo last >&2; exec 2>&-; sleep 0.3; exit 5"), {});
    EXPECT_EQ("last\n", child.collectErrorText());
    EXPECT_EQ(5, child.terminationStatus());
}

TEST_F(ChildProcessTest, ErrorTextEndsWhenTheLastWriterIsGone)
{
    // What the child leaves behind may still have something to say.
    ChildProcess child(script("(sleep 0.5; echo late >&2) & sleep 0.2; echo early >&2; exit 4"),
                       {});
    EXPECT_EQ("early\nlate\n", child.collectErrorText());
    EXPECT_EQ(4, child.terminationStatus());
}
