// What becomes of the toolkit's commands when any one of their calls fails.

#include "FaultTest.h"

#include "MinimalPPD.h"
#include "PDFBuilder.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <ostream>
#include <regex>

namespace fs = std::filesystem;
using Support::FaultedRun;
using testing::AnyOf;
using testing::EndsWith;
using testing::MatchesRegex;
using testing::StartsWith;

namespace {

using Words = std::vector<std::string>;

/// A representative command.
struct Case {
    std::string name;
    Words command;
    std::string document; ///< what it is given
};

void PrintTo(const Case &each, std::ostream *stream)
{
    *stream << each.name;
}

std::string postScriptDocument()
{
    std::string document = "%!PS-Adobe-3.0\n%%Pages: 3\n%%EndComments\n";
    for (int page = 1; page <= 3; ++page) {
        const std::string number = std::to_string(page);
        document += "%%Page: " + number + " " + number + "\n";
        for (int square = 0; square < 400; ++square)
            document += std::to_string(square) + " 10 50 50 rectfill\n";
        document += "showpage\n";
    }
    return document + "%%EOF\n";
}

std::string pdfDocument()
{
    Support::PDFBuilder builder;
    for (int page = 1; page <= 2; ++page)
        builder.addPage("/MediaBox [0 0 200 300]", std::string(6000, ' ') + "10 10 50 50 re f");
    return builder.document();
}

const Words kWatermark = {"watermark", "--above",  "--font", "Helvetica",  "--angle",
                          "45",        "--colour", "1,0,0",  "--position", "20,20",
                          "--size",    "36",       "--text", "Draft"};
const Words kBooklet = {"booklet", "--pagesize", "A4", "--centremargin", "0", "--outermargin",
                        "0",       "--ordering", "LTR"};
const Words kCoverPages = {"coverpages", "--back-style",  "noprint",    "--back-media",
                           "None",       "--back-source", "AutoSelect", "--front-style",
                           "print1",     "--front-media", "None",       "--front-source",
                           "Bypass",     "--source",      "AutoSelect", "--media",
                           "None",       "--duplex",      "none"};

class ToolkitFaultsTest : public FaultTest, public testing::WithParamInterface<Case> {
protected:
    ToolkitFaultsTest()
    {
        // Longer than libcups' buffer, so that it is read in several pieces.
        std::string comments;
        while (comments.size() < 10000)
            comments += "*% " + std::string(70, '-') + "\n";
        folder.write("queue.ppd", Support::minimalPPD(comments));
        Support::runProgram(call()); // from now on the fonts' cache is there
        whole = outputBytes();
        EXPECT_LT(100U, whole.size());
    }

    /// The command with an output that is there already, as the filter has it.
    Support::ProgramCall call() const
    {
        folder.write("in", GetParam().document);
        folder.write("out", kBefore);
        Support::ProgramCall result;
        result.arguments = GetParam().command;
        result.arguments.insert(result.arguments.begin(), KL_TOOLKIT);
        result.arguments.push_back(folder.file("in"));
        result.arguments.push_back(folder.file("out"));
        result.environment = {{"PPD", folder.file("queue.ppd")}, {"TMPDIR", temporaries}};
        return withFewFonts(result);
    }

    bool hasOutput() const { return fs::exists(folder.file("out")); }

    std::string outputBytes() const
    {
        return withoutIdentity(Support::readFile(folder.file("out")));
    }

    /// A PDF document's identity is that of the moment.
    static std::string withoutIdentity(const std::string &document)
    {
        static const std::regex identity("/ID \\[<[0-9a-f]*><[0-9a-f]*>\\]");
        return std::regex_replace(document, identity, "");
    }

    /// Nothing beside the output has changed.
    void expectTheRestAsItWas() const
    {
        EXPECT_EQ(GetParam().document, Support::readFile(folder.file("in")));
        EXPECT_TRUE(temporaryFiles().empty());
        for (const auto &entry : fs::directory_iterator(folder.path()))
            EXPECT_THAT(entry.path().filename(),
                        AnyOf("in", "out", "queue.ppd", "tmp", "root", "fonts"));
    }

