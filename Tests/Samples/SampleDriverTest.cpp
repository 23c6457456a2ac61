#include "Program.h"
#include "TemporaryFolder.h"
#include "ppdLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
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
constexpr char kPDFPPD[] = KL_SAMPLE_PDF_PPD;

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

    std::vector<const ppd_option_t *> options()
    {
        std::vector<const ppd_option_t *> result;
        for (int g = 0; g < ppd->num_groups; g++)
            for (int o = 0; o < ppd->groups[g].num_options; o++)
                result.push_back(&ppd->groups[g].options[o]);
        return result;
    }

    std::set<std::string> keywords()
    {
        std::set<std::string> result;
        for (const ppd_option_t *option : options())
            result.insert(option->keyword);
        return result;
    }

    /// Marks these choices, and otherwise the defaults.
    void mark(const std::vector<std::pair<const char *, const char *>> &choices)
    {
        ppdMarkDefaults(ppd.get());
        for (const auto &[keyword, choice] : choices)
            ppdMarkOption(ppd.get(), keyword, choice);
    }

    const char *attribute(const char *name)
    {
        const ppd_attr_t *found = ppdFindAttr(ppd.get(), name, nullptr);
        return found ? found->value : "no such attribute";
    }

    std::unique_ptr<ppd_file_t, decltype(&ppdClose)> ppd{ppdOpenFile(kSamplePPD), ppdClose};
};

// Both filters in one, so that a queue has one header where no prefilters are run, too.
TEST_F(SampleDriverTest, NamesTheFilterThatIsBoth)
{
    for (const auto &[path, format] : {std::pair(kSamplePPD, "application/vnd.cups-postscript"),
                                       std::pair(kPDFPPD, "application/vnd.cups-pdf")}) {
        ppd.reset(ppdOpenFile(path));
        ASSERT_EQ(1, ppd->num_filters);
        EXPECT_EQ(std::string(format) + " 0 jobfilter-chain", ppd->filters[0]);
        EXPECT_STREQ("no such attribute", attribute("cupsPreFilter"));
    }
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

/// The first line of each mistake that jobfilter-check-ppd(1) has found.
std::vector<std::string> mistakesIn(const std::string &output)
{
    std::vector<std::string> mistakes;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);)
        if (!line.starts_with(" ") && line.find("nothing to mend") == std::string::npos)
            mistakes.push_back(line);
    return mistakes;
}

TEST_F(SampleDriverTest, GuidesDriverNamesTheFilterTooAndConformsToThePPDFormat)
{
    const TemporaryFolder folder;
    const std::string source = folder.write("guide.drv", driverOfTheGuide());
    ASSERT_EQ(0, runProgram({.arguments = {"ppdc", "-d", folder.path(), source}}).exitStatus);
    const std::string guidePPD = folder.file("example-printer.ppd");
    EXPECT_THAT(readFile(guidePPD),
                HasSubstr("*cupsFilter: \"application/vnd.cups-postscript 0 jobfilter-chain\"\n"));
    const auto test = runProgram({.arguments = {"cupstestppd", "-I", "filters", guidePPD}});
    EXPECT_EQ(0, test.exitStatus) << test.output;
    // The toolkit of an installed package is not there while it is built.
    const auto check = runProgram({.arguments = {KL_CHECK_PPD, guidePPD}});
    EXPECT_THAT(mistakesIn(check.output),
                testing::Each(HasSubstr("*APDialogExtension names no usable toolkit")));
}

