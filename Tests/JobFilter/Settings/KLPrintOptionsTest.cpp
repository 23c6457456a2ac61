#include "KLPrintOptions.h"

#include "QueueTest.h"
#include "Text.h"
#include "ppdLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <sys/stat.h>

using Platform::CaseInsensitiveComparison;
using testing::EndsWith;
using testing::HasSubstr;

namespace {

constexpr char kColorMatching[] = "com.apple.print.PrintSettings.PMColorMatchingMode";

/// A PPD option with the choices A (default), B and C.
constexpr char kTrayOption[] = R"(*OpenUI *Tray/Tray: PickOne
*OrderDependency: 30 AnySetup *Tray
*DefaultTray: A
*Tray A/First: ""
*Tray B/Second: ""
*Tray C/Third: ""
*CloseUI: *Tray
)";

/// A PPD option of which several choices may be marked at once, with the default given.
std::string outputBinOption(const std::string &defaultChoice)
{
    return "*OpenUI *OutputBin/Output: PickMany\n"
           "*OrderDependency: 30 AnySetup *OutputBin\n"
           "*DefaultOutputBin: " +
           defaultChoice +
           "\n"
           "*OutputBin Upper/Upper: \"\"\n"
           "*OutputBin Middle/Middle: \"\"\n"
           "*OutputBin Lower/Lower: \"\"\n"
           "*CloseUI: *OutputBin\n";
}

class KLPrintOptionsTest : public Support::QueueTest {
protected:
    /// The value that the option string leaves under the key.
    std::optional<KLValue> stored(const std::string &optionString, std::string_view key) const
    {
        return KLPrintOptions(optionString).valueForKey(key);
    }

    /// What is said when there is no PPD to be had.
    std::string complaint() const
    {
        try {
            const KLPrintOptions options("");
        } catch (const KLNoPPDError &error) {
            return error.what();
        }
        return "no complaint";
    }
};

} // namespace

// Construction

TEST_F(KLPrintOptionsTest, HoldsTheDefaultsOfThePPD)
{
    usePPD(kTrayOption);
    const KLPrintOptions options("");
    EXPECT_EQ(KLValue("A4"), options.valueForKey("PageSize"));
    EXPECT_EQ(KLValue("None"), options.valueForKey("Duplex"));
    EXPECT_EQ(KLValue("A"), options.valueForKey("Tray"));
}

TEST_F(KLPrintOptionsTest, AnOptionOfTheJobReplacesThePPDsDefault)
{
    const KLPrintOptions options("Duplex=DuplexTumble");
    EXPECT_EQ(KLValue("DuplexTumble"), options.valueForKey("Duplex"));
    EXPECT_TRUE(ppdIsMarked(options.ppd().file(), "Duplex", "DuplexTumble"));
}

TEST_F(KLPrintOptionsTest, AValueThatNamesNoChoiceIsStoredAsSent)
{
    const KLPrintOptions options("Duplex=Sideways");
    EXPECT_EQ(KLValue("Sideways"), options.valueForKey("Duplex"));
    EXPECT_TRUE(ppdIsMarked(options.ppd().file(), "Duplex", "None"));
}

TEST_F(KLPrintOptionsTest, StandardJobOptionsMarkThePPDsOwn)
{
    const KLPrintOptions options("media=Letter sides=two-sided-short-edge");
    EXPECT_EQ(KLValue("Letter"), options.valueForKey("PageSize"));
    EXPECT_EQ(KLValue("DuplexTumble"), options.valueForKey("Duplex"));
    EXPECT_EQ(KLValue("Letter"), options.valueForKey("media"));
}

TEST_F(KLPrintOptionsTest, TheLastMarkedChoiceInPPDOrderStays)
{
    // The standard option marks a second choice without naming the PPD's option itself.
    usePPD(outputBinOption("Upper"));
    EXPECT_EQ(KLValue("Middle"), stored("output-bin=middle", "OutputBin"));
    usePPD(outputBinOption("Lower"));
    EXPECT_EQ(KLValue("Lower"), stored("output-bin=middle", "OutputBin"));
}

TEST_F(KLPrintOptionsTest, OnlyLowerCaseTrueAndFalseChange)
{
    EXPECT_EQ(KLValue("True"), stored("a=true", "a"));
    EXPECT_EQ(KLValue("False"), stored("a=false", "a"));
    for (const char *other : {"TRUE", "yes", "1", "truer", "FALSE"})
        EXPECT_EQ(KLValue(other), stored(std::string("a=") + other, "a")) << other;
}

