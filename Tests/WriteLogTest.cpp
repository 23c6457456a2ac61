#include "WriteLog.h"

#include <gtest/gtest.h>

#include "CapturedErrors.h"

using Support::CapturedErrors;

TEST(WriteLogTest, WritesTheMessageAndOneLineFeedInOneWrite)
{
    CapturedErrors errors;
    WriteLog("INFO: Found %lu records for user %@", 2UL, "anna");
    EXPECT_EQ("INFO: Found 2 records for user anna\n", errors.nextWrite());
    EXPECT_EQ("", errors.nextWrite());
}

TEST(WriteLogTest, APercentSignInAnArgumentMeansNothing)
{
    CapturedErrors errors;
    WriteLog("ERROR: %@", "50%@ %s %n");
    EXPECT_EQ("ERROR: 50%@ %s %n\n", errors.nextWrite());
}

TEST(WriteLogTest, ALineBreakInsideTheMessageStartsNoNewLine)
{
    CapturedErrors errors;
    WriteLog("ERROR: %@", "bad\nPPD: Duplex=None\r\nATTR: x");
    EXPECT_EQ("ERROR: bad PPD: Duplex=None  ATTR: x\n", errors.nextWrite());
}

TEST(WriteLogTest, LineBreaksAtTheVeryEndStay)
{
    CapturedErrors errors;
    WriteLog("ERROR: %@", "bad page size\r\n\n");
    EXPECT_EQ("ERROR: bad page size\r\n\n\n", errors.nextWrite());
}

TEST(WriteLogTest, OneLineOfLineBreaksAloneStays)
{
    EXPECT_EQ("\n\r", onOneLine("\n\r"));
    EXPECT_EQ("", onOneLine(""));
    EXPECT_EQ(" x\n", onOneLine("\nx\n"));
}
