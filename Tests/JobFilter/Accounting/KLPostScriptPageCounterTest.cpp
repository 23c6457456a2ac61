#include "KLPostScriptPageCounter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

using Pages = std::optional<std::size_t>;

constexpr Pages kUnclear = std::nullopt;

Pages pagesInBlocks(std::string_view stream, std::size_t blockSize)
{
    KLPostScriptPageCounter counter;
    for (; !stream.empty(); stream.remove_prefix(std::min(blockSize, stream.size())))
        counter.count(stream.substr(0, blockSize));
    return counter.pages();
}

/// The same in blocks of every size up to 40 bytes, and at once.
Pages pagesOf(std::string_view stream)
{
    const Pages pages = pagesInBlocks(stream, std::max<std::size_t>(stream.size(), 1));
    for (std::size_t blockSize = 1; blockSize < 40; ++blockSize)
        EXPECT_EQ(pages, pagesInBlocks(stream, blockSize)) << blockSize << ": " << stream;
    return pages;
}

std::string replaced(std::string text, const std::string &part, const std::string &replacement)
{
    for (auto at = text.find(part); at != std::string::npos;
         at = text.find(part, at + replacement.size()))
        text.replace(at, part.size(), replacement);
    return text;
}

/// A document of two pages, the first with that content, with the line ends given.
std::string document(const std::string &content = "", const std::string &lineEnd = "\n")
{
    return replaced("%!PS-Adobe-3.0\n%%Pages: (atend)\n%%EndComments\n%%Page: 1 1\n", "\n",
                    lineEnd) +
           content +
           replaced("showpage\n%%Page: 2 2\nshowpage\n%%Trailer\n%%Pages: 2\n%%EOF\n", "\n",
                    lineEnd);
}

constexpr char kPageInside[] = "%%Page: 9 9\n";

TEST(KLPostScriptPageCounterTest, PageCommentsArePages)
{
    EXPECT_EQ(2U, pagesOf(document()));
}

TEST(KLPostScriptPageCounterTest, LinesEndInEachWay)
{
    EXPECT_EQ(2U, pagesOf(document("", "\r")));
    EXPECT_EQ(2U, pagesOf(document("", "\r\n")));
}

TEST(KLPostScriptPageCounterTest, LastLineMayLackItsEnd)
{
    EXPECT_EQ(1U, pagesOf("%!PS-Adobe-3.0\n%%Page: 1 1"));
}

TEST(KLPostScriptPageCounterTest, OnlyTheCommentAtTheBeginOfALineCounts)
{
    EXPECT_EQ(2U, pagesOf(document("(x) %%Page: 9 9\n%%%Page: 9 9\n% %Page: 9 9\n%%PageTrailer\n"
                                   "%%PageBoundingBox: 0 0 9 9\n%%Pages: 9\n%%page: 9 9\n")));
}

TEST(KLPostScriptPageCounterTest, LongLinesAreLinesToo)
{
    const std::string longLine = "%%Title: " + std::string(100000, '%');
    EXPECT_EQ(2U, pagesInBlocks(document(longLine + "%%Page: 9 9\n"), 4096));
    EXPECT_EQ(3U, pagesInBlocks(document("%%Page: " + longLine + "\n"), 4096));
}

TEST(KLPostScriptPageCounterTest, StreamWithoutStructureIsUnclear)
{
    for (const std::string stream :
         {"", "\n", "%", "%!", "showpage\n", "%!\nshowpage\n", "%!PS-Adobe-3.0\nshowpage\n",
          "%!PS-Adobe-3.0 EPSF-3.0\nshowpage\n%%EOF\n", "%!PS\n%%Page: 1 1\n", "%%Page: 1 1\n",
          "\x1b\x45 text\n"})
        EXPECT_EQ(kUnclear, pagesOf(stream)) << stream;
}

