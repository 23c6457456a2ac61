#include "Bundle.h"

#include "TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace fs = std::filesystem;
using Platform::Bundle;

class BundleTest : public testing::Test {
protected:
    BundleTest() { fs::create_directories(folder.file("Contents/Linux")); }

    std::optional<std::string> find(std::string_view name) const
    {
        return Bundle::withPath(folder.path())->pathForAuxiliaryExecutable(name);
    }

    Support::TemporaryFolder folder;
};

TEST_F(BundleTest, OnlyADirectoryIsABundle)
{
    EXPECT_TRUE(Bundle::withPath(folder.path()));
    EXPECT_FALSE(Bundle::withPath(folder.write("file", "")));
    EXPECT_FALSE(Bundle::withPath(folder.file("missing")));
    EXPECT_FALSE(Bundle::withPath(""));
}

TEST_F(BundleTest, LooksInThePlatformFolderFirstThenInTheOtherThenAtTheRoot)
{
    fs::create_directories(folder.file("Contents/MacOS"));
    EXPECT_EQ(std::nullopt, find("toolkit"));
    const std::string atRoot = folder.writeScript("toolkit", "");
    EXPECT_EQ(atRoot, find("toolkit"));
    const std::string second = folder.writeScript("Contents/MacOS/toolkit", "");
    EXPECT_EQ(second, find("toolkit"));
    const std::string first = folder.writeScript("Contents/Linux/toolkit", "");
    EXPECT_EQ(first, find("toolkit"));
}

TEST_F(BundleTest, PassesOverWhatCannotBeExecuted)
{
    folder.write("Contents/Linux/toolkit", "");
    fs::create_directories(folder.file("toolkit"));
    EXPECT_EQ(std::nullopt, find("toolkit"));
}

TEST_F(BundleTest, PassesOverAFIFO)
{
    ASSERT_EQ(0, mkfifo(folder.file("toolkit").c_str(), 0755));
    EXPECT_EQ(std::nullopt, find("toolkit"));
}

TEST_F(BundleTest, FindsOnlyPlainFileNames)
{
    folder.writeScript("toolkit", "");
    EXPECT_EQ(std::nullopt, find(""));
    EXPECT_EQ(std::nullopt, find("../" + fs::path(folder.path()).filename().string() + "/toolkit"));
}
