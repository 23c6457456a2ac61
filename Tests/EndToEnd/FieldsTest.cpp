#include "EndToEndTest.h"

#include <algorithm>
#include <regex>
#include <sstream>

using Support::lpOption;
using Support::PJLJob;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;
using testing::UnorderedElementsAre;

namespace {

/// The sample driver's fields as print dialogs send them, and the attributes that stand for some of
/// them where a client knows no PPD.
class FieldsTest : public EndToEndTest {
protected:
    static std::string field(const std::string &option, const std::string &typed)
    {
        return lpOption(option, "Custom." + typed);
    }

    static std::vector<std::string> headerWith(const std::vector<std::string> &options,
                                               const std::string &queue = kQueue)
    {
        return headerLines(print(queue, document("sample.pdf"), options));
    }

    /// The argument behind a word of the last toolkit call.
    static std::string argumentOf(const std::string &word)
    {
        const auto call = toolkitArguments();
        const auto found = std::ranges::find(call, word);
        return call.end() - found > 1 ? *(found + 1) : "";
    }

    static int countOf(const std::string &part, const std::string &text)
    {
        int count = 0;
        for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
            ++count;
        return count;
    }

    /// The values of an attribute in what ipptool(1) shows.
    static std::vector<std::string> valuesOf(const std::string &attribute,
                                             const std::string &answer)
    {
        std::smatch match;
        std::regex_search(answer, match, std::regex("\\b" + attribute + " \\(.*\\) = (.*)"));
        std::istringstream list(match[1]);
        std::vector<std::string> values;
        for (std::string value; std::getline(list, value, ',');)
            values.push_back(value);
        return values;
    }