// libcups marks them so, and the store and the header must agree.
TEST_F(KLPrintOptionsTest, AChoiceInAnyLetterCaseIsStoredAsThePPDSpellsIt)
{
    usePPD("*OpenUI *Tray: PickOne\n*OrderDependency: 30 AnySetup *Tray\n*DefaultTray: Upper\n"
           "*Tray Upper: \"\"\n*Tray UPPER: \"\"\n*Tray tRUE: \"\"\n*Tray false: \"\"\n"
           "*CloseUI: *Tray\n");
    EXPECT_EQ(KLValue("DuplexTumble"), stored("Duplex=duplextumble", "Duplex"));
    EXPECT_EQ(KLValue("Letter"), stored("PageSize=LETTER", "PageSize"));
    EXPECT_EQ(KLValue("Upper"), stored("Tray=upper", "Tray"));
    EXPECT_EQ(KLValue("UPPER"), stored("Tray=UPPER", "Tray")); // exactly so
    EXPECT_EQ(KLValue("tRUE"), stored("Tray=true", "Tray"));
    EXPECT_EQ(KLValue("False"), stored("Tray=FALSE", "Tray")); // "false" becomes "False" as ever
    EXPECT_EQ(KLValue("uppe"), stored("Tray=uppe", "Tray"));
    EXPECT_EQ(KLValue("UPPER "), stored("Tray='UPPER '", "Tray"));
    // What names no option of the PPD has no spelling.
    EXPECT_EQ(KLValue("upper"), stored("Drawer=upper", "Drawer"));
    // The PPD's own keyword holds what was marked, whatever case the job wrote it in.
    const KLPrintOptions options("DUPLEX=duplextumble");
    EXPECT_EQ(KLValue("DuplexTumble"), options.valueForKey("Duplex"));
    EXPECT_EQ(KLValue("DuplexTumble"), options.valueForKey("DUPLEX"));
}

TEST_F(KLPrintOptionsTest, ACustomValueIsStoredAsSent)
{
    usePPD("*CustomJCLNote True: \"@PJL COMMENT \\1\n\"\n*End\n"
           "*ParamCustomJCLNote Text/Text: 1 string 0 99\n"
           "*JCLOpenUI *JCLNote: PickOne\n*OrderDependency: 30 JCLSetup *JCLNote\n"
           "*DefaultJCLNote: None\n*JCLNote None: \"\"\n*JCLCloseUI: *JCLNote\n");
    EXPECT_EQ(KLValue("custom.a\x1B\xFF"), stored("JCLNote=custom.a\x1B\xFF", "JCLNote"));
    EXPECT_EQ(KLValue("{Text=a\x1B}"), stored("JCLNote={Text=a\x1B}", "JCLNote"));
}

TEST_F(KLPrintOptionsTest, ANameAloneIsTrueAndWithNoInFrontFalse)
{
    EXPECT_EQ(KLValue("True"), stored("StoreToDocStore", "StoreToDocStore"));
    EXPECT_EQ(KLValue("False"), stored("noCollate", "Collate"));
}

TEST_F(KLPrintOptionsTest, ARepeatedNameKeepsItsLastValue)
{
    EXPECT_EQ(KLValue("two"), stored("a=one b=x a=two", "a"));
}

TEST_F(KLPrintOptionsTest, QuotedValuesKeepBlanksAndNonASCIILetters)
{
    EXPECT_EQ(KLValue("Entwurf \xC3\xBC"), stored("text='Entwurf \xC3\xBC'", "text"));
    EXPECT_EQ(KLValue("50%n %s %@"), stored("text=\"50%n %s %@\"", "text"));
}

TEST_F(KLPrintOptionsTest, TheIntegerSuffixStoresAnInteger)
{
    const KLPrintOptions options(std::string(kColorMatching) + "..n.=0");
    EXPECT_EQ(KLValue(std::int64_t{0}), options.valueForKey(kColorMatching));
    EXPECT_TRUE(options.valueForKeyIsEqualToNumber(kColorMatching, 0));
    EXPECT_FALSE(options.valueForKeyIsEqualToString(kColorMatching, "0"));
    EXPECT_EQ(std::nullopt, options.valueForKey(std::string(kColorMatching) + "..n."));
}

TEST_F(KLPrintOptionsTest, WithoutTheSuffixANumberIsText)
{
    const KLPrintOptions options(std::string(kColorMatching) + "=0");
    EXPECT_EQ(KLValue("0"), options.valueForKey(kColorMatching));
    EXPECT_FALSE(options.valueForKeyIsEqualToNumber(kColorMatching, 0));
}

