#include "QueueSettings.h"

#include "MinimalPPD.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

using Model::Choice;
using Model::Field;
using Model::inEnglish;
using Model::Kind;
using Model::kPages;
using Model::Page;
using Model::QueueSettings;
using Model::Secrets;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

namespace {

constexpr char kText[] = "com.kalmira.pde.watermark.text";

/// A marker line for each key, as a driver writer has them who makes no fields.
constexpr char kMarkers[] =
    "*APDialogExtension: \"/usr/lib/Toolkit.bundle\"\n"
    "*JCLOpenUI *PrintMode/Print Mode: PickOne\n*OrderDependency: 10 JCLSetup *PrintMode\n"
    "*DefaultPrintMode: Normal\n"
    "*PrintMode Normal/Normal: \"@PJL COMMENT DSSC PRINT PRINTMODE=NORMAL<0D><0A>\"\n"
    "*PrintMode Private/Private: \"@PJL COMMENT DSSC PRINT PRINTMODE=PRIVATE<0D><0A>\"\n"
    "*JCLCloseUI: *PrintMode\n"
    "*JCLOpenUI *Code/Send Code: Boolean\n*OrderDependency: 20 JCLSetup *Code\n"
    "*DefaultCode: True\n*Code True/Yes: \"@PJL COMMENT DSSC PRINT ACCESSCODE=<0D><0A>\"\n"
    "*Code False/No: \"\"\n*JCLCloseUI: *Code\n"
    "*KLSettingRule Digits: \"com.kalmira.pde.print-mode-ovm.departmentCode 2 4\"\n";

class QueueSettingsTest : public testing::Test {
protected:
    static PPD open(const std::string &path)
    {
        std::string whyNot;
        auto ppd = PPD::open(path, &whyNot);
        EXPECT_TRUE(ppd) << whyNot;
        return std::move(*ppd);
    }

    static QueueSettings sample(const std::string &language = {}, const JobOptions &defaults = {})
    {
        return QueueSettings(open(KL_SAMPLE_PPD), language, defaults);
    }

    QueueSettings minimal(std::string_view extraLines, const JobOptions &defaults = {}) const
    {
        return QueueSettings(open(folder.write("q.ppd", Support::minimalPPD(extraLines))), {},
                             defaults);
    }

    /// The field of that id, wherever it is.
    static std::optional<Field> field(const QueueSettings &settings, std::string_view id)
    {
        for (const Page page : kPages)
            for (Field &one : settings.fields(page))
                if (one.id == id)
                    return std::move(one);
        return std::nullopt;
    }

    static std::vector<std::string> ids(const QueueSettings &settings, Page page)
    {
        std::vector<std::string> ids;
        for (const Field &one : settings.fields(page))
            ids.push_back(one.id);
        return ids;
    }

    /// Why a field has no effect; empty when it has one.
    static std::string whyNot(const QueueSettings &settings, std::string_view id)
    {
        const auto found = field(settings, id);
        return found ? inEnglish(found->whyNot) : "not there";
    }

    static std::string whyNot(const QueueSettings &settings, std::string_view id,
                              std::string_view choice)
    {
        const auto found = field(settings, id);
        const auto at = std::ranges::find(found->choices, choice, &Choice::name);
        return at != found->choices.end() ? inEnglish(at->whyNot) : "not there";
    }

    /// What is said when the value is set; empty when all is well.
    static std::string set(QueueSettings &settings, std::string_view id, std::string_view value)
    {
        const auto words = settings.set(id, value);
        return words ? inEnglish(*words) : "";
    }

    static std::vector<std::string> problems(const QueueSettings &settings)
    {
        std::vector<std::string> problems;
        for (const auto &[id, words] : settings.problems())
            problems.push_back(id + ": " + inEnglish(words));
        return problems;
    }

