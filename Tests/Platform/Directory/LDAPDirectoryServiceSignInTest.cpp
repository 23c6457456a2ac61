// Who has to sign in, how, and what is said when it fails.

#include "LDAPDirectoryService.h"

#include "DirectoryServer.h"
#include "Environment.h"
#include "Loopback.h"
#include "RootsFiles.h"
#include "ScriptedServer.h"
#include "Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/socket.h>
#include <unistd.h>

using Platform::LDAPDirectoryService;
using Platform::LDAPSignIn;
using Platform::SourceReport;
using Support::CertificateAuthority;
using Support::DirectoryContext;
using Support::DirectoryServer;
using Support::ScriptedServer;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using namespace std::chrono_literals;

namespace {

constexpr char kPassword[] = "Kein#Geheimnis";
constexpr char kBindDN[] = "cn=print queue,dc=example,dc=com";
/// Nobody sees anything but the server's own entry before he has signed in.
constexpr char kMembersOnly[] = "access to dn.base=\"\" by * read\n"
                                "access to * by anonymous auth by * read\n";

DirectoryContext context(const std::string &suffix, const std::string &component,
                         const std::string &userName)
{
    return {suffix, "dn: " + suffix + "\nobjectClass: domain\ndc: " + component +
                        "\n\ndn: uid=" + userName + "," + suffix +
                        "\nobjectClass: account\n\n"
                        "dn: cn=print queue," +
                        suffix +
                        "\nobjectClass: organizationalRole\nobjectClass: simpleSecurityObject\n"
                        "cn: print queue\nuserPassword: " +
                        kPassword + "\n\n"};
}

const DirectoryContext kExample = context("dc=example,dc=com", "example", "anna");

class LDAPDirectoryServiceSignInTest : public Support::RootsFilesTest {
protected:
    void configure(const std::string &lines)
    {
        _configuration.emplace("LDAPCONF", write("ldap.conf", lines + "\n", 0644));
    }

    LDAPSignIn simple(bool startTLS = false, const std::string &password = kPassword) const
    {
        return {.method = LDAPSignIn::Method::Simple,
                .bindDN = kBindDN,
                .passwordFile = write("password", password + "\n", 0640),
                .keytab = {},
                .startTLS = startTLS};
    }

    /// A server with a certificate for 127.0.0.1 that is trusted.
    DirectoryServer &server(const std::string &configuration = kMembersOnly)
    {
        const auto issued = _authority.issue("IP:127.0.0.1");
        return _server.emplace(std::vector{kExample}, issued.certificate, issued.key,
                               configuration);
    }
    std::string trusted() const { return "\nTLS_CACERT " + _authority.certificate(); }

    /// The node of the user's last record; "none" without one. What is said is kept.
    std::string nodeOf(const std::string &userName, const LDAPSignIn &signIn)
    {
        std::optional<KLError> error;
        const auto directory = LDAPDirectoryService::open(
            &error, {.answer = _answerLimit}, signIn,
            [this](const SourceReport &report) { _said = report.answer; });
        EXPECT_TRUE(directory && directory->openAuthenticationNode());
        EXPECT_TRUE(directory->prepareQueryForUser(userName, &error));
        const std::size_t count = directory->runQuery();
        if (count == 0)
            return "none";
        const auto details = directory->recordDetails(count - 1);
        return Platform::firstValue(*details, Platform::kODAttributeTypeMetaNodeLocation)
            .value_or("nowhere");
    }

