#include "DomainTest.h"

using Support::domainIn;
using Support::logOf;
using Support::logOfFound;
using Support::logOfNone;

namespace {

class LDAPTest : public DomainTest {};

} // namespace

TEST_F(LDAPTest, AnonymousClientsAreRefused)
{
    configure("DirectorySources ldap\n", "URI ldap://dc.corp.example.test:389\n");
    const auto job = printAsking("anna");
    EXPECT_EQ("", domainIn(job));
    EXPECT_EQ(logOfNone("anna"), logOf(job));
}

TEST_F(LDAPTest, AnonymousClientsWhereTheyMayRead)
{
    controller().allowAnonymousReading(true);
    for (const std::string uri :
         {"ldap://dc.corp.example.test:389", "ldaps://dc.corp.example.test:636",
          "ldap://dc.corp.example.test:3268", "ldaps://dc.corp.example.test:3269"}) {
        configure("DirectorySources ldap\n",
                  "URI " + uri + "\nTLS_CACERT " + kAuthorityFile + "\n");
        for (const std::string user : {"anna", "o'brien", "jürgen"}) {
            const auto job = printAsking(user);
            EXPECT_EQ("corp.example.test", domainIn(job)) << uri << user;
            EXPECT_EQ(logOfFound(user, uri + "/DC=corp,DC=example,DC=test"), logOf(job));
        }
    }
    controller().allowAnonymousReading(false);
}