TEST_F(SampleDriverTest, DeclaresEveryPlainOptionThatTheFilterReads)
{
    EXPECT_THAT(keywords(), IsSupersetOf({"AP_ColorMatchingMode",
                                          "BackCoverMediaType",
                                          "BackCoverPrintStyle",
                                          "BackCoverSource",
                                          "BookletCenterMargin",
                                          "BookletCreep",
                                          "BookletOuterMargin",
                                          "BookletPageLayout",
                                          "BookletPaperSize",
                                          "BookletSignatureSheets",
                                          "BookletTurnLandscape",
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
    for (const ppd_option_t *option : options())
        EXPECT_STRNE(option->keyword, option->text);
}

//
// Fields
//

/// The options that take typed values, and of what kind.
const std::map<std::string, ppd_cptype_t> kFields = {
    {"KLBoxFolder", PPD_CUSTOM_STRING},         {"KLBoxName", PPD_CUSTOM_STRING},
    {"KLBoxNumber", PPD_CUSTOM_STRING},         {"KLBoxPassword", PPD_CUSTOM_PASSWORD},
    {"KLCMYKProfile", PPD_CUSTOM_STRING},       {"KLCustomizedProfile", PPD_CUSTOM_STRING},
    {"KLDepartmentCode", PPD_CUSTOM_PASSCODE},  {"KLOutputProfile", PPD_CUSTOM_STRING},
    {"KLPrivatePIN", PPD_CUSTOM_PASSCODE},      {"KLRGBProfile", PPD_CUSTOM_STRING},
    {"KLWatermarkAngle", PPD_CUSTOM_INT},       {"KLWatermarkSize", PPD_CUSTOM_INT},
    {"KLWatermarkPages", PPD_CUSTOM_STRING},    {"KLWatermarkText", PPD_CUSTOM_STRING},
    {"KLWatermarkDistance", PPD_CUSTOM_STRING},
};

TEST_F(SampleDriverTest, FieldsTakeOneTypedValueEach)
{
    for (const char *path : {kSamplePPD, kPDFPPD}) {
        ppd.reset(ppdOpenFile(path));
        std::map<std::string, ppd_cptype_t> fields;
        for (const ppd_option_t *option : options()) {
            ppd_coption_t *custom = ppdFindCustomOption(ppd.get(), option->keyword);
            if (custom == nullptr)
                continue;
            ASSERT_EQ(1, cupsArrayCount(custom->params)) << option->keyword;
            fields[option->keyword] = ppdFirstCustomParam(custom)->type;
            EXPECT_NE(nullptr, ppdFindChoice(ppdFindOption(ppd.get(), option->keyword), "Custom"));
        }
        EXPECT_EQ(kFields, fields);
    }
}

TEST_F(SampleDriverTest, NothingThatIsTypedOrChosenInAFieldReachesTheHeaderByItself)
{
    const std::string before = header();
    for (const ppd_option_t *option : options()) {
        const std::string keyword = option->keyword;
        if (!keyword.starts_with("KL"))
            continue;
        EXPECT_EQ(PPD_ORDER_JCL, option->section) << keyword;
        for (int choice = 0; choice < option->num_choices; choice++) {
            mark({{option->keyword, option->choices[choice].choice}});
            EXPECT_EQ(before, header()) << keyword;
        }
        mark({{option->keyword, "Custom.4711"}});
        EXPECT_EQ(before, header()) << keyword;
    }
}

TEST_F(SampleDriverTest, EveryPlaceOfTheWatermarkIsOneOfTheToolkits)
{
    std::set<std::string> places;
    const ppd_option_t *option = ppdFindOption(ppd.get(), "KLWatermarkPlace");
    ASSERT_NE(nullptr, option);
    EXPECT_STREQ("None", option->defchoice);
    for (int choice = 0; choice < option->num_choices; choice++) {
        const std::string name = "KLWatermarkPlace." + std::string(option->choices[choice].choice);
        if (const auto *value = ppdFindAttr(ppd.get(), "KLSettingValue", name.c_str()))
            places.insert(value->value);
    }
    EXPECT_EQ(option->num_choices - 1, static_cast<int>(places.size()));
    EXPECT_EQ((std::set<std::string>{"bottom", "bottom-left", "bottom-right", "centre", "diagonal",
                                     "left", "right", "tiled", "top", "top-left", "top-right"}),
              places);
}

/// The group, by its text, in which dialogs show an option; empty where they show no such option.
std::string groupOf(const ppd_file_t *ppd, const std::string &keyword)
{
    for (int g = 0; g < ppd->num_groups; g++)
        for (int o = 0; o < ppd->groups[g].num_options; o++)
            if (keyword == ppd->groups[g].options[o].keyword)
                return ppd->groups[g].text;
    return {};
}

// libcups has a group of its own, "JCL", for whatever is opened as job control.
TEST_F(SampleDriverTest, PeopleFindOptionsInTheGroupThatNamesThem)
{
    const std::pair<const char *, const char *> places[] = {
        {"Duplex", "Paper and Sides"},
        {"InputSlot", "Paper and Sides"},
        {"PrintMode", "Private Printing and Department Code"},
        {"KLPrivatePIN", "Private Printing and Department Code"},
        {"KLDepartmentCode", "Private Printing and Department Code"},
        {"StoreToDocStore", "Document Box"},
        {"KLBoxNumber", "Document Box"},
        {"KLWatermarkText", "Watermark"},
        {"KLWatermarkPlace", "Watermark"},
        {"ColorModel", "Colour"},
        {"KLRGBProfile", "Colour"},
        {"Staple", "Finishing"},
        {"BookletPaperSize", "Booklet"},
        {"UseOpenDirectoryForAuthentication", "Installable Options"},
    };
    for (const char *path : {kSamplePPD, kPDFPPD}) {
        ppd.reset(ppdOpenFile(path));
        for (const auto &[keyword, group] : places)
            EXPECT_EQ(group, groupOf(ppd.get(), keyword)) << keyword;
        for (const std::string &keyword : keywords())
            EXPECT_NE("JCL", groupOf(ppd.get(), keyword)) << keyword;
    }
}

// Else a translator could not name them apart.
TEST_F(SampleDriverTest, GroupsHaveNamesThatNoOptionHas)
{
    const auto options = keywords();
    for (int g = 0; g < ppd->num_groups; g++)
        EXPECT_FALSE(options.contains(ppd->groups[g].name)) << ppd->groups[g].name;
}

//
// What does not go together
//

using Choices = std::vector<std::pair<const char *, const char *>>;

TEST_F(SampleDriverTest, DefaultsGoTogether)
{
    EXPECT_EQ(0, ppdConflicts(ppd.get()));
    ppd.reset(ppdOpenFile(kPDFPPD));
    ppdMarkDefaults(ppd.get());
    EXPECT_EQ(0, ppdConflicts(ppd.get()));
}

TEST_F(SampleDriverTest, WhatDoesNotGoTogetherIsInConflict)
{
    const Choices conflicts[] = {
        {{"PrintMode", "Private"}, {"StoreToDocStore", "True"}},
        {{"KLPrivatePIN", "Custom.1234"}, {"StoreToDocStore", "True"}},
        {{"PrintAsWell", "False"}},
        {{"KLBoxNumber", "Custom.12"}},
        {{"KLBoxName", "Custom.Sales"}},
        {{"KLBoxFolder", "Custom.2026"}},
        {{"KLBoxPassword", "Custom.sesame"}},
        {{"FrontCoverPrintStyle", "Print1"}},
        {{"FrontCoverSource", "SheetFeedBypass"}},
        {{"FrontCoverMediaType", "Thick"}},
        {{"BackCoverPrintStyle", "Print"}},
        {{"BackCoverSource", "Tray1"}},
        {{"BackCoverMediaType", "Plain"}},
        {{"BookletPaperSize", "A3"}, {"Staple", "UpperLeft"}},
        {{"BookletPaperSize", "Letter"}, {"Staple", "Left"}},
        {{"BookletCenterMargin", "5mm"}},
        {{"BookletOuterMargin", "5mm"}},
        {{"BookletPageLayout", "False"}},
        {{"BookletSignatureSheets", "4"}},
        {{"BookletCreep", "0.2mm"}},
        {{"BookletTurnLandscape", "True"}},
        {{"BookletPaperSize", "A3"}, {"BookletSignatureSheets", "4"}, {"Staple", "Saddle"}},
        {{"KLColorSettings", "Standard"}},
        {{"DocumentType", "Photo"}, {"KLColorSettings", "Customized"}},
        {{"KLRGBProfile", "sRGB"}},
        {{"KLCustomizedProfile", "Custom.Own"}},
        {{"DocumentType", "Advanced"}, {"KLColorSettings", "Customized"}, {"KLUseProfile", "All"}},
    };
    for (const Choices &choices : conflicts) {
        mark(choices);
        EXPECT_LT(0, ppdConflicts(ppd.get())) << choices.back().first << choices.back().second;
    }
}

TEST_F(SampleDriverTest, WhatGoesTogetherIsInNoConflict)
{
    const Choices jobs[] = {
        {{"PrintMode", "Private"}, {"KLPrivatePIN", "Custom.1234"}},
        {{"StoreToDocStore", "True"}, {"PrintAsWell", "False"}, {"KLBoxNumber", "Custom.12"}},
        {{"UseFrontCover", "True"},
         {"FrontCoverPrintStyle", "Print"},
         {"FrontCoverSource", "Tray1"}},
        {{"UseBackCover", "True"}, {"BackCoverMediaType", "Thick"}},
        {{"BookletPaperSize", "A3"}, {"Staple", "Saddle"}, {"BookletCenterMargin", "5mm"}},
        {{"BookletPaperSize", "A4"},
         {"BookletSignatureSheets", "4"},
         {"BookletCreep", "0.2mm"},
         {"BookletTurnLandscape", "True"}},
        {{"DocumentType", "Advanced"}, {"KLColorSettings", "Standard"}, {"KLRGBProfile", "sRGB"}},
        {{"DocumentType", "Advanced"},
         {"KLColorSettings", "Customized"},
         {"KLCustomizedProfile", "Custom.Own"}},
        {{"KLWatermarkText", "Draft"}, {"KLWatermarkAngle", "Rising"}, {"Staple", "UpperLeft"}},
    };
    for (const Choices &choices : jobs) {
        mark(choices);
        EXPECT_EQ(0, ppdConflicts(ppd.get())) << choices.back().first << choices.back().second;
    }
}

//
// IPP
//

// lp(1) sends the finishing 3, none, with every job; it must not undo what was chosen.
TEST_F(SampleDriverTest, EveryStaplingAndPunchingHasAFinishingAndNoneHasNot)
{
    std::set<std::string> choices;
    for (const ppd_attr_t *line = ppdFindAttr(ppd.get(), "cupsIPPFinishings", nullptr);
         line != nullptr; line = ppdFindNextAttr(ppd.get(), "cupsIPPFinishings", nullptr)) {
        choices.insert(line->value);
        EXPECT_STRNE("3", line->spec);
    }
    EXPECT_EQ((std::set<std::string>{"*HolePunch Left", "*HolePunch Top", "*Staple Left",
                                     "*Staple Saddle", "*Staple UpperLeft"}),
              choices);
}

//
// The printer that takes PDF
//

TEST_F(SampleDriverTest, PrinterThatTakesPDFHasAllButThePaperOfCovers)
{
    const auto inPostScript = keywords();
    ppd.reset(ppdOpenFile(kPDFPPD));
    ppdMarkDefaults(ppd.get());
    auto expected = inPostScript;
    for (const auto *option :
         {"FrontCoverSource", "FrontCoverMediaType", "BackCoverSource", "BackCoverMediaType"})
        EXPECT_EQ(1U, expected.erase(option)) << option;
    expected.insert("CoverPagesInPDF");
    EXPECT_EQ(expected, keywords());
    EXPECT_THAT(header(), testing::EndsWith("\r\n@PJL ENTER LANGUAGE = PDF\r\n"));
}

TEST_F(SampleDriverTest, CoversInPDFAreForThoseWhoAskForThem)
{
    ppd.reset(ppdOpenFile(kPDFPPD));
    ppdMarkDefaults(ppd.get());
    const std::string before = header();
    const Choices covers = {{"UseFrontCover", "True"},
                            {"FrontCoverPrintStyle", "Print1"},
                            {"UseBackCover", "True"},
                            {"BackCoverPrintStyle", "Print"},
                            {"CoverPagesInPDF", "True"}};
    mark(covers);
    EXPECT_EQ(0, ppdConflicts(ppd.get()));
    EXPECT_EQ(before, header());
    for (const char *side : {"UseFrontCover", "UseBackCover"}) {
        mark({{side, "True"}});
        EXPECT_LT(0, ppdConflicts(ppd.get())) << side;
    }
}

TEST_F(SampleDriverTest, TrayOfThePrinterThatTakesPDFIsJobControl)
{
    ppd.reset(ppdOpenFile(kPDFPPD));
    ppdMarkDefaults(ppd.get());
    EXPECT_THAT(header({{"InputSlot", "Tray2"}}),
                HasSubstr("\n@PJL COMMENT DSSC PRINT INPUTSLOT=TRAY2\r\n"));
}

} // namespace
