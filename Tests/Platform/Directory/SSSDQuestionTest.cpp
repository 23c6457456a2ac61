#include "SSSDQuestion.h"

#include "ChildMessages.h"
#include "HiddenServices.h"
#include "LocalDirectoryService.h"
#include "SSSDScript.h"
#include "ScriptedServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <unistd.h>

using Platform::ChildMessage;
using Platform::ChildMessageSender;
using Platform::ChildReport;
using Support::ScriptedServer;
using namespace Support::SSSDScript;
using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;

namespace {

class SSSDQuestionTest : public Support::HiddenServicesTest {
protected:
    void SetUp() override
    {
        KL_NEEDS_SSSD_LIBRARY();
        HiddenServicesTest::SetUp();
    }

    static ChildReport ask(const std::string &name = "anna",
                           std::chrono::milliseconds silence = 20s)
    {
        return Platform::messagesFromChild(
            [&](const ChildMessageSender &answers) { Platform::askSSSD(answers, name); },
            {.deadline = std::chrono::steady_clock::now() + 20s, .silence = silence});
    }

    static ChildReport askOf(const ScriptedServer::Script &script,
                             std::chrono::milliseconds silence = 20s)
    {
        const ScriptedServer server(Platform::kSSSDSocket, script);
        return ask("anna", silence);
    }

    static std::string failure(const ChildReport &report)
    {
        EXPECT_THAT(report.messages, IsEmpty());
        return report.error ? report.error->description().value_or("") : "none";
    }
};

const std::string kAnna = keyAndValue("originalDN", "CN=Anna,OU=a\\,b,DC=Corp,DC=Example");

} // namespace

TEST_F(SSSDQuestionTest, EntryGivesTheDomain)
{
    const ChildReport report = askOf(
        answeringBody(user(keyAndValue("name", "anna") + kAnna + keyAndValue("uidNumber", "1"))));
    EXPECT_EQ(std::nullopt, report.error);
    EXPECT_THAT(report.messages, ElementsAre(ChildMessage{Platform::LocalDomain, "corp.example"}));
}

TEST_F(SSSDQuestionTest, NameIsAskedForAsItIs)
{
    for (const std::string name : {"CORP\\anna", "anna@corp.example", "J\xc3\xbcrgen O'Brien"}) {
        const ScriptedServer server(Platform::kSSSDSocket, answering([=](const Request &request) {
                                        const bool isIt = request.body == name + '\0';
                                        return reply(request.command, isIt ? 0U : ENOENT,
                                                     isIt ? user(kAnna) : "");
                                    }));
        EXPECT_EQ(std::nullopt, ask(name).error) << name;
    }
}

TEST_F(SSSDQuestionTest, UnknownUser)
{
    const std::string kUnknown = "does not know the user, or had no answer from its servers";
    EXPECT_EQ(kUnknown, failure(askOf(answeringBody("", ENOENT))));
    EXPECT_EQ(kUnknown, failure(askOf(answeringBody(user("", 0)))));
}

TEST_F(SSSDQuestionTest, UserOfNoDirectory)
{
    EXPECT_EQ("knows the user, but of no directory",
              failure(askOf(answeringBody(user(keyAndValue("name", "anna"))))));
}

TEST_F(SSSDQuestionTest, UserOfADirectoryWithoutDomain)
{
    EXPECT_EQ("the user's entry lies in no domain: uid=anna,o=Company",
              failure(askOf(answeringBody(user(keyAndValue("originalDN", "uid=anna,o=Company"))))));
}

TEST_F(SSSDQuestionTest, SocketWithoutServer)
{
    {
        const ScriptedServer server(Platform::kSSSDSocket, [](int, int) {});
    }
    EXPECT_EQ("does not run, though its socket is there", failure(ask()));
}

TEST_F(SSSDQuestionTest, SilentServerEndsWithTheLimit)
{
    const auto begin = std::chrono::steady_clock::now();
    const auto keepSilent = [](int, int) {
        for (;;)
            pause();
    };
    EXPECT_EQ("No answer in time", failure(askOf(keepSilent, 500ms)));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 500ms);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s);
}

TEST_F(SSSDQuestionTest, HostileAnswersGiveNoDomain)
{
    const std::string garbage = "\x01\xff\0garbage\n\x1b[2J", huge(std::size_t{1} << 20, 'a');
    const std::vector<std::string> answers = {
        "",
        garbage,
        huge,
        bytesOf({0, 0, 0, 0}),
        bytesOf({15, 0, 0, 0}),
        bytesOf({0xffffffff, 0, 0, 0}),
        bytesOf({0x7fffffff, 0, 0, 0}) + huge,
    };
    for (const std::string &answer : answers) {
        const auto report = askOf([&](int socket, int) { Support::sendAll(socket, answer); }, 1s);
        EXPECT_NE("none", failure(report)) << answer.substr(0, 32);
    }
}

TEST_F(SSSDQuestionTest, HostileBodiesGiveNoDomain)
{
    const std::string huge(std::size_t{8} << 20, 'a');
    for (const std::string &body :
         {std::string(), std::string("a"), std::string("\1\0\0\0", 4), user("originalDN"),
          user(std::string("originalDN\0", 11)), user("", 0xffffffff), user("", 0x40000000),
          user(kAnna, 3), user(keyAndValue("originalDN", huge)), user(huge, 2),
          user(std::string(100'000, '\0'))}) {
        EXPECT_NE("none", failure(askOf(answeringBody(body), 2s))) << body.substr(0, 32);
    }
}

TEST_F(SSSDQuestionTest, EndlessAnswerEndsWithALimit)
{
    const auto endless = [](int socket, int) {
        const std::string block(65536, 'a');
        while (Support::sendAll(socket, block)) {
        }
    };
    EXPECT_NE("none", failure(askOf(endless, 1s)));
    const auto endlessBody = answering([](const Request &request) {
        return bytesOf({0x7ffffff0, request.command, 0, 0}) + std::string(1 << 20, 'a');
    });
    EXPECT_NE("none", failure(askOf(endlessBody, 1s)));
}
