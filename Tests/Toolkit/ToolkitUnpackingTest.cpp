#include "Deflated.h"
#include "PDFBuilder.h"
#include "Program.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <map>
#include <string>
#include <sys/resource.h>

namespace {

using Support::deflated;
using Support::deflatedWithBlanks;
using Support::PDFBuilder;
using Support::ProgramCall;
using Support::ProgramResult;
using testing::AnyOf;

constexpr char kTooLarge[] = "The PDF document has a page that is damaged or too large; open it "
                             "and print it to a new PDF.\n";
constexpr char kNoTime[] = "The document takes too much processor time.\n";
#ifdef KL_SANITIZED // there the program has no bound of memory: see its main()
constexpr long kMostMemory = LONG_MAX;
#else
constexpr long kMostMemory = 1 << 20; // KiB
constexpr char kNoMemory[] = "There is not enough memory.\n";
#endif

/// What a small document may cost, whatever it unpacks to.
constexpr std::chrono::seconds kMost(4);

/// The built program on documents of some 10 kB that unpack to gigabytes.
class ToolkitUnpackingTest : public testing::Test {
protected:
    ProgramResult run(const std::string &command, const std::string &document,
                      ProgramCall call = {}) const
    {
        _folder.write("in", document);
        call.arguments = {KL_TOOLKIT};
        for (const std::string &word : wordsOf(command))
            call.arguments.push_back(word);
        call.arguments.push_back(_folder.file("in"));
        call.arguments.push_back(_folder.file("out"));
        return Support::runProgram(call);
    }

    /// All commands serve the document.
    /// @param kept  stands in each output as it is
    void expectServed(const std::string &document, const std::string &kept) const
    {
        for (const char *command : kCommands) {
            SCOPED_TRACE(command);
            const ProgramResult result = run(command, document);
            EXPECT_EQ("", result.errors);
            ASSERT_EQ(0, result.exitStatus);
            EXPECT_LT(result.processorTime, kMost);
            EXPECT_TRUE(Support::readFile(_folder.file("out")).find(kept) != std::string::npos);
        }
    }

    /// The command refuses the document in time with one of the lines, and leaves no output.
    void expectRefused(const std::string &command, const std::string &document,
                       const testing::Matcher<std::string> &line, ProgramCall call = {}) const
    {
        SCOPED_TRACE(command);
        const ProgramResult result = run(command, document, std::move(call));
        EXPECT_THAT(result.errors, line);
        EXPECT_EQ(1, result.exitStatus);
        EXPECT_LT(result.processorTime, kMost);
        EXPECT_LT(result.peakMemory, kMostMemory);
        EXPECT_THAT(_folder.names(), testing::ElementsAre("in"));
    }

    static constexpr std::array kCommands = {"above", "below", "booklet"};

private:
    static std::vector<std::string> wordsOf(const std::string &command)
    {
        if (command == "booklet")
            return {"booklet", "--pagesize", "A4", "--centremargin", "0", "--outermargin",
                    "0",       "--ordering", "LTR"};
        return {"watermark", "--" + command, "--font", "Helvetica", "--angle", "0",      "--colour",
                "1,0,0",     "--position",   "20,20",  "--size",    "36",      "--text", "DRAFT"};
    }

