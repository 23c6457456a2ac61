#include "LDAPDirectoryService.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include "DirectoryServer.h"
#include "Environment.h"
#include "Loopback.h"
#include "ScriptedServer.h"
#include "TemporaryFolder.h"

using Platform::DirectoryAttributes;
using Platform::firstValue;
using Platform::LDAPDirectoryService;
using Platform::LDAPTimeLimits;
using Support::CertificateAuthority;
using Support::DirectoryContext;
using Support::DirectoryServer;
using Support::LDAPRequest;
using Support::ScriptedServer;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

/// The root entry of a context of domain components, with further lines.
std::string domainRoot(const std::string &suffix, const std::string &component,
                       const std::string &lines = {})
{
    return "dn: " + suffix + "\nobjectClass: domain\n" + lines + "dc: " + component + "\n\n";
}

/// A user's entry below `parent`.
std::string user(const std::string &uid, const std::string &parent, const std::string &lines = {})
{
    return "dn: uid=" + uid + "," + parent + "\nobjectClass: inetOrgPerson\ncn: " + uid +
           "\nsn: " + uid + "\n" + lines + "\n";
}

const DirectoryContext kExample = {"dc=example,dc=com", domainRoot("dc=example,dc=com", "example") +
                                                            user("anna", "dc=example,dc=com") +
                                                            user("Jürgen", "dc=example,dc=com")};
const DirectoryContext kNamed = {
    "dc=named,dc=org",
    domainRoot("dc=named,dc=org", "named",
               "objectClass: domainRelatedObject\nassociatedDomain: native.example\n") +
        user("berta", "dc=named,dc=org")};
const DirectoryContext kActiveDirectoryLike = {
    "dc=ad,dc=example", domainRoot("dc=ad,dc=example", "ad",
                                   "objectClass: activeDirectoryLike\n"
                                   "canonicalName: ad.example/\n") +
                            "dn: CN=Carla,DC=ad,DC=example\nobjectClass: person\n"
                            "objectClass: activeDirectoryLike\ncn: Carla\nsn: Carla\n"
                            "sAMAccountName: carla\n\n"};
const DirectoryContext kOrganisation = {"o=Company",
                                        "dn: o=Company\nobjectClass: organization\no: Company\n\n" +
                                            user("dora", "o=Company") + user("anna", "o=Company")};

const DirectoryContext kTwoAnnas = {"dc=example,dc=com",
                                    kExample.ldif +
                                        "dn: ou=people,dc=example,dc=com\n"
                                        "objectClass: organizationalUnit\nou: people\n\n" +
                                        user("anna", "ou=people,dc=example,dc=com")};

/// All that the service says about a user.
struct Answer {
    std::size_t records = 0;
    /// Of each record with details: its location, "-" for none.
    std::vector<std::string> locations = {};
    std::string openError = {};
    std::string detailsError = {};
    DirectoryAttributes node = {}; ///< of the last record
};

std::string description(const std::optional<KLError> &error)
{
    return error ? error->description().value_or("(null)") : "";
}

class LDAPDirectoryServiceTest : public testing::Test {
protected:
    /// Makes these lines all that the host's configuration adds to its /etc/ldap/ldap.conf.
    void configure(const std::string &lines)
    {
        _configuration.emplace("LDAPCONF", _folder.write("ldap.conf", lines + "\n"));
    }

    std::unique_ptr<LDAPDirectoryService> open() const
    {
        std::optional<KLError> error;
        auto service = LDAPDirectoryService::open(&error, _limits);
        EXPECT_EQ("", description(error));
        return service;
    }

    static void describeRecords(LDAPDirectoryService &service, Answer &answer)
    {
        for (std::size_t record = 0; record < answer.records; ++record) {
            if (const auto details = service.recordDetails(record))
                answer.locations.push_back(
                    firstValue(*details, Platform::kODAttributeTypeMetaNodeLocation).value_or("-"));
        }
    }

    static void describeNode(LDAPDirectoryService &service, Answer &answer)
    {
        std::optional<KLError> error;
        if (!service.openNodeNamed(answer.locations.back(), &error)) {
            answer.openError = description(error);
            return;
        }
        if (auto details = service.nodeDetails(&error))
            answer.node = std::move(*details);
        answer.detailsError = description(error);
    }

    Answer ask(const std::string &userName) const
    {
        Answer answer;
        const auto service = open();
        std::optional<KLError> error;
        EXPECT_TRUE(service->openAuthenticationNode());
        EXPECT_TRUE(service->prepareQueryForUser(userName, &error));
        answer.records = service->runQuery();
        describeRecords(*service, answer);
        if (!answer.locations.empty() && answer.locations.back() != "-")
            describeNode(*service, answer);
        return answer;
    }

    Support::TemporaryFolder _folder;
    std::optional<Support::ScopedEnvironment> _configuration;
    LDAPTimeLimits _limits;
};

