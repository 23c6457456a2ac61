// What the options store says about its PPD.

#include "KLPrintOptions.h"
#include "QueueTest.h"
#include "ppdLibrary.h"

#include <span>

namespace {

constexpr char kPlainPostScript[] = "<< /KMRPrivate (DSSC PRINT MEDIA=PLAIN) >> KMRsetpagedevice";
constexpr char kThickPostScript[] = "<< /KMRPrivate (DSSC PRINT MEDIA=THICK) >> KMRsetpagedevice";

constexpr char kOptions[] = R"PPD(*OpenUI *MediaType/Papierart: PickOne
*OrderDependency: 30 JCLSetup *MediaType
*DefaultMediaType: Plain
*MediaType Plain/Gewöhnlich: "@PJL COMMENT DSSC PRINT MEDIA=PLAIN<0D0A>"
*MediaType Thick/Très épais: "@PJL COMMENT DSSC PRINT MEDIA=THICK<0D0A>"
*MediaType Late/厚紙: "<0D0A0D0A20>@PJL COMMENT DSSC PRINT MEDIA=LATE<0D0A>"
*MediaType Bare: "@PJL COMMENT DSSC PRINT"
*MediaType Printer: "@PJL COMMENT DSSC PRINTER MEDIA=PLAIN<0D0A>"
*MediaType Other: "@PJL SET MEDIA=PLAIN<0D0A>"
*MediaType Two: "@PJL COMMENT DSSC PRINT A=1<0D0A>@PJL COMMENT DSSC PRINT B=2<0D0A>"
*MediaType Named/Named: "@PJL COMMENT DSSC PRINT MEDIA=Größe<0D0A>"
*MediaType Silent/Silent: ""
*CloseUI: *MediaType
*OpenUI *InputSlot/Schacht: PickOne
*OrderDependency: 30 AnySetup *InputSlot
*DefaultInputSlot: Upper
*InputSlot Upper/Obere Lade: "@PJL COMMENT DSSC PRINT TRAY=1<0D0A>"
*InputSlot Lower/Untere Lade: "
<< /MediaPosition 2 >> setpagedevice
"
*End
*CloseUI: *InputSlot
*OpenUI *Document/Document: PickOne
*OrderDependency: 30 DocumentSetup *Document
*DefaultDocument: On
*Document On/On: "@PJL COMMENT DSSC PRINT DOCUMENT=ON"
*CloseUI: *Document
*JCLOpenUI *JCLEconomy/Economy: Boolean
*DefaultJCLEconomy: False
*JCLEconomy True/On: "@PJL COMMENT DSSC PRINT ECONOMY=ON<0D0A>"
*JCLEconomy False/Off: "@PJL COMMENT DSSC PRINT ECONOMY=OFF<0D0A>"
*JCLCloseUI: *JCLEconomy
*OpenUI *OutputBin/Output: PickMany
*OrderDependency: 30 AnySetup *OutputBin
*DefaultOutputBin: Unknown
*OutputBin Left: "left"
*OutputBin Middle: "middle"
*OutputBin Right: "right"
*CloseUI: *OutputBin
*OpenUI *Empty/Empty: PickOne
*OrderDependency: 30 JCLSetup *Empty
*CloseUI: *Empty
*OpenGroup: Finishing/Finishing
*OpenSubGroup: Binding/Binding
*OpenUI *Staple/Staple: PickOne
*OrderDependency: 30 JCLSetup *Staple
*DefaultStaple: Off
*Staple Off/Off: "@PJL COMMENT DSSC PRINT STAPLE=OFF<0D0A>"
*Staple Two/Two: "@PJL COMMENT DSSC PRINT STAPLE=TWO<0D0A>"
*CloseUI: *Staple
*CloseSubGroup: Binding
*CloseGroup: Finishing
*VariablePaperSize: True
*CustomPageSize True: "pop pop pop pop pop"
*ParamCustomPageSize Width: 1 points 36 1000
*ParamCustomPageSize Height: 2 points 36 2000
*ParamCustomPageSize WidthOffset: 3 points 0 0
*ParamCustomPageSize HeightOffset: 4 points 0 0
*ParamCustomPageSize Orientation: 5 int 0 0
)PPD";

