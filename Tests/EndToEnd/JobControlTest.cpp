#include "EndToEndTest.h"

#include "PDFBuilder.h"

using Support::lpOption;
using Support::PJLJob;
using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

/// What a job can make the printer hear that is no setting of its own.
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

    /// Would be three lines, if it were more than a text.
    static constexpr char kEvilTitle[] = "name job-name \"fine\n@PJL INITIALIZE\n\"";
    inline static const std::string kCode = "com.kalmira.pde.print-mode-ovm.privatePassword=";

    /// Prints a job of the title kEvilTitle.
    static void expectNoLineOfItsOwn(const std::vector<IPPRequest> &requests)
    {
        const auto lines =
            headerLines(finishedJob(submitRequests(kQueue, document("sample.ps"), requests)));
        EXPECT_THAT(lines, Contains(AnyOf(StartsWith("@PJL JOB NAME = \"fine @PJL INITIALIZE \""),
                                          StartsWith("@PJL JOB NAME = \"Untitled\""))));
        EXPECT_EQ(headerWith({"-t", "fine"}).size(), lines.size());
    }

    /// Our printer has no SNMP agent to be asked.
    static std::string samplePPD()
    {
        return Support::readFile(KL_SAMPLE_PPD) + "*cupsSNMPSupplies: False\n";
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

TEST_F(JobControlTest, SecondTitleOfARequestSpeaksNoPJL)
{
    expectNoLineOfItsOwn({{"Print-Job", {"name job-name fine", kEvilTitle}}});
}

TEST_F(JobControlTest, SecondTitleAmongTheJobsAttributesSpeaksNoPJL)
{
    expectNoLineOfItsOwn({{"Print-Job", {"name job-name fine"}, {kEvilTitle}}});
}

TEST_F(JobControlTest, SecondTitleOfAJobWhoseDocumentFollowsSpeaksNoPJL)
{
    expectNoLineOfItsOwn(
        {{"Create-Job", {"name job-name fine", kEvilTitle}, {}, false},
         {"Send-Document", {"integer job-id $job-id", "boolean last-document true"}}});
}

// libcups itself leaves it as it is in one of the three places that have it in quotes.
TEST_F(JobControlTest, QuoteInTheUserEndsNoText)
{
    const int job = scheduler().submit(
        {"-U", "an\"na", "-t", "say \"hi\"", "-d", kQueue, document("sample.ps")});
    const auto lines = headerLines(finishedJob(job));
    EXPECT_THAT(lines, Contains("@PJL JOB NAME = \"say 'hi'\" DISPLAY = \"" + std::to_string(job) +
                                " an'na say 'hi'\""));
    EXPECT_THAT(lines, Contains("@PJL SET USERNAME = \"an'na\""));
    EXPECT_THAT(lines, Contains(dssc("USERLOGIN=an\"na")));
}

TEST_F(JobControlTest, EscapeInACustomChoiceStaysInPJL)
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
)";
    const Support::TemporaryFolder folder;
    const std::string ppd = folder.write("custom.ppd", samplePPD() + kOption);
    scheduler().addQueue("custom", ppd, printer().deviceURI());
    EXPECT_THAT(
        headerLines(print("custom", document("sample.ps"), {"JCLNote=Custom.a\033%-12345X"})),
        // Schedulers from CUPS 2.4.17 on leave it out themselves.
        Contains(AnyOf("@PJL COMMENT a %-12345X", "@PJL COMMENT a%-12345X")));
}

// libcups cuts what it shows on the panel at 32 bytes, and where that is depends on the number.
TEST_F(JobControlTest, LongNamesInAnyScriptKeepTheirSettings)
{
    const Support::TemporaryFolder folder;
    const std::string ppd = folder.write("office.ppd", samplePPD());
    // The number's digits and the letter in front move the name byte by byte against the cut.
    for (const int firstJob : {1, 1000, 100000}) {
        const Support::PrivateScheduler scheduler({KL_CHAIN}, firstJob);
        scheduler.addQueue(kQueue, ppd, printer().deviceURI());
        for (const std::string user :
             {"ÄÖÜäöüÄÖÜäöüÄÖÜäöü", "aÄÖÜäöüÄÖÜäöüÄÖÜäöü", "АлександраКонстантинова",
              "aАлександраКонстантинова", "山田太郎山田太郎山田太郎", "a山田太郎山田太郎山田太郎",
              "ab山田太郎山田太郎山田太郎"}) {
            printer().forgetJobs();
            const int job = scheduler.submit({"-U", user, "-t", "title", "-d", kQueue, "-o",
                                              "PrintMode=Private", "-o", kCode + "1234",
                                              document("sample.ps")});
            ASSERT_EQ("completed", scheduler.waitForJob(job).state) << scheduler.log(job);
            ASSERT_EQ(1U, printer().jobs().size());
            const std::string bytes = printer().jobs()[0];
            EXPECT_THAT(Support::problemsOfPJLJob(bytes), IsEmpty()) << job << user;
            EXPECT_THAT(bytes, HasSubstr("DISPLAY = \"" + std::to_string(job) + " "));
            EXPECT_THAT(Support::linesOf(bytes), Contains(dssc("USERLOGIN=" + user + "\r\n")));
            EXPECT_THAT(Support::linesOf(bytes), Contains(dssc("PRIVPRINT=1234\r\n")));
            EXPECT_GE(job, firstJob);
        }
    }
}

// The scheduler's own word for a job that its filters give up.
TEST_F(JobControlTest, ProtectedJobThatCannotBeProtectedIsNotPrinted)
{
    const int job = scheduler().submit({"-d", kHeadlessQueue, "-o", "PrintMode=Private", "-o",
                                        kCode + "1234", document("sample.ps")});
    EXPECT_NE("completed", scheduler().waitForJob(job).state);
    printer().finishJobs();
    for (const std::string &bytes : printer().jobs())
        EXPECT_EQ("", bytes);
    EXPECT_THAT(scheduler().log(job),
                HasSubstr("Unable to create the job header of a protected job"));
    EXPECT_THAT(strayFiles(), IsEmpty());
    scheduler().run({"cancel", "-a"});
    scheduler().run({"cupsenable", kHeadlessQueue});
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
    const std::string body = bodyOf(kQueue, "application/postscript", postScript());
    // Where PDF is made on the way, what was put in is no PostScript: the header is all there is.
    if (!wasPDFOnTheWay(scheduler().latestJob(kQueue))) {
        EXPECT_THAT(body, HasSubstr("%%EndProlog"));
    }
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
