#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <optional>
#include <set>
#include <sstream>
#include <sys/mman.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "DirectoryJob.h"
#include "DirectoryServer.h"
#include "HiddenServices.h"
#include "Program.h"
#include "SSSDScript.h"
#include "ScriptedServer.h"
#include "TemporaryFolder.h"
#include "Waiting.h"
#include "WinbindScript.h"

using Support::DirectoryServer;
using Support::domainIn;
using Support::LDAPRequest;
using Support::logOf;
using Support::ProgramCall;
using Support::ProgramResult;
using Support::ScriptedServer;
using Support::textBetween;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

constexpr char kQueriedNone[] =
    "DEBUG: None of the authentication directory services can be queried\n";

/// The built program with a queue and a directory.
class JobFilterDirectoryTest : public testing::Test {
protected:
    /// The machine's own sources would be asked first; where they cannot be hidden, it must have
    /// none.
    JobFilterDirectoryTest() : _hidden(Support::hideServices()) {}

    /// A job of anna's that asks for the directory of these servers.
    ProgramCall call(const std::string &servers, const std::string &options = "") const
    {
        const std::string configuration = "URI " + servers + "\n";
        return {.arguments = {JOBFILTER_PROGRAM, "7", "anna", "Report", "1",
                              "UseOpenDirectoryForAuthentication=true " + options},
                .environment = {{"PPD", _ppd},
                                {"TMPDIR", _temporaries.path()},
                                {"LDAPCONF", _folder.write("ldap.conf", configuration)}},
                .input = "%!PS\n"};
    }

    /// Has the queue pin who prints and say whether the directory is asked.
    void pinUser(const std::string &useDirectory)
    {
        const std::string name = "UseOpenDirectoryForAuthentication";
        _folder.write("queue.ppd",
                      Support::directoryPPD("*KLPinnedUser: True\n*JCLOpenUI *" + name +
                                            ": Boolean\n*OrderDependency: 11 JCLSetup *" + name +
                                            "\n*Default" + name + ": " + useDirectory + "\n*" +
                                            name + " True: \"\"\n*" + name +
                                            " False: \"\"\n*JCLCloseUI: *" + name + "\n"));
    }

    const bool _hidden;
    Support::TemporaryFolder _folder;
    std::string _ppd = _folder.write("queue.ppd", Support::directoryPPD());
    Support::TemporaryFolder _temporaries;
};

/// A server with one context and anna in it.
Support::DirectoryContext contextWithAnna(const std::string &suffix, const std::string &rootLines)
{
    return {suffix, "dn: " + suffix + "\n" + rootLines + "\ndn: uid=Anna," + suffix +
                        "\nobjectClass: account\n\n"};
}

const Support::DirectoryContext kExample =
    contextWithAnna("dc=example,dc=com", "objectClass: domain\ndc: example\n");
const Support::DirectoryContext kOrganisation =
    contextWithAnna("o=Company", "objectClass: organization\no: Company\n");
const Support::DirectoryContext kNamed =
    contextWithAnna("o=Named", "objectClass: organization\nobjectClass: domainRelatedObject\n"
                               "o: Named\nassociatedDomain: native.example\n");

std::string foundIn(const std::string &node, int records = 1)
{
    return Support::logOfFound("anna", node, records);
}

void keepSilent(int, int)
{
    for (;;)
        pause();
}

/// What the dynamic loader says it loaded.
struct LoadedFiles {
    std::set<std::string> byProgram;
    std::set<std::string> byItsChildren;
};

LoadedFiles loadedFiles(const std::string &loaderLog)
{
    LoadedFiles files;
    std::optional<std::string> program;
    std::istringstream lines(loaderLog);
    for (std::string line; std::getline(lines, line);) {
        // "   1234:\tfile=libc.so.6 [0];  generating link map", the program's own number first.
        const auto file = textBetween(line, "\tfile=", " [");
        if (!file || !line.ends_with("generating link map"))
            continue;
        const std::string process = line.substr(0, line.find(':'));
        program = program.value_or(process);
        auto &list = process == *program ? files.byProgram : files.byItsChildren;
        list.insert(std::filesystem::path(*file).filename());
    }
    return files;
}

