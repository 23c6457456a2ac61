#include "Streams.h"

#include "TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/magic.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <thread>
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
    EXPECT_TRUE(isClosedOnExec(openTemporaryIn(folder.path())));
}

TEST(StreamsTest, AStreamTakesItsDescriptorOver)
{
    const Support::TemporaryFolder folder;
    Descriptor file(open(folder.write("job", "x").c_str(), O_RDONLY | O_CLOEXEC));
    const int number = file.number();
    const Stream stream = streamOf(std::move(file), "rb");
    EXPECT_EQ(number, fileno(stream.get()));
    EXPECT_EQ('x', std::fgetc(stream.get()));
}

TEST(StreamsTest, ADescriptorThatMakesNoStreamIsClosed)
{
    Descriptor file(open("/dev/null", O_RDONLY | O_CLOEXEC));
    const int number = file.number();
    errno = 0;
    EXPECT_FALSE(streamOf(std::move(file), "no mode"));
    EXPECT_EQ(EINVAL, errno);
    EXPECT_EQ(-1, fcntl(number, F_GETFD));
    EXPECT_FALSE(streamOf(Descriptor(), "rb"));
}

TEST(StreamsTest, ADuplicateIsOfTheSameFileAndStaysWhenTheFirstIsClosed)
{
    const Support::TemporaryFolder folder;
    Descriptor file(open(folder.write("job", "xy").c_str(), O_RDONLY | O_CLOEXEC));
    const Stream copy = streamOf(file.duplicate(), "rb");
    file.close();
    EXPECT_TRUE(isClosedOnExec(copy));
    EXPECT_EQ('x', std::fgetc(copy.get()));
    EXPECT_GT(0, Descriptor().duplicate().number());
}

