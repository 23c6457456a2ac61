#include "checkPPD.h"

#include "Program.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

using Support::readFile;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// The sample driver's PPD, broken on purpose.
class checkPPDTest : public testing::Test {
protected:
    checkPPDTest() : text(readFile(KL_SAMPLE_PPD)) {}

    /// Takes out all lines that begin so.
    void removeLines(const std::string &begin)
    {
        std::string kept;
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            if (!line.starts_with(begin))
                kept += line + "\n";
        }
        ASSERT_NE(text, kept) << begin;
        text = kept;
    }

    void replace(const std::string &part, const std::string &other)
    {
        const auto place = text.find(part);
        ASSERT_NE(std::string::npos, place) << part;
        text.replace(place, part.size(), other);
    }

    /// Puts the lines in front of the PPD's first group.
    void add(const std::string &lines)
    {
        const auto place = text.find("*OpenGroup");
        ASSERT_NE(std::string::npos, place);
        text.insert(place, lines);
    }

    /// What is wrong, one sentence a mistake.
    std::vector<std::string> mistakes()
    {
        std::string reason;
        const auto ppd = PPD::open(folder.write("broken.ppd", text), &reason);
        if (!ppd)
            return {reason};
        std::vector<std::string> sentences;
        for (const PPDMistake &mistake : checkPPD(*ppd)) {
            EXPECT_NE("", mistake.onPaper);
            EXPECT_NE("", mistake.cure);
            sentences.push_back(mistake.what);
        }
        return sentences;
    }

    Support::TemporaryFolder folder;
    std::string text;
};

} // namespace

TEST_F(checkPPDTest, HasNothingToSayOfTheSampleDriver)
{
    EXPECT_THAT(mistakes(), IsEmpty());
}

// The programs

TEST_F(checkPPDTest, MissesTheFilter)
{
    removeLines("*cupsFilter:");
    EXPECT_THAT(mistakes(), ElementsAre("No line *cupsFilter names jobfilter-chain."));
}

TEST_F(checkPPDTest, HasNothingToSayOfTheFilterAndItsCompanionByThemselves)
{
    replace("0 jobfilter-chain\"", "0 jobfilter\"");
    add("*cupsPreFilter: \"application/vnd.cups-postscript 0 jobfilter-nojcl\"\n");
    EXPECT_THAT(mistakes(), IsEmpty());
}

TEST_F(checkPPDTest, MissesTheCompanion)
{
    replace("0 jobfilter-chain\"", "0 jobfilter\"");
    EXPECT_THAT(mistakes(), ElementsAre("No line *cupsPreFilter names jobfilter-nojcl for "
                                        "application/vnd.cups-postscript."));
}

TEST_F(checkPPDTest, MissesTheCompanionForTheFormatOfTheFilter)
{
    replace("0 jobfilter-chain\"", "0 jobfilter\"");
    add("*cupsPreFilter: \"application/vnd.cups-pdf 0 jobfilter-nojcl\"\n");
    EXPECT_THAT(mistakes(), ElementsAre("No line *cupsPreFilter names jobfilter-nojcl for "
                                        "application/vnd.cups-postscript."));
}

TEST_F(checkPPDTest, MissesTheToolkitsLine)
{
    removeLines("*APDialogExtension:");
    EXPECT_THAT(mistakes(), ElementsAre("There is no line *APDialogExtension."));
}

TEST_F(checkPPDTest, MissesTheToolkitInItsFolder)
{
    removeLines("*APDialogExtension:");
    add("*APDialogExtension: \"" + folder.file("Nothing.bundle") + "\"\n");
    EXPECT_THAT(mistakes(), ElementsAre("*APDialogExtension names no usable toolkit: there is "
                                        "none in " +
                                        folder.file("Nothing.bundle") + "."));
}

TEST_F(checkPPDTest, ObjectsToAToolkitThatTheFilterWouldNotRun)
{
    const std::string bundle = folder.file("Open.bundle");
    ASSERT_EQ(0, mkdir(bundle.c_str(), 0755));
    ASSERT_EQ(0, chmod(folder.write("Open.bundle/toolkit", "#!/bin/sh\n").c_str(), 0777));
    removeLines("*APDialogExtension:");
    add("*APDialogExtension: \"" + bundle + "\"\n");
    EXPECT_THAT(mistakes(),
                ElementsAre(HasSubstr("*APDialogExtension names no usable toolkit: " + bundle)));
}

// The header

TEST_F(checkPPDTest, MissesTheHeadersBegin)
{
    removeLines("*JCLBegin:");
    EXPECT_THAT(mistakes(), ElementsAre("There is no line *JCLBegin."));
}

