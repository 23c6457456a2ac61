#include "DirectoryServer389.h"

#include "DomainTest.h"

using Support::domainIn;
using Support::logOf;
using Support::logOfFound;
using Support::logOfNone;
using testing::HasSubstr;

namespace {

constexpr char kEntries[] = R"(dn: ou=Rent\, Lease & Co,dc=example,dc=com
objectClass: organizationalUnit
ou: Rent, Lease & Co

dn: uid=Bertha,ou=Rent\, Lease & Co,dc=example,dc=com
objectClass: account
objectClass: posixAccount
uid: Bertha
cn: Bertha
uidNumber: 5001
gidNumber: 5001
homeDirectory: /
)";

constexpr char kAnybodyReads[] = R"(dn: dc=example,dc=com
changetype: modify
add: aci
aci: (targetattr="*")(version 3.0; acl "readers"; allow (read, search) userdn="ldap:///anyone";)
)";

constexpr char kNoRules[] = R"(dn: dc=example,dc=com
changetype: modify
delete: aci
)";

class DirectoryServer389Test : public DomainTest {
protected:
    static void expectDomain(const std::string &sources, const std::string &node)
    {
        configure("DirectorySources " + sources + "\n",
                  std::string("URI ") + DirectoryServer389::kURI + "\n");
        const auto job = printAsking("bertha");
        EXPECT_EQ("example.com", domainIn(job));
        EXPECT_EQ(logOfFound("bertha", node), logOf(job));
    }

    static void expectNoDomain()
    {
        configure("DirectorySources ldap\n", std::string("URI ") + DirectoryServer389::kURI + "\n");
        const auto job = printAsking("bertha");
        EXPECT_EQ("", domainIn(job));
        EXPECT_EQ(logOfNone("bertha"), logOf(job));
        EXPECT_THAT(explain("bertha").output, HasSubstr("shows the entry to nobody"));
    }
};

} // namespace

TEST_F(DirectoryServer389Test, TellsThoseWhomItsRulesAllow)
{
    KL_NEEDS_PROGRAM("dscreate", "389-ds-base");
    KL_NEEDS_SSSD();
    const DirectoryServer389 server(kEntries);
    expectNoDomain(); // the rules of a new instance are for nobody's users

    server.modify(kAnybodyReads);
    expectDomain("ldap", std::string(DirectoryServer389::kURI) + "/dc=example,dc=com");
    {
        const auto sssd =
            startSSSD(ldapSSSDConfiguration(DirectoryServer389::kURI, "dc=example,dc=com"));
        expectDomain("sssd", "sssd:example.com");
    }

    server.modify(kNoRules);
    expectNoDomain();
}
