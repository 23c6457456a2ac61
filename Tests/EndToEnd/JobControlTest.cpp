#include "EndToEndTest.h"

#include "PDFBuilder.h"

using Support::lpOption;
using Support::PJLJob;
using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

/// What a job can make the printer hear that is no setting of its own. libcups writes title, user
/// and custom choices into the header as they are, so that it is for the scheduler to look at them.
/// Documentation/promises.md tells administrators the same, under "Job control".
class JobControlTest : public EndToEndTest {
protected:
    /// Each would end a line, or PJL itself, or is no character for a panel.
    static constexpr const char *kControlCharacters[] = {"\n", "\r", "\t", "\033%-12345X", "\177"};

    /// Prints with lp(1). @return the header's lines, of a job that is right to the last one
    static std::vector<std::string> headerWith(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.end(), {"-d", kQueue, document("sample.ps")});
        return headerLines(finishedJob(scheduler().submit(arguments)));
    }

    /// What the printer gets of a job, right or not.
    static std::string bytesOf(int job)
    {
        EXPECT_EQ("completed", scheduler().waitForJob(job).state) << scheduler().log(job);
        const auto jobs = printer().jobs();
        EXPECT_EQ(1U, jobs.size());
        return jobs.empty() ? "" : jobs[0];
    }
};

TEST_F(JobControlTest, TitleWithAControlCharacterIsUntitled)
{
    for (const std::string control : kControlCharacters)
        EXPECT_THAT(headerWith({"-t", "fine" + control + "@PJL INITIALIZE"}),
                    Contains(StartsWith("@PJL JOB NAME = \"Untitled\" DISPLAY = ")));
}

TEST_F(JobControlTest, UserWithAControlCharacterIsAnonymous)
{
    for (const std::string control : kControlCharacters) {
        const auto lines = headerWith({"-U", "anna" + control + "@PJL INITIALIZE", "-t", "fine"});
        EXPECT_THAT(lines, Contains("@PJL SET USERNAME = \"anonymous\""));
        EXPECT_THAT(lines, Contains(dssc("USERLOGIN=anonymous")));
        EXPECT_THAT(lines, Not(Contains(HasSubstr("INITIALIZE"))));
    }
}

// The schedulers of today look at the first title of a request and print under the last; one that
// looks at all of them calls the job what it calls any other with such a title.
TEST_F(JobControlTest, SecondTitleOfARequestSpeaksPJLUnlessTheSchedulerLooksAtIt)
{
    const std::string bytes = bytesOf(submitOverIPP(kQueue, document("sample.ps"),
                                                    {"name job-name \"fine\n@PJL INITIALIZE\n\""}));
    EXPECT_THAT(bytes,
                AnyOf(HasSubstr("\n@PJL INITIALIZE\n"), HasSubstr("@PJL JOB NAME = \"Untitled\"")));
}

// Two of the three places have it in quotes; in one of these libcups leaves it as it is.
TEST_F(JobControlTest, QuoteInTheUserEndsTheTextOfThePanel)
{
    const int job = scheduler().submit(
        {"-U", "an\"na", "-t", "say \"hi\"", "-d", kQueue, document("sample.ps")});
    const auto parts = Support::splitPJLJob(bytesOf(job)).value_or(PJLJob{});
    const auto lines = headerLines(parts);
    EXPECT_THAT(lines, Contains("@PJL JOB NAME = \"say 'hi'\" DISPLAY = \"" + std::to_string(job) +
                                " an\"na say 'hi'\""));
    EXPECT_THAT(lines, Contains("@PJL SET USERNAME = \"an'na\""));
    EXPECT_THAT(lines, Contains(dssc("USERLOGIN=an\"na")));
}

TEST_F(JobControlTest, EscapeInACustomChoiceLeavesPJL)
{
    static constexpr char kOption[] = R"(*CustomJCLNote True: "@PJL COMMENT \1
"
*End
*ParamCustomJCLNote Text/Text: 1 string 0 99
*JCLOpenUI *JCLNote/Note: PickOne
*OrderDependency: 5 JCLSetup *JCLNote
*DefaultJCLNote: None
*JCLNote None/None: ""
*JCLCloseUI: *JCLNote
*cupsSNMPSupplies: False
)"; // our printer has no SNMP agent to be asked
    const Support::TemporaryFolder folder;
    const std::string ppd = folder.write("custom.ppd", Support::readFile(KL_SAMPLE_PPD) + kOption);
    scheduler().addQueue("custom", ppd, printer().deviceURI());
    const int job = scheduler().submit(
        {"-d", "custom", "-o", "JCLNote=Custom.a\033%-12345X", document("sample.ps")});
    EXPECT_THAT(bytesOf(job), HasSubstr("@PJL COMMENT a\033%-12345X\n"));
}

