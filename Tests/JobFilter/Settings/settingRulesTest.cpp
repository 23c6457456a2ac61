#include "settingRules.h"

#include "KLPrintOptions.h"
#include "QueueTest.h"

#include <gtest/gtest.h>

namespace {

class settingRulesTest : public Support::QueueTest {
protected:
    /// "" when there is none.
    static std::string objection(const std::string &optionString)
    {
        return objectionToSettings(KLPrintOptions(optionString)).value_or("");
    }
};

/// A field of one type that feeds the key "code".
std::string field(const std::string &typeAndLimits)
{
    return "*JCLOpenUI *KLCode/Code: PickOne\n*OrderDependency: 30 JCLSetup *KLCode\n"
           "*DefaultKLCode: None\n*KLCode None/None: \"\"\n*JCLCloseUI: *KLCode\n"
           "*CustomKLCode True: \"\"\n*ParamCustomKLCode Code/Code: 1 " +
           typeAndLimits +
           "\n*KLSettingSource KLCode: \"code\"\n*KLSettingSource job-account-id: \"code\"\n";
}

} // namespace

TEST_F(settingRulesTest, WithoutARuleNothingIsChecked)
{
    usePPD("*KLSettingSource job-account-id: \"code\"\n");
    EXPECT_EQ("", objection("job-account-id='not a code at all'"));
}

TEST_F(settingRulesTest, DigitsAreDigitsAndSoMany)
{
    usePPD("*KLSettingRule Digits: \"code 4 8\"\n");
    EXPECT_EQ("", objection(""));
    EXPECT_EQ("", objection("code=4711"));
    EXPECT_EQ("", objection("code=12345678"));
    const std::string rule = "code must have 4 to 8 digits and nothing else";
    EXPECT_EQ(rule, objection("code=471"));
    EXPECT_EQ(rule, objection("code=123456789"));
    EXPECT_EQ(rule, objection("code=47x11"));
    EXPECT_EQ(rule, objection("code='47 11'"));
    EXPECT_EQ(rule, objection("code="));
}

TEST_F(settingRulesTest, OneLengthIsSaidOnce)
{
    usePPD("*KLSettingRule Digits: \"code 4 4\"\n");
    EXPECT_EQ("code must have 4 digits and nothing else", objection("code=47"));
}

TEST_F(settingRulesTest, CharactersAreCountedNotBytes)
{
    usePPD("*KLSettingRule Characters: \"name 1 4\"\n");
    EXPECT_EQ("", objection("name=MüßÄ"));
    EXPECT_EQ("name must have 1 to 4 characters", objection("name=Müßig"));
}

TEST_F(settingRulesTest, NumbersAreCheckedAsTheirText)
{
    usePPD("*KLSettingRule Digits: \"code 4 8\"\n");
    EXPECT_EQ("", objection("code..n.=4711"));
    EXPECT_EQ("code must have 4 to 8 digits and nothing else", objection("code..n.=-4711"));
}

TEST_F(settingRulesTest, LimitsOfATypedValueAreARuleForWhatItFeeds)
{
    usePPD(field("passcode 4 8"));
    const std::string rule = "KLCode must have 4 to 8 digits and nothing else";
    EXPECT_EQ("", objection("KLCode=Custom.4711"));
    EXPECT_EQ(rule, objection("KLCode=Custom.47x11"));
    EXPECT_EQ(rule, objection("KLCode=Custom.471"));
    EXPECT_EQ(rule, objection("job-account-id=47x11"));
    EXPECT_EQ(rule, objection("code=47x11"));
    EXPECT_EQ("", objection("KLCode=Custom.4711 code="));
    EXPECT_EQ("", objection(""));
}

TEST_F(settingRulesTest, EachTypeOfFieldHasItsRule)
{
    usePPD(field("password 1 4"));
    EXPECT_EQ("", objection("KLCode=Custom.x-y"));
    EXPECT_EQ("KLCode must have 1 to 4 characters", objection("KLCode=Custom.x-y-z"));
    usePPD(field("string 2 4"));
    EXPECT_EQ("KLCode must have 2 to 4 characters", objection("KLCode=Custom.x"));
    usePPD(field("int 6 200"));
    EXPECT_EQ("", objection("KLCode=Custom.200"));
    EXPECT_EQ("KLCode must be a number from 6 to 200", objection("KLCode=Custom.201"));
    usePPD(field("real 0.5 2"));
    EXPECT_EQ("", objection("KLCode=Custom.0.5"));
    EXPECT_EQ("KLCode must be a number from 0.5 to 2", objection("KLCode=Custom.0.25"));
    EXPECT_EQ("KLCode must be a number from 0.5 to 2", objection("code=much"));
}

TEST_F(settingRulesTest, TheOptionIsNamedWhereOneFeedsTheKey)
{
    usePPD(field("passcode 1 99") + "*KLSettingRule Digits: \"code 4 4\"\n");
    EXPECT_EQ("KLCode must have 4 digits and nothing else", objection("KLCode=Custom.1"));
}

TEST_F(settingRulesTest, ARuleThatIsNoneForbidsNothing)
{
    usePPD("*KLSettingRule Digits: \"code\"\n*KLSettingRule Letters: \"code 1 2\"\n"
           "*KLSettingRule: \"code 1 2\"\n*KLSettingRule Digits: \"code few many\"\n");
    EXPECT_EQ("", objection("code=123x"));
}

TEST_F(settingRulesTest, AnEncryptedPasswordCannotBeToldToThePrinter)
{
    usePPD("*KLSettingSource job-password: \"pin\"\n");
    EXPECT_EQ("", objection("job-password=4711"));
    EXPECT_EQ("", objection("job-password=4711 job-password-encryption=none"));
    EXPECT_EQ("", objection("job-password-encryption=sha2-256"));
    EXPECT_EQ("job-password must not be encrypted (job-password-encryption), the printer could not "
              "be told it",
              objection("job-password=abcdef job-password-encryption=sha2-256"));
    usePPD("");
    EXPECT_EQ("", objection("job-password=abcdef job-password-encryption=sha2-256"));
}

TEST_F(settingRulesTest, NoObjectionQuotesTheValue)
{
    usePPD(field("passcode 4 8"));
    EXPECT_EQ(std::string::npos, objection("KLCode=Custom.s3cret").find("s3cret"));
}

TEST_F(settingRulesTest, RulesOfAPPDAreToldTheStatedOnesFirst)
{
    usePPD(field("passcode 1 8") + "*KLSettingRule Digits: \"code 4 6\"\n"
                                   "*KLSettingRule Digits: \"no rule\"\n");
    const auto rules = settingRules(KLPrintOptions("").ppd());
    ASSERT_EQ(2U, rules.size());
    EXPECT_EQ("code", rules[0].key);
    EXPECT_EQ("KLCode", rules[0].name);
    EXPECT_EQ(4, rules[0].limits.from);
    EXPECT_EQ(8, rules[1].limits.to);
    EXPECT_FALSE(keepsTo(rules[0], ""));
    EXPECT_TRUE(keepsTo(rules[1], ""));
    EXPECT_TRUE(keepsTo(rules[0], "4711"));
    EXPECT_FALSE(keepsTo(rules[0], "47x1"));
}
