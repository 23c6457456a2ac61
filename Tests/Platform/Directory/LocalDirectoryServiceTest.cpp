#include "LocalDirectoryService.h"

#include "ChildMessages.h"
#include "ScriptedServer.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>
#include <unistd.h>
#include <vector>

using Platform::ChildMessageSender;
using Platform::DirectoryAttributes;
using Platform::LocalDirectoryService;
using Platform::LocalDomain;
using Platform::LocalProgress;
using Platform::LocalSource;
using Platform::SourceReport;
using testing::ElementsAre;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;
using Question = decltype(LocalSource::question);

class LocalDirectoryServiceTest : public testing::Test {
protected:
    LocalDirectoryService service(const Question &question, std::chrono::milliseconds session = 20s)
    {
        return {{"office", _folder.file("socket"), question},
                500ms,
                Clock::now() + session,
                [this](const SourceReport &report) {
                    _said.push_back(report.source + ": " + report.answer);
                }};
    }

    std::size_t records(const Question &question, std::chrono::milliseconds session = 20s)
    {
        auto asked = service(question, session);
        std::optional<KLError> error;
        EXPECT_TRUE(asked.prepareQueryForUser("anna", &error));
        return asked.runQuery();
    }

    Support::TemporaryFolder _folder;
    std::vector<std::string> _said;
};

void answerDomain(const ChildMessageSender &answers, const std::string &)
{
    answers.send(LocalProgress);
    answers.send(LocalDomain, "corp.example");
}

} // namespace

TEST_F(LocalDirectoryServiceTest, SourceIsThereWhenItsSocketIs)
{
    auto asked = service(&answerDomain);
    EXPECT_FALSE(asked.openAuthenticationNode());
    _folder.write("socket", "");
    EXPECT_FALSE(asked.openAuthenticationNode());
    const Support::ScriptedServer server(_folder.file("socket"), [](int, int) {});
    EXPECT_TRUE(asked.openAuthenticationNode());
    const std::string kMissing = "office: is not there: no socket " + _folder.file("socket");
    EXPECT_THAT(_said, ElementsAre(kMissing, kMissing));
}

TEST_F(LocalDirectoryServiceTest, UserHasOneRecordOnANodeNamedAfterSourceAndDomain)
{
    auto asked = service(&answerDomain);
    std::optional<KLError> error;
    ASSERT_TRUE(asked.prepareQueryForUser("anna", &error));
    EXPECT_EQ(1U, asked.runQuery());
    EXPECT_EQ((DirectoryAttributes{{"MetaNodeLocation", {"office:corp.example"}}}),
              asked.recordDetails(0));
    EXPECT_TRUE(asked.openNodeNamed("office:corp.example", &error));
    EXPECT_EQ((DirectoryAttributes{{"dsAttrTypeNative:DomainName", {"corp.example"}}}),
              asked.nodeDetails(&error));
    EXPECT_EQ(std::nullopt, error);
    EXPECT_THAT(_said, ElementsAre("office: knows the user, in the domain corp.example"));
}

TEST_F(LocalDirectoryServiceTest, NameIsHandedOn)
{
    EXPECT_EQ(1U, records([](const ChildMessageSender &answers, const std::string &name) {
                  if (name == "anna")
                      answers.send(LocalDomain, "a");
              }));
}

TEST_F(LocalDirectoryServiceTest, FailureIsNoRecordAndTold)
{
    EXPECT_EQ(0U, records([](const ChildMessageSender &, const std::string &) {
                  throw std::runtime_error("does not know the user");
              }));
    EXPECT_THAT(_said, ElementsAre("office: does not know the user"));
}

TEST_F(LocalDirectoryServiceTest, DomainBeforeAFailureIsNone)
{
    EXPECT_EQ(0U, records([](const ChildMessageSender &answers, const std::string &name) {
                  answerDomain(answers, name);
                  abort();
              }));
    EXPECT_THAT(_said, ElementsAre("office: The answer ended too early"));
}

TEST_F(LocalDirectoryServiceTest, SilenceEndsTheQuestion)
{
    const auto begin = Clock::now();
    EXPECT_EQ(0U, records([](const ChildMessageSender &, const std::string &) { pause(); }));
    EXPECT_GE(Clock::now() - begin, 500ms);
    EXPECT_LT(Clock::now() - begin, 10s);
    EXPECT_THAT(_said, ElementsAre("office: No answer in time"));
}

TEST_F(LocalDirectoryServiceTest, EachAnswerMayTakeItsTime)
{
    EXPECT_EQ(1U, records([](const ChildMessageSender &answers, const std::string &) {
                  for (const char kind : {LocalProgress, LocalProgress, LocalDomain}) {
                      usleep(250'000);
                      answers.send(kind, "a");
                  }
              }));
}

TEST_F(LocalDirectoryServiceTest, SessionThatIsOverAsksNobody)
{
    EXPECT_EQ(0U, records(&answerDomain, 0ms));
    EXPECT_THAT(_said, ElementsAre("office: No time left"));
}

TEST_F(LocalDirectoryServiceTest, QuestionMayNotTakeAllMemory)
{
    EXPECT_EQ(0U, records([](const ChildMessageSender &answers, const std::string &) {
                  const std::vector<char> much(std::size_t{128} << 20, 'a');
                  answers.send(LocalDomain, std::string(much.data(), 1));
              }));
}
