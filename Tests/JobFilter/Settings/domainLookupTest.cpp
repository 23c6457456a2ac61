#include "domainLookup.h"

#include "KLPrintOptions.h"

#include <gtest/gtest.h>

#include "CapturedErrors.h"
#include "Environment.h"
#include "MinimalPPD.h"
#include "TemporaryFolder.h"

using Platform::DirectoryAttributes;
using Platform::DirectoryService;

namespace {

constexpr char kQueriedNone[] =
    "DEBUG: None of the authentication directory services can be queried\n";

KLError failure(const std::string &description)
{
    return {"PlayedErrorDomain", 1, description};
}

DirectoryAttributes located(const std::string &location)
{
    return {{"MetaNodeLocation", {location}}};
}

/// What a directory answers, and what it was asked.
struct Play {
    // Answers. An error makes the step that it is named for fail.
    std::optional<KLError> sessionError = {};
    bool hasAuthenticationNode = true;
    std::optional<KLError> queryError = {};
    std::vector<std::optional<DirectoryAttributes>> records = {located("ldap://one/dc=one")};
    std::optional<KLError> openError = {};
    std::optional<KLError> detailsError = {};
    DirectoryAttributes node = {{"dsAttrTypeNative:DomainName", {"one.example"}}};

    // Questions.
    int sessionsOpened = 0;
    std::string userName = {};
    std::string nodeName = {};
};

class PlayedDirectory : public DirectoryService {
public:
    explicit PlayedDirectory(Play &play) : _play(play) {}

    bool openAuthenticationNode() override { return _play.hasAuthenticationNode; }
    bool prepareQueryForUser(const std::string &userName, std::optional<KLError> *error) override
    {
        _play.userName = userName;
        *error = _play.queryError;
        return !_play.queryError;
    }
    std::size_t runQuery() override { return _play.records.size(); }
    std::optional<DirectoryAttributes> recordDetails(std::size_t record) override
    {
        return _play.records.at(record);
    }
    bool openNodeNamed(const std::string &name, std::optional<KLError> *error) override
    {
        _play.nodeName = name;
        *error = _play.openError;
        return !_play.openError;
    }
    std::optional<DirectoryAttributes> nodeDetails(std::optional<KLError> *error) override
    {
        *error = _play.detailsError;
        return _play.detailsError ? std::nullopt : std::optional(_play.node);
    }

private:
    Play &_play;
};

struct Outcome {
    std::string domain;
    std::string log;

    bool operator==(const Outcome &) const = default;
};

void PrintTo(const Outcome &outcome, std::ostream *stream)
{
    *stream << "domain \"" << outcome.domain << "\" after\n" << outcome.log;
}

Outcome lookUp(Play &play, const std::optional<std::string> &userName = "anna")
{
    Support::CapturedErrors errors;
    const std::string domain =
        domainFromDirectory(userName, [&](auto *error) -> std::unique_ptr<DirectoryService> {
            ++play.sessionsOpened;
            *error = play.sessionError;
            if (play.sessionError)
                return nullptr;
            return std::make_unique<PlayedDirectory>(play);
        });
    return {domain, errors.text()};
}

Outcome lookUpNode(const DirectoryAttributes &node)
{
    Play play = {.node = node};
    return lookUp(play);
}

constexpr char kFoundOne[] = "INFO: Found 1 records for user anna\n";
constexpr char kUsingOne[] = "DEBUG: Using ldap://one/dc=one as the authorisation node\n";
const std::string kReachedNode = std::string(kFoundOne) + kUsingOne;

} // namespace

TEST(DomainFromSearchBaseTest, JoinsTheComponentsWithDots)
{
    EXPECT_EQ("example.com", domainFromSearchBase("dc=example,dc=com"));
}

TEST(DomainFromSearchBaseTest, OneComponentIsTheDomain)
{
    EXPECT_EQ("local", domainFromSearchBase("dc=local"));
}

TEST(DomainFromSearchBaseTest, OrganisationalUnitInFrontFails)
{
    EXPECT_EQ(std::nullopt, domainFromSearchBase("ou=people,dc=example,dc=com"));
}

