#include "jobHeader.h"

#include "KLPrintOptions.h"
#include "MemoryStreams.h"
#include "QueueTest.h"
#include "Streams.h"

#include <cerrno>
#include <gmock/gmock.h>

using testing::HasSubstr;

namespace {

const std::string kPrintMode = "*JCLOpenUI *PrintMode: PickOne\n"
                               "*OrderDependency: 20 JCLSetup *PrintMode\n"
                               "*DefaultPrintMode: Normal\n"
                               "*PrintMode Normal: \"@PJL COMMENT DSSC PRINT PRINTMODE=<E9><0A>\"\n"
                               "*JCLCloseUI: *PrintMode\n";

class JobHeaderTest : public Support::QueueTest {
protected:
    JobHeaderTest() { usePPD(kPrintMode); }

    static std::string emitted(const JobName &job)
    {
        const KLPrintOptions options("");
        const Platform::Stream file = Platform::openTemporary();
        return emittedHeader(options.ppd(), job, file.get()).value_or("none");
    }

    static std::string behindTheName()
    {
        return "@PJL COMMENT DSSC PRINT PRINTMODE=?\n@PJL ENTER LANGUAGE = POSTSCRIPT\r\n";
    }
};

} // namespace

TEST_F(JobHeaderTest, IsTextWithoutALineOfTheJobs)
{
    EXPECT_EQ("\033%-12345X@PJL\n"
              "@PJL JOB NAME = \"a 'b' c\" DISPLAY = \"12 x y ? a 'b' c\"\n"
              "@PJL SET USERNAME = \"x y ?\"\n" +
                  behindTheName(),
              emitted({12, "x\ny \xFF",
                       "a\t\"b\"\x7F"
                       "c"}));
}

TEST_F(JobHeaderTest, StaysAsItIsWhereItIsFit)
{
    EXPECT_EQ("\033%-12345X@PJL\n"
              "@PJL JOB NAME = \"100% \\n\" DISPLAY = \"-3 änna 100% \\n\"\n"
              "@PJL SET USERNAME = \"??nna\"\n" +
                  behindTheName(),
              emitted({-3, "änna", "100% \\n"}));
}

TEST_F(JobHeaderTest, IsEmptyWhereThePPDHasNone)
{
    folder.write("queue.ppd", "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n");
    EXPECT_EQ("", emitted({1, "u", "t"}));
}

TEST_F(JobHeaderTest, WalkTellsWhatItHasLeftUnread)
{
    const auto options = std::make_shared<KLPrintOptions>("com.kalmira.copies=3");
    const std::string job = "\033%-12345X@PJL JOB NAME = \"x\"\n";
    const auto unread = [&](const std::string &rest) {
        const Support::MemoryOutput output;
        const std::size_t count = walkHeader(job + rest, options, output.stream());
        EXPECT_EQ(job + "@PJL SET COPIES = 3\r\n" + rest.substr(0, rest.size() - count),
                  output.bytes());
        return count;
    };
    EXPECT_EQ(0U, unread(""));
    EXPECT_EQ(0U, unread("@PJL SET X=1\n"));
    EXPECT_EQ(0U, unread("@PJL ENTER LANGUAGE=PS\n"));
    EXPECT_EQ(5U, unread("@PJL ENTER LANGUAGE=PS\nlost\n"));
    const Support::MemoryOutput output;
    EXPECT_EQ(0U, walkHeader("", options, output.stream()));
    EXPECT_EQ("", output.bytes());
}

TEST_F(JobHeaderTest, WrittenBytesAreAllOrNothing)
{
    const Platform::Stream file = Platform::openTemporary();
    EXPECT_EQ("", writtenBytes(file.get()));
    const std::string bytes(10000, 'x');
    std::fputs(bytes.c_str(), file.get());
    EXPECT_EQ(bytes, writtenBytes(file.get()));

    const Platform::Stream full(std::fopen("/dev/full", "w+b"));
    std::fputs("x", full.get());
    EXPECT_EQ(std::nullopt, writtenBytes(full.get()));

    const Platform::Stream unreadable(Support::openStream({.read = [](char *, std::size_t) {
        errno = EIO;
        return ssize_t{-1};
    }}));
    EXPECT_EQ(std::nullopt, writtenBytes(unreadable.get()));
}
