#include "Cancellation.h"

#include "MadeFiles.h"
#include "TemporaryFolder.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <unistd.h>

using namespace Platform;
using testing::ElementsAre;
using testing::ExitedWithCode;
using testing::IsEmpty;
using testing::KilledBySignal;

namespace {

/// Every case cancels a process of its own, for which the test's macros care.
class CancellationTest : public testing::Test {
protected:
    Support::TemporaryFolder folder;
};

} // namespace

TEST_F(CancellationTest, EachSignalRemovesTheFilesAndIsDeadly)
{
    for (const int signalNumber : {SIGTERM, SIGINT, SIGHUP}) {
        const std::string path = folder.write("made", "");
        EXPECT_EXIT(
            {
                cleanUpWhenCancelled();
                MadeFiles::add(path);
                raise(signalNumber);
            },
            KilledBySignal(signalNumber), "");
        EXPECT_THAT(folder.names(), IsEmpty());
    }
}

TEST_F(CancellationTest, AFileThatIsTakenOffTheListStays)
{
    const std::string removed = folder.write("removed", "");
    const std::string kept = folder.write("kept", "");
    EXPECT_EXIT(
        {
            cleanUpWhenCancelled();
            MadeFiles::add(removed);
            MadeFiles::add(kept);
            MadeFiles::forget(kept);
            MadeFiles::forget(folder.file("never on the list"));
            raise(SIGTERM);
        },
        KilledBySignal(SIGTERM), "");
    EXPECT_THAT(folder.names(), ElementsAre("kept"));
}

TEST_F(CancellationTest, ASignalThatTheParentIgnoresStaysIgnored)
{
    const std::string path = folder.write("made", "");
    EXPECT_EXIT(
        {
            std::signal(SIGHUP, SIG_IGN);
            cleanUpWhenCancelled();
            MadeFiles::add(path);
            raise(SIGHUP);
            _exit(7);
        },
        ExitedWithCode(7), "");
    EXPECT_THAT(folder.names(), ElementsAre("made"));
}

TEST_F(CancellationTest, WhoIsToBeKilledWithItsParentIsCancelledInstead)
{
    const auto signalAfter = [](int signalBefore, void (*termination)(int)) {
        std::signal(SIGTERM, termination);
        prctl(PR_SET_PDEATHSIG, signalBefore);
        cleanUpWhenCancelled();
        int signalNumber = 0;
        prctl(PR_GET_PDEATHSIG, &signalNumber);
        return signalNumber;
    };
    EXPECT_EXIT(_exit(signalAfter(SIGKILL, SIG_DFL)), ExitedWithCode(SIGTERM), "");
    EXPECT_EXIT(_exit(signalAfter(SIGKILL, SIG_IGN)), ExitedWithCode(SIGKILL), "");
    EXPECT_EXIT(_exit(signalAfter(SIGUSR1, SIG_DFL)), ExitedWithCode(SIGUSR1), "");
    EXPECT_EXIT(_exit(signalAfter(0, SIG_DFL)), ExitedWithCode(0), "");
}

TEST_F(CancellationTest, ADelayHoldsTheSignalsBackAndLosesNone)
{
    EXPECT_EXIT(
        {
            cleanUpWhenCancelled();
            {
                const CancellationDelay delay;
                raise(SIGTERM);
                // Has a delay of its own, which must not end this one.
                MadeFiles::add(folder.write("made while it waits", ""));
                folder.write("reached", "");
            }
            folder.write("beyond", "");
            _exit(8);
        },
        KilledBySignal(SIGTERM), "");
    EXPECT_THAT(folder.names(), ElementsAre("reached"));
}

TEST_F(CancellationTest, TheListSaysWhatItHasNoRoomFor)
{
    const auto isRight = [] {
        if (MadeFiles::add(std::string(1024, 'x')) || !MadeFiles::add(std::string(1023, 'x')))
            return false;
        for (int number = 2; number <= 8; ++number) {
            if (!MadeFiles::add(std::to_string(number)))
                return false;
        }
        if (MadeFiles::add("9"))
            return false;
        MadeFiles::forget("5");
        return MadeFiles::add("9");
    };
    EXPECT_EXIT(_exit(isRight() ? 0 : 1), ExitedWithCode(0), "");
}