TEST(DomainFromSearchBaseTest, OrganisationAtTheEndFails)
{
    EXPECT_EQ(std::nullopt, domainFromSearchBase("dc=example,o=company"));
}

TEST(DomainFromSearchBaseTest, BlankAfterTheCommaFails)
{
    EXPECT_EQ(std::nullopt, domainFromSearchBase("dc=example, dc=com"));
}

TEST(DomainFromSearchBaseTest, BlankAtTheEndOfAComponentStays)
{
    EXPECT_EQ("example .com", domainFromSearchBase("dc=example ,dc=com"));
}

TEST(DomainFromSearchBaseTest, UpperCasePrefixFails)
{
    EXPECT_EQ(std::nullopt, domainFromSearchBase("DC=example,DC=com"));
}

TEST(DomainFromSearchBaseTest, LetterCaseOfTheTextStays)
{
    EXPECT_EQ("Example.COM", domainFromSearchBase("dc=Example,dc=COM"));
}

TEST(DomainFromSearchBaseTest, BlankBeforeTheEqualsSignFails)
{
    EXPECT_EQ(std::nullopt, domainFromSearchBase("dc =example"));
}

TEST(DomainFromSearchBaseTest, EmptyBaseFails)
{
    EXPECT_EQ(std::nullopt, domainFromSearchBase(""));
}

TEST(DomainFromSearchBaseTest, EmptyPieceAtTheEndFails)
{
    EXPECT_EQ(std::nullopt, domainFromSearchBase("dc=example,"));
}

TEST(DomainFromSearchBaseTest, EmptyPieceInFrontFails)
{
    EXPECT_EQ(std::nullopt, domainFromSearchBase(",dc=example"));
}

TEST(DomainFromSearchBaseTest, EmptyComponentContributesAnEmptyText)
{
    EXPECT_EQ(".com", domainFromSearchBase("dc=,dc=com"));
    EXPECT_EQ("", domainFromSearchBase("dc="));
}

TEST(DomainFromSearchBaseTest, CommaInsideAComponentSplitsItAllTheSame)
{
    EXPECT_EQ(std::nullopt, domainFromSearchBase("dc=exam\\,ple,dc=com"));
}

TEST(DomainFromSearchBaseTest, SecondTypeOfAComponentIsPartOfTheText)
{
    EXPECT_EQ("example+o=x.com", domainFromSearchBase("dc=example+o=x,dc=com"));
}

TEST(DomainFromHostAnswerTest, SuccessGivesTheEmptyDomain)
{
    EXPECT_EQ("", domainFromHostAnswer(0, "example.com"));
}

TEST(DomainFromHostAnswerTest, FailureGivesTheEmptyDomain)
{
    EXPECT_EQ("", domainFromHostAnswer(-1, "example.com"));
}

TEST(DomainFromHostAnswerTest, ResultAboveZeroGivesTheName)
{
    EXPECT_EQ("exämple.com", domainFromHostAnswer(1, "exämple.com"));
}

TEST(DomainFromHostAnswerTest, NameThatIsNotUTF8IsAbsent)
{
    EXPECT_EQ(std::nullopt, domainFromHostAnswer(1, "ex\xe4mple"));
}

TEST(DomainFromDirectoryTest, NativeDomainNameIsTheDomain)
{
    Play play;
    EXPECT_EQ((Outcome{"one.example", kReachedNode}), lookUp(play));
    EXPECT_EQ("anna", play.userName);
    EXPECT_EQ("ldap://one/dc=one", play.nodeName);
}

TEST(DomainFromDirectoryTest, AbsentUserNameOpensNoSession)
{
    Play play;
    EXPECT_EQ((Outcome{"", "DEBUG: Unable to get username, possible internal inconsistency "
                           "error\n"}),
              lookUp(play, std::nullopt));
    EXPECT_EQ(0, play.sessionsOpened);
}

TEST(DomainFromDirectoryTest, FailedSession)
{
    Play play = {.sessionError = failure("no such module")};
    EXPECT_EQ((Outcome{"", "DEBUG: Unable to create directory services session: no such module\n"}),
              lookUp(play));
}

