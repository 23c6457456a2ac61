#include "PrintJob.h"

#include "KeptSettings.h"
#include "QueueSettings.h"
#include "QueuesTest.h"
#include "TemporaryFolder.h"
#include "Waiting.h"
#include "commandLine.h"

#include <gmock/gmock.h>

#include <string>
#include <unistd.h>
#include <vector>

using Model::inEnglish;
using Model::JobStatus;
using Model::KeptSettings;
using Model::PrintJob;
using Model::Words;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

class PrintJobTest : public QueuesTest {
protected:
    void SetUp() override { printer().forgetJobs(); }

    /// A short document, of a page.
    std::string document() const
    {
        return folder.write("page.ps", "%!PS-Adobe-3.0\n%%Pages: 1\n%%EndComments\n"
                                       "%%Page: 1 1\nshowpage\n%%EOF\n");
    }

    static Model::QueueSettings settings()
    {
        std::string whyNot;
        return Model::QueueSettings(std::move(*PPD::open(KL_SAMPLE_PPD, &whyNot)));
    }

    static JobStatus follow(const PrintJob &job)
    {
        JobStatus last = {};
        EXPECT_TRUE(Support::comesTrue([&] {
            Words whyNot;
            const auto status = Model::statusOf(job, kBound, &whyNot);
            EXPECT_TRUE(status) << inEnglish(whyNot);
            last = status.value_or(JobStatus{JobStatus::State::Failed, {}});
            return last.isAtItsEnd() || last.state == JobStatus::State::Stopped;
        }));
        return last;
    }

    std::optional<PrintJob> print(const JobOptions &options) const
    {
        Words whyNot;
        auto job = Model::print(queue(), document(), "A title", options, kBound, &whyNot);
        EXPECT_TRUE(job) << inEnglish(whyNot);
        return job;
    }

    /// The lines of the only job that the printer has got, up to its pages.
    static std::string header()
    {
        printer().finishJobs();
        const auto jobs = printer().jobs();
        EXPECT_EQ(1U, jobs.size());
        return jobs.empty() ? "" : jobs[0].substr(0, jobs[0].find("%!PS"));
    }

    static std::string dssc(const std::string &setting)
    {
        return "@PJL COMMENT DSSC PRINT " + setting + "\r\n";
    }

    /// The header without what differs from job to job.
    static std::string withoutNumbers(std::string text)
    {
        const auto begin = text.find("@PJL JOB");
        return text.erase(begin, text.find('\n', begin) - begin);
    }

    Support::TemporaryFolder folder;
};

TEST_F(PrintJobTest, SettingsReachThePrinterAndTheJobIsFollowedUntilItHasThem)
{
    auto chosen = settings();
    EXPECT_EQ(std::nullopt, chosen.set("KLDepartmentCode", "Custom.0815"));
    EXPECT_EQ(std::nullopt, chosen.set("KLPrivatePIN", "Custom.0471"));
    EXPECT_EQ(std::nullopt, chosen.set("com.kalmira.username", "Käthe \"K\" O'Hara"));
    EXPECT_EQ(std::nullopt, chosen.set("com.kalmira.copies", "3"));
    const auto job = print(chosen.options());
    ASSERT_TRUE(job);
    EXPECT_EQ(JobStatus::State::Printed, follow(*job).state);
    EXPECT_THAT(header(),
                AllOf(HasSubstr(dssc("ACCESSCODE=0815")), HasSubstr("A title"),
                      HasSubstr(dssc("PRINTMODE=PRIVATE")), HasSubstr(dssc("PRIVPRINT=0471")),
                      HasSubstr(dssc("USERLOGIN=Käthe \"K\" O'Hara")),
                      HasSubstr("@PJL SET COPIES = 3\r\n")));
}

TEST_F(PrintJobTest, LongTextReachesTheFilter)
{
    const std::string text(9000, 'x');
    auto chosen = settings();
    chosen.set("StoreToDocStore", "True");
    EXPECT_EQ(std::nullopt, chosen.set("KLBoxName", "Custom." + text));
    const auto job = print(chosen.options());
    ASSERT_TRUE(job);
    follow(*job);
    EXPECT_THAT(header(), HasSubstr("BOXNAME=" + text + "\r\n"));
}

TEST_F(PrintJobTest, CommandLineOfTheSettingsPrintsTheSame)
{
    auto chosen = settings();
    chosen.set("KLBoxName", "Custom.x");
    chosen.set("StoreToDocStore", "True");
    chosen.set("KLBoxName", "Custom.Sales \"team\" it's $HOME #1");
    chosen.set("KLDepartmentCode", "Custom.0815");
    follow(print(chosen.options()).value());
    const std::string printed = header();
    printer().forgetJobs();
    const std::string title = " -t 'A title'";
    const std::string line = Model::commandLine(queue(), chosen.options(), document());
    runAtHome(folder.path(), {"/bin/sh", "-c", line + title});
    follow({server(), "office", scheduler().latestJob("office")});
    EXPECT_EQ(withoutNumbers(printed), withoutNumbers(header()));
    EXPECT_THAT(printed, HasSubstr("BOXNAME=Sales \"team\" it's $HOME #1\r\n"));
}

