#include "PPD.h"

#include "MinimalPPD.h"
#include "Program.h"
#include "TemporaryFolder.h"
#include "ppdLibrary.h"

#include <filesystem>
#include <gmock/gmock.h>

#include <algorithm>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

class PPDTest : public testing::Test {
protected:
    /// What is said about a file that is no PPD; "opened" for one that is.
    static std::string whyNot(const std::string &path)
    {
        std::string reason = "untouched";
        return PPD::open(path, &reason) ? "opened" : reason;
    }

    Support::TemporaryFolder folder;
};

} // namespace

TEST_F(PPDTest, OpensAPPDWithoutMarkingAnything)
{
    std::string reason;
    const auto ppd = PPD::open(folder.write("ppd", Support::minimalPPD()), &reason);
    ASSERT_TRUE(ppd);
    EXPECT_STREQ("A4", ppdFindOption(ppd->file(), "PageSize")->defchoice);
    EXPECT_EQ(nullptr, ppdFindMarkedChoice(ppd->file(), "PageSize"));
}

TEST_F(PPDTest, ReadsWhatIsLongerThanItsBuffersToTheEnd)
{
    std::string comments;
    while (comments.size() < 100000)
        comments += "*% " + std::string(70, '-') + "\n";
    EXPECT_EQ("opened", whyNot(folder.write("ppd", Support::minimalPPD(comments))));
}

TEST_F(PPDTest, OpensACompressedPPD)
{
    const std::string path = folder.write("queue.ppd", Support::minimalPPD());
    ASSERT_EQ(0, Support::runProgram({.arguments = {"gzip", path}}).exitStatus);
    EXPECT_EQ("opened", whyNot(path + ".gz"));
}

TEST_F(PPDTest, SaysWhyNot)
{
    EXPECT_EQ("No such file or directory", whyNot(folder.file("missing")));
    EXPECT_EQ("No such file or directory", whyNot(""));
    EXPECT_EQ("not a regular file", whyNot(folder.path()));
    EXPECT_EQ("not a regular file", whyNot("/dev/zero"));
    ASSERT_EQ(0, mkfifo(folder.file("fifo").c_str(), 0600));
    EXPECT_EQ("not a regular file", whyNot(folder.file("fifo")));
    EXPECT_THAT(whyNot(folder.write("text", "no PPD\n")), testing::HasSubstr(" on line "));
    const std::string large = folder.write("large", Support::minimalPPD());
    fs::resize_file(large, (16U << 20) + 1);
    EXPECT_EQ("larger than 16 MiB", whyNot(large));
}

// Asking it

namespace {

constexpr char kPaper[] = R"PPD(*JCLOpenUI *JCLPaper/Paper: PickOne
*OrderDependency: 30 JCLSetup *JCLPaper
*DefaultJCLPaper: Thin
*JCLPaper Thin/Thin: "@PJL SET PAPER=THIN<0A>"
*JCLPaper Thick/Thick: "@PJL SET PAPER=THICK<0A>"
*JCLPaper Bare/Bare: ""
*JCLCloseUI: *JCLPaper
*CustomJCLNote True: "@PJL COMMENT \1, \2, \3
"
*End
*ParamCustomJCLNote Text/Text: 1 string 0 99
*ParamCustomJCLNote Code/Code: 2 passcode 0 99
*ParamCustomJCLNote Width/Width: 3 int 0 99
*JCLOpenUI *JCLNote/Note: PickOne
*OrderDependency: 40 JCLSetup *JCLNote
*DefaultJCLNote: None
*JCLNote None/None: ""
*JCLCloseUI: *JCLNote
*NonUIOrderDependency: 41 JCLSetup *CustomRemark True
*OpenUI *Remark/Remark: PickOne
*OrderDependency: 41 AnySetup *Remark
*DefaultRemark: None
*Remark None/None: ""
*Remark NONE/None in capitals: ""
*CloseUI: *Remark
*CustomRemark True: "@PJL COMMENT \1
"
*End
*ParamCustomRemark Text/Text: 1 string 0 99
*Bundle: "/usr/lib/bundle"
*Bundle: "/usr/lib/another"
)PPD";

class AskedPPDTest : public testing::Test {
protected:
    AskedPPDTest()
    {
        std::string reason;
        ppd = PPD::open(folder.write("ppd", Support::minimalPPD(kPaper)), &reason);
    }

    /// The header for the marked choices.
    std::string header(const std::string &user = "u", const std::string &title = "t") const
    {
        const std::string path = folder.file("header");
        FILE *file = std::fopen(path.c_str(), "w");
        ppd->emitJobControl(file, 1, user, title);
        std::fclose(file);
        return Support::readFile(path);
    }