class KLPrintOptionsQueriesTest : public Support::QueueTest {
protected:
    KLPrintOptionsQueriesTest() { usePPD(kOptions); }

    static std::optional<std::string> converted(const std::string &keyword,
                                                const std::string &choice)
    {
        return KLPrintOptions("").convertPJLCodeToPostscriptForPPDOptionWithChoice(keyword, choice);
    }

    /// All marks in the PPD, as one text.
    static std::string marks(const KLPrintOptions &options)
    {
        std::string marks;
        const ppd_file_t &ppd = *options.ppd().file();
        for (const ppd_group_t &group : std::span(ppd.groups, std::size_t(ppd.num_groups))) {
            for (const ppd_option_t &option :
                 std::span(group.options, std::size_t(group.num_options))) {
                for (const ppd_choice_t &choice :
                     std::span(option.choices, std::size_t(option.num_choices)))
                    marks += choice.marked != 0 ? '1' : '0';
            }
        }
        return marks;
    }

    static void expectPageSize(double width, double height, const KLPrintOptions &options)
    {
        EXPECT_EQ(width, options.pageSize().width);
        EXPECT_EQ(height, options.pageSize().height);
    }
};

} // namespace

// codeForMarkedChoiceForPPDOption

TEST_F(KLPrintOptionsQueriesTest, MarkedCodeIsThatOfTheDefaultChoice)
{
    EXPECT_EQ("@PJL COMMENT DSSC PRINT MEDIA=PLAIN\r\n",
              KLPrintOptions("").codeForMarkedChoiceForPPDOption("MediaType"));
}

TEST_F(KLPrintOptionsQueriesTest, MarkedCodeFollowsTheJobsOptions)
{
    EXPECT_EQ("@PJL COMMENT DSSC PRINT MEDIA=THICK\r\n",
              KLPrintOptions("MediaType=Thick").codeForMarkedChoiceForPPDOption("MediaType"));
}

TEST_F(KLPrintOptionsQueriesTest, FirstOfSeveralMarkedChoicesGivesTheCode)
{
    const KLPrintOptions options("");
    ppdMarkOption(options.ppd().file(), "OutputBin", "Right");
    ppdMarkOption(options.ppd().file(), "OutputBin", "Middle");
    EXPECT_EQ("middle", options.codeForMarkedChoiceForPPDOption("OutputBin"));
}

TEST_F(KLPrintOptionsQueriesTest, NoMarkedChoiceGivesNoCode)
{
    const KLPrintOptions options("");
    EXPECT_EQ(std::nullopt, options.codeForMarkedChoiceForPPDOption("OutputBin"));
    EXPECT_EQ(std::nullopt, options.codeForMarkedChoiceForPPDOption("Empty"));
    EXPECT_EQ(std::nullopt, options.codeForMarkedChoiceForPPDOption("NoSuchOption"));
}

TEST_F(KLPrintOptionsQueriesTest, MarkedChoiceWithoutCodeGivesNone)
{
    const KLPrintOptions options("");
    ppd_choice_t *custom =
        ppdFindChoice(ppdFindOption(options.ppd().file(), "PageRegion"), "Custom");
    ASSERT_NE(nullptr, custom);
    ASSERT_EQ(nullptr, custom->code);
    custom->marked = 1;
    EXPECT_EQ(std::nullopt, options.codeForMarkedChoiceForPPDOption("PageRegion"));
}

// codeForPPDOptionWithChoice

TEST_F(KLPrintOptionsQueriesTest, CodeOfAChoiceIsNotTrimmed)
{
    const KLPrintOptions options("");
    EXPECT_EQ("\n<< /MediaPosition 2 >> setpagedevice\n",
              options.codeForPPDOptionWithChoice("InputSlot", "Lower"));
    EXPECT_EQ("\r\n\r\n @PJL COMMENT DSSC PRINT MEDIA=LATE\r\n",
              options.codeForPPDOptionWithChoice("MediaType", "Late"));
}

TEST_F(KLPrintOptionsQueriesTest, HexadecimalDigitsStandForBytesInJobControlCodesOnly)
{
    const KLPrintOptions options("");
    EXPECT_EQ("@PJL COMMENT DSSC PRINT MEDIA=PLAIN\r\n",
              options.codeForPPDOptionWithChoice("MediaType", "Plain"));
    EXPECT_EQ("@PJL COMMENT DSSC PRINT TRAY=1<0D0A>",
              options.codeForPPDOptionWithChoice("InputSlot", "Upper"));
}