TEST_F(PrintJobTest, QueueOfTheOtherServerPrintsThereAndItsCommandLineToo)
{
    otherPrinter().forgetJobs();
    auto chosen = settings();
    chosen.set("KLDepartmentCode", "Custom.0815");
    Model::Queue other = queue();
    other.server = otherServer();
    Words whyNot;
    const auto job = Model::print(other, document(), "t", chosen.options(), kBound, &whyNot);
    ASSERT_TRUE(job) << inEnglish(whyNot);
    EXPECT_EQ(JobStatus::State::Printed, follow(*job).state);
    // lp(1) takes the first server unless the line says otherwise.
    runAtHome(folder.path(),
              {"/bin/sh", "-c", Model::commandLine(other, chosen.options(), document())});
    follow({otherServer(), "office", otherScheduler().latestJob("office")});
    otherPrinter().finishJobs();
    EXPECT_THAT(otherPrinter().jobs(), testing::SizeIs(2));
    EXPECT_THAT(otherPrinter().jobs(), testing::Each(HasSubstr(dssc("ACCESSCODE=0815"))));
    EXPECT_THAT(printer().jobs(), testing::IsEmpty());
}

TEST_F(PrintJobTest, FilterThatRefusesAJobIsHeard)
{
    const auto job = print({{"KLDepartmentCode", "Custom.47x11"}});
    ASSERT_TRUE(job);
    const JobStatus status = follow(*job);
    EXPECT_NE(JobStatus::State::Printed, status.state);
    EXPECT_THAT(status.message, HasSubstr("KLDepartmentCode must have 1 to 8 digits"));
    EXPECT_THAT(status.message, Not(HasSubstr("47x11")));
    Model::cancel(*job, kBound);
    scheduler().run({"cupsenable", "office"});
}

TEST_F(PrintJobTest, JobIsCancelled)
{
    printer().stall(true);
    const auto job = print({});
    ASSERT_TRUE(job);
    EXPECT_EQ(std::nullopt, Model::cancel(*job, kBound));
    EXPECT_EQ(JobStatus::State::Cancelled, follow(*job).state);
    printer().finishJobs();
    EXPECT_NE(std::nullopt, Model::cancel(*job, kBound)) << "it is over";
}

TEST_F(PrintJobTest, HeldJobIsHeldAndAJobThatIsUnknownIsSaid)
{
    const auto job = print({{"job-hold-until", "indefinite"}});
    ASSERT_TRUE(job);
    Words whyNot;
    EXPECT_EQ(JobStatus::State::Held, Model::statusOf(*job, kBound, &whyNot)->state);
    Model::cancel(*job, kBound);
    EXPECT_FALSE(Model::statusOf({server(), "office", 99999}, kBound, &whyNot));
    EXPECT_EQ("The server does not know the job any more", inEnglish(whyNot));
}

TEST_F(PrintJobTest, DocumentThatCannotBeReadIsSaid)
{
    for (const std::string &path :
         {folder.file("none.pdf"), folder.path(), std::string("/dev/zero")}) {
        Words whyNot;
        EXPECT_FALSE(Model::print(queue(), path, "t", {}, kBound, &whyNot));
        EXPECT_THAT(inEnglish(whyNot), HasSubstr("The file " + path + " cannot be read: "));
    }
}

TEST_F(PrintJobTest, QueueThatVanishesIsSaid)
{
    Words whyNot;
    EXPECT_FALSE(Model::print(queue("gone"), document(), "t", {}, kBound, &whyNot));
    EXPECT_EQ("The printer gone is not there any more", inEnglish(whyNot));
}

//
// What is kept, as CUPS' own programs see it
//

TEST_F(PrintJobTest, KeptSettingsCountForLp)
{
    const KeptSettings kept(folder.file(".cups/lpoptions"));
    kept.keep("office", {"", {{"KLDepartmentCode", "Custom.1111"}}});
    kept.keep("office", {"confidential",
                         {{"KLBoxName", "Custom.#1 \"a\" it's"}, {"StoreToDocStore", "True"}}});
    runAtHome(folder.path(), {"lp", "-d", "office", document()});
    follow({server(), "office", scheduler().latestJob("office")});
    EXPECT_THAT(header(), HasSubstr(dssc("ACCESSCODE=1111")));
    printer().forgetJobs();
    runAtHome(folder.path(), {"lp", "-d", "office/confidential", document()});
    follow({server(), "office", scheduler().latestJob("office")});
    EXPECT_THAT(header(), HasSubstr("BOXNAME=#1 \"a\" it's\r\n"));
    EXPECT_THAT(runAtHome(folder.path(), {"lpstat", "-e"}), HasSubstr("office/confidential"));
}

TEST_F(PrintJobTest, KeptSettingsOutliveLpoptionsAndItsOwnAreRead)
{
    const KeptSettings kept(folder.file(".cups/lpoptions"));
    kept.keep("office", {"", {{"KLWatermarkText", "Custom.Top secret, it's \"x\" \\"}}});
    kept.keep("office", {"a", {{"Duplex", "DuplexTumble"}}});
    std::vector<std::string> command = {"lpoptions", "-p", "office", "-o", "number-up=2"};
    if (getuid() == 0) {
        // Root's would go to /etc/cups since CUPS 2.4.10 at the latest.
        constexpr uid_t kSomebody = 65534;
        for (const char *name : {"", ".cups", ".cups/lpoptions"})
            ASSERT_EQ(0, chown(folder.file(name).c_str(), kSomebody, kSomebody));
        const std::vector<std::string> asSomebody = {"setpriv", "--reuid",
                                                     std::to_string(kSomebody), "--clear-groups"};
        command.insert(command.begin(), asSomebody.begin(), asSomebody.end());
    }
    runAtHome(folder.path(), command);
    std::optional<Words> whyNot;
    const auto sets = kept.setsOf("office", &whyNot);
    ASSERT_EQ(2U, sets.size());
    EXPECT_THAT(sets[0].options,
                testing::IsSupersetOf(JobOptions{
                    {"KLWatermarkText", "Custom.Top secret, it's \"x\" \\"}, {"number-up", "2"}}));
    EXPECT_THAT(sets[1].options, testing::Contains(std::pair("Duplex", "DuplexTumble")));
}

} // namespace