TEST_F(checkPPDTest, MissesTheMarkerAtTheHeadersBegin)
{
    replace("*JCLBegin: \"<1B>%-12345X@PJL JOB", "*JCLBegin: \"@PJL JOB");
    EXPECT_THAT(mistakes(), ElementsAre("*JCLBegin does not begin with the universal exit marker "
                                        "and @PJL."));
}

TEST_F(checkPPDTest, MissesTheHeadersEnd)
{
    removeLines("*JCLToPSInterpreter:");
    EXPECT_THAT(mistakes(), ElementsAre("There is no line *JCLToPSInterpreter."));
}

TEST_F(checkPPDTest, MissesTheLanguageAtTheHeadersEnd)
{
    replace("@PJL ENTER LANGUAGE = POSTSCRIPT", "@PJL COMMENT PAGES");
    EXPECT_THAT(mistakes(), ElementsAre("*JCLToPSInterpreter does not enter a language."));
}

TEST_F(checkPPDTest, TellsALanguageThatIsNotThePagesOwn)
{
    replace("@PJL ENTER LANGUAGE = POSTSCRIPT", "@PJL ENTER LANGUAGE = PDF");
    EXPECT_THAT(mistakes(), ElementsAre("*JCLToPSInterpreter enters another language than "
                                        "*cupsFilter sends."));
}

TEST_F(checkPPDTest, KnowsThePDFModel)
{
    replace("*cupsFilter: \"application/vnd.cups-postscript",
            "*cupsFilter: \"application/vnd.cups-pdf");
    replace("0 jobfilter-chain\"", "0 jobfilter\"");
    add("*cupsPreFilter: \"application/vnd.cups-pdf 0 jobfilter-nojcl\"\n");
    replace("@PJL ENTER LANGUAGE = POSTSCRIPT", "@PJL ENTER LANGUAGE = PDF");
    EXPECT_THAT(mistakes(), IsEmpty());
}

TEST_F(checkPPDTest, ObjectsToTheCharacterSet)
{
    add("*cupsPJLCharset: \"UTF-8\"\n");
    EXPECT_THAT(mistakes(), ElementsAre("There is a line *cupsPJLCharset."));
}

// The header's lines

TEST_F(checkPPDTest, TellsAMarkerThatIsMisspelt)
{
    replace("PRINT ACCESSCODE=", "PRINT ACESSCODE=");
    EXPECT_THAT(mistakes(), ElementsAre("The code of *DepartmentCode True is almost a marker, and "
                                        "is none."));
}

TEST_F(checkPPDTest, TellsAMarkerWithTwoBlanks)
{
    replace("DSSC PRINT COLLATE=ON", "DSSC  PRINT COLLATE=ON");
    EXPECT_THAT(mistakes(),
                ElementsAre("The code of *Collate True is almost a marker, and is none."));
}

TEST_F(checkPPDTest, TellsAMarkerInSmallLetters)
{
    replace("DSSC PRINT PRINTMODE=HOLD", "dssc PRINT PRINTMODE=HOLD");
    EXPECT_THAT(mistakes(),
                ElementsAre("The code of *PrintMode Hold is almost a marker, and is none."));
}

TEST_F(checkPPDTest, MissesTheMarkerOfUserAndProtection)
{
    while (text.find("PRINTMODE=") != std::string::npos)
        replace("PRINTMODE=", "STAMP=");
    EXPECT_THAT(mistakes(), ElementsAre("No option has the marker PRINTMODE= in its code."));
}

TEST_F(checkPPDTest, MissesALineEnd)
{
    replace("PRINTMODE=HOLD<0D><0A>", "PRINTMODE=HOLD");
    EXPECT_THAT(mistakes(), ElementsAre("The code of *PrintMode Hold does not end with CR LF."));
}

// Typed values and the settings they feed

namespace {

/// A field in that section of the document, its code, and lines behind it.
std::string field(const std::string &section, const std::string &code, const std::string &lines)
{
    return "*JCLOpenUI *Stamp/Stamp: PickOne\n*OrderDependency: 130 " + section +
           " *Stamp\n*DefaultStamp: None\n*Stamp None/None: \"\"\n*JCLCloseUI: *Stamp\n"
           "*CustomStamp True/Text: \"" +
           code + "\"\n*ParamCustomStamp Text/Text: 1 string 0 32\n" + lines;
}

constexpr char kSource[] = "*KLSettingSource Stamp: \"com.kalmira.pde.watermark.text\"\n";

} // namespace

TEST_F(checkPPDTest, HasNothingToSayOfAFieldThatFeedsASetting)
{
    add(field("JCLSetup", "", kSource));
    EXPECT_THAT(mistakes(), IsEmpty());
}

