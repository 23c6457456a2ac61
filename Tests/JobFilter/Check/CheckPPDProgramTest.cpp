#include "MinimalPPD.h"
#include "Program.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using Support::runProgram;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

Support::ProgramResult check(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), KL_CHECK_PPD);
    return runProgram({.arguments = arguments});
}

/// Two mistakes: no toolkit is named, and no commands are excluded.
std::string brokenPPD()
{
    std::string text = Support::readFile(KL_SAMPLE_PPD);
    for (const char *keyword : {"*APDialogExtension", "*cupsCommands"})
        text.replace(text.find(keyword), 2, "*%");
    return text;
}

} // namespace

TEST(CheckPPDProgramTest, HasNothingToMendInTheSample)
{
    const auto result = check({KL_SAMPLE_PPD});
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_EQ(KL_SAMPLE_PPD ": nothing to mend\n", result.output);
    EXPECT_EQ("", result.errors);
}

TEST(CheckPPDProgramTest, FindsMuchToMendInThePPDThatNamesNoFilter)
{
    const Support::TemporaryFolder folder;
    const auto result = check({folder.write("minimal.ppd", Support::minimalPPD())});
    EXPECT_EQ(1, result.exitStatus);
    EXPECT_THAT(result.output, HasSubstr(": No line *cupsFilter names jobfilter-chain.\n"));
}

TEST(CheckPPDProgramTest, SaysWhatIsWrongWhatItDoesAndWhatHelps)
{
    const Support::TemporaryFolder folder;
    const std::string path = folder.write("broken.ppd", brokenPPD());
    const auto result = check({path});
    EXPECT_EQ(1, result.exitStatus);
    EXPECT_THAT(result.output,
                StartsWith(path + ": There is no line *APDialogExtension.\n    On paper: Jobs are "
                                  "printed without watermark, booklet and covers.\n    To mend it: "
                                  "Name the folder"));
    EXPECT_THAT(result.output, HasSubstr(path + ": There is no line *cupsCommands: \"none\".\n"));
}

TEST(CheckPPDProgramTest, EndsWithTheWorstStatusOfSeveral)
{
    const Support::TemporaryFolder folder;
    const std::string broken = folder.write("broken.ppd", brokenPPD());
    EXPECT_EQ(1, check({KL_SAMPLE_PPD, broken, KL_SAMPLE_PPD}).exitStatus);
    EXPECT_EQ(2, check({folder.file("missing"), broken}).exitStatus);
}

TEST(CheckPPDProgramTest, SaysWhyAFileIsNoPPD)
{
    const Support::TemporaryFolder folder;
    const auto missing = check({folder.file("missing")});
    EXPECT_EQ(2, missing.exitStatus);
    EXPECT_EQ(folder.file("missing") + ": No such file or directory\n", missing.errors);
    EXPECT_THAT(check({folder.write("text", "no PPD\n")}).errors, HasSubstr(" on line "));
}

TEST(CheckPPDProgramTest, ExplainsItself)
{
    EXPECT_EQ(0, check({"--help"}).exitStatus);
    EXPECT_THAT(check({"--help"}).output, StartsWith("Usage: jobfilter-check-ppd"));
    EXPECT_THAT(check({"--version"}).output, StartsWith("jobfilter-check-ppd "));
    EXPECT_EQ(2, check({}).exitStatus);
    EXPECT_THAT(check({"--fast"}).errors, StartsWith("Usage: jobfilter-check-ppd"));
}

TEST(CheckPPDProgramTest, AnAnswerThatCannotBeWrittenIsNoAnswer)
{
    const auto result = runProgram(
        {.arguments = {"sh", "-c", "\"$1\" \"$2\" >/dev/full", "sh", KL_CHECK_PPD, KL_SAMPLE_PPD}});
    EXPECT_EQ(2, result.exitStatus);
}

// --header

TEST(CheckPPDProgramTest, ShowsTheHeaderOfAJob)
{
    const auto result =
        check({"--header",
               "PrintMode=Private com.kalmira.pde.print-mode-ovm.privatePassword=1234 "
               "com.kalmira.username=anna",
               KL_SAMPLE_PPD});
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_EQ("", result.errors);
    EXPECT_THAT(result.output, StartsWith("<ESC>%-12345X@PJL\n@PJL JOB NAME = \"Title\""));
    EXPECT_THAT(result.output, HasSubstr("@PJL COMMENT DSSC PRINT USERLOGIN=anna\n"
                                         "@PJL COMMENT DSSC PRINT DOMAINNAME=\n"
                                         "@PJL COMMENT DSSC PRINT PRINTMODE=PRIVATE\n"
                                         "@PJL COMMENT DSSC PRINT PRIVPRINT=1234\n"));
    EXPECT_THAT(result.output, testing::EndsWith("@PJL ENTER LANGUAGE = POSTSCRIPT\n"));
    EXPECT_THAT(check({"--header", "", KL_SAMPLE_PPD}).output,
                HasSubstr("@PJL COMMENT DSSC PRINT PRINTMODE=NORMAL\n"));
}

TEST(CheckPPDProgramTest, SaysWhenAJobWouldNotBePrinted)
{
    const Support::TemporaryFolder folder;
    std::string text = Support::readFile(KL_SAMPLE_PPD);
    const auto place = text.find("*OpenGroup");
    text.insert(place, "*KLSettingRule Digits: \"code 4 4\"\n");
    const auto ruled = check({"--header", "code=47x1", folder.write("rule.ppd", text)});
    EXPECT_EQ(1, ruled.exitStatus);
    EXPECT_EQ("", ruled.output);
    EXPECT_EQ("code must have 4 digits and nothing else\n", ruled.errors);

    text.replace(text.find("*JCLBegin"), 9, "*%CLBegin");
    const auto open = check({"--header", "PrintMode=Private", folder.write("open.ppd", text)});
    EXPECT_EQ(1, open.exitStatus);
    EXPECT_THAT(open.errors, HasSubstr("Unable to create the job header of a protected job\n"));
}

TEST(CheckPPDProgramTest, AHeaderNeedsAPPD)
{
    const Support::TemporaryFolder folder;
    EXPECT_EQ(2, check({"--header", "", folder.file("missing")}).exitStatus);
    EXPECT_EQ(2, check({"--header", KL_SAMPLE_PPD}).exitStatus);
}