TEST(KLPostScriptPageCounterTest, DocumentBehindAnythingElseIsUnclear)
{
    EXPECT_EQ(kUnclear, pagesOf("showpage\n" + document()));
    EXPECT_EQ(kUnclear, pagesOf(" %!PS-Adobe-3.0\n%%Page: 1 1\n"));
    EXPECT_EQ(2U, pagesOf("\n \t\r\n" + document()));
    EXPECT_EQ(2U, pagesOf("\x04" + document()));
    EXPECT_EQ(2U, pagesOf("\x04\x04\n" + document()));
}

// pstops frames such a document as one page, however many it prints.
TEST(KLPostScriptPageCounterTest, DocumentThatIsFramedForItsLackOfStructureIsUnclear)
{
    EXPECT_EQ(kUnclear, pagesOf("%!PS-Adobe-3.0\n%%Pages: 1\n%%EndComments\n%%Page: 1 1\n"
                                "%%BeginDocument: nondsc\n%!\nshowpage\nshowpage\n%%EndDocument\n"
                                "%%EOF\n"));
}

TEST(KLPostScriptPageCounterTest, EmbeddedDocumentsAreContent)
{
    const std::string inner = "%%BeginDocument: a.eps\n%!PS-Adobe-3.0 EPSF-3.0\n%%Page: 1 1\n";
    const std::string end = "%%EOF\n%%EndDocument\n";
    EXPECT_EQ(2U, pagesOf(document(inner + end)));
    EXPECT_EQ(2U, pagesOf(document(inner + inner + end + kPageInside + end)));
    EXPECT_EQ(2U, pagesOf(document("%%BeginDocument\n%%BeginDocument: nondsc\n%%EndDocument\n"
                                   "%%EndDocument\n")));
    EXPECT_EQ(2U, pagesOf(document("%%EndDocument\n"))); // of nothing
}

TEST(KLPostScriptPageCounterTest, EndInsideContentIsUnclear)
{
    EXPECT_EQ(kUnclear, pagesOf(document("%%BeginDocument: a.eps\n")));
    EXPECT_EQ(kUnclear, pagesOf(document("%%BeginBinary: 10\n")));
    EXPECT_EQ(kUnclear, pagesOf(document("%%BeginData: 99999 Hex Bytes\n")));
    EXPECT_EQ(kUnclear, pagesOf(document("%%BeginData: 1\n%%EndBinary\n")));
}

TEST(KLPostScriptPageCounterTest, BinaryAndDataAreContent)
{
    EXPECT_EQ(2U, pagesOf(document("%%BeginBinary: 12\n%%Page: 9 9\n%%EndBinary\n")));
    EXPECT_EQ(2U, pagesOf(document("%%BeginData: 12 ASCII Bytes\n%%Page: 9 9\n%%EndData\n")));
    EXPECT_EQ(2U, pagesOf(document("%%BeginData: 1 ASCII Lines\n%%Page: 9 9\n%%EndData\n")));
    EXPECT_EQ(2U, pagesOf(document("%%BeginData:\n%%Page: 9 9\n%%EndData\n")));
    EXPECT_EQ(2U, pagesOf(document("%%BeginData: 26 Hex Bytes\n%%BeginDocument: a\n%%EOF\n\n"
                                   "%%EndData\n")));
}

TEST(KLPostScriptPageCounterTest, CountedDataMayHoldTheirOwnEnd)
{
    for (const std::string lineEnd : {"\n", "\r", "\r\n"}) {
        const std::string data = "%%EndBinary" + lineEnd + "%%Page: 9 9 and more" + lineEnd;
        const std::string begin = "%%BeginBinary: " + std::to_string(data.size()) + lineEnd + data;
        EXPECT_EQ(2U, pagesOf(document(begin + "%%EndBinary" + lineEnd, lineEnd)));
        // A line end in front of the end comment that does not count.
        EXPECT_EQ(2U, pagesOf(document(begin + lineEnd + "%%EndBinary" + lineEnd, lineEnd)));
    }
}

