#include "EndToEndTest.h"

#include <algorithm>
#include <sstream>
#include <utility>

using Support::lpOption;
using Support::PJLJob;
using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Gt;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

class OptionsTest : public EndToEndTest {
protected:
    static PJLJob printWith(const std::vector<std::string> &options,
                            const std::string &queue = kQueue)
    {
        return print(queue, document("sample.ps"), options);
    }

    static std::vector<std::string> headerWith(const std::vector<std::string> &options)
    {
        return headerLines(printWith(options));
    }

    /// The words of one toolkit call, without the two paths at its end.
    static std::vector<std::string> toolkitCallWith(const std::vector<std::string> &options)
    {
        printWith(options, kToolkitQueue);
        auto arguments = toolkitArguments();
        EXPECT_THAT(arguments.size(), Gt(2U));
        arguments.resize(arguments.size() - std::min<std::size_t>(2, arguments.size()));
        return arguments;
    }

    static std::string pde(const std::string &name, const std::string &value)
    {
        return lpOption("com.kalmira.pde." + name, value);
    }

    static std::string profile()
    {
        return pde("q5.color-profile", "file://" + document("srgb.icc"));
    }
};

// Arguments and the store

TEST_F(OptionsTest, UserAndCopiesOfTheOptionsWinOverTheArguments)
{
    const auto lines = headerWith({lpOption("com.kalmira.username", "otto"),
                                   lpOption("com.kalmira.domainname", "EXAMPLE"),
                                   lpOption("com.kalmira.copies", "7")});
    EXPECT_THAT(lines, Contains(dssc("USERLOGIN=otto")));
    EXPECT_THAT(lines, Contains(dssc("DOMAINNAME=EXAMPLE")));
    EXPECT_THAT(lines, Contains("@PJL SET COPIES = 7"));
}

TEST_F(OptionsTest, TitleInTheHeaderIsTheJobsOwn)
{
    const auto lines = headerWith({lpOption("com.kalmira.jobname", "Secret")});
    EXPECT_THAT(lines, Contains(HasSubstr("sample.ps")));
    EXPECT_THAT(lines, Not(Contains(HasSubstr("Secret"))));
}

TEST_F(OptionsTest, JobEndNamesThePageSize)
{
    EXPECT_THAT(printWith({"PageSize=A3"}).end, HasSubstr("JOBENDINFO PAGESIZE=A3\r\n"));
    EXPECT_THAT(printWith({}).end, HasSubstr("JOBENDINFO PAGESIZE=A4\r\n"));
}

TEST_F(OptionsTest, DirectoryLookUpWithoutADirectoryStillPrints)
{
    EXPECT_THAT(headerWith({"UseOpenDirectoryForAuthentication=True"}),
                Contains(StartsWith(dssc("USERLOGIN="))));
}

TEST_F(OptionsTest, ValuesOfEveryKindArriveAsTheyAre)
{
    KL_NEEDS_VALUES_WITH_BLANKS();
    for (const std::string value : {"a.b.c", "two words", "it's", "a \"b\" c", "back\\slash",
                                    "100%d", "Ärger in Köln", "日本語", "a=b,c;d{e}", "#1 <x>"})
        EXPECT_THAT(headerWith({lpOption("com.kalmira.domainname", value)}),
                    Contains(dssc("DOMAINNAME=" + value)));
}

// Schedulers from CUPS 2.4.17 on leave them out themselves.
TEST_F(OptionsTest, EscapesInValuesSpeakNoPJL)
{
    EXPECT_THAT(
        headerWith({lpOption("com.kalmira.domainname", "1\033%-12345X@PJL")}),
        Contains(AnyOf(dssc("DOMAINNAME=1 %-12345X@PJL"), dssc("DOMAINNAME=1%-12345X@PJL"))));
}

// The scheduler hands line breaks on in a form that ends the value.
TEST_F(OptionsTest, LineBreaksInValuesSpeakNoPJL)
{
    EXPECT_THAT(headerWith({lpOption("com.kalmira.domainname", "1\r\n@PJL DEFAULT")}),
                Contains(dssc("DOMAINNAME=1")));
}

// Settings of the header

TEST_F(OptionsTest, DepartmentCode)
{
    EXPECT_THAT(headerWith({pde("print-mode-ovm.departmentCode", "4711")}),
                Contains(dssc("ACCESSCODE=4711")));
    EXPECT_THAT(headerWith({}), Not(Contains(HasSubstr("ACCESSCODE="))));
}