TEST(DomainFromDirectoryTest, MissingAuthenticationNodeIsLoggedWithTheAbsentErrorOfTheSession)
{
    Play play = {.hasAuthenticationNode = false};
    EXPECT_EQ((Outcome{"", "DEBUG: Unable to obtain authentication node: (null)\n"}), lookUp(play));
}

TEST(DomainFromDirectoryTest, QueryThatCannotBeBuilt)
{
    Play play = {.queryError = failure("bad name")};
    EXPECT_EQ((Outcome{"", "DEBUG: Unable to query authentication node: bad name\n"}),
              lookUp(play));
}

TEST(DomainFromDirectoryTest, ErrorWithoutDescriptionPrintsAsNull)
{
    Play play = {.queryError = KLError("PlayedErrorDomain", 1, std::nullopt)};
    EXPECT_EQ((Outcome{"", "DEBUG: Unable to query authentication node: (null)\n"}), lookUp(play));
}

TEST(DomainFromDirectoryTest, NoRecords)
{
    Play play = {.records = {}};
    EXPECT_EQ((Outcome{"", std::string("INFO: Found 0 records for user anna\n") + kQueriedNone}),
              lookUp(play));
}

TEST(DomainFromDirectoryTest, RecordWithoutDetailsIsSkipped)
{
    Play play = {.records = {located("ldap://one/dc=one"), std::nullopt}};
    EXPECT_EQ(
        (Outcome{"one.example", std::string("INFO: Found 2 records for user anna\n") + kUsingOne}),
        lookUp(play));
}

TEST(DomainFromDirectoryTest, OnlyRecordWithoutDetailsNamesNoNode)
{
    Play play = {.records = {std::nullopt}};
    EXPECT_EQ((Outcome{"", std::string(kFoundOne) + kQueriedNone}), lookUp(play));
}

TEST(DomainFromDirectoryTest, LastRecordWithDetailsDecides)
{
    Play play = {.records = {located("ldap://two/dc=two"), located("ldap://one/dc=one")}};
    EXPECT_EQ(
        (Outcome{"one.example", std::string("INFO: Found 2 records for user anna\n") + kUsingOne}),
        lookUp(play));
}

TEST(DomainFromDirectoryTest, LastRecordWithoutLocationClearsAnEarlierOne)
{
    Play play = {.records = {located("ldap://one/dc=one"), DirectoryAttributes()}};
    EXPECT_EQ((Outcome{"", std::string("INFO: Found 2 records for user anna\n") + kQueriedNone}),
              lookUp(play));
    EXPECT_EQ("", play.nodeName);
}

TEST(DomainFromDirectoryTest, LocationWithoutValuesIsAbsent)
{
    Play play = {.records = {DirectoryAttributes({{"MetaNodeLocation", {}}})}};
    EXPECT_EQ((Outcome{"", std::string(kFoundOne) + kQueriedNone}), lookUp(play));
}

TEST(DomainFromDirectoryTest, FirstOfSeveralLocationsCounts)
{
    Play play = {.records = {DirectoryAttributes(
                     {{"MetaNodeLocation", {"ldap://one/dc=one", "ldap://two/dc=two"}}})}};
    EXPECT_EQ((Outcome{"one.example", kReachedNode}), lookUp(play));
}

TEST(DomainFromDirectoryTest, NodeThatCannotBeOpened)
{
    Play play = {.openError = failure("server is down")};
    EXPECT_EQ((Outcome{"", kReachedNode + "ERROR: Unable to inspect directory node "
                                          "ldap://one/dc=one: server is down\n"}),
              lookUp(play));
}

TEST(DomainFromDirectoryTest, NodeThatGivesNoDetails)
{
    Play play = {.detailsError = failure("not for you")};
    EXPECT_EQ((Outcome{"", kReachedNode + "DEBUG: Unable to inspect attributes of directory node "
                                          "ldap://one/dc=one: not for you\n"}),
              lookUp(play));
}

TEST(DomainFromDirectoryTest, NativeDomainNameWinsOverTheSearchBase)
{
    EXPECT_EQ((Outcome{"one.example", kReachedNode}),
              lookUpNode({{"dsAttrTypeNative:DomainName", {"one.example", "two.example"}},
                          {"LDAPSearchBaseSuffix", {"o=unreadable"}}}));
}