DirectoryAttributes searchBase(const std::string &base)
{
    return {{"LDAPSearchBaseSuffix", {base}}};
}

DirectoryAttributes searchBaseAndDomain(const std::string &base, const std::string &domain)
{
    return {{"LDAPSearchBaseSuffix", {base}}, {"dsAttrTypeNative:DomainName", {domain}}};
}

} // namespace

// The configuration.

TEST_F(LDAPDirectoryServiceTest, WithoutConfiguredServerThereIsNoAuthenticationNode)
{
    configure("");
    EXPECT_FALSE(open()->openAuthenticationNode());
}

TEST_F(LDAPDirectoryServiceTest, LocalhostCanBeConfigured)
{
    for (const char *uri : {"ldap://localhost", "ldap://localhost/", "ldap://localhost:389"}) {
        configure(std::string("URI ") + uri);
        EXPECT_TRUE(open()->openAuthenticationNode()) << uri;
    }
}

TEST_F(LDAPDirectoryServiceTest, PersonalSettingsConfigureNothing)
{
    configure("");
    const std::string line = "URI ldap://127.0.0.1\n";
    _folder.write(".ldaprc", line);
    _folder.write("ldaprc", line);
    const Support::ScopedEnvironment home("HOME", _folder.path());
    const Support::ScopedEnvironment uri("LDAPURI", "ldap://127.0.0.1");
    const Support::ScopedEnvironment file("LDAPRC", "ldaprc");
    EXPECT_FALSE(open()->openAuthenticationNode());
}

TEST_F(LDAPDirectoryServiceTest, SessionWithoutTimeFails)
{
    configure("");
    std::optional<KLError> error;
    EXPECT_EQ(nullptr, LDAPDirectoryService::open(&error, {.session = 0ms}));
    EXPECT_EQ("No time left", description(error));
}

TEST_F(LDAPDirectoryServiceTest, NameThatIsNotUTF8CannotBeAskedFor)
{
    configure("URI ldap://127.0.0.1:1");
    std::optional<KLError> error;
    EXPECT_FALSE(open()->prepareQueryForUser("J\xfcrgen", &error));
    EXPECT_EQ("The user name is not UTF-8", description(error));
}

// A real server.

TEST_F(LDAPDirectoryServiceTest, FindsTheUserInTheContextThatHoldsIt)
{
    const DirectoryServer server({kOrganisation, kExample, kNamed});
    configure("URI " + server.uri());
    const Answer answer = ask("Jürgen");
    EXPECT_THAT(answer.locations, ElementsAre(server.uri() + "/dc=example,dc=com"));
    EXPECT_EQ(searchBase("dc=example,dc=com"), answer.node);
}

TEST_F(LDAPDirectoryServiceTest, LetterCaseOfTheNameMakesNoDifference)
{
    const DirectoryServer server({kExample});
    configure("URI " + server.uri());
    for (const char *name : {"JÜRGEN", "jürgen", "jÜRgen"})
        EXPECT_EQ(1U, ask(name).records) << name;
}

TEST_F(LDAPDirectoryServiceTest, AssociatedDomainIsTheNativeDomainName)
{
    const DirectoryServer server({kExample, kNamed});
    configure("URI " + server.uri());
    EXPECT_EQ(searchBaseAndDomain("dc=named,dc=org", "native.example"), ask("berta").node);
}

TEST_F(LDAPDirectoryServiceTest, CanonicalNameWithoutSlashIsTheNativeDomainName)
{
    const DirectoryServer server({kExample, kActiveDirectoryLike});
    configure("URI " + server.uri());
    const Answer answer = ask("CARLA");
    EXPECT_THAT(answer.locations, ElementsAre(server.uri() + "/dc=ad,dc=example"));
    EXPECT_EQ(searchBaseAndDomain("dc=ad,dc=example", "ad.example"), answer.node);
}

TEST_F(LDAPDirectoryServiceTest, SearchBaseIsWrittenAsTheServerWritesIt)
{
    const DirectoryServer server({kOrganisation});
    configure("URI " + server.uri());
    EXPECT_EQ(searchBase("o=Company"), ask("dora").node);
}

TEST_F(LDAPDirectoryServiceTest, UserInTwoContextsIsTwoRecordsInTheServersOrder)
{
    const DirectoryServer server({kExample, kOrganisation});
    configure("URI " + server.uri());
    EXPECT_THAT(ask("anna").locations,
                ElementsAre(server.uri() + "/dc=example,dc=com", server.uri() + "/o=Company"));
}

TEST_F(LDAPDirectoryServiceTest, ConfiguredBaseLimitsTheSearch)
{
    const DirectoryServer server({kExample, kOrganisation});
    configure("URI " + server.uri() + "\nBASE o=Company");
    EXPECT_THAT(ask("anna").locations, ElementsAre(server.uri() + "/o=Company"));
}

