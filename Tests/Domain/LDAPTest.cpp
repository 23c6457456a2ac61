#include "DomainTest.h"

#include "Program.h"
#include "RecordingProxy.h"
#include "TemporaryFolder.h"

#include <filesystem>
#include <grp.h>
#include <unistd.h>

namespace fs = std::filesystem;

using Support::domainIn;
using Support::logOf;
using Support::logOfFound;
using Support::logOfNone;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr char kPlain[] = "ldap://dc.corp.example.test:389";
constexpr char kSecure[] = "ldaps://dc.corp.example.test:636";
constexpr char kPasswordFile[] = "/etc/cups/jobfilter.password";
constexpr char kKeytab[] = "/etc/cups/jobfilter.keytab";
const std::string kServiceDN = "CN=svc-queue,CN=Users,DC=corp,DC=example,DC=test";

std::string node(const std::string &uri)
{
    return uri + "/DC=corp,DC=example,DC=test";
}

/// Lets the filter's user read a secret, and nobody else.
void protect(const std::string &path)
{
    EXPECT_EQ(0, chown(path.c_str(), 0, getgrnam("lp")->gr_gid));
    fs::permissions(path, fs::perms(0640));
}

/// The domain controller asked by LDAP, without anything else that knows the domain.
class LDAPTest : public DomainTest {
protected:
    static std::string servers(const std::string &uri)
    {
        return "URI " + uri + "\nTLS_CACERT " + kAuthorityFile + "\n";
    }

    static void configureAnonymous(const std::string &uri)
    {
        configure("DirectorySources ldap\n", servers(uri));
    }

    static void configureSimple(const std::string &uri, const std::string &more = {},
                                const std::string &password = DomainController::kServicePassword)
    {
        Support::writeFile(kPasswordFile, password + "\n");
        protect(kPasswordFile);
        configure("DirectorySources ldap\nLDAPBind simple\nLDAPBindDN " + kServiceDN +
                      "\nLDAPPasswordFile " + kPasswordFile + "\n" + more,
                  servers(uri));
    }

    static void configureKeytab(const std::string &uri)
    {
        fs::remove(kKeytab);
        controller().exportKeytab(kKeytab);
        protect(kKeytab);
        configure("DirectorySources ldap\nLDAPBind gssapi\nLDAPKeytab " + std::string(kKeytab) +
                      "\n",
                  servers(uri));
    }

    static void expectDomain(const std::string &user, const std::string &uri)
    {
        const auto job = printAsking(user);
        EXPECT_EQ("corp.example.test", domainIn(job)) << user << " " << uri;
        EXPECT_EQ(logOfFound(user, node(uri)), logOf(job));
    }

    static void expectNoDomain(const std::string &user)
    {
        const auto job = printAsking(user);
        EXPECT_EQ("", domainIn(job));
        EXPECT_EQ(logOfNone(user), logOf(job));
    }
};

} // namespace

// Who has not signed in.

TEST_F(LDAPTest, AnonymousClientsAreRefused)
{
    configureAnonymous(kPlain);
    expectNoDomain("anna");
    const auto said = explain("anna");
    EXPECT_NE(0, said.exitStatus);
    EXPECT_THAT(said.output, HasSubstr("Operation unavailable without authentication"));
}

TEST_F(LDAPTest, AnonymousClientsWhereTheyMayRead)
{
    controller().allowAnonymousReading(true);
    // The third and the fourth are the global catalogue.
    for (const std::string uri : {kPlain, kSecure, "ldap://dc.corp.example.test:3268",
                                  "ldaps://dc.corp.example.test:3269"}) {
        configureAnonymous(uri);
        expectDomain("anna", uri);
    }
    controller().allowAnonymousReading(false);
}

// Signed in with a password.

TEST_F(LDAPTest, PasswordOverTLS)
{
    configureSimple(kSecure);
    for (const std::string user : {"Anna", "anna", "o'brien", "jürgen"})
        expectDomain(user, kSecure);
    EXPECT_EQ(0, explain("anna").exitStatus);
}

TEST_F(LDAPTest, PasswordForTheGlobalCatalogue)
{
    configureSimple("ldaps://dc.corp.example.test:3269");
    expectDomain("anna", "ldaps://dc.corp.example.test:3269");
}