TEST_F(KLPrintOptionsTest, AnIntegerIsReadAsFarAsItGoes)
{
    EXPECT_EQ(KLValue(std::int64_t{12}), stored("k..n.=12abc", "k"));
    EXPECT_EQ(KLValue(std::int64_t{0}), stored("k..n.=''", "k"));
    EXPECT_EQ(KLValue(std::int64_t{0}), stored("k..n.=true", "k"));
    EXPECT_EQ(KLValue(std::numeric_limits<std::int64_t>::max()),
              stored("k..n.=99999999999999999999", "k"));
}

TEST_F(KLPrintOptionsTest, TheBooleanSuffixStoresABoolean)
{
    EXPECT_EQ(KLValue(true), stored("k..b.=1", "k"));
    EXPECT_EQ(KLValue(false), stored("k..b.=no", "k"));
    EXPECT_EQ(KLValue(false), stored("k..b.=00", "k"));
    EXPECT_EQ(KLValue(true), stored("k..b.=true", "k"));
}

TEST_F(KLPrintOptionsTest, ASuffixAloneStoresUnderTheEmptyKey)
{
    EXPECT_EQ(KLValue(std::int64_t{7}), stored("..n.=7", ""));
}

TEST_F(KLPrintOptionsTest, ALaterPairReplacesAnEarlierOneOfTheSameKey)
{
    // libcups hands the pairs over sorted by name: "k" comes before "k..n.".
    EXPECT_EQ(KLValue(std::int64_t{2}), stored("k..n.=2 k=one", "k"));
}

// Reading and writing

TEST_F(KLPrintOptionsTest, TextComparesExactlyUnlessToldOtherwise)
{
    const KLPrintOptions options("StoreToDocStore=true");
    EXPECT_FALSE(options.valueForKeyIsEqualToString("StoreToDocStore", "true"));
    EXPECT_TRUE(options.valueForKeyIsEqualToString("StoreToDocStore", "True"));
    EXPECT_TRUE(options.valueForKeyIsEqualToStringOptions("StoreToDocStore", "true",
                                                          CaseInsensitiveComparison));
}

TEST_F(KLPrintOptionsTest, CanonicallyEquivalentTextsAreEqual)
{
    const KLPrintOptions options("box=caf\xC3\xA9");
    EXPECT_TRUE(options.valueForKeyIsEqualToString("box", "cafe\xCC\x81"));
}

TEST_F(KLPrintOptionsTest, ABooleanCountsAsZeroOrOne)
{
    const KLPrintOptions options("yes..b.=1 no..b.=0");
    EXPECT_TRUE(options.valueForKeyIsEqualToNumber("yes", 1));
    EXPECT_TRUE(options.valueForKeyIsEqualToNumber("no", 0));
    EXPECT_FALSE(options.valueForKeyIsEqualToNumber("yes", 0));
    EXPECT_FALSE(options.valueForKeyIsEqualToString("yes", "1"));
}

TEST_F(KLPrintOptionsTest, AnUnknownKeyEqualsNothing)
{
    const KLPrintOptions options("");
    EXPECT_EQ(std::nullopt, options.valueForKey("missing"));
    EXPECT_FALSE(options.valueForKeyIsEqualToString("missing", ""));
    EXPECT_FALSE(options.valueForKeyIsEqualToStringOptions("missing", "", 1));
    EXPECT_FALSE(options.valueForKeyIsEqualToNumber("missing", 0));
}

TEST_F(KLPrintOptionsTest, KeysAreCaseSensitive)
{
    EXPECT_EQ(std::nullopt, stored("Tray=A", "tray"));
}

TEST_F(KLPrintOptionsTest, ADefaultIsGivenButNotStored)
{
    const KLPrintOptions options("");
    EXPECT_EQ(KLValue("1"), options.valueForKeyWithDefault("copies", "1"));
    EXPECT_EQ(std::nullopt, options.valueForKeyWithDefault("copies", std::nullopt));
    EXPECT_EQ(std::nullopt, options.valueForKey("copies"));
}

TEST_F(KLPrintOptionsTest, AStoredValueComesBeforeTheDefault)
{
    EXPECT_EQ(KLValue(""), KLPrintOptions("a=''").valueForKeyWithDefault("a", "x"));
}

