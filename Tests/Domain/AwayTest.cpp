#include "DomainTest.h"

#include "Waiting.h"

#include <csignal>
#include <future>

using Support::domainIn;
using Support::logOf;
using Support::logOfFound;
using Support::logOfNone;
using testing::HasSubstr;

namespace {

/// A way in which the domain controller is not there, and the way back.
struct Absence {
    std::string name;
    void (*leave)(DomainController &controller);
    void (*comeBack)(DomainController &controller);
};

class AwayTest : public DomainTest, public testing::WithParamInterface<Absence> {
protected:
    void SetUp() override
    {
        KL_NEEDS_SSSD();
        DomainTest::SetUp();
        _sssd = startSSSD(memberSSSDConfiguration());
        _winbind = startWinbind();
    }

    void TearDown() override
    {
        if (IsSkipped())
            return;
        _sssd.reset();
        _winbind.reset();
        GetParam().comeBack(controller());
        DomainTest::TearDown();
    }

    /// Each of the host's own sources, asked alone, knows this user's domain.
    static void expectDomainFromEach(const std::string &user)
    {
        for (const std::string source : {"sssd", "winbind"}) {
            configure("DirectorySources " + source + "\n");
            const auto job = printAsking(user);
            EXPECT_EQ("corp.example.test", domainIn(job)) << source;
            EXPECT_EQ(logOfFound(user, source + ":corp.example.test"), logOf(job));
        }
    }

private:
    std::unique_ptr<Daemon> _sssd;
    std::unique_ptr<Daemon> _winbind;
};

} // namespace

TEST_P(AwayTest, WhoIsRememberedKeepsTheDomainAndNobodyWaitsLong)
{
    expectDomainFromEach("anna");
    GetParam().leave(controller());
    expectDomainFromEach("anna");

    configure("DirectorySources sssd winbind ldap\n", "URI ldap://dc.corp.example.test\n");
    auto said = std::async(std::launch::async, [] { return explain("jürgen"); });
    const auto job = printAsking("o'brien");
    EXPECT_EQ("", domainIn(job));
    EXPECT_EQ(logOfNone("o'brien"), logOf(job));
    const auto answer = said.get();
    EXPECT_EQ(1, answer.exitStatus) << answer.output;
    for (const char *source : {"sssd: ", "winbind: ", "ldap://dc.corp.example.test:389: "})
        EXPECT_THAT(answer.output, HasSubstr(source));
}

using LocalDaemonsTest = DomainTest;

TEST_F(LocalDaemonsTest, ThoseThatHangHandOnToLDAP)
{
    KL_NEEDS_SSSD();
    const auto sssd = startSSSD(memberSSSDConfiguration());
    const auto winbind = startWinbind();
    controller().allowAnonymousReading(true);
    configure("DirectorySources sssd winbind ldap\n", "URI ldap://dc.corp.example.test:389\n");
    Support::runOrThrow({"pkill", "-STOP", "sssd_nss"});
    winbind->hang();
    const auto job = printAsking("anna");
    EXPECT_EQ("corp.example.test", domainIn(job));
    EXPECT_EQ(logOfFound("anna", "ldap://dc.corp.example.test:389/DC=corp,DC=example,DC=test"),
              logOf(job));
    Support::runOrThrow({"pkill", "-CONT", "sssd_nss"});
    controller().allowAnonymousReading(false);
}

INSTANTIATE_TEST_SUITE_P(
    , AwayTest,
    testing::Values(Absence{"Stopped", [](DomainController &controller) { controller.stop(); },
                            [](DomainController &controller) { controller.start(); }},
                    Absence{"Hung", [](DomainController &controller) { controller.hang(); },
                            [](DomainController &controller) { controller.goOn(); }},
                    Absence{"LinkDown", [](DomainController &controller) { controller.cutLink(); },
                            [](DomainController &controller) { controller.mendLink(); }}),
    [](const auto &instance) { return instance.param.name; });