TEST_F(LDAPTest, NamesThatCarryTheirDomain)
{
    configureSimple(kSecure);
    for (const std::string user : {"CORP\\anna", "anna@corp.example.test", "CORP\\O'Brien"})
        expectDomain(user, kSecure);
}

TEST_F(LDAPTest, UnknownUser)
{
    configureSimple(kSecure);
    expectNoDomain("nobody-of-ours");
    EXPECT_NE(0, explain("nobody-of-ours").exitStatus);
}

TEST_F(LDAPTest, WrongPassword)
{
    configureSimple(kSecure, {}, "wrong");
    expectNoDomain("anna");
    EXPECT_THAT(explain("anna").output, HasSubstr("Invalid credentials"));
}

TEST_F(LDAPTest, PasswordInTheClearIsNeverSent)
{
    const RecordingProxy proxy;
    const std::string uri = "ldap://" + proxy.address();
    const auto sent = [&] { return proxy.recorded(); };

    configureSimple(uri);
    expectNoDomain("anna");
    EXPECT_THAT(explain("anna").output, HasSubstr("TLS"));
    EXPECT_THAT(sent(), Not(HasSubstr(DomainController::kServicePassword)));

    // The proxy would have seen it.
    Support::runProgram({.arguments = {"ldapwhoami", "-x", "-H", uri, "-D", kServiceDN, "-w",
                                       DomainController::kServicePassword}});
    EXPECT_THAT(sent(), HasSubstr(DomainController::kServicePassword));
}

TEST_F(LDAPTest, PasswordBehindStartTLS)
{
    const RecordingProxy proxy;
    const std::string uri = "ldap://" + proxy.address();
    configureSimple(uri, "LDAPStartTLS yes\n");
    expectDomain("anna", uri);
    EXPECT_GT(proxy.connections(), 0);
    EXPECT_THAT(proxy.recorded(), Not(HasSubstr(DomainController::kServicePassword)));
    EXPECT_THAT(proxy.recorded(), Not(HasSubstr("anna")));
}

TEST_F(LDAPTest, PasswordIsForServersOnlyWhoseCertificateVerifies)
{
    configureSimple(kSecure);
    for (const std::string tls : {"", "TLS_REQCERT never\n", "TLS_REQCERT allow\n"}) {
        Support::writeFile("/etc/ldap/ldap.conf", std::string("URI ") + kSecure + "\n" + tls);
        expectNoDomain("anna");
    }
}

// Signed in with Kerberos.

TEST_F(LDAPTest, Keytab)
{
    configureKeytab(kPlain);
    for (const std::string user : {"anna", "o'brien", "jürgen"})
        expectDomain(user, kPlain);
    EXPECT_EQ(0, explain("anna").exitStatus);
}

TEST_F(LDAPTest, WhatKerberosSealsCannotBeReadOnTheWay)
{
    const RecordingProxy proxy;
    const std::string uri = "ldap://dc.corp.example.test:" + std::to_string(proxy.port());
    configureKeytab(uri);
    const std::string hosts = Support::readFile("/etc/hosts");
    Support::writeFile("/etc/hosts", hosts + "127.0.0.1 dc.corp.example.test\n");
    const std::string kerberos = Support::readFile("/etc/krb5.conf");
    Support::writeFile("/etc/krb5.conf", kerberos + "[realms]\nCORP.EXAMPLE.TEST = {\nkdc = " +
                                             DomainController::kAddress + "\n}\n");
    expectDomain("anna", uri);
    EXPECT_THAT(proxy.recorded(), HasSubstr("GSS"));
    EXPECT_THAT(proxy.recorded(), Not(HasSubstr("sAMAccountName")));
    Support::writeFile("/etc/hosts", hosts);
    Support::writeFile("/etc/krb5.conf", kerberos);
}

TEST_F(LDAPTest, KeytabThatTheFilterMayNotRead)
{
    configureKeytab(kPlain);
    fs::permissions(kKeytab, fs::perms(0600));
    expectNoDomain("anna");
    EXPECT_NE(0, explain("anna").exitStatus);
}

TEST_F(LDAPTest, ServersOfTheDomainsOwnNameRecords)
{
    configureKeytab("ldap:///dc%3Dcorp%2Cdc%3Dexample%2Cdc%3Dtest");
    expectDomain("anna", kPlain);
}