    Support::TemporaryFolder folder;
    std::optional<PPD> ppd;
};

} // namespace

TEST_F(AskedPPDTest, MarksWhatTheJobNamesInPlaceOfTheDefault)
{
    ppd->markDefaults();
    EXPECT_EQ("@PJL SET PAPER=THIN\n", ppd->codeOfMarkedChoice("JCLPaper"));
    ppd->mark({{"JCLPaper", "Thick"}});
    EXPECT_EQ("@PJL SET PAPER=THICK\n", ppd->codeOfMarkedChoice("JCLPaper"));
    ppd->mark("JCLPaper", "Bare");
    EXPECT_EQ("", ppd->codeOfMarkedChoice("JCLPaper"));
}

TEST_F(AskedPPDTest, MarksNothingForWhatItDoesNotHave)
{
    ppd->markDefaults();
    const auto before = ppd->markedChoices();
    ppd->mark("JCLPaper", "Wet");
    ppd->mark("Smell", "Strong");
    ppd->mark(JobOptions());
    EXPECT_EQ(before, ppd->markedChoices());
}

// Each could end a line of the header, or PJL.
TEST_F(AskedPPDTest, BlanksControlCharactersInCustomTexts)
{
    const std::string evil = "a\r\n\t\x1B%-12345X\x7F";
    ppd->mark({{"JCLNote", "{Text=\"" + evil + "\" Code='1\n2' Width=7}"}});
    EXPECT_THAT(header(), testing::HasSubstr("@PJL COMMENT a    %-12345X , 1 2, 7\n"));
    ppd->mark({{"JCLNote", "Custom." + evil}});
    EXPECT_THAT(header(), testing::HasSubstr("@PJL COMMENT a    %-12345X , 1 2, 7\n"));
    ppd->mark({{"JCLNote", "None"}, {"Remark", "Custom." + evil}});
    EXPECT_THAT(header(), testing::HasSubstr("@PJL COMMENT a    %-12345X \n"));
    // All else stays as it is.
    ppd->mark({{"Remark", "Custom.100% \"\\ \xC3\xA4\xFF"}});
    EXPECT_THAT(header(), testing::HasSubstr("@PJL COMMENT 100% \"\\ \xC3\xA4\xFF\n"));
}

TEST_F(AskedPPDTest, SpellsOptionsInAnyLetterCase)
{
    EXPECT_EQ("JCLPaper", ppd->optionAsSpelt("JCLPaper"));
    EXPECT_EQ("JCLPaper", ppd->optionAsSpelt("jclPAPER"));
    EXPECT_EQ(std::nullopt, ppd->optionAsSpelt("Smell"));
}

TEST_F(AskedPPDTest, SpellsChoicesInAnyLetterCase)
{
    EXPECT_EQ("Thick", ppd->choiceAsSpelt("JCLPaper", "Thick"));
    EXPECT_EQ("Thick", ppd->choiceAsSpelt("JCLPaper", "tHICK"));
    EXPECT_EQ("Thick", ppd->choiceAsSpelt("jclpaper", "thick"));
    EXPECT_EQ("NONE", ppd->choiceAsSpelt("Remark", "NONE"));
    EXPECT_EQ("None", ppd->choiceAsSpelt("Remark", "none"));
    EXPECT_EQ("Custom", ppd->choiceAsSpelt("Remark", "custom"));
    for (const char *other : {"", "Thic", "Thicker", "custom.x", "{a=b}"})
        EXPECT_EQ(std::nullopt, ppd->choiceAsSpelt("JCLPaper", other)) << other;
    EXPECT_EQ(std::nullopt, ppd->choiceAsSpelt("Remark", "{Text=a}"));
    EXPECT_EQ(std::nullopt, ppd->choiceAsSpelt("Smell", "Thick"));
}

TEST_F(AskedPPDTest, TellsWhatTheHeaderEndsWith)
{
    EXPECT_EQ("@PJL ENTER LANGUAGE = POSTSCRIPT\r\n", ppd->headerEnd());
    std::string reason;
    const std::string bare = "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n";
    EXPECT_EQ(std::nullopt, PPD::open(folder.write("bare", bare), &reason)->headerEnd());
}

