#include "MemoryShortage.h"

#include "Cancellation.h"
#include "MadeFiles.h"
#include "TemporaryFolder.h"

#include <cstdint>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <new>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr char kLine[] = "CRIT: no room\n";
volatile std::size_t tooMuch = SIZE_MAX; // all there can be; on 32 bits half of it is to be had
void *volatile memory;                   // seen to be used: the compiler leaves no request out

/// Asks C++ and C in turn for memory that cannot be had.
void askForTooMuch(int way)
{
    switch (way) {
    case 0:
        memory = ::operator new(tooMuch);
        break;
    case 1:
        memory = std::malloc(tooMuch);
        break;
    case 2:
        memory = std::calloc(tooMuch, 2);
        break;
    case 3:
        memory = std::realloc(nullptr, tooMuch);
        break;
    default:
        memory = std::aligned_alloc(64, tooMuch);
        break;
    }
}

} // namespace

TEST(MemoryShortageTest, EndsTheProcessWithTheLineWhoeverAsked)
{
    for (int way = 0; way < 5; ++way) {
        EXPECT_EXIT(
            {
                Platform::endWhenMemoryRunsOut(kLine);
                askForTooMuch(way);
            },
            testing::ExitedWithCode(EXIT_FAILURE), "^CRIT: no room\n$")
            << way;
    }
}

TEST(MemoryShortageTest, UntilThenTheCallerIsTold)
{
    EXPECT_THROW(askForTooMuch(0), std::bad_alloc);
    askForTooMuch(1);
    EXPECT_EQ(nullptr, memory);
}

TEST(MemoryShortageTest, NoMemoryAtAllIsNoShortage)
{
    EXPECT_EXIT(
        {
            Platform::endWhenMemoryRunsOut(kLine);
            memory = std::realloc(std::malloc(1), tooMuch - tooMuch);
            std::exit(EXIT_SUCCESS);
        },
        testing::ExitedWithCode(EXIT_SUCCESS), "^$");
}

TEST(MemoryShortageTest, ChildrenAreNotConcerned)
{
    EXPECT_EXIT(
        {
            Platform::endWhenMemoryRunsOut(kLine);
            const pid_t child = fork();
            if (child == 0)
                _exit(std::malloc(tooMuch) == nullptr ? 7 : 8);
            int status = 0;
            waitpid(child, &status, 0);
            std::exit(WEXITSTATUS(status));
        },
        testing::ExitedWithCode(7), "^$");
}

TEST(MemoryShortageTest, UnfinishedFilesGoAndOthersStay)
{
    const Support::TemporaryFolder folder;
    const std::string job = folder.write("job", "pages");
    const std::string half = folder.write("half", "half a page");
    EXPECT_EXIT(
        {
            Platform::endWhenMemoryRunsOut(kLine);
            for (const std::string &path : {job, half})
                Platform::MadeFiles::add(path);
            Platform::MadeFiles::setUnfinished(half, true);
            askForTooMuch(1);
        },
        testing::ExitedWithCode(EXIT_FAILURE), "^CRIT: no room\n$");
    EXPECT_THAT(folder.names(), testing::ElementsAre("job"));
}
