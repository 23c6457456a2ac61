#include "ChildMessages.h"

#include "Cancellation.h"
#include "Waiting.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

using Platform::ChildMessage;
using Platform::ChildMessageSender;
using Platform::ChildReport;
using Platform::messagesFromChild;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;
using Messages = std::vector<ChildMessage>;

/// Far more time than any work here needs.
Platform::ChildLimits ample()
{
    return {.deadline = Clock::now() + 60s, .silence = 60s};
}

/// Before this a limit of less than a second must have taken effect, on a busy machine too.
constexpr auto kSoon = 10s;

/// The error's description, or "none".
std::string errorOf(const ChildReport &report)
{
    return report.error ? report.error->description().value_or("(null)") : "none";
}

/// Whether the process of that id has gone, or goes within a second.
bool isGone(pid_t process)
{
    const auto isNone = [process] {
        waitpid(process, nullptr, WNOHANG); // an orphan may have become the test's to bury
        return kill(process, 0) != 0 && errno == ESRCH;
    };
    return Support::comesTrue(isNone, 1s);
}

/// The process that a report's first message names.
pid_t processIn(const ChildReport &report)
{
    return std::stoi(report.messages.at(0).text);
}

} // namespace

TEST(ChildMessagesTest, MessagesComeInOrder)
{
    const auto report = messagesFromChild(
        [](const ChildMessageSender &sender) {
            sender.send('a', "one");
            sender.send('b');
            sender.send('a', std::string("t\0wo\n", 5));
        },
        ample());
    EXPECT_EQ("none", errorOf(report));
    EXPECT_EQ((Messages{{'a', "one"}, {'b', ""}, {'a', std::string("t\0wo\n", 5)}}),
              report.messages);
}

TEST(ChildMessagesTest, WorkThatSaysNothingSucceeds)
{
    const auto report = messagesFromChild([](const ChildMessageSender &) {}, ample());
    EXPECT_EQ("none", errorOf(report));
    EXPECT_TRUE(report.messages.empty());
}