TEST_F(KLPrintOptionsQueriesTest, CodeKeepsItsUTF8)
{
    EXPECT_EQ("@PJL COMMENT DSSC PRINT MEDIA=Größe\r\n",
              KLPrintOptions("").codeForPPDOptionWithChoice("MediaType", "Named"));
}

TEST_F(KLPrintOptionsQueriesTest, EmptyCodeIsACode)
{
    EXPECT_EQ("", KLPrintOptions("").codeForPPDOptionWithChoice("MediaType", "Silent"));
}

TEST_F(KLPrintOptionsQueriesTest, ChoiceWithoutCodeHasNone)
{
    EXPECT_EQ(std::nullopt, KLPrintOptions("").codeForPPDOptionWithChoice("PageRegion", "Custom"));
}

TEST_F(KLPrintOptionsQueriesTest, UnknownOptionOrChoiceHasNoCode)
{
    const KLPrintOptions options("");
    EXPECT_EQ(std::nullopt, options.codeForPPDOptionWithChoice("NoSuchOption", "Plain"));
    EXPECT_EQ(std::nullopt, options.codeForPPDOptionWithChoice("MediaType", "NoSuchChoice"));
    EXPECT_EQ(std::nullopt, options.codeForPPDOptionWithChoice("MediaType", ""));
    EXPECT_EQ(std::nullopt, options.codeForPPDOptionWithChoice("", "Plain"));
    EXPECT_EQ(std::nullopt, options.codeForPPDOptionWithChoice("Empty", "Plain"));
}

TEST_F(KLPrintOptionsQueriesTest, TranslationsAreNoNames)
{
    const KLPrintOptions options("");
    EXPECT_EQ(std::nullopt, options.codeForPPDOptionWithChoice("MediaType", "Gewöhnlich"));
    EXPECT_EQ(std::nullopt, options.codeForPPDOptionWithChoice("MediaType", "厚紙"));
    EXPECT_EQ(std::nullopt, options.codeForPPDOptionWithChoice("Papierart", "Plain"));
}

TEST_F(KLPrintOptionsQueriesTest, OptionInsideASubgroupIsFound)
{
    const KLPrintOptions options("");
    EXPECT_EQ("@PJL COMMENT DSSC PRINT STAPLE=TWO\r\n",
              options.codeForPPDOptionWithChoice("Staple", "Two"));
    EXPECT_EQ("@PJL COMMENT DSSC PRINT STAPLE=OFF\r\n",
              options.codeForMarkedChoiceForPPDOption("Staple"));
    EXPECT_EQ("<< /KMRPrivate (DSSC PRINT STAPLE=TWO) >> KMRsetpagedevice",
              converted("Staple", "Two"));
}

// convertPJLCodeToPostscriptForPPDOptionWithChoice

TEST_F(KLPrintOptionsQueriesTest, JobControlChoiceIsConverted)
{
    EXPECT_EQ(kPlainPostScript, converted("MediaType", "Plain"));
    EXPECT_EQ(kThickPostScript, converted("MediaType", "Thick"));
    EXPECT_EQ("<< /KMRPrivate (DSSC PRINT ECONOMY=ON) >> KMRsetpagedevice",
              converted("JCLEconomy", "True"));
}

TEST_F(KLPrintOptionsQueriesTest, CodeIsTrimmedBeforeItIsLookedAt)
{
    EXPECT_EQ("<< /KMRPrivate (DSSC PRINT MEDIA=LATE) >> KMRsetpagedevice",
              converted("MediaType", "Late"));
    EXPECT_EQ(std::nullopt, converted("MediaType", "Bare"));
}

TEST_F(KLPrintOptionsQueriesTest, SecondPJLLineIsCarriedAlong)
{
    EXPECT_EQ("<< /KMRPrivate (DSSC PRINT A=1\r\n@PJL COMMENT DSSC PRINT B=2) >> KMRsetpagedevice",
              converted("MediaType", "Two"));
}

