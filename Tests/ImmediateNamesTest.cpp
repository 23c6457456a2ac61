#include "ImmediateNames.h"

#include "Streams.h"
#include "TemporaryFolder.h"
#include "ToolkitError.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

constexpr std::array<std::string_view, 2> kNames = {"showpage", "save"};

/// Whether a document with that on its page takes the value of one of the names at once.
bool takes(const std::string &page)
{
    const Support::TemporaryFolder folder;
    const Platform::Stream stream = Platform::openForReading(
        folder.write("document.ps", "%!PS-Adobe-3.0\n%%EndComments\n%%Page: 1 1\n" + page));
    return takesValueAtOnce(DSCDocument(stream.get()), kNames);
}

} // namespace

TEST(ImmediateNamesTest, AreFoundWhereverTheyStand)
{
    EXPECT_TRUE(takes("//showpage"));
    EXPECT_TRUE(takes("/EP{//showpage}def"));
    EXPECT_TRUE(takes("/EP { x//save } def\n"));
    EXPECT_TRUE(takes("///save\n"));
    EXPECT_TRUE(takes("(a (text) \\) \\\\) //save\n"));
    EXPECT_TRUE(takes("% (\n//save\n"));
    EXPECT_TRUE(takes("% (\r//save\r"));
    EXPECT_TRUE(takes("%%BeginDocument: a.eps\n//save\n%%EndDocument\n"));
}

TEST(ImmediateNamesTest, OtherNamesAreNone)
{
    EXPECT_FALSE(takes("/showpage load /save cvx\n"));
    EXPECT_FALSE(takes("//saved //sav //show // save //Save //save.1 //"));
    EXPECT_FALSE(takes("/ /save\n"));
}

TEST(ImmediateNamesTest, StringsAndCommentsAreNoNames)
{
    EXPECT_FALSE(takes("(type //showpage there) show\n"));
    EXPECT_FALSE(takes("((a) \\) //save ) show\n"));
    EXPECT_FALSE(takes("x % as with //save\n"));
    EXPECT_FALSE(takes("%%Title: //save\n"));
}

TEST(ImmediateNamesTest, CountedDataAreNoNames)
{
    const std::string data = "//save \n"; // 8 bytes
    EXPECT_FALSE(takes("%%BeginBinary: 8\n" + data + "%%EndBinary\n"));
    EXPECT_FALSE(takes("%%BeginData: 1 Hex Lines\n" + data + "%%EndData\n"));
    EXPECT_FALSE(
        takes("%%BeginData: 8\n" + data + "%%EndData\n%%BeginData: 8\n" + data + "%%EndData\n"));
    EXPECT_TRUE(takes("%%BeginData: 8\n" + data + "%%EndData\n" + data));
    EXPECT_TRUE(takes(data + "%%BeginData: 8\n" + data + "%%EndData\n"));
}

TEST(ImmediateNamesTest, AreFoundAcrossTheBuffersEdges)
{
    for (std::size_t filling = FileWindow::kSize - 60; filling < FileWindow::kSize; ++filling)
        ASSERT_TRUE(takes(std::string(filling, 'x') + "\n//showpage\n")) << filling;
}

TEST(ImmediateNamesTest, TheReasonIsInPlainWords)
{
    const Support::TemporaryFolder folder;
    const Platform::Stream stream =
        Platform::openForReading(folder.write("document.ps", "%!PS\n%%Page: 1 1\n//save\n"));
    try {
        requireReplaceable(DSCDocument(stream.get()), kNames);
        FAIL() << "accepted";
    } catch (const ToolkitError &error) {
        EXPECT_STREQ("The PostScript document does not allow its page operators to be replaced.",
                     error.what());
    }
}
