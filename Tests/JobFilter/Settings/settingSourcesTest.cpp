#include "settingSources.h"

#include "KLPrintOptions.h"
#include "QueueTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

/// A field for a code and one for a mark with a colour, and the lines by which they feed settings.
constexpr char kFields[] = R"PPD(*JCLOpenUI *KLCode/Code: PickOne
*OrderDependency: 30 JCLSetup *KLCode
*DefaultKLCode: None
*KLCode None/No Code: ""
*JCLCloseUI: *KLCode
*CustomKLCode True: ""
*ParamCustomKLCode Code/Code: 1 passcode 1 8
*JCLOpenUI *KLMark/Mark: PickOne
*OrderDependency: 31 JCLSetup *KLMark
*DefaultKLMark: None
*KLMark None/Nichts: ""
*KLMark Draft/Entwurf: ""
*KLMark Secret/Geheim: ""
*JCLCloseUI: *KLMark
*CustomKLMark True: ""
*ParamCustomKLMark Text/Text: 1 string 1 64
*JCLOpenUI *KLSize/Size: PickOne
*OrderDependency: 32 JCLSetup *KLSize
*DefaultKLSize: Large
*KLSize Large/Large: ""
*JCLCloseUI: *KLSize
*CustomKLSize True: ""
*ParamCustomKLSize Size/Size: 1 real 6 200
*KLSettingSource KLCode: "code"
*KLSettingSource job-account-id: "code"
*KLSettingSource KLMark: "text"
*KLSettingSource KLSize: "size"
*KLSettingValue KLMark.Secret: "TOP SECRET"
*KLSettingValue KLSize.Large: "72"
)PPD";

class settingSourcesTest : public Support::QueueTest {
protected:
    settingSourcesTest() { usePPD(kFields); }

    /// What the sources feed for a job with that option string.
    static JobOptions fed(const std::string &optionString)
    {
        return fedSettings(KLPrintOptions(optionString).ppd(), parsedOptions(optionString));
    }

    static std::optional<KLValue> stored(const std::string &optionString, const std::string &key)
    {
        return KLPrintOptions(optionString).valueForKey(key);
    }
};

} // namespace

// fedSettings

TEST_F(settingSourcesTest, NoneSaysNothingAndAnotherDefaultDoes)
{
    EXPECT_THAT(fed(""), ElementsAre(Pair("size", "72")));
}

TEST_F(settingSourcesTest, AChoiceSaysItsValueOrElseItsNameNeverItsTranslation)
{
    EXPECT_THAT(fed("KLMark=Draft"), ElementsAre(Pair("text", "Draft"), Pair("size", "72")));
    EXPECT_THAT(fed("KLMark=Secret"), ElementsAre(Pair("text", "TOP SECRET"), Pair("size", "72")));
}

TEST_F(settingSourcesTest, WhatAChoiceSaysCanBeAskedFor)
{
    const KLPrintOptions options("");
    EXPECT_EQ("TOP SECRET", valueOfChoice(options.ppd(), "KLMark", "Secret"));
    EXPECT_EQ("Draft", valueOfChoice(options.ppd(), "KLMark", "Draft"));
}

TEST_F(settingSourcesTest, ACustomChoiceSaysWhatWasTyped)
{
    EXPECT_EQ(KLValue("4711"), stored("KLCode=Custom.4711", "code"));
    EXPECT_EQ(KLValue("4711"), stored("KLCode='{Code=4711}'", "code"));
    EXPECT_EQ(KLValue("Top 'secret' \"x\""),
              stored(R"(KLMark=Custom.Top\ \'secret\'\ \"x\")", "text"));
    EXPECT_EQ(KLValue("Top secret"), stored("KLMark={Text='Top secret'}", "text"));
}

TEST_F(settingSourcesTest, ANumberIsSaidInItsShortestForm)
{
    EXPECT_EQ(KLValue("36"), stored("KLSize=Custom.36", "size"));
    EXPECT_EQ(KLValue("36"), stored("KLSize=Custom.36.0", "size"));
    EXPECT_EQ(KLValue("36.5"), stored("KLSize=Custom.36.5", "size"));
}

TEST_F(settingSourcesTest, ATypedDefaultOfTheQueueCounts)
{
    std::string lines = kFields;
    lines.replace(lines.find("*DefaultKLCode: None"), 20, "*DefaultKLCode: Custom.9999");
    usePPD(lines);
    EXPECT_EQ(KLValue("9999"), stored("", "code"));
    EXPECT_EQ(KLValue("1"), stored("KLCode=Custom.1", "code"));
    EXPECT_EQ(std::nullopt, stored("KLCode=None", "code"));
}

TEST_F(settingSourcesTest, AnAttributeSaysItsValue)
{
    EXPECT_EQ(KLValue("0815"), stored("job-account-id=0815", "code"));
    EXPECT_EQ(std::nullopt, stored("job-account-id=", "code"));
}

TEST_F(settingSourcesTest, TheFirstSourceThatSaysSomethingIsHeard)
{
    EXPECT_EQ(KLValue("4711"), stored("job-account-id=0815 KLCode=Custom.4711", "code"));
    EXPECT_EQ(KLValue("0815"), stored("job-account-id=0815 KLCode=None", "code"));
}