TEST_F(KLPrintOptionsQueriesTest, OtherCodesAreNotConverted)
{
    EXPECT_EQ(std::nullopt, converted("MediaType", "Printer"));
    EXPECT_EQ(std::nullopt, converted("MediaType", "Other"));
    EXPECT_EQ(std::nullopt, converted("MediaType", "Silent"));
    EXPECT_EQ(std::nullopt, converted("MediaType", "NoSuchChoice"));
    EXPECT_EQ(std::nullopt, converted("NoSuchOption", "Plain"));
}

TEST_F(KLPrintOptionsQueriesTest, OptionOutsideJobControlIsNotConvertedWhateverItsCode)
{
    EXPECT_EQ("@PJL COMMENT DSSC PRINT DOCUMENT=ON",
              KLPrintOptions("").codeForPPDOptionWithChoice("Document", "On"));
    EXPECT_EQ(std::nullopt, converted("Document", "On"));
    EXPECT_EQ(std::nullopt, converted("InputSlot", "Upper"));
}

TEST_F(KLPrintOptionsQueriesTest, EverySectionButJobControlIsRefused)
{
    for (const std::string section :
         {"AnySetup", "DocumentSetup", "ExitServer", "PageSetup", "Prolog"}) {
        usePPD("*OpenUI *MediaType/Media: PickOne\n"
               "*OrderDependency: 30 " +
               section +
               " *MediaType\n"
               "*DefaultMediaType: Plain\n"
               "*MediaType Plain: \"@PJL COMMENT DSSC PRINT MEDIA=PLAIN\"\n"
               "*CloseUI: *MediaType\n");
        EXPECT_EQ(std::nullopt, converted("MediaType", "Plain")) << section;
    }
}

// convertPJLCodeToPostscriptForMarkedChoiceForPPDOption

TEST_F(KLPrintOptionsQueriesTest, StoredChoiceIsConverted)
{
    const auto convertedMediaType = [](const std::string &optionString) {
        return KLPrintOptions(optionString)
            .convertPJLCodeToPostscriptForMarkedChoiceForPPDOption("MediaType");
    };
    EXPECT_EQ(kPlainPostScript, convertedMediaType(""));
    EXPECT_EQ(kThickPostScript, convertedMediaType("MediaType=Thick"));
    EXPECT_EQ(std::nullopt, convertedMediaType("MediaType=NoSuchChoice"));
}

TEST_F(KLPrintOptionsQueriesTest, StoredAndMarkedChoicePartWhenTheValueIsSet)
{
    KLPrintOptions options("");
    options.setValueForKey("Thick", "MediaType");
    EXPECT_EQ(kThickPostScript,
              options.convertPJLCodeToPostscriptForMarkedChoiceForPPDOption("MediaType"));
    EXPECT_EQ("@PJL COMMENT DSSC PRINT MEDIA=PLAIN\r\n",
              options.codeForMarkedChoiceForPPDOption("MediaType"));
}

TEST_F(KLPrintOptionsQueriesTest, RemovedValueIsNotConvertedThoughTheMarkStays)
{
    KLPrintOptions options("");
    options.setValueForKey(std::nullopt, "MediaType");
    EXPECT_EQ(std::nullopt,
              options.convertPJLCodeToPostscriptForMarkedChoiceForPPDOption("MediaType"));
    EXPECT_NE(std::nullopt, options.codeForMarkedChoiceForPPDOption("MediaType"));
}

TEST_F(KLPrintOptionsQueriesTest, NumberAsStoredChoiceIsLookedUpByItsText)
{
    usePPD("*OpenUI *Copies/Copies: PickOne\n"
           "*OrderDependency: 30 JCLSetup *Copies\n"
           "*DefaultCopies: 1\n"
           "*Copies 1: \"@PJL COMMENT DSSC PRINT COPIES=1\"\n"
           "*Copies 2: \"@PJL COMMENT DSSC PRINT COPIES=2\"\n"
           "*CloseUI: *Copies\n");
    EXPECT_EQ("<< /KMRPrivate (DSSC PRINT COPIES=2) >> KMRsetpagedevice",
              KLPrintOptions("Copies..n.=2")
                  .convertPJLCodeToPostscriptForMarkedChoiceForPPDOption("Copies"));
}

// postscriptCodeForDuplexSetting, postscriptCodeForDefaultDuplexSetting