TEST_F(LDAPDirectoryServiceTest, ConfiguredBaseInsideAContextKeepsTheContext)
{
    const DirectoryServer server(
        {{"dc=example,dc=com", kExample.ldif +
                                   "dn: ou=people,dc=example,dc=com\n"
                                   "objectClass: organizationalUnit\nou: people\n\n" +
                                   user("emil", "ou=people,dc=example,dc=com")}});
    configure("URI " + server.uri() + "\nBASE OU=People, DC=Example, DC=com");
    EXPECT_THAT(ask("emil").locations, ElementsAre(server.uri() + "/dc=example,dc=com"));
    EXPECT_EQ(0U, ask("anna").records);
}

TEST_F(LDAPDirectoryServiceTest, ConfiguredBaseThatIsNotThereHoldsNobody)
{
    const DirectoryServer server({kExample});
    configure("URI " + server.uri() + "\nBASE dc=nowhere");
    EXPECT_EQ(0U, ask("anna").records);
}

TEST_F(LDAPDirectoryServiceTest, ContextWithinAContextHoldsItsOwnUsers)
{
    // The outer one's search reaches into the inner one.
    const DirectoryServer server(
        {{"dc=sub,dc=example,dc=com", domainRoot("dc=sub,dc=example,dc=com", "sub") +
                                          user("fritz", "dc=sub,dc=example,dc=com")},
         kExample},
        {}, {}, {});
    configure("URI " + server.uri());
    EXPECT_THAT(ask("fritz").locations, ElementsAre(server.uri() + "/dc=sub,dc=example,dc=com"));
}

TEST_F(LDAPDirectoryServiceTest, UnknownUserHasNoRecord)
{
    const DirectoryServer server({kExample});
    configure("URI " + server.uri());
    EXPECT_EQ(0U, ask("nobody").records);
}

TEST_F(LDAPDirectoryServiceTest, NamesAreTakenLiterally)
{
    const DirectoryServer server({kExample, kActiveDirectoryLike});
    configure("URI " + server.uri());
    for (const char *name :
         {"*", "a*", ")(uid=*", "anna)(uid=*", "\\2a", "\\61nna", "uid=anna,dc=example,dc=com", "",
          "an\nna", "anna\n*", "anna)", "(anna", "anna\\", "|", "&"})
        EXPECT_EQ(0U, ask(name).records) << name;
}

TEST_F(LDAPDirectoryServiceTest, NameOfFourThousandCharactersIsOnlyAName)
{
    const DirectoryServer server({kExample});
    configure("URI " + server.uri());
    EXPECT_EQ(0U, ask(std::string(4096, '*')).records);
    EXPECT_EQ(0U, ask("anna" + std::string(4096, '(')).records);
}

TEST_F(LDAPDirectoryServiceTest, NamesMadeOfFilterCharactersAreFound)
{
    const DirectoryServer server(
        {{"dc=example,dc=com", domainRoot("dc=example,dc=com", "example") +
                                   "dn: cn=odd,dc=example,dc=com\nobjectClass: inetOrgPerson\n"
                                   "cn: odd\nsn: odd\nuid: *\nuid: )(uid=*\nuid: \\2a\n\n" +
                                   user("anna", "dc=example,dc=com")}});
    configure("URI " + server.uri());
    for (const char *name : {"*", ")(uid=*", "\\2a", "\\2A"})
        EXPECT_EQ(1U, ask(name).records) << name;
}

TEST_F(LDAPDirectoryServiceTest, ServerThatRefusesIsPassedOverForTheNext)
{
    const DirectoryServer server({kExample});
    configure("URI ldap://127.0.0.1:" + std::to_string(Support::freePort()) + " " + server.uri());
    EXPECT_THAT(ask("anna").locations, ElementsAre(server.uri() + "/dc=example,dc=com"));
}

TEST_F(LDAPDirectoryServiceTest, NextServerIsNotAskedWhenTheFirstKnowsNobody)
{
    const DirectoryServer first({kNamed});
    const DirectoryServer second({kExample});
    configure("URI " + first.uri() + " " + second.uri());
    EXPECT_EQ(0U, ask("anna").records);
}

TEST_F(LDAPDirectoryServiceTest, SizeLimitOfTheServerLeavesNoRecords)
{
    const DirectoryServer server({kTwoAnnas}, {}, {}, "sizelimit 1\n");
    configure("URI " + server.uri());
    EXPECT_EQ(0U, ask("anna").records);
    EXPECT_EQ(1U, ask("Jürgen").records);
}

TEST_F(LDAPDirectoryServiceTest, SizeLimitOfTheConfigurationDoesNotCount)
{
    const DirectoryServer server({kTwoAnnas});
    configure("URI " + server.uri() + "\nSIZELIMIT 1");
    EXPECT_EQ(2U, ask("anna").records);
}