/// Runs the call with the dynamic loader telling what it does.
LoadedFiles runAndListFiles(ProgramCall call)
{
    call.environment["LD_DEBUG"] = "files";
    return loadedFiles(runProgram(call).errors);
}

} // namespace

// A queue that pins who prints.

TEST_F(JobFilterDirectoryTest, PinnedUserAndDomainAreTheJobsUserAndTheDirectorys)
{
    const DirectoryServer server({kExample});
    pinUser("True");
    auto job = call(server.uri());
    job.arguments.back() = "com.kalmira.username=otto com.kalmira.domainname=EVIL "
                           "UseOpenDirectoryForAuthentication=false";
    const auto result = runProgram(job);
    EXPECT_EQ("example.com", domainIn(result));
    EXPECT_THAT(result.output, HasSubstr("@PJL COMMENT DSSC PRINT USERLOGIN=anna\r\n"));
    EXPECT_THAT(result.output, Not(HasSubstr("otto")));
    const std::string ignored = "DEBUG: The queue pins who prints, the job's option is ignored: ";
    EXPECT_EQ(ignored + "com.kalmira.domainname\n" + ignored + "com.kalmira.username\n" + ignored +
                  "UseOpenDirectoryForAuthentication\n" +
                  foundIn(server.uri() + "/dc=example,dc=com"),
              logOf(result));
}

TEST_F(JobFilterDirectoryTest, PinnedDomainIsNotLookedUpUnlessTheQueueSaysSo)
{
    pinUser("False");
    EXPECT_EQ("", domainIn(runProgram(call("ldap://127.0.0.1:1"))));
}

// The domain.

TEST_F(JobFilterDirectoryTest, SearchBaseGivesTheDomain)
{
    const DirectoryServer server({kExample});
    const auto result = runProgram(call(server.uri()));
    EXPECT_EQ("example.com", domainIn(result));
    EXPECT_EQ(foundIn(server.uri() + "/dc=example,dc=com"), logOf(result));
}

TEST_F(JobFilterDirectoryTest, AssociatedDomainGivesTheDomain)
{
    const DirectoryServer server({kNamed});
    const auto result = runProgram(call(server.uri()));
    EXPECT_EQ("native.example", domainIn(result));
    EXPECT_EQ(foundIn(server.uri() + "/o=Named"), logOf(result));
}

TEST_F(JobFilterDirectoryTest, DomainComesThroughTLSToo)
{
    Support::CertificateAuthority authority;
    const auto issued = authority.issue("IP:127.0.0.1");
    const DirectoryServer server({kExample}, issued.certificate, issued.key);
    const auto result =
        runProgram(call(server.secureURI() + "\nTLS_CACERT " + authority.certificate()));
    EXPECT_EQ("example.com", domainIn(result));
    EXPECT_EQ(foundIn(server.secureURI() + "/dc=example,dc=com"), logOf(result));
}

TEST_F(JobFilterDirectoryTest, CertificateThatDoesNotVerifyGivesNoDomain)
{
    Support::CertificateAuthority authority;
    const auto issued = authority.issue("DNS:other.example");
    const DirectoryServer server({kExample}, issued.certificate, issued.key);
    const auto result =
        runProgram(call(server.secureURI() + "\nTLS_CACERT " + authority.certificate()));
    EXPECT_EQ("", domainIn(result));
    EXPECT_EQ(std::string("INFO: Found 0 records for user anna\n") + kQueriedNone, logOf(result));
}

TEST_F(JobFilterDirectoryTest, LastOfTwoRecordsDecides)
{
    const DirectoryServer server({kExample, kNamed});
    const auto result = runProgram(call(server.uri()));
    EXPECT_EQ("native.example", domainIn(result));
    EXPECT_EQ(foundIn(server.uri() + "/o=Named", 2), logOf(result));
}

TEST_F(JobFilterDirectoryTest, OrganisationGivesNoDomain)
{
    const DirectoryServer server({kOrganisation});
    const auto result = runProgram(call(server.uri()));
    EXPECT_EQ("", domainIn(result));
    EXPECT_EQ(foundIn(server.uri() + "/o=Company") +
                  "DEBUG: Unable to parse LDAP search base: o=Company\n",
              logOf(result));
}