    /// The output in full, or none and a line.
    void expectAllOrALine(const FaultedRun &run) const
    {
        EXPECT_EQ("", run.result.output);
        expectTheRestAsItWas();
        if (run.result.exitStatus == 0) {
            expectWholeOutput();
            EXPECT_EQ("", ownWords(run));
            return;
        }
        EXPECT_EQ(1, run.result.exitStatus);
        EXPECT_TRUE(run.struck);
        EXPECT_THAT(ownWords(run), MatchesRegex("[ -~]+\\.\n"));
        // Gone, or as it was before the command came to it.
        if (hasOutput()) {
            EXPECT_EQ(kBefore, outputBytes());
        }
    }

    /// Whether the output says the same as that of a whole run. A PDF library that cannot read a
    /// stream for its compression puts it in as it is.
    void expectWholeOutput() const
    {
        ASSERT_TRUE(hasOutput());
        if (outputBytes() == whole)
            return;
        ASSERT_THAT(whole, StartsWith("%PDF-"));
        folder.write("whole", whole);
        EXPECT_EQ(uncompressed("whole"), uncompressed("out"));
        fs::remove(folder.file("whole"));
    }

    std::string uncompressed(const std::string &name) const
    {
        const auto result = Support::runProgram(
            {.arguments = {"qpdf", "--qdf", "--static-id", folder.file(name), "-"}});
        EXPECT_EQ("", result.errors);
        return withoutIdentity(result.output);
    }

    /// What the program says, without the font library's own words about a configuration that it
    /// cannot read.
    static std::string ownWords(const FaultedRun &run)
    {
        const std::string &errors = run.result.errors;
        if (!errors.starts_with("Fontconfig error: "))
            return errors;
        const auto ours = errors.rfind("There is no font");
        return ours == std::string::npos ? "" : errors.substr(ours);
    }

    static constexpr char kBefore[] = "as it was before";
    std::string whole;
};

TEST_P(ToolkitFaultsTest, AnySystemCallThatFails)
{
    for (const NamedFault &fault : faultsOfSystemCalls())
        strikeEveryCall(
            fault, [this] { return call(); },
            [&](const FaultedRun &run) { expectAllOrALine(run); });
}

TEST_P(ToolkitFaultsTest, WithoutAFontNoWatermarkIsLeftOut)
{
    const auto check = [&](const FaultedRun &run) {
        if (run.where.find("fonts.conf") == std::string::npos || run.result.exitStatus == 0)
            return; // a booklet has no text
        EXPECT_THAT(run.result.errors, EndsWith("There is no font to draw the watermark with.\n"));
        EXPECT_FALSE(hasOutput());
    };
    strikeEveryCall(
        {"open", {Support::Fault::Kind::Fails, Support::SystemCalls::kOpen, EMFILE}},
        [this] { return call(); }, check);
}

TEST_P(ToolkitFaultsTest, AnyAllocationThatFails)
{
    const auto check = [&](const FaultedRun &run) {
        expectAllOrALine(run);
        EXPECT_EQ(run.struck ? "There is not enough memory.\n" : "", run.result.errors);
    };
    // A PDF document takes thousands.
    const std::uint64_t step = GetParam().document.starts_with("%PDF") ? stepOfMany() : 1;
    EXPECT_LT(100U, strikeEveryCall(
                        kNoMemory, [this] { return call(); }, check, step));
}

TEST_P(ToolkitFaultsTest, ASignalAtAnyTime)
{
    const auto check = [&](const FaultedRun &run) {
        EXPECT_EQ(run.struck ? SIGTERM : 0, run.result.signal);
        EXPECT_EQ("", run.result.errors);
        expectTheRestAsItWas();
        // There in full, or not at all; or as it was before the command came to it.
        if (hasOutput()) {
            EXPECT_THAT(outputBytes(), AnyOf(kBefore, whole));
        }
    };
    EXPECT_LT(10U, strikeEveryCall(
                       signalAtSystemCalls(SIGTERM), [this] { return call(); }, check));
}

INSTANTIATE_TEST_SUITE_P(
    Commands, ToolkitFaultsTest,
    testing::Values(Case{"WatermarkOnPostScript", kWatermark, postScriptDocument()},
                    Case{"BookletOfPostScript", kBooklet, postScriptDocument()},
                    Case{"CoverPagesOfPostScript", kCoverPages, postScriptDocument()},
                    Case{"WatermarkOnPDF", kWatermark, pdfDocument()},
                    Case{"BookletOfPDF", kBooklet, pdfDocument()}),
    [](const auto &parameter) { return parameter.param.name; });

} // namespace
