#include "TrustedProgram.h"

#include "TemporaryFolder.h"

#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr uid_t kSomebody = 65534;
constexpr char kForeign[] = " belongs to neither root nor the running user";

/// A program three folders deep in a folder that only its maker may touch.
class TrustedProgramTest : public testing::Test {
protected:
    TrustedProgramTest()
    {
        fs::create_directories(folder.file("upper/lower"));
        program = folder.writeScript("upper/lower/program", "");
    }

    /// The objection to a path; empty when there is none.
    static std::string objectionTo(const std::string &path, uid_t runningUser = geteuid())
    {
        try {
            Platform::openTrustedProgram(path, runningUser);
        } catch (const Platform::UntrustedProgramError &error) {
            return error.what();
        }
        return {};
    }

    static void setMode(const std::string &path, mode_t mode)
    {
        ASSERT_EQ(0, chmod(path.c_str(), mode));
    }

    /// Gives it, or a link itself, to somebody else.
    static void giveAway(const std::string &path)
    {
        ASSERT_EQ(0, lchown(path.c_str(), kSomebody, kSomebody));
    }

    /// Makes a link at that name in the test's folder. @return its path
    std::string makeLink(const std::string &name, const std::string &target) const
    {
        fs::create_symlink(target, folder.file(name));
        return folder.file(name);
    }

    Support::TemporaryFolder folder;
    std::string upper = folder.file("upper");
    std::string lower = folder.file("upper/lower");
    std::string program;
};

/// The same where a second user is needed.
class ForeignProgramTest : public TrustedProgramTest {
protected:
    void SetUp() override
    {
        if (geteuid() != 0)
            GTEST_SKIP() << "only root can give files away";
    }
};

} // namespace

TEST_F(TrustedProgramTest, IsOpenAndKeepsItsPath)
{
    const auto opened = Platform::openTrustedProgram(program, geteuid());
    EXPECT_EQ(program, opened.path);
    struct stat file = {};
    struct stat wanted = {};
    ASSERT_EQ(0, fstat(opened.file.number(), &file));
    ASSERT_EQ(0, stat(program.c_str(), &wanted));
    EXPECT_EQ(wanted.st_ino, file.st_ino);
    EXPECT_EQ(FD_CLOEXEC, fcntl(opened.file.number(), F_GETFD));
}

TEST_F(TrustedProgramTest, MayBelongToRootOrToTheRunningUser)
{
    EXPECT_EQ("", objectionTo("/usr/bin/env", kSomebody)); // root's
    EXPECT_EQ("", objectionTo(program, geteuid()));
}

TEST_F(TrustedProgramTest, MayNotBelongToAnybodyElse)
{
    if (geteuid() == 0)
        giveAway(folder.path());
    EXPECT_EQ(folder.path() + kForeign, objectionTo(program, geteuid() == 0 ? 0 : geteuid() + 1));
}

TEST_F(ForeignProgramTest, FileAndEveryFolderOnTheWayCount)
{
    for (const std::string &path : {program, lower, upper}) {
        giveAway(path);
        EXPECT_EQ(path + kForeign, objectionTo(program));
        EXPECT_EQ("", objectionTo(program, kSomebody));
    }
}

TEST_F(TrustedProgramTest, NobodyElseMayWriteToFileOrFolders)
{
    for (const std::string &path : {program, lower, upper}) {
        setMode(path, 0757);
        EXPECT_EQ(path + " is writable by everyone", objectionTo(program));
        setMode(path, 0775);
        EXPECT_EQ(path + " is writable by its group", objectionTo(program));
        setMode(path, 0755);
        EXPECT_EQ("", objectionTo(program));
    }
}

TEST_F(TrustedProgramTest, AStickyFolderMayBeWritableOnlyIfItIsRoots)
{
    setMode(upper, 01777);
    EXPECT_EQ(geteuid() == 0 ? "" : upper + " is writable by everyone", objectionTo(program));
}

TEST_F(ForeignProgramTest, AStickyFolderOfTheRunningUsersMayNotBeWritable)
{
    setMode(upper, 01777);
    giveAway(upper);
    EXPECT_EQ(upper + " is writable by everyone", objectionTo(program, kSomebody));
}

TEST_F(TrustedProgramTest, AStickyProgramMayNotBeWritable)
{
    setMode(program, 01777);
    EXPECT_EQ(program + " is writable by everyone", objectionTo(program));
}

TEST_F(TrustedProgramTest, IsARegularFileThatMayBeExecuted)
{
    const std::string plain = folder.write("plain", "");
    EXPECT_EQ(plain + " may not be executed", objectionTo(plain));
    EXPECT_EQ(lower + " is not a regular file", objectionTo(lower));
    EXPECT_EQ(lower + "/missing: No such file or directory", objectionTo(lower + "/missing"));
    EXPECT_EQ(program + "/x: Not a directory", objectionTo(program + "/x"));
}

// Links

TEST_F(TrustedProgramTest, LinksAreFollowed)
{
    makeLink("upper/absolute", program);
    makeLink("upper/relative", "../upper/lower/program");
    makeLink("folder", "upper/lower");
    for (const std::string path : {"upper/absolute", "upper/relative", "folder/program"})
        EXPECT_EQ("", objectionTo(folder.file(path))) << path;
}

TEST_F(TrustedProgramTest, FoldersAtBothEndsOfALinkCount)
{
    const std::string link = makeLink("link", program);
    setMode(lower, 0777);
    EXPECT_EQ(lower + " is writable by everyone", objectionTo(link));

    const std::string safe = folder.writeScript("safe", "");
    setMode(lower, 0755);
    setMode(upper, 0777);
    EXPECT_EQ(upper + " is writable by everyone", objectionTo(makeLink("upper/link", safe)));
}

TEST_F(ForeignProgramTest, ALinkCountsItself)
{
    const std::string link = makeLink("link", program);
    setMode(folder.path(), 01777);
    EXPECT_EQ("", objectionTo(link));
    giveAway(link);
    EXPECT_EQ(link + kForeign, objectionTo(link));
}

TEST_F(TrustedProgramTest, LinksThatLeadInACircleEnd)
{
    makeLink("one", "two");
    makeLink("two", "one");
    EXPECT_TRUE(objectionTo(folder.file("one")).ends_with(": Too many levels of symbolic links"));
}

TEST_F(TrustedProgramTest, APathIsNotTakenByItsWords)
{
    // "deep/.." is the folder above the one that the link leads to.
    makeLink("deep", "upper/lower");
    EXPECT_EQ("", objectionTo(folder.file("deep/../lower//./program")));
    EXPECT_EQ(upper + "/program: No such file or directory",
              objectionTo(folder.file("deep/../program")));
}

TEST_F(TrustedProgramTest, ARelativePathBeginsAtTheWorkingDirectory)
{
    const fs::path before = fs::current_path();
    fs::current_path(lower);
    const std::string whenSafe = objectionTo("program");
    setMode(upper, 0777);
    const std::string whenOpen = objectionTo("program");
    fs::current_path(before);
    EXPECT_EQ("", whenSafe);
    EXPECT_EQ(upper + " is writable by everyone", whenOpen);
}