TEST_F(JobFilterDirectoryTest, UnknownUserGivesNoDomain)
{
    const DirectoryServer server({kExample});
    const auto result = runProgram(call(server.uri(), "com.kalmira.username=nobody"));
    EXPECT_EQ("", domainIn(result));
    EXPECT_EQ(std::string("INFO: Found 0 records for user nobody\n") + kQueriedNone, logOf(result));
}

TEST_F(JobFilterDirectoryTest, UserNameOfTheOptionsIsTheOneAskedFor)
{
    const DirectoryServer server({kExample});
    auto nobody = call(server.uri(), "com.kalmira.username=ANNA");
    nobody.arguments[2] = "nobody";
    EXPECT_EQ("example.com", domainIn(runProgram(nobody)));
}

TEST_F(JobFilterDirectoryTest, DomainOfTheOptionsWins)
{
    const DirectoryServer server({kExample});
    EXPECT_EQ("mine.example",
              domainIn(runProgram(call(server.uri(), "com.kalmira.domainname=mine.example"))));
}

TEST_F(JobFilterDirectoryTest, UserNameWithALineBreakStaysOnItsLogLine)
{
    const DirectoryServer server({kExample});
    auto broken = call(server.uri());
    broken.arguments[2] = "*\nPPD: Duplex=None";
    const auto result = runProgram(broken);
    EXPECT_EQ("", domainIn(result));
    EXPECT_EQ(std::string("INFO: Found 0 records for user * PPD: Duplex=None\n") + kQueriedNone,
              logOf(result));
}

TEST_F(JobFilterDirectoryTest, DomainWithControlCharactersSpeaksNoPJL)
{
    const ScriptedServer server([](int socket, int) {
        Support::serveLDAP(socket, [](const LDAPRequest &request) {
            std::string reply = Support::ldapEntry(
                request.id, request.base,
                {{"namingContexts", {"dc=a"}},
                 {"associatedDomain", {"a\r\n@PJL SET COPIES=99\r\n\033%-12345X"}}});
            if (request.scope == 2)
                reply = Support::ldapEntry(request.id, "uid=anna,dc=a", {});
            return reply + Support::ldapDone(request.id);
        });
    });
    EXPECT_EQ("a  @PJL SET COPIES=99   %-12345X", domainIn(runProgram(call(server.uri()))));
}

// Failures.

TEST_F(JobFilterDirectoryTest, WithoutServerThereIsNoAuthenticationNode)
{
    auto unconfigured = call("");
    _folder.write("ldap.conf", "");
    const auto result = runProgram(unconfigured);
    EXPECT_EQ("", domainIn(result));
    EXPECT_EQ("DEBUG: Unable to obtain authentication node: (null)\n", logOf(result));
}

TEST_F(JobFilterDirectoryTest, ModuleThatDoesNotLoadIsAFailedSession)
{
    auto broken = call("ldap://127.0.0.1");
    _folder.write("KLDirectoryModule.so", "no module");
    broken.environment["LD_LIBRARY_PATH"] = _folder.path();
    const auto result = runProgram(broken);
    EXPECT_EQ("", domainIn(result));
    EXPECT_THAT(logOf(result), StartsWith("DEBUG: Unable to create directory services session: "
                                          "Unable to load module: "));
}

TEST_F(JobFilterDirectoryTest, UserNameThatIsNotUTF8CannotBeAskedFor)
{
    const auto result = runProgram(call("ldap://127.0.0.1", "com.kalmira.username=J\xfcrgen"));
    EXPECT_EQ("", domainIn(result));
    EXPECT_EQ("DEBUG: Unable to query authentication node: The user name is not UTF-8\n",
              logOf(result));
}

