#include "sampleDocument.h"

#include "Program.h"
#include "Rendering.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;

TEST(SampleDocumentTest, HasEightNumberedPagesOfTheSizeThatIsAskedFor)
{
    const Support::TemporaryFolder folder;
    const std::string path = folder.write("sample.pdf", sampleDocument({420, 595}));
    EXPECT_THAT(Support::runOrThrow({"pdfinfo", path}), HasSubstr("420 x 595 pts"));
    EXPECT_EQ("1\n2\n3\n4\n5\n6\n7\n8\n",
              Support::runOrThrow({"pdftotext", "-raw", "-nopgbrk", path, "-"}));
}

TEST(SampleDocumentTest, IsSoundFromItsFirstByteToItsLast)
{
    const Support::TemporaryFolder folder;
    const std::string path = folder.write("sample.pdf", sampleDocument({842, 1191}));
    EXPECT_THAT(Support::runOrThrow({"qpdf", "--check", path}), HasSubstr("No syntax"));
}

TEST(SampleDocumentTest, LeavesMarginsOnEachSide)
{
    const Support::TemporaryFolder folder;
    const std::string path = folder.write("sample.pdf", sampleDocument({600, 800}));
    for (const auto &page : Support::renderFileWithPoppler(path).pages) {
        const auto ink = page.inkBox();
        ASSERT_TRUE(ink);
        EXPECT_GE(ink->left, 59);
        EXPECT_LE(ink->right, 541);
        EXPECT_GE(ink->bottom, 79);
        EXPECT_LE(ink->top, 750);
    }
}

} // namespace