// Whatever is chosen in a dialog, that is: a queue for each department rests on it.
TEST_F(OptionsTest, DepartmentCodeOfTheQueueCountsUntilAJobSendsItsOwn)
{
    const std::string key = "com.kalmira.pde.print-mode-ovm.departmentCode";
    scheduler().run({"lpadmin", "-p", kQueue, "-o", key + "-default=10"});
    EXPECT_THAT(headerWith({"KLDepartmentCode=None"}), Contains(dssc("ACCESSCODE=10")));
    EXPECT_THAT(headerWith({"KLDepartmentCode=Custom.12"}), Contains(dssc("ACCESSCODE=10")));
    EXPECT_THAT(headerWith({lpOption(key, "11")}), Contains(dssc("ACCESSCODE=11")));
    scheduler().run({"lpadmin", "-p", kQueue, "-R", key + "-default"});
    EXPECT_THAT(headerWith({}), Not(Contains(HasSubstr("ACCESSCODE="))));
}

TEST_F(OptionsTest, DeviceColourFollowsTheProfile)
{
    EXPECT_THAT(headerWith({profile()}), Contains(dssc("FORCE_DEVICECOLOR=1")));
    EXPECT_THAT(headerWith({}), Contains(dssc("FORCE_DEVICECOLOR=0")));
}

TEST_F(OptionsTest, DeviceColourIsOffWhenThePrinterMatchesColours)
{
    EXPECT_THAT(headerWith({profile(), "AP_ColorMatchingMode=AP_VendorColorMatching"}),
                Contains(dssc("FORCE_DEVICECOLOR=0")));
    EXPECT_THAT(headerWith({profile(), "com.apple.print.PrintSettings.PMColorMatchingMode..n.=0"}),
                Contains(dssc("FORCE_DEVICECOLOR=0")));
}

TEST_F(OptionsTest, StandardAdvancedColour)
{
    const auto lines =
        headerWith({"DocumentType=Advanced", pde("advancedcolorsettings.mode", "Standard"),
                    pde("advancedcolorsettings.rgb-source", "sRGB"),
                    pde("advancedcolorsettings.cmyk-source", "Euroscale"),
                    pde("advancedcolorsettings.cmyk-dest", "Printer"),
                    pde("advancedcolorsettings.device-color-only", "ON"),
                    pde("advancedcolorsettings.rendering-intent", "Perceptual")});
    const auto first = std::ranges::find(lines, dssc("DOCUMENTTYPE=ADVANCED"));
    ASSERT_GT(lines.end() - first, 6);
    EXPECT_THAT(std::vector<std::string>(first, first + 6),
                ElementsAre(dssc("DOCUMENTTYPE=ADVANCED"), dssc("RGB PROFILE=sRGB"),
                            dssc("CMYK PROFILE=Euroscale"), dssc("OUTPUT PROFILE=Printer"),
                            dssc("USE PROFILE=ON"), dssc("RENDERING INTENT=Perceptual")));
}

TEST_F(OptionsTest, CustomizedAdvancedColour)
{
    KL_NEEDS_VALUES_WITH_BLANKS();
    EXPECT_THAT(headerWith({"DocumentType=Advanced", pde("advancedcolorsettings.mode", "Custom"),
                            pde("advancedcolorsettings.customized-rgb-profile", "Our Own")}),
                Contains(dssc("EXTRADOCUMENTTYPE=Our Own")));
}

TEST_F(OptionsTest, PrivatePrint)
{
    const auto lines =
        headerWith({"PrintMode=Private", pde("print-mode-ovm.privatePassword", "1234")});
    EXPECT_THAT(lines, Contains(dssc("PRINTMODE=PRIVATE")));
    EXPECT_THAT(lines, Contains(dssc("PRIVPRINT=1234")));
}

