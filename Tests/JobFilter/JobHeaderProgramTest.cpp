// What of a job reaches the header through libcups, and whether a job that asked for protection
// leaves with it. With a queue whose PPD is made for each case.

#include "MinimalPPD.h"
#include "PJLChecker.h"
#include "Program.h"
#include "TemporaryFolder.h"
#include "Text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr char kPrivate[] =
    "PrintMode=Private com.kalmira.pde.print-mode-ovm.privatePassword=geheim ";
constexpr char kStoredOnly[] = "StoreToDocStore=True PrintAsWell=False "
                               "com.kalmira.pde.docstore.boxNumber=12 ";
constexpr char kUnprotected[] = "CRIT: Unable to create the job header of a protected job\n";
constexpr char kNoToolkit[] =
    "INFO: A required component could not be found, some print settings may not be applied\n";
constexpr char kJobEnd[] = "\033%-12345X@PJL COMMENT DSSC PRINT JOBENDINFO PAGES=1\r\n"
                           "@PJL COMMENT DSSC PRINT JOBENDINFO PAGESIZE=A4\r\n@PJL EOJ\n";

const std::string kPrivateLine = "@PJL COMMENT DSSC PRINT PRIVPRINT=geheim\r\n";
const std::string kBoxLine = "@PJL COMMENT DSSC PRINT PRINTMODE=BOX\r\n";
const std::string kEnterLine = "@PJL ENTER LANGUAGE = POSTSCRIPT\r\n";

/// A job-control option, each choice with its code.
std::string jobControl(const std::string &keyword, int order,
                       const std::vector<std::pair<std::string, std::string>> &choices,
                       const std::string &more = "")
{
    std::string lines = "*JCLOpenUI *" + keyword +
                        ": PickOne\n*OrderDependency: " + std::to_string(order) + " JCLSetup *" +
                        keyword + "\n*Default" + keyword + ": " + choices.front().first + "\n";
    for (const auto &[choice, code] : choices) {
        lines.append("*").append(keyword).append(" ").append(choice);
        lines.append(": \"").append(code).append("\"\n");
    }
    return lines + more + "*JCLCloseUI: *" + keyword + "\n";
}

std::string printMode()
{
    const std::string line = "@PJL COMMENT DSSC PRINT PRINTMODE=";
    return jobControl("PrintMode", 20,
                      {{"Normal", line + "NORMAL<0D0A>"}, {"Private", line + "PRIVATE<0D0A>"}}) +
           jobControl("StoreToDocStore", 21, {{"False", ""}, {"True", ""}}) +
           jobControl("PrintAsWell", 22, {{"True", ""}, {"False", ""}});
}

/// An option that takes a text, and what libcups makes of it: "\1" stands for the text.
std::string customNote(const std::string &code, int order = 10)
{
    return "*CustomJCLNote True: \"" + code +
           "\"\n*End\n*ParamCustomJCLNote Text/Text: 1 string 0 99\n" +
           jobControl("JCLNote", order, {{"None", ""}});
}

std::string replaced(std::string text, const std::string &part, const std::string &replacement)
{
    const auto at = text.find(part);
    EXPECT_NE(std::string::npos, at) << part;
    return text.replace(at, part.size(), replacement);
}

class JobHeaderProgramTest : public testing::Test {
protected:
    Support::ProgramCall call(const std::string &options = "") const
    {
        Support::ProgramCall result;
        result.arguments = {JOBFILTER_PROGRAM, jobId, user, title, "2", options};
        result.environment = {{"PPD", folder.file("queue.ppd")}, {"TMPDIR", temporaries.path()}};
        result.input = "pages";
        return result;
    }

    void usePPD(const std::string &text) const { folder.write("queue.ppd", text); }
    void usePPDWith(const std::string &lines) const
    {
        usePPD(Support::minimalPPD(lines + printMode()));
    }