    CertificateAuthority _authority;
    std::optional<DirectoryServer> _server;
    std::optional<Support::ScopedEnvironment> _configuration;
    std::chrono::milliseconds _answerLimit = 5s;
    std::string _said;
};

/// What clients of a server send it before they hang up, kept in a file.
ScriptedServer::Script recordingTo(const std::string &path, const std::string &reply)
{
    return [=](int socket, int) {
        std::string sent;
        char byte = 0;
        while (recv(socket, &byte, 1, 0) == 1) {
            sent.push_back(byte);
            if (sent.size() == 31) // a StartTLS request
                Support::sendAll(socket, reply);
        }
        Support::writeFile(path, sent);
    };
}

constexpr char kStartTLS[] = "1.3.6.1.4.1.1466.20037";

/// The answer to an extended request, of the first message.
std::string extendedReply(int resultCode)
{
    return Support::berElement(
        0x30,
        Support::berElement(0x02, "\1") +
            Support::berElement(
                0x78, Support::berElement(0x0a, std::string(1, static_cast<char>(resultCode))) +
                          Support::berElement(0x04, "") + Support::berElement(0x04, "")));
}

} // namespace

// With a password.

TEST_F(LDAPDirectoryServiceSignInTest, PasswordOverTLSOpensTheDirectory)
{
    const auto &uri = server().secureURI();
    configure("URI " + uri + trusted());
    EXPECT_EQ("none", nodeOf("anna", {}));
    EXPECT_EQ(uri + "/dc=example,dc=com", nodeOf("anna", simple()));
}

TEST_F(LDAPDirectoryServiceSignInTest, PasswordBehindStartTLSOpensTheDirectory)
{
    const auto &uri = server().uri();
    configure("URI " + uri + trusted());
    EXPECT_EQ(uri + "/dc=example,dc=com", nodeOf("anna", simple(true)));
}

TEST_F(LDAPDirectoryServiceSignInTest, NodeIsAskedSignedInToo)
{
    const auto &uri = server().secureURI();
    configure("URI " + uri + trusted());
    std::optional<KLError> error;
    const std::string node = uri + "/dc=example,dc=com";
    const auto signedIn = LDAPDirectoryService::open(&error, {}, simple());
    EXPECT_TRUE(signedIn->openNodeNamed(node, &error) && signedIn->nodeDetails(&error));
    const auto anonymous = LDAPDirectoryService::open(&error, {});
    EXPECT_TRUE(anonymous->openNodeNamed(node, &error));
    EXPECT_EQ(std::nullopt, anonymous->nodeDetails(&error));
}

TEST_F(LDAPDirectoryServiceSignInTest, PasswordInTheClearIsRefusedBeforeAnybodyIsAsked)
{
    const ScriptedServer listener([](int, int) {});
    configure("URI " + listener.uri());
    EXPECT_EQ("none", nodeOf("anna", simple()));
    EXPECT_EQ("A password is sent over ldaps: or after StartTLS only", _said);
    EXPECT_EQ(0, listener.connections());
}

TEST_F(LDAPDirectoryServiceSignInTest, PasswordIsNotSentWhereStartTLSFails)
{
    for (const std::string &reply : {extendedReply(52), extendedReply(0), std::string("garbage")}) {
        const ScriptedServer listener(recordingTo(_folder.write("sent", ""), reply));
        configure("URI " + listener.uri() + trusted());
        _answerLimit = 1s;
        EXPECT_EQ("none", nodeOf("anna", simple(true)));
        EXPECT_EQ(1, listener.connections());
        EXPECT_TRUE(
            Support::comesTrue([&] { return !Support::readFile(_folder.file("sent")).empty(); }));
        const std::string sent = Support::readFile(_folder.file("sent"));
        EXPECT_THAT(sent, HasSubstr(kStartTLS));
        EXPECT_THAT(sent, Not(HasSubstr(kPassword)));
        EXPECT_THAT(sent, Not(HasSubstr("print queue")));
    }
}

TEST_F(LDAPDirectoryServiceSignInTest, PasswordIsNotSentToAServerThatCannotBeVerified)
{
    const auto &uri = server().secureURI();
    configure("URI " + uri + "\nTLS_REQCERT never");
    EXPECT_EQ("none", nodeOf("anna", simple()));
    EXPECT_THAT(_said,
                StartsWith("no TLS with the server, whose certificate may not be one for it or"));
    configure("URI " + server().uri() + "\nTLS_REQCERT never");
    EXPECT_EQ("none", nodeOf("anna", simple(true)));
}