TEST_F(JobFilterDirectoryTest, ServerThatGoesAwayBeforeTheNodeIsOpened)
{
    const ScriptedServer server(
        [](int socket, int) {
            Support::serveLDAP(socket, [](const LDAPRequest &request) {
                const std::string dn = request.scope == 2 ? "uid=anna,dc=a" : "";
                return Support::ldapEntry(request.id, dn, {{"namingContexts", {"dc=a"}}}) +
                       Support::ldapDone(request.id);
            });
        },
        1);
    const auto result = runProgram(call(server.uri()));
    EXPECT_EQ("", domainIn(result));
    EXPECT_THAT(logOf(result), StartsWith(foundIn(server.uri() + "/dc=a") +
                                          "ERROR: Unable to inspect directory node " +
                                          server.uri() + "/dc=a: Can't contact LDAP server"));
}

TEST_F(JobFilterDirectoryTest, ContextEntryThatNobodyMayRead)
{
    const DirectoryServer server({kExample}, {}, {},
                                 "access to dn.exact=dc=example,dc=com by * search\n"
                                 "access to * by * read\n");
    const std::string node = server.uri() + "/dc=example,dc=com";
    const auto result = runProgram(call(server.uri()));
    EXPECT_EQ("", domainIn(result));
    EXPECT_EQ(foundIn(node) + "DEBUG: Unable to inspect attributes of directory node " + node +
                  ": No such object\n",
              logOf(result));
}

TEST_F(JobFilterDirectoryTest, SilentServersCostFiveSecondsEachAndTenTogether)
{
    const ScriptedServer server(&keepSilent);
    const auto begin = Clock::now();
    const auto result =
        runProgram(call(server.uri("ldaps") + " " + server.uri() + " " + server.uri("ldaps")));
    const auto elapsed = Clock::now() - begin;
    EXPECT_EQ("", domainIn(result));
    EXPECT_EQ(std::string("INFO: Found 0 records for user anna\n") + kQueriedNone, logOf(result));
    EXPECT_EQ(2, server.connections());
    EXPECT_GE(elapsed, 9900ms);
    EXPECT_LT(elapsed, 15s); // a busy machine's; the client library alone takes over a minute
}

