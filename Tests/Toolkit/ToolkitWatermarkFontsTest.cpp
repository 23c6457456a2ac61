#include "MinimalPPD.h"
#include "PDFBuilder.h"
#include "PackagedFonts.h"
#include "Program.h"
#include "Rendering.h"
#include "TemporaryFolder.h"
#include "ToolkitPostScript.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

/// The toolkit on a machine with Latin letters only, and the filter that runs it.
class ToolkitWatermarkFontsTest : public testing::Test {
protected:
    ToolkitWatermarkFontsTest()
    {
        install(Support::latinFont());
        folder.write("fonts.conf",
                     "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"fonts.dtd\">\n"
                     "<fontconfig><dir>" +
                         fonts.path() + "</dir><cachedir>" + folder.file("cache") +
                         "</cachedir></fontconfig>\n");
        folder.write("in.ps", PostScriptSample{.pages = {"showpage\n"}}.text());
        Support::PDFBuilder builder;
        builder.addPage("/MediaBox [0 0 300 200]", "");
        folder.write("in.pdf", builder.document());
    }

    void install(const Support::PackagedFont &font) const
    {
        fs::copy_file(font.file, fs::path(fonts.path()) / fs::path(font.file).filename());
    }

    Support::ProgramResult run(const std::string &text, const std::string &input) const
    {
        return Support::runProgram(
            {.arguments = {KL_TOOLKIT, "watermark", "--above", "--font", "Helvetica", "--angle",
                           "0", "--colour", "0", "--position", "20,50", "--size", "30", "--text",
                           text, folder.file(input), folder.file("out")},
             .environment = environment()});
    }

    /// What the toolkit says of a text that it refuses for both kinds of documents; it leaves no
    /// output then.
    std::string problem(const std::string &text) const
    {
        const auto onPostScript = run(text, "in.ps");
        EXPECT_EQ(1, onPostScript.exitStatus);
        EXPECT_FALSE(fs::exists(folder.file("out")));
        const auto onPDF = run(text, "in.pdf");
        EXPECT_EQ(1, onPDF.exitStatus);
        EXPECT_FALSE(fs::exists(folder.file("out")));
        EXPECT_EQ(onPostScript.errors, onPDF.errors);
        return onPDF.errors;
    }

    /// How much of a page is inked by a text that is served.
    double coverageOf(const std::string &text) const
    {
        const auto result = run(text, "in.pdf");
        EXPECT_EQ("", result.errors);
        EXPECT_EQ(0, result.exitStatus);
        return Support::renderFile(folder.file("out")).pages.at(0).coverage();
    }

    std::map<std::string, std::optional<std::string>> environment() const
    {
        return {{"FONTCONFIG_FILE", folder.file("fonts.conf")}};
    }

    Support::TemporaryFolder folder;
    Support::TemporaryFolder fonts;
};

std::string missing(const std::string &codePoint)
{
    return "There is no font to draw the watermark with: " + codePoint + ".\n";
}

} // namespace

TEST_F(ToolkitWatermarkFontsTest, ScriptsThatNoFontHasAreRefused)
{
    EXPECT_EQ(missing("U+793E"), problem("社外秘"));
    EXPECT_EQ(missing("U+0645"), problem("مسودة"));
    EXPECT_EQ(missing("U+0E23"), problem("ร่าง"));
    EXPECT_EQ(missing("U+10FFFD"), problem("\U0010FFFD"));
}

TEST_F(ToolkitWatermarkFontsTest, OneCharacterThatNoFontHasIsEnough)
{
    EXPECT_EQ(missing("U+793E"), problem("Draft 社"));
    EXPECT_EQ(missing("U+0346"), problem("Dra\u0346ft"));
}

TEST_F(ToolkitWatermarkFontsTest, TheFirstOneIsNamedInTheOrderOfReading)
{
    // Drawn from left to right, the Chinese one stands first.
    EXPECT_EQ(missing("U+0634"), problem("ش社"));
    EXPECT_EQ(missing("U+05E9"), problem("שر A"));
}

TEST_F(ToolkitWatermarkFontsTest, WhatShowsNothingNeedsNoFont)
{
    const double plain = coverageOf("ab");
    EXPECT_GT(plain, 0.001);
    // Joiners, variation selectors, marks of direction and isolation, fillers, a byte order mark.
    EXPECT_NEAR(plain,
                coverageOf("a\u200D\u200C\u200B\u2060\uFE0F\U000E0100\u200E\u200F\u202A\u202C\u2068"
                           "\u2069\u00AD\u034F\u061C\u115F\u3164\uFEFFb"),
                plain / 20);
    // Blanks and line ends.
    EXPECT_NEAR(plain, coverageOf("a \u00A0\u1680\u2003\u2028\u202F\u3000b"), plain / 20);
}

TEST_F(ToolkitWatermarkFontsTest, LettersMayBeWrittenInParts)
{
    EXPECT_GT(coverageOf("e\u0301"), coverageOf("e"));
    EXPECT_NEAR(coverageOf("\u00C5"), coverageOf("\u212B"), 1e-9); // the sign for angstrom
}

TEST_F(ToolkitWatermarkFontsTest, ALetterAndItsMarksComeFromAFontThatHasBoth)
{
    EXPECT_EQ(missing("U+0346"), problem("a\u0346")); // a bridge above
    install(Support::manyScriptsFont());
    EXPECT_GT(coverageOf("a\u0346"), 1.1 * coverageOf("a"));
    EXPECT_EQ(missing("U+1AB0"), problem("a\u1AB0"));
}

TEST_F(ToolkitWatermarkFontsTest, AnEmojiNeedsAFontWithItsOutline)
{
    EXPECT_EQ(missing("U+1F600"), problem("a😀"));
    install(Support::colourEmojiFont());
    EXPECT_EQ(missing("U+1F600"), problem("a😀"));
    install(Support::manyScriptsFont());
    EXPECT_GT(coverageOf("a😀"), coverageOf("a"));
}

TEST_F(ToolkitWatermarkFontsTest, TheJobIsPrintedWithoutItAndTheLogSaysWhy)
{
    fs::create_directories(folder.file("Panel.bundle/Contents/Linux"));
    fs::create_symlink(KL_TOOLKIT, folder.file("Panel.bundle/Contents/Linux/toolkit"));
    auto variables = environment();
    variables["PPD"] =
        folder.write("queue.ppd", Support::minimalPPD("*APDialogExtension: \"" +
                                                      folder.file("Panel.bundle") + "\"\n"));
    const auto filter = [&](const std::string &text) {
        return Support::runProgram(
            {.arguments = {JOBFILTER_PROGRAM, "7", "anna", "Report", "1",
                           "com.kalmira.pde.watermark.text=" + text, folder.file("in.ps")},
             .environment = variables});
    };
    folder.write("in.ps", PostScriptSample{.pages = {"showpage\n"}}.text());
    const auto result = filter("社");
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_EQ("ERROR: Unable to apply watermark\n"
              "DEBUG: Unable to apply watermark: There is no font to draw the watermark with: "
              "U+793E.\n\n",
              result.errors);
    EXPECT_THAT(result.output,
                testing::HasSubstr(PostScriptSample{.pages = {"showpage\n"}}.text()));

    const auto drawn = filter("Draft");
    EXPECT_EQ("", drawn.errors);
    EXPECT_THAT(drawn.output, testing::HasSubstr("KLToolkitWatermarkPage"));
}