    /// The header of a job that comes out right.
    std::string header(const std::string &options = "") const
    {
        const auto result = runProgram(call(options));
        EXPECT_EQ(0, result.exitStatus) << result.errors;
        EXPECT_EQ(kNoToolkit, result.errors);
        EXPECT_THAT(result.output, EndsWith(std::string("pages") + kJobEnd));
        EXPECT_THAT(Support::problemsOfPJLJob(result.output), IsEmpty());
        EXPECT_THAT(temporaries.names(), IsEmpty());
        return Support::splitPJLJob(result.output).value_or(Support::PJLJob{}).header;
    }
    std::vector<std::string> headerLines(const std::string &options = "") const
    {
        return Support::linesOf(header(options));
    }

    void expectRefused(const Support::ProgramCall &job) const
    {
        const auto result = runProgram(job);
        EXPECT_EQ("", result.output);
        EXPECT_THAT(result.errors, EndsWith(kUnprotected));
        EXPECT_THAT(result.errors, Not(HasSubstr("geheim")));
        EXPECT_THAT(result.errors, Not(HasSubstr("ERROR: ")));
        EXPECT_EQ(1, result.exitStatus);
        EXPECT_THAT(temporaries.names(), IsEmpty());
    }
    void expectRefused(const std::string &options) const { expectRefused(call(options)); }

    /// Not only refused: what asks for no protection prints as ever.
    void expectOnlyProtectedJobsRefused() const
    {
        expectRefused(kPrivate);
        expectRefused("PrintMode=Private");
        expectRefused(kStoredOnly);
        for (const char *options : {"", "StoreToDocStore=True", "PrintAsWell=False"}) {
            const auto result = runProgram(call(options));
            EXPECT_EQ(0, result.exitStatus) << options << result.errors;
            EXPECT_THAT(result.output, EndsWith(std::string("pages") + kJobEnd)) << options;
        }
    }

    std::string jobId = "7";
    std::string user = "anna";
    std::string title = "Report";
    Support::TemporaryFolder folder;
    Support::TemporaryFolder temporaries;
    const std::string ppdPath = folder.write("queue.ppd", Support::minimalPPD(printMode()));
};

/// A text of so many of these characters.
std::string repeated(const std::string &character, std::size_t count)
{
    std::string text;
    for (std::size_t number = 0; number < count; ++number)
        text += character;
    return text;
}

} // namespace

// User and title

TEST_F(JobHeaderProgramTest, ControlCharactersOfUserAndTitleAreBlanks)
{
    user = "an\nna\r\x7F";
    title = "a\x1B%-12345X@PJL\r\n\t\x01z";
    EXPECT_EQ(
        "\033%-12345X@PJL\n"
        "@PJL JOB NAME = \"a %-12345X@PJL    z\" DISPLAY = \"7 an na   a %-12345X@PJL    z\"\n"
        "@PJL SET COPIES = 2\r\n"
        "@PJL SET USERNAME = \"an na  \"\n"
        "@PJL COMMENT DSSC PRINT USERLOGIN=an na  \r\n"
        "@PJL COMMENT DSSC PRINT DOMAINNAME=\r\n"
        "@PJL COMMENT DSSC PRINT PRINTMODE=NORMAL\r\n" +
            kEnterLine,
        header());
}

TEST_F(JobHeaderProgramTest, NoControlCharacterBeginsALineOrLeavesPJL)
{
    const std::size_t lines = headerLines().size();
    for (int byte = 1; byte < 0x80; ++byte) {
        if (byte >= 0x20 && byte != 0x7F)
            continue;
        user = title = std::string("x") + static_cast<char>(byte) + "@PJL EOJ";
        const auto seen = headerLines();
        EXPECT_EQ(lines, seen.size()) << byte;
        EXPECT_THAT(seen, Contains("@PJL SET USERNAME = \"x @PJL EOJ\"\n")) << byte;
    }
}

TEST_F(JobHeaderProgramTest, QuotesOfUserAndTitleAreApostrophes)
{
    user = "an\"na";
    title = "say \"hi\"";
    const auto lines = headerLines();
    EXPECT_THAT(lines, Contains("@PJL JOB NAME = \"say 'hi'\" DISPLAY = \"7 an'na say 'hi'\"\n"));
    EXPECT_THAT(lines, Contains("@PJL SET USERNAME = \"an'na\"\n"));
    // Only the copies that libcups gets: the login is a value of ours and keeps its bytes.
    EXPECT_THAT(lines, Contains("@PJL COMMENT DSSC PRINT USERLOGIN=an\"na\r\n"));
}

