#include "inBackground.h"

#include "TemporaryFolder.h"

#include <QObject>

#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

namespace {

using std::chrono::steady_clock;

/// Answers nothing for a minute.
int silence()
{
    std::this_thread::sleep_for(std::chrono::minutes(1));
    return 0;
}

[[noreturn]] void endWithQuestionAndDeed(const std::string &file)
{
    QObject window;
    ask(&window, silence, [](int) {});
    carryOut(
        &window,
        [file] {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            Support::writeFile(file, "kept");
            return 0;
        },
        [](int) {});
    endProgram(3);
}

TEST(InBackgroundTest, EndOfTheProgramWaitsForDeedsAndForNoQuestion)
{
    const Support::TemporaryFolder folder;
    const auto begin = steady_clock::now();
    EXPECT_EXIT(endWithQuestionAndDeed(folder.file("kept")), testing::ExitedWithCode(3), "");
    EXPECT_LT(steady_clock::now() - begin, std::chrono::seconds(30));
    EXPECT_TRUE(std::filesystem::exists(folder.file("kept")));
}

TEST(InBackgroundTest, ProgramEndsAsOthersDoWhenNothingIsAsked)
{
    EXPECT_EXIT(
        {
            std::atexit([] { std::fputs("tidied up", stderr); });
            endProgram(0);
        },
        testing::ExitedWithCode(0), "tidied up");
}

} // namespace
