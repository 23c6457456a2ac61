// The job settings as the built program writes them on the sample queue: from the option string in
// the scheduler's syntax to the bytes that the printer gets.

#include "ICCProfile.h"
#include "PJLChecker.h"
#include "Program.h"
#include "TemporaryFolder.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using namespace std::string_literals;

namespace {

const std::string kForced = "@PJL COMMENT DSSC PRINT FORCE_DEVICECOLOR=1\r\n";
const std::string kNotForced = "@PJL COMMENT DSSC PRINT FORCE_DEVICECOLOR=0\r\n";

class JobSettingsProgramTest : public testing::Test {
protected:
    Support::ProgramResult run(const std::string &options) const
    {
        return Support::runProgram(
            {.arguments = {JOBFILTER_PROGRAM, "7", "anna", "Report", "2", options, _body},
             .environment = {{"PPD", KL_SAMPLE_PPD}},
             .timeLimit = std::chrono::seconds(30)});
    }

    /// The header's lines of a job with these options, a right one in all.
    std::vector<std::string> header(const std::string &options) const
    {
        const auto result = run(options);
        EXPECT_EQ(0, result.exitStatus) << result.errors;
        EXPECT_THAT(Support::problemsOfPJLJob(result.output), IsEmpty());
        const auto job = Support::splitPJLJob(result.output);
        EXPECT_TRUE(job);
        EXPECT_EQ(Support::readFile(_body), job->body);
        return Support::linesOf(job->header);
    }

    std::string profileOption(const std::string &url) const
    {
        return "com.kalmira.pde.q5.color-profile=" + url + " ";
    }

    Support::TemporaryFolder _folder;
    const std::string _body = _folder.write("body.ps", "%!PS\n\0\xFF\r\nshowpage\n"s);
    const std::string _sRGB =
        profileOption("file://" + _folder.write("srgb.icc", Support::standardSRGBProfile()));
};

} // namespace

TEST_F(JobSettingsProgramTest, DefaultsOfTheSampleQueue)
{
    const auto lines = header("");
    EXPECT_THAT(lines, Contains("@PJL COMMENT DSSC PRINT USERLOGIN=anna\r\n"));
    EXPECT_THAT(lines, Contains("@PJL COMMENT DSSC PRINT PRINTMODE=NORMAL\r\n"));
    EXPECT_THAT(lines, Contains("@PJL SET COPIES = 2\r\n"));
    EXPECT_THAT(lines, Contains(kNotForced));
    EXPECT_THAT(lines, Not(Contains(HasSubstr("ACCESSCODE"))));
    EXPECT_THAT(lines, Not(Contains(HasSubstr("DSSC BOX"))));
}

TEST_F(JobSettingsProgramTest, OptionsWinOverTheArguments)
{
    const auto lines = header("com.kalmira.username=bert com.kalmira.copies=5");
    EXPECT_THAT(lines, Contains("@PJL COMMENT DSSC PRINT USERLOGIN=bert\r\n"));
    EXPECT_THAT(lines, Contains("@PJL SET COPIES = 5\r\n"));
}

TEST_F(JobSettingsProgramTest, ColorMatchingModeIsANumberOnlyWithItsSuffix)
{
    const std::string key = "com.apple.print.PrintSettings.PMColorMatchingMode";
    EXPECT_THAT(header(_sRGB), Contains(kForced));
    EXPECT_THAT(header(_sRGB + key + "..n.=0"), Contains(kNotForced));
    EXPECT_THAT(header(_sRGB + key + "..n.=2"), Contains(kForced));
    EXPECT_THAT(header(_sRGB + key + "..b.=no"), Contains(kNotForced));
    EXPECT_THAT(header(_sRGB + key + "=0"), Contains(kForced));
    EXPECT_THAT(header(_sRGB + "AP_ColorMatchingMode=AP_VendorColorMatching"),
                Contains(kNotForced));
}

TEST_F(JobSettingsProgramTest, StoreToDocStoreInAnyLetterCase)
{
    for (const char *value : {"true", "True", "TRUE"})
        EXPECT_THAT(header(std::string("StoreToDocStore=") + value),
                    Contains("@PJL COMMENT DSSC BOX BOX=1\r\n"));
    // Without a value it is true, with "no" before it false.
    EXPECT_THAT(header("StoreToDocStore"), Contains("@PJL COMMENT DSSC BOX BOX=1\r\n"));
    EXPECT_THAT(header("noStoreToDocStore"), Not(Contains(HasSubstr("DSSC BOX"))));
}