// The emitted header is text

TEST_F(JobHeaderProgramTest, LongNamesInAnyScriptKeepTheHeader)
{
    const std::string plain = header(kPrivate);
    const std::size_t lines = Support::linesOf(plain).size();
    // Of the number, a blank and the name libcups takes 32 bytes: names that end ahead of that
    // byte, around it and far behind it. The number moves the letters byte by byte against the cut.
    for (const std::string letter : {"ü", "Ж", "漢", "𝄞"}) {
        const std::size_t whole = 32 / letter.size();
        for (const std::size_t letters :
             {whole - 3, whole - 2, whole - 1, whole, whole + 1, whole + 16}) {
            for (std::size_t digits = 1; digits <= 4; ++digits) {
                jobId = std::string("1234").substr(0, digits);
                user = repeated(letter, letters);
                const std::string seen = header(kPrivate);
                EXPECT_TRUE(Platform::isValidUTF8(seen)) << user;
                EXPECT_EQ(lines, Support::linesOf(seen).size()) << user;
                EXPECT_THAT(seen, HasSubstr(kPrivateLine)) << user;
            }
        }
    }
}

TEST_F(JobHeaderProgramTest, EachByteOfACutLetterIsAQuestionMark)
{
    // Of "7 " and the name libcups takes 32 bytes.
    user = std::string(29, 'a') + "é";
    EXPECT_THAT(header(), HasSubstr("DISPLAY = \"7 " + std::string(29, 'a') + "?\"\n"));
    user = std::string(28, 'a') + "漢";
    EXPECT_THAT(header(), HasSubstr("DISPLAY = \"7 " + std::string(28, 'a') + "??\"\n"));
    user = std::string(27, 'a') + "漢";
    EXPECT_THAT(header(), HasSubstr("DISPLAY = \"7 " + std::string(27, 'a') + "漢\"\n"));
}

TEST_F(JobHeaderProgramTest, TitleThatIsCutWithinALetterKeepsTheHeader)
{
    usePPDWith("*cupsPJLCharset: \"UTF-8\"\n");
    title = repeated("é", 13);
    // 32 bytes for the panel: "7 anna " and twelve letters and a half.
    EXPECT_THAT(header(kPrivate),
                testing::AllOf(HasSubstr("@PJL JOB NAME = \"" + title + "\" DISPLAY = \"7 anna " +
                                         repeated("é", 12) + "?\"\n"),
                               HasSubstr(kPrivateLine)));
    // 64 bytes for the name.
    title = "a" + repeated("é", 40);
    EXPECT_THAT(header(kPrivate), testing::AllOf(HasSubstr("\"a" + repeated("é", 31) + "?\""),
                                                 HasSubstr(kPrivateLine)));
}

TEST_F(JobHeaderProgramTest, UserThatIsNotUTF8KeepsTheHeader)
{
    user = "ann\xE9";
    EXPECT_THAT(headerLines(kPrivate),
                testing::AllOf(Contains("@PJL JOB NAME = \"Report\" DISPLAY = \"7 ann? Report\"\n"),
                               Contains("@PJL SET USERNAME = \"ann?\"\n"),
                               Contains("@PJL COMMENT DSSC PRINT USERLOGIN=ann\xE9\r\n"),
                               Contains(kPrivateLine)));
}

TEST_F(JobHeaderProgramTest, Latin1InAPPDsCodeIsAQuestionMark)
{
    usePPDWith(jobControl("JCLGreeting", 10, {{"On", "@PJL COMMENT gr<FC><DF>e<0A>"}}));
    EXPECT_THAT(headerLines(kPrivate),
                testing::AllOf(Contains("@PJL COMMENT gr??e\n"), Contains(kPrivateLine)));
}

