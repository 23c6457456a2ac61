#include "PJLChecker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using Support::linesOf;
using Support::problemsOfPJLJob;
using Support::splitPJLJob;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const std::string kExit = "\x1B%-12345X";
const std::string kJobLine = "@PJL JOB NAME = \"Title\" DISPLAY = \"7 anna Title\"\n";
const std::string kCopies = "@PJL SET COPIES = 3\r\n";
const std::string kUser = "@PJL COMMENT DSSC PRINT USERLOGIN=anna\r\n";
const std::string kEnter = "@PJL ENTER LANGUAGE = POSTSCRIPT\r\n";
const std::string kBody = "%!PS\nshowpage\n";
const std::string kEnd = kExit + "@PJL COMMENT DSSC PRINT JOBENDINFO PAGES=1\r\n"
                                 "@PJL COMMENT DSSC PRINT JOBENDINFO PAGESIZE=A4\r\n"
                                 "@PJL EOJ\n";

/// A job with these lines between the first one and ENTER LANGUAGE.
std::string jobWithLines(const std::string &lines)
{
    return kExit + "@PJL\n" + lines + kEnter + kBody + kEnd;
}

/// The one problem of a job; a text that says so when there are none or several.
std::string problemOf(const std::string &job)
{
    const auto problems = problemsOfPJLJob(job);
    return problems.size() == 1 ? problems.front()
                                : std::to_string(problems.size()) + " problems of " + job;
}

} // namespace

TEST(PJLCheckerTest, RightJobHasNoProblem)
{
    EXPECT_THAT(problemsOfPJLJob(jobWithLines(kJobLine + kCopies + kUser)), IsEmpty());
    EXPECT_THAT(problemsOfPJLJob(jobWithLines("")), IsEmpty());
    EXPECT_THAT(problemsOfPJLJob(kExit + kEnter + kEnd), IsEmpty());
}

TEST(PJLCheckerTest, LinesOfRightForm)
{
    for (const char *line :
         {"@PJL COMMENT anything \"goes = here\n", "@PJL SET RESOLUTION=600\n",
          "@PJL SET LPARM : POSTSCRIPT COPIES = 2\r\n", "@PJL SET USERNAME = \"anna b\"\n",
          "@PJL JOB\n", "@PJL JOB NAME=\"a\" START = 1 END = 2\n",
          "@PJL RDYMSG DISPLAY = \"7 anna\"\n", "@PJL COMMENT DSSC PRINT COLLATE=ON\n",
          "@PJL COMMENT DSSC PRINT RGB PROFILE=\r\n",
          "@PJL COMMENT DSSC PRINT USERLOGIN=a=b \"c\" \xC3\xA9 %@\r\n",
          "@PJL COMMENT DSSC BOX BOXNO=7\r\n"})
        EXPECT_THAT(problemsOfPJLJob(jobWithLines(line)), IsEmpty()) << line;
}

TEST(PJLCheckerTest, CommandOfWrongForm)
{
    for (const char *line : {"@PJL SET COPIES\r\n",
                             "@PJL SET = 3\n",
                             "@PJL SET A = 3 4\n",
                             "@PJL SET A = \"3\n",
                             "@PJL SET A 3\n",
                             "@PJL SET LPARM POSTSCRIPT A = 3\n",
                             "@PJL set A = 3\n",
                             "@PJL JOB NAME = Title\n",
                             "@PJL JOB NAME = \"a\"b\"\n",
                             "@PJL JOB OWNER = \"a\"\n",
                             "@PJL JOB NAME\n",
                             "@PJL EOJ\n",
                             "@PJL RESET\n",
                             "@PJL COMMENT\n",
                             "@PJL COMMENT \n",
                             "@PJL RDYMSG DISPLAY = 7\n",
                             "@PJL  SET A = 3\n",
                             "@PJL \n",
                             "@PJL COMMENT DSSC PRINT\n",
                             "@PJL COMMENT DSSC PRINT COLLATE\n",
                             "@PJL COMMENT DSSC PRINT =ON\n",
                             "@PJL COMMENT DSSC PRINT collate=ON\n",
                             "@PJL COMMENT DSSC PRINT  COLLATE=ON\n",
                             "@PJL COMMENT DSSC PRINT COLLATE =ON\n",
                             "@PJL COMMENT DSSC COLLATE=ON\n",
                             "@PJL COMMENT DSSC STORE BOX=1\n"})
        EXPECT_THAT(problemOf(jobWithLines(line)), HasSubstr("right form")) << line;
}