TEST_F(OptionsTest, DocumentBox)
{
    const auto lines = headerWith(
        {"StoreToDocStore=True", pde("docstore.boxNumber", "12"), pde("docstore.boxName", "Sales"),
         pde("docstore.boxFolder", "2026"), pde("docstore.boxPassword", "sesame")});
    EXPECT_THAT(lines, Contains("@PJL COMMENT DSSC BOX BOX=1"));
    EXPECT_THAT(lines, Contains("@PJL COMMENT DSSC BOX BOXNO=12"));
    EXPECT_THAT(lines, Contains("@PJL COMMENT DSSC BOX BOXNAME=Sales"));
    EXPECT_THAT(lines, Contains("@PJL COMMENT DSSC BOX BOXFOLDER=2026"));
    EXPECT_THAT(lines, Contains("@PJL COMMENT DSSC BOX BOXPASSWORD=sesame"));
    EXPECT_THAT(lines, Contains(dssc("PRINTMODE=NORMAL")));
}

TEST_F(OptionsTest, DocumentBoxAlone)
{
    const auto lines = headerWith(
        {"StoreToDocStore=true", "PrintAsWell=false", pde("docstore.boxPasswordEx", "0xff")});
    EXPECT_THAT(lines, Contains("@PJL COMMENT DSSC BOX BOXPASSWORDEX=0xff"));
    EXPECT_THAT(lines, Contains(dssc("PRINTMODE=BOX")));
}

// A setting that the scheduler's own filters act on as well.
TEST_F(OptionsTest, SettingsThatThePPDExpressesReachTheHeader)
{
    EXPECT_THAT(headerWith({"Duplex=DuplexTumble", "MediaType=Thick", "ColorModel=Gray",
                            "Staple=UpperLeft", "HolePunch=Left", "TonerSave=True"}),
                testing::IsSupersetOf({dssc("DUPLEX=SHORTEDGE"), dssc("MEDIATYPE=THICK1"),
                                       dssc("COLORMODE=BW"), dssc("STAPLE=UPPERLEFT"),
                                       dssc("PUNCH=LEFT"), dssc("TONERSAVE=ON")}));
}

TEST_F(OptionsTest, StandardJobOptionsReachTheHeader)
{
    EXPECT_THAT(headerWith({"sides=two-sided-long-edge", "collate=false"}),
                testing::IsSupersetOf({dssc("DUPLEX=LONGEDGE"), dssc("COLLATE=OFF")}));
    EXPECT_THAT(printWith({"media=A3"}).end, HasSubstr("PAGESIZE=A3"));
}

TEST_F(OptionsTest, PaperSourceIsAskedForInThePageData)
{
    EXPECT_THAT(printWith({"InputSlot=Tray2"}).body, HasSubstr("/MediaPosition 2"));
}

// Settings of the toolkit

TEST_F(OptionsTest, Watermark)
{
    KL_NEEDS_VALUES_WITH_BLANKS();
    const auto call = toolkitCallWith(
        {pde("watermark.text", "Top \"secret\" (it's ours)"), pde("watermark.angle", "45"),
         pde("watermark.font", "Times-Bold"), pde("watermark.color", "1,0,0"),
         pde("watermark.size", "48"), pde("watermark.x", "25"), pde("watermark.y", "75"),
         pde("watermark.ordering", "1")});
    ASSERT_EQ(14U, call.size());
    EXPECT_THAT(std::vector(call.begin(), call.begin() + 9),
                ElementsAre("watermark", "--below", "--font", "Times-Bold", "--angle", "-45.000000",
                            "--colour", "1,0,0", "--position"));
    EXPECT_THAT(std::vector(call.begin() + 10, call.end()),
                ElementsAre("--size", "48", "--text", "Top \"secret\" (it's ours)"));
}

// The same text at two places: how far they are apart does not depend on its size.
TEST_F(OptionsTest, WatermarkPosition)
{
    const auto begin = [](const std::string &x, const std::string &y) {
        const auto call = toolkitCallWith(
            {pde("watermark.text", "x"), pde("watermark.x", x), pde("watermark.y", y)});
        const auto position = call.size() == 14 ? call[9] : "0,0";
        const auto comma = position.find(',');
        return std::pair(std::stod(position.substr(0, comma)),
                         std::stod(position.substr(comma + 1)));
    };
    const auto middle = begin("50", "50");
    const auto corner = begin("0", "100");
    EXPECT_NEAR(595.0 / 2, middle.first - corner.first, 0.001);
    EXPECT_NEAR(842.0 / 2, corner.second - middle.second, 0.001);
}

