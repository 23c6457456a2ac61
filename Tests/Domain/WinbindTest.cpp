#include "DomainTest.h"

using Support::domainIn;
using Support::logOf;
using Support::logOfFound;
using Support::logOfNone;

namespace {

class WinbindTest : public DomainTest {
protected:
    const std::unique_ptr<Daemon> _winbind = startWinbind();
};

} // namespace

TEST_F(WinbindTest, MemberKnowsItsDomainsUsersWithoutAnyConfiguration)
{
    for (const std::string user :
         {"CORP\\anna", "anna", "CORP\\O'Brien", "CORP\\jürgen", "anna@corp.example.test"}) {
        const auto job = printAsking(user);
        EXPECT_EQ("corp.example.test", domainIn(job)) << user;
        EXPECT_EQ(logOfFound(user, "winbind:corp.example.test"), logOf(job));
    }
    EXPECT_EQ(0, explain("CORP\\anna").exitStatus);
}

TEST_F(WinbindTest, UnknownUser)
{
    const auto job = printAsking("CORP\\nobody-of-ours");
    EXPECT_EQ("", domainIn(job));
    EXPECT_EQ(logOfNone("CORP\\nobody-of-ours"), logOf(job));
    EXPECT_NE(0, explain("CORP\\nobody-of-ours").exitStatus);
}