TEST(ChildMessagesTest, MessageLongerThanAPipeHoldsComesWhole)
{
    const std::string text(300'000, 'x');
    const auto report = messagesFromChild(
        [&](const ChildMessageSender &sender) { sender.send('a', text); }, ample());
    EXPECT_EQ("none", errorOf(report));
    EXPECT_EQ((Messages{{'a', text}}), report.messages);
}

TEST(ChildMessagesTest, ExceptionIsReportedBehindTheMessages)
{
    const auto report = messagesFromChild(
        [](const ChildMessageSender &sender) {
            sender.send('a', "one");
            throw std::runtime_error("server is down");
        },
        ample());
    EXPECT_EQ("server is down", errorOf(report));
    EXPECT_EQ((Messages{{'a', "one"}}), report.messages);
}

TEST(ChildMessagesTest, ExceptionWithoutWordsIsAnErrorAllTheSame)
{
    const auto report = messagesFromChild(
        [](const ChildMessageSender &) { throw std::runtime_error(""); }, ample());
    EXPECT_EQ("unknown reason", errorOf(report));
}

TEST(ChildMessagesTest, CrashIsReportedBehindTheMessages)
{
    const auto report = messagesFromChild(
        [](const ChildMessageSender &sender) {
            sender.send('a', "one");
            raise(SIGKILL);
        },
        ample());
    EXPECT_EQ("The answer ended too early", errorOf(report));
    EXPECT_EQ((Messages{{'a', "one"}}), report.messages);
}

TEST(ChildMessagesTest, SilentChildIsKilledAtTheSilenceLimit)
{
    auto limits = ample();
    limits.silence = 100ms;
    const auto begin = Clock::now();
    const auto report = messagesFromChild(
        [](const ChildMessageSender &sender) {
            sender.send('p', std::to_string(getpid()));
            for (;;)
                pause();
        },
        limits);
    EXPECT_EQ("No answer in time", errorOf(report));
    EXPECT_GE(Clock::now() - begin, 100ms);
    EXPECT_LT(Clock::now() - begin, kSoon);
    EXPECT_TRUE(isGone(processIn(report)));
}

TEST(ChildMessagesTest, ChildThatIgnoresTerminationIsKilledTheSame)
{
    auto limits = ample();
    limits.silence = 100ms;
    const auto report = messagesFromChild(
        [](const ChildMessageSender &sender) {
            std::signal(SIGTERM, SIG_IGN);
            sender.send('p', std::to_string(getpid()));
            for (;;)
                pause();
        },
        limits);
    EXPECT_TRUE(isGone(processIn(report)));
}

TEST(ChildMessagesTest, EachMessageStartsTheSilenceAnew)
{
    auto limits = ample();
    limits.silence = 1s;
    const auto report = messagesFromChild(
        [](const ChildMessageSender &sender) {
            for (int number = 0; number < 6; ++number) {
                std::this_thread::sleep_for(250ms);
                sender.send('a');
            }
        },
        limits);
    EXPECT_EQ("none", errorOf(report));
    EXPECT_EQ(6U, report.messages.size());
}

TEST(ChildMessagesTest, TalkingChildIsKilledAtTheDeadline)
{
    auto limits = ample();
    const auto begin = Clock::now();
    limits.deadline = begin + 300ms;
    const auto report = messagesFromChild(
        [](const ChildMessageSender &sender) {
            for (;;) {
                sender.send('p', std::to_string(getpid()));
                std::this_thread::sleep_for(10ms);
            }
        },
        limits);
    EXPECT_EQ("No answer in time", errorOf(report));
    EXPECT_GE(Clock::now() - begin, 300ms);
    EXPECT_LT(Clock::now() - begin, kSoon);
    EXPECT_TRUE(isGone(processIn(report)));
}

TEST(ChildMessagesTest, PartOfAMessageIsNoSignOfLife)
{
    auto limits = ample();
    limits.silence = 300ms;
    const auto report = messagesFromChild(
        [](const ChildMessageSender &) {
            // Byte by byte, past the sender, whose descriptor is the one above standard error.
            for (;;) {
                if (write(STDERR_FILENO + 1, "aaaa", 1) != 1)
                    return;
                std::this_thread::sleep_for(20ms);
            }
        },
        limits);
    EXPECT_EQ("No answer in time", errorOf(report));
    EXPECT_TRUE(report.messages.empty());
}

TEST(ChildMessagesTest, PassedDeadlineStartsNoChild)
{
    auto limits = ample();
    limits.deadline = Clock::now();
    const auto report =
        messagesFromChild([](const ChildMessageSender &sender) { sender.send('a'); }, limits);
    EXPECT_EQ("No time left", errorOf(report));
    EXPECT_TRUE(report.messages.empty());
}

TEST(ChildMessagesTest, EndlessTalkIsCutOff)
{
    auto limits = ample();
    limits.messageBytes = 100'000;
    const auto report = messagesFromChild(
        [](const ChildMessageSender &sender) {
            for (;;)
                sender.send('a');
        },
        limits);
    EXPECT_EQ("The answer is too long", errorOf(report));
    EXPECT_LE(report.messages.size(), 20'000U); // five bytes each
}

TEST(ChildMessagesTest, HungryChildGetsNoMoreMemory)
{
    const auto report = messagesFromChild(
        [](const ChildMessageSender &sender) {
            constexpr std::size_t kBlock = std::size_t{1} << 20;
            for (int number = 0; number < 1000; ++number) {
                if (mmap(nullptr, kBlock, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1,
                         0) == MAP_FAILED)
                    throw std::bad_alloc();
                sender.send('a');
            }
        },
        ample());
    EXPECT_NE("none", errorOf(report));
    EXPECT_GE(report.messages.size(), 32U);
    EXPECT_LE(report.messages.size(), 64U);
}

TEST(ChildMessagesTest, ChildHoldsNoFileOfTheParent)
{
    const int file = open("/dev/null", O_RDONLY);
    ASSERT_GT(file, STDERR_FILENO);
    dup2(file, 200);
    const auto report = messagesFromChild(
        [](const ChildMessageSender &sender) {
            for (int descriptor = STDERR_FILENO + 2; descriptor < 1024; ++descriptor) {
                if (fcntl(descriptor, F_GETFD) >= 0)
                    sender.send('o', std::to_string(descriptor));
            }
            for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO})
                sender.send('s', std::filesystem::read_symlink("/proc/self/fd/" +
                                                               std::to_string(descriptor))
                                     .string());
        },
        ample());
    EXPECT_EQ((Messages{{'s', "/dev/null"}, {'s', "/dev/null"}}), report.messages);
    close(200);
    close(file);
}

namespace {

/// What the processes of a cancelled run tell the test.
struct Shared {
    volatile pid_t child = 0;
    volatile bool childWasTerminated = false;
};
Shared *shared = nullptr;

/// A run that waits for a child, whose number comes as soon as it works.
class WaitingRun {
public:
    WaitingRun()
    {
        shared = new (mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE,
                           MAP_SHARED | MAP_ANONYMOUS, -1, 0)) Shared;
        _run = fork();
        if (_run == 0) {
            Platform::cleanUpWhenCancelled();
            messagesFromChild(&waitForTermination, ample());
            _exit(0);
        }
        EXPECT_TRUE(Support::comesTrue([] { return shared->child != 0; }));
    }

    /// Sends the signal and waits for the run to end. @return the signal that it died by
    int endBy(int signalNumber)
    {
        int status = 0;
        kill(_run, signalNumber);
        waitpid(_run, &status, 0);
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

private:
    static void waitForTermination(const ChildMessageSender &)
    {
        std::signal(SIGTERM, [](int) {
            shared->childWasTerminated = true;
            _exit(0);
        });
        shared->child = getpid();
        for (;;)
            pause();
    }

    pid_t _run;
};

} // namespace

TEST(ChildMessagesTest, CancelledRunEndsTheChildAndDiesByTheSignal)
{
    WaitingRun run;
    EXPECT_EQ(SIGTERM, run.endBy(SIGTERM));
    EXPECT_TRUE(shared->childWasTerminated);
    EXPECT_TRUE(isGone(shared->child));
}

TEST(ChildMessagesTest, KilledRunLeavesNoChild)
{
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    WaitingRun run;
    EXPECT_EQ(SIGKILL, run.endBy(SIGKILL));
    EXPECT_TRUE(isGone(shared->child));
}
