#include "accountingRules.h"

#include "Environment.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

bool asks(const std::string &ppd)
{
    const Support::TemporaryFolder folder;
    return asksForPageAccounting(folder.write("ppd", ppd).c_str());
}

TEST(AsksForPageAccountingTest, LineThatSaysTrueAsks)
{
    for (const std::string line :
         {"*KLPageAccounting: True", "*KLPageAccounting: \"True\"", "*KLPageAccounting:True",
          "*KLPageAccounting\t: \"True\" ", "*klpageaccounting: true"}) {
        EXPECT_TRUE(asks(line)) << line;
        EXPECT_TRUE(asks("*PPD-Adobe: \"4.3\"\n" + line + "\n*cupsVersion: 2.3\n")) << line;
        EXPECT_TRUE(asks("*PPD-Adobe: \"4.3\"\r" + line + "\r*cupsVersion: 2.3\r")) << line;
        EXPECT_TRUE(asks("*PPD-Adobe: \"4.3\"\r\n" + line + "\r\n")) << line;
    }
}

TEST(AsksForPageAccountingTest, EverythingElseDoesNot)
{
    for (const std::string ppd :
         {"", "*KLPageAccounting", "*KLPageAccounting:", "*KLPageAccounting: False",
          "*KLPageAccounting: Truely", "*KLPageAccountings: True", "KLPageAccounting: True",
          "*%*KLPageAccounting: True", "*% off: *KLPageAccounting: True",
          " *KLPageAccounting: True", "*PageAccounting: True"})
        EXPECT_FALSE(asks(ppd)) << ppd;
}

TEST(AsksForPageAccountingTest, FirstOfSeveralLinesCounts)
{
    EXPECT_TRUE(asks("*KLPageAccounting: True\n*KLPageAccounting: False\n"));
    EXPECT_FALSE(asks("*KLPageAccounting: False\n*KLPageAccounting: True\n"));
}

TEST(AsksForPageAccountingTest, SamplePPDAsks)
{
    EXPECT_TRUE(asksForPageAccounting(KL_SAMPLE_PPD));
}

TEST(AsksForPageAccountingTest, PPDThatCannotBeReadDoesNotAsk)
{
    const Support::TemporaryFolder folder;
    EXPECT_FALSE(asksForPageAccounting(nullptr));
    EXPECT_FALSE(asksForPageAccounting(folder.file("missing").c_str()));
    EXPECT_FALSE(asksForPageAccounting(folder.path().c_str()));
    EXPECT_FALSE(asksForPageAccounting("/dev/zero")); // and does not read on for ever
}

class CopiesOfHeaderTest : public testing::Test {
    Support::ScopedEnvironment _ppd{"PPD", KL_SAMPLE_PPD};
};

TEST_F(CopiesOfHeaderTest, ArgumentCountsWhereNoOptionSaysMore)
{
    EXPECT_EQ(3, copiesOfHeader("", "3"));
    EXPECT_EQ(3, copiesOfHeader("copies=5 PageSize=A4", "3"));
}

TEST_F(CopiesOfHeaderTest, OptionCountsBeforeTheArgument)
{
    EXPECT_EQ(5, copiesOfHeader("com.kalmira.copies=5", "3"));
    EXPECT_EQ(5, copiesOfHeader("PageSize=A4 com.kalmira.copies='5' Duplex=None", "3"));
    EXPECT_EQ(5, copiesOfHeader("com.kalmira.copies..n.=5", "3"));
    EXPECT_EQ(3, copiesOfHeader("com.kalmira.copiesX=5", "3"));
    EXPECT_EQ(3, copiesOfHeader("x='com.kalmira.copies=5'", "3"));
}

TEST_F(CopiesOfHeaderTest, WhatIsNoNumberFromOneOnIsOne)
{
    for (const std::string text : {"", "0", "-3", "many", "3x", "99999999999"}) {
        EXPECT_EQ(1, copiesOfHeader("", text)) << text;
        EXPECT_EQ(1, copiesOfHeader("com.kalmira.copies='" + text + "'", "3")) << text;
    }
    EXPECT_EQ(INT_MAX, copiesOfHeader("", std::to_string(INT_MAX)));
}

TEST(CopiesOfHeaderWithoutPPDTest, ArgumentCountsWhereTheOptionsCannotBeRead)
{
    const Support::ScopedEnvironment ppd("PPD", std::nullopt);
    EXPECT_EQ(3, copiesOfHeader("com.kalmira.copies=5", "3"));
}

} // namespace