TEST_F(LDAPDirectoryServiceTest, ContextEntryThatNobodyMayReadGivesNoDetails)
{
    const DirectoryServer server({kExample}, {}, {},
                                 "access to dn.exact=dc=example,dc=com by * search\n"
                                 "access to * by * read\n");
    configure("URI " + server.uri());
    const Answer answer = ask("anna");
    EXPECT_EQ(1U, answer.records);
    EXPECT_EQ("", answer.openError);
    EXPECT_EQ("No such object", answer.detailsError);
    EXPECT_THAT(answer.node, IsEmpty());
}

TEST_F(LDAPDirectoryServiceTest, ServerThatTellsNoContextsLeavesRecordsOutside)
{
    const DirectoryServer server({kExample}, {}, {},
                                 "access to dn.exact=\"\" attrs=namingContexts by * none\n"
                                 "access to * by * read\n");
    configure("URI " + server.uri() + "\nBASE dc=example,dc=com");
    EXPECT_THAT(ask("anna").locations, ElementsAre("-"));
}

TEST_F(LDAPDirectoryServiceTest, NodeThatIsNoURLCannotBeOpened)
{
    configure("URI ldap://127.0.0.1:1");
    std::optional<KLError> error;
    EXPECT_FALSE(open()->openNodeNamed("dc=example,dc=com", &error));
    EXPECT_EQ("Not an LDAP URL", description(error));
}

TEST_F(LDAPDirectoryServiceTest, NodeOfAServerThatIsDownCannotBeOpened)
{
    configure("URI ldap://127.0.0.1:1");
    std::optional<KLError> error;
    EXPECT_FALSE(open()->openNodeNamed("ldap://127.0.0.1:1/dc=example,dc=com", &error));
    EXPECT_THAT(description(error), StartsWith("Can't contact LDAP server"));
}

// TLS.

class LDAPDirectoryServiceTLSTest : public LDAPDirectoryServiceTest {
protected:
    /// A server with a certificate for these names.
    std::unique_ptr<DirectoryServer> serverNamed(const std::string &names, int days = 1)
    {
        const auto issued = _authority.issue(names, days);
        return std::make_unique<DirectoryServer>(std::vector{kExample}, issued.certificate,
                                                 issued.key);
    }

    /// The configuration that trusts an authority.
    static std::string trusting(const CertificateAuthority &authority)
    {
        return "\nTLS_CACERT " + authority.certificate();
    }

    /// The server finds nobody, and only because its certificate is looked at.
    void expectOnlyTheCertificateInTheWay(const DirectoryServer &server,
                                          const CertificateAuthority &trusted)
    {
        const std::string lines = "URI " + server.secureURI() + trusting(trusted);
        configure(lines);
        EXPECT_EQ(0U, ask("anna").records);
        configure(lines + "\nTLS_REQCERT never");
        EXPECT_EQ(1U, ask("anna").records);
    }

    CertificateAuthority _authority;
};

TEST_F(LDAPDirectoryServiceTLSTest, TrustedCertificateIsAccepted)
{
    const auto server = serverNamed("IP:127.0.0.1");
    configure("URI " + server->secureURI() + trusting(_authority));
    const Answer answer = ask("anna");
    EXPECT_THAT(answer.locations, ElementsAre(server->secureURI() + "/dc=example,dc=com"));
    EXPECT_EQ(searchBase("dc=example,dc=com"), answer.node);
}

TEST_F(LDAPDirectoryServiceTLSTest, CertificateOfAnUnknownAuthorityIsAFailure)
{
    const CertificateAuthority other;
    expectOnlyTheCertificateInTheWay(*serverNamed("IP:127.0.0.1"), other);
}

TEST_F(LDAPDirectoryServiceTLSTest, CertificateForAnotherNameIsAFailure)
{
    expectOnlyTheCertificateInTheWay(*serverNamed("DNS:other.example"), _authority);
}

TEST_F(LDAPDirectoryServiceTLSTest, CertificateThatIsNoLongerValidIsAFailure)
{
    expectOnlyTheCertificateInTheWay(*serverNamed("IP:127.0.0.1", -1), _authority);
}

TEST_F(LDAPDirectoryServiceTLSTest, NodeWithABadCertificateCannotBeOpened)
{
    const auto server = serverNamed("DNS:other.example");
    configure("URI " + server->secureURI() + trusting(_authority));
    std::optional<KLError> error;
    EXPECT_FALSE(open()->openNodeNamed(server->secureURI() + "/dc=example,dc=com", &error));
    EXPECT_THAT(description(error), StartsWith("Can't contact LDAP server"));
}

// Servers that do not keep to the rules.

