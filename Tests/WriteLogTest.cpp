#include "WriteLog.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

/// Takes standard error's place with a pipe that keeps one message from the next: a packet pipe
/// gives back one write at a time.
class CapturedErrors {
public:
    CapturedErrors() : _before(dup(STDERR_FILENO))
    {
        EXPECT_EQ(0, pipe2(_ends, O_DIRECT | O_NONBLOCK));
        dup2(_ends[1], STDERR_FILENO);
    }
    ~CapturedErrors()
    {
        dup2(_before, STDERR_FILENO);
        for (const int descriptor : {_before, _ends[0], _ends[1]})
            close(descriptor);
    }
    std::string nextWrite() const
    {
        char bytes[4096];
        const ssize_t length = read(_ends[0], bytes, sizeof bytes);
        return length > 0 ? std::string(bytes, static_cast<std::size_t>(length)) : "";
    }

private:
    int _before;
    int _ends[2];
};

} // namespace

TEST(WriteLogTest, WritesTheMessageAndOneLineFeedInOneWrite)
{
    const CapturedErrors errors;
    WriteLog("INFO: Found %lu records for user %@", 2UL, "anna");
    EXPECT_EQ("INFO: Found 2 records for user anna\n", errors.nextWrite());
    EXPECT_EQ("", errors.nextWrite());
}

TEST(WriteLogTest, APercentSignInAnArgumentMeansNothing)
{
    const CapturedErrors errors;
    WriteLog("ERROR: %@", "50%@ %s %n");
    EXPECT_EQ("ERROR: 50%@ %s %n\n", errors.nextWrite());
}

TEST(WriteLogTest, ALineBreakInsideTheMessageStartsNoNewLine)
{
    const CapturedErrors errors;
    WriteLog("ERROR: %@", "bad\nPPD: Duplex=None\r\nATTR: x");
    EXPECT_EQ("ERROR: bad PPD: Duplex=None  ATTR: x\n", errors.nextWrite());
}

TEST(WriteLogTest, LineBreaksAtTheVeryEndStay)
{
    const CapturedErrors errors;
    WriteLog("ERROR: %@", "bad page size\r\n\n");
    EXPECT_EQ("ERROR: bad page size\r\n\n\n", errors.nextWrite());
}

TEST(WriteLogTest, OneLineOfLineBreaksAloneStays)
{
    EXPECT_EQ("\n\r", onOneLine("\n\r"));
    EXPECT_EQ("", onOneLine(""));
    EXPECT_EQ(" x\n", onOneLine("\nx\n"));
}
