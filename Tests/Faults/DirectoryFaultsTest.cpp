// What becomes of a job whose user's domain is looked up when any one of the calls fails that lead
// to the directory: the filter's own, and those of the children that ask the servers.

#include "FaultTest.h"

#include "DirectoryServer.h"
#include "HiddenServices.h"
#include "MinimalPPD.h"
#include "SSSDScript.h"
#include "ScriptedServer.h"
#include "WinbindScript.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <gmock/gmock.h>
#include <optional>
#include <unistd.h>

namespace calls = Support::SystemCalls;
using Support::Fault;
using Support::FaultedRun;
using testing::IsEmpty;

namespace {

constexpr char kSuffix[] = "dc=example,dc=com";
const std::string kDomain = "example.com";

/// The beginnings of the lines that say why a job has no domain.
const std::vector<std::string> kReasons = {
    "DEBUG: Unable to create directory services session: ",
    "DEBUG: Unable to obtain authentication node: ",
    "DEBUG: Unable to query authentication node: ",
    "DEBUG: None of the authentication directory services can be queried",
    "ERROR: Unable to inspect directory node ",
    "DEBUG: Unable to inspect attributes of directory node ",
    "DEBUG: Unable to query the domain name from the authentication directory service node"};

class DirectoryFaultsTest : public FaultTest {
protected:
    DirectoryFaultsTest() { learnJob(kDomain); }

    /// Prints without fault, with that domain.
    void learnJob(const std::string &expected)
    {
        whole = Support::runProgram(call()).output;
        const auto domain = whole.find("DOMAINNAME=" + expected + "\r\n");
        withoutDomain.clear();
        if (domain != std::string::npos)
            withoutDomain = std::string(whole).erase(whole.find(expected, domain), expected.size());
    }

    Support::ProgramCall call() const
    {
        return {.arguments = {JOBFILTER_PROGRAM, "7", "anna", "Report", "1",
                              "UseOpenDirectoryForAuthentication=true"},
                .environment = {{"PPD", ppd},
                                {"TMPDIR", temporaries},
                                {"LDAPCONF", settings},
                                {"JOBFILTER_CONF", sources}},
                .input = "%!PS\n"};
    }

    /// The job with its domain, or with an empty one and a line that says why.
    void expectAllOrALine(const NamedFault &fault, const FaultedRun &run)
    {
        EXPECT_EQ(0, run.result.exitStatus);
        EXPECT_THAT(temporaryFiles(), IsEmpty());
        if (run.result.output == whole)
            return;
        EXPECT_EQ(withoutDomain, run.result.output);
        EXPECT_TRUE(lostItsLine(fault, run) || givesReason(run.result.errors));
        ++jobsWithoutDomain;
    }

    static bool givesReason(const std::string &errors)
    {
        return std::ranges::any_of(saidLines(errors), [](const std::string &line) {
            return std::ranges::any_of(
                kReasons, [&](const std::string &reason) { return line.starts_with(reason); });
        });
    }

    std::uint64_t strike(const NamedFault &fault)
    {
        // Most of the questioners' calls load libraries.
        return strikeEveryCall(
            fault, [this] { return call(); },
            [&](const FaultedRun &run) { expectAllOrALine(fault, run); },
            fault.fault.ofChildren ? stepOfMany() : 1);
    }

    std::uint64_t strikeAnyCallOfTheQuestioners()
    {
        std::uint64_t struck = 0;
        auto faults = faultsOfSystemCalls();
        std::erase_if(faults, [](const auto &fault) { return fault.fault.systemCalls.empty(); });
        for (const int error : {EINTR, ENOBUFS, ECONNRESET})
            faults.push_back({"network: error " + std::to_string(error),
                              {Fault::Kind::Fails, calls::kNetwork, error}});
        for (NamedFault &fault : faults) {
            fault.fault.ofChildren = true;
            struck += strike(fault);
        }
        return struck;
    }