TEST_F(JobFilterDirectoryTest, CancelledJobLeavesNeitherConnectionNorFile)
{
    // Whether the server saw its client go, in memory that its process shares.
    auto *gone = static_cast<volatile bool *>(
        mmap(nullptr, sizeof(bool), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    const ScriptedServer server([=](int socket, int) {
        char byte;
        while (recv(socket, &byte, 1, 0) > 0) {
        }
        *gone = true;
    });
    auto cancelled = call(server.uri());
    std::thread canceller;
    cancelled.afterStart = [&](pid_t program) {
        canceller = std::thread([&server, program] {
            EXPECT_TRUE(Support::comesTrue([&server] { return server.connections() > 0; }));
            kill(program, SIGTERM);
        });
    };
    const auto begin = Clock::now();
    EXPECT_EQ(SIGTERM, runProgram(cancelled).signal);
    canceller.join();
    EXPECT_TRUE(Support::comesTrue([gone] { return *gone; }));
    EXPECT_LT(Clock::now() - begin, 5s); // not the time limit's doing
    EXPECT_THAT(_temporaries.names(), IsEmpty());
}

// Jobs that do not ask.

TEST_F(JobFilterDirectoryTest, JobThatDoesNotAskOpensNoConnection)
{
    const ScriptedServer server([](int, int) {});
    for (const char *value : {"False", "TRUE", "1"})
        EXPECT_EQ("",
                  domainIn(runProgram(call(
                      server.uri(), std::string("UseOpenDirectoryForAuthentication=") + value))));
    EXPECT_EQ(0, server.connections());
}

namespace {

/// libppd, where PPDs are read with it, needs that library itself: by way of libcupsfilters and
/// libcurl.
#ifdef KL_PPD_FROM_LIBPPD
const auto hasNoDirectoryLibrary = testing::_;
#else
const auto hasNoDirectoryLibrary = Not(Contains(StartsWith("libldap")));
#endif

} // namespace

TEST_F(JobFilterDirectoryTest, JobThatDoesNotAskLoadsNoDirectoryLibrary)
{
    const LoadedFiles files =
        runAndListFiles(call("ldap://127.0.0.1:1", "UseOpenDirectoryForAuthentication=False"));
    EXPECT_THAT(files.byProgram, Contains(StartsWith("libc.so"))); // the list is one
    EXPECT_THAT(files.byProgram, Not(Contains(StartsWith("KLDirectoryModule"))));
    EXPECT_THAT(files.byProgram, hasNoDirectoryLibrary);
    EXPECT_THAT(files.byItsChildren, IsEmpty());
}

TEST_F(JobFilterDirectoryTest, JobThatAsksLoadsTheLibraryOnlyInItsChildren)
{
    const LoadedFiles files = runAndListFiles(call("ldap://127.0.0.1:1"));
    EXPECT_THAT(files.byProgram, hasNoDirectoryLibrary);
    EXPECT_THAT(files.byItsChildren, Contains(StartsWith("KLDirectoryModule")));
    EXPECT_THAT(files.byItsChildren, Contains(StartsWith("libldap")));
}

TEST_F(JobFilterDirectoryTest, ProgramIsNotLinkedToTheDirectoryLibrary)
{
    const auto needed = [](const std::string &file) {
        return Support::runProgram({.arguments = {"readelf", "-d", file}}).output;
    };
    const std::string module =
        std::filesystem::path(JOBFILTER_PROGRAM).parent_path().parent_path() /
        "lib/KLDirectoryModule.so";
    EXPECT_THAT(needed(JOBFILTER_PROGRAM), HasSubstr("[libcups."));
    EXPECT_THAT(needed(JOBFILTER_PROGRAM), Not(HasSubstr("[libldap")));
    EXPECT_THAT(needed(JOBFILTER_PROGRAM), Not(HasSubstr("[liblber")));
    EXPECT_THAT(needed(module), HasSubstr("[libldap"));
}

// Sources of the host's own, and its settings.

namespace {

constexpr char kSSSDSocket[] = "/var/lib/sss/pipes/nss";
constexpr char kWinbindSocket[] = "/run/samba/winbindd/pipe";

/// A host of the test's own, which can have such sources.
class JobFilterSourcesTest : public JobFilterDirectoryTest {
protected:
    void SetUp() override
    {
        if (!_hidden)
            GTEST_SKIP() << "no mount namespace of the test's own";
    }

    ProgramCall callWithSettings(const std::string &settings, const std::string &options = "") const
    {
        auto result = call("ldap://127.0.0.1:1", options);
        result.environment["JOBFILTER_CONF"] = _folder.write("jobfilter.conf", settings);
        return result;
    }

    const ScriptedServer::Script _sssd =
        Support::SSSDScript::knowing("anna", "CN=Anna,OU=a\\, b,DC=Corp,DC=Example");
};

} // namespace

TEST_F(JobFilterSourcesTest, SSSDGivesTheDomain)
{
    KL_NEEDS_SSSD_LIBRARY();
    const ScriptedServer sssd(kSSSDSocket, _sssd);
    const auto result = runProgram(call("ldap://127.0.0.1:1"));
    EXPECT_EQ("corp.example", domainIn(result));
    EXPECT_EQ(foundIn("sssd:corp.example"), logOf(result));
}

TEST_F(JobFilterSourcesTest, WinbindGivesTheDomain)
{
    const ScriptedServer winbind(
        kWinbindSocket, Support::WinbindScript::answering(&Support::WinbindScript::answer));
    const auto result = runProgram(call("ldap://127.0.0.1:1"));
    EXPECT_EQ("corp.test", domainIn(result));
    EXPECT_EQ(foundIn("winbind:corp.test"), logOf(result));
}

TEST_F(JobFilterSourcesTest, UserLoginStaysAsItIsWhenItCarriesADomain)
{
    const ScriptedServer winbind(
        kWinbindSocket, Support::WinbindScript::answering(&Support::WinbindScript::answer));
    auto qualified = call("ldap://127.0.0.1:1");
    qualified.arguments[2] = "SALES\\berta";
    const auto result = runProgram(qualified);
    EXPECT_EQ("sales.test", domainIn(result));
    EXPECT_THAT(result.output, HasSubstr("@PJL COMMENT DSSC PRINT USERLOGIN=SALES\\berta\r\n"));
}

TEST_F(JobFilterSourcesTest, UnknownUserOfAllSourcesHasNoDomain)
{
    const ScriptedServer sssd(kSSSDSocket, Support::SSSDScript::answeringBody("", ENOENT));
    const auto result = runProgram(call("ldap://127.0.0.1:1"));
    EXPECT_EQ("", domainIn(result));
    EXPECT_EQ(std::string("INFO: Found 0 records for user anna\n") + kQueriedNone, logOf(result));
}

TEST_F(JobFilterSourcesTest, SettingsThatCannotBeUsedAskNobodyAndALineSaysWhy)
{
    const ScriptedServer sssd(kSSSDSocket, _sssd);
    const auto result = runProgram(callWithSettings("DirectorySources sssd all\n"));
    EXPECT_EQ("", domainIn(result));
    EXPECT_EQ("DEBUG: Unable to create directory services session: " +
                  _folder.file("jobfilter.conf") + ": line 1: unknown word \"all\"\n",
              logOf(result));
    EXPECT_EQ(0, sssd.connections());
}

TEST_F(JobFilterSourcesTest, HungSourcesCostThreeSecondsEach)
{
    KL_NEEDS_SSSD_LIBRARY();
    const ScriptedServer sssd(kSSSDSocket, &keepSilent);
    const ScriptedServer winbind(kWinbindSocket, &keepSilent);
    const auto begin = Clock::now();
    const auto result = runProgram(call("ldap://127.0.0.1:1"));
    const auto elapsed = Clock::now() - begin;
    EXPECT_EQ("", domainIn(result));
    EXPECT_GE(elapsed, 5900ms);
    EXPECT_LT(elapsed, 12s);
}

TEST_F(JobFilterSourcesTest, JobThatDoesNotAskReadsAndContactsNothing)
{
    const ScriptedServer sssd(kSSSDSocket, _sssd);
    auto idle = callWithSettings("no settings at all", "UseOpenDirectoryForAuthentication=False");
    const auto result = runProgram(idle);
    EXPECT_EQ("", domainIn(result));
    EXPECT_EQ("", logOf(result));
    EXPECT_EQ(0, sssd.connections());
}

TEST_F(JobFilterSourcesTest, LibrariesAreLoadedByTheChildThatAsksAndOnlyThere)
{
    KL_NEEDS_SSSD_LIBRARY();
    const ScriptedServer sssd(kSSSDSocket, _sssd);
    const LoadedFiles asking = runAndListFiles(call("ldap://127.0.0.1:1"));
    EXPECT_THAT(asking.byProgram, Not(Contains(StartsWith("libsss_nss_idmap"))));
    EXPECT_THAT(asking.byItsChildren, Contains(StartsWith("libsss_nss_idmap")));
    EXPECT_THAT(asking.byItsChildren, Not(Contains(StartsWith("libwbclient"))));
    EXPECT_THAT(asking.byItsChildren, hasNoDirectoryLibrary);

    const LoadedFiles idle =
        runAndListFiles(call("ldap://127.0.0.1:1", "UseOpenDirectoryForAuthentication=False"));
    EXPECT_THAT(idle.byItsChildren, IsEmpty());
}

TEST_F(JobFilterSourcesTest, CancelledAtAnyMomentItLeavesNothing)
{
    KL_NEEDS_SSSD_LIBRARY();
    const ScriptedServer sssd(kSSSDSocket, [this](int socket, int number) {
        std::this_thread::sleep_for(std::chrono::milliseconds(number % 5));
        _sssd(socket, number);
    });
    for (int moment = 0; moment < 30; ++moment) {
        auto cancelled = call("ldap://127.0.0.1:1");
        std::thread canceller;
        cancelled.afterStart = [&](pid_t program) {
            canceller = std::thread([=] {
                std::this_thread::sleep_for(std::chrono::microseconds(moment * 500));
                kill(program, SIGTERM);
            });
        };
        const auto result = runProgram(cancelled);
        canceller.join();
        EXPECT_TRUE(result.signal == SIGTERM || result.exitStatus == 0) << moment;
        EXPECT_THAT(_temporaries.names(), IsEmpty()) << moment;
    }
}
