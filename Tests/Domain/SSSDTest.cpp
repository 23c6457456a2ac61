#include "DomainTest.h"

#include "DirectoryServer.h"

using Support::domainIn;
using Support::logOf;
using Support::logOfFound;
using Support::logOfNone;

namespace {

class SSSDTest : public DomainTest {
protected:
    void SetUp() override
    {
        KL_NEEDS_SSSD();
        DomainTest::SetUp();
    }

    static void expectDomain(const std::string &user, const std::string &domain)
    {
        const auto job = printAsking(user);
        EXPECT_EQ(domain, domainIn(job)) << user;
        EXPECT_EQ(logOfFound(user, "sssd:" + domain), logOf(job));
    }
};

constexpr char kSchema[] = "include /etc/ldap/schema/nis.schema\n";
constexpr char kEntries[] = R"(dn: dc=Example,dc=COM
objectClass: domain
dc: Example

dn: ou=Küche\, Keller,dc=Example,dc=COM
objectClass: organizationalUnit
ou: Küche, Keller

dn: uid=Bertha,ou=Küche\, Keller,dc=Example,dc=COM
objectClass: account
objectClass: posixAccount
uid: Bertha
cn: Bertha
uidNumber: 5001
gidNumber: 5001
homeDirectory: /
)";

} // namespace

TEST_F(SSSDTest, MemberKnowsItsDomainsUsersWithoutAnyConfiguration)
{
    const auto sssd = startSSSD(memberSSSDConfiguration());
    for (const std::string user : {"anna", "ANNA", "o'brien", "jürgen"})
        expectDomain(user, "corp.example.test");
    EXPECT_EQ(0, explain("anna").exitStatus);
}

TEST_F(SSSDTest, NamesThatCarryTheirDomain)
{
    const auto sssd = startSSSD(memberSSSDConfiguration());
    for (const std::string user : {"anna@corp.example.test", "CORP\\anna", "anna@CORP"})
        expectDomain(user, "corp.example.test");
}

TEST_F(SSSDTest, MemberWithQualifiedNames)
{
    const auto sssd = startSSSD(memberSSSDConfiguration("use_fully_qualified_names = true\n"));
    expectDomain("anna@corp.example.test", "corp.example.test");
    expectDomain("CORP\\anna", "corp.example.test");
}

TEST_F(SSSDTest, UserOfTheHostAloneHasNoDomain)
{
    const auto sssd = startSSSD(memberSSSDConfiguration());
    const auto job = printAsking("daemon");
    EXPECT_EQ("", domainIn(job));
    EXPECT_EQ(logOfNone("daemon"), logOf(job));
}

TEST_F(SSSDTest, DomainOfAnLDAPServer)
{
    const Support::DirectoryServer server({{"dc=Example,dc=COM", kEntries}}, {}, {}, kSchema);
    const auto sssd = startSSSD(ldapSSSDConfiguration(server.uri(), "dc=Example,dc=COM"));
    expectDomain("bertha", "example.com");
}