TEST(PJLCheckerTest, LineThatIsNoCommand)
{
    for (const char *line :
         {"\n", "\r\n", "SET A = 3\n", " @PJL SET A = 3\n", "@pjl SET A = 3\n", "@PJLSET A = 3\n"})
        EXPECT_THAT(problemOf(jobWithLines(line)), HasSubstr("no PJL command")) << line;
}

TEST(PJLCheckerTest, ControlCharacterInALine)
{
    for (const char c : {'\0', '\x01', '\t', '\v', '\r', '\x1B', '\x1F', '\x7F'}) {
        const std::string line = std::string("@PJL COMMENT a") + c + "b\r\n";
        EXPECT_THAT(problemOf(jobWithLines(line)), HasSubstr("control character")) << int{c};
    }
    EXPECT_THAT(problemOf(jobWithLines("@PJL COMMENT a\r\r\n")), HasSubstr("control character"));
}

TEST(PJLCheckerTest, LineOfTheFilterWithoutCR)
{
    for (const char *setting :
         {"PRINT ACCESSCODE", "PRINT FORCE_DEVICECOLOR", "PRINT RGB PROFILE", "PRINT CMYK PROFILE",
          "PRINT OUTPUT PROFILE", "PRINT USE PROFILE", "PRINT RENDERING INTENT",
          "PRINT EXTRADOCUMENTTYPE", "PRINT USERLOGIN", "PRINT DOMAINNAME", "PRINT PRIVPRINT",
          "BOX BOX", "BOX BOXNO", "BOX BOXNAME", "BOX BOXFOLDER", "BOX BOXPASSWORD",
          "BOX BOXPASSWORDEX"}) {
        const std::string line = std::string("@PJL COMMENT DSSC ") + setting + "=1";
        EXPECT_THAT(problemOf(jobWithLines(line + "\n")), HasSubstr("CR LF")) << line;
        EXPECT_THAT(problemsOfPJLJob(jobWithLines(line + "\r\n")), IsEmpty()) << line;
    }
    EXPECT_THAT(problemOf(jobWithLines("@PJL SET COPIES = 3\n")), HasSubstr("CR LF"));
}

TEST(PJLCheckerTest, SecondJobCommand)
{
    EXPECT_THAT(problemOf(jobWithLines(kJobLine + kUser + kJobLine)), HasSubstr("several JOB"));
}

TEST(PJLCheckerTest, BeginningWithoutTheExitMarker)
{
    const std::string job = jobWithLines(kJobLine);
    EXPECT_THAT(problemsOfPJLJob(job.substr(kExit.size())),
                ElementsAre(HasSubstr("1 exit markers"), HasSubstr("does not begin")));
    EXPECT_THAT(problemOf("\n" + job), HasSubstr("does not begin"));
}

TEST(PJLCheckerTest, TextBetweenTheExitMarkerAndTheFirstCommand)
{
    EXPECT_THAT(problemOf(kExit + "\n@PJL\n" + kEnter + kEnd), HasSubstr("no PJL command"));
}

TEST(PJLCheckerTest, ExitMarkerTooMany)
{
    EXPECT_THAT(problemOf(kExit + kEnter + kBody + kExit + kEnd), HasSubstr("3 exit markers"));
    EXPECT_THAT(problemsOfPJLJob(kExit + kExit + kEnter + kBody + kEnd), Not(IsEmpty()));
}

TEST(PJLCheckerTest, NoEnterLanguage)
{
    EXPECT_THAT(problemOf(kExit + "@PJL\n" + kBody + kEnd), HasSubstr("no ENTER LANGUAGE"));
    EXPECT_THAT(problemOf(kExit + "@PJL\n @PJL ENTER LANGUAGE = PCL\n" + kEnd),
                HasSubstr("no ENTER LANGUAGE"));
}

TEST(PJLCheckerTest, HeaderSentTwice)
{
    const std::string header = "@PJL\n" + kJobLine + kEnter;
    EXPECT_THAT(problemsOfPJLJob(kExit + header + header + kBody + kEnd),
                ElementsAre(HasSubstr("in the page data"), HasSubstr("in the page data"),
                            HasSubstr("in the page data")));
}