TEST_F(KLPrintOptionsTest, SettingReplacesAndSettingNothingRemoves)
{
    KLPrintOptions options("a=one");
    options.setValueForKey(KLValue("two"), "a");
    EXPECT_EQ(KLValue("two"), options.valueForKey("a"));
    options.setValueForKey(std::nullopt, "a");
    EXPECT_EQ(KLValue("default"), options.valueForKeyWithDefault("a", "default"));
    options.setValueForKey(std::nullopt, "never there");
}

TEST_F(KLPrintOptionsTest, ADefaultFillsOnlyAKeyWithoutAnyEntry)
{
    KLPrintOptions options("empty='' number..n.=0");
    options.setDefaultValueForKey("x", "empty");
    options.setDefaultValueForKey("x", "number");
    options.setDefaultValueForKey("x", "absent");
    options.setDefaultValueForKey("y", "absent");
    EXPECT_EQ(KLValue(""), options.valueForKey("empty"));
    EXPECT_EQ(KLValue(std::int64_t{0}), options.valueForKey("number"));
    EXPECT_EQ(KLValue("x"), options.valueForKey("absent"));
}

// Without a usable PPD

TEST_F(KLPrintOptionsTest, AMissingPPDIsNamedWithTheReason)
{
    const Support::ScopedEnvironment missing("PPD", folder.file("missing.ppd"));
    EXPECT_EQ("Unable to open PPD file " + folder.file("missing.ppd") +
                  ": No such file or directory",
              complaint());
}

TEST_F(KLPrintOptionsTest, AnUnsetPPDIsSaidToBeUnset)
{
    const Support::ScopedEnvironment unset("PPD", std::nullopt);
    EXPECT_THAT(complaint(), HasSubstr("environment variable PPD is not set"));
}

TEST_F(KLPrintOptionsTest, WhatIsNoRegularFileIsNotRead)
{
    ASSERT_EQ(0, mkfifo(folder.file("fifo").c_str(), 0600));
    for (const std::string &path : {folder.path(), folder.file("fifo"), std::string("/dev/zero")}) {
        const Support::ScopedEnvironment odd("PPD", path);
        EXPECT_THAT(complaint(), EndsWith("not a regular file")) << path;
    }
}

TEST_F(KLPrintOptionsTest, ADamagedPPDIsRefusedWithTheLine)
{
    folder.write("queue.ppd", "");
    EXPECT_THAT(complaint(), HasSubstr("Unable to open PPD file " + folder.file("queue.ppd")));
    folder.write("queue.ppd", "%!PS-Adobe-3.0\n" + Support::minimalPPD());
    EXPECT_THAT(complaint(), EndsWith("on line 1"));
    folder.write("queue.ppd", std::string(1000, '\0'));
    EXPECT_THAT(complaint(), HasSubstr("Unable to open PPD file"));
}

TEST_F(KLPrintOptionsTest, AHugePPDIsRefused)
{
    folder.write("queue.ppd", Support::minimalPPD() + std::string((16U << 20) + 1, '\n'));
    EXPECT_THAT(complaint(), EndsWith("larger than 16 MiB"));
}

TEST_F(KLPrintOptionsTest, EveryTruncationOfAPPDIsReadOrRefused)
{
    usePPD(kTrayOption);
    const std::string whole = Support::readFile(folder.file("queue.ppd"));
    int refused = 0;
    for (std::size_t length = 0; length < whole.size(); length += 7) {
        folder.write("queue.ppd", whole.substr(0, length));
        refused += complaint() != "no complaint" ? 1 : 0;
    }
    EXPECT_GT(refused, 0);
}

// Option strings from hell

TEST_F(KLPrintOptionsTest, AnUnclosedQuoteEndsWithTheString)
{
    EXPECT_EQ(KLValue("one two"), stored("a='one two", "a"));
}

TEST_F(KLPrintOptionsTest, TenThousandOptionsAreAllThere)
{
    std::string optionString;
    for (int number = 0; number < 10000; ++number)
        optionString += "k" + std::to_string(number) + "=" + std::to_string(number) + " ";
    const KLPrintOptions options(optionString);
    EXPECT_EQ(KLValue("0"), options.valueForKey("k0"));
    EXPECT_EQ(KLValue("9999"), options.valueForKey("k9999"));
}

TEST_F(KLPrintOptionsTest, AValueOfAMegabyteIsKept)
{
    const std::string large(std::size_t{1} << 20, 'x');
    EXPECT_EQ(KLValue(large), stored("a=" + large, "a"));
}

TEST_F(KLPrintOptionsTest, BytesThatAreNotUTF8AndControlCharactersAreKept)
{
    EXPECT_EQ(KLValue("\xFF\x01\x1B"), stored("a='\xFF\x01\x1B'", "a"));
}