TEST_F(LDAPDirectoryServiceSignInTest, WrongPassword)
{
    configure("URI " + server().secureURI() + trusted());
    EXPECT_EQ("none", nodeOf("anna", simple(false, "wrong")));
    EXPECT_EQ("the server refuses the password or the name that it belongs to "
              "(Invalid credentials)",
              _said);
}

TEST_F(LDAPDirectoryServiceSignInTest, PasswordFileThatBecameReadableIsRefused)
{
    configure("URI " + server().secureURI() + trusted());
    const LDAPSignIn signIn = simple();
    write("password", kPassword, 0644);
    EXPECT_EQ("none", nodeOf("anna", signIn));
    EXPECT_EQ(signIn.passwordFile + ": everybody may read it", _said);
}

TEST_F(LDAPDirectoryServiceSignInTest, NothingThatIsSaidHoldsThePassword)
{
    configure("URI " + server().secureURI() + trusted());
    testing::internal::CaptureStderr();
    nodeOf("anna", simple(false, "wrong-and-secret"));
    EXPECT_THAT(_said, Not(HasSubstr("wrong-and-secret")));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), IsEmpty());
}

// StartTLS without a password.

TEST_F(LDAPDirectoryServiceSignInTest, StartTLSServesThoseWhoDoNotSignInToo)
{
    const auto &uri =
        server("access to dn.base=\"\" by * read\naccess to * by tls_ssf=1 read\n").uri();
    configure("URI " + uri + trusted());
    EXPECT_EQ("none", nodeOf("anna", {}));
    EXPECT_EQ(uri + "/dc=example,dc=com", nodeOf("anna", {.startTLS = true}));
}

// With Kerberos.

TEST_F(LDAPDirectoryServiceSignInTest, KerberosGoesWithoutTLS)
{
    const ScriptedServer listener([](int, int) {});
    LDAPSignIn gssapi = {.method = LDAPSignIn::Method::GSSAPI};
    configure("URI " + listener.uri("ldaps"));
    EXPECT_EQ("none", nodeOf("anna", gssapi));
    EXPECT_EQ("Kerberos signs in over ldap: without StartTLS only", _said);
    gssapi.startTLS = true;
    configure("URI " + listener.uri());
    EXPECT_EQ("none", nodeOf("anna", gssapi));
    EXPECT_EQ("Kerberos signs in over ldap: without StartTLS only", _said);
    EXPECT_EQ(0, listener.connections());
}

TEST_F(LDAPDirectoryServiceSignInTest, KerberosWithoutKeysSignsNobodyIn)
{
    configure("URI " + server().uri());
    EXPECT_EQ("none", nodeOf("anna", {.method = LDAPSignIn::Method::GSSAPI,
                                      .bindDN = {},
                                      .passwordFile = {},
                                      .keytab = _folder.file("none.keytab")}));
    EXPECT_THAT(_said, StartsWith("Kerberos gives no ticket"));
}

// What is said.

TEST_F(LDAPDirectoryServiceSignInTest, ServerThatAnswersMembersOnly)
{
    configure("URI " + server().uri());
    EXPECT_EQ("none", nodeOf("anna", {}));
    EXPECT_THAT(_said, StartsWith("the server answers nobody who has not signed in"));
}

TEST_F(LDAPDirectoryServiceSignInTest, UnknownUser)
{
    configure("URI " + server("access to * by * read\n").secureURI() + trusted());
    EXPECT_EQ("none", nodeOf("nobody", simple()));
    EXPECT_EQ("does not know the user", _said);
    EXPECT_EQ("none", nodeOf("nobody", {}));
    EXPECT_EQ("does not know the user, or shows the entry to nobody who has not signed in", _said);
}

