#include "ProcessorTime.h"

#include "Cancellation.h"
#include "MadeFiles.h"
#include "TemporaryFolder.h"

#include <csignal>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

constexpr char kLine[] = "CRIT: no time\n";
constexpr std::chrono::seconds kOneSecond(1);
constexpr std::chrono::seconds kHours(10'000);

/// Takes processor time, for ever if nobody ends it.
[[noreturn]] void work()
{
    for (volatile unsigned count = 0;;)
        count = count + 1;
}

void setBound(rlim_t seconds)
{
    rlimit limit = {};
    getrlimit(RLIMIT_CPU, &limit);
    limit.rlim_cur = seconds;
    setrlimit(RLIMIT_CPU, &limit);
}

} // namespace

TEST(ProcessorTimeTest, EndsTheProcessWithTheLineAndRemovesUnfinishedFiles)
{
    const Support::TemporaryFolder folder;
    const std::string job = folder.write("job", "pages");
    const std::string half = folder.write("half", "half a page");
    EXPECT_EXIT(
        {
            for (const std::string &path : {job, half})
                Platform::MadeFiles::add(path);
            Platform::MadeFiles::setUnfinished(half, true);
            Platform::endAfterProcessorTime(kOneSecond, kLine);
            work();
        },
        testing::ExitedWithCode(EXIT_FAILURE), "^CRIT: no time\n$");
    EXPECT_THAT(folder.names(), testing::ElementsAre("job"));
}

TEST(ProcessorTimeTest, ALowerBoundOfTheSystemsHolds)
{
    EXPECT_EXIT(
        {
            setBound(1);
            Platform::endAfterProcessorTime(kHours, kLine);
            work();
        },
        testing::ExitedWithCode(EXIT_FAILURE), "^CRIT: no time\n$");
}

TEST(ProcessorTimeTest, ItDoesNotComeBetweenAFileAndItsPlaceOnTheList)
{
    EXPECT_EXIT(
        {
            Platform::endAfterProcessorTime(kHours, kLine);
            {
                const Platform::CancellationDelay delay;
                raise(SIGXCPU);
                [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, "done, ", 6);
            }
            std::exit(EXIT_SUCCESS);
        },
        testing::ExitedWithCode(EXIT_FAILURE), "^done, CRIT: no time\n$");
}