TEST_F(AskedPPDTest, GivesACodeForItsOwnOptionsAndChoicesOnly)
{
    EXPECT_EQ("@PJL SET PAPER=THICK\n", ppd->code("JCLPaper", "Thick"));
    EXPECT_EQ("@PJL SET PAPER=THICK\n", ppd->code("jclpaper", "THICK"));
    EXPECT_EQ("", ppd->code("JCLPaper", "Bare"));
    EXPECT_EQ(std::nullopt, ppd->code("JCLPaper", "Wet"));
    EXPECT_EQ(std::nullopt, ppd->code("Smell", "Strong"));
    EXPECT_EQ(std::nullopt, ppd->codeOfMarkedChoice("JCLPaper")); // nothing is marked yet
}

TEST_F(AskedPPDTest, TellsJobControlFromPageDescription)
{
    EXPECT_TRUE(ppd->isJobControl("JCLPaper"));
    EXPECT_FALSE(ppd->isJobControl("Duplex"));
    EXPECT_FALSE(ppd->isJobControl("Smell"));
    EXPECT_TRUE(ppd->hasOption("Duplex"));
    EXPECT_FALSE(ppd->hasOption("Smell"));
    EXPECT_TRUE(ppd->hasChoice("Duplex", "None"));
    EXPECT_FALSE(ppd->hasChoice("Duplex", "Always"));
}

TEST_F(AskedPPDTest, GivesTheFirstAttributeOfAName)
{
    EXPECT_EQ("/usr/lib/bundle", ppd->attribute("Bundle"));
    EXPECT_EQ(std::nullopt, ppd->attribute("Parcel"));
}

TEST_F(AskedPPDTest, KnowsPageSizesByNameAndTheMarkedOne)
{
    ASSERT_TRUE(ppd->pageSize("Letter"));
    EXPECT_EQ(612, ppd->pageSize("Letter")->width);
    EXPECT_EQ(792, ppd->pageSize("Letter")->height);
    EXPECT_FALSE(ppd->pageSize("Napkin"));
    EXPECT_FALSE(ppd->markedPageSize());
    ppd->markDefaults();
    ASSERT_TRUE(ppd->markedPageSize());
    EXPECT_EQ(842, ppd->markedPageSize()->height);
}

TEST_F(AskedPPDTest, WritesTheHeaderOfTheMarkedChoices)
{
    ppd->mark("JCLPaper", "Thick");
    EXPECT_THAT(header(),
                testing::AllOf(testing::StartsWith(
                                   "\x1b%-12345X@PJL\n@PJL JOB NAME = \"t\" DISPLAY = \"1 u t\"\n"),
                               testing::HasSubstr("@PJL SET PAPER=THICK\n"),
                               testing::EndsWith("@PJL ENTER LANGUAGE = POSTSCRIPT\r\n")));
}

//
// What dialogs show
//

namespace {

constexpr char kDialog[] =
    "*OpenGroup: Paper/Paper and Sides\n"
    "*OpenUI *Tray/Paper Source: PickOne\n*OrderDependency: 10 AnySetup *Tray\n"
    "*DefaultTray: One\n*Tray One/Tray 1: \"\"\n*Tray Two: \"\"\n*Tray Bad/K\xF6ln: \"\"\n"
    "*CloseUI: *Tray\n*CloseGroup: Paper\n"
    "*OpenUI *Staple/Stapling: Boolean\n*OrderDependency: 10 AnySetup *Staple\n"
    "*DefaultStaple: False\n*Staple True/Yes: \"\"\n*Staple False/No: \"\"\n*CloseUI: *Staple\n"
    "*JCLOpenUI *Code/Code: PickOne\n*OrderDependency: 10 JCLSetup *Code\n"
    "*DefaultCode: None\n*Code None/None: \"\"\n*JCLCloseUI: *Code\n"
    "*CustomCode True: \"\"\n*ParamCustomCode PIN/Your Code: 1 passcode 1 8\n"
    "*UIConstraints: *Tray Two *Staple True\n*UIConstraints: *Staple True *Tray Two\n"
    "*UIConstraints: *Code *Tray Two\n"
    "*de.Translation Paper/Papier und Seiten: \"\"\n*de.Translation Tray/Fach: \"\"\n"
    "*de.Tray One/Fach 1: \"\"\n*de.ParamCustomCode PIN/Ihr Code: \"\"\n";

class ShownPPDTest : public PPDTest {
protected:
    void SetUp() override
    {
        std::string reason;
        ppd = PPD::open(folder.write("ppd", Support::minimalPPD(kDialog)), &reason);
        ASSERT_TRUE(ppd) << reason;
    }

    PPD::ShownOption shown(const std::string &keyword, const std::string &language = {}) const
    {
        const auto all = ppd->shownOptions(language);
        const auto found = std::ranges::find(all, keyword, &PPD::ShownOption::keyword);
        return found != all.end() ? *found : PPD::ShownOption{};
    }