    /// Expects a job of these options not to be printed. @return what the log says of it
    static std::string logOfRefused(const std::vector<std::string> &options)
    {
        std::vector<std::string> arguments = {"-d", kQueue};
        for (const std::string &option : options)
            arguments.insert(arguments.end(), {"-o", option});
        arguments.push_back(document("sample.ps"));
        const int job = scheduler().submit(arguments);
        EXPECT_NE("completed", scheduler().waitForJob(job).state);
        EXPECT_THAT(printer().jobs(), testing::IsEmpty());
        EXPECT_THAT(strayFiles(), testing::IsEmpty());
        const std::string log = scheduler().log(job);
        scheduler().run({"cancel", std::string(kQueue) + "-" + std::to_string(job)});
        scheduler().run({"cupsenable", kQueue});
        return log;
    }
};

TEST_F(FieldsTest, DepartmentCode)
{
    EXPECT_THAT(headerWith({field("KLDepartmentCode", "0815")}), Contains(dssc("ACCESSCODE=0815")));
    EXPECT_THAT(headerWith({"KLDepartmentCode=None"}), Not(Contains(HasSubstr("ACCESSCODE="))));
}

TEST_F(FieldsTest, PINMakesThePrintPrivate)
{
    EXPECT_THAT(headerWith({field("KLPrivatePIN", "0471")}),
                IsSupersetOf({dssc("PRINTMODE=PRIVATE"), dssc("PRIVPRINT=0471")}));
    EXPECT_THAT(
        headerWith({field("KLPrivatePIN", "0471"), "PrintMode=Normal", "StoreToDocStore=True"}),
        AllOf(Contains(dssc("PRINTMODE=PRIVATE")), Contains(dssc("PRIVPRINT=0471")),
              Not(Contains(HasSubstr("DSSC BOX")))));
}

TEST_F(FieldsTest, DocumentBox)
{
    KL_NEEDS_VALUES_WITH_BLANKS();
    EXPECT_THAT(
        headerWith({"StoreToDocStore=True", field("KLBoxNumber", "012"),
                    field("KLBoxName", "Sales \"team\" (Köln)"), field("KLBoxFolder", "it's 2026"),
                    field("KLBoxPassword", "open sesame")}),
        IsSupersetOf({"@PJL COMMENT DSSC BOX BOXNO=012",
                      "@PJL COMMENT DSSC BOX BOXNAME=Sales \"team\" (Köln)",
                      "@PJL COMMENT DSSC BOX BOXFOLDER=it's 2026",
                      "@PJL COMMENT DSSC BOX BOXPASSWORD=open sesame"}));
}

TEST_F(FieldsTest, ColourProfilesByName)
{
    KL_NEEDS_VALUES_WITH_BLANKS();
    EXPECT_THAT(
        headerWith({"DocumentType=Advanced", "KLColorSettings=Standard", "KLRGBProfile=AdobeRGB",
                    field("KLCMYKProfile", "House stock"), "KLOutputProfile=Printer",
                    "KLUseProfile=Device", "KLRenderingIntent=Saturation"}),
        IsSupersetOf({dssc("RGB PROFILE=Adobe RGB"), dssc("CMYK PROFILE=House stock"),
                      dssc("OUTPUT PROFILE=Printer"), dssc("USE PROFILE=ON"),
                      dssc("RENDERING INTENT=SATURATION")}));
}

TEST_F(FieldsTest, ColourProfilesThatAreTyped)
{
    KL_NEEDS_VALUES_WITH_BLANKS();
    EXPECT_THAT(
        headerWith({"DocumentType=Advanced", "KLColorSettings=Standard",
                    field("KLRGBProfile", "Wide gamut"), field("KLOutputProfile", "Second floor")}),
        IsSupersetOf({dssc("RGB PROFILE=Wide gamut"), dssc("OUTPUT PROFILE=Second floor")}));
}

TEST_F(FieldsTest, ColourProfileOfYourOwn)
{
    KL_NEEDS_VALUES_WITH_BLANKS();
    EXPECT_THAT(headerWith({"DocumentType=Advanced", "KLColorSettings=Customized",
                            field("KLCustomizedProfile", "Our own")}),
                Contains(dssc("EXTRADOCUMENTTYPE=Our own")));
}

TEST_F(FieldsTest, AdvancedColourWithoutAChoiceIsThePrinters)
{
    const auto lines = headerWith({"DocumentType=Advanced"});
    EXPECT_THAT(lines, Contains(dssc("EXTRADOCUMENTTYPE=DEFAULT")));
    EXPECT_THAT(lines, Not(Contains(HasSubstr("PROFILE="))));
}

TEST_F(FieldsTest, WatermarkThatIsTyped)
{
    KL_NEEDS_VALUES_WITH_BLANKS();
    print(kToolkitQueue, document("sample.ps"),
          {field("KLWatermarkText", "Top \"secret\", it's (really) ours"),
           "KLWatermarkFont=Times-Bold", field("KLWatermarkSize", "81"),
           field("KLWatermarkAngle", "-52"), "KLWatermarkColor=Red", "KLWatermarkOrdering=Below"});
    EXPECT_EQ("Top \"secret\", it's (really) ours", argumentOf("--text"));
    EXPECT_EQ("Times-Bold", argumentOf("--font"));
    EXPECT_EQ("81", argumentOf("--size"));
    EXPECT_EQ("52.000000", argumentOf("--angle"));
    EXPECT_EQ("1,0,0", argumentOf("--colour"));
    EXPECT_THAT(toolkitArguments(), Contains("--below"));
}

TEST_F(FieldsTest, WatermarksThatAreChosen)
{
    const std::pair<std::string, std::string> texts[] = {
        {"Draft", "DRAFT"}, {"Confidential", "CONFIDENTIAL"}, {"Copy", "COPY"}};
    for (const auto &[choice, text] : texts) {
        print(kToolkitQueue, document("sample.ps"),
              {"KLWatermarkText=" + choice, "KLWatermarkAngle=Rising"});
        EXPECT_EQ(text, argumentOf("--text"));
        EXPECT_EQ("45.000000", argumentOf("--angle"));
    }
}

TEST_F(FieldsTest, WatermarkOnSomePages)
{
    const std::pair<std::string, std::string> choices[] = {
        {"First", "first"}, {"NotFirst", "not-first"}, {"Odd", "odd"}, {"Even", "even"}};
    for (const auto &[choice, pages] : choices) {
        print(kToolkitQueue, document("sample.ps"),
              {"KLWatermarkText=Draft", "KLWatermarkPages=" + choice});
        EXPECT_EQ(pages, argumentOf("--pages"));
    }
    print(kToolkitQueue, document("sample.ps"),
          {"KLWatermarkText=Draft", field("KLWatermarkPages", "2-5,8,10-")});
    EXPECT_EQ("2-5,8,10-", argumentOf("--pages"));
}

TEST_F(FieldsTest, WatermarkThatThePageShowsThrough)
{
    print(kToolkitQueue, document("sample.ps"),
          {"KLWatermarkText=Draft", "KLWatermarkOverprint=True"});
    EXPECT_THAT(toolkitArguments(), Contains("--overprint"));
}

// A line of text from the lower left to the upper right: its box begins left of and below its
// middle.
TEST_F(FieldsTest, PlaceOfTheWatermark)
{
    const auto begin = [](const std::string &x, const std::string &y) {
        print(kToolkitQueue, document("sample.ps"),
              {"KLWatermarkText=Draft", "KLWatermarkX=" + x, "KLWatermarkY=" + y});
        const std::string position = argumentOf("--position");
        const auto comma = position.find(',');
        return comma == std::string::npos ? std::pair(0.0, 0.0)
                                          : std::pair(std::stod(position.substr(0, comma)),
                                                      std::stod(position.substr(comma + 1)));
    };
    const auto middle = begin("Center", "Middle");
    const auto corner = begin("Left", "Top");
    EXPECT_NEAR(595.0 * 0.25, middle.first - corner.first, 0.001);
    EXPECT_NEAR(842.0 * 0.40, corner.second - middle.second, 0.001);
}

TEST_F(FieldsTest, PlaceDistanceFitAndPlaceholdersOfTheWatermark)
{
    print(kToolkitQueue, document("sample.ps"),
          {field("KLWatermarkText", "[job-id]-[page]"), field("KLWatermarkDistance", "12mm"),
           "KLWatermarkFit=Width", "KLWatermarkReplace=True", "KLWatermarkPlace=BottomRight"});
    EXPECT_EQ("bottom-right", argumentOf("--place"));
    EXPECT_EQ("12mm", argumentOf("--distance"));
    EXPECT_EQ("width", argumentOf("--fit"));
    EXPECT_THAT(argumentOf("--text"), testing::MatchesRegex("[0-9]+-\\[page\\]"));
    EXPECT_THAT(toolkitArguments(), Contains("--placeholders"));
}

TEST_F(FieldsTest, WatermarkOfATextOnlyHasTheArgumentsOfOldAlone)
{
    print(kToolkitQueue, document("sample.ps"), {"KLWatermarkText=Draft"});
    const auto arguments = toolkitArguments();
    for (const char *word :
         {"--place", "--distance", "--fit", "--placeholders", "--overprint", "--pages"})
        EXPECT_THAT(arguments, Not(Contains(word)));
}

TEST_F(FieldsTest, NoWatermarkUnlessItHasAText)
{
    print(kToolkitQueue, document("sample.ps"), {"KLWatermarkFont=Courier", "KLWatermarkX=Left"});
    EXPECT_THAT(scheduler().temporaryFiles(), Not(Contains("toolkit-arguments")));
}

// What says nothing but its text looks as it does without fields.
TEST_F(FieldsTest, LooksOfAWatermarkAreTheUsualOnesUnlessChosen)
{
    print(kToolkitQueue, document("sample.ps"),
          {lpOption("com.kalmira.pde.watermark.text", "plain")});
    EXPECT_EQ("Helvetica", argumentOf("--font"));
    EXPECT_EQ("36", argumentOf("--size"));
    EXPECT_EQ("-0.000000", argumentOf("--angle"));
    EXPECT_EQ("0,0,0", argumentOf("--colour"));
    EXPECT_THAT(toolkitArguments(), Contains("--above"));
    EXPECT_THAT(toolkitArguments(), Not(Contains("--overprint")));
    EXPECT_THAT(toolkitArguments(), Not(Contains("--pages")));
}

TEST_F(FieldsTest, WhatIsTypedStandsInItsOwnLineAndNowhereElse)
{
    const std::vector<std::string> secrets = {"59137264", "84620917", "sesame-93", "mark-4471"};
    for (const char *queue : {kQueue, kPDFQueue})
        for (const char *name : {"sample.ps", "sample.pdf"}) {
            const PJLJob priv =
                print(queue, document(name),
                      {field("KLDepartmentCode", secrets[0]), field("KLPrivatePIN", secrets[1])});
            EXPECT_EQ(1, countOf(secrets[0], priv.header + priv.body + priv.end));
            EXPECT_EQ(1, countOf(secrets[1], priv.header + priv.body + priv.end));
            EXPECT_THAT(headerLines(priv), IsSupersetOf({dssc("ACCESSCODE=" + secrets[0]),
                                                         dssc("PRIVPRINT=" + secrets[1])}));
            EXPECT_THAT(priv.body, Not(HasSubstr("KLDepartmentCode")));
            EXPECT_THAT(priv.body, Not(HasSubstr("KLPrivatePIN")));

            const PJLJob stored =
                print(queue, document(name),
                      {"StoreToDocStore=True", field("KLBoxPassword", secrets[2])});
            EXPECT_EQ(1, countOf(secrets[2], stored.header + stored.body + stored.end));
            EXPECT_THAT(stored.body, Not(HasSubstr("KLBoxPassword")));
        }
}

TEST_F(FieldsTest, DefaultOfTheQueueCounts)
{
    scheduler().run({"lpadmin", "-p", kQueue, "-o", "KLDepartmentCode=Custom.9999"});
    EXPECT_THAT(headerWith({}), Contains(dssc("ACCESSCODE=9999")));
    EXPECT_THAT(headerWith({"KLDepartmentCode=None"}), Not(Contains(HasSubstr("ACCESSCODE="))));
    EXPECT_THAT(headerWith({"job-account-id=0815"}), Contains(dssc("ACCESSCODE=0815")));
    scheduler().run({"lpadmin", "-p", kQueue, "-o", "KLDepartmentCode=None"});
}

TEST_F(FieldsTest, CodeThatThePrinterWouldNotTakeEndsTheJobAndStaysSecret)
{
    const std::string log = logOfRefused({field("KLDepartmentCode", "47x11")});
    EXPECT_THAT(log, HasSubstr("KLDepartmentCode must have 1 to 8 digits and nothing else"));
    EXPECT_THAT(logOfRefused({field("KLPrivatePIN", "12a4")}),
                HasSubstr("KLPrivatePIN must have 1 to 8 digits and nothing else"));
    EXPECT_THAT(logOfRefused({"job-password=12a4"}), HasSubstr("KLPrivatePIN must have 1 to 8"));
}

// Documentation/administrators.md tells how, under "Where messages go".
TEST_F(FieldsTest, RefusedJobStandsStillUntilItIsRestartedWithARightCode)
{
    scheduler().run({"lpadmin", "-p", kQueue, "-o", "printer-error-policy=abort-job"});
    const int job = scheduler().submit(
        {"-d", kQueue, "-o", field("KLDepartmentCode", "47x11"), document("sample.ps")});
    EXPECT_THAT(scheduler().waitForJob(job).state, testing::HasSubstr("stopped"));
    EXPECT_THAT(scheduler().unfinishedJobs(kQueue), Contains(job));

    const std::string name = std::string(kQueue) + "-" + std::to_string(job);
    scheduler().run({"lp", "-i", name, "-o", field("KLDepartmentCode", "4711")});
    scheduler().run({"lp", "-i", name, "-H", "restart"});
    EXPECT_THAT(headerLines(finishedJob(job)), Contains(dssc("ACCESSCODE=4711")));
    scheduler().run({"lpadmin", "-p", kQueue, "-o", "printer-error-policy=retry-job"});
}

// Attributes of IPP

TEST_F(FieldsTest, AttributesOfTheJobStandForFields)
{
    EXPECT_THAT(headerWith({"job-password=4711", "job-password-encryption=none",
                            "job-account-id=0815", "job-accounting-user-id=anna-acct"}),
                IsSupersetOf({dssc("PRINTMODE=PRIVATE"), dssc("PRIVPRINT=4711"),
                              dssc("ACCESSCODE=0815"), dssc("USERLOGIN=anna-acct")}));
}

TEST_F(FieldsTest, ClientThatKnowsNoPPDPrintsPrivatelyWithACodeAndStapled)
{
    const auto lines = headerLines(
        printOverIPP(kQueue, document("sample.pdf"),
                     {"octetString job-password 4711", "keyword job-password-encryption none",
                      "name job-account-id 0815", "enum finishings 20"}));
    EXPECT_THAT(lines, IsSupersetOf({dssc("PRINTMODE=PRIVATE"), dssc("PRIVPRINT=4711"),
                                     dssc("ACCESSCODE=0815"), dssc("STAPLE=UPPERLEFT")}));
}

TEST_F(FieldsTest, SchedulerOffersWhatStandsForFields)
{
    const Support::TemporaryFolder folder;
    const std::string answer = scheduler().run(
        {"ipptool", "-tv", scheduler().queueURI(kQueue),
         folder.write("get.test", "{ OPERATION Get-Printer-Attributes "
                                  "GROUP operation-attributes-tag "
                                  "ATTR charset attributes-charset utf-8 "
                                  "ATTR language attributes-natural-language en "
                                  "ATTR uri printer-uri $uri STATUS successful-ok }\n")});
    EXPECT_THAT(answer, HasSubstr("job-account-id-supported (boolean) = true"));
    EXPECT_THAT(answer, HasSubstr("job-accounting-user-id-supported (boolean) = true"));
    EXPECT_THAT(answer, HasSubstr("job-password-supported (integer) = 4"));
    EXPECT_THAT(answer, HasSubstr("job-password-encryption-supported (keyword) = none"));
    EXPECT_THAT(valuesOf("finishings-supported", answer),
                UnorderedElementsAre("none", "staple", "punch", "saddle-stitch", "staple-top-left",
                                     "staple-dual-left", "punch-dual-left", "punch-dual-top"));
    EXPECT_THAT(answer, HasSubstr("MFG:Kalmira;MDL:Office MFP;CMD:PJL,POSTSCRIPT;"));
}

TEST_F(FieldsTest, FinishingsOfIPPStapleAndPunch)
{
    const std::pair<const char *, std::string> finishings[] = {
        {"4", "STAPLE=UPPERLEFT"}, {"8", "STAPLE=SADDLE"}, {"20", "STAPLE=UPPERLEFT"},
        {"28", "STAPLE=LEFT"},     {"5", "PUNCH=LEFT"},    {"74", "PUNCH=LEFT"},
        {"75", "PUNCH=TOP"}};
    for (const auto &[number, line] : finishings)
        EXPECT_THAT(headerWith({std::string("finishings=") + number}), Contains(dssc(line)));
}

// lp(1) sends "none" with every job.
TEST_F(FieldsTest, FinishingsOfNoneTakeNoChosenStaplingBack)
{
    EXPECT_THAT(headerWith({"Staple=UpperLeft", "finishings=3"}),
                Contains(dssc("STAPLE=UPPERLEFT")));
    EXPECT_THAT(headerLines(printOverIPP(kQueue, document("sample.pdf"),
                                         {"enum finishings 3", "keyword Staple UpperLeft"})),
                Contains(dssc("STAPLE=UPPERLEFT")));
}

// The printer that takes PDF

TEST_F(FieldsTest, FieldsOfThePrinterThatTakesPDF)
{
    EXPECT_THAT(
        headerWith({field("KLDepartmentCode", "0815"), field("KLPrivatePIN", "0471"),
                    "InputSlot=Tray2", "Staple=Left"},
                   kPDFQueue),
        IsSupersetOf({dssc("ACCESSCODE=0815"), dssc("PRINTMODE=PRIVATE"), dssc("PRIVPRINT=0471"),
                      dssc("INPUTSLOT=TRAY2"), dssc("STAPLE=LEFT")}));
}

// What people and print dialogs see

TEST_F(FieldsTest, FieldsAreListedWithWhatCanBeTyped)
{
    const std::string list = scheduler().run({"lpoptions", "-p", kQueue, "-l"});
    for (const char *line :
         {"KLDepartmentCode/Department Code: *None Custom.PASSCODE\n",
          "KLPrivatePIN/PIN for Private Printing: *None Custom.PASSCODE\n",
          "KLBoxNumber/Box Number: *None Custom.STRING\n",
          "KLBoxPassword/Box Password: *None Custom.PASSWORD\n",
          "KLWatermarkText/Watermark: *None Draft Confidential Copy Custom.STRING\n",
          "KLWatermarkSize/Watermark Size: 24 *36 48 72 96 144 Custom.INTEGER\n",
          "KLWatermarkAngle/Watermark Angle: *Horizontal Rising Falling Upwards Downwards "
          "Custom.INTEGER\n"})
        EXPECT_THAT(list, HasSubstr(line));
}

} // namespace
