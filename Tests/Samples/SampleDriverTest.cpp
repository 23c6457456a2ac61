#include "Program.h"
#include "TemporaryFolder.h"

#include <cups/ppd.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using Support::readFile;
using Support::runProgram;
using Support::TemporaryFolder;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

namespace {

constexpr char kSamplePPD[] = KL_SAMPLE_PPD;
constexpr char kFilterLine[] = "*cupsFilter: \"application/vnd.cups-postscript 0 jobfilter\"\n";
constexpr char kPreFilterLine[] =
    "*cupsPreFilter: \"application/vnd.cups-postscript 0 jobfilter-nojcl\"\n";

/// A queue with one of the two lines alone sends jobs with two headers or with none.
bool namesBothFilters(const std::string &ppd)
{
    return ppd.find(kFilterLine) != std::string::npos &&
           ppd.find(kPreFilterLine) != std::string::npos;
}

std::string without(std::string text, const std::string &part)
{
    return text.erase(text.find(part), part.size());
}

/// The compiled sample driver, opened by libcups with its default choices marked.
class SampleDriverTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_NE(nullptr, ppd.get());
        ppdMarkDefaults(ppd.get());
    }

    /// The job-control header for a job with these options.
    std::string header(const std::vector<std::pair<const char *, const char *>> &options = {})
    {
        for (const auto &[keyword, choice] : options)
            EXPECT_EQ(0, ppdMarkOption(ppd.get(), keyword, choice)) << keyword;
        const TemporaryFolder folder;
        FILE *stream = std::fopen(folder.file("header").c_str(), "w");
        ppdEmitJCL(ppd.get(), stream, 7, "anna", "title");
        std::fclose(stream);
        return readFile(folder.file("header"));
    }

    std::set<std::string> keywords()
    {
        std::set<std::string> result;
        for (int g = 0; g < ppd->num_groups; g++)
            for (int o = 0; o < ppd->groups[g].num_options; o++)
                result.insert(ppd->groups[g].options[o].keyword);
        return result;
    }

    const char *attribute(const char *name)
    {
        const ppd_attr_t *found = ppdFindAttr(ppd.get(), name, nullptr);
        return found ? found->value : "no such attribute";
    }

    std::unique_ptr<ppd_file_t, decltype(&ppdClose)> ppd{ppdOpenFile(kSamplePPD), ppdClose};
};

TEST_F(SampleDriverTest, NamesTheFilterAndItsCompanion)
{
    EXPECT_TRUE(namesBothFilters(readFile(kSamplePPD)));
}

TEST_F(SampleDriverTest, OneOfTheTwoFilterLinesAloneIsRefused)
{
    const std::string text = readFile(kSamplePPD);
    EXPECT_FALSE(namesBothFilters(without(text, kFilterLine)));
    EXPECT_FALSE(namesBothFilters(without(text, kPreFilterLine)));
}

/// The source of the driver that the guide for driver writers offers for copying.
std::string driverOfTheGuide()
{
    const std::string guide = readFile(KL_DRIVER_GUIDE);
    const std::string start = "    #include <font.defs>\n";
    std::istringstream lines(guide.substr(guide.rfind(start)));
    std::string driver;
    for (std::string line; std::getline(lines, line) && line.starts_with("    ");)
        driver += line.substr(4) + "\n";
    return driver;
}

TEST_F(SampleDriverTest, GuidesDriverNamesBothFiltersTooAndConformsToThePPDFormat)
{
    const TemporaryFolder folder;
    const std::string source = folder.write("guide.drv", driverOfTheGuide());
    ASSERT_EQ(0, runProgram({.arguments = {"ppdc", "-d", folder.path(), source}}).exitStatus);
    const std::string guidePPD = folder.file("example-printer.ppd");
    EXPECT_TRUE(namesBothFilters(readFile(guidePPD)));
    const auto test = runProgram({.arguments = {"cupstestppd", "-I", "filters", guidePPD}});
    EXPECT_EQ(0, test.exitStatus) << test.output;
}

TEST_F(SampleDriverTest, DeclaresEveryPlainOptionThatTheFilterReads)
{
    EXPECT_THAT(keywords(), IsSupersetOf({"AP_ColorMatchingMode",
                                          "BackCoverMediaType",
                                          "BackCoverPrintStyle",
                                          "BackCoverSource",
                                          "BookletCenterMargin",
                                          "BookletOuterMargin",
                                          "BookletPageLayout",
                                          "BookletPaperSize",
                                          "Duplex",
                                          "FrontCoverMediaType",
                                          "FrontCoverPrintStyle",
                                          "FrontCoverSource",
                                          "InputSlot",
                                          "MediaType",
                                          "PageSize",
                                          "PrintAsWell",
                                          "PrintMode",
                                          "StoreToDocStore",
                                          "UseBackCover",
                                          "UseFrontCover",
                                          "UseOpenDirectoryForAuthentication"}));
}

