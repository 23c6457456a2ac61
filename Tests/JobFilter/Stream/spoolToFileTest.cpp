#include "spoolToFile.h"

#include "MemoryStreams.h"
#include "Streams.h"
#include "TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <vector>

namespace {

constexpr std::size_t kBlock = 16384;

class spoolToFileTest : public testing::Test {
protected:
    /// Copies the bytes and tells in which pieces they arrived.
    std::vector<std::size_t> piecesOf(const std::string &bytes)
    {
        std::string copied;
        std::vector<std::size_t> pieces;
        const auto take = [&](const char *piece, std::size_t size) {
            copied.append(piece, size);
            pieces.push_back(size);
            return static_cast<ssize_t>(size);
        };
        const Platform::Stream input(Support::openInput(bytes));
        const Platform::Stream output(Support::openStream({.write = take}));
        std::setvbuf(output.get(), nullptr, _IONBF, 0);
        EXPECT_TRUE(spoolToFile(input.get(), output.get()));
        EXPECT_EQ(bytes, copied);
        return pieces;
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
