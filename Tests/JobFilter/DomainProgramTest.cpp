// jobfilter-domain, as the administrator calls it.

#include "DirectoryServer.h"
#include "HiddenServices.h"
#include "Loopback.h"
#include "Program.h"
#include "RootsFiles.h"
#include "SSSDScript.h"
#include "ScriptedServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <regex>
#include <unistd.h>

using Support::DirectoryServer;
using Support::ProgramResult;
using Support::runProgram;
using Support::ScriptedServer;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr char kSSSDSocket[] = "/var/lib/sss/pipes/nss";
constexpr char kNoSSSD[] = "sssd: is not there: no socket /var/lib/sss/pipes/nss (N ms)\n";
constexpr char kNoWinbind[] = "winbind: is not there: no socket /run/samba/winbindd/pipe (N ms)\n";

class DomainProgramTest : public Support::RootsFilesTest {
protected:
    void SetUp() override
    {
        RootsFilesTest::SetUp();
        if (!IsSkipped() && !Support::hideServices())
            GTEST_SKIP() << "no mount namespace of the test's own";
    }

    /// Calls the program, as root unless the arguments say otherwise. Times become "N ms".
    ProgramResult call(const std::vector<std::string> &arguments) const
    {
        std::vector<std::string> all = {KL_DOMAIN};
        all.insert(all.end(), arguments.begin(), arguments.end());
        ProgramResult result =
            runProgram({.arguments = all,
                        .environment = {{"LDAPCONF", write("ldap.conf", _servers, 0644)},
                                        {"JOBFILTER_CONF", _folder.file("jobfilter.conf")}}});
        result.output = std::regex_replace(result.output, std::regex("[0-9]+[.][0-9] ms"), "N ms");
        return result;
    }

    ProgramResult ask(const std::string &userName = "anna") const
    {
        return call({"-u", "root", userName});
    }

    void settle(const std::string &lines) const { write("jobfilter.conf", lines, 0644); }

    std::string _servers; ///< ldap.conf
};

const Support::DirectoryContext kExample = {
    "dc=example,dc=com", "dn: dc=example,dc=com\nobjectClass: domain\ndc: example\n\n"
                         "dn: uid=anna,dc=example,dc=com\nobjectClass: account\n\n"};

} // namespace

TEST_F(DomainProgramTest, HostWithoutSourcesSaysSoOfEach)
{
    const ProgramResult result = ask();
    EXPECT_EQ(std::string(kNoSSSD) + kNoWinbind +
                  "ldap: is not there: ldap.conf(5) names no server (N ms)\nno domain\n",
              result.output);
    EXPECT_EQ("DEBUG: Unable to obtain authentication node: (null)\n", result.errors);
    EXPECT_EQ(1, result.exitStatus);
}

TEST_F(DomainProgramTest, FirstSourceThatKnowsTheUserIsTheLastThatIsAsked)
{
    KL_NEEDS_SSSD_LIBRARY();
    const ScriptedServer sssd(kSSSDSocket,
                              Support::SSSDScript::knowing("anna", "CN=Anna,DC=Corp,DC=Example"));
    const ProgramResult result = ask();
    EXPECT_EQ("sssd: knows the user, in the domain corp.example (N ms)\n"
              "domain: corp.example\n",
              result.output);
    EXPECT_EQ("INFO: Found 1 records for user anna\n"
              "DEBUG: Using sssd:corp.example as the authorisation node\n",
              result.errors);
    EXPECT_EQ(0, result.exitStatus);
}

TEST_F(DomainProgramTest, EachSourceIsToldInOrderAndTheNodeTooAndTheDomainLast)
{
    KL_NEEDS_SSSD_LIBRARY();
    const DirectoryServer server({kExample});
    const ScriptedServer sssd(kSSSDSocket, Support::SSSDScript::answeringBody("", ENOENT));
    const std::string dead = "ldap://127.0.0.1:" + std::to_string(Support::freePort());
    _servers = "URI " + dead + " " + server.uri() + "\n";
    const ProgramResult result = ask();
    EXPECT_EQ("sssd: does not know the user, or had no answer from its servers (N ms)\n" +
                  std::string(kNoWinbind) + dead +
                  ": the server cannot be reached (Can't contact LDAP server) (N ms)\n" +
                  server.uri() + ": knows the user: records 1 (N ms)\n" + server.uri() +
                  "/dc=example,dc=com: holds the user, and has no domain but what its name spells "
                  "(N ms)\ndomain: example.com\n",
              result.output);
    EXPECT_EQ(0, result.exitStatus);
}

