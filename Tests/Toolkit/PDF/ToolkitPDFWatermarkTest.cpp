#include "PDFCommands.h"

#include "Deflated.h"
#include "LibqpdfVersion.h"
#include "PDFBuilder.h"
#include "PDFPage.h"
#include "Program.h"
#include "Rendering.h"
#include "Streams.h"
#include "TemporaryFolder.h"
#include "ToolkitError.h"
#include "Watermarks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qpdf/QPDF.hh>

#include <algorithm>
#include <cstdio>
#include <random>

namespace {

using Support::Box;
using Support::Colour;
using Support::kBlue;
using Support::kGreen;
using Support::kRed;
using Support::kWhite;
using Support::PDFBuilder;
using Support::RenderedPage;
using testing::HasSubstr;

/// Pixels of half a point.
constexpr double kResolution = 144;

/// A red text that no test's page has a colour of.
Watermark redText()
{
    return {.above = true,
            .font = "Helvetica",
            .angle = 0,
            .colour = {1, 0, 0},
            .position = {60, 80},
            .size = 30,
            .text = "DRAFT"};
}

Watermark redTextBelow()
{
    Watermark watermark = redText();
    watermark.above = false;
    return watermark;
}

class ToolkitPDFWatermarkTest : public testing::Test {
protected:
    /// The document with the watermark on it.
    std::string marked(const std::string &document, const Watermark &watermark) const
    {
        _folder.write("in", document);
        const Platform::Stream input = Platform::openForReading(_folder.file("in"));
        Platform::Stream output = Platform::openForWriting(_folder.file("out"));
        Platform::TextShaper texts;
        applyToPDF(watermark, {input.get(), output.get(), texts, ""});
        EXPECT_TRUE(Platform::closeStream(std::move(output)));
        return Support::readFile(_folder.file("out"));
    }

    std::string problem(const std::string &document) const
    {
        try {
            marked(document, redText());
        } catch (const ToolkitError &error) {
            return error.what();
        }
        return "none";
    }

    /// What a tool makes out of a document; "in" and "out" among the arguments are its files.
    std::string made(std::vector<std::string> arguments, const std::string &document) const
    {
        _folder.write("tool-in", document);
        for (std::string &argument : arguments) {
            if (argument == "in" || argument == "out")
                argument = _folder.file("tool-" + argument);
        }
        const auto result = Support::runProgram({.arguments = std::move(arguments)});
        EXPECT_THAT(result.exitStatus, testing::AnyOf(0, 3)) // 3: with warnings
            << result.errors;
        return Support::readFile(_folder.file("tool-out"));
    }