TEST(StreamsTest, AFileIsTheSameUnderAllItsNames)
{
    const Support::TemporaryFolder folder;
    const std::string one = folder.write("one", "");
    ASSERT_EQ(0, link(one.c_str(), folder.file("same").c_str()));
    const auto statusOf = [](const std::string &path) {
        struct stat status = {};
        EXPECT_EQ(0, stat(path.c_str(), &status));
        return status;
    };
    EXPECT_TRUE(isSameFile(statusOf(one), statusOf(folder.file("same"))));
    EXPECT_FALSE(isSameFile(statusOf(one), statusOf(folder.write("other", ""))));
    EXPECT_FALSE(isSameFile(statusOf("/dev/null"), statusOf(one)));
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

TEST(StreamsTest, ATemporaryStreamInAFolderIsReadBackAndHasNoName)
{
    const Support::TemporaryFolder folder;
    const Stream stream = openTemporaryIn(folder.path());
    ASSERT_TRUE(stream);
    EXPECT_TRUE(folder.names().empty());
    std::fputs("pages", stream.get());
    std::rewind(stream.get());
    std::array<char, 9> text = {};
    EXPECT_STREQ("pages", std::fgets(text.data(), text.size(), stream.get()));
    struct stat status = {};
    struct stat ofFolder = {};
    ASSERT_EQ(0, fstat(fileno(stream.get()), &status));
    ASSERT_EQ(0, stat(folder.path().c_str(), &ofFolder));
    EXPECT_EQ(ofFolder.st_dev, status.st_dev);
    EXPECT_EQ(0600U, status.st_mode & 0777U);
}

TEST(StreamsTest, RefusesATemporaryStreamInAFolderThatIsNotThere)
{
    const Support::TemporaryFolder folder;
    errno = 0;
    EXPECT_FALSE(openTemporaryIn(folder.file("missing")));
    EXPECT_EQ(ENOENT, errno);
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

TEST(StreamsTest, WritingBeginsAnew)
{
    const Support::TemporaryFolder folder;
    const std::string path = folder.write("file", "what was there");
    Stream file = openForWriting(path);
    ASSERT_TRUE(file);
    EXPECT_EQ("", Support::readFile(path));
    std::fputs("new", file.get());
    EXPECT_TRUE(closeStream(std::move(file)));
    EXPECT_EQ("new", Support::readFile(path));
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

// What the kernel moves

namespace {

/// As long as several pipes hold.
std::string longText()
{
    std::string text;
    for (int line = 0; text.size() < 300000; ++line)
        text += std::to_string(line) + " is a line\n";
    return text;
}

std::string rest(FILE *stream)
{
    std::string bytes;
    for (int c = std::fgetc(stream); c != EOF; c = std::fgetc(stream))
        bytes.push_back(static_cast<char>(c));
    return bytes;
}

class MoveInKernelTest : public testing::Test {
protected:
    std::string bytesOf(const std::string &name) const
    {
        return Support::readFile(folder.file(name));
    }

    const Support::TemporaryFolder folder;
    const std::string text = longText();
    const Stream input = openForReading(folder.write("in", text));
};

} // namespace

TEST_F(MoveInKernelTest, AFileIntoAPipeAndFromThereIntoAFile)
{
    std::array<int, 2> ends = {};
    ASSERT_EQ(0, pipe(ends.data()));
    const Stream pipeInput(fdopen(ends[0], "r"));
    Stream pipeOutput(fdopen(ends[1], "w"));
    const Stream output = openForWriting(folder.file("out"));

    std::thread sender([&] {
        EXPECT_TRUE(moveInKernel(input.get(), pipeOutput.get()));
        pipeOutput.reset();
    });
    EXPECT_TRUE(moveInKernel(pipeInput.get(), output.get()));
    sender.join();
    EXPECT_EQ(text, bytesOf("out"));
    EXPECT_EQ("", rest(pipeInput.get()));
    EXPECT_EQ("", rest(input.get()));
}

TEST_F(MoveInKernelTest, PipesAreWidenedAndNeverNarrowed)
{
    for (const int capacity : {4096, 256 << 10, 512 << 10}) {
        std::array<int, 2> ends = {};
        ASSERT_EQ(0, pipe(ends.data()));
        const Stream pipeInput(fdopen(ends[0], "r"));
        const Stream pipeOutput(fdopen(ends[1], "w"));
        ASSERT_EQ(capacity, fcntl(ends[1], F_SETPIPE_SZ, capacity));
        const Stream little = openForReading(folder.write("little", "x"));
        EXPECT_TRUE(moveInKernel(little.get(), pipeOutput.get()));
        EXPECT_EQ(std::max(capacity, 256 << 10), fcntl(ends[0], F_GETPIPE_SZ));
    }
}

TEST_F(MoveInKernelTest, AFileIntoAFileBehindWhatWasWrittenThere)
{
    const Stream output = openForWriting(folder.file("out"));
    std::fputs("before ", output.get());
    std::fflush(output.get());
    EXPECT_TRUE(moveInKernel(input.get(), output.get()));
    std::fputs(" after", output.get());
    std::fflush(output.get());
    EXPECT_EQ("before " + text + " after", bytesOf("out"));
}

TEST_F(MoveInKernelTest, WhatItDoesNotServeIsLeftAsItIs)
{
    // The kernel moves nothing to where every write goes to the end.
    const Stream appended(std::fopen(folder.write("log", "before ").c_str(), "ab"));
    EXPECT_TRUE(moveInKernel(input.get(), appended.get()));
    // And it knows nothing of streams without a descriptor.
    std::array<char, 8> memory = {};
    const Stream unknown(fmemopen(memory.data(), memory.size(), "w"));
    EXPECT_TRUE(moveInKernel(input.get(), unknown.get()));
    EXPECT_EQ("before ", bytesOf("log"));
    EXPECT_EQ(text, rest(input.get()));
}

TEST_F(MoveInKernelTest, FailsWhenTheReaderHasGone)
{
    std::signal(SIGPIPE, SIG_IGN);
    std::array<int, 2> ends = {};
    ASSERT_EQ(0, pipe(ends.data()));
    close(ends[0]);
    const Stream pipeOutput(fdopen(ends[1], "w"));
    EXPECT_FALSE(moveInKernel(input.get(), pipeOutput.get()));
}

TEST_F(MoveInKernelTest, WhatAPipeHoldsOutlivesTheFile)
{
    std::array<int, 2> ends = {};
    ASSERT_EQ(0, pipe(ends.data()));
    const Stream pipeInput(fdopen(ends[0], "r"));
    Stream pipeOutput(fdopen(ends[1], "w"));
    const std::string shortText = text.substr(0, 30000); // which a pipe takes without a reader
    Stream file = openForReading(folder.write("short", shortText));
    EXPECT_TRUE(moveInKernel(file.get(), pipeOutput.get()));
    pipeOutput.reset();
    file.reset();
    ASSERT_EQ(0, unlink(folder.file("short").c_str()));
    EXPECT_EQ(shortText, rest(pipeInput.get()));
}

TEST_F(MoveInKernelTest, WhereTheOutputIsFullItFailsAndTheRestIsLeft)
{
    const auto isLeft = [this] {
        constexpr rlimit kLimit = {100000, 100000}; // bytes
        setrlimit(RLIMIT_FSIZE, &kLimit);
        std::signal(SIGXFSZ, SIG_IGN);
        const Stream output = openForWriting(folder.file("out"));
        return !moveInKernel(input.get(), output.get()) &&
               bytesOf("out") == text.substr(0, 100000) && rest(input.get()) == text.substr(100000);
    };
    EXPECT_EXIT(_exit(isLeft() ? 0 : 1), testing::ExitedWithCode(0), "");
}

// Standard descriptors

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
