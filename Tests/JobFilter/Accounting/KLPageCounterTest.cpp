#include "KLPageCounter.h"

#include "Environment.h"
#include "PDFBuilder.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

const std::string kPostScript = "%!PS-Adobe-3.0\n%%Page: 1 1\n%%Page: 2 2\n%%EOF\n";

std::string pdf()
{
    Support::PDFBuilder builder;
    for (int page = 0; page < 3; ++page)
        builder.addPage("/MediaBox [0 0 9 9]");
    return builder.document();
}

class KLPageCounterTest : public testing::Test {
protected:
    std::optional<std::size_t> pagesOf(std::string_view data, std::size_t blockSize) const
    {
        KLPageCounter counter;
        for (; !data.empty(); data.remove_prefix(std::min(blockSize, data.size()))) {
            counter.count(data.substr(0, blockSize));
            EXPECT_THAT(_folder.names(), testing::IsEmpty()); // the file has no name
        }
        return counter.pages();
    }

private:
    Support::TemporaryFolder _folder;
    Support::ScopedEnvironment _temporary{"TMPDIR", _folder.path()};
};

TEST_F(KLPageCounterTest, BothLanguagesInBlocksOfAnySize)
{
    for (const std::size_t blockSize : {1U, 3U, 5U, 7U, 65536U}) {
        EXPECT_EQ(2U, pagesOf(kPostScript, blockSize));
        EXPECT_EQ(3U, pagesOf(pdf(), blockSize));
    }
}

TEST_F(KLPageCounterTest, NothingAndAlmostNothingHaveNoPages)
{
    EXPECT_EQ(std::nullopt, pagesOf("", 1));
    EXPECT_EQ(std::nullopt, pagesOf("%PDF", 1));
    EXPECT_EQ(std::nullopt, pagesOf("%PDF-", 1));
}

TEST_F(KLPageCounterTest, PDFWithoutItsEndIsNotCounted)
{
    EXPECT_EQ(std::nullopt, pagesOf(pdf().substr(0, 200), 64));
}

TEST_F(KLPageCounterTest, EmptyBlocksChangeNothing)
{
    KLPageCounter counter;
    counter.count("");
    counter.count(kPostScript);
    counter.count("");
    EXPECT_EQ(2U, counter.pages());
    EXPECT_EQ(2U, counter.pages());
}

TEST(KLPageCounterWithoutRoomTest, PDFIsNotCounted)
{
    const Support::ScopedEnvironment temporary("TMPDIR", "/nowhere");
    KLPageCounter counter;
    counter.count(pdf());
    EXPECT_EQ(std::nullopt, counter.pages());
}

} // namespace