TEST_F(LDAPDirectoryServiceSignInTest, DeadServer)
{
    configure("URI ldap://127.0.0.1:" + std::to_string(Support::freePort()));
    EXPECT_EQ("none", nodeOf("anna", {}));
    EXPECT_EQ("the server cannot be reached (Can't contact LDAP server)", _said);
}

TEST_F(LDAPDirectoryServiceSignInTest, ServerThatHangs)
{
    const ScriptedServer silent([](int, int) {
        for (;;)
            pause();
    });
    configure("URI " + silent.uri());
    _answerLimit = 500ms;
    EXPECT_EQ("none", nodeOf("anna", {}));
    EXPECT_EQ("No answer in time", _said);
}

TEST_F(LDAPDirectoryServiceSignInTest, KnownUser)
{
    configure("URI " + server("access to * by * read\n").uri());
    nodeOf("anna", {});
    EXPECT_EQ("knows the user: records 1", _said);
}

// Names that carry a domain.

class LDAPDirectoryServiceNamesTest : public LDAPDirectoryServiceSignInTest {
protected:
    /// The user's record on a server with two domains; "none" without one.
    std::string suffixOf(const std::string &userName)
    {
        const std::string node = nodeOf(userName, {});
        return node.substr(node.rfind('/') + 1);
    }

    void SetUp() override
    {
        LDAPDirectoryServiceSignInTest::SetUp();
        DirectoryContext corp = context("dc=corp,dc=test", "corp", "anna");
        corp.ldif += "dn: uid=CORP\\5Cemil,dc=corp,dc=test\nobjectClass: account\n\n"
                     "dn: uid=dora@sales.test,dc=corp,dc=test\nobjectClass: account\n\n";
        DirectoryContext sales = context("dc=Sales,dc=test", "Sales", "anna");
        sales.ldif += "dn: uid=berta,dc=Sales,dc=test\nobjectClass: account\n\n"
                      "dn: uid=dora,dc=Sales,dc=test\nobjectClass: account\n\n"
                      "dn: uid=emil,dc=Sales,dc=test\nobjectClass: account\n\n";
        _server.emplace(std::vector{corp, sales});
        configure("URI " + _server->uri());
    }
};

TEST_F(LDAPDirectoryServiceNamesTest, BareNameIsLookedForAndOfSeveralTheDomains)
{
    EXPECT_EQ("dc=corp,dc=test", suffixOf("CORP\\anna"));
    EXPECT_EQ("dc=Sales,dc=test", suffixOf("sales\\ANNA"));
    EXPECT_EQ("dc=corp,dc=test", suffixOf("anna@corp.test"));
    EXPECT_EQ("dc=Sales,dc=test", suffixOf("anna@SALES.TEST"));
}

TEST_F(LDAPDirectoryServiceNamesTest, OfSeveralInOtherDomainsThereIsNone)
{
    EXPECT_EQ("none", suffixOf("anna@other.test"));
    EXPECT_EQ("none", suffixOf("OTHER\\anna"));
}

TEST_F(LDAPDirectoryServiceNamesTest, TheOnlyOneOfTheNameIsMeant)
{
    EXPECT_EQ("dc=Sales,dc=test", suffixOf("CORP\\berta"));
    EXPECT_EQ("dc=Sales,dc=test", suffixOf("berta@somewhere.example"));
}

TEST_F(LDAPDirectoryServiceNamesTest, LoginNameWithSuchSignsIsFoundAsItIs)
{
    EXPECT_EQ("dc=corp,dc=test", suffixOf("dora@sales.test"));
    EXPECT_EQ("dc=corp,dc=test", suffixOf("CORP\\emil"));
}

TEST_F(LDAPDirectoryServiceNamesTest, BaseOfTheConfigurationCountsForTheBareNameToo)
{
    configure("URI " + _server->uri() + "\nBASE dc=Sales,dc=test");
    EXPECT_EQ("dc=Sales,dc=test", suffixOf("CORP\\anna"));
}
