#include "QueuesTest.h"

#include "Environment.h"
#include "Loopback.h"
#include "MinimalPPD.h"
#include "PrintJob.h"
#include "Program.h"
#include "ScriptedServer.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <sys/socket.h>
#include <unistd.h>

namespace fs = std::filesystem;

using Model::inEnglish;
using Model::ppdOf;
using Model::Queue;
using Model::queuesOfThisFilter;
using Model::Words;
using Support::ScriptedServer;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Lt;
using testing::MatchesRegex;

std::unique_ptr<QueuesTest::Parts> QueuesTest::_parts;

void QueuesTest::SetUpTestSuite()
{
    if (_parts)
        return; // the other suite's
    for (const char *name : {"LPDEST", "PRINTER"})
        unsetenv(name);
    _parts = std::make_unique<Parts>();
    _parts->scheduler = std::make_unique<Support::PrivateScheduler>(
        std::vector<std::string>{KL_CHAIN}, 1, "Listen " + socketOf() + "\n");
    const Support::TemporaryFolder folder;
    const std::string other = folder.write(
        "other.ppd", Support::minimalPPD("*cupsFilter: \"application/vnd.cups-postscript 0 -\"\n"));
    // Without questions to the printer's SNMP agent, of which ours has none.
    const std::string quiet = "*cupsSNMPSupplies: False\n";
    const std::string sample = folder.write("s.ppd", Support::readFile(KL_SAMPLE_PPD) + quiet);
    const std::string pdf = folder.write("pdf.ppd", Support::readFile(KL_SAMPLE_PDF_PPD) + quiet);
    scheduler().addQueue("office", sample, printer().deviceURI(),
                         {"-D", "Office printer", "-L", "Room 1"});
    scheduler().addQueue("archive", pdf, printer().deviceURI());
    scheduler().addQueue("other", other, printer().deviceURI());
    scheduler().run({"lpadmin", "-p", "office", "-c", "pool"});
    scheduler().run({"lpadmin", "-d", "office"});
    _parts->otherScheduler = std::make_unique<Support::PrivateScheduler>(
        std::vector<std::string>{KL_CHAIN}, 1, "Listen " + otherServer().host + "\n");
    otherScheduler().addQueue("office", sample, otherPrinter().deviceURI());
}

Model::ServerAddress QueuesTest::otherServer()
{
    return {_parts->folder.file("other.sock"), 0, false, true};
}

Model::ServerAddress QueuesTest::server()
{
    return {"127.0.0.1", scheduler().port(), false};
}

std::string QueuesTest::socketOf()
{
    return _parts->folder.file("cups.sock");
}

Queue QueuesTest::queue(const std::string &name)
{
    Queue queue;
    queue.name = name;
    queue.server = server();
    return queue;
}

std::string QueuesTest::runAtHome(const std::string &home,
                                  const std::vector<std::string> &arguments)
{
    const auto result = Support::runProgram(
        {.arguments = arguments,
         .environment = {{"CUPS_SERVER", server().name()}, {"HOME", home}, {"LC_ALL", "C.UTF-8"}}});
    EXPECT_EQ(0, result.exitStatus) << result.errors;
    return result.output;
}