TEST_F(JobSettingsProgramTest, ChoicesInAnyLetterCaseAreWhatThePPDMarks)
{
    const std::string line = "@PJL COMMENT DSSC PRINT PRINTMODE=BOX\r\n";
    for (const char *value : {"False", "false", "FALSE"})
        EXPECT_THAT(header(std::string("StoreToDocStore=true PrintAsWell=") + value),
                    Contains(line));
    EXPECT_THAT(header("StoreToDocStore=true PrintAsWell=no"), Not(Contains(line)));
    EXPECT_THAT(header("PrintMode=pRIVATE com.kalmira.pde.print-mode-ovm.privatePassword=99"),
                Contains("@PJL COMMENT DSSC PRINT PRIVPRINT=99\r\n"));
    EXPECT_THAT(run("PageSize=a3").output, HasSubstr("JOBENDINFO PAGESIZE=A3\r\n"));
}

TEST_F(JobSettingsProgramTest, OptionsWithControlCharactersSpeakNoPJL)
{
    const std::string evil =
        "'x\r\n@PJL EOJ\r\n\x1B%-12345X@PJL SET COPIES = 999\r\n@PJL ENTER LANGUAGE = PCL\r\n'";
    const std::string blank =
        "x  @PJL EOJ   %-12345X@PJL SET COPIES = 999  @PJL ENTER LANGUAGE = PCL  \r\n";
    std::string options = "DocumentType=Advanced StoreToDocStore=true PageSize=" + evil;
    for (const char *key :
         {"username", "domainname", "pde.docstore.boxNumber", "pde.docstore.boxName",
          "pde.docstore.boxFolder", "pde.docstore.boxPassword",
          "pde.advancedcolorsettings.customized-rgb-profile"})
        options += std::string(" com.kalmira.") + key + "=" + evil;

    const auto lines = header(options); // the checker reads the job, its end included
    for (const char *begin : {"PRINT USERLOGIN=", "PRINT DOMAINNAME=", "BOX BOXNO=", "BOX BOXNAME=",
                              "BOX BOXFOLDER=", "BOX BOXPASSWORD=", "PRINT EXTRADOCUMENTTYPE="})
        EXPECT_THAT(lines, Contains(std::string("@PJL COMMENT DSSC ") + begin + blank));
    EXPECT_EQ(header("DocumentType=Advanced StoreToDocStore=true "
                     "com.kalmira.pde.docstore.boxPassword=1")
                  .size(),
              lines.size());
}

TEST_F(JobSettingsProgramTest, EndlessOrSilentProfileNeitherHangsNorFillsTheMemory)
{
    const std::string fifo = _folder.file("fifo.icc");
    ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
    const std::string grown = _folder.write("grown.icc", Support::standardSRGBProfile());
    ASSERT_EQ(0, truncate(grown.c_str(), off_t{1} << 40)); // a hole of a terabyte

    const long usual = run(_sRGB).peakMemory;
    for (const std::string &path : {std::string("/dev/zero"), std::string("/dev/urandom"),
                                    std::string("/dev/stdin"), fifo, grown, _folder.path()}) {
        const auto result = run(profileOption("file://" + path)); // within its time limit
        EXPECT_EQ(0, result.exitStatus) << path;
        EXPECT_THAT(result.output, HasSubstr(kNotForced)) << path;
        EXPECT_LT(result.peakMemory, usual + 8 * 1024) << path;
    }
}

TEST_F(JobSettingsProgramTest, HugeProfileThatSaysSoDoesNotFillTheMemory)
{
    std::string profile = Support::standardSRGBProfile();
    profile.replace(0, 4, "\x40\0\0\0"s); // a gigabyte, most of it a hole
    const std::string huge = _folder.write("huge.icc", profile);
    ASSERT_EQ(0, truncate(huge.c_str(), off_t{1} << 30));

    const long usual = run(_sRGB).peakMemory;
    const auto result = run(profileOption("file://" + huge));
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_THAT(result.output, HasSubstr(kNotForced));
    EXPECT_LT(result.peakMemory,
              usual + 128 * 1024); // the sanitizers' allocator keeps what is freed
}

TEST_F(JobSettingsProgramTest, PasswordsAndCodesAreNotLogged)
{
    const auto result = run(_sRGB + "PrintMode=Private StoreToDocStore=true "
                                    "com.kalmira.pde.print-mode-ovm.departmentCode=59137264 "
                                    "com.kalmira.pde.print-mode-ovm.privatePassword=84620917 "
                                    "com.kalmira.pde.docstore.boxPassword=geheim3 "
                                    "com.kalmira.pde.docstore.boxPasswordEx=geheim4");
    EXPECT_THAT(result.output, HasSubstr("ACCESSCODE=59137264"));
    EXPECT_THAT(result.output, HasSubstr("PRIVPRINT=84620917"));
    for (const char *secret : {"59137264", "84620917", "geheim"})
        EXPECT_THAT(result.errors, Not(HasSubstr(secret)));
}
