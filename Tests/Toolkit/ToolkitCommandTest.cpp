#include "PDFBuilder.h"
#include "Program.h"
#include "TemporaryFolder.h"
#include "Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

using Support::PDFBuilder;
using Support::ProgramCall;
using Support::ProgramResult;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

using Words = std::vector<std::string>;

class ToolkitCommandTest : public testing::Test {
protected:
    ToolkitCommandTest()
    {
        PDFBuilder builder;
        builder.addPage("/MediaBox [0 0 200 300]", "10 10 50 50 re f");
        _document = builder.document();
        _folder.write("in", _document);
    }

    std::string input() const { return _folder.file("in"); }
    std::string output() const { return _folder.file("out"); }

    ProgramResult run(Words words, ProgramCall call = {}) const
    {
        words.insert(words.begin(), KL_TOOLKIT);
        call.arguments = std::move(words);
        return Support::runProgram(call);
    }

    static Words watermark(const std::string &in, const std::string &out,
                           const std::string &text = "DRAFT")
    {
        return {"watermark", "--above", "--font",     "Helvetica", "--angle", "0",
                "--colour",  "1,0,0",   "--position", "20,20",     "--size",  "36",
                "--text",    text,      in,           out};
    }
    static Words booklet(const std::string &in, const std::string &out)
    {
        return {"booklet", "--pagesize",
                "A4",      "--centremargin",
                "0",       "--outermargin",
                "0",       "--ordering",
                "LTR",     in,
                out};
    }
    ProgramResult runWatermark(const ProgramCall &call = {}) const
    {
        return run(watermark(input(), output()), call);
    }

    /// A document that takes the program a while.
    void writeLongInput() const
    {
        PDFBuilder builder;
        for (int page = 0; page < 8000; ++page)
            builder.addPage("/MediaBox [0 0 200 300]", "10 10 50 50 re f");
        _folder.write("in", builder.document());
    }

