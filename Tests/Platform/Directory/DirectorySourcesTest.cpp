#include "DirectorySources.h"

#include "DirectoryServer.h"
#include "Environment.h"
#include "HiddenServices.h"
#include "RootsFiles.h"
#include "SSSDQuestion.h"
#include "SSSDScript.h"
#include "WinbindQuestion.h"
#include "WinbindScript.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/mount.h>
#include <unistd.h>

using Platform::DirectorySources;
using Platform::SourceReport;
using Support::DirectoryServer;
using Support::ScriptedServer;
using Support::SSSDScript::knowing;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

void keepSilent(int, int)
{
    for (;;)
        pause();
}

/// A host with none, one or several sources.
class DirectorySourcesTest : public Support::RootsFilesTest {
protected:
    void SetUp() override
    {
        RootsFilesTest::SetUp();
        if (!IsSkipped() && !Support::hideServices())
            GTEST_SKIP() << "no mount namespace of the test's own";
        nameServers("");
    }

    /// Makes these the LDAP servers of the host's configuration.
    void nameServers(const std::string &uris)
    {
        const std::string line = uris.empty() ? "" : "URI " + uris + "\n";
        _configuration.emplace("LDAPCONF", write("ldap.conf", line, 0644));
    }

    void settle(const std::string &lines) { write("settings", lines, 0644); }

    std::unique_ptr<DirectorySources> open()
    {
        return DirectorySources::open(
            _folder.file("settings"), &_error,
            [this](const SourceReport &report) { _asked.push_back(report.source); }, _limits);
    }

    /// The node of the last record of the user; "none" without a record.
    std::string nodeOf(const std::string &userName)
    {
        const auto directory = open();
        if (!directory || !directory->openAuthenticationNode() ||
            !directory->prepareQueryForUser(userName, &_error))
            return "no directory";
        const std::size_t count = directory->runQuery();
        if (count == 0)
            return "none";
        return Platform::firstValue(*directory->recordDetails(count - 1),
                                    Platform::kODAttributeTypeMetaNodeLocation)
            .value_or("nowhere");
    }

    std::string error() const { return _error ? _error->description().value_or("") : "none"; }

    std::optional<Support::ScopedEnvironment> _configuration;
    Platform::DirectoryTimeLimits _limits;
    std::optional<KLError> _error;
    std::vector<std::string> _asked; ///< the sources that said something, in order
};

const ScriptedServer::Script kSSSD = knowing("anna", "CN=Anna,DC=Corp,DC=Example");

const Support::DirectoryContext kExample = {
    "dc=example,dc=com", "dn: dc=example,dc=com\nobjectClass: domain\ndc: example\n\n"
                         "dn: uid=anna,dc=example,dc=com\nobjectClass: account\n\n"};

} // namespace

TEST_F(DirectorySourcesTest, HostWithoutSourcesHasNoAuthenticationNode)
{
    EXPECT_EQ("no directory", nodeOf("anna"));
    EXPECT_EQ("none", error());
}

TEST_F(DirectorySourcesTest, EachSourceIsAskedWhereItIsThere)
{
    KL_NEEDS_SSSD_LIBRARY();
    {
        const ScriptedServer sssd(Platform::kSSSDSocket, kSSSD);
        EXPECT_EQ("sssd:corp.example", nodeOf("anna"));
        unlink(Platform::kSSSDSocket);
    }
    {
        const ScriptedServer winbind(
            Platform::kWinbindSocket,
            Support::WinbindScript::answering(&Support::WinbindScript::answer));
        EXPECT_EQ("winbind:corp.test", nodeOf("anna"));
        unlink(Platform::kWinbindSocket);
    }
    const DirectoryServer server({kExample});
    nameServers(server.uri());
    EXPECT_EQ(server.uri() + "/dc=example,dc=com", nodeOf("anna"));
}

TEST_F(DirectorySourcesTest, FirstSourceWithARecordWinsAndTheOthersAreNotAsked)
{
    KL_NEEDS_SSSD_LIBRARY();
    const ScriptedServer sssd(Platform::kSSSDSocket, kSSSD);
    const ScriptedServer winbind(Platform::kWinbindSocket, &keepSilent);
    const ScriptedServer ldap(&keepSilent);
    nameServers(ldap.uri());
    EXPECT_EQ("sssd:corp.example", nodeOf("anna"));
    EXPECT_EQ(0, winbind.connections());
    EXPECT_EQ(0, ldap.connections());
    EXPECT_THAT(_asked, ElementsAre("sssd"));
}

TEST_F(DirectorySourcesTest, SourceThatDoesNotKnowTheUserHandsOn)
{
    const ScriptedServer sssd(Platform::kSSSDSocket, knowing("berta", "CN=Berta,DC=a"));
    const ScriptedServer winbind(Platform::kWinbindSocket, Support::WinbindScript::answering(
                                                               &Support::WinbindScript::answer));
    EXPECT_EQ("winbind:corp.test", nodeOf("anna"));
    const DirectoryServer server({kExample});
    nameServers(server.uri());
    EXPECT_EQ("none", nodeOf("carla"));
    EXPECT_THAT(_asked, ElementsAre("sssd", "winbind", "sssd", "winbind", server.uri()));
}