    Support::TemporaryFolder folder;
};

//
// What there is to set
//

TEST_F(QueueSettingsTest, PagesHaveTheirFieldsInTheOrderOfTheKeys)
{
    EXPECT_THAT(ids(sample(), Page::Identity),
                ElementsAre("DepartmentCode", "KLDepartmentCode", "com.kalmira.username",
                            "com.kalmira.domainname", "UseOpenDirectoryForAuthentication"));
    EXPECT_THAT(ids(sample(), Page::PrivateAndBox),
                ElementsAre("PrintMode", "KLPrivatePIN", "StoreToDocStore", "PrintAsWell",
                            "KLBoxNumber", "KLBoxName", "KLBoxFolder", "KLBoxPassword",
                            "com.kalmira.pde.docstore.boxPasswordEx"));
}

TEST_F(QueueSettingsTest, EveryKeyThatTheQueueCanUseHasAField)
{
    const QueueSettings settings = sample();
    const auto ppd = open(KL_SAMPLE_PPD);
    for (const Model::SettingKey &key : Model::settingKeys()) {
        if (key.key == "com.kalmira.jobname" || key.key == "CoverPagesInPDF")
            continue; // without effect; PDF's
        bool isFed = false;
        for (const PPD::Attribute &line : ppd.attributes("KLSettingSource"))
            isFed |= line.value == key.key && field(settings, line.specifier).has_value();
        EXPECT_TRUE(isFed || field(settings, key.key)) << key.key;
    }
}

TEST_F(QueueSettingsTest, PPDsOwnOptionsStandBesideThem)
{
    EXPECT_THAT(ids(sample(), Page::Printer),
                ElementsAre("com.kalmira.copies", "PageSize", "Duplex", "Collate", "MediaType",
                            "InputSlot", "Staple", "HolePunch"));
    EXPECT_THAT(ids(sample(), Page::Color),
                IsSupersetOf({"DocumentType", "KLColorSettings", "ColorModel", "TonerSave"}));
}

TEST_F(QueueSettingsTest, FieldsSpeakByTheWordsOfThePPDInTheLanguage)
{
    const auto german = field(sample("de_DE"), "KLWatermarkText");
    EXPECT_EQ("Wasserzeichen", german->label.asTheyAre);
    EXPECT_EQ("Wasserzeichen", german->group.asTheyAre);
    EXPECT_EQ("Entwurf", german->choices.at(1).label.asTheyAre);
    EXPECT_EQ("Watermark", field(sample("nl"), "KLWatermarkText")->label.asTheyAre);
    EXPECT_EQ("透かし", field(sample("ja"), "KLWatermarkText")->label.asTheyAre);
}

TEST_F(QueueSettingsTest, FieldsOfKeysSpeakByWordsThatTheWindowTranslates)
{
    const auto matching = field(sample("de"), "com.apple.print.PrintSettings.PMColorMatchingMode");
    EXPECT_EQ("Colour matching, as told by programs", matching->label.text);
    EXPECT_EQ("By the printer", matching->choices.at(1).label.text);
}

TEST_F(QueueSettingsTest, FieldsSayWhatMayBeTyped)
{
    const QueueSettings settings = sample();
    const auto code = field(settings, "KLDepartmentCode");
    EXPECT_EQ(Kind::Choice, code->kind);
    EXPECT_EQ(Kind::Digits, code->typed);
    EXPECT_EQ("Department Code", code->typedLabel.asTheyAre);
    EXPECT_EQ(1, code->limits->from);
    EXPECT_EQ(8, code->limits->to);
    EXPECT_EQ(Kind::Number, field(settings, "KLWatermarkSize")->typed);
    EXPECT_EQ(Kind::Pages, field(settings, "KLWatermarkPages")->typed);
    EXPECT_EQ(std::nullopt, field(settings, "KLWatermarkFont")->typed);
    EXPECT_EQ(Kind::Flag, field(settings, "UseFrontCover")->kind);
}

TEST_F(QueueSettingsTest, PINAndPasswordsAreSecretAndTheCodeIsNot)
{
    std::vector<std::string> secrets;
    for (const Page page : kPages)
        for (const Field &one : sample().fields(page))
            if (one.isSecret)
                secrets.push_back(one.id);
    EXPECT_THAT(secrets, ElementsAre("KLPrivatePIN", "KLBoxPassword",
                                     "com.kalmira.pde.docstore.boxPasswordEx"));
}

TEST_F(QueueSettingsTest, WhatTheQueueHasNoUseForIsNotThere)
{
    const QueueSettings bare = minimal("");
    EXPECT_THAT(ids(bare, Page::Watermark), IsEmpty());
    EXPECT_THAT(ids(bare, Page::PrivateAndBox), IsEmpty());
    EXPECT_THAT(ids(bare, Page::Color), IsEmpty());
    EXPECT_THAT(ids(bare, Page::Printer), ElementsAre("com.kalmira.copies", "PageSize", "Duplex"));
}

TEST_F(QueueSettingsTest, QueueWithoutFieldsHasTheKeysThatItsHeaderAndToolkitNeed)
{
    const QueueSettings settings = minimal(kMarkers);
    EXPECT_THAT(ids(settings, Page::Identity),
                IsSupersetOf({"Code", "com.kalmira.pde.print-mode-ovm.departmentCode"}));
    EXPECT_THAT(ids(settings, Page::Watermark), Contains(kText));
    EXPECT_THAT(ids(settings, Page::Covers), Not(Contains("FrontCoverSource"))); // it has no trays
    EXPECT_EQ(Kind::Digits, field(settings, "com.kalmira.pde.print-mode-ovm.departmentCode")->kind);
}

TEST_F(QueueSettingsTest, QueueThatPinsWhoPrintsHasNoUser)
{
    const QueueSettings settings = minimal(std::string(kMarkers) + "*KLPinnedUser: True\n");
    EXPECT_THAT(ids(settings, Page::Identity),
                ElementsAre("Code", "com.kalmira.pde.print-mode-ovm.departmentCode"));
}

TEST_F(QueueSettingsTest, CoversOfAPDFQueueAreAskedForAndHaveNoTrays)
{
    QueueSettings settings(open(KL_SAMPLE_PDF_PPD));
    EXPECT_THAT(ids(settings, Page::Covers),
                ElementsAre("CoverPagesInPDF", "UseFrontCover", "FrontCoverPrintStyle",
                            "UseBackCover", "BackCoverPrintStyle"));
    EXPECT_EQ("Only with “Covers as Pages of the Job”: Yes", whyNot(settings, "UseFrontCover"));
    settings.set("CoverPagesInPDF", "True");
    EXPECT_EQ("", whyNot(settings, "UseFrontCover"));
}

//
// What excludes what
//

TEST_F(QueueSettingsTest, ChoicesThatThePPDExcludesCannotBeChosenTogether)
{
    QueueSettings settings = sample();
    settings.set("BookletPaperSize", "A3");
    EXPECT_EQ("Not together with “Booklet Sheet Size”: A3",
              whyNot(settings, "Staple", "UpperLeft"));
    EXPECT_EQ("", whyNot(settings, "Staple", "Saddle"));
    EXPECT_EQ("Not together with “Booklet Sheet Size”: A3", set(settings, "Staple", "UpperLeft"));
    EXPECT_EQ("None", settings.value("Staple"));
}

TEST_F(QueueSettingsTest, OfTwoThatExcludeEachOtherTheEarlierCounts)
{
    QueueSettings settings = sample();
    settings.set("Staple", "UpperLeft");
    EXPECT_EQ("Not together with “Stapling”: Upper Left",
              whyNot(settings, "BookletPaperSize", "A3"));
    settings.set("Staple", "None");
    EXPECT_EQ("", set(settings, "BookletPaperSize", "A3"));
}

TEST_F(QueueSettingsTest, PrivateJobIsNotStored)
{
    QueueSettings settings = minimal(kMarkers);
    settings.set("StoreToDocStore", "True");
    EXPECT_EQ("True", settings.value("StoreToDocStore"));
    settings.set("PrintMode", "Private");
    EXPECT_EQ("Not together with “Print Mode”: Private", whyNot(settings, "StoreToDocStore"));
    EXPECT_EQ("False", settings.value("StoreToDocStore"));
    EXPECT_THAT(settings.options(), ElementsAre(std::pair("PrintMode", "Private")));
}

TEST_F(QueueSettingsTest, WhatLosesItsEffectHasItAgainLater)
{
    QueueSettings settings = sample();
    settings.set("StoreToDocStore", "True");
    settings.set("KLBoxName", "Custom.Sales");
    settings.set("StoreToDocStore", "False");
    EXPECT_THAT(settings.options(), IsEmpty());
    EXPECT_EQ("Custom.Sales", settings.value("KLBoxName"));
    settings.set("StoreToDocStore", "True");
    EXPECT_THAT(settings.options(), Contains(std::pair("KLBoxName", "Custom.Sales")));
}

TEST_F(QueueSettingsTest, PINMakesTheJobPrivate)
{
    QueueSettings settings = sample();
    EXPECT_EQ("", set(settings, "KLPrivatePIN", "Custom.0471"));
    EXPECT_EQ("Private", settings.value("PrintMode"));
    EXPECT_EQ("Follows from “PIN for Private Printing”", whyNot(settings, "PrintMode"));
    EXPECT_NE("", whyNot(settings, "StoreToDocStore", "True"));
    settings.set("KLPrivatePIN", "None");
    EXPECT_EQ("Normal", settings.value("PrintMode"));
}

TEST_F(QueueSettingsTest, PINOfAKeyIsForPrivateJobs)
{
    QueueSettings settings = minimal(kMarkers);
    constexpr char kPIN[] = "com.kalmira.pde.print-mode-ovm.privatePassword";
    EXPECT_EQ("Only with “Print Mode”: Private", whyNot(settings, kPIN));
    settings.set("PrintMode", "Private");
    EXPECT_EQ("", set(settings, kPIN, "0471"));
}

TEST_F(QueueSettingsTest, HeaderLineThatIsNotChosenHasNoSettings)
{
    QueueSettings settings = sample();
    EXPECT_EQ("Only with “Document Type”: Advanced (colour profiles)",
              whyNot(settings, "KLColorSettings"));
    settings.set("DocumentType", "Advanced");
    EXPECT_EQ("", set(settings, "KLColorSettings", "Standard"));
    EXPECT_EQ("", set(settings, "KLRGBProfile", "AdobeRGB"));
    EXPECT_THAT(whyNot(settings, "KLCustomizedProfile"), Not(IsEmpty()));
    settings.set("DepartmentCode", "False");
    EXPECT_EQ("Only with “Send Department Code”: When Given", whyNot(settings, "KLDepartmentCode"));
}

TEST_F(QueueSettingsTest, WatermarkIsMadeByItsText)
{
    QueueSettings settings = sample();
    EXPECT_EQ("Only with “Watermark”", whyNot(settings, "KLWatermarkFont"));
    settings.set("KLWatermarkText", "Draft");
    EXPECT_EQ("", whyNot(settings, "KLWatermarkFont"));
    EXPECT_EQ("", whyNot(settings, "KLWatermarkOverprint"));
    settings.set("KLWatermarkOrdering", "Below");
    EXPECT_EQ("Only with “Watermark and Page”: Above the Page Content",
              whyNot(settings, "KLWatermarkOverprint"));
    settings.set("KLWatermarkPlace", "Diagonal");
    EXPECT_EQ("Not together with “Watermark Place”: Along the Diagonal",
              whyNot(settings, "KLWatermarkAngle"));
    EXPECT_EQ("Not together with “Watermark Place”", whyNot(settings, "KLWatermarkX"));
}

TEST_F(QueueSettingsTest, BookletIsAlwaysPrintedOnBothSides)
{
    QueueSettings settings = sample();
    settings.set("Duplex", "DuplexNoTumble");
    settings.set("BookletPaperSize", "A3");
    EXPECT_EQ("Only with “Booklet Sheet Size”: No Booklet", whyNot(settings, "Duplex"));
    EXPECT_THAT(settings.options(), ElementsAre(std::pair("BookletPaperSize", "A3")));
}

TEST_F(QueueSettingsTest, ExtendedPasswordIsForBoxesWithoutTheOther)
{
    QueueSettings settings = sample();
    constexpr char kExtended[] = "com.kalmira.pde.docstore.boxPasswordEx";
    settings.set("StoreToDocStore", "True");
    EXPECT_EQ("", whyNot(settings, kExtended));
    settings.set("KLBoxPassword", "Custom.open");
    EXPECT_EQ("Not together with “Box Password”", whyNot(settings, kExtended));
}

TEST_F(QueueSettingsTest, ConflictOfDefaultsTakesNothingElse)
{
    QueueSettings settings =
        minimal(std::string(kMarkers) + "*UIConstraints: *PageSize A4 *Code True\n"
                                        "*UIConstraints: *Code True *PageSize A4\n");
    EXPECT_EQ("", set(settings, "Duplex", "DuplexTumble"));
    EXPECT_EQ("", set(settings, "PageSize", "Letter"));
}

//
// What is typed
//

TEST_F(QueueSettingsTest, WhatIsTypedIsCheckedAsTheDriverSays)
{
    QueueSettings settings = sample();
    EXPECT_EQ("Must be 1 to 8 digits, and nothing else",
              set(settings, "KLDepartmentCode", "Custom.47x11"));
    EXPECT_EQ("Must be 1 to 8 digits, and nothing else",
              set(settings, "KLDepartmentCode", "Custom.123456789"));
    EXPECT_EQ("", set(settings, "KLDepartmentCode", "Custom.12345678"));
    settings.set("KLWatermarkText", "Draft");
    EXPECT_EQ("Must be a number from 1 to 1000", set(settings, "KLWatermarkSize", "Custom.1001"));
    EXPECT_EQ("Must be a number from -360 to 360",
              set(settings, "KLWatermarkAngle", "Custom.steep"));
    EXPECT_EQ("Must be a list of pages, as 2-5,8,10-",
              set(settings, "KLWatermarkPages", "Custom.5-2"));
    EXPECT_EQ("", set(settings, "KLWatermarkPages", "Custom.2-5,8,10-"));
    EXPECT_EQ("Must not have tabs, line breaks or the like",
              set(settings, "KLWatermarkText", "Custom.a\nb"));
    EXPECT_THAT(problems(settings),
                ElementsAre("KLWatermarkText: Must not have tabs, line breaks or the like",
                            "KLWatermarkSize: Must be a number from 1 to 1000",
                            "KLWatermarkAngle: Must be a number from -360 to 360"));
}

TEST_F(QueueSettingsTest, KeysAreCheckedAsTheFilterAndItsToolkitReadThem)
{
    QueueSettings settings = minimal(kMarkers);
    const auto said = [&](const std::string &key, std::string_view value) {
        return set(settings, "com.kalmira.pde." + key, value);
    };
    EXPECT_EQ("Must be 2 to 4 digits, and nothing else",
              said("print-mode-ovm.departmentCode", "1"));
    EXPECT_EQ("", said("print-mode-ovm.departmentCode", "12"));
    said("watermark.text", "x");
    EXPECT_EQ("Must be a number above 0", said("watermark.size", "0"));
    EXPECT_EQ("", said("watermark.size", "0.5"));
    EXPECT_EQ("Must be a number", said("watermark.angle", "1e3"));
    EXPECT_THAT(said("watermark.color", "2,0,0"), HasSubstr("1, 3 or 4 numbers"));
    EXPECT_EQ("", said("watermark.color", "1,0.5,0"));
    EXPECT_THAT(said("watermark.distance", "-1mm"), HasSubstr("Must be a length"));
    EXPECT_EQ("", said("watermark.distance", "10mm"));
    EXPECT_EQ("There is no such choice", said("watermark.place", "nowhere"));
    EXPECT_EQ("Must be a whole number", set(settings, "com.kalmira.copies", "two"));
    settings.set("BookletPaperSize", "A3");
    EXPECT_EQ("", set(settings, "BookletCreep", "0.1mm"));
    EXPECT_EQ("", set(settings, "BookletCreep", "Off"));
}

TEST_F(QueueSettingsTest, PlaceholdersAreCheckedWhereTheyCount)
{
    QueueSettings settings = minimal(kMarkers);
    EXPECT_EQ("", set(settings, kText, "[draft]"));
    settings.set("com.kalmira.pde.watermark.placeholders", "True");
    EXPECT_THAT(problems(settings), ElementsAre(HasSubstr("Words in brackets must be [user]")));
    EXPECT_EQ("", set(settings, kText, "[user], [page] of [pages] [[sic]]"));
    EXPECT_THAT(problems(settings), IsEmpty());
}

TEST_F(QueueSettingsTest, ProblemIsShownAndNotSent)
{
    QueueSettings settings = sample();
    settings.set("KLDepartmentCode", "Custom.4x");
    EXPECT_EQ("Custom.4x", settings.value("KLDepartmentCode"));
    EXPECT_THAT(settings.options(), IsEmpty());
}

TEST_F(QueueSettingsTest, ValuesOfAnyLengthAreTakenOrRefusedInWords)
{
    QueueSettings settings = sample();
    EXPECT_EQ("Must have 1 to 9999 characters",
              set(settings, "KLWatermarkText", "Custom." + std::string(1000000, 'x')));
    QueueSettings keys = minimal(kMarkers);
    EXPECT_EQ("Is too long", set(keys, kText, std::string(1000000, 'x')));
    EXPECT_EQ("", set(keys, kText, std::string(20000, 'x')));
}

TEST_F(QueueSettingsTest, SizeOfThePageMayBeTypedWhereThePPDHasIt)
{
    QueueSettings settings =
        minimal("*VariablePaperSize: True\n*NonUIOrderDependency: 10 AnySetup *CustomPageSize\n"
                "*CustomPageSize True: \"pop\"\n*ParamCustomPageSize Width: 1 points 36 1000\n"
                "*ParamCustomPageSize Height: 2 points 36 1000\n"
                "*ParamCustomPageSize WidthOffset: 3 points 0 0\n"
                "*ParamCustomPageSize HeightOffset: 4 points 0 0\n"
                "*ParamCustomPageSize Orientation: 5 int 0 0\n");
    EXPECT_EQ("", set(settings, "PageSize", "Custom.100x200mm"));
    EXPECT_THAT(settings.options(), ElementsAre(std::pair("PageSize", "Custom.100x200mm")));
    EXPECT_EQ("Must be a size, as 100x200mm", set(settings, "PageSize", "Custom.wide"));
}

//
// To and from options
//

TEST_F(QueueSettingsTest, OptionsAreWhatDiffersFromTheQueue)
{
    QueueSettings settings = sample();
    EXPECT_THAT(settings.options(), IsEmpty());
    settings.set("KLDepartmentCode", "Custom.0815");
    settings.set("KLWatermarkText", "Custom.Top secret");
    settings.set("KLWatermarkPlace", "TopRight");
    settings.set("com.kalmira.pde.q5.color-profile", "/usr/share/color/my profile.icc");
    settings.set("com.apple.print.PrintSettings.PMColorMatchingMode", "0");
    settings.set("Duplex", "DuplexTumble");
    settings.set("Duplex", "None"); // and back
    EXPECT_THAT(settings.options(),
                ElementsAre(std::pair("KLDepartmentCode", "Custom.0815"),
                            std::pair("KLWatermarkText", "Custom.Top secret"),
                            std::pair("KLWatermarkPlace", "TopRight"),
                            std::pair("com.apple.print.PrintSettings.PMColorMatchingMode..n.", "0"),
                            std::pair("com.kalmira.pde.q5.color-profile",
                                      "file:///usr/share/color/my%20profile.icc")));
}

TEST_F(QueueSettingsTest, LoadedOptionsAreTheSettingsAgain)
{
    QueueSettings settings = sample();
    settings.set("KLPrivatePIN", "Custom.0471");
    settings.set("com.kalmira.copies", "3");
    settings.set("com.kalmira.pde.q5.color-profile", "/p/a b.icc");
    settings.set("KLWatermarkText", "Confidential");
    const JobOptions options = settings.options();
    QueueSettings others = sample();
    others.load(options);
    EXPECT_EQ(options, others.options());
    EXPECT_EQ("Custom.0471", others.value("KLPrivatePIN"));
    EXPECT_EQ("/p/a b.icc", others.value("com.kalmira.pde.q5.color-profile"));
}

TEST_F(QueueSettingsTest, OptionsThatExcludeEachOtherDoNotComeInTogether)
{
    QueueSettings settings = sample();
    settings.load({{"BookletPaperSize", "A3"}, {"Staple", "Left"}});
    EXPECT_EQ("None", settings.value("Staple"));
    EXPECT_THAT(settings.options(), ElementsAre(std::pair("BookletPaperSize", "A3")));
}

TEST_F(QueueSettingsTest, OptionsOfOthersAreKeptApart)
{
    const JobOptions foreign = {{"number-up", "2"}, {"x-vendor", "a b"}};
    QueueSettings settings = sample();
    settings.load(foreign);
    EXPECT_EQ(foreign, settings.options());
    settings.set("Duplex", "DuplexTumble");
    EXPECT_THAT(settings.options(), IsSupersetOf(foreign));
    settings.reset();
    EXPECT_THAT(settings.options(), IsEmpty());
}

TEST_F(QueueSettingsTest, ChoiceThatTheDriverNoLongerHasYieldsToOneThatItHas)
{
    QueueSettings settings = sample();
    settings.load({{"staple", "InTheMiddle"}});
    EXPECT_EQ("None", settings.value("Staple"));
    settings.set("Staple", "Left");
    EXPECT_THAT(settings.options(), ElementsAre(std::pair("Staple", "Left")));
}

TEST_F(QueueSettingsTest, OptionsInOtherWordsShowInTheFieldsAndYieldToThem)
{
    QueueSettings settings = minimal(kMarkers);
    settings.load({{"sides", "two-sided-long-edge"}, {"media", "Letter"}});
    EXPECT_EQ("DuplexNoTumble", settings.value("Duplex"));
    EXPECT_EQ("Letter", settings.value("PageSize"));
    settings.set("Duplex", "None");
    EXPECT_EQ("None", settings.value("Duplex"));
    EXPECT_THAT(settings.options(), ElementsAre(std::pair("media", "Letter")));
}

TEST_F(QueueSettingsTest, KeyThatAFieldFeedsShowsInTheField)
{
    QueueSettings settings = sample();
    settings.load({{kText, "DRAFT"}, {"com.kalmira.pde.watermark.size", "200"}});
    EXPECT_EQ("Draft", settings.value("KLWatermarkText"));
    EXPECT_EQ("Custom.200", settings.value("KLWatermarkSize"));
    EXPECT_THAT(settings.options(), ElementsAre(std::pair("KLWatermarkText", "Draft"),
                                                std::pair("KLWatermarkSize", "Custom.200")));
}

TEST_F(QueueSettingsTest, KeyThatItsFieldHasNoChoiceForStaysAndTheFieldYields)
{
    QueueSettings settings = sample();
    settings.load({{"KLWatermarkText", "Draft"}, {"com.kalmira.pde.watermark.color", "0.1"}});
    EXPECT_THAT(whyNot(settings, "KLWatermarkColor"), HasSubstr("set with another program"));
    EXPECT_THAT(settings.options(), Contains(std::pair("com.kalmira.pde.watermark.color", "0.1")));
}

TEST_F(QueueSettingsTest, QueuesOwnDefaultsAreWhereItBegins)
{
    QueueSettings settings = minimal(kMarkers, {{kText, "COPY"}, {"sides", "two-sided-long-edge"}});
    EXPECT_EQ("COPY", settings.value(kText));
    EXPECT_EQ("DuplexNoTumble", settings.value("Duplex"));
    EXPECT_EQ("", whyNot(settings, "com.kalmira.pde.watermark.font"));
    EXPECT_THAT(settings.options(), IsEmpty());
    settings.set(kText, "");
    EXPECT_THAT(settings.options(), ElementsAre(std::pair(kText, "")));
}

TEST_F(QueueSettingsTest, OverOptionsThatOthersAddItSaysWhatIsToCount)
{
    QueueSettings settings = sample();
    settings.set("Staple", "Left");
    const JobOptions added = {
        {"Duplex", "DuplexTumble"}, {"Staple", "Saddle"}, {"number-up", "2"}, {"PageSize", "A4"}};
    EXPECT_THAT(settings.optionsOver(added),
                ElementsAre(std::pair("Staple", "Left"), std::pair("Duplex", "None")));
}

TEST_F(QueueSettingsTest, SecretsAreLeftOutOrHiddenWhereThatIsAskedFor)
{
    QueueSettings settings = sample();
    EXPECT_FALSE(settings.hasSecrets());
    settings.load({{"job-password", "9876"}});
    settings.set("KLPrivatePIN", "Custom.0471");
    settings.set("KLDepartmentCode", "Custom.0815");
    EXPECT_TRUE(settings.hasSecrets());
    EXPECT_TRUE(settings.isSecret("KLPrivatePIN"));
    EXPECT_FALSE(settings.isSecret("KLDepartmentCode"));
    EXPECT_THAT(settings.options(Secrets::LeftOut),
                Not(Contains(std::pair("KLPrivatePIN", "Custom.0471"))));
    EXPECT_THAT(settings.options(Secrets::Hidden),
                ElementsAre(std::pair("KLDepartmentCode", "Custom.0815"),
                            std::pair("KLPrivatePIN", "Custom.SECRET"),
                            std::pair("job-password", "SECRET")));
}

//
// Input that nobody would give
//

TEST_F(QueueSettingsTest, UnknownFieldsAreNothing)
{
    QueueSettings settings = sample();
    EXPECT_EQ(std::nullopt, settings.set("none", "x"));
    EXPECT_EQ("", settings.value("none"));
    EXPECT_EQ("There is no such choice", set(settings, "Duplex", "Sideways"));
    EXPECT_EQ("There is no such choice", set(settings, "Duplex", "Custom.Sideways"));
    EXPECT_EQ("There is no such choice", set(settings, "UseFrontCover", "yes"));
    QueueSettings keys = minimal(kMarkers);
    EXPECT_EQ("There is no such choice", set(keys, "UseFrontCover", "yes"));
}

TEST_F(QueueSettingsTest, OddOptionsDoNoHarm)
{
    const std::string longText(100000, 'x');
    QueueSettings settings = sample();
    const JobOptions odd = {{"", "x"},
                            {"Duplex", ""},
                            {"PageSize", "Custom."},
                            {"KLBoxName", "{"},
                            {"..n.", "1"},
                            {longText, longText},
                            {"a=b", "\x01\xFF"},
                            {"KLPrivatePIN", "Custom.{}"}};
    settings.load(odd);
    for (const Page page : kPages)
        for (const Field &one : settings.fields(page))
            settings.set(one.id, longText);
    EXPECT_THAT(settings.options(), Contains(std::pair(longText, longText)));
}

TEST_F(QueueSettingsTest, DamagedLinesOfThePPDDoNoHarm)
{
    QueueSettings settings = minimal(std::string(kMarkers) +
                                     "*KLSettingSource PrintMode: \"\"\n*KLSettingSource: \"x\"\n"
                                     "*KLSettingSource PrintMode: \"com.kalmira.username\"\n"
                                     "*KLChoiceSource PrintMode: \"PrintMode\"\n"
                                     "*KLChoiceSource PrintMode: \"PrintMode Private\"\n"
                                     "*KLChoiceSource Code: \"Duplex None Too Many\"\n"
                                     "*KLSettingRule Digits: \"x\"\n*KLSettingValue .: \"\"\n"
                                     "*de.Code True/<zz>a: \"\"\n");
    for (const Page page : kPages)
        for (const Field &one : settings.fields(page))
            for (const Choice &choice : one.choices)
                settings.set(one.id, choice.name);
    EXPECT_THAT(ids(settings, Page::Printer), Contains("Duplex"));
}

TEST_F(QueueSettingsTest, PPDThatHasGoneSpeaksItsOwnWords)
{
    const std::string path = folder.file("gone.ppd");
    std::filesystem::copy_file(KL_SAMPLE_PPD, path);
    PPD ppd = open(path);
    std::filesystem::remove(path);
    const QueueSettings settings(std::move(ppd), "de");
    EXPECT_EQ("Watermark", field(settings, "KLWatermarkText")->label.asTheyAre);
}

} // namespace
