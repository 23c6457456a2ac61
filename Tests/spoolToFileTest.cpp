#include "spoolToFile.h"

#include "Streams.h"
#include "TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace {

constexpr std::size_t kBlock = 16384;

/// A stream that counts the calls that reach its medium.
struct Counted {
    std::string bytes;
    std::size_t position = 0;
    std::vector<std::size_t> transfers;
};

ssize_t readCounted(void *cookie, char *buffer, std::size_t size)
{
    auto &medium = *static_cast<Counted *>(cookie);
    const std::size_t length = medium.bytes.copy(buffer, size, medium.position);
    medium.position += length;
    medium.transfers.push_back(length);
    return static_cast<ssize_t>(length);
}

ssize_t writeCounted(void *cookie, const char *buffer, std::size_t size)
{
    auto &medium = *static_cast<Counted *>(cookie);
    medium.bytes.append(buffer, size);
    medium.transfers.push_back(size);
    return static_cast<ssize_t>(size);
}

Platform::Stream unbuffered(Counted &medium, const char *mode)
{
    const cookie_io_functions_t functions = {readCounted, writeCounted, nullptr, nullptr};
    Platform::Stream stream(fopencookie(&medium, mode, functions));
    std::setvbuf(stream.get(), nullptr, _IONBF, 0);
    return stream;
}

class spoolToFileTest : public testing::Test {
protected:
    /// Copies the bytes and tells in which pieces they arrived.
    std::vector<std::size_t> piecesOf(const std::string &bytes)
    {
        Counted input = {bytes, 0, {}};
        Counted output;
        EXPECT_TRUE(spoolToFile(unbuffered(input, "r").get(), unbuffered(output, "w").get()));
        EXPECT_EQ(bytes, output.bytes);
        return output.transfers;
    }

    Support::TemporaryFolder folder;
};

} // namespace

TEST_F(spoolToFileTest, AnEmptyInputWritesNothing)
{
    EXPECT_TRUE(piecesOf("").empty());
}

TEST_F(spoolToFileTest, OneBlockIsWrittenInOnePiece)
{
    EXPECT_EQ(std::vector<std::size_t>({kBlock}), piecesOf(std::string(kBlock, '\0')));
}

TEST_F(spoolToFileTest, OneByteMoreMakesASecondBlock)
{
    EXPECT_EQ(std::vector<std::size_t>({kBlock, 1}), piecesOf(std::string(kBlock + 1, 'x')));
}

TEST_F(spoolToFileTest, AWriteThatFallsShortIsAFailure)
{
    const Platform::Stream input =
        Platform::openForReading(folder.write("in", std::string(3 * kBlock, 'x')));
    const Platform::Stream full = Platform::openForWriting("/dev/full");
    EXPECT_FALSE(spoolToFile(input.get(), full.get()));
    EXPECT_LE(std::ftell(input.get()), static_cast<long>(2 * kBlock)) << "went on reading";
}

TEST_F(spoolToFileTest, ReadErrorEndsTheCopyLikeTheEnd)
{
    // A descriptor that cannot be read stands for a medium that fails.
    const Platform::Stream input(
        fdopen(open(folder.file("in").c_str(), O_WRONLY | O_CREAT, 0600), "w"));
    const Platform::Stream output = Platform::openForWriting(folder.file("out"));
    EXPECT_TRUE(spoolToFile(input.get(), output.get()));
    EXPECT_NE(0, std::ferror(input.get()));
}

TEST_F(spoolToFileTest, NeitherStreamIsClosedOrRepositioned)
{
    const Platform::Stream input = Platform::openForReading(folder.write("in", "abcdef"));
    const Platform::Stream output = Platform::openForWriting(folder.file("out"));
    std::fgetc(input.get());
    std::fputs("before ", output.get());
    EXPECT_TRUE(spoolToFile(input.get(), output.get()));
    EXPECT_EQ(6, std::ftell(input.get()));
    std::fputs(" after", output.get());
    std::fflush(output.get());
    EXPECT_EQ("before bcdef after", Support::readFile(folder.file("out")));
}