    const Support::TemporaryFolder _folder;
};

std::vector<RenderedPage> rendered(const std::string &document, double resolution = kResolution)
{
    return Support::renderText(document, {.resolution = resolution, .arguments = {"-dUseCropBox"}})
        .pages;
}

void expectNear(const Box &expected, const Box &actual)
{
    EXPECT_NEAR(expected.left, actual.left, 1);
    EXPECT_NEAR(expected.bottom, actual.bottom, 1);
    EXPECT_NEAR(expected.right, actual.right, 1);
    EXPECT_NEAR(expected.top, actual.top, 1);
    EXPECT_NEAR(expected.left + expected.right, actual.left + actual.right, 1);
    EXPECT_NEAR(expected.bottom + expected.top, actual.bottom + actual.top, 1);
}

/// The text is where it belongs.
void expectInPlace(const Watermark &watermark, const RenderedPage &page)
{
    const auto box = page.boxOf(kRed);
    ASSERT_TRUE(box);
    expectNear(Support::inkBoxOf(watermark), *box);
}

void expectOthersUnchanged(const RenderedPage &before, const RenderedPage &after, bool above)
{
    EXPECT_EQ(0U, Support::changesBesideText(before, after, above));
}

constexpr char kSmall[] = "/MediaBox [0 0 300 200]";
/// Green on the left half of the page, blue across it.
constexpr char kPicture[] = "0 1 0 rg 0 0 150 200 re f 0 0 1 rg 0 90 300 10 re f\n";

std::string onePage(std::string_view contents = kPicture, std::string_view entries = kSmall)
{
    PDFBuilder builder;
    builder.addPage(entries, contents);
    return builder.document();
}

/// What a stream has handed to the system.
struct Written {
    std::string bytes;
    std::size_t largestPiece = 0;
};

/// A stream that writes there, with a stream's usual buffer.
Platform::Stream streamInto(Written &written)
{
    const auto write = [](void *cookie, const char *data, std::size_t size) {
        auto &target = *static_cast<Written *>(cookie);
        target.bytes.append(data, size);
        target.largestPiece = std::max(target.largestPiece, size);
        return static_cast<ssize_t>(size);
    };
    return Platform::Stream(fopencookie(&written, "w", {nullptr, write, nullptr, nullptr}));
}

/// Operands that hardly get smaller when they are compressed.
std::string randomNumbers(int count)
{
    std::mt19937 random(1); // NOLINT(bugprone-random-generator-seed): the same each time
    std::string text;
    for (int i = 0; i < count; ++i)
        text += std::to_string(random()) + " w ";
    return text;
}

TEST_F(ToolkitPDFWatermarkTest, ALargeStreamIsWrittenInBlocks)
{
    Written written;
    Platform::Stream output = streamInto(written);
    _folder.write("in", onePage(randomNumbers(200'000)));
    const Platform::Stream input = Platform::openForReading(_folder.file("in"));
    Platform::TextShaper texts;
    applyToPDF(redTextBelow(), {input.get(), output.get(), texts, ""});
    ASSERT_TRUE(Platform::closeStream(std::move(output)));

    EXPECT_GT(written.bytes.size(), 800'000U);
    EXPECT_LE(written.largestPiece, 128U * 1024);
    EXPECT_TRUE(written.bytes == marked(onePage(randomNumbers(200'000)), redTextBelow()));
}

TEST_F(ToolkitPDFWatermarkTest, TheTextStandsWhereGhostscriptSetsIt)
{
    const Watermark watermark = redText();
    const auto text = Platform::shapeText(watermark.text, watermark.font, watermark.size);
    const std::string page = "%!PS\n<< /PageSize [300 200] >> setpagedevice 1 0 0 setrgbcolor\n"
                             "/Helvetica 30 selectfont 60 " +
                             std::to_string(80 + text.descent) + " moveto (DRAFT) show showpage\n";
    const auto expected = rendered(page).at(0).boxOf(kRed);
    const auto actual = rendered(marked(onePage(), watermark)).at(0).boxOf(kRed);
    ASSERT_TRUE(expected && actual);
    expectNear(*expected, *actual);
}

TEST_F(ToolkitPDFWatermarkTest, EveryScriptStandsInItsPlace)
{
    for (const char *text : {"Draft", "ΠΡΟΣΧΕΔΙΟ", "مسودة", "机密文件", "Entwurf 草稿"}) {
        for (const double angle : {0.0, 45.0}) {
            Watermark watermark = redText();
            watermark.text = text;
            watermark.angle = angle;
            watermark.position = {100, 30};
            watermark.size = 20;
            SCOPED_TRACE(text);
            const std::string before = onePage();
            const auto page = rendered(marked(before, watermark)).at(0);
            expectInPlace(watermark, page);
            expectOthersUnchanged(rendered(before).at(0), page, true);
        }
    }
}

TEST_F(ToolkitPDFWatermarkTest, TheAngleTurnsTheTextAboutItsCorner)
{
    for (const double angle : {30.0, 90.0, -45.0, 180.0, 405.0, -720.0}) {
        Watermark watermark = redText();
        watermark.angle = angle;
        watermark.position = {150, 100};
        SCOPED_TRACE(angle);
        expectInPlace(watermark, rendered(marked(onePage(), watermark)).at(0));
    }
}

TEST_F(ToolkitPDFWatermarkTest, ThePositionCountsFromThePageAsItIsRead)
{
    PDFBuilder builder;
    PDFBuilder blank;
    for (const char *rotate : {"0", "90", "180", "270", "-90", "-180", "450", "90.0", "45"}) {
        for (const char *boxes :
             {"/MediaBox [0 0 300 200]", "/MediaBox [-20 10 320 260]",
              "/MediaBox [0 0 400 500] /CropBox [50 60 350 280]", "/MediaBox [300 200 0 0]"}) {
            const std::string entries = std::string(boxes) + " /Rotate " + rotate;
            builder.addPage(entries, kPicture);
            blank.addPage(entries, "q 2 0 0 2 9 9 cm");
        }
    }
    const std::string before = builder.document();
    const auto pagesBefore = rendered(before);
    for (const Watermark &watermark : {redText(), redTextBelow()}) {
        const auto pages = rendered(marked(before, watermark));
        // Where nothing hides it.
        const auto plain = watermark.above ? pages : rendered(marked(blank.document(), watermark));
        ASSERT_EQ(36U, pages.size());
        ASSERT_EQ(36U, plain.size());
        for (std::size_t i = 0; i < pages.size(); ++i) {
            SCOPED_TRACE(i);
            expectOthersUnchanged(pagesBefore[i], pages[i], watermark.above);
            expectInPlace(watermark, plain[i]);
        }
    }
}

TEST_F(ToolkitPDFWatermarkTest, BoxesAndRotationAreInherited)
{
    PDFBuilder builder;
    builder.addPage("", kPicture);
    const std::string document =
        builder.document("/MediaBox [0 0 400 500] /CropBox [50 60 250 360] /Rotate -270");
    const auto page = rendered(marked(document, redText())).at(0);
    EXPECT_EQ(300, page.width());
    expectInPlace(redText(), page);
}

TEST_F(ToolkitPDFWatermarkTest, ABoxWithoutAreaCountsAsNone)
{
    // Readers do not agree on what they show of such a page.
    QPDF pdf;
    const std::string document =
        onePage(kPicture, "/MediaBox [0 0 300 200] /CropBox [100 100 100 190]");
    pdf.processMemoryFile("page", document.data(), document.size());
    const PDFPage page(pdf.getAllPages().at(0));
    EXPECT_EQ(300, page.width());
    EXPECT_EQ(200, page.height());
}

TEST_F(ToolkitPDFWatermarkTest, PointsStayPointsWhereAPageHasALargerUnit)
{
    const std::string document = onePage("", "/MediaBox [0 0 30 20] /UserUnit 10");
    const auto page = rendered(marked(document, redText())).at(0);
    EXPECT_EQ(300, page.width());
    expectInPlace(redText(), page);
}

TEST_F(ToolkitPDFWatermarkTest, AboveHidesThePageAndBelowIsHiddenByIt)
{
    const std::string document = onePage("0 1 0 rg 50 70 60 60 re f");
    const auto above = rendered(marked(document, redText())).at(0);
    const auto below = rendered(marked(document, redTextBelow())).at(0);
    expectInPlace(redText(), above);
    ASSERT_TRUE(below.boxOf(kRed));
    EXPECT_NEAR(110, below.boxOf(kRed)->left, 1);
    EXPECT_NEAR(60.0 * 60.0 / (300 * 200), below.shareOf(kGreen), 0.001);
}

/// What careless producers leave at the end of a page's contents.
const std::vector<std::string> &leftovers()
{
    static const std::vector<std::string> kLeftovers = {
        "q 2 0 0 2 30 30 cm",
        "q q q 0 0 1 rg",
        "Q Q Q 0.5 0 0 0.5 10 10 cm",
        "0 1 -1 0 0 0 cm 0 1 0 rg",
        "10 10 20 20 re W n",
        "q 0 0 1 1 re W* n",
        "BT /F1 12 Tf 3 Tr",
        "/Span << /Lang (en) >> BDC",
        "10 10 m 20 20 l",
        "1 2 3 4 5 6",
        "[ 1 2 3",
        "<< /Key",
        "(not closed",
        "/Faint gs",
        "/Masked gs",
        "% a comment without an end",
    };
    return kLeftovers;
}

std::string untidyDocument()
{
    PDFBuilder builder;
    const std::string group = builder.addStream(
        "0 g 0 0 5 5 re f", "/Type /XObject /Subtype /Form /BBox [0 0 300 200] /Resources << >> "
                            "/Group << /S /Transparency /CS /DeviceGray >>");
    const std::string resources = builder.add(
        "<< /Font << /F1 << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >> >> /ExtGState << "
        "/Faint << /ca 0 /CA 0 /BM /Multiply >> /Masked << /SMask << /S /Luminosity /G " +
        group + " >> >> >> >>");
    for (const std::string &leftover : leftovers())
        builder.addPage(std::string(kSmall) + " /Resources " + resources, kPicture + leftover);
    return builder.document();
}

TEST_F(ToolkitPDFWatermarkTest, WhatAPageLeavesBehindDoesNotMatter)
{
    const std::string before = untidyDocument();
    const auto pagesBefore = rendered(before);
    for (const Watermark &watermark : {redText(), redTextBelow()}) {
        const auto pages = rendered(marked(before, watermark));
        ASSERT_EQ(leftovers().size(), pages.size());
        for (std::size_t i = 0; i < pages.size(); ++i) {
            SCOPED_TRACE(leftovers()[i]);
            expectOthersUnchanged(pagesBefore[i], pages[i], watermark.above);
            if (watermark.above)
                expectInPlace(watermark, pages[i]);
            else
                EXPECT_TRUE(pages[i].boxOf(kRed));
        }
    }
}

TEST_F(ToolkitPDFWatermarkTest, ItCanBeDrawnTwice)
{
    Watermark second = redText();
    second.colour = {0, 0, 0};
    second.position = {160, 140};
    for (const bool firstAbove : {true, false}) {
        for (const bool secondAbove : {true, false}) {
            Watermark first = firstAbove ? redText() : redTextBelow();
            first.position = {160, 20};
            second.above = secondAbove;
            const auto pages = rendered(marked(marked(untidyDocument(), first), second));
            for (const RenderedPage &page : pages) {
                expectInPlace(first, page);
                ASSERT_TRUE(page.boxOf(Support::kBlack));
                expectNear(Support::inkBoxOf(second), *page.boxOf(Support::kBlack));
            }
        }
    }
}

TEST_F(ToolkitPDFWatermarkTest, ColoursAreGreyRGBOrCMYK)
{
    const auto colourOf = [&](std::vector<double> components) {
        Watermark watermark = redText();
        watermark.colour = std::move(components);
        watermark.text = "\xE2\x96\x88"; // a full block
        watermark.position = {100, 100};
        const auto page = rendered(marked(onePage(""), watermark)).at(0);
        const auto centre = page.inkCentre();
        return centre ? page.colourAt(*centre) : kWhite;
    };
    EXPECT_EQ((Colour{0, 0, 0}), colourOf({0}));
    EXPECT_EQ((Colour{51, 51, 51}), colourOf({0.2}));
    EXPECT_EQ((Colour{0, 51, 255}), colourOf({0, 0.2, 1}));
    EXPECT_EQ((Colour{0, 255, 0}), colourOf({1, 0, 1, 0}));
}

TEST_F(ToolkitPDFWatermarkTest, PagesWithoutContentsOrResourcesGetIt)
{
    PDFBuilder builder;
    builder.addPage(kSmall);
    builder.addPage(std::string(kSmall) + " /Contents []");
    builder.addPage(std::string(kSmall) + " /Contents null /Resources null");
    builder.addPage(std::string(kSmall) + " /Resources << /XObject 17 >>");
    for (const Watermark &watermark : {redText(), redTextBelow()}) {
        const auto pages = rendered(marked(builder.document(), watermark));
        ASSERT_EQ(4U, pages.size());
        for (const RenderedPage &page : pages)
            expectInPlace(watermark, page);
    }
}

TEST_F(ToolkitPDFWatermarkTest, ContentsInSeveralPartsStayWhole)
{
    PDFBuilder builder;
    const std::string first = builder.addStream("0 1 0 rg 0 0 150");
    const std::string second = builder.addStream("200 re f 0 0 1 rg 0 90 300 10 re");
    const std::string third = builder.addStream("f q");
    builder.addPage(std::string(kSmall) + " /Contents [" + first + " " + second + " null " + third +
                    "]");
    for (const Watermark &watermark : {redText(), redTextBelow()}) {
        const auto page = rendered(marked(builder.document(), watermark)).at(0);
        expectOthersUnchanged(rendered(onePage()).at(0), page, watermark.above);
    }
}

TEST_F(ToolkitPDFWatermarkTest, APartThatCannotBeUnpackedIsRefusedWhereItHasToBe)
{
    PDFBuilder builder;
    const std::string good = builder.addStream(kPicture);
    const std::string bad = builder.addStream("no such data", "/Filter /FlateDecode");
    builder.addPage(std::string(kSmall) + " /Contents [" + good + " " + bad + "]");
    EXPECT_EQ("The PDF document has a page that is damaged or too large; open it and print it to a "
              "new PDF.",
              problem(builder.document()));

    PDFBuilder single;
    single.addPage(std::string(kSmall) + " /Contents " +
                   single.addStream("no such data", "/Filter /FlateDecode"));
    EXPECT_EQ("none", problem(single.document()));
}

TEST_F(ToolkitPDFWatermarkTest, PartsThatComeToMoreThan256MiBAreRefused)
{
    const auto document = [](std::size_t mebibytes) {
        PDFBuilder builder;
        const std::string large = builder.addStream(
            Support::deflatedWithBlanks("0 g", mebibytes - 1), "/Filter /FlateDecode");
        const std::string small = builder.addStream(std::string(1 << 20, ' '));
        builder.addPage(std::string(kSmall) + " /Contents [" + large + " " + small + "]");
        return builder.document();
    };
    EXPECT_EQ("none", problem(document(255)));
    EXPECT_EQ("The PDF document has a page that is damaged or too large; open it and print it to a "
              "new PDF.",
              problem(document(256)));
}

TEST_F(ToolkitPDFWatermarkTest, StreamsWithAFilterAreCopiedAndOthersAreCompressed)
{
    PDFBuilder builder;
    const auto add = [&](const std::string &data, const std::string &entries) {
        return builder.addStream(data, "/Subtype /Image /Width 1 /Height 1 " + entries);
    };
    const std::string blanks(1000, ' ');
    const std::string objects = "/A " + add("68 65 78>", "/Filter /AHx") + " /B " +
                                add("6C 69 73 74>", "/Filter [/AHx]") + " /C " +
                                add("nobody knows", "/Filter /Unknown") + " /D " + add(blanks, "");
    builder.addPage(std::string(kSmall) + " /Resources << /XObject << " + objects + " >> >>",
                    "/A Do /B Do /C Do /D Do");
    const std::string result = marked(builder.document(), redText());
    for (const char *kept : {"68 65 78>", "6C 69 73 74>", "nobody knows"})
        EXPECT_THAT(result, HasSubstr(kept));
    EXPECT_THAT(result, testing::Not(HasSubstr(blanks)));
}

TEST_F(ToolkitPDFWatermarkTest, PagesMayShareContentsButNotResources)
{
    PDFBuilder builder;
    const std::string contents = builder.addStream("/Picture Do");
    for (const char *colour : {"0 1 0 rg", "0 0 1 rg", "0 1 0 rg"}) {
        const std::string picture =
            builder.addStream(std::string(colour) + " 0 0 300 50 re f",
                              "/Type /XObject /Subtype /Form /BBox [0 0 300 200]");
        builder.addPage(std::string(kSmall) + " /Contents " + contents +
                        " /Resources << /XObject << /Picture " + picture + " >> >>");
    }
    const auto before = rendered(builder.document());
    for (const Watermark &watermark : {redText(), redTextBelow()}) {
        const auto pages = rendered(marked(builder.document(), watermark));
        ASSERT_EQ(3U, pages.size());
        for (std::size_t i = 0; i < pages.size(); ++i)
            expectOthersUnchanged(before[i], pages[i], watermark.above);
    }
}

TEST_F(ToolkitPDFWatermarkTest, PagesWithTheSameContentsAndResourcesShareAForm)
{
    PDFBuilder builder;
    const std::string contents = builder.addStream(kPicture);
    const std::string resources = builder.add("<< >>");
    for (const char *size : {"[0 0 300 200]", "[0 0 300 200]", "[0 0 400 200]"})
        builder.addPage("/MediaBox " + std::string(size) + " /Contents " + contents +
                        " /Resources " + resources);
    const std::string result = marked(builder.document(), redText());
    QPDF pdf;
    pdf.processMemoryFile("marked", result.data(), result.size());
    std::vector<QPDFObjGen> forms;
    for (QPDFObjectHandle page : pdf.getAllPages())
        forms.push_back(page.getKey("/Resources").getKey("/XObject").getKey("/Page").getObjGen());
    ASSERT_EQ(3U, forms.size());
    EXPECT_EQ(forms[0], forms[1]);
    EXPECT_NE(forms[0], forms[2]); // another area shows
}

/// Documents of the first versions leave a form's resources to the page that uses it.
TEST_F(ToolkitPDFWatermarkTest, FormsWithoutResourcesStillFindThePages)
{
    PDFBuilder builder;
    const std::string inner = builder.addStream(
        "0 0 1 rg 0 0 150 50 re f", "/Type /XObject /Subtype /Form /BBox [0 0 300 200]");
    const std::string outer =
        builder.addStream("/Inner Do", "/Type /XObject /Subtype /Form /BBox [0 0 300 200]");
    builder.addPage(std::string(kSmall) + " /Resources << /XObject << /Outer " + outer +
                        " /Inner " + inner + " >> >>",
                    "/Outer Do");
    const auto before = rendered(builder.document()).at(0);
    ASSERT_TRUE(before.boxOf(kBlue));
    for (const Watermark &watermark : {redText(), redTextBelow()}) {
        const auto page = rendered(marked(builder.document(), watermark)).at(0);
        expectOthersUnchanged(before, page, watermark.above);
    }
}

TEST_F(ToolkitPDFWatermarkTest, AllPagesShareOneOutline)
{
    PDFBuilder builder;
    for (int page = 0; page < 10; ++page)
        builder.addPage(kSmall, kPicture);
    for (const Watermark &watermark : {redText(), redTextBelow()}) {
        const std::string document = marked(builder.document(), watermark);
        QPDF pdf;
        pdf.processMemoryFile("marked", document.data(), document.size());
        std::set<QPDFObjGen> texts;
        for (QPDFObjectHandle page : pdf.getAllPages()) {
            QPDFObjectHandle objects = page.getKey("/Resources").getKey("/XObject");
            texts.insert(objects.getKey(watermark.above ? "/Text" : "/Watermark").getObjGen());
        }
        EXPECT_EQ(1U, texts.size());
    }
}

TEST_F(ToolkitPDFWatermarkTest, ATextWithoutInkLeavesThePagesAsTheyAre)
{
    for (const char *text : {"", "   "}) {
        Watermark watermark = redText();
        watermark.text = text;
        EXPECT_EQ(rendered(onePage()), rendered(marked(onePage(), watermark)));
    }
}

TEST_F(ToolkitPDFWatermarkTest, AnEncryptedDocumentOpensWithTheEmptyPassword)
{
    for (const char *bits : {"128", "256"}) {
        const std::string document = made({"qpdf", "--allow-weak-crypto", "--encrypt", "", "owner",
                                           bits, "--print=low", "--", "in", "out"},
                                          onePage());
        const std::string result = marked(document, redText());
        expectInPlace(redText(), rendered(result).at(0));
        // It keeps its owner's permissions.
        QPDF pdf;
        pdf.processMemoryFile("marked", result.data(), result.size());
        EXPECT_TRUE(pdf.isEncrypted());
        EXPECT_FALSE(pdf.allowPrintHighRes());
    }
}

/// The two halves of a document's identifier.
std::vector<std::string> identifierOf(const std::string &document)
{
    QPDF pdf;
    pdf.processMemoryFile("document", document.data(), document.size());
    std::vector<std::string> halves;
    for (QPDFObjectHandle half : pdf.getTrailer().getKey("/ID").getArrayAsVector())
        halves.push_back(half.getStringValue());
    return halves;
}

TEST_F(ToolkitPDFWatermarkTest, AnotherDocumentHasAnotherIdentifier)
{
    Watermark another = redText();
    another.text = "Other";
    std::set<std::string> firstHalves;
    std::set<std::string> secondHalves;
    for (const std::string &document : {marked(onePage(), redText()), marked(onePage(), another),
                                        marked(onePage("0 g"), another)}) {
        const auto halves = identifierOf(document);
        ASSERT_EQ(2U, halves.size());
        firstHalves.insert(halves[0]);
        secondHalves.insert(halves[1]);
    }
    EXPECT_EQ(3U, firstHalves.size());
    EXPECT_EQ(3U, secondHalves.size());
}

TEST_F(ToolkitPDFWatermarkTest, TheFirstHalfOfAnIdentifierStaysAndTheSecondIsNew)
{
    for (const std::vector<std::string> &words : std::vector<std::vector<std::string>>{
             {"qpdf", "in", "out"}, {"qpdf", "--encrypt", "", "owner", "256", "--", "in", "out"}}) {
        const std::string document = made(words, onePage());
        const auto before = identifierOf(document);
        const auto after = identifierOf(marked(document, redText()));
        ASSERT_EQ(2U, before.size());
        ASSERT_EQ(2U, after.size());
        EXPECT_EQ(before[0], after[0]);
        EXPECT_NE(before[1], after[1]);
    }
}

TEST_F(ToolkitPDFWatermarkTest, ADocumentThatNeedsAPasswordIsRefused)
{
    EXPECT_THAT(
        problem(made({"qpdf", "--encrypt", "user", "owner", "256", "--", "in", "out"}, onePage())),
        HasSubstr("needs a password"));
}

TEST_F(ToolkitPDFWatermarkTest, ADocumentWithoutPagesIsRefused)
{
    EXPECT_THAT(problem(PDFBuilder().document()), HasSubstr("has no pages"));
}

TEST_F(ToolkitPDFWatermarkTest, APageTreeThatLeadsIntoItselfOrTooDeepIsRefused)
{
    PDFBuilder loop;
    loop.add("<< /Type /Pages /Kids [2 0 R] /Count 1 >>");
    EXPECT_THAT(problem(loop.document("/Kids [3 0 R] /Count 1")), HasSubstr("The PDF document"));

    PDFBuilder deep;
    for (int level = 4; level < 20000; ++level)
        deep.add("<< /Type /Pages /Kids [" + std::to_string(level) + " 0 R] /Count 1 >>");
    deep.add("<< /Type /Page /MediaBox [0 0 10 10] >>");
    EXPECT_THAT(problem(deep.document("/Kids [3 0 R] /Count 1")), HasSubstr("nested too deeply"));

    // The same depth, but every level can be seen from the root.
    std::string levels;
    for (int level = 3; level < 20000; ++level)
        levels += std::to_string(level) + " 0 R ";
    EXPECT_THAT(problem(deep.document("/Kids [" + levels + "] /Count 1")),
                HasSubstr("lead into themselves"));
}

TEST_F(ToolkitPDFWatermarkTest, ContentsThatLeadIntoThemselvesAreNone)
{
    PDFBuilder builder;
    ASSERT_EQ("3 0 R", builder.add("[3 0 R [3 0 R]]"));
    builder.addPage(std::string(kSmall) + " /Contents 3 0 R");
    for (const Watermark &watermark : {redText(), redTextBelow()}) {
        const auto pages = rendered(marked(builder.document(), watermark));
        ASSERT_EQ(1U, pages.size());
        expectInPlace(watermark, pages[0]);
    }
}

TEST_F(ToolkitPDFWatermarkTest, AnObjectNumberBeyondAllNumbersIsDamage)
{
    // The library comes upon it while it looks for the objects that the table does not tell. From
    // 12 on it passes it over, and finds all that the document has.
    std::string document = onePage();
    document.replace(document.find("xref"), 4, "99999999999999999999 99999999999999999999 obj");
    EXPECT_EQ(Support::libqpdfIsBefore(12)
                  ? "The PDF document is damaged: not all of its objects can be read; open it and "
                    "print it to a new PDF."
                  : "none",
              problem(document));
}

TEST_F(ToolkitPDFWatermarkTest, ATruncatedDocumentIsRefusedOrKeepsAllItsPages)
{
    PDFBuilder builder;
    for (int page = 0; page < 5; ++page)
        builder.addPage(kSmall, kPicture);
    const std::string whole = builder.document();
    const std::string linear = made({"qpdf", "--linearize", "in", "out"}, whole);
    const std::string packed = made({"qpdf", "--object-streams=generate", "in", "out"}, whole);
    int refused = 0;
    for (const std::string &document : {whole, linear, packed}) {
        for (std::size_t size = 0; size < document.size(); size += 37) {
            try {
                const std::string result = marked(document.substr(0, size), redText());
                QPDF pdf;
                pdf.setSuppressWarnings(true);
                pdf.processMemoryFile("marked", result.data(), result.size());
                EXPECT_EQ(5U, pdf.getAllPages().size()) << size;
                for (QPDFObjectHandle page : pdf.getAllPages()) {
                    QPDFObjectHandle objects = page.getKey("/Resources").getKey("/XObject");
                    ASSERT_TRUE(objects.getKey("/Page").isStream()) << size;
                    EXPECT_GT(objects.getKey("/Page").getRawStreamData()->getSize(), 0U) << size;
                }
            } catch (const ToolkitError &) {
                ++refused;
            }
        }
    }
    EXPECT_GT(refused, 0);
}

TEST_F(ToolkitPDFWatermarkTest, ADamagedDocumentThatLostPagesIsRefused)
{
    PDFBuilder builder;
    for (int page = 0; page < 3; ++page)
        builder.addPage(kSmall, kPicture);
    const std::string whole = builder.document();
    std::string document = whole;
    document.replace(document.find("\n6 0 obj"), 8, "\n6 0 ob_"); // the second page
    EXPECT_EQ("The PDF document is damaged: not all of its pages are there; open it and print it "
              "to a new PDF.",
              problem(document));

    document = whole;
    document.replace(document.find("\n5 0 obj"), 8, "\n5 0 ob_"); // the second page's contents
    EXPECT_EQ("The PDF document is damaged: not all of its pages are there; open it and print it "
              "to a new PDF.",
              problem(document));

    document = whole;
    document.replace(document.find("/Kids [ 4 0 R"), 13, "/Kids [      "); // no list of all three
    document.replace(document.find("startxref\n"), 11, "startxref\n9");
    EXPECT_EQ("The PDF document is damaged: not all of its pages are there; open it and print it "
              "to a new PDF.",
              problem(document));
}

TEST_F(ToolkitPDFWatermarkTest, OfADamagedDocumentTheLibraryItselfSaysNothing)
{
    PDFBuilder builder;
    builder.addPage(kSmall, kPicture);
    std::string document = builder.document();
    document.replace(document.find("\n4 0 obj"), 8, "\n4 0 ob_"); // the page
    document.replace(document.find("startxref\n"), 11, "startxref\n9");
    testing::internal::CaptureStderr();
    EXPECT_THAT(problem(document), HasSubstr("The PDF document is damaged: "));
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
}

constexpr char kLostParts[] = "The PDF document is damaged: not all parts of its pages are there; "
                              "open it and print it to a new PDF.";

/// A page that draws with a font, an image and an annotation's look.
struct RichPage {
    PDFBuilder builder;
    std::string image = builder.addStream(std::string(30, 'x'), "/Type /XObject /Subtype /Image "
                                                                "/Width 10 /Height 1 /ColorSpace "
                                                                "/DeviceRGB /BitsPerComponent 8");
    std::string font = builder.add("<< /Type /Font /Subtype /Type1 /BaseFont /Times-Roman >>");
    std::string look =
        builder.addStream("0 0 5 5 re f", "/Type /XObject /Subtype /Form /BBox [0 0 9 9]");
    std::string note = builder.add("<< /Type /Annot /Subtype /Stamp /F 4 /Rect [9 9 18 18] /AP << "
                                   "/N " +
                                   look + " >> /Popup 99 0 R >>");

    RichPage()
    {
        builder.addPage(std::string(kSmall) + " /Annots [" + note + "]",
                        "BT /F 20 Tf (text) Tj ET /I Do");
    }
    std::string document() const
    {
        return builder.document("/Resources << /Font << /F " + font + " >> /XObject << /I " +
                                image + " >> >>");
    }
    /// Without the object: its number is not where the table says, nor anywhere else.
    std::string documentWithout(const std::string &reference) const
    {
        std::string text = document();
        const std::string begin = "\n" + reference.substr(0, reference.size() - 1) + "obj";
        return text.replace(text.find(begin) + 1, begin.size() - 1, begin.size() - 1, 'x');
    }
};

TEST_F(ToolkitPDFWatermarkTest, ADamagedDocumentThatLostPartsOfAPageIsRefused)
{
    const RichPage page;
    EXPECT_EQ("none", problem(page.document()));
    for (const std::string &part : {page.image, page.font, page.look})
        EXPECT_EQ(kLostParts, problem(page.documentWithout(part))) << part;
}

TEST_F(ToolkitPDFWatermarkTest, ADocumentThatWasMendedWithoutALossIsServed)
{
    std::string document = RichPage().document(); // its annotation's popup was never there
    document.replace(document.find("startxref\n"), 11, "startxref\n9");
    EXPECT_EQ("none", problem(document));
}

TEST_F(ToolkitPDFWatermarkTest, ASoundDocumentMayReferToWhatIsNotThere)
{
    EXPECT_EQ("none", problem(onePage(kPicture, std::string(kSmall) +
                                                    " /Resources << /Font << /F 99 0 R >> >>")));
}

TEST_F(ToolkitPDFWatermarkTest, ContentsWithoutAnEndAreRefused)
{
    PDFBuilder builder;
    builder.addPage(std::string(kSmall) + " /Contents 4 0 R");
    builder.addStream(kPicture);
    std::string document = builder.document();
    EXPECT_EQ("none", problem(document));
    const std::string end = "endstream\nendobj";
    document.replace(document.find(end), end.size(), end.size(), 'x');
    EXPECT_EQ("The PDF document is damaged: not all of its pages are there; open it and print it "
              "to a new PDF.",
              problem(document));
}

TEST_F(ToolkitPDFWatermarkTest, APageCountThatLiesIsMended)
{
    std::string document = onePage();
    document.replace(document.find("/Count 1"), 8, "/Count 9");
    const std::string result = marked(document, redText());
    QPDF pdf;
    pdf.processMemoryFile("marked", result.data(), result.size());
    EXPECT_EQ(1, pdf.getRoot().getKey("/Pages").getKey("/Count").getIntValue());
}

TEST_F(ToolkitPDFWatermarkTest, BrokenObjectsAreMendedOrRefused)
{
    const std::string whole = onePage();
    for (const auto &[what, with] :
         std::vector<std::pair<std::string, std::string>>{{"startxref\n", "startxref\n9"},
                                                          {"/Length ", "/Length 9"},
                                                          {"endstream", "endst"},
                                                          {"/Contents 3 0 R", "/Contents 99 0 R"},
                                                          {"/Parent 2 0 R", "/Parent 4 0 R"},
                                                          {"/Kids [", "/Kids [[[["},
                                                          {"/Count 1", "/Count (one)"}}) {
        std::string document = whole;
        const auto at = document.find(what);
        ASSERT_NE(std::string::npos, at) << what;
        document.replace(at, what.size(), with);
        SCOPED_TRACE(with);
        if (const std::string words = problem(document); words == "none") {
            const auto pages = rendered(Support::readFile(_folder.file("out")));
            ASSERT_EQ(1U, pages.size());
            expectInPlace(redText(), pages[0]);
        }
    }
}

/// Two pages with the same contents, of which an element each tells what the one mark is.
std::string taggedDocument()
{
    PDFBuilder builder;
    const std::string contents =
        builder.addStream("/P << /MCID 0 >> BDC " + std::string(kPicture) + " EMC");
    for (const char *number : {"0", "1"}) // objects 4 and 5
        builder.addPage(std::string(kSmall) + " /Resources 11 0 R /Contents " + contents +
                        " /StructParents " + number);
    builder.add("<< /Type /StructTreeRoot /K 7 0 R /ParentTree 10 0 R >>");
    builder.add("<< /S /Document /P 6 0 R /K [8 0 R 9 0 R] >>");
    builder.add("<< /S /P /P 7 0 R /Pg 4 0 R /K 0 >>");
    builder.add(
        "<< /S /P /P 7 0 R /K [<< /Type /MCR /Pg 5 0 R /MCID 0 >> << /Type /OBJR /Obj 4 0 R "
        ">>] >>");
    builder.add("<< /Nums [0 [8 0 R] 1 [9 0 R]] >>");
    builder.add("<< >>");
    return builder.document("", "/MarkInfo << /Marked true >> /StructTreeRoot 6 0 R");
}

/// What the first kid of an element refers to.
QPDFObjectHandle markOf(QPDF &pdf, int element)
{
    QPDFObjectHandle kids = pdf.getRoot().getKey("/StructTreeRoot").getKey("/K");
    kids = kids.isArray() ? kids.getArrayItem(0).getKey("/K") : kids.getKey("/K");
    QPDFObjectHandle kid = kids.getArrayItem(element).getKey("/K");
    return kid.isArray() ? kid.getArrayItem(0) : kid;
}

QPDFObjectHandle formOf(QPDFObjectHandle of)
{
    return of.getKey("/Resources").getKey("/XObject").getKey("/Page");
}

TEST_F(ToolkitPDFWatermarkTest, TheStructureOfATaggedDocumentFollowsThePagesContents)
{
    const std::string result = marked(taggedDocument(), redText());
    QPDF pdf;
    pdf.processMemoryFile("marked", result.data(), result.size());
    for (const int number : {0, 1}) {
        QPDFObjectHandle page = pdf.getAllPages().at(static_cast<std::size_t>(number));
        QPDFObjectHandle mark = markOf(pdf, number);
        ASSERT_TRUE(mark.isDictionaryOfType("/MCR"));
        EXPECT_EQ(page.getObjGen(), mark.getKey("/Pg").getObjGen());
        EXPECT_EQ(formOf(page).getObjGen(), mark.getKey("/Stm").getObjGen());
        EXPECT_EQ(0, mark.getKey("/MCID").getIntValue());
        EXPECT_EQ(number, formOf(page).getDict().getKey("/StructParents").getIntValue());
        EXPECT_FALSE(page.hasKey("/StructParents"));
    }
}

TEST_F(ToolkitPDFWatermarkTest, TheStructureStaysWithTheContentsWhenTheyAreMovedAgain)
{
    const std::string result = marked(marked(taggedDocument(), redText()), redText());
    QPDF pdf;
    pdf.processMemoryFile("marked", result.data(), result.size());
    QPDFObjectHandle inner = formOf(formOf(pdf.getAllPages().at(1)).getDict());
    EXPECT_EQ(inner.getObjGen(), markOf(pdf, 1).getKey("/Stm").getObjGen());
}

TEST_F(ToolkitPDFWatermarkTest, ATextBelowLeavesTheStructureAlone)
{
    const std::string result = marked(taggedDocument(), redTextBelow());
    QPDF pdf;
    pdf.processMemoryFile("marked", result.data(), result.size());
    EXPECT_TRUE(markOf(pdf, 0).isInteger());
    EXPECT_EQ(0, QPDFObjectHandle(pdf.getAllPages().at(0)).getKey("/StructParents").getIntValue());
}

// Neither read aloud nor taken for a part of what is left open before it.
TEST_F(ToolkitPDFWatermarkTest, TheTextIsAnArtifactOfItsOwn)
{
    const std::string artifact = "/Artifact << /Type /Pagination /Subtype /Watermark >> BDC\nq ";
    for (const Watermark &watermark : {redText(), redTextBelow()}) {
        const std::string result = marked(taggedDocument(), watermark);
        QPDF pdf;
        pdf.processMemoryFile("marked", result.data(), result.size());
        const auto parts = PDFPage(pdf.getAllPages().at(0)).contents();
        const auto data = QPDFObjectHandle(parts.at(0)).getStreamData();
        const std::string contents(reinterpret_cast<const char *>(data->getBuffer()),
                                   data->getSize());
        EXPECT_EQ((watermark.above ? "q /Page Do Q\n" : "") + artifact,
                  contents.substr(0, contents.find("q ", contents.find("BDC")) + 2));
        EXPECT_THAT(contents, testing::EndsWith(" Do Q\nEMC\n"));
    }
}

// Poppler reads the text by the structure: element by element, mark by mark.
TEST_F(ToolkitPDFWatermarkTest, ARealTaggedDocumentReadsTheSame)
{
    const auto read = [&](const std::string &document) {
        const auto result = Support::runProgram(
            {.arguments = {"pdfinfo", "-struct-text", _folder.write("read", document)}});
        return result.errors + result.output;
    };
    const std::string document = Support::readFile(KL_DOCUMENTS "/office-7.pdf");
    const std::string before = read(document);
    EXPECT_THAT(before, HasSubstr("Whoever reads the sheets"));
    EXPECT_EQ(before, read(marked(document, redText())));
    EXPECT_EQ(before, read(marked(marked(document, redText()), redText())));
    EXPECT_EQ(before, read(marked(document, redTextBelow())));
}

TEST_F(ToolkitPDFWatermarkTest, RealDocumentsKeepEveryOtherPixel)
{
    const std::string sample = Support::readFile(KL_SAMPLE_DOCUMENT);
    const std::string ofGhostscript =
        made({"gs", "-q", "-dSAFER", "-sDEVICE=pdfwrite", "-o", "out", "in"}, sample);
    const std::string ofCairo = made({"pdftocairo", "-pdf", "in", "out"}, ofGhostscript);
    const std::string packed =
        made({"qpdf", "--object-streams=generate", "--linearize", "in", "out"}, ofGhostscript);
    for (const std::string &before : {ofGhostscript, ofCairo, packed}) {
        const auto pagesBefore = rendered(before, 72);
        for (const Watermark &watermark : {redText(), redTextBelow()}) {
            const auto pages = rendered(marked(before, watermark), 72);
            ASSERT_EQ(pagesBefore.size(), pages.size());
            for (std::size_t i = 0; i < pages.size(); ++i)
                expectOthersUnchanged(pagesBefore[i], pages[i], watermark.above);
        }
    }
}

} // namespace