    const Support::DirectoryServer server{
        {{kSuffix, std::string("dn: ") + kSuffix + "\nobjectClass: domain\ndc: example\n\n" +
                       "dn: uid=anna," + kSuffix + "\nobjectClass: account\n\n"}}};
    const std::string settings = folder.write("ldap.conf", "URI " + server.uri() + "\n");
    std::string sources = folder.file("jobfilter.conf"); // not there: all of them
    const std::string ppd = folder.write(
        "queue.ppd",
        Support::minimalPPD(
            "*JCLOpenUI *JCLPrintMode: PickOne\n*OrderDependency: 10 JCLSetup *JCLPrintMode\n"
            "*DefaultJCLPrintMode: Normal\n"
            "*JCLPrintMode Normal: \"@PJL COMMENT DSSC PRINT PRINTMODE=NORMAL<0D><0A>\"\n"
            "*JCLCloseUI: *JCLPrintMode\n"));
    std::string whole;
    std::string withoutDomain; // empty if the whole had none
    int jobsWithoutDomain = 0;
};

/// The same with a local source in place of LDAP.
class LocalSourceFaultsTest : public DirectoryFaultsTest,
                              public testing::WithParamInterface<std::string> {
protected:
    void SetUp() override
    {
        if (GetParam() == "sssd")
            KL_NEEDS_SSSD_LIBRARY();
        if (geteuid() != 0 || !Support::hideServices())
            GTEST_SKIP() << "no mount namespace of the test's own";
        askAlone(GetParam());
    }

    std::optional<Support::ScriptedServer> daemon;

private:
    void askAlone(const std::string &source)
    {
        using namespace Support;
        sources = folder.write("jobfilter.conf", "DirectorySources " + source + "\n");
        if (source == "sssd")
            daemon.emplace("/var/lib/sss/pipes/nss",
                           SSSDScript::knowing("anna", "CN=Anna,DC=corp,DC=test"), 100'000);
        else
            daemon.emplace("/run/samba/winbindd/pipe",
                           WinbindScript::answering(&WinbindScript::answer), 100'000);
        learnJob("corp.test");
        ASSERT_NE("", withoutDomain) << whole;
    }
};

} // namespace

TEST_F(DirectoryFaultsTest, AnyCallThatBringsQuestionersThatFails)
{
    ASSERT_NE("", withoutDomain) << whole;
    for (const auto &[systemCalls, error] :
         {std::pair(calls::kPipe, EMFILE), std::pair(calls::kStart, EAGAIN),
          std::pair(calls::kWait, EINTR), std::pair(calls::kNetwork, EINTR),
          std::pair(calls::kNetwork, ENOMEM)})
        EXPECT_LT(0U,
                  strike({std::to_string(systemCalls.front()) + ", error " + std::to_string(error),
                          {Fault::Kind::Fails, systemCalls, error}}));
    EXPECT_LT(0, jobsWithoutDomain);
}

TEST_F(DirectoryFaultsTest, AnyCallOfTheQuestionersThatFails)
{
    ASSERT_NE("", withoutDomain) << whole;
    EXPECT_LT(70U, strikeAnyCallOfTheQuestioners());
    EXPECT_LT(5, jobsWithoutDomain);
}

TEST_F(DirectoryFaultsTest, QuestionerKilledAtAnyTime)
{
    ASSERT_NE("", withoutDomain) << whole;
    EXPECT_LT(20U, strike({"SIGKILL", {Fault::Kind::Signalled, calls::kAll, SIGKILL, true}}));
    EXPECT_LT(20, jobsWithoutDomain);
}

TEST_P(LocalSourceFaultsTest, AnyCallOfTheQuestionersThatFails)
{
    EXPECT_LT(20U, strikeAnyCallOfTheQuestioners());
    EXPECT_LT(5, jobsWithoutDomain);
}

TEST_P(LocalSourceFaultsTest, QuestionerKilledAtAnyTime)
{
    EXPECT_LT(5U, strike({"SIGKILL", {Fault::Kind::Signalled, calls::kAll, SIGKILL, true}}));
    EXPECT_LT(5, jobsWithoutDomain);
}

INSTANTIATE_TEST_SUITE_P(, LocalSourceFaultsTest, testing::Values("sssd", "winbind"),
                         [](const auto &instance) { return instance.param; });
