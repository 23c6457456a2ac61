#include "Streams.h"

#include "TemporaryFolder.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

using namespace Platform;

namespace {

bool isClosedOnExec(const Stream &stream)
{
    return (fcntl(fileno(stream.get()), F_GETFD) & FD_CLOEXEC) != 0;
}

} // namespace

TEST(StreamsTest, NoStreamIsInheritedByChildren)
{
    const Support::TemporaryFolder folder;
    const std::string path = folder.write("job", "x");
    EXPECT_TRUE(isClosedOnExec(openForReading(path)));
    EXPECT_TRUE(isClosedOnExec(openForWriting(path)));
    EXPECT_TRUE(isClosedOnExec(openTemporary()));
}

TEST(StreamsTest, ATemporaryStreamIsReadBackAndLiesOnNoDisk)
{
    const Stream stream = openTemporary();
    ASSERT_TRUE(stream);
    std::fputs("password", stream.get());
    std::rewind(stream.get());
    std::array<char, 9> text = {};
    EXPECT_STREQ("password", std::fgets(text.data(), text.size(), stream.get()));
    struct statfs status = {};
    ASSERT_EQ(0, fstatfs(fileno(stream.get()), &status));
    EXPECT_EQ(TMPFS_MAGIC, status.f_type);
}

TEST(StreamsTest, RefusesToReadAFolder)
{
    const Support::TemporaryFolder folder;
    errno = 0;
    EXPECT_FALSE(openForReading(folder.path()));
    EXPECT_EQ(EISDIR, errno);
}

TEST(StreamsTest, RefusesAFIFOWithoutWaitingForItsWriter)
{
    const Support::TemporaryFolder folder;
    const std::string path = folder.file("fifo");
    ASSERT_EQ(0, mkfifo(path.c_str(), 0600));
    EXPECT_FALSE(openForReading(path));
}

TEST(StreamsTest, SaysWhyAFileCannotBeOpened)
{
    const Support::TemporaryFolder folder;
    EXPECT_FALSE(openForReading(folder.file("missing")));
    EXPECT_EQ(ENOENT, errno);
    EXPECT_FALSE(openForWriting(folder.file("missing/file")));
    EXPECT_EQ(ENOENT, errno);
}

TEST(StreamsTest, ReadsADevice)
{
    const Stream null = openForReading("/dev/null");
    ASSERT_TRUE(null);
    EXPECT_EQ(EOF, std::fgetc(null.get()));
}

TEST(StreamsTest, ClosingReportsBytesThatDidNotReachTheFile)
{
    Stream full = openForWriting("/dev/full");
    std::fputs("lost", full.get());
    EXPECT_FALSE(closeStream(std::move(full)));

    const Support::TemporaryFolder folder;
    Stream file = openForWriting(folder.file("kept"));
    std::fputs("kept", file.get());
    EXPECT_TRUE(closeStream(std::move(file)));
    EXPECT_EQ("kept", Support::readFile(folder.file("kept")));
}

TEST(StreamsTest, ClosingReportsAWriteThatFailedBefore)
{
    Stream full = openForWriting("/dev/full");
    std::fputs("lost", full.get());
    std::fflush(full.get());
    EXPECT_FALSE(closeStream(std::move(full)));
}

TEST(StreamsTest, ClosedStandardDescriptorsGetStandInsThatNeitherReadNorWrite)
{
    const auto opening = [](int descriptor) { return fcntl(descriptor, F_GETFL) & O_ACCMODE; };
    const auto occupied = [&opening] {
        close(STDIN_FILENO);
        close(STDOUT_FILENO);
        occupyStandardDescriptors();
        return opening(STDIN_FILENO) == O_WRONLY && opening(STDOUT_FILENO) == O_RDONLY;
    };
    EXPECT_EXIT(_exit(occupied() ? 0 : 1), testing::ExitedWithCode(0), "");
}