TEST_F(DomainProgramTest, SettingsThatCannotBeUsedAreNamed)
{
    settle("DirectorySources files\n");
    const ProgramResult result = ask();
    const std::string why = _folder.file("jobfilter.conf") + ": line 1: unknown word \"files\"\n";
    EXPECT_EQ("nobody is asked: " + why + "no domain\n", result.output);
    EXPECT_EQ("DEBUG: Unable to create directory services session: " + why, result.errors);
    EXPECT_EQ(1, result.exitStatus);
}

TEST_F(DomainProgramTest, RootAsksAsTheFiltersUser)
{
    // What root could read, and the filter's user cannot.
    settle("DirectorySources ldap\nLDAPBind simple\nLDAPBindDN cn=a\nLDAPPasswordFile " +
           write("password", "secret\n", 0600) + "\n");
    EXPECT_THAT(call({"anna"}).output,
                StartsWith("nobody is asked: " + _folder.file("password") + ": Permission denied"));
    EXPECT_THAT(ask().output, StartsWith("ldap: "));
    std::filesystem::permissions(_folder.file("password"), std::filesystem::perms(0640));
    ASSERT_EQ(0, chown(_folder.file("password").c_str(), 0, 7)); // "lp"
    EXPECT_THAT(call({"anna"}).output, StartsWith("ldap: "));
}

TEST_F(DomainProgramTest, AnswersThatWouldCommandATerminalDoNot)
{
    KL_NEEDS_SSSD_LIBRARY();
    const std::string dn = "uid=anna\x1b[2J,o=Company";
    const ScriptedServer sssd(kSSSDSocket, Support::SSSDScript::knowing("anna", dn));
    const ProgramResult result = ask();
    EXPECT_THAT(result.output, HasSubstr("the user's entry lies in no domain: uid=anna [2J,o"));
    EXPECT_THAT(result.output, Not(HasSubstr("\x1b")));
}

TEST_F(DomainProgramTest, NameMayBeginWithAHyphenBehindTwo)
{
    EXPECT_EQ("DEBUG: Unable to obtain authentication node: (null)\n",
              call({"-u", "root", "--", "-anna"}).errors);
}

TEST_F(DomainProgramTest, HelpAndVersionAskNobody)
{
    for (const char *option : {"--help", "-h"}) {
        const ProgramResult help = call({option});
        EXPECT_THAT(help.output, StartsWith("Usage: jobfilter-domain [-u NAME] USER\n"));
        EXPECT_EQ(0, help.exitStatus);
    }
    for (const char *option : {"--version", "-V"}) {
        const ProgramResult version = call({option});
        EXPECT_THAT(version.output, testing::MatchesRegex("jobfilter-domain [0-9.]+\n"));
        EXPECT_EQ(0, version.exitStatus);
    }
}

TEST_F(DomainProgramTest, WrongCallIsRefused)
{
    for (const auto &arguments :
         std::vector<std::vector<std::string>>{{}, {"anna", "berta"}, {"-x", "anna"}, {"-u"}}) {
        const ProgramResult result = call(arguments);
        EXPECT_EQ(2, result.exitStatus);
        EXPECT_THAT(result.output, IsEmpty());
        EXPECT_THAT(result.errors, HasSubstr("Usage: jobfilter-domain"));
    }
}

TEST_F(DomainProgramTest, UnknownFilterUserIsRefused)
{
    const ProgramResult result = call({"--user", "nobody-of-that-name", "anna"});
    EXPECT_EQ(2, result.exitStatus);
    EXPECT_EQ("jobfilter-domain: no such user: nobody-of-that-name\n", result.errors);
}