namespace {

std::vector<std::string> namesOf(const std::vector<Queue> &queues)
{
    std::vector<std::string> names;
    for (const Queue &one : queues)
        names.push_back(one.name);
    return names;
}

//
// What a scheduler has
//

TEST_F(QueuesTest, AreAllWhosePPDNamesThisFilter)
{
    const auto list = queuesOfThisFilter(server(), kBound);
    EXPECT_EQ(std::nullopt, list.problem);
    EXPECT_THAT(namesOf(list.queues), ElementsAre("archive", "office", "pool"));
    EXPECT_EQ(1, list.others);
}

TEST_F(QueuesTest, ComeWithDescriptionAndState)
{
    scheduler().run({"cupsdisable", "-r", "out of toner", "archive"});
    const auto queues = queuesOfThisFilter(server(), kBound).queues;
    scheduler().run({"cupsenable", "archive"});
    ASSERT_EQ(3U, queues.size());
    const Queue &archive = queues[0];
    EXPECT_EQ(Queue::State::Stopped, archive.state);
    EXPECT_EQ("out of toner", archive.stateWords);
    const Queue &office = queues[1];
    EXPECT_EQ("Office printer", office.description);
    EXPECT_EQ("Room 1", office.location);
    EXPECT_THAT(office.model, HasSubstr("Kalmira Office MFP"));
    EXPECT_EQ(Queue::State::Idle, office.state);
    EXPECT_TRUE(office.acceptsJobs);
    EXPECT_TRUE(office.isDefault);
    EXPECT_FALSE(office.isClass);
    EXPECT_EQ(server(), office.server);
    EXPECT_TRUE(queues[2].isClass);
    EXPECT_FALSE(queues[2].isDefault);
}

TEST_F(QueuesTest, ComeWithTheDefaultsOfKeys)
{
    scheduler().run({"lpadmin", "-p", "archive", "-o",
                     "com.kalmira.pde.watermark.text-default='For the archive'"});
    const auto queues = queuesOfThisFilter(server(), kBound).queues;
    EXPECT_THAT(queues.at(0).defaults,
                Contains(std::pair("com.kalmira.pde.watermark.text", "For the archive")));
    for (const auto &[name, value] : queues.at(1).defaults)
        EXPECT_THAT(name, MatchesRegex("media|sides|com\\.kalmira\\..*"));
}

TEST_F(QueuesTest, AreThoseOfASocket)
{
    const auto list = queuesOfThisFilter({socketOf(), 0, true}, kBound);
    EXPECT_THAT(namesOf(list.queues), ElementsAre("archive", "office", "pool"));
}

TEST_F(QueuesTest, OfTheSameNameAreToldApartByTheirServers)
{
    const auto theirs = queuesOfThisFilter(server(), kBound).queues;
    const auto others = queuesOfThisFilter(otherServer(), kBound).queues;
    ASSERT_THAT(namesOf(others), ElementsAre("office"));
    EXPECT_EQ(otherServer(), others[0].server);
    EXPECT_EQ("office", theirs.at(1).name);
    EXPECT_NE(theirs.at(1).id(), others[0].id());
}

TEST_F(QueuesTest, PPDIsCopiedForThisProgramAndItsChildrenAndTheCopyIsGoneWithItsOwner)
{
    Words whyNot;
    std::string path;
    {
        const auto copy = ppdOf(queue(), kBound, &whyNot);
        ASSERT_TRUE(copy) << inEnglish(whyNot);
        path = copy->path();
        std::string why;
        EXPECT_TRUE(PPD::open(path, &why)) << why;
        EXPECT_EQ(Support::readFile(path),
                  Support::runProgram({.arguments = {"cat", path}}).output);
    }
    EXPECT_FALSE(fs::exists(path));
    EXPECT_TRUE(ppdOf(queue("pool"), kBound, &whyNot)) << "of a class";
}

/// So that nothing is left of one, however the program ends.
TEST_F(QueuesTest, NoFolderHasACopyOfAPPD)
{
    const Support::ScopedEnvironment nowhere("TMPDIR", "/nowhere");
    EXPECT_EQ(std::nullopt, queuesOfThisFilter(server(), kBound).problem);
    Words whyNot;
    EXPECT_TRUE(ppdOf(queue(), kBound, &whyNot)) << inEnglish(whyNot);
}

TEST_F(QueuesTest, PPDThatChangesIsSeen)
{
    Words whyNot;
    const auto before = ppdOf(queue("archive"), kBound, &whyNot);
    EXPECT_TRUE(before->isSameAs(*ppdOf(queue("archive"), kBound, &whyNot)));
    scheduler().run({"lpadmin", "-p", "archive", "-o", "Duplex=DuplexTumble"});
    EXPECT_FALSE(before->isSameAs(*ppdOf(queue("archive"), kBound, &whyNot)));
}

TEST_F(QueuesTest, QueueThatVanishesIsSaid)
{
    Words whyNot;
    EXPECT_FALSE(ppdOf(queue("gone"), kBound, &whyNot));
    EXPECT_EQ("The printer gone is not there any more", inEnglish(whyNot));
}

TEST_F(QueuesTest, QueueThatHasAnotherDriverNowIsSaid)
{
    Words whyNot;
    EXPECT_FALSE(ppdOf(queue("other"), kBound, &whyNot));
    EXPECT_EQ("The printer other has another driver now, one without this filter",
              inEnglish(whyNot));
}

//
// Servers that are none
//

constexpr auto kShort = std::chrono::milliseconds(200);

/// Everything that asks a server, and whether it took no longer than it may.
void expectGivenUp(const Model::ServerAddress &server)
{
    Queue queue;
    queue.name = "office";
    queue.server = server;
    const std::string words = "The server " + server.name() + " does not answer";
    const Model::PrintJob job = {server, "office", 1};
    const auto begin = std::chrono::steady_clock::now();
    const auto list = queuesOfThisFilter(server, kShort);
    EXPECT_THAT(list.queues, IsEmpty());
    EXPECT_EQ(words, inEnglish(list.problem.value()));
    Words whyNot;
    EXPECT_FALSE(ppdOf(queue, kShort, &whyNot));
    EXPECT_EQ(words, inEnglish(whyNot));
    EXPECT_FALSE(Model::print(queue, KL_SAMPLE_DOCUMENT, "title", {}, kShort, &whyNot));
    EXPECT_EQ(words, inEnglish(whyNot));
    EXPECT_FALSE(Model::statusOf(job, kShort, &whyNot));
    EXPECT_EQ(words, inEnglish(whyNot));
    EXPECT_EQ(words, inEnglish(Model::cancel(job, kShort).value()));
    const auto took = std::chrono::steady_clock::now() - begin;
    EXPECT_THAT(took, Lt(std::chrono::seconds(15)));
}

TEST(SilentServerTest, ServerThatNeverAnswersIsGivenUp)
{
    const Support::LoopbackListener listener = Support::listenOnLoopback();
    expectGivenUp({"127.0.0.1", listener.port, false});
    close(listener.socket);
}

TEST(SilentServerTest, ServerThatIsNotThereIsGivenUp)
{
    expectGivenUp({"127.0.0.1", Support::freePort(), false});
}

TEST(SilentServerTest, ServerThatTalksNonsenseIsGivenUp)
{
    const ScriptedServer server(
        [](int socket, int) { Support::sendAll(socket, "220 mail.example.com ESMTP\r\n\r\n"); });
    const auto list = queuesOfThisFilter({"127.0.0.1", server.port(), false}, kShort);
    EXPECT_THAT(list.queues, IsEmpty());
    EXPECT_TRUE(list.problem);
}

/// What becomes of a PPD of those bytes, in words.
std::string whyNoPPD(const std::function<void(int socket)> &send)
{
    const ScriptedServer server([&](int socket, int) {
        char request[4096];
        while (recv(socket, request, sizeof request, 0) == sizeof request)
            continue;
        Support::sendAll(socket, "HTTP/1.1 200 OK\r\nConnection: close\r\n"
                                 "Content-Type: application/vnd.cups-ppd\r\n"
                                 "Transfer-Encoding: chunked\r\n\r\n");
        send(socket);
    });
    Queue queue;
    queue.name = "office";
    queue.server = {"127.0.0.1", server.port(), false};
    Words whyNot;
    EXPECT_FALSE(ppdOf(queue, std::chrono::seconds(5), &whyNot));
    return inEnglish(whyNot);
}

TEST(SilentServerTest, WhatIsNoPPDIsSaid)
{
    EXPECT_THAT(
        whyNoPPD([](int socket) { Support::sendAll(socket, "9\r\nno driver\r\n0\r\n\r\n"); }),
        HasSubstr("The driver of the printer office cannot be read: "));
}

TEST(SilentServerTest, PPDWithoutAnEndIsGivenUp)
{
    EXPECT_NE("", whyNoPPD([](int socket) {
                  const std::string block = "10000\r\n" + std::string(65536, '%') + "\r\n";
                  while (Support::sendAll(socket, block))
                      continue;
              }));
}

} // namespace