TEST_F(KLPrintOptionsQueriesTest, DuplexSettingHasItsLine)
{
    EXPECT_EQ("<< /Duplex true /Tumble true >> KMRsetpagedevice\n",
              KLPrintOptions::postscriptCodeForDuplexSetting("DuplexTumble"));
    EXPECT_EQ(std::nullopt, KLPrintOptions::postscriptCodeForDuplexSetting("duplextumble"));
    EXPECT_EQ(std::nullopt, KLPrintOptions::postscriptCodeForDuplexSetting(std::nullopt));
}

TEST_F(KLPrintOptionsQueriesTest, DefaultDuplexSettingIsTheStoredOne)
{
    KLPrintOptions options("");
    EXPECT_EQ("<< /Duplex false /Tumble false >> KMRsetpagedevice\n",
              options.postscriptCodeForDefaultDuplexSetting());
    options.setValueForKey("DuplexNoTumble", "Duplex");
    EXPECT_EQ("<< /Duplex true /Tumble false >> KMRsetpagedevice\n",
              options.postscriptCodeForDefaultDuplexSetting());
    options.setValueForKey("Sideways", "Duplex");
    EXPECT_EQ(std::nullopt, options.postscriptCodeForDefaultDuplexSetting());
    options.setValueForKey(std::nullopt, "Duplex");
    EXPECT_EQ(std::nullopt, options.postscriptCodeForDefaultDuplexSetting());
}

// pageSize

TEST_F(KLPrintOptionsQueriesTest, PageSizeIsThePPDs)
{
    expectPageSize(595, 842, KLPrintOptions(""));
    expectPageSize(612, 792, KLPrintOptions("PageSize=Letter"));
}

TEST_F(KLPrintOptionsQueriesTest, PageSizeIsThatOfTheStoreAndNotOfTheMark)
{
    KLPrintOptions options("PageSize=A4");
    options.setValueForKey("Letter", "PageSize");
    expectPageSize(612, 792, options);
}

TEST_F(KLPrintOptionsQueriesTest, FractionsOfAPointAreWidenedAsTheyAre)
{
    usePPD("*PaperDimension Odd/Odd: \"100.25 200.1\"\n"
           "*ImageableArea Odd/Odd: \"0 0 100 200\"\n");
    expectPageSize(100.25, static_cast<double>(200.1F), KLPrintOptions("PageSize=Odd"));
}

TEST_F(KLPrintOptionsQueriesTest, CustomPageSizeIsTheOneAskedFor)
{
    expectPageSize(300, 500, KLPrintOptions("PageSize=Custom.300x500"));
}

TEST_F(KLPrintOptionsQueriesTest, CustomPageSizeWithoutNumbersIsKnownToThePPDAndHasNoExtent)
{
    expectPageSize(0, 0, KLPrintOptions("PageSize=Custom.x"));
}

TEST_F(KLPrintOptionsQueriesTest, PageSizeWithoutValueIsAFixedSheetOnItsSide)
{
    KLPrintOptions options("");
    options.setValueForKey(std::nullopt, "PageSize");
    expectPageSize(842.0, 596.0, options);
}

TEST_F(KLPrintOptionsQueriesTest, UnknownPageSizeIsTheSameFixedSheet)
{
    for (const char *option :
         {"PageSize=NoSuchSize", "PageSize=''", "PageSize=Größe", "PageSize..n.=4"})
        expectPageSize(842.0, 596.0, KLPrintOptions(option));
}

// All of them

TEST_F(KLPrintOptionsQueriesTest, NoQuestionChangesAMark)
{
    KLPrintOptions options("MediaType=Thick InputSlot=Lower");
    const std::string before = marks(options);
    options.setValueForKey("Plain", "MediaType");
    options.setValueForKey("Letter", "PageSize");
    options.codeForMarkedChoiceForPPDOption("MediaType");
    options.codeForPPDOptionWithChoice("InputSlot", "Upper");
    options.convertPJLCodeToPostscriptForMarkedChoiceForPPDOption("MediaType");
    options.postscriptCodeForDefaultDuplexSetting();
    options.pageSize();
    EXPECT_EQ(before, marks(options));
    EXPECT_NE(std::string::npos, before.find('1'));
}