TEST_F(JobHeaderProgramTest, ByteThatIsNoTextInACustomValueIsAQuestionMark)
{
    usePPDWith(customNote("@PJL COMMENT \\1\n"));
    EXPECT_THAT(headerLines(std::string(kPrivate) + "JCLNote=Custom.a\xFFü"),
                testing::AllOf(Contains("@PJL COMMENT a?ü\n"), Contains(kPrivateLine)));
}

// Custom values

TEST_F(JobHeaderProgramTest, ControlCharactersOfCustomValuesAreBlanks)
{
    usePPDWith(customNote("@PJL COMMENT \\1\n"));
    const std::string evil = "a\r\n@PJL EOJ\t\x1B%-12345X\x7Fz";
    const std::string line = "@PJL COMMENT a  @PJL EOJ  %-12345X z\n";
    for (const std::string &option :
         {"JCLNote='Custom." + evil + "'", "JCLNote='{Text=\"" + evil + "\"}'",
          "jclnote='custom." + evil + "'"}) {
        const auto lines = headerLines(option);
        EXPECT_THAT(lines, Contains(line)) << option;
        EXPECT_EQ(headerLines().size() + 1, lines.size()) << option;
    }
}

// Custom choices may stand elsewhere in the job than the option's others.
TEST_F(JobHeaderProgramTest, ControlCharactersOfCustomValuesThatMoveIntoTheHeaderAreBlanks)
{
    usePPDWith("*NonUIOrderDependency: 10 JCLSetup *CustomNote True\n"
               "*OpenUI *Note/Note: PickOne\n*OrderDependency: 10 AnySetup *Note\n"
               "*DefaultNote: None\n*Note None/None: \"\"\n*CloseUI: *Note\n"
               "*CustomNote True: \"@PJL COMMENT \\1\n\"\n*End\n"
               "*ParamCustomNote Text/Text: 1 string 0 99\n");
    EXPECT_THAT(headerLines("Note='Custom.a\n@PJL EOJ'"), Contains("@PJL COMMENT a @PJL EOJ\n"));
}

// A job that asked for protection

TEST_F(JobHeaderProgramTest, ProtectedJobsComeOutWithTheirLines)
{
    EXPECT_EQ("\033%-12345X@PJL\n"
              "@PJL JOB NAME = \"Report\" DISPLAY = \"7 anna Report\"\n"
              "@PJL SET COPIES = 2\r\n"
              "@PJL SET USERNAME = \"anna\"\n"
              "@PJL COMMENT DSSC PRINT USERLOGIN=anna\r\n"
              "@PJL COMMENT DSSC PRINT DOMAINNAME=\r\n"
              "@PJL COMMENT DSSC PRINT PRINTMODE=PRIVATE\r\n" +
                  kPrivateLine + kEnterLine,
              header(kPrivate));
    EXPECT_THAT(headerLines(kStoredOnly), Contains(kBoxLine));
    EXPECT_THAT(headerLines("PrintMode=Private"),
                Contains("@PJL COMMENT DSSC PRINT PRINTMODE=PRIVATE\r\n"));
    // The code is the job's, whatever stands in it.
    EXPECT_THAT(headerLines("PrintMode=Private "
                            "com.kalmira.pde.print-mode-ovm.privatePassword='1\n2\xC3\xBC%@'"),
                Contains("@PJL COMMENT DSSC PRINT PRIVPRINT=1 2ü%@\r\n"));
}

TEST_F(JobHeaderProgramTest, ProtectedJobNeedsAHeader)
{
    usePPD("*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n");
    expectOnlyProtectedJobsRefused();
    // To libcups a header without an end is none.
    usePPD(replaced(Support::minimalPPD(printMode()),
                    "*JCLToPSInterpreter: \"@PJL ENTER LANGUAGE = POSTSCRIPT<0D0A>\"\n", ""));
    expectOnlyProtectedJobsRefused();
}

TEST_F(JobHeaderProgramTest, ProtectedJobNeedsTheMarkerOfThePrintMode)
{
    usePPD(Support::minimalPPD());
    expectOnlyProtectedJobsRefused();
}