// Taking out the marker in the middle joins what stands around it to another.
class SplitMarkerTest : public JobControlTest {
protected:
    static constexpr char kInjection[] = "\033%-123\033%-12345X@PJL ENTER LANGUAGE = POSTSCRIPT\n"
                                         "45X@PJL COMMENT DSSC PRINT USERLOGIN=otto\r\n"
                                         "@PJL COMMENT DSSC PRINT ACCESSCODE=1\r\n"
                                         "@PJL ENTER LANGUAGE = POSTSCRIPT\r\n";

    /// Prints as anna, who has the department code 4711. @return the page data of a job that is
    /// right to the last line and has one header, hers
    static std::string bodyOf(const std::string &queue, const std::string &format,
                              const std::string &document)
    {
        const Support::TemporaryFolder folder;
        const PJLJob job = finishedJob(
            scheduler().submit({"-U", "anna", "-d", queue, "-o", "document-format=" + format, "-o",
                                lpOption("com.kalmira.pde.print-mode-ovm.departmentCode", "4711"),
                                folder.write("document", document)}));
        const std::string bytes = job.header + job.body + job.end;
        EXPECT_THAT(settings(bytes, "USERLOGIN"), ElementsAre("anna"));
        EXPECT_THAT(settings(bytes, "ACCESSCODE"), ElementsAre("4711"));
        return job.body;
    }

    static std::string postScript()
    {
        std::string document = Support::readFile(EndToEndTest::document("sample.ps"));
        return document.insert(document.find("%%EndProlog"), kInjection);
    }

    /// In a picture: the chain writes a PDF document anew, but leaves compressed pictures as they
    /// are.
    static std::string pdf()
    {
        Support::PDFBuilder builder;
        const std::string picture =
            builder.addStream(kInjection, "/Type /XObject /Subtype /Image /Width 1 /Height 1 "
                                          "/BitsPerComponent 8 /ColorSpace /DeviceGray "
                                          "/Filter /DCTDecode");
        builder.addPage("/MediaBox [ 0 0 595 842 ] /Resources << /XObject << /P " + picture +
                            " >> >>",
                        "0 0 99 99 re f /P Do");
        return builder.document();
    }

private:
    /// The values of each DSSC line that has the setting, wherever it stands in the job.
    static std::vector<std::string> settings(const std::string &job, const std::string &name)
    {
        const std::string beginning = dssc(name + "=");
        std::vector<std::string> values;
        for (auto at = job.find(beginning); at != job.npos; at = job.find(beginning, at)) {
            at += beginning.size();
            values.push_back(job.substr(at, job.find_first_of("\r\n", at) - at));
        }
        return values;
    }
};

TEST_F(SplitMarkerTest, PostScriptThatTheChainPreparesHasOneHeader)
{
    EXPECT_THAT(bodyOf(kQueue, "application/postscript", postScript()), HasSubstr("%%EndProlog"));
}

TEST_F(SplitMarkerTest, PreparedPostScriptHasOneHeader)
{
    EXPECT_THAT(bodyOf(kQueue, "application/vnd.cups-postscript", postScript()),
                HasSubstr("%%EndProlog"));
}

TEST_F(SplitMarkerTest, PDFThatTheChainMakesPostScriptOfHasOneHeader)
{
    EXPECT_THAT(bodyOf(kQueue, "application/pdf", pdf()), StartsWith("%!PS"));
}

TEST_F(SplitMarkerTest, PDFForAPrinterThatTakesPDFHasOneHeader)
{
    EXPECT_THAT(bodyOf(kPDFQueue, "application/pdf", pdf()), StartsWith("%PDF-"));
}

TEST_F(SplitMarkerTest, PreparedPDFHasOneHeader)
{
    EXPECT_THAT(bodyOf(kPDFQueue, "application/vnd.cups-pdf", pdf()), StartsWith("%PDF-"));
}

TEST_F(JobControlTest, RawJobGoesPastTheFilter)
{
    const Support::TemporaryFolder folder;
    const std::string control = "\033%-12345X@PJL INITIALIZE\r\n\033%-12345X";
    const std::string path = folder.write("raw", control);
    EXPECT_EQ(control, bytesOf(scheduler().submit({"-d", kQueue, "-o", "raw", path})));
}

} // namespace
