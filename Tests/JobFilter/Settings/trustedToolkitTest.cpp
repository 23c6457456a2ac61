#include "toolkitPath.h"

#include "Environment.h"
#include "KLPrintOptions.h"
#include "MinimalPPD.h"
#include "TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr uid_t kSomebody = 65534;

class toolkitPathTest : public testing::Test {
protected:
    toolkitPathTest() { fs::create_directories(bundle + "/Contents/Linux"); }

    /// Looks for the toolkit of a PPD with these lines.
    std::optional<std::string> find(const std::string &ppdLines)
    {
        const std::string ppd = folder.write("queue.ppd", Support::minimalPPD(ppdLines));
        const Support::ScopedEnvironment environment("PPD", ppd);
        objection.reset();
        return toolkitPath(KLPrintOptions(""), &objection);
    }

    std::optional<std::string> findInBundle()
    {
        return find("*APDialogExtension: \"" + bundle + "\"\n");
    }

    std::string writeToolkit() const
    {
        return folder.writeScript("Panel.bundle/Contents/Linux/toolkit", "");
    }

    Support::TemporaryFolder folder;
    std::string bundle = folder.file("Panel.bundle");
    std::string programFolder = bundle + "/Contents/Linux";
    std::optional<std::string> objection;
};

} // namespace

// The chain from the PPD to the program

TEST_F(toolkitPathTest, IsTheAuxiliaryExecutableOfTheBundle)
{
    const std::string toolkit = writeToolkit();
    EXPECT_EQ(toolkit, findInBundle());
    EXPECT_EQ(std::nullopt, objection);
}

TEST_F(toolkitPathTest, IsNothingWithoutTheAttribute)
{
    writeToolkit();
    EXPECT_EQ(std::nullopt, find(""));
    EXPECT_EQ(std::nullopt, objection);
}

TEST_F(toolkitPathTest, IsNothingWithoutTheBundle)
{
    EXPECT_EQ(std::nullopt, find("*APDialogExtension: \"" + folder.file("missing") + "\"\n"));
    EXPECT_EQ(std::nullopt, objection);
}

TEST_F(toolkitPathTest, IsNothingWithoutTheExecutable)
{
    EXPECT_EQ(std::nullopt, findInBundle());
    folder.write("Panel.bundle/Contents/Linux/toolkit", "not executable");
    EXPECT_EQ(std::nullopt, findInBundle());
    EXPECT_EQ(std::nullopt, objection);
}

TEST_F(toolkitPathTest, IsNothingWhenThereIsAnObjection)
{
    const std::string toolkit = writeToolkit();
    ASSERT_EQ(0, chmod(toolkit.c_str(), 0757));
    EXPECT_EQ(std::nullopt, findInBundle());
    EXPECT_EQ(toolkit + " is writable by everyone", objection);
}

TEST_F(toolkitPathTest, ObjectionNeedsNoPlace)
{
    ASSERT_EQ(0, chmod(writeToolkit().c_str(), 0757));
    folder.write("queue.ppd", Support::minimalPPD("*APDialogExtension: \"" + bundle + "\"\n"));
    const Support::ScopedEnvironment environment("PPD", folder.file("queue.ppd"));
    EXPECT_EQ(std::nullopt, toolkitPath(KLPrintOptions("")));
}

// Which programs may run

TEST_F(toolkitPathTest, ProgramsOfRootAndOfTheRunningUserMayRun)
{
    EXPECT_EQ(std::nullopt, objectionToProgram(writeToolkit(), geteuid()));
    EXPECT_EQ(std::nullopt, objectionToProgram("/bin/ls", kSomebody)); // root's
}

TEST_F(toolkitPathTest, ProgramsOfSomeoneElseMayNotRun)
{
    const std::string toolkit = writeToolkit();
    uid_t runningUser = geteuid();
    if (runningUser == 0)
        ASSERT_EQ(0, chown(toolkit.c_str(), kSomebody, kSomebody));
    else
        ++runningUser;
    EXPECT_EQ(toolkit + " belongs to neither root nor the running user",
              objectionToProgram(toolkit, runningUser));
}

TEST_F(toolkitPathTest, OnlyFilesThatMayBeExecutedMayRun)
{
    const std::string plain = folder.write("plain", "");
    EXPECT_EQ(plain + " may not be executed", objectionToProgram(plain, geteuid()));
    EXPECT_EQ(bundle + " is not a regular file", objectionToProgram(bundle, geteuid()));
    const std::string missing = folder.file("missing");
    EXPECT_EQ(missing + ": No such file or directory", objectionToProgram(missing, geteuid()));
}

TEST_F(toolkitPathTest, AFolderThatEveryoneMayWriteToMakesAnyProgramUntrustworthy)
{
    const std::string toolkit = writeToolkit();
    ASSERT_EQ(0, chmod(programFolder.c_str(), 0777));
    EXPECT_EQ(programFolder + " is writable by everyone", objectionToProgram(toolkit, geteuid()));
}

TEST_F(toolkitPathTest, AStickyFolderMayBeWritableByEveryone)
{
    const std::string toolkit = writeToolkit();
    ASSERT_EQ(0, chmod(programFolder.c_str(), 01777));
    EXPECT_EQ(std::nullopt, objectionToProgram(toolkit, geteuid()));
}

TEST_F(toolkitPathTest, AGroupMayWrite)
{
    const std::string toolkit = writeToolkit();
    ASSERT_EQ(0, chmod(toolkit.c_str(), 0775));
    ASSERT_EQ(0, chmod(programFolder.c_str(), 0775));
    EXPECT_EQ(std::nullopt, objectionToProgram(toolkit, geteuid()));
}

TEST_F(toolkitPathTest, BothEndsOfALinkCount)
{
    const std::string open = folder.file("open");
    fs::create_directory(open);
    ASSERT_EQ(0, chmod(open.c_str(), 0777));

    const std::string linkToOpen = folder.file("link");
    fs::create_symlink(folder.writeScript("open/program", ""), linkToOpen);
    EXPECT_EQ(fs::canonical(open).string() + " is writable by everyone",
              objectionToProgram(linkToOpen, geteuid()));

    fs::create_symlink(writeToolkit(), open + "/link");
    EXPECT_EQ(open + " is writable by everyone", objectionToProgram(open + "/link", geteuid()));
}

TEST_F(toolkitPathTest, APlainFileNameLiesInTheWorkingDirectory)
{
    const std::string toolkit = writeToolkit();
    const fs::path before = fs::current_path();
    fs::current_path(programFolder);
    const auto whenSafe = objectionToProgram("toolkit", geteuid());
    ASSERT_EQ(0, chmod(programFolder.c_str(), 0777));
    const auto whenOpen = objectionToProgram("toolkit", geteuid());
    fs::current_path(before);
    EXPECT_EQ(std::nullopt, whenSafe);
    EXPECT_EQ(". is writable by everyone", whenOpen);
}