TEST_F(DirectorySourcesTest, SourceThatHangsHandsOnAfterItsTime)
{
    KL_NEEDS_SSSD_LIBRARY();
    _limits.localAnswer = 300ms;
    const ScriptedServer sssd(Platform::kSSSDSocket, &keepSilent);
    const ScriptedServer winbind(Platform::kWinbindSocket, &keepSilent);
    const DirectoryServer server({kExample});
    nameServers(server.uri());
    const auto begin = Clock::now();
    EXPECT_EQ(server.uri() + "/dc=example,dc=com", nodeOf("anna"));
    EXPECT_GE(Clock::now() - begin, 600ms);
}

TEST_F(DirectorySourcesTest, AllTogetherHaveTheSessionsTime)
{
    KL_NEEDS_SSSD_LIBRARY();
    _limits = {.localAnswer = 400ms, .serverAnswer = 20s, .session = 1s};
    const ScriptedServer sssd(Platform::kSSSDSocket, &keepSilent);
    const ScriptedServer ldap(&keepSilent);
    nameServers(ldap.uri());
    const auto begin = Clock::now();
    EXPECT_EQ("none", nodeOf("anna"));
    EXPECT_GE(Clock::now() - begin, 900ms);
    EXPECT_LT(Clock::now() - begin, 10s);
}

TEST_F(DirectorySourcesTest, LocalAnswersHaveThreeSecondsAndTheWholeTen)
{
    const Platform::DirectoryTimeLimits limits;
    EXPECT_EQ(3s, limits.localAnswer);
    EXPECT_EQ(5s, limits.serverAnswer);
    EXPECT_EQ(10s, limits.session);
}

TEST_F(DirectorySourcesTest, SettingsSayTheOrder)
{
    const ScriptedServer sssd(Platform::kSSSDSocket, kSSSD);
    const ScriptedServer winbind(Platform::kWinbindSocket, Support::WinbindScript::answering(
                                                               &Support::WinbindScript::answer));
    settle("DirectorySources winbind sssd\n");
    EXPECT_EQ("winbind:corp.test", nodeOf("anna"));
    settle("DirectorySources ldap\n");
    EXPECT_EQ("no directory", nodeOf("anna"));
    EXPECT_EQ("none", error());
}

TEST_F(DirectorySourcesTest, LDAPWithoutServersIsPassedOver)
{
    KL_NEEDS_SSSD_LIBRARY();
    const ScriptedServer sssd(Platform::kSSSDSocket, kSSSD);
    settle("DirectorySources ldap sssd\n");
    EXPECT_EQ("sssd:corp.example", nodeOf("anna"));
    EXPECT_THAT(_asked, ElementsAre("ldap", "sssd"));
}

TEST_F(DirectorySourcesTest, SettingsThatCannotBeUsedAskNobody)
{
    const ScriptedServer sssd(Platform::kSSSDSocket, kSSSD);
    settle("DirectorySources sssd\nSomething else\n");
    EXPECT_EQ("no directory", nodeOf("anna"));
    EXPECT_EQ(_folder.file("settings") + ": line 2: unknown word \"Something\"", error());
    write("settings", "DirectorySources sssd\n", 0666);
    EXPECT_EQ("no directory", nodeOf("anna"));
    EXPECT_EQ(_folder.file("settings") + ": others than root may write it", error());
    EXPECT_EQ(0, sssd.connections());
    EXPECT_THAT(_asked, IsEmpty());
}

TEST_F(DirectorySourcesTest, NameThatIsNotUTF8CannotBeAskedFor)
{
    const ScriptedServer sssd(Platform::kSSSDSocket, kSSSD);
    EXPECT_EQ("no directory", nodeOf("J\xfcrgen"));
    EXPECT_EQ("The user name is not UTF-8", error());
    EXPECT_EQ(0, sssd.connections());
}

TEST_F(DirectorySourcesTest, SignInReachesTheServers)
{
    const DirectoryServer server({kExample});
    nameServers(server.uri());
    const std::string password = write("password", "secret\n", 0640);
    settle("LDAPBind simple\nLDAPBindDN cn=a\nLDAPPasswordFile " + password + "\n");
    std::vector<std::string> answers;
    const auto directory =
        DirectorySources::open(_folder.file("settings"), &_error, [&](const SourceReport &report) {
            answers.push_back(report.answer);
        });
    ASSERT_TRUE(directory && directory->prepareQueryForUser("anna", &_error));
    EXPECT_EQ(0U, directory->runQuery());
    EXPECT_THAT(answers,
                testing::Contains("A password is sent over ldaps: or after StartTLS only"));
}

TEST_F(DirectorySourcesTest, DomainInPlaceOfAServerWhoseServersTheDNSDoesNotTell)
{
    // Nobody listens there.
    const std::string resolver = write("resolv.conf", "nameserver 127.0.0.254\n", 0644);
    if (mount(resolver.c_str(), "/etc/resolv.conf", nullptr, MS_BIND, nullptr) != 0)
        GTEST_SKIP() << "no /etc/resolv.conf that could be hidden";
    const std::string domain = "ldap:///dc%3Dnowhere%2Cdc%3Dinvalid";
    nameServers(domain);
    EXPECT_EQ("no directory", nodeOf("anna"));
    EXPECT_EQ("The DNS names no LDAP servers of dc=nowhere,dc=invalid", error());

    const DirectoryServer server({kExample});
    nameServers(domain + " " + server.uri());
    EXPECT_EQ(server.uri() + "/dc=example,dc=com", nodeOf("anna"));
    umount("/etc/resolv.conf");
}