TEST_F(OptionsTest, WatermarkPlace)
{
    const auto call =
        toolkitCallWith({pde("watermark.text", "x"), pde("watermark.place", "top-left"),
                         pde("watermark.distance", "10mm"), pde("watermark.fit", "width")});
    ASSERT_EQ(18U, call.size());
    EXPECT_THAT(std::vector(call.begin() + 8, call.end()),
                ElementsAre("--place", "top-left", "--size", "36", "--text", "x", "--distance",
                            "10mm", "--fit", "width"));
}

TEST_F(OptionsTest, WatermarkPlaceholders)
{
    KL_NEEDS_VALUES_WITH_BLANKS();
    const std::pair<const char *, const char *> kTexts[] = {
        {"[title]", "sample.ps"},
        {"[title][page]", "sample.ps[page]"},
        {"[title], [page] of [pages]", "sample.ps, [page] of [pages]"},
        {"[[x]] {[title]", "[[x]] {sample.ps"},
        {"[[[title]]]", "[[sample.ps]]"}};
    for (const auto &[text, expected] : kTexts) {
        const auto call =
            toolkitCallWith({pde("watermark.text", text), pde("watermark.placeholders", "True")});
        ASSERT_EQ(15U, call.size());
        EXPECT_EQ("50.000000%,50.000000%", call[9]);
        EXPECT_EQ(expected, call[13]) << text;
        EXPECT_EQ("--placeholders", call[14]);
    }
}

TEST_F(OptionsTest, Booklet)
{
    EXPECT_THAT(toolkitCallWith({"BookletPaperSize=A3", "BookletCenterMargin=10mm",
                                 "BookletOuterMargin=5mm", "BookletPageLayout=False"}),
                ElementsAre("booklet", "--pagesize", "A3", "--centremargin", "10mm",
                            "--outermargin", "5mm", "--ordering", "RTL"));
}

TEST_F(OptionsTest, BookletInSignatures)
{
    EXPECT_THAT(toolkitCallWith({"BookletPaperSize=A4", "BookletSignatureSheets=4",
                                 "BookletCreep=0.2mm", "BookletTurnLandscape=True"}),
                ElementsAre("booklet", "--pagesize", "A4", "--centremargin", "0", "--outermargin",
                            "0", "--ordering", "LTR", "--signature", "4", "--creep", "0.2mm",
                            "--turn-landscape"));
}

TEST_F(OptionsTest, BookletIsBoundAtTheShortEdge)
{
    EXPECT_THAT(headerLines(printWith({"BookletPaperSize=A3"}, kToolkitQueue)),
                Contains(dssc("DUPLEX=SHORTEDGE")));
}

TEST_F(OptionsTest, CoverPages)
{
    EXPECT_THAT(
        toolkitCallWith({"UseFrontCover=True", "FrontCoverPrintStyle=Print1",
                         "FrontCoverSource=SheetFeedBypass", "FrontCoverMediaType=Thick",
                         "UseBackCover=True", "BackCoverPrintStyle=Print",
                         "BackCoverSource=AdditionalExternalLCF", "BackCoverMediaType=Recycled",
                         "InputSlot=Tray3", "MediaType=Plain", "Duplex=DuplexNoTumble"}),
        ElementsAre("coverpages", "--back-style", "print", "--back-media", "Recycled",
                    "--back-source", "ExternalLCF2", "--front-style", "print1", "--front-media",
                    "Thick", "--front-source", "Bypass", "--source", "Tray3", "--media", "Plain",
                    "--duplex", "notumble"));
}

// What people and print dialogs see

TEST_F(OptionsTest, EverySettingIsListedUnderANameForPeople)
{
    const std::string list = scheduler().run({"lpoptions", "-p", kQueue, "-l"});
    EXPECT_THAT(list, HasSubstr("PageSize/Media Size: A3 *A4 A5"));
    EXPECT_THAT(list, HasSubstr("Duplex/Two-Sided: *None DuplexNoTumble DuplexTumble\n"));
    EXPECT_THAT(list, HasSubstr("StoreToDocStore/Store in Document Box: *False True\n"));
    std::istringstream lines(list);
    for (std::string line; std::getline(lines, line);) {
        const auto slash = line.find('/');
        const auto colon = line.find(": ");
        ASSERT_LT(slash, colon) << line;
        EXPECT_NE(line.substr(0, slash), line.substr(slash + 1, colon - slash - 1));
    }
}

} // namespace