TEST(KLPostScriptPageCounterTest, CountedDataNeedNoLineEndBeforeTheirEnd)
{
    for (const std::string lineEnd : {"\n", "\r", "\r\n"}) {
        for (const std::string data : {"0123456789", "01234\n%789", "%123456789"})
            EXPECT_EQ(
                2U, pagesOf(document("%%BeginBinary: 10" + lineEnd + data + "%%EndBinary" + lineEnd,
                                     lineEnd)))
                << data;
    }
}

TEST(KLPostScriptPageCounterTest, CountThatIsTooSmallIsMended)
{
    EXPECT_EQ(2U, pagesOf(document("%%BeginBinary: 2\n%%Page: 9 9\n%%Page: 9 9\n%%EndBinary\n")));
}

TEST(KLPostScriptPageCounterTest, CountThatIsTooLargeIsUnclear)
{
    const std::string wrong = "%%BeginBinary: 40\n0123456789\n%%EndBinary\n";
    EXPECT_EQ(kUnclear, pagesOf(document(wrong)));
    // Its end is taken for that of others, with the page between.
    EXPECT_EQ(kUnclear, pagesOf(document(wrong + "showpage\n%%Page: 2 2\nshowpage\n"
                                                 "%%BeginBinary: 4\n0123\n%%EndBinary\n")));
    for (const std::string count : {"18446744073709551615", "99999999999999999999999"})
        EXPECT_EQ(kUnclear, pagesOf(document("%%BeginBinary: " + count + "\n0\n%%EndBinary\n")));
}

TEST(KLPostScriptPageCounterTest, CountsOfLinesAreNotLookedAt)
{
    EXPECT_EQ(2U, pagesOf(document("%%BeginData: 40 ASCII Lines\n%%Page: 9 9\n%%EndData\n")));
}

TEST(KLPostScriptPageCounterTest, DocumentsOfAStreamAddUp)
{
    EXPECT_EQ(4U, pagesOf(document() + document()));
    EXPECT_EQ(4U, pagesOf(document("", "\r\n") + "\x04" + document()));
    // The end is missing: what begins may belong to the page. Its pages count either way.
    EXPECT_EQ(2U, pagesOf("%!PS-Adobe-3.0\n%%Page: 1 1\n%!PS-Adobe-3.0\n%%Page: 1 1\n"));
}

TEST(KLPostScriptPageCounterTest, OneDocumentWithoutStructureMakesTheStreamUnclear)
{
    const std::string plain = "%!\nshowpage\n";
    const std::string withoutPages = "%!PS-Adobe-3.0\nshowpage\n%%EOF\n";
    EXPECT_EQ(kUnclear, pagesOf(document() + plain));
    EXPECT_EQ(kUnclear, pagesOf(plain + "%%EOF\n" + document()));
    EXPECT_EQ(kUnclear, pagesOf(document() + withoutPages));
    EXPECT_EQ(kUnclear, pagesOf(withoutPages + document()));
    EXPECT_EQ(kUnclear, pagesOf("%!PS-Adobe-3.0\n%%Page: 1 1\n\x04%!\nshowpage\n"));
}

// Some programs put other documents into a page without the comments around them.
TEST(KLPostScriptPageCounterTest, DocumentThatIsNotFramedIsContentWherePagesFollow)
{
    const std::string bare = "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 9 9\nfill\n%%EOF\n";
    EXPECT_EQ(2U, pagesOf(document(bare)));
    EXPECT_EQ(2U, pagesOf(document("%!\nfill\n")));
}

TEST(KLPostScriptPageCounterTest, CountGoesOnBehindAnAnswer)
{
    KLPostScriptPageCounter counter;
    EXPECT_EQ(kUnclear, counter.pages());
    counter.count("%!PS-Adobe-3.0\n%%Page: 1 1\n%%Pa");
    EXPECT_EQ(1U, counter.pages());
    const KLPostScriptPageCounter copy = counter;
    counter.count("ge: 2 2\n");
    EXPECT_EQ(2U, counter.pages());
    EXPECT_EQ(1U, copy.pages());
}

} // namespace