TEST_F(settingSourcesTest, TheJobsOwnKeyWinsEmptyOrNot)
{
    EXPECT_EQ(KLValue("5"), stored("KLCode=Custom.4711 code=5", "code"));
    EXPECT_EQ(KLValue(""), stored("KLCode=Custom.4711 code=", "code"));
    EXPECT_EQ(KLValue(std::int64_t{5}), stored("KLCode=Custom.4711 code..n.=5", "code"));
    EXPECT_EQ(KLValue(true), stored("KLCode=Custom.4711 code..b.=yes", "code"));
}

TEST_F(settingSourcesTest, APPDWithoutSuchLinesFeedsNothing)
{
    usePPD("");
    EXPECT_THAT(fed("KLCode=Custom.4711 job-account-id=0815"), IsEmpty());
}

TEST_F(settingSourcesTest, ASourceThatNobodyHasSaysNothing)
{
    usePPD("*KLSettingSource NoSuchOption: \"code\"\n*KLSettingSource: \"text\"\n");
    EXPECT_THAT(fed("code2=x"), IsEmpty());
}

// chosenOptions

namespace {

constexpr char kPassword[] = R"PPD(*JCLOpenUI *PrintMode/Mode: PickOne
*OrderDependency: 30 JCLSetup *PrintMode
*DefaultPrintMode: Normal
*PrintMode Normal/Normal: "@PJL COMMENT DSSC PRINT PRINTMODE=NORMAL<0D0A>"
*PrintMode Private/Private: "@PJL COMMENT DSSC PRINT PRINTMODE=PRIVATE<0D0A>"
*JCLCloseUI: *PrintMode
*KLSettingSource job-password: "pin"
*KLChoiceSource job-password: "PrintMode Private"
)PPD";

} // namespace

TEST_F(settingSourcesTest, ASourceChoosesAnOptionWhateverElseTheJobSays)
{
    usePPD(kPassword);
    for (const char *job : {"job-password=4711", "job-password=4711 PrintMode=Normal",
                            "PrintMode=normal job-password=4711"}) {
        const KLPrintOptions options(job);
        EXPECT_EQ(KLValue("Private"), options.valueForKey("PrintMode")) << job;
        EXPECT_EQ("Private", options.ppd().markedChoice("PrintMode")) << job;
        EXPECT_EQ(KLValue("4711"), options.valueForKey("pin")) << job;
    }
}

TEST_F(settingSourcesTest, ASourceThatSaysNothingChoosesNothing)
{
    usePPD(kPassword);
    EXPECT_EQ(KLValue("Normal"), stored("", "PrintMode"));
    EXPECT_EQ(KLValue("Normal"), stored("job-password=", "PrintMode"));
}

TEST_F(settingSourcesTest, AnOptionOfThePPDCanChooseToo)
{
    usePPD(std::string(kPassword) + kFields + "*KLChoiceSource KLCode: \"PrintMode Private\"\n");
    EXPECT_EQ(KLValue("Private"), stored("KLCode=Custom.1", "PrintMode"));
    EXPECT_EQ(KLValue("Normal"), stored("KLCode=None", "PrintMode"));
}

TEST_F(settingSourcesTest, ALineThatNamesNoChoiceChoosesNothing)
{
    usePPD(std::string(kPassword) + "*KLChoiceSource job-account-id: \"PrintMode\"\n"
                                    "*KLChoiceSource job-account-id: \"\"\n"
                                    "*KLChoiceSource job-account-id: \"PrintMode Secret\"\n"
                                    "*KLChoiceSource job-account-id: \"NoSuchOption True\"\n");
    EXPECT_EQ(KLValue("Normal"), stored("job-account-id=1", "PrintMode"));
    EXPECT_EQ(std::nullopt, stored("job-account-id=1", "NoSuchOption"));
}

// The store, which compares exactly, must not hold another choice than libcups marks.
TEST_F(settingSourcesTest, AChoiceIsMadeAsThePPDSpellsIt)
{
    usePPD(std::string(kPassword) + "*KLChoiceSource job-account-id: \"printmode PRIVATE\"\n");
    const KLPrintOptions options("job-account-id=1 PrintMode=Normal");
    EXPECT_EQ("Private", options.ppd().markedChoice("PrintMode"));
    EXPECT_EQ(KLValue("Private"), options.valueForKey("PrintMode"));
    EXPECT_EQ(std::nullopt, options.valueForKey("printmode"));
}

// A pinned user

TEST_F(settingSourcesTest, NoSourceSaysWhoPrintsWhereThePPDPinsThat)
{
    const std::string lines = "*KLSettingSource job-account-id: \"com.kalmira.username\"\n"
                              "*KLSettingSource job-account-id: \"code\"\n";
    usePPD(lines);
    EXPECT_EQ(KLValue("otto"), stored("job-account-id=otto", "com.kalmira.username"));
    usePPD(lines + "*KLPinnedUser: True\n");
    EXPECT_EQ(std::nullopt, stored("job-account-id=otto", "com.kalmira.username"));
    EXPECT_EQ(KLValue("otto"), stored("job-account-id=otto", "code"));
}