TEST(DomainFromDirectoryTest, EmptyNativeDomainNameIsAnAnswer)
{
    EXPECT_EQ((Outcome{"", kReachedNode}), lookUpNode({{"dsAttrTypeNative:DomainName", {""}},
                                                       {"LDAPSearchBaseSuffix", {"dc=base"}}}));
}

TEST(DomainFromDirectoryTest, SearchBaseStandsInForTheNativeDomainName)
{
    EXPECT_EQ((Outcome{"example.com", kReachedNode}),
              lookUpNode({{"dsAttrTypeNative:DomainName", {}},
                          {"LDAPSearchBaseSuffix", {"dc=example,dc=com", "dc=other"}}}));
}

TEST(DomainFromDirectoryTest, NodeWithNeither)
{
    EXPECT_EQ((Outcome{"", kReachedNode + "DEBUG: Unable to query the domain name from the "
                                          "authentication directory service node\n"}),
              lookUpNode({}));
}

TEST(DomainFromDirectoryTest, SearchBaseThatSpellsNoDomainIsQuotedWhole)
{
    EXPECT_EQ((Outcome{"", kReachedNode + "DEBUG: Unable to parse LDAP search base: "
                                          "ou=people,dc=example,dc=com\n"}),
              lookUpNode({{"LDAPSearchBaseSuffix", {"ou=people,dc=example,dc=com"}}}));
}

TEST(DomainFromDirectoryTest, LineBreakInTheUserNameStartsNoLogLine)
{
    Play play = {.records = {}};
    EXPECT_EQ((Outcome{"", std::string("INFO: Found 0 records for user a PPD: Duplex=x\n") +
                               kQueriedNone}),
              lookUp(play, "a\nPPD: Duplex=x"));
    EXPECT_EQ("a\nPPD: Duplex=x", play.userName);
}

namespace {

class DomainForUserTest : public testing::Test {
protected:
    /// What a job with these options logs of the look-up.
    std::string logOf(const std::string &optionString)
    {
        const Support::ScopedEnvironment ppd("PPD",
                                             _folder.write("test.ppd", Support::minimalPPD()));
        // Nobody listens on the discard port: without the directory path nobody asks either.
        const Support::ScopedEnvironment servers(
            "LDAPCONF", _folder.write("ldap.conf", "URI ldap://127.0.0.1:9\n"));
        const KLPrintOptions options(optionString);
        Support::CapturedErrors errors;
        EXPECT_EQ("", domainForUser(options));
        return errors.text();
    }

    Support::TemporaryFolder _folder;
};

const std::string kSwitch = "com.kalmira.username=anna UseOpenDirectoryForAuthentication";
const std::string kAsked = std::string("INFO: Found 0 records for user anna\n") + kQueriedNone;

} // namespace

TEST_F(DomainForUserTest, WithoutTheSwitchTheHostIsAsked)
{
    EXPECT_EQ("", logOf("com.kalmira.username=anna"));
}

TEST_F(DomainForUserTest, TrueAsksTheDirectory)
{
    EXPECT_EQ(kAsked, logOf(kSwitch + "=True"));
}

TEST_F(DomainForUserTest, LowerCaseTrueIsStoredAsTrueAndAsksTheDirectory)
{
    EXPECT_EQ(kAsked, logOf(kSwitch + "=true"));
}

TEST_F(DomainForUserTest, AnyOtherValueAsksTheHost)
{
    for (const char *value : {"=TRUE", "=1", "=yes", "=False", "=\"True \"", "..b.=1"})
        EXPECT_EQ("", logOf(kSwitch + value)) << value;
}

TEST_F(DomainForUserTest, AbsentUserNameIsLogged)
{
    EXPECT_EQ("DEBUG: Unable to get username, possible internal inconsistency error\n",
              logOf("UseOpenDirectoryForAuthentication=True"));
}

TEST_F(DomainForUserTest, UserNameStoredAsNumberIsAskedForByItsText)
{
    EXPECT_EQ(std::string("INFO: Found 0 records for user 42\n") + kQueriedNone,
              logOf("com.kalmira.username..n.=42 UseOpenDirectoryForAuthentication=True"));
}