TEST_F(JobHeaderProgramTest, ProtectedJobNeedsTheMarkerThatBeginsPJL)
{
    usePPD(replaced(Support::minimalPPD(printMode()), "<1B>%-12345X@PJL JOB", "@PJL JOB"));
    expectOnlyProtectedJobsRefused();
}

TEST_F(JobHeaderProgramTest, ProtectedJobNeedsAHeaderThatEntersALanguage)
{
    // Glued to a line that has no end, the words enter nothing.
    usePPDWith(jobControl("JCLLast", 99, {{"On", "@PJL COMMENT last"}}));
    expectOnlyProtectedJobsRefused();
}

TEST_F(JobHeaderProgramTest, WhereNothingEntersALanguageTheHeadersEndCounts)
{
    for (const std::string line :
         {"*JCLToPSInterpreter: \"\"\n", "*JCLToPSInterpreter: \"@PJL COMMENT pages<0D0A>\"\n",
          "*JCLToPSInterpreter: \"@pjl enter language<0D0A>\"\n"}) {
        usePPD(replaced(Support::minimalPPD(printMode()),
                        "*JCLToPSInterpreter: \"@PJL ENTER LANGUAGE = POSTSCRIPT<0D0A>\"\n", line));
        const auto result = runProgram(call(kPrivate));
        EXPECT_EQ(0, result.exitStatus) << line << result.errors;
        EXPECT_THAT(result.output, HasSubstr(kPrivateLine)) << line;
        EXPECT_THAT(result.output, EndsWith(std::string("pages") + kJobEnd)) << line;
    }
}

TEST_F(JobHeaderProgramTest, WhatThePPDPutsBehindTheLanguageLineIsNotMissed)
{
    usePPD(
        replaced(Support::minimalPPD(printMode()), "POSTSCRIPT<0D0A>", "POSTSCRIPT<0D0A>lost\n"));
    EXPECT_THAT(header(kPrivate), EndsWith(kPrivateLine + kEnterLine));
}

// A value at the beginning of a line, which only a PPD can put there, enters a language too early.
TEST_F(JobHeaderProgramTest, ProtectedJobNeedsAWalkToTheHeadersOwnEnd)
{
    const std::string enter = "JCLNote='Custom.@PJL ENTER LANGUAGE = PCL' ";
    for (const int order : {10, 99}) {
        usePPDWith(customNote("\\1\n", order));
        expectRefused(enter + kPrivate);
        expectRefused(enter + kStoredOnly);
        EXPECT_THAT(runProgram(call(enter)).output, HasSubstr("@PJL ENTER LANGUAGE = PCL\npages"))
            << order;
    }
}

TEST_F(JobHeaderProgramTest, ProtectionIsAskedForInAnyLetterCaseOfTheChoice)
{
    for (const std::string mode : {"private", "PRIVATE", "Private"})
        EXPECT_THAT(
            headerLines("com.kalmira.pde.print-mode-ovm.privatePassword=geheim PrintMode=" + mode),
            Contains(kPrivateLine));
    for (const std::string no : {"FALSE", "false", "fAlSe"})
        EXPECT_THAT(headerLines("StoreToDocStore=TRUE PrintAsWell=" + no), Contains(kBoxLine));
}

// Without a code the line of the PPD's own choice is all there is.
TEST_F(JobHeaderProgramTest, PrivateJobWithoutACodeNeedsAPPDThatHasTheChoice)
{
    usePPD(Support::minimalPPD(jobControl(
        "PrintMode", 20, {{"Normal", "@PJL COMMENT DSSC PRINT PRINTMODE=NORMAL<0D0A>"}})));
    expectRefused("PrintMode=Private");
    EXPECT_THAT(headerLines(kPrivate), Contains(kPrivateLine));
}

TEST_F(JobHeaderProgramTest, RefusedJobInAFileOfTheSchedulersLeavesTheFile)
{
    usePPD(Support::minimalPPD());
    const std::string path = folder.write("job.ps", "pages");
    auto job = call(kPrivate);
    job.arguments.push_back(path);
    expectRefused(job);
    EXPECT_EQ("pages", Support::readFile(path));
}
