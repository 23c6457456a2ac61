#include "PDFCommands.h"

#include "PDFBuilder.h"
#include "Program.h"
#include "TemporaryFolder.h"
#include "ToolkitPDF.h"

#include <gtest/gtest.h>

#include <malloc.h>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using Support::PDFBuilder;
using Support::ProgramResult;

/// Bytes of all values, the same each time, that no program can unpack.
std::string packed(std::size_t size)
{
    std::mt19937 random(1); // NOLINT(bugprone-random-generator-seed): the same each time
    std::string bytes(size, '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

constexpr std::size_t kLarge = 300'000;

std::string pictureOf(const std::string &bytes, const std::string &length)
{
    return "<< /Type /XObject /Subtype /Image /Width 1 /Height 1 /Filter /Unknown /Length " +
           length + " >>\nstream\n" + bytes + "\nendstream";
}

void addPageWith(PDFBuilder &builder, const std::string &picture)
{
    builder.addPage("/MediaBox [0 0 300 200] /Resources << /XObject << /Picture " + picture +
                        " >> >>",
                    "/Picture Do");
}

std::string onePage(const std::string &picture)
{
    PDFBuilder builder;
    addPageWith(builder, builder.add(picture));
    return builder.document();
}

Watermark text()
{
    return {.above = false,
            .font = "Helvetica",
            .angle = 0,
            .colour = {1, 0, 0},
            .position = {60, 80},
            .size = 30,
            .text = "DRAFT"};
}

void expectCopied(const std::string &bytes, const std::string &document)
{
    const std::string result = processedPDF(document, text());
    const std::string begin = "stream\n" + bytes;
    const auto found = result.find(begin);
    ASSERT_TRUE(found != std::string::npos);
    const std::string behind = result.substr(found + begin.size(), 10);
    EXPECT_TRUE(behind.starts_with("endstream") || behind == "\nendstream") << behind;
}

TEST(ToolkitPDFLargeStreamsTest, ALargeStreamIsCopiedAsItIs)
{
    const std::string bytes = packed(kLarge);
    expectCopied(bytes, onePage(pictureOf(bytes, std::to_string(kLarge))));
}

TEST(ToolkitPDFLargeStreamsTest, ItsLengthMayBeAnObject)
{
    const std::string bytes = packed(kLarge);
    PDFBuilder builder;
    const std::string length = builder.add(std::to_string(kLarge));
    addPageWith(builder, builder.add(pictureOf(bytes, length)));
    expectCopied(bytes, builder.document());
}

TEST(ToolkitPDFLargeStreamsTest, SomethingMayStandInFrontOfTheDocument)
{
    const std::string bytes = packed(kLarge);
    const std::string document = onePage(pictureOf(bytes, std::to_string(kLarge)));
    expectCopied(bytes, "HTTP/1.1 200 OK\r\n" + document);
    expectCopied(bytes, "HTTP/1.1 200 OK\r\n" + document + std::string(2000, '\0'));
    expectCopied(bytes, "%PDF-is what follows\n" + document);
}

TEST(ToolkitPDFLargeStreamsTest, ALengthThatIsWrongIsMended)
{
    const std::string bytes = packed(kLarge);
    for (const std::size_t wrong : {kLarge - 1000, kLarge + 1000})
        expectCopied(bytes, onePage(pictureOf(bytes, std::to_string(wrong))));
}

TEST(ToolkitPDFLargeStreamsTest, AnEncryptedOneStaysSo)
{
    const std::string bytes = packed(kLarge);
    const Support::TemporaryFolder folder;
    folder.write("plain", onePage(pictureOf(bytes, std::to_string(kLarge))));
    Support::runOrThrow({"qpdf", "--encrypt", "", "owner", "256", "--", folder.file("plain"),
                         folder.file("encrypted")});
    folder.write("marked", processedPDF(Support::readFile(folder.file("encrypted")), text()));
    Support::runOrThrow({"qpdf", "--decrypt", "--decode-level=none", folder.file("marked"),
                         folder.file("decrypted")});
    EXPECT_TRUE(Support::readFile(folder.file("decrypted")).find(bytes) != std::string::npos);
}

#ifndef KL_SANITIZED // whose memory is not what the program takes

/// More than the heap keeps: of such pieces only those count that are in use.
constexpr std::size_t kPicture = 34'000'000;

ProgramResult marked(const Support::TemporaryFolder &folder, const std::string &name)
{
    return Support::runProgram(
        {.arguments = {KL_TOOLKIT, "watermark", "--below", "--font", "Helvetica", "--angle", "0",
                       "--colour", "0", "--position", "9,9", "--size", "30", "--text", "DRAFT",
                       folder.file(name), folder.file("out")}});
}

/// What a program takes, in KiB. It begins as a copy of the test, which must be smaller: nothing
/// that is large is kept.
template <class Run>
long peakOf(const Run &run)
{
    malloc_trim(0);
    const ProgramResult result = run();
    EXPECT_EQ(0, result.exitStatus) << result.errors;
    return result.peakMemory;
}

std::string document(int pages, std::size_t size)
{
    const std::string bytes(size, 'x');
    PDFBuilder builder;
    for (int page = 0; page < pages; ++page)
        addPageWith(builder, builder.add(pictureOf(bytes, std::to_string(size))));
    return builder.document();
}

TEST(ToolkitPDFLargeStreamsTest, NoMoreThanTwoCopiesAreHeld)
{
    const Support::TemporaryFolder folder;
    folder.write("small", document(3, 1));
    folder.write("large", document(2, kPicture));
    const long more = peakOf([&] { return marked(folder, "large"); }) -
                      peakOf([&] { return marked(folder, "small"); });
    EXPECT_GT(static_cast<double>(more) * 1024, 1.5 * kPicture);
    EXPECT_LT(static_cast<double>(more) * 1024, 2.3 * kPicture);
}

TEST(ToolkitPDFLargeStreamsTest, FontsAndWhatASmallDocumentDoesNotNeedTakeNoMemoryBesideIt)
{
    constexpr long kMostBeside = 2560; // KiB; with the libraries for fonts and PPDs it was 6,700
    const Support::TemporaryFolder folder;
    folder.write("small", document(3, 1));
    const auto copied = [&] {
        return Support::runProgram(
            {.arguments = {"qpdf", folder.file("small"), folder.file("copy")}});
    };
    EXPECT_LT(peakOf([&] { return marked(folder, "small"); }), peakOf(copied) + kMostBeside);
}

TEST(ToolkitPDFLargeStreamsTest, MemoryThatOneStreamLeavesServesTheNext)
{
    const Support::TemporaryFolder folder;
    folder.write("few", document(5, kLarge));
    folder.write("many", document(25, kLarge));
    const long more = marked(folder, "many").pageFaults - marked(folder, "few").pageFaults;
    EXPECT_LT(more * sysconf(_SC_PAGESIZE), static_cast<long>(5 * kLarge)); // of 20 more
}

#endif

} // namespace
