#include "TemporaryFolder.h"

#include <array>
#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

/// Another process that has a temporary folder and never comes to remove it.
class Owner {
public:
    Owner()
    {
        std::array<int, 2> ends = {};
        EXPECT_EQ(0, pipe(ends.data()));
        _process = fork();
        if (_process == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            const Support::TemporaryFolder folder;
            folder.write("file", "x");
            static_cast<void>(!write(ends[1], folder.path().c_str(), folder.path().size()));
            close(ends[1]);
            for (;;)
                pause();
        }
        close(ends[1]);
        std::array<char, 1024> text = {};
        EXPECT_GT(read(ends[0], text.data(), text.size() - 1), 0);
        close(ends[0]);
        path = text.data();
    }
    ~Owner()
    {
        end();
        fs::remove_all(path);
    }
    Owner(const Owner &) = delete;
    Owner &operator=(const Owner &) = delete;

    void end()
    {
        if (_process != 0) {
            kill(_process, SIGKILL);
            waitpid(_process, nullptr, 0);
        }
        _process = 0;
    }

    std::string path;

private:
    pid_t _process;
};

} // namespace

TEST(TemporaryFolderTest, TheFirstOneRemovesThoseOfKilledProcessesAndNoOthers)
{
    const Owner living;
    Owner killed;
    killed.end();
    ASSERT_TRUE(fs::exists(killed.path));

    const Support::TemporaryFolder folder;
    EXPECT_FALSE(fs::exists(killed.path));
    EXPECT_TRUE(fs::exists(living.path));
    EXPECT_TRUE(fs::exists(folder.path()));
}

TEST(PackagedFile, ThatIsNotThereNamesItsPackage)
{
    const Support::TemporaryFolder folder;
    const std::string path = folder.write("brought", "");
    EXPECT_EQ(path, Support::packagedFile(path, "wanted-data"));
    EXPECT_THAT([&] { Support::packagedFile(folder.file("other"), "wanted-data"); },
                testing::ThrowsMessage<std::runtime_error>("no " + folder.file("other") +
                                                           ": the package wanted-data brings it"));
}
