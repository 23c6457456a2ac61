#include "WinbindQuestion.h"

#include "ChildMessages.h"
#include "HiddenServices.h"
#include "LocalDirectoryService.h"
#include "ScriptedServer.h"
#include "WinbindScript.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <unistd.h>

using Platform::ChildMessageSender;
using Platform::ChildReport;
using Support::ScriptedServer;
using namespace Support::WinbindScript;
using namespace std::chrono_literals;

namespace {

using Script = std::function<Answer(const Request &)>;

class WinbindQuestionTest : public Support::HiddenServicesTest {
protected:
    static ChildReport ask(const std::string &name, std::chrono::milliseconds silence)
    {
        return Platform::messagesFromChild(
            [&](const ChildMessageSender &answers) { Platform::askWinbind(answers, name); },
            {.deadline = std::chrono::steady_clock::now() + 20s, .silence = silence});
    }

    /// The domain, or what the question failed with.
    static std::string outcome(const std::string &name, std::chrono::milliseconds silence = 20s)
    {
        const ChildReport report = ask(name, silence);
        if (report.error)
            return report.error->description().value_or("");
        EXPECT_EQ(Platform::LocalDomain, report.messages.back().kind);
        return report.messages.back().text;
    }

    static std::string outcomeOf(const Script &script, const std::string &name = "anna")
    {
        const ScriptedServer server(Platform::kWinbindSocket, answering(script));
        return outcome(name);
    }

    /// The same of a server that answers with bytes of its own.
    static std::string outcomeOfBytes(const ScriptedServer::Script &script)
    {
        const ScriptedServer server(Platform::kWinbindSocket, script);
        return outcome("anna", 1s);
    }
};

constexpr char kUnknown[] = "does not know the user, or had no answer from its servers";

/// The daemon above, but for one command.
Script answeringInstead(Command command, const Answer &other)
{
    return [=](const Request &request) {
        return request.command == command ? other : answer(request);
    };
}

} // namespace

TEST_F(WinbindQuestionTest, BareNameIsOneOfTheHostsDomain)
{
    EXPECT_EQ("corp.test", outcomeOf(&answer, "anna"));
    EXPECT_EQ(kUnknown, outcomeOf(&answer, "berta"));
}

TEST_F(WinbindQuestionTest, NameBehindItsDomainIsOneOfThat)
{
    EXPECT_EQ("corp.test", outcomeOf(&answer, "CORP\\anna"));
    EXPECT_EQ("sales.test", outcomeOf(&answer, "SALES\\berta"));
    EXPECT_EQ(kUnknown, outcomeOf(&answer, "SALES\\anna"));
}

TEST_F(WinbindQuestionTest, SeparatorOfTheDaemonCountsToo)
{
    EXPECT_EQ("sales.test", outcomeOf(&answer, "SALES+berta"));
}

TEST_F(WinbindQuestionTest, NameBeforeItsDomainIsTheDaemonsToTakeApart)
{
    EXPECT_EQ("corp.test", outcomeOf(&answer, "anna@corp.test"));
    EXPECT_EQ(kUnknown, outcomeOf(&answer, "anna@other.test"));
}

TEST_F(WinbindQuestionTest, GroupIsNoUser)
{
    EXPECT_EQ(kUnknown, outcomeOf(&answer, "printers"));
}

TEST_F(WinbindQuestionTest, DomainWithoutDNSNameGivesNone)
{
    for (const char *name : {"", "a b", "a..b"})
        EXPECT_EQ(
            "the user's domain CORP has no DNS name",
            outcomeOf(answeringInstead(
                DomainInformation,
                {.texts = {{0, "CORP"}, {kSecondText, name}, {kThirdText, "S-1-5-21-1-2-3"}}})));
}

TEST_F(WinbindQuestionTest, AnyAnswerThatIsAFailureGivesNoDomain)
{
    for (const Command command :
         {Greeting, Separator, DomainOfHost, DomainInformation, LookUpName, LookUpSID}) {
        const std::string said = outcomeOf(answeringInstead(command, {.ok = false}));
        EXPECT_NE("corp.test", said) << command;
        EXPECT_NE("", said) << command;
    }
}

TEST_F(WinbindQuestionTest, SocketWithoutServer)
{
    {
        const ScriptedServer server(Platform::kWinbindSocket, [](int, int) {});
    }
    EXPECT_EQ("winbindd does not run, or is not a member of its domain", outcome("anna"));
}

TEST_F(WinbindQuestionTest, SilentServerEndsWithTheLimit)
{
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ("No answer in time", outcomeOfBytes([](int, int) {
                  for (;;)
                      pause();
              }));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 1s);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s); // the library alone waits for minutes
}

TEST_F(WinbindQuestionTest, HostileBytesGiveNoDomain)
{
    std::string hugeLength = bytesOf({.numbers = {{0, protocol()}}});
    std::fill_n(hugeLength.begin(), 4, '\xff');
    for (const std::string &bytes :
         {std::string(), std::string("garbage\n\x1b[2J"), std::string(kAnswerSize, '\0'),
          std::string(kAnswerSize, '\xff'), std::string(std::size_t{1} << 22, 'a'), hugeLength}) {
        const std::string said =
            outcomeOfBytes([&](int socket, int) { Support::sendAll(socket, bytes); });
        EXPECT_NE("corp.test", said);
        EXPECT_NE("", said);
    }
}

TEST_F(WinbindQuestionTest, EndlessAnswerEndsWithALimit)
{
    const std::string greeting = bytesOf({.numbers = {{0, protocol()}}});
    const std::string said = outcomeOfBytes([&](int socket, int) {
        while (Support::sendAll(socket, greeting)) {
        }
    });
    EXPECT_NE("corp.test", said);
    EXPECT_NE("", said);
}

TEST_F(WinbindQuestionTest, TextsWithoutEndsStayWithinTheirAnswer)
{
    for (const Command command :
         {Separator, DomainOfHost, DomainInformation, LookUpName, LookUpSID})
        EXPECT_NE("", outcomeOf(answeringInstead(
                          command, {.texts = {{0, std::string(kAnswerSize - 8, 'a')}}})));
}
