#include "MadeFiles.h"

#include "Cancellation.h"
#include "TemporaryFolder.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace Platform;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::KilledBySignal;

namespace {

class MadeFilesTest : public testing::Test {
protected:
    ~MadeFilesTest() override { MadeFiles::forget(path); }

    Descriptor openFile() const { return Descriptor(open(path.c_str(), O_RDWR | O_CLOEXEC)); }

    /// Puts the file on the list and holds it.
    void addHeld() const
    {
        ASSERT_TRUE(MadeFiles::add(path));
        ASSERT_TRUE(MadeFiles::hold(path, openFile()));
    }

    /// Gives the file's name to another one.
    void replace() const { fs::rename(folder.write("another", "another's"), path); }

    /// What is read of the file; "not opened" when it cannot be.
    std::string read() const
    {
        const Stream stream = MadeFiles::openForReading(path);
        if (!stream)
            return "not opened";
        std::array<char, 100> bytes = {};
        return {bytes.data(), std::fread(bytes.data(), 1, bytes.size(), stream.get())};
    }

    Support::TemporaryFolder folder;
    std::string path = folder.write("made", "ours");
};

} // namespace

TEST_F(MadeFilesTest, AHeldFileIsReadFromItsStartEachTime)
{
    addHeld();
    EXPECT_EQ("ours", read());
    EXPECT_EQ("ours", read());
}

TEST_F(MadeFilesTest, AHeldFileIsReadWhateverHasItsName)
{
    addHeld();
    replace();
    EXPECT_EQ("ours", read());
    fs::remove(path);
    EXPECT_EQ("ours", read());
}

TEST_F(MadeFilesTest, AFileThatIsNotHeldIsNotRead)
{
    EXPECT_EQ("not opened", read());
    MadeFiles::add(path);
    EXPECT_EQ("not opened", read());
}

TEST_F(MadeFilesTest, TheStreamIsNotInheritedByChildren)
{
    addHeld();
    EXPECT_EQ(FD_CLOEXEC, fcntl(fileno(MadeFiles::openForReading(path).get()), F_GETFD));
}

TEST_F(MadeFilesTest, OnlyAFileOfTheListCanBeHeld)
{
    EXPECT_FALSE(MadeFiles::hold(path, openFile()));
    MadeFiles::add(path);
    EXPECT_FALSE(MadeFiles::hold(path, Descriptor()));
    EXPECT_TRUE(MadeFiles::hold(path, openFile()));
}

TEST_F(MadeFilesTest, TheDescriptorIsClosedWithTheFile)
{
    addHeld();
    const int number = openFile().number(); // the lowest that is free
    MadeFiles::forget(path);
    EXPECT_GT(number, openFile().number());
    EXPECT_EQ("not opened", read());
}

// What others have left

TEST_F(MadeFilesTest, TakesBackWhatOthersHaveWrittenOrPutThere)
{
    MadeFiles::add(path);
    Support::writeFile(path, "written");
    MadeFiles::takeBack(path);
    EXPECT_EQ("written", read());
    replace();
    EXPECT_TRUE(MadeFiles::isReplaced(path));
    MadeFiles::takeBack(path);
    EXPECT_FALSE(MadeFiles::isReplaced(path));
    EXPECT_EQ("another's", read());
}

TEST_F(MadeFilesTest, TakesBackNoLinkNoFIFOAndNoFolder)
{
    MadeFiles::add(path);
    fs::remove(path);
    fs::create_symlink(folder.write("another", "another's"), path);
    MadeFiles::takeBack(path);
    EXPECT_EQ("not opened", read());

    fs::remove(path);
    ASSERT_EQ(0, mkfifo(path.c_str(), 0600));
    MadeFiles::takeBack(path);
    EXPECT_EQ("not opened", read());

    fs::remove(path);
    fs::create_directory(path);
    MadeFiles::takeBack(path);
    EXPECT_EQ("not opened", read());
    fs::remove(path);
}

TEST_F(MadeFilesTest, TakesBackNoFileOfAnotherUser)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can give a file to another user";
    MadeFiles::add(path);
    ASSERT_EQ(0, chown(path.c_str(), 65534, 65534));
    MadeFiles::takeBack(path);
    EXPECT_EQ("not opened", read());
    EXPECT_TRUE(MadeFiles::isReplaced(path));
}

// Names that lead elsewhere

TEST_F(MadeFilesTest, AHeldFileIsReplacedByAnyOther)
{
    addHeld();
    EXPECT_FALSE(MadeFiles::isReplaced(path));
    replace();
    EXPECT_TRUE(MadeFiles::isReplaced(path));
}

TEST_F(MadeFilesTest, AFileThatIsNotHeldIsReplacedByWhatIsNotOurs)
{
    MadeFiles::add(path);
    replace();
    EXPECT_FALSE(MadeFiles::isReplaced(path));
    fs::remove(path);
    fs::create_symlink("made", path);
    EXPECT_TRUE(MadeFiles::isReplaced(path));
}

TEST_F(MadeFilesTest, AMissingFileAndAStrangeOneAreNotReplaced)
{
    EXPECT_FALSE(MadeFiles::isReplaced(path));
    addHeld();
    fs::remove(path);
    EXPECT_FALSE(MadeFiles::isReplaced(path));
}

TEST_F(MadeFilesTest, RemovesAFileThatHasItsName)
{
    for (const bool held : {false, true}) {
        folder.write("made", "ours");
        MadeFiles::add(path);
        if (held)
            MadeFiles::hold(path, openFile());
        MadeFiles::remove(path);
        EXPECT_FALSE(MadeFiles::isListed(path));
        EXPECT_THAT(folder.names(), IsEmpty());
    }
}

TEST_F(MadeFilesTest, RemovesNoOtherFileThatHasTheNameOfAHeldOne)
{
    addHeld();
    replace();
    MadeFiles::remove(path);
    EXPECT_FALSE(MadeFiles::isListed(path));
    EXPECT_EQ("another's", Support::readFile(path));
}

TEST_F(MadeFilesTest, RemovesNoLinkInThePlaceOfAFileThatIsNotHeld)
{
    MadeFiles::add(path);
    fs::rename(path, folder.file("moved"));
    fs::create_symlink("moved", path);
    MadeFiles::remove(path);
    EXPECT_THAT(folder.names(), ElementsAre("made", "moved"));
}

TEST_F(MadeFilesTest, RemovesNothingThatIsNotOnTheList)
{
    MadeFiles::remove(path);
    EXPECT_THAT(folder.names(), ElementsAre("made"));
}

TEST_F(MadeFilesTest, ACancellationRemovesNothingElse)
{
    const std::string link = folder.file("link");
    EXPECT_EXIT(
        {
            cleanUpWhenCancelled();
            addHeld();
            MadeFiles::add(folder.write("not held", ""));
            MadeFiles::add(link);
            replace();
            fs::create_symlink("made", link);
            raise(SIGTERM);
        },
        KilledBySignal(SIGTERM), "");
    EXPECT_THAT(folder.names(), ElementsAre("link", "made"));
    EXPECT_EQ("another's", Support::readFile(path));
}