TEST_F(checkPPDTest, ObjectsToTypedValuesInTheHeader)
{
    add(field("JCLSetup", "@PJL COMMENT STAMP=\\1<0D><0A>", kSource));
    EXPECT_THAT(mistakes(), ElementsAre("*CustomStamp has a code."));
}

TEST_F(checkPPDTest, MissesTheSettingOfAField)
{
    add(field("JCLSetup", "", ""));
    EXPECT_THAT(mistakes(), ElementsAre("*Stamp takes typed values and feeds no setting."));
}

TEST_F(checkPPDTest, ObjectsToAFieldInThePageData)
{
    add(field("AnySetup", "", kSource));
    EXPECT_THAT(mistakes(), ElementsAre("*Stamp takes typed values and is not job control."));
}

// In front of the option and behind it libcups finds them.
TEST_F(checkPPDTest, ObjectsToTypedValuesBetweenTheLinesOfTheirOption)
{
    const std::string custom =
        "*CustomStamp True/Text: \"\"\n*ParamCustomStamp Text/Text: 1 string 0 32\n";
    std::string lines = field("JCLSetup", "", kSource);
    lines.erase(lines.find(custom), custom.size());
    add(std::string(lines).insert(lines.find("*Stamp None"), custom));
    EXPECT_THAT(mistakes(), ElementsAre("*CustomStamp stands between the option's lines."));
}

TEST_F(checkPPDTest, TellsLinesOfOursThatHaveNoEffect)
{
    add("*KLSettingValue PrintMode.Loud: \"1\"\n*KLSettingValue PrintMode: \"1\"\n"
        "*KLChoiceSource job-password: \"PrintMode Loud\"\n"
        "*KLSettingRule Digits: \"com.kalmira.pde.print-mode-ovm.departmentCode\"\n");
    EXPECT_THAT(mistakes(),
                ElementsAre("*KLSettingValue PrintMode.Loud: \"1\" names no choice of the PPD.",
                            "*KLSettingValue PrintMode: \"1\" names no choice of the PPD.",
                            "*KLChoiceSource job-password: \"PrintMode Loud\" chooses what the PPD "
                            "does not have.",
                            "*KLSettingRule Digits: "
                            "\"com.kalmira.pde.print-mode-ovm.departmentCode\" is no rule."));
}

TEST_F(checkPPDTest, HasNothingToSayOfLinesOfOursThatHaveAnEffect)
{
    add("*KLSettingSource PrintMode: \"mode\"\n*KLSettingValue PrintMode.Private: \"1\"\n"
        "*KLChoiceSource job-password: \"PrintMode Private\"\n"
        "*KLSettingRule Digits: \"com.kalmira.pde.print-mode-ovm.departmentCode 1 8\"\n");
    EXPECT_THAT(mistakes(), IsEmpty());
}

// Options by name

TEST_F(checkPPDTest, MissesCollationUnderItsName)
{
    while (text.find("Collate") != std::string::npos)
        replace("Collate", "Sorted");
    EXPECT_THAT(mistakes(),
                ElementsAre("There is no option *Collate with the choices True and False."));
}

TEST_F(checkPPDTest, ObjectsToRepeatedPages)
{
    replace("*cupsManualCopies: False", "*cupsManualCopies: True");
    EXPECT_THAT(mistakes(), ElementsAre("*cupsManualCopies is True."));
}

TEST_F(checkPPDTest, ObjectsToStoringOnlyByDefault)
{
    replace("*DefaultPrintAsWell: True", "*DefaultPrintAsWell: False");
    EXPECT_THAT(mistakes(), ElementsAre("*DefaultPrintAsWell is False."));
}

TEST_F(checkPPDTest, TellsOptionsInTheWrongPlace)
{
    replace("JCLSetup *Duplex", "AnySetup *Duplex");
    replace("AnySetup *InputSlot", "JCLSetup *InputSlot");
    replace("JCLSetup *MediaType", "AnySetup *MediaType");
    EXPECT_THAT(mistakes(), ElementsAre("*Duplex is not job control.", "*InputSlot is job control.",
                                        "*MediaType is not job control."));
}

TEST_F(checkPPDTest, MissesThatThereAreNoCommands)
{
    removeLines("*cupsCommands:");
    EXPECT_THAT(mistakes(), ElementsAre("There is no line *cupsCommands: \"none\"."));
}

TEST_F(checkPPDTest, TellsEveryMistake)
{
    replace("0 jobfilter-chain\"", "0 jobfilter\"");
    removeLines("*cupsCommands:");
    replace("PRINT ACCESSCODE=", "PRINT ACESSCODE=");
    EXPECT_THAT(mistakes(), SizeIs(3));
}