    std::optional<PPD> ppd;
};

} // namespace

TEST_F(ShownPPDTest, ShowsOptionsInItsOwnWords)
{
    const PPD::ShownOption tray = shown("Tray");
    EXPECT_EQ("Paper Source", tray.words);
    EXPECT_EQ("Paper", tray.group);
    EXPECT_EQ("Paper and Sides", tray.groupWords);
    EXPECT_FALSE(tray.isFlag);
    EXPECT_FALSE(tray.typing);
    ASSERT_EQ(3U, tray.choices.size());
    EXPECT_EQ("Tray 1", tray.choices[0].words);
    EXPECT_EQ("Two", tray.choices[1].words); // it has none: its name
    EXPECT_EQ("K?ln", tray.choices[2].words);
    EXPECT_TRUE(shown("Staple").isFlag);
    EXPECT_EQ("", shown("PageRegion").keyword);
}

TEST_F(ShownPPDTest, ShowsOptionsInAnotherLanguageWhereItHasIt)
{
    const PPD::ShownOption tray = shown("Tray", "de_AT");
    EXPECT_EQ("Fach", tray.words);
    EXPECT_EQ("Papier und Seiten", tray.groupWords);
    EXPECT_EQ("Fach 1", tray.choices[0].words);
    EXPECT_EQ("Two", tray.choices[1].words);
    EXPECT_EQ("Stapling", shown("Staple", "de_AT").words);
}

TEST_F(ShownPPDTest, ShowsWhatMayBeTypedAndNotItsChoice)
{
    const PPD::ShownOption code = shown("Code", "de");
    ASSERT_EQ(1U, code.choices.size());
    EXPECT_EQ("None", code.choices[0].name);
    ASSERT_TRUE(code.typing);
    EXPECT_EQ("Ihr Code", code.typing->words);
    EXPECT_TRUE(code.typing->isHidden);
    EXPECT_TRUE(code.typing->isAlone);
    EXPECT_FALSE(code.typing->isLength);
}

TEST_F(ShownPPDTest, KnowsWhatAChoiceIsInConflictWith)
{
    using Choices = std::vector<std::pair<std::string, std::string>>;
    ppd->markDefaults();
    EXPECT_EQ(Choices(), ppd->conflictsOf("Tray", "Two"));
    ppd->mark("Staple", "True");
    EXPECT_EQ((Choices{{"Staple", "True"}}), ppd->conflictsOf("Tray", "Two"));
    EXPECT_EQ(Choices(), ppd->conflictsOf("Tray", "Bad"));
    EXPECT_EQ(Choices(), ppd->conflictsOf("Smell", "Strong"));
}

TEST_F(ShownPPDTest, KnowsWhatATypedValueIsInConflictWith)
{
    using Choices = std::vector<std::pair<std::string, std::string>>;
    ppd->markDefaults();
    ppd->mark("Tray", "Two");
    EXPECT_EQ((Choices{{"Tray", "Two"}}), ppd->conflictsOf("Code", "Custom.12"));
    EXPECT_EQ(Choices(), ppd->conflictsOf("Code", "None"));
}

TEST_F(ShownPPDTest, ConflictThatIsThereAlreadyKeepsNothingFromBeingChosen)
{
    using Choices = std::vector<std::pair<std::string, std::string>>;
    ppd->markDefaults();
    ppd->mark("Tray", "Two");
    ppd->mark("Staple", "True");
    EXPECT_EQ(Choices(), ppd->conflictsOf("Duplex", "DuplexTumble"));
    EXPECT_EQ(Choices(), ppd->conflictsOf("Staple", "True"));
}

TEST_F(ShownPPDTest, MarksOptionsInAnyOrder)
{
    ppd->markDefaults();
    ppd->mark({{"sides", "two-sided-long-edge"}, {"media", "Letter"}});
    EXPECT_EQ("Letter", ppd->markedChoice("PageSize"));
    EXPECT_EQ("DuplexNoTumble", ppd->markedChoice("Duplex"));
}

TEST(ParsedOptionsTest, FollowTheSyntaxOfTheScheduler)
{
    const JobOptions expected = {{"a", "1"}, {"b", "two words"}, {"c", "true"}, {"d", "false"}};
    EXPECT_THAT(parsedOptions("a=0 b='two words' c nod a=1"),
                testing::UnorderedElementsAreArray(expected));
    EXPECT_THAT(parsedOptions(""), testing::IsEmpty());
}