TEST_F(SampleDriverTest, HeaderBeginsWithTheMarkerAndEndsByEnteringPostScript)
{
    const std::string text = header();
    EXPECT_THAT(text, testing::StartsWith("\033%-12345X@PJL\n@PJL JOB NAME = \"title\""));
    EXPECT_THAT(text, testing::EndsWith("\r\n@PJL ENTER LANGUAGE = POSTSCRIPT\r\n"));
}

TEST_F(SampleDriverTest, DefaultHeaderHoldsThreeOfTheMarkerLines)
{
    const std::string text = header();
    EXPECT_THAT(text, HasSubstr("\n@PJL COMMENT DSSC PRINT PRINTMODE=NORMAL\r\n"));
    EXPECT_THAT(text, HasSubstr("\n@PJL COMMENT DSSC PRINT ACCESSCODE=\r\n"));
    EXPECT_THAT(text, HasSubstr("\n@PJL COMMENT DSSC PRINT COLLATE=ON\r\n"));
    EXPECT_THAT(text, Not(HasSubstr("DOCUMENTTYPE=ADVANCED")));
}

TEST_F(SampleDriverTest, AdvancedDocumentTypeIsTheFourthMarkerLine)
{
    EXPECT_THAT(header({{"DocumentType", "Advanced"}}),
                HasSubstr("\n@PJL COMMENT DSSC PRINT DOCUMENTTYPE=ADVANCED\r\n"));
}

TEST_F(SampleDriverTest, DuplexChoiceReachesTheHeader)
{
    EXPECT_THAT(header({{"Duplex", "DuplexTumble"}}),
                HasSubstr("\n@PJL COMMENT DSSC PRINT DUPLEX=SHORTEDGE\r\n"));
}

TEST_F(SampleDriverTest, DepartmentCodeCanBeKeptOutOfTheHeader)
{
    EXPECT_THAT(header({{"DepartmentCode", "False"}}), Not(HasSubstr("ACCESSCODE=")));
}

// With any other keyword or choices the scheduler's filters put the copies into the page data.
TEST_F(SampleDriverTest, CollationIsJobControlUnderTheKeywordThatTheChainKnows)
{
    const ppd_option_t *collate = ppdFindOption(ppd.get(), "Collate");
    ASSERT_NE(nullptr, collate);
    EXPECT_STREQ("Collate", collate->keyword);
    EXPECT_EQ(PPD_ORDER_JCL, collate->section);
    ASSERT_EQ(2, collate->num_choices);
    EXPECT_STREQ("True", collate->choices[0].choice);
    EXPECT_STREQ("False", collate->choices[1].choice);
}

TEST_F(SampleDriverTest, CopiesAreLeftToThePrinter)
{
    EXPECT_STREQ("False", attribute("cupsManualCopies"));
}

TEST_F(SampleDriverTest, TakesNoCommandFiles)
{
    EXPECT_STREQ("none", attribute("cupsCommands"));
}

// libcups would cut long titles in the middle of a character.
TEST_F(SampleDriverTest, LeavesTheTitlesCharacterSetAlone)
{
    EXPECT_EQ(nullptr, ppdFindAttr(ppd.get(), "cupsPJLCharset", nullptr));
}

// Otherwise every stored job would be stored only.
TEST_F(SampleDriverTest, StoredJobsArePrintedTooUnlessAskedOtherwise)
{
    EXPECT_TRUE(ppdIsMarked(ppd.get(), "PrintAsWell", "True"));
}

TEST_F(SampleDriverTest, NamesTheToolkitBundleOfTheBuildFolder)
{
    EXPECT_STREQ(KL_TOOLKIT_BUNDLE, attribute("APDialogExtension"));
}

TEST_F(SampleDriverTest, EverySettingHasANameForPeople)
{
    for (int g = 0; g < ppd->num_groups; g++)
        for (int o = 0; o < ppd->groups[g].num_options; o++) {
            const ppd_option_t &option = ppd->groups[g].options[o];
            EXPECT_STRNE(option.keyword, option.text);
        }
}

} // namespace
