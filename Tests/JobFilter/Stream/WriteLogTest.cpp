#include "WriteLog.h"

#include <gtest/gtest.h>
#include <stdexcept>

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

TEST(WriteLogTest, AFormatThatDoesNotFitItsArgumentsWritesNothing)
{
    CapturedErrors errors;
    EXPECT_THROW(WriteLog("ERROR: %@"), std::invalid_argument);
    EXPECT_EQ("", errors.text());
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

TEST(WriteLogTest, ANulDoesNotHideTheEndOfTheLine)
{
    EXPECT_EQ("bad page ", onOneLine(std::string("bad\0page\0", 9)));
}

// The scheduler ends a line of its own accord behind 2046 bytes, and takes the rest for a new one.

TEST(WriteLogTest, AMessageThatJustFitsIntoTheSchedulersLineIsWhole)
{
    const std::string message(2046, 'x');
    EXPECT_EQ(message, onOneLine(message));
}

TEST(WriteLogTest, ALongerMessageIsCutSoThatItsEndStartsNoNewLine)
{
    EXPECT_EQ(std::string(2043, 'x') + "...",
              onOneLine(std::string(2046, 'x') + "PPD: Duplex=None"));
    EXPECT_EQ(std::string(2043, 'x') + "...", onOneLine(std::string(2047, 'x')));
}

TEST(WriteLogTest, ALongerMessageIsCutBetweenCharacters)
{
    // The two bytes of the letter are numbers 2043 and 2044, then 2042 and 2043.
    EXPECT_EQ(std::string(2042, 'x') + "...",
              onOneLine(std::string(2042, 'x') + "é" + std::string(100, 'x')));
    EXPECT_EQ(std::string(2041, 'x') + "é...",
              onOneLine(std::string(2041, 'x') + "é" + std::string(100, 'x')));
}