namespace {

constexpr char kScriptedContext[] = "dc=scripted,dc=example";

/// What a well-behaved server answers about its contexts, and with `entries` about users.
std::string decentReply(const LDAPRequest &request,
                        const std::vector<std::string> &entries = {"uid=anna,dc=scripted,"
                                                                   "dc=example"})
{
    if (request.mentions("namingContexts"))
        return Support::ldapEntry(request.id, "", {{"namingContexts", {kScriptedContext}}}) +
               Support::ldapDone(request.id);
    std::string reply;
    if (request.scope == 0)
        reply = Support::ldapEntry(request.id, request.base, {});
    else
        for (const std::string &entry : entries)
            reply += Support::ldapEntry(request.id, entry, {});
    return reply + Support::ldapDone(request.id);
}

/// A server that answers decently but for the requests that `reply` has an answer to.
ScriptedServer::Script
decentBut(std::function<std::optional<std::string>(const LDAPRequest &)> reply)
{
    return [=](int socket, int) {
        Support::serveLDAP(socket, [&](const LDAPRequest &request) {
            return reply(request).value_or(decentReply(request));
        });
    };
}

/// The same, with the answer to the search for users.
ScriptedServer::Script decentButForUsers(std::function<std::string(const LDAPRequest &)> reply)
{
    return decentBut([=](const LDAPRequest &request) {
        return request.scope == 2 ? std::optional(reply(request)) : std::nullopt;
    });
}

void keepSilent(int, int)
{
    for (;;)
        pause();
}

/// The most memory that any child of this test had, in MiB.
long peakMemoryOfChildren()
{
    rusage usage = {};
    getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_maxrss / 1024;
}

} // namespace

class LDAPDirectoryServiceHostileTest : public LDAPDirectoryServiceTest {
protected:
    LDAPDirectoryServiceHostileTest() { _limits = {.answer = 20s, .session = 40s}; }

    /// For servers that would keep the test waiting; the others get the time of a busy machine.
    void beImpatient() { _limits = {.answer = 400ms, .session = 900ms}; }

    Answer askScripted(const ScriptedServer &server, const std::string &scheme = "ldap")
    {
        configure("URI " + server.uri(scheme));
        const auto begin = Clock::now();
        Answer answer = ask("anna");
        _elapsed = Clock::now() - begin;
        return answer;
    }

    /// Room for a busy machine; without limits these would last for ever, or 30 s and more.
    static constexpr auto kSoon = 5s;
    Clock::duration _elapsed = {};
};

TEST_F(LDAPDirectoryServiceHostileTest, DecentServerIsUnderstood)
{
    const ScriptedServer server(decentBut([](auto &) { return std::nullopt; }));
    const Answer answer = askScripted(server);
    EXPECT_THAT(answer.locations, ElementsAre(server.uri() + "/dc=scripted,dc=example"));
    EXPECT_EQ(searchBase("dc=scripted,dc=example"), answer.node);
    EXPECT_EQ(2, server.connections());
}

TEST_F(LDAPDirectoryServiceHostileTest, ServerThatRefuses)
{
    configure("URI ldap://127.0.0.1:" + std::to_string(Support::freePort()));
    EXPECT_EQ(0U, ask("anna").records);
}

TEST_F(LDAPDirectoryServiceHostileTest, SilentServer)
{
    beImpatient();
    const ScriptedServer server(&keepSilent);
    EXPECT_EQ(0U, askScripted(server).records);
    EXPECT_GE(_elapsed, 400ms);
    EXPECT_LT(_elapsed, kSoon);
}

TEST_F(LDAPDirectoryServiceHostileTest, SilentServerWithTLS)
{
    beImpatient();
    const ScriptedServer server(&keepSilent);
    EXPECT_EQ(0U, askScripted(server, "ldaps").records);
    EXPECT_GE(_elapsed, 400ms);
    EXPECT_LT(_elapsed, kSoon);
}

TEST_F(LDAPDirectoryServiceHostileTest, AllServersTogetherGetTheTimeOfTheSession)
{
    beImpatient();
    const ScriptedServer server(&keepSilent);
    std::string uris = "URI";
    for (int number = 0; number < 30; ++number)
        uris += " " + server.uri();
    configure(uris);
    const auto begin = Clock::now();
    EXPECT_EQ(0U, ask("anna").records);
    EXPECT_GE(Clock::now() - begin, 900ms);
    EXPECT_LT(Clock::now() - begin, kSoon);
    EXPECT_LE(server.connections(), 3); // 400, 400 and the last 100 ms
}

TEST_F(LDAPDirectoryServiceHostileTest, NextServerIsAskedAfterASilentOne)
{
    _limits = {.answer = 2s, .session = 60s};
    const ScriptedServer silent(&keepSilent);
    const ScriptedServer decent(decentBut([](auto &) { return std::nullopt; }));
    configure("URI " + silent.uri("ldaps") + " " + decent.uri());
    EXPECT_THAT(ask("anna").locations, ElementsAre(decent.uri() + "/dc=scripted,dc=example"));
}