    /// From then on the run is in the middle of its work. The output has to be there before.
    void waitUntilSomethingIsWritten() const
    {
        struct stat status = {};
        while (stat(output().c_str(), &status) == 0 && status.st_size == 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }

    const Support::TemporaryFolder _folder;
    std::string _document;
};

/// Failed as it should: a status, nothing on standard output, one printable line that ends in a
/// full stop.
void expectComplaint(const ProgramResult &result, const std::string &words)
{
    EXPECT_EQ(1, result.exitStatus);
    EXPECT_EQ("", result.output);
    EXPECT_THAT(result.errors, MatchesRegex("[ -~]+\\.\n"));
    EXPECT_THAT(result.errors, HasSubstr(words));
}

mode_t modeOf(const std::string &path)
{
    struct stat status = {};
    EXPECT_EQ(0, stat(path.c_str(), &status));
    return status.st_mode & 07777;
}

bool exists(const std::string &path)
{
    return access(path.c_str(), F_OK) == 0;
}

TEST_F(ToolkitCommandTest, SaysNothingWhenAllIsWell)
{
    const ProgramResult result = runWatermark();
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_EQ("", result.output);
    EXPECT_EQ("", result.errors);
    EXPECT_THAT(Support::readFile(output()),
                testing::AllOf(testing::StartsWith("%PDF-"), testing::EndsWith("%%EOF\n")));
    EXPECT_EQ(_document, Support::readFile(input()));
}

TEST_F(ToolkitCommandTest, ItStartsWithoutTheLibrariesThatFewCommandsNeed)
{
    const auto result = Support::runProgram({.arguments = {"readelf", "-d", KL_TOOLKIT}});
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_THAT(result.output, HasSubstr("Shared library: [libqpdf"));
    for (const char *library : {"libcups", "fontconfig", "freetype", "harfbuzz", "fribidi"})
        EXPECT_THAT(result.output, Not(HasSubstr(library)));
}

TEST_F(ToolkitCommandTest, WithoutItsModulesItSaysWhatIsMissing)
{
    std::filesystem::copy_file(KL_TOOLKIT, _folder.file("toolkit"));
    Words words = watermark(input(), output());
    words.insert(words.begin(), _folder.file("toolkit"));
    expectComplaint(Support::runProgram({.arguments = words}),
                    "The fonts cannot be used: Unable to load module: KLTextMeasuringModule.so");
    words = booklet(input(), output());
    words.insert(words.begin(), _folder.file("toolkit"));
    expectComplaint(Support::runProgram({.arguments = words}),
                    "Unable to load module: KLQueuePPDModule.so");
    EXPECT_FALSE(exists(output()));
}

TEST_F(ToolkitCommandTest, TheOutputHasTheFormatOfTheInput)
{
    _folder.write("in", "%!PS-Adobe-3.0\n%%Pages: 1\n%%EndComments\n%%Page: 1 1\n"
                        "10 10 50 50 rectfill showpage\n%%EOF\n");
    const ProgramResult result = runWatermark();
    EXPECT_EQ(0, result.exitStatus) << result.errors;
    EXPECT_THAT(Support::readFile(output()), testing::StartsWith("%!PS-Adobe-3.0"));
}

TEST_F(ToolkitCommandTest, PostScriptWithoutPageCommentsIsRefused)
{
    _folder.write("in", "%!PS\nshowpage\n");
    expectComplaint(runWatermark(), "");
    EXPECT_FALSE(exists(output()));
}

TEST_F(ToolkitCommandTest, WhatStandsInFrontOfTheDocumentIsNamed)
{
    const auto complaint = [&](const std::string &text) {
        _folder.write("in", text);
        return runWatermark();
    };
    const std::string page = "%!PS-Adobe-3.0\n%%Page: 1 1\nshowpage\n";
    expectComplaint(complaint("\001M" + page), "Something other than the printer's job control");
    expectComplaint(complaint("\xEF\xBB\xBF" + page), "Something other than the printer's job");
    expectComplaint(complaint("\033%-12345X@PJL ENTER LANGUAGE = PCL\r\n\033&l1X"),
                    "What follows the printer's job control in the input is not PostScript.");
}

TEST_F(ToolkitCommandTest, ANewOutputHasTheUsualMode)
{
    ASSERT_EQ(0, runWatermark({.inChild = [] { umask(027); }}).exitStatus);
    EXPECT_EQ(0640U, modeOf(output()));
}

TEST_F(ToolkitCommandTest, AnExistingOutputKeepsItsModeAndItsPlace)
{
    _folder.write("out", std::string(100000, 'x'));
    chmod(output().c_str(), 0600);
    struct stat before = {};
    ASSERT_EQ(0, stat(output().c_str(), &before));
    ASSERT_EQ(0, runWatermark().exitStatus);
    struct stat after = {};
    ASSERT_EQ(0, stat(output().c_str(), &after));
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_EQ(0600U, modeOf(output()));
    EXPECT_THAT(Support::readFile(output()), testing::EndsWith("%%EOF\n"));
}

TEST_F(ToolkitCommandTest, LeavesNothingBesideTheOutput)
{
    ASSERT_EQ(0, runWatermark({.environment = {{"TMPDIR", _folder.path()}}}).exitStatus);
    EXPECT_THAT(_folder.names(), ElementsAre("in", "out"));
}

TEST_F(ToolkitCommandTest, AFailureRemovesTheOutput)
{
    for (const bool existsBefore : {false, true}) {
        _folder.write("in", "GIF89a");
        if (existsBefore)
            _folder.write("out", "");
        expectComplaint(runWatermark(), "neither a PostScript nor a PDF document");
        EXPECT_THAT(_folder.names(), ElementsAre("in"));
    }
}

TEST_F(ToolkitCommandTest, ARefusedValueRemovesTheOutput)
{
    _folder.write("out", "");
    Words words = watermark(input(), output());
    *std::ranges::find(words, "1,0,0") = "2";
    expectComplaint(run(words), "colour");
    EXPECT_THAT(_folder.names(), ElementsAre("in"));
}

TEST_F(ToolkitCommandTest, AMissingInputRemovesTheOutput)
{
    _folder.write("out", "");
    expectComplaint(run(watermark(_folder.file("gone"), output())), "No such file");
    EXPECT_FALSE(exists(output()));
}

// Which word names the output is not known then, and it might be somebody's document.
TEST_F(ToolkitCommandTest, WordsThatCannotBeToldApartLeaveEveryFileAlone)
{
    _folder.write("out", "mine");
    Words words = watermark(input(), output());
    words.insert(std::next(words.begin()), "--unknown");
    expectComplaint(run(words), "an option that the command does not know");
    expectComplaint(run({"watermark", "--above", output()}), "one input file");
    expectComplaint(run({}), "must be watermark, booklet or coverpages");
    EXPECT_EQ("mine", Support::readFile(output()));
}

TEST_F(ToolkitCommandTest, InputAndOutputMustNotBeTheSameFile)
{
    ASSERT_EQ(0, link(input().c_str(), _folder.file("hard").c_str()));
    for (const char *name : {"in", "hard"}) {
        expectComplaint(run(watermark(input(), _folder.file(name))), "the same file");
        EXPECT_EQ(_document, Support::readFile(_folder.file(name))) << name;
    }
}

// Who owns a folder could have put it there.
TEST_F(ToolkitCommandTest, ALinkAsOutputIsRefusedAndLedNowhere)
{
    _folder.write("another", "mine");
    for (const char *target : {"in", "another", "missing", "out"}) {
        ASSERT_EQ(0, symlink(_folder.file(target).c_str(), output().c_str()));
        expectComplaint(runWatermark(), "The output is a symbolic link.");
        EXPECT_TRUE(std::filesystem::is_symlink(output())) << target;
        ASSERT_EQ(0, unlink(output().c_str()));
    }
    EXPECT_EQ("mine", Support::readFile(_folder.file("another")));
    EXPECT_EQ(_document, Support::readFile(input()));
    EXPECT_FALSE(exists(_folder.file("missing")));
}

TEST_F(ToolkitCommandTest, ALinkToTheFolderOfTheOutputIsFollowed)
{
    ASSERT_EQ(0, symlink(_folder.path().c_str(), _folder.file("link").c_str()));
    ASSERT_EQ(0, run(watermark(input(), _folder.file("link/out"))).exitStatus);
    EXPECT_THAT(Support::readFile(output()), testing::StartsWith("%PDF-"));

    _folder.write("in", "no document");
    EXPECT_EQ(1, run(watermark(input(), _folder.file("link/out"))).exitStatus);
    EXPECT_FALSE(exists(output()));
}

TEST_F(ToolkitCommandTest, AnOutputIsNamedFromTheCurrentFolder)
{
    const auto goThere = [this] {
        if (chdir(_folder.path().c_str()) != 0)
            _exit(99);
    };
    ASSERT_EQ(0, run(watermark("in", "out"), {.inChild = goThere}).exitStatus);
    EXPECT_THAT(Support::readFile(output()), testing::StartsWith("%PDF-"));

    _folder.write("in", "no document");
    EXPECT_EQ(1, run(watermark("in", "out"), {.inChild = goThere}).exitStatus);
    EXPECT_FALSE(exists(output()));
}

TEST_F(ToolkitCommandTest, OnlyRegularFilesAreReadAndWritten)
{
    ASSERT_EQ(0, mkfifo(_folder.file("fifo").c_str(), 0600));
    expectComplaint(run(watermark(_folder.file("fifo"), output())), "input file cannot be read");
    expectComplaint(run(watermark(_folder.path(), output())), "input file cannot be read");
    expectComplaint(run(watermark("/dev/zero", output())), "no regular file");
    expectComplaint(run(watermark(input(), _folder.file("fifo"))), "cannot be written");
    expectComplaint(run(watermark(input(), _folder.path())), "cannot be written");
    expectComplaint(run(watermark(input(), "/dev/null")), "no regular file");
    EXPECT_TRUE(exists("/dev/null"));
    EXPECT_THAT(_folder.names(), ElementsAre("fifo", "in"));
}

TEST_F(ToolkitCommandTest, AnOutputInNoFolderIsRefused)
{
    expectComplaint(run(watermark(input(), _folder.file("gone/out"))), "cannot be written");
}

// A cancellation could not remove it.
TEST_F(ToolkitCommandTest, AnOutputWithAnEndlessNameIsRefused)
{
    std::string folder = _folder.path();
    for (int level = 0; level < 5; ++level) {
        folder += "/" + std::string(250, 'x');
        ASSERT_EQ(0, mkdir(folder.c_str(), 0700));
    }
    expectComplaint(run(watermark(input(), folder + "/out")), "too long");
    EXPECT_FALSE(exists(folder + "/out"));
}

TEST_F(ToolkitCommandTest, AFullDiskIsAFailure)
{
    const auto limitFiles = [] {
        const rlimit limit = {100000, 100000};
        setrlimit(RLIMIT_FSIZE, &limit);
    };
    writeLongInput();
    expectComplaint(runWatermark({.inChild = limitFiles}), "cannot be written: File too large");
    EXPECT_THAT(_folder.names(), ElementsAre("in"));

    _folder.write("in", "%!PS-Adobe-3.0\n%%EndComments\n%%Page: 1 1\n" + std::string(200000, '\n') +
                            "showpage\n%%EOF\n");
    expectComplaint(runWatermark({.inChild = limitFiles}), "cannot be written: File too large");
    EXPECT_THAT(_folder.names(), ElementsAre("in"));
}

TEST_F(ToolkitCommandTest, TheLastBytesOfAFullDiskCountToo)
{
    // Short of a few bytes, so that it is the last flush that fails.
    ASSERT_EQ(0, runWatermark().exitStatus);
    const rlim_t size = Support::readFile(output()).size() - 3;
    const auto limitFiles = [size] {
        const rlimit limit = {size, size};
        setrlimit(RLIMIT_FSIZE, &limit);
    };
    expectComplaint(runWatermark({.inChild = limitFiles}), "could not be written completely");
    EXPECT_THAT(_folder.names(), ElementsAre("in"));
}

TEST_F(ToolkitCommandTest, ACancelledRunRemovesTheOutput)
{
    writeLongInput();
    const std::string before = Support::readFile(input());
    for (const int signalNumber : {SIGTERM, SIGINT, SIGHUP}) {
        _folder.write("out", "");
        const auto cancel = [&](pid_t child) {
            waitUntilSomethingIsWritten();
            kill(child, signalNumber);
        };
        const ProgramResult result = runWatermark({.afterStart = cancel});
        EXPECT_EQ(signalNumber, result.signal);
        EXPECT_THAT(_folder.names(), ElementsAre("in"));
    }
    EXPECT_EQ(before, Support::readFile(input()));
}

TEST_F(ToolkitCommandTest, AFailedOrCancelledRunRemovesNothingButItsOutput)
{
    writeLongInput();
    for (const bool isCancelled : {false, true}) {
        _folder.write("out", "");
        ProgramCall call;
        call.inChild = [&] {
            const rlimit limit = {300000, 300000};
            if (!isCancelled)
                setrlimit(RLIMIT_FSIZE, &limit);
        };
        call.afterStart = [&](pid_t child) {
            waitUntilSomethingIsWritten();
            kill(child, SIGSTOP);
            ASSERT_EQ(0, rename(output().c_str(), _folder.file("moved").c_str()));
            _folder.write("out", "mine");
            kill(child, SIGCONT);
            if (isCancelled)
                kill(child, SIGTERM);
        };
        const ProgramResult result = runWatermark(call);
        EXPECT_EQ(isCancelled ? SIGTERM : 0, result.signal);
        EXPECT_EQ(isCancelled ? -1 : 1, result.exitStatus) << result.errors;
        EXPECT_EQ("mine", Support::readFile(output()));
    }
}

TEST_F(ToolkitCommandTest, RunsWithoutStandardStreams)
{
    const auto closeAll = [] {
        for (int descriptor = 0; descriptor <= 2; ++descriptor)
            close(descriptor);
    };
    EXPECT_EQ(0, runWatermark({.inChild = closeAll}).exitStatus);
    EXPECT_THAT(Support::readFile(output()), testing::EndsWith("%%EOF\n"));
}

TEST_F(ToolkitCommandTest, NeverQuotesTheText)
{
    _folder.write("in", "no document");
    const ProgramResult result = run(watermark(input(), output(), "Salaries"));
    EXPECT_THAT(result.errors, Not(IsEmpty()));
    EXPECT_THAT(result.errors, Not(HasSubstr("Salaries")));
}

TEST_F(ToolkitCommandTest, HelpGoesToStandardOutput)
{
    for (const Words &words : {Words{"--help"}, Words{"watermark", "--help"},
                               Words{"booklet", "--help"}, Words{"coverpages", "--help"}}) {
        const ProgramResult result = run(words);
        EXPECT_EQ(0, result.exitStatus);
        EXPECT_THAT(result.output, testing::StartsWith("Usage: jobfilter-toolkit "));
        EXPECT_EQ("", result.errors);
    }
    EXPECT_THAT(run({"--version"}).output, testing::StartsWith("jobfilter-toolkit "));
}

TEST_F(ToolkitCommandTest, CoverPagesOnPDFAreRefusedWithTheReason)
{
    const Words words = {
        "coverpages", "--back-style",  "none",       "--back-media",  "None", "--back-source",
        "AutoSelect", "--front-style", "print1",     "--front-media", "None", "--front-source",
        "Bypass",     "--source",      "AutoSelect", "--media",       "None", "--duplex",
        "none",       input(),         output()};
    expectComplaint(run(words), "PDF cannot choose trays");
    EXPECT_FALSE(exists(output()));
}

// PostScript is written in blocks: what is held back when a command comes to its end must not be
// lost, neither of a document that fills no block nor of one that fills some.
TEST_F(ToolkitCommandTest, EveryCommandWritesPostScriptToItsEnd)
{
    const Words coverPages = {
        "coverpages", "--back-style",  "print",      "--back-media",  "None", "--back-source",
        "AutoSelect", "--front-style", "print",      "--front-media", "None", "--front-source",
        "AutoSelect", "--source",      "AutoSelect", "--media",       "None", "--duplex",
        "none",       input(),         output()};
    Words below = watermark(input(), output());
    below[1] = "--below";
    constexpr std::size_t kEnd = 1000;
    for (const std::size_t filling : {0U, 1'000'000U}) {
        _folder.write("in", "%!PS-Adobe-3.0\n%%Pages: 1\n%%EndComments\n%%Page: 1 1\n" +
                                std::string(filling, '\n') +
                                "showpage\n%%Trailer\n(last words) pop\n%%EOF\n");
        for (const Words &words :
             {watermark(input(), output()), below, booklet(input(), output()), coverPages}) {
            EXPECT_EQ(0, run(words).exitStatus) << words[0];
            const std::string written = Support::readFile(output());
            const std::string end = written.substr(written.size() - std::min(written.size(), kEnd));
            EXPECT_THAT(end, HasSubstr("(last words) pop\n")) << words[0] << " of " << filling;
            EXPECT_THAT(end, EndsWith("%%EOF\n")) << words[0] << " of " << filling;
        }
    }
}

TEST_F(ToolkitCommandTest, TheSameJobIsTheSameBytesEachTime)
{
    _folder.write("plain", _document);
    _folder.write("postscript", "%!PS-Adobe-3.0\n%%Pages: 1\n%%EndComments\n%%Page: 1 1\n"
                                "10 10 50 50 rectfill showpage\n%%EOF\n");
    const auto makeWithTool = [&](const std::string &name, Words words) {
        words.insert(words.begin(), {"qpdf", input(), _folder.file(name)});
        ASSERT_EQ(0, Support::runProgram({.arguments = words}).exitStatus);
    };
    makeWithTool("packed", {"--object-streams=generate"});
    makeWithTool("encrypted", {"--encrypt", "", "owner", "256", "--"});
    makeWithTool("weakly encrypted",
                 {"--allow-weak-crypto", "--encrypt", "", "owner", "128", "--use-aes=y", "--"});
    const Words names = _folder.names();

    const auto allOutputs = [&] {
        Words outputs;
        for (const std::string &name : names) {
            for (const Words &words :
                 {watermark(_folder.file(name), output()), booklet(_folder.file(name), output())}) {
                const ProgramResult result = run(words);
                EXPECT_EQ("", result.errors) << name;
                outputs.push_back(result.exitStatus == 0 ? Support::readFile(output()) : "none");
            }
        }
        return outputs;
    };
    const Words before = allOutputs();
    const std::time_t then = std::time(nullptr);
    ASSERT_TRUE(Support::comesTrue([&] { return std::time(nullptr) > then; }));
    const Words after = allOutputs();
    for (std::size_t i = 0; i < before.size(); ++i)
        EXPECT_TRUE(before[i] == after[i]) << names[i / 2] << (i % 2 == 0 ? ": mark" : ": booklet");
}

TEST_F(ToolkitCommandTest, APDFDocumentMayBeginInTheFirst1024Bytes)
{
    for (const std::string &junk :
         {std::string("\n"), std::string("HTTP/1.1 200 OK\r\n\r\n"), std::string(1023, '\0')}) {
        _folder.write("in", junk + _document);
        const ProgramResult result = runWatermark();
        EXPECT_EQ(0, result.exitStatus) << result.errors;
        EXPECT_THAT(Support::readFile(output()), testing::StartsWith("%PDF-"));
    }
    _folder.write("in", std::string(1024, '\0') + _document);
    expectComplaint(runWatermark(), "neither a PostScript nor a PDF document");
}

TEST_F(ToolkitCommandTest, PostScriptThatMentionsPDFStaysPostScript)
{
    for (const std::string before : {"", "\004"}) {
        _folder.write("in", before + "%!PS-Adobe-3.0\n%%Title: ()\n" + _document);
        runWatermark();
        EXPECT_FALSE(exists(output()) && Support::readFile(output()).starts_with("%PDF-"));
    }
}

TEST_F(ToolkitCommandTest, AnEmptyInputIsRefused)
{
    _folder.write("in", "");
    expectComplaint(runWatermark(), "neither a PostScript nor a PDF document");
}

} // namespace
