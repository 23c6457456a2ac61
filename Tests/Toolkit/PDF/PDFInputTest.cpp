#include "PDFInput.h"

#include "LibqpdfVersion.h"
#include "Program.h"
#include "ToolkitError.h"
#include "ToolkitPDF.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::AnyOf;
using testing::HasSubstr;

/// Documents with a table and with streams of cross-references; those the library cannot mend.
class PDFInputTest : public testing::TestWithParam<const char *> {
protected:
    PDFInputTest()
    {
        const auto result = Support::runProgram(
            {.arguments = {"qpdf", std::string("--object-streams=") + GetParam(),
                           KL_DOCUMENTS "/tex-7.pdf", _folder.file("sound")}});
        EXPECT_EQ(0, result.exitStatus) << result.errors;
        _sound = Support::readFile(_folder.file("sound"));
        _booklet = booklet(_sound);
    }

    /// What becomes of the document, or why it is refused.
    static std::string booklet(const std::string &document)
    {
        try {
            return processedPDF(document, Booklet{.pageSize = "A4",
                                                  .centreMargin = 0,
                                                  .outerMargin = 0,
                                                  .ordering = Ordering::LeftToRight});
        } catch (const ToolkitError &error) {
            return error.what();
        }
    }

    /// The same bytes as of the document without damage.
    void expectServed(const std::string &document) const
    {
        const std::string result = booklet(document);
        EXPECT_TRUE(_booklet == result) << result.substr(0, 100);
    }

    bool isPacked() const { return GetParam() == std::string("generate"); }

    const Support::TemporaryFolder _folder;
    std::string _sound;
    std::string _booklet;
};

INSTANTIATE_TEST_SUITE_P(Objects, PDFInputTest, testing::Values("disable", "generate"),
                         [](const auto &instance) {
                             return instance.param == std::string("generate") ? "Packed" : "Plain";
                         });

const std::string kLine = "HTTP/1.1 200 OK\r\n";
const std::string kTrailing[] = {"\n", std::string(2000, '\0'), std::string(300000, '\n'),
                                 "\x1b%-12345X" + std::string(1100, ' '),
                                 std::string(3000, '<') + " the object of this page"};

TEST_P(PDFInputTest, ALineOrJunkBeforeTheDocumentIsPassedOver)
{
    expectServed("\n" + _sound);
    expectServed(kLine + _sound);
    expectServed(std::string(1023, '\xff') + _sound);
}

TEST_P(PDFInputTest, JunkBehindTheDocumentIsPassedOver)
{
    for (const std::string &junk : kTrailing) {
        expectServed(_sound + junk);
        expectServed(kLine + _sound + junk);
    }
}

// The first line and the comment behind it make room: what follows stays where it was.
TEST_P(PDFInputTest, PositionsMayCountFromTheBeginOfTheFile)
{
    const std::size_t begin = _sound.find('\n', 9) + 1;
    ASSERT_EQ(15U, begin);
    const std::string moved = "HTTP\r\n" + _sound.substr(0, 9) + _sound.substr(begin);
    expectServed(moved);
    for (const std::string &junk : kTrailing)
        expectServed(moved + junk);
}

// Objects at the end are a change that broke off: what the pages are by now is not known.
TEST_P(PDFInputTest, AChangeThatBrokeOffIsNoJunk)
{
    const std::string change = "99 0 obj\n<< /Type /Page >>\nendobj\n";
    const std::string result = booklet(_sound + change + std::string(2000, '\n'));
    // The library finds that nothing leads to it; before version 12, only where objects are plain.
    if (isPacked() && Support::libqpdfIsBefore(12)) {
        EXPECT_THAT(result, HasSubstr("is damaged"));
    } else {
        EXPECT_TRUE(_booklet == result) << result.substr(0, 100);
    }
}

// Where the table should be: a document that was cut off. What is told as missing is what the
// library misses first: before version 12 the table, since then, where objects are plain, some of
// them.
TEST_P(PDFInputTest, WhatStaysRefusedSaysWhatIsWrongAndWhatToTry)
{
    const std::string words = booklet(_sound.substr(0, _sound.size() / 2));
    constexpr char kLacksTable[] = "The PDF document is damaged: the table of its objects, at its "
                                   "end, is missing or wrong; open it and print it to a new PDF.";
    if (isPacked() || Support::libqpdfIsBefore(12)) {
        EXPECT_EQ(kLacksTable, words);
    } else {
        EXPECT_THAT(words, AnyOf("The PDF document is damaged: not all parts of its pages are "
                                 "there; open it and print it to a new PDF.",
                                 "The PDF document is damaged: not all of its pages are there; "
                                 "open it and print it to a new PDF."));
    }
}

// The library mends it where objects are plain, from version 12 on in any document.
TEST_P(PDFInputTest, ATableThatIsElsewhereIsFoundOrMissed)
{
    std::string document = kLine + _sound;
    document.replace(document.rfind("startxref\n") + 10, 1, "9");
    const std::string result = booklet(document);
    if (isPacked() && Support::libqpdfIsBefore(12)) {
        EXPECT_THAT(result, HasSubstr("; open it and print it to a new PDF."));
    } else {
        EXPECT_TRUE(_booklet == result) << result.substr(0, 100);
    }
}

TEST_P(PDFInputTest, TheWordsOfAnEndAloneAreNoDocument)
{
    for (const std::string document :
         {"", "%PDF-", "startxref", "%PDF-startxref 0", "startxref 0 %%EOF %PDF-1.4",
          "%PDF-1.4\nstartxref 99999999999999999999", "%PDF-1.4\nxref startxref 9",
          "aaaa%PDF-1.4xref startxref 12\n%%EOF", "xref%PDF-startxref 0\n"})
        EXPECT_THAT(booklet(document), HasSubstr("The PDF document is damaged: "));
}

} // namespace
