#include "Fork.h"

#include "Cancellation.h"
#include "MadeFiles.h"
#include "ProcessorTime.h"
#include "TemporaryFolder.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Platform;
using testing::ElementsAre;

namespace {

class ForkTest : public testing::Test {
protected:
    ~ForkTest() override { endWhenCancelled(0); }

    /// Waits for a child. @return what wait(2) says about it
    static int statusOf(pid_t child)
    {
        int status = 0;
        EXPECT_EQ(child, waitpid(child, &status, 0));
        return status;
    }

    Support::TemporaryFolder folder;
};

} // namespace

TEST_F(ForkTest, TheChildDoesTheWorkAsTheLeaderOfAGroup)
{
    const int status = statusOf(forkChild([] { _exit(getpgrp() == getpid() ? 7 : 1); }));
    EXPECT_EQ(7, WEXITSTATUS(status));
}

TEST_F(ForkTest, WorkThatReturnsHasFailed)
{
    EXPECT_EQ(EXIT_FAILURE, WEXITSTATUS(statusOf(forkChild([] {}))));
}

TEST_F(ForkTest, AChildThatIsTerminatedLeavesTheFilesOfTheRunAlone)
{
    const std::string made = folder.write("made", "");
    const auto runItsChild = [&] {
        cleanUpWhenCancelled();
        MadeFiles::add(made);
        const int status = statusOf(forkChild([] { raise(SIGTERM); }));
        MadeFiles::forget(made);
        _exit(WIFSIGNALED(status) ? WTERMSIG(status) : 0);
    };
    EXPECT_EXIT(runItsChild(), testing::ExitedWithCode(SIGTERM), "");
    EXPECT_THAT(folder.names(), ElementsAre("made"));
}

TEST_F(ForkTest, AChildWhoseProcessorTimeIsOverSaysNothingAndRemovesNothing)
{
    const std::string made = folder.write("made", "");
    const auto runItsChild = [&] {
        endAfterProcessorTime(std::chrono::seconds(10'000), "The parent's time is over.\n");
        MadeFiles::add(made);
        MadeFiles::setUnfinished(made, true);
        const int status = statusOf(forkChild([] { raise(SIGXCPU); }));
        _exit(WIFSIGNALED(status) ? WTERMSIG(status) : 0);
    };
    EXPECT_EXIT(runItsChild(), testing::ExitedWithCode(SIGXCPU), "^$");
    EXPECT_THAT(folder.names(), ElementsAre("made"));
}

TEST_F(ForkTest, AChildIsEndedAndWaitedFor)
{
    const pid_t child = forkChild([] { pause(); });
    endForkedChild(child);
    EXPECT_EQ(-1, kill(child, 0));
    EXPECT_EQ(ESRCH, errno);
}

TEST_F(ForkTest, ASignalThatIsIgnoredStaysIgnored)
{
    const auto runItsChild = [] {
        std::signal(SIGHUP, SIG_IGN);
        const auto work = [] {
            raise(SIGHUP);
            _exit(9);
        };
        _exit(WEXITSTATUS(statusOf(forkChild(work))));
    };
    EXPECT_EXIT(runItsChild(), testing::ExitedWithCode(9), "");
}

TEST_F(ForkTest, TheChildIsKilledAsSoonAsItsParentHasEnded)
{
    int signalNumber = 0;
    const auto work = [&] {
        prctl(PR_GET_PDEATHSIG, &signalNumber);
        _exit(signalNumber);
    };
    EXPECT_EQ(SIGKILL, WEXITSTATUS(statusOf(forkChild(work))));
}
