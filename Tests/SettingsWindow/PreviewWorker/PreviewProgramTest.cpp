// The program that opens documents, without a window.

#include "Descriptor.h"
#include "PreviewMessages.h"
#include "Program.h"
#include "RunningProcesses.h"
#include "TemporaryFolder.h"
#include "Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <sys/wait.h>

namespace {

Support::ProgramResult answersTo(const std::string &requests)
{
    return Support::runProgram({.arguments = {KL_PREVIEW}, .input = requests});
}

std::string requestOf(const PreviewRequest &request)
{
    return bytesOf(request).toStdString();
}

TEST(PreviewProgramTest, EndsWhenTheWindowSaysNoMore)
{
    const auto result = answersTo("");
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_EQ("", result.output);
}

TEST(PreviewProgramTest, RefusesRequestsThatAreNone)
{
    EXPECT_EQ(1, answersTo("GET / HTTP/1.0\r\n\r\n").exitStatus);
}

TEST(PreviewProgramTest, DrawsNothingOfNoDocument)
{
    const auto result = answersTo(requestOf(PreviewRequests::Draw{0, {10, 10}}));
    EXPECT_EQ(bytesOf(PreviewAnswers::Failed{Failure::NotDrawn}).toStdString(), result.output);
    EXPECT_EQ(0, result.exitStatus);
}

TEST(PreviewProgramTest, SaysWhatItIs)
{
    const auto version = Support::runProgram({.arguments = {KL_PREVIEW, "--version"}});
    EXPECT_EQ("jobfilter-preview " KL_VERSION "\n", version.output);
    EXPECT_EQ(0, version.exitStatus);
    const auto help = Support::runProgram({.arguments = {KL_PREVIEW, "--help"}});
    EXPECT_THAT(help.output, testing::HasSubstr("jobfilter-settings(1) starts it"));
    EXPECT_EQ(0, help.exitStatus);
}

/// A window that only starts the program, with the folder for its temporary files.
pid_t startWindow(const std::string &requests, const std::string &folder)
{
    const pid_t window = fork();
    if (window != 0)
        return window;
    setenv("PPD", KL_SAMPLE_PPD, 1);
    setenv("TMPDIR", folder.c_str(), 1);
    execlp("sh", "sh", "-c", R"("$0" <"$1" & wait)", KL_PREVIEW, requests.c_str(), nullptr);
    _exit(EXIT_FAILURE);
}

TEST(PreviewProgramTest, EndsWithAWindowThatIsKilledAndTakesTheToolkitAlong)
{
    const Support::TemporaryFolder folder;
    const std::string temporary = folder.file("temporary");
    std::filesystem::create_directories(temporary);
    std::filesystem::create_directories(folder.file("Sleeping.bundle/Contents/Linux"));
    folder.writeScript("Sleeping.bundle/Contents/Linux/toolkit", "exec sleep 100\n");
    const std::string requests = folder.file("requests");
    ASSERT_EQ(0, mkfifo(requests.c_str(), 0600));
    const Platform::Descriptor pipe(open(requests.c_str(), O_RDWR | O_CLOEXEC));

    const pid_t window = startWindow(requests, temporary);
    PreviewRequests::Prepare prepare = {.optionString = "com.kalmira.pde.watermark.text=DRAFT",
                                        .documentPath = {},
                                        .toolkitBundle =
                                            QString::fromStdString(folder.file("Sleeping.bundle")),
                                        .userName = {},
                                        .title = {},
                                        .memory = qint64{1} << 30,
                                        .writing = qint64{1} << 30,
                                        .pages = 100,
                                        .preparingSeconds = 100,
                                        .drawingSeconds = 100};
    const std::string bytes = requestOf(prepare);
    ASSERT_EQ(static_cast<ssize_t>(bytes.size()), write(pipe.number(), bytes.data(), bytes.size()));
    const auto processes = [&temporary] { return Support::processesStartedWith(temporary).size(); };
    ASSERT_TRUE(Support::comesTrue([&] { return processes() >= 4; })); // with toolkit and guard

    kill(window, SIGKILL);
    waitpid(window, nullptr, 0);
    EXPECT_TRUE(Support::comesTrue([&] { return processes() == 0; }));
    EXPECT_FALSE(std::filesystem::exists(temporary + "/document.pdf"));
}

} // namespace
