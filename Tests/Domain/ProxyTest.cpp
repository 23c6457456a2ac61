#include "DomainTest.h"

#include "DirectoryServer.h"
#include "Environment.h"

#include <filesystem>

using Support::DirectoryServer;
using Support::domainIn;
using Support::logOf;
using Support::logOfFound;
using testing::HasSubstr;

namespace {

constexpr char kKeytab[] = "/run/tmp/proxy.keytab";

/// The slapd.conf(5) of a server that asks the domain controller in its own name, and tells this
/// host's clients what the filter needs.
/// @param signIn  the line "idassert-bind", from its first parameter on
std::string proxyConfiguration(const std::string &uri, const std::string &signIn)
{
    return R"(moduleload back_ldap
database ldap
suffix "dc=corp,dc=example,dc=test"
uri ")" + uri +
           R"("
readonly on
chase-referrals no
idassert-authzFrom "*"
idassert-bind mode=none )" +
           signIn + R"(
access to dn.exact="dc=corp,dc=example,dc=test" attrs=entry,canonicalName
    by peername.ip=127.0.0.1 read
access to attrs=entry by peername.ip=127.0.0.1 read
access to attrs=uid,sAMAccountName by peername.ip=127.0.0.1 search
)";
}

/// Clients of a proxy that signs in, on the queue's own host.
class ProxyTest : public DomainTest {
protected:
    static void expectDomain(const DirectoryServer &proxy)
    {
        configure("DirectorySources ldap\n", "URI " + proxy.uri() + "\nSASL_NOCANON on\n");
        const auto job = printAsking("anna");
        EXPECT_EQ("corp.example.test", domainIn(job));
        EXPECT_EQ(logOfFound("anna", proxy.uri() + "/dc=corp,dc=example,dc=test"), logOf(job));
    }

    static std::string password(const std::string &more)
    {
        return "bindmethod=simple binddn=\"cn=svc-queue,cn=Users,dc=corp,dc=example,dc=test\" "
               "credentials=\"" +
               std::string(DomainController::kServicePassword) + "\" " + more;
    }
};

} // namespace

TEST_F(ProxyTest, WithAPassword)
{
    const DirectoryServer proxy(
        {}, {}, {},
        proxyConfiguration("ldaps://dc.corp.example.test",
                           password("tls_cacert=" + std::string(kAuthorityFile))));
    expectDomain(proxy);
}

TEST_F(ProxyTest, ItTrustsNobodyWhomItsSignInLineDoesNot)
{
    const DirectoryServer proxy(
        {}, {}, {},
        "TLSCACertificateFile " + std::string(kAuthorityFile) + "\n" +
            proxyConfiguration("ldaps://dc.corp.example.test", password("")));
    configure("DirectorySources ldap\n", "URI " + proxy.uri() + "\n");
    EXPECT_EQ("", domainIn(printAsking("anna")));
    EXPECT_THAT(explain("anna").output, HasSubstr("Proxy operation retry failed"));
}

TEST_F(ProxyTest, WithAKeytab)
{
    std::filesystem::remove(kKeytab);
    controller().exportKeytab(kKeytab);
    const Support::ScopedEnvironment keys("KRB5_CLIENT_KTNAME", kKeytab);
    const Support::ScopedEnvironment tickets("KRB5CCNAME", "MEMORY:");
    Support::writeFile("/etc/ldap/ldap.conf", "SASL_NOCANON on\n"); // read when it starts
    const DirectoryServer proxy(
        {}, {}, {},
        proxyConfiguration("ldap://dc.corp.example.test", "bindmethod=sasl saslmech=GSSAPI"));
    expectDomain(proxy);
}