TEST_F(LDAPDirectoryServiceHostileTest, DrippingServer)
{
    beImpatient();
    const ScriptedServer server([](int socket, int) {
        Support::serveLDAP(socket, [&](const LDAPRequest &request) {
            for (const char byte : decentReply(request)) {
                if (!Support::sendAll(socket, {&byte, 1}))
                    break;
                usleep(100'000);
            }
            return std::string();
        });
    });
    EXPECT_EQ(0U, askScripted(server).records);
    EXPECT_LT(_elapsed, kSoon);
}

TEST_F(LDAPDirectoryServiceHostileTest, DrippingHandshake)
{
    beImpatient();
    const ScriptedServer server([](int socket, int) {
        // The beginning of a TLS handshake message that announces 16 kB.
        const std::string hello("\x16\x03\x03\x40\x00\x02\x00\x3f\xfc\x03\x03", 11);
        for (const char byte : hello + std::string(16'000, 'x')) {
            if (!Support::sendAll(socket, {&byte, 1}))
                break;
            usleep(100'000);
        }
    });
    EXPECT_EQ(0U, askScripted(server, "ldaps").records);
    EXPECT_LT(_elapsed, kSoon);
}

TEST_F(LDAPDirectoryServiceHostileTest, DrippingEntriesEndWithTheSession)
{
    _limits = {.answer = 5s, .session = 2s};
    const ScriptedServer server([](int socket, int) {
        Support::serveLDAP(socket, [&](const LDAPRequest &request) {
            if (request.scope != 2)
                return decentReply(request);
            while (Support::sendAll(
                socket, Support::ldapEntry(request.id, "uid=anna,dc=scripted,dc=example", {})))
                usleep(100'000);
            return std::string();
        });
    });
    EXPECT_EQ(0U, askScripted(server).records);
    EXPECT_GE(_elapsed, 2s);
    EXPECT_LT(_elapsed, kSoon);
}

TEST_F(LDAPDirectoryServiceHostileTest, ServerThatClosesAtOnce)
{
    const ScriptedServer server([](int, int) {});
    EXPECT_EQ(0U, askScripted(server).records);
}

TEST_F(LDAPDirectoryServiceHostileTest, ServerThatClosesInTheMiddleOfAnAnswer)
{
    const ScriptedServer server([](int socket, int) {
        Support::serveLDAP(socket, [&](const LDAPRequest &request) {
            const std::string reply = decentReply(request);
            if (request.scope != 2)
                return reply;
            Support::sendAll(socket, std::string_view(reply).substr(0, reply.size() / 2));
            shutdown(socket, SHUT_RDWR);
            return std::string("x");
        });
    });
    EXPECT_EQ(0U, askScripted(server).records);
}

TEST_F(LDAPDirectoryServiceHostileTest, ServerThatClosesBetweenRecordsAndResult)
{
    const ScriptedServer server([](int socket, int) {
        Support::serveLDAP(socket, [&](const LDAPRequest &request) {
            if (request.scope != 2)
                return decentReply(request);
            Support::sendAll(socket,
                             Support::ldapEntry(request.id, "uid=anna,dc=scripted,dc=example", {}));
            shutdown(socket, SHUT_RDWR);
            return std::string("x");
        });
    });
    EXPECT_EQ(0U, askScripted(server).records);
}

TEST_F(LDAPDirectoryServiceHostileTest, ServerThatTalksRubbish)
{
    beImpatient();
    for (const std::string &rubbish :
         {std::string(100, '\0'), std::string(100, '\xff'), std::string("HTTP/1.0 200 OK\r\n\r\n"),
          std::string("\x30\x80\x00\x00", 4), Support::berElement(0x30, "\x02\x01\x01\x64\x7f")}) {
        const ScriptedServer server([=](int socket, int) {
            Support::serveLDAP(socket, [&](const LDAPRequest &) { return rubbish; });
        });
        EXPECT_EQ(0U, askScripted(server).records);
        EXPECT_LT(_elapsed, kSoon);
    }
}

TEST_F(LDAPDirectoryServiceHostileTest, TenThousandEntriesAreTenThousandRecords)
{
    const ScriptedServer server(decentButForUsers([](const LDAPRequest &request) {
        return decentReply(
            request, std::vector<std::string>(10'000, "uid=anna,ou=people,dc=scripted,dc=example"));
    }));
    const Answer answer = askScripted(server);
    EXPECT_EQ(10'000U, answer.records);
    EXPECT_EQ(10'000U, answer.locations.size());
    EXPECT_EQ(searchBase("dc=scripted,dc=example"), answer.node);
}

TEST_F(LDAPDirectoryServiceHostileTest, EndlessEntriesEndWithTheSession)
{
    beImpatient();
    const ScriptedServer server([](int socket, int) {
        Support::serveLDAP(socket, [&](const LDAPRequest &request) {
            if (request.scope != 2)
                return decentReply(request);
            std::string entries;
            for (int number = 0; number < 1000; ++number)
                entries += Support::ldapEntry(request.id, "uid=anna,dc=scripted,dc=example", {});
            while (Support::sendAll(socket, entries)) {
            }
            return std::string();
        });
    });
    EXPECT_EQ(0U, askScripted(server).records);
    EXPECT_LT(_elapsed, kSoon);
    EXPECT_LT(peakMemoryOfChildren(), 200);
}

TEST_F(LDAPDirectoryServiceHostileTest, EndlessEntriesInsteadOfOneGrowNothing)
{
    beImpatient();
    const ScriptedServer server([](int socket, int) {
        Support::serveLDAP(socket, [&](const LDAPRequest &request) {
            const std::string entry = Support::ldapEntry(
                request.id, "", {{"namingContexts", {std::string(60'000, 'x')}}});
            while (Support::sendAll(socket, entry)) {
            }
            return std::string();
        });
    });
    EXPECT_EQ(0U, askScripted(server).records);
    EXPECT_LT(_elapsed, kSoon);
    EXPECT_LT(peakMemoryOfChildren(), 200);
}

TEST_F(LDAPDirectoryServiceHostileTest, EndlessMessagesThatNobodyAskedForGrowNothing)
{
    beImpatient();
    const ScriptedServer server([](int socket, int) {
        Support::serveLDAP(socket, [&](const LDAPRequest &) {
            const std::string notice = Support::ldapEntry(0, std::string(60'000, 'x'), {});
            while (Support::sendAll(socket, notice)) {
            }
            return std::string();
        });
    });
    EXPECT_EQ(0U, askScripted(server).records);
    EXPECT_LT(peakMemoryOfChildren(), 200);
}

TEST_F(LDAPDirectoryServiceHostileTest, AttributeOfTwoMegabytesIsNotTakenIn)
{
    const ScriptedServer server(decentButForUsers([](const LDAPRequest &request) {
        return Support::ldapEntry(request.id, "uid=anna,dc=scripted,dc=example",
                                  {{"jpegPhoto", {std::string(2'000'000, 'x')}}}) +
               Support::ldapDone(request.id);
    }));
    EXPECT_EQ(0U, askScripted(server).records);
}

TEST_F(LDAPDirectoryServiceHostileTest, DomainOfTwoMegabytesIsNotTakenIn)
{
    const ScriptedServer server(
        decentBut([](const LDAPRequest &request) -> std::optional<std::string> {
            if (!request.mentions("associatedDomain"))
                return std::nullopt;
            return Support::ldapEntry(request.id, kScriptedContext,
                                      {{"associatedDomain", {std::string(2'000'000, 'x')}}});
        }));
    const Answer answer = askScripted(server);
    EXPECT_EQ(1U, answer.records);
    EXPECT_EQ("", answer.openError);
    EXPECT_NE("", answer.detailsError);
    EXPECT_THAT(answer.node, IsEmpty());
}

TEST_F(LDAPDirectoryServiceHostileTest, AnnouncedGigabyteTakesNoMemory)
{
    _limits = {.answer = 3s, .session = 3s};
    const ScriptedServer server([](int socket, int) {
        Support::serveLDAP(socket, [&](const LDAPRequest &) {
            Support::sendAll(socket, std::string("\x30\x84\x40\x00\x00\x00\x02\x01\x01", 9));
            while (Support::sendAll(socket, std::string(100'000, 'x'))) {
            }
            return std::string();
        });
    });
    EXPECT_EQ(0U, askScripted(server).records);
    EXPECT_LT(peakMemoryOfChildren(), 200);
}

TEST_F(LDAPDirectoryServiceHostileTest, SizeLimitExceededLeavesNoRecords)
{
    constexpr int kSizeLimitExceeded = 4;
    const ScriptedServer server(decentButForUsers([](const LDAPRequest &request) {
        return Support::ldapEntry(request.id, "uid=anna,dc=scripted,dc=example", {}) +
               Support::ldapDone(request.id, kSizeLimitExceeded);
    }));
    EXPECT_EQ(0U, askScripted(server).records);
}

TEST_F(LDAPDirectoryServiceHostileTest, ReferralIsNotFollowed)
{
    constexpr int kReferral = 10;
    const int elsewhere = Support::freePort();
    const ScriptedServer server(decentButForUsers([=](const LDAPRequest &request) {
        return Support::ldapDone(request.id, kReferral,
                                 "ldap://127.0.0.1:" + std::to_string(elsewhere) + "/");
    }));
    EXPECT_EQ(0U, askScripted(server).records);
    EXPECT_EQ(1, server.connections());
}

TEST_F(LDAPDirectoryServiceHostileTest, ReferralToTheServerItselfIsNotFollowed)
{
    constexpr int kReferral = 10;
    // The server learns its own port from the connection.
    const ScriptedServer server([](int socket, int) {
        sockaddr_in own = {};
        socklen_t size = sizeof own;
        getsockname(socket, reinterpret_cast<sockaddr *>(&own), &size);
        const std::string itself = "ldap://127.0.0.1:" + std::to_string(ntohs(own.sin_port)) + "/";
        Support::serveLDAP(socket, [&](const LDAPRequest &request) {
            return request.scope == 2 ? Support::ldapDone(request.id, kReferral, itself)
                                      : decentReply(request);
        });
    });
    EXPECT_EQ(0U, askScripted(server).records);
    EXPECT_EQ(1, server.connections());
}

TEST_F(LDAPDirectoryServiceHostileTest, ReferenceAmongTheEntriesIsNotFollowed)
{
    const ScriptedServer other(decentBut([](auto &) { return std::nullopt; }));
    const ScriptedServer server(decentButForUsers([&](const LDAPRequest &request) {
        return Support::ldapReference(request.id, other.uri() + "/dc=other") + decentReply(request);
    }));
    EXPECT_EQ(1U, askScripted(server).records);
    EXPECT_EQ(0, other.connections());
}

TEST_F(LDAPDirectoryServiceHostileTest, RecordWithAnUnreadableNameHasNoDetails)
{
    const ScriptedServer server(decentButForUsers([](const LDAPRequest &request) {
        return decentReply(request, {"uid=anna,dc=scripted,dc=example", "not a name"});
    }));
    const Answer answer = askScripted(server);
    EXPECT_EQ(2U, answer.records);
    EXPECT_THAT(answer.locations, ElementsAre(server.uri() + "/dc=scripted,dc=example"));
}

TEST_F(LDAPDirectoryServiceHostileTest, RecordOutsideAllContextsHasNoLocation)
{
    const ScriptedServer server(decentButForUsers([](const LDAPRequest &request) {
        return decentReply(request, {"uid=anna,dc=scripted,dc=example", "uid=anna,dc=elsewhere"});
    }));
    EXPECT_THAT(askScripted(server).locations,
                ElementsAre(server.uri() + "/dc=scripted,dc=example", "-"));
}

TEST_F(LDAPDirectoryServiceHostileTest, ServerThatGoesAwayBeforeTheNodeIsOpened)
{
    const ScriptedServer server(decentBut([](auto &) { return std::nullopt; }), 1);
    const Answer answer = askScripted(server);
    EXPECT_EQ(1U, answer.records);
    EXPECT_THAT(answer.openError, StartsWith("Can't contact LDAP server"));
}

TEST_F(LDAPDirectoryServiceHostileTest, ServerThatFallsSilentBeforeTheDetails)
{
    _limits = {.answer = 2s, .session = 60s};
    const ScriptedServer server([](int socket, int number) {
        if (number > 0)
            keepSilent(socket, number);
        Support::serveLDAP(socket, [](const LDAPRequest &request) { return decentReply(request); });
    });
    const Answer answer = askScripted(server);
    EXPECT_EQ("", answer.openError);
    EXPECT_EQ("No answer in time", answer.detailsError);
}

TEST_F(LDAPDirectoryServiceHostileTest, UpperCaseContextStaysAsTheServerWritesIt)
{
    // slapd writes attribute types its own way, Active Directory in capitals.
    const ScriptedServer server(decentBut([](const LDAPRequest &request) {
        std::optional<std::string> reply;
        if (request.mentions("namingContexts"))
            reply = Support::ldapEntry(request.id, "", {{"namingContexts", {"DC=ad,DC=example"}}});
        else if (request.scope == 2)
            reply = Support::ldapEntry(request.id, "CN=Anna,CN=Users,DC=ad,DC=example", {});
        return reply ? std::optional(*reply + Support::ldapDone(request.id)) : std::nullopt;
    }));
    const Answer answer = askScripted(server);
    EXPECT_THAT(answer.locations, ElementsAre(server.uri() + "/DC=ad,DC=example"));
    EXPECT_EQ(searchBase("DC=ad,DC=example"), answer.node);
}

TEST_F(LDAPDirectoryServiceHostileTest, EmptyDomainIsADomain)
{
    const ScriptedServer server([](int socket, int) {
        Support::serveLDAP(socket, [](const LDAPRequest &request) {
            if (!request.mentions("associatedDomain"))
                return decentReply(request);
            return Support::ldapEntry(request.id, kScriptedContext, {{"associatedDomain", {""}}}) +
                   Support::ldapDone(request.id);
        });
    });
    EXPECT_EQ(searchBaseAndDomain("dc=scripted,dc=example", ""), askScripted(server).node);
}