TEST(PJLCheckerTest, JobEndOfWrongForm)
{
    const std::string begin = kExit + kEnter + kBody + kExit;
    const std::string pages = "@PJL COMMENT DSSC PRINT JOBENDINFO PAGES=1\r\n";
    const std::string pageSize = "@PJL COMMENT DSSC PRINT JOBENDINFO PAGESIZE=A4\r\n";
    const std::string eoj = "@PJL EOJ\n";
    ASSERT_THAT(problemsOfPJLJob(begin + pages + pageSize + eoj), IsEmpty());
    for (const std::string &end :
         {pages + pageSize, pages + eoj, pageSize + eoj, pageSize + pages + eoj,
          pages + pageSize + eoj + eoj, pages + pageSize + "@PJL EOJ\r\n",
          pages + pageSize + "@PJL EOJ", pages + pageSize + eoj + "x",
          "\r\n" + pages + pageSize + eoj,
          "@PJL COMMENT DSSC PRINT JOBENDINFO PAGES=2\r\n" + pageSize + eoj,
          "@PJL COMMENT DSSC PRINT JOBENDINFO PAGES=1\n" + pageSize + eoj,
          pages + "@PJL COMMENT DSSC PRINT JOBENDINFO PAGESIZE=\r\n" + eoj, std::string()})
        EXPECT_THAT(problemOf(begin + end), HasSubstr("does not end with")) << end;
}

TEST(PJLCheckerTest, JobEndWithAPageSizeLineOfWrongForm)
{
    const std::string begin =
        kExit + kEnter + kBody + kExit + "@PJL COMMENT DSSC PRINT JOBENDINFO PAGES=1\r\n";
    const std::string line = "@PJL COMMENT DSSC PRINT JOBENDINFO PAGESIZE=A4";
    EXPECT_THAT(problemOf(begin + line + "\n@PJL EOJ\n"), HasSubstr("CR LF"));
    EXPECT_THAT(problemOf(begin + line + "\t\r\n@PJL EOJ\n"), HasSubstr("control character"));
}

TEST(PJLCheckerTest, BytesThatAreNoJob)
{
    for (const std::string &bytes : {std::string(), std::string("x"), kExit, kBody, kEnter, kEnd,
                                     std::string(1000, '\0'), kExit + "@PJL ENTER LANGUAGE"})
        EXPECT_THAT(problemsOfPJLJob(bytes), Not(IsEmpty())) << bytes;
}

TEST(PJLCheckerTest, EveryTruncationHasAProblem)
{
    const std::string job = jobWithLines(kJobLine + kCopies + kUser);
    for (std::size_t length = 0; length < job.size(); ++length)
        EXPECT_THAT(problemsOfPJLJob(job.substr(0, length)), Not(IsEmpty())) << length;
}

TEST(PJLCheckerTest, SplitsAJobIntoItsParts)
{
    const auto job = splitPJLJob(jobWithLines(kJobLine));
    ASSERT_TRUE(job);
    EXPECT_EQ(kExit + "@PJL\n" + kJobLine + kEnter, job->header);
    EXPECT_EQ(kBody, job->body);
    EXPECT_EQ(kEnd, job->end);
}

TEST(PJLCheckerTest, SplitsAtTheFirstEnterLanguageLineAndTheLastMarker)
{
    const std::string quoted = "@PJL COMMENT @PJL ENTER LANGUAGE\n";
    const auto job = splitPJLJob(kExit + quoted + kEnter + kEnter + kExit + kBody + kEnd);
    ASSERT_TRUE(job);
    EXPECT_EQ(kExit + quoted + kEnter, job->header);
    EXPECT_EQ(kEnter + kExit + kBody, job->body);
    EXPECT_EQ(kEnd, job->end);
}

TEST(PJLCheckerTest, JobWithoutEnterLanguageOrEndIsNotSplit)
{
    EXPECT_FALSE(splitPJLJob(kExit + kBody + kEnd));
    EXPECT_FALSE(splitPJLJob(kExit + kEnter + kBody));
    EXPECT_FALSE(splitPJLJob(""));
}

TEST(PJLCheckerTest, LinesKeepTheirEnds)
{
    EXPECT_THAT(linesOf("a\r\n\nb"), ElementsAre("a\r\n", "\n", "b"));
    EXPECT_THAT(linesOf(""), IsEmpty());
}