    const Support::TemporaryFolder _folder;
};

/// A stream's data that unpack to the text and gigabytes of blanks; with one filter to 10 MiB.
std::string bomb(int filters, const std::string &text = "0 g")
{
    std::string data = deflatedWithBlanks(text, filters == 1 ? 10 : 10 * 1024);
    for (int i = 1; i < filters; ++i)
        data = deflated(data);
    return data;
}

std::string filterEntry(int filters)
{
    std::string names;
    for (int i = 0; i < filters; ++i)
        names += " /FlateDecode";
    return "/Filter [" + names + " ]";
}

/// For so many filters.
class ToolkitBombTest : public ToolkitUnpackingTest, public testing::WithParamInterface<int> {
protected:
    static std::string addBomb(PDFBuilder &builder, const std::string &entries = {})
    {
        return builder.addStream(data(), filterEntry(GetParam()) + entries);
    }
    /// Made once for each number of filters.
    static const std::string &data()
    {
        static std::map<int, std::string> known;
        std::string &bytes = known[GetParam()];
        if (bytes.empty())
            bytes = bomb(GetParam());
        return bytes;
    }
};

INSTANTIATE_TEST_SUITE_P(Filters, ToolkitBombTest, testing::Values(1, 2, 3, 10));

constexpr char kPage[] = "/MediaBox [0 0 300 400] ";

// What is not needed

TEST_P(ToolkitBombTest, ContentsInOnePieceStayPacked)
{
    PDFBuilder builder;
    builder.addPage(kPage + ("/Contents " + addBomb(builder)));
    expectServed(builder.document(), data());
}

TEST_P(ToolkitBombTest, WhatAPageDrawsWithStaysPacked)
{
    PDFBuilder builder;
    const std::string image = addBomb(builder, "/Subtype /Image /Width 9 /Height 9");
    const std::string form = addBomb(builder, "/Subtype /Form /BBox [0 0 9 9]");
    const std::string font = "<< /FontDescriptor << /FontFile2 " + addBomb(builder) + " >> >>";
    const std::string look = addBomb(builder, "/Subtype /Form /BBox [0 0 9 9]");
    builder.addPage(kPage +
                        ("/Resources << /XObject << /I " + image + " /F " + form +
                         " >> /Font << /A " + font + " >> >> /Annots [<< /Subtype /Stamp /F 4 " +
                         "/Rect [0 0 9 9] /AP << /N " + look + " >> >>]"),
                    "/I Do /F Do");
    expectServed(builder.document(), data());
}

TEST_P(ToolkitBombTest, MetadataStayPacked)
{
    PDFBuilder builder;
    builder.addPage(kPage, "0 g");
    const std::string metadata = addBomb(builder, "/Type /Metadata /Subtype /XML");
    expectServed(builder.document({}, "/Metadata " + metadata), data());
}

// What is needed

TEST_P(ToolkitBombTest, ContentsInSeveralPartsAreUnpackedUpToABound)
{
    PDFBuilder builder;
    const std::string part = addBomb(builder);
    builder.addPage(kPage + ("/Contents [" + part + " " + builder.addStream("1 g") + "]"));
    const std::string document = builder.document();
    if (GetParam() == 1)
        return expectServed(document, "");
    EXPECT_EQ(0, run("below", document).exitStatus); // no need to put them together
    expectRefused("above", document, AnyOf(kTooLarge, kNoTime));
}

TEST_F(ToolkitUnpackingTest, UnpackingTheSamePartsAgainAndAgainHasAnEnd)
{
    // 100 pages of 200 MiB each, none of them the same.
    PDFBuilder builder;
    const std::string part = builder.addStream(bomb(1), filterEntry(1));
    std::string parts = part;
    for (int i = 0; i < 19; ++i)
        parts += " " + part;
    for (int page = 0; page < 100; ++page)
        builder.addPage(kPage + ("/Contents [" + parts + " " + builder.addStream("1 g") + "]"));
    expectRefused("booklet", builder.document(), kNoTime);
}

#ifndef KL_SANITIZED

/// One page with a field whose value is to be drawn into the look that it has.
std::string documentWithField(const std::string &look, int filters)
{
    PDFBuilder builder;
    const std::string stream =
        builder.addStream(look, filterEntry(filters) + "/Subtype /Form /BBox [0 0 99 20]");
    const std::string field = builder.add(
        "<< /Subtype /Widget /FT /Tx /T (a) /V (text) /F 4 /DA (/Helv 9 Tf) /Rect [0 0 99 20] "
        "/AP << /N " +
        stream + " >> >>");
    builder.addPage(kPage + ("/Annots [" + field + "]"), "0 g");
    return builder.document({}, "/AcroForm << /Fields [" + field +
                                    "] /NeedAppearances true /DR << /Font << /Helv << /Type /Font "
                                    "/Subtype /Type1 /BaseFont /Helvetica >> >> >> >>");
}

TEST_P(ToolkitBombTest, TheLookOfAFieldIsUnpackedUpToABound)
{
    const std::string document = documentWithField(data(), GetParam());
    if (GetParam() == 1)
        return expectServed(document, "");
    EXPECT_EQ(0, run("above", document).exitStatus); // the field stays one
    expectRefused("booklet", document, AnyOf(kNoMemory, kNoTime));
}

/// One page, described in an object stream, in a document with a stream of cross-references.
/// @param objects, references  through how many filters the two are packed; 0 for not at all
std::string documentOfStreams(int objects, int references)
{
    std::string bytes = "%PDF-1.5\n";
    std::string table(6, '\0');
    std::size_t last = 0;
    auto add = [&, number = 0](const std::string &object) mutable {
        last = bytes.size();
        table += '\1';
        for (const int shift : {24, 16, 8, 0})
            table += static_cast<char>(last >> shift);
        table += '\0';
        bytes += std::to_string(++number) + " 0 obj\n" + object + "\nendobj\n";
    };
    const auto stream = [](const std::string &entries, const std::string &text, int filters) {
        const std::string data = filters == 0 ? text : bomb(filters, text);
        return "<< " + entries + " /Length " + std::to_string(data.size()) +
               (filters == 0 ? "" : filterEntry(filters)) + " >>\nstream\n" + data + "\nendstream";
    };
    add("<< /Type /Catalog /Pages 2 0 R >>");
    add("<< /Type /Pages /Kids [4 0 R] /Count 1 >>");
    add(stream("/Type /ObjStm /N 1 /First 4",
               "4 0 << /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] >>", objects));
    table += std::string("\2\0\0\0\3\0", 6); // object 4: in stream 3, the first
    last = bytes.size();
    return bytes + "5 0 obj\n" +
           stream("/Type /XRef /Size 5 /Root 1 0 R /W [1 4 1]", table, references) +
           "\nendobj\nstartxref\n" + std::to_string(last) + "\n%%EOF\n";
}

TEST_P(ToolkitBombTest, AnObjectStreamIsUnpackedUpToABound)
{
    const std::string document = documentOfStreams(GetParam(), 0);
    if (GetParam() == 1)
        return expectServed(document, "");
    expectRefused("booklet", document, AnyOf(kNoMemory, kNoTime));
}

TEST_P(ToolkitBombTest, AStreamOfCrossReferencesIsUnpackedUpToABound)
{
    const std::string document = documentOfStreams(0, GetParam());
    if (GetParam() == 1)
        return expectServed(document, "");
    expectRefused("booklet", document, AnyOf(kNoMemory, kNoTime));
}

#endif

} // namespace
