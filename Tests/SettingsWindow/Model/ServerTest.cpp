#include "Server.h"

#include "Environment.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <thread>
#include <unistd.h>

using Model::ServerAddress;
using Support::ScopedEnvironment;
using testing::ElementsAre;
using testing::SizeIs;

namespace {

/// What counts where the environment names that server. libcups asks it once in each thread.
ServerAddress standardWith(const std::string &server)
{
    const ScopedEnvironment environment("CUPS_SERVER", server);
    ServerAddress address;
    std::thread([&address] { address = ServerAddress::standard(); }).join();
    return address;
}

TEST(ServerTest, StandardIsTheOneOfTheEnvironment)
{
    EXPECT_EQ((ServerAddress{"print.example.com", 8631, true}),
              standardWith("print.example.com:8631"));
    EXPECT_EQ((ServerAddress{"print.example.com", 631, true}), standardWith("print.example.com"));
}

TEST(ServerTest, SocketHasNoPort)
{
    EXPECT_EQ((ServerAddress{"/run/x.sock", 0, true}), standardWith("/run/x.sock"));
}

TEST(ServerTest, SchedulerOfThisComputerIsKnown)
{
    EXPECT_TRUE(standardWith(Model::socketOfThisComputer()).isOwn);
    EXPECT_TRUE(standardWith("localhost").isOwn);
    EXPECT_TRUE(standardWith("127.0.0.1:631").isOwn);
    EXPECT_FALSE(standardWith("127.0.0.1:8631").isOwn);
    EXPECT_FALSE(standardWith("print.example.com").isOwn);
}

/// The servers that a user has where the environment names one.
std::vector<ServerAddress> serversWith(const std::string &server, const std::string &ownSocket)
{
    const ScopedEnvironment environment("CUPS_SERVER", server);
    std::vector<ServerAddress> servers;
    std::thread([&] { servers = Model::serversOfTheUser(ownSocket); }).join();
    return servers;
}

TEST(ServerTest, SchedulerOfThisComputerIsAskedBesideAnother)
{
    const Support::TemporaryFolder folder;
    const std::string socket = folder.write("cups.sock", "");
    const ServerAddress remote = {"print.example.com", 631, true};
    EXPECT_THAT(serversWith("print.example.com", socket),
                ElementsAre(remote, ServerAddress{socket, 0, false, true}));
    EXPECT_THAT(serversWith("print.example.com", folder.file("none")), ElementsAre(remote))
        << "there is none here";
    EXPECT_THAT(serversWith("localhost", socket), SizeIs(1)) << "that is the one";
    EXPECT_THAT(serversWith(socket, socket), SizeIs(1)) << "that is the one";
}

/// As /var/run is /run.
TEST(ServerTest, SchedulerOfThisComputerIsAskedOnceByWhicheverPathItsSocketIsNamed)
{
    const Support::TemporaryFolder folder;
    std::filesystem::create_directory(folder.file("run"));
    folder.write("run/cups.sock", "");
    std::filesystem::create_directory_symlink("run", folder.file("var"));
    EXPECT_THAT(serversWith(folder.file("var/cups.sock"), folder.file("run/cups.sock")), SizeIs(1));
}

TEST(ServerTest, ThisComputerIsKnownByItsNameInWhateverCase)
{
    char name[256] = {};
    ASSERT_EQ(gethostname(name, sizeof name - 1), 0);
    std::string loud = name;
    std::ranges::transform(loud, loud.begin(), [](unsigned char c) { return std::toupper(c); });
    EXPECT_TRUE(standardWith(name).isOwn);
    EXPECT_TRUE(standardWith(loud).isOwn);
    EXPECT_TRUE(standardWith("LocalHost").isOwn);
}

TEST(ServerTest, IsCalledAsClientProgramsNameIt)
{
    EXPECT_EQ("print.example.com:8631", (ServerAddress{"print.example.com", 8631, false}).name());
    EXPECT_EQ("/run/cups/cups.sock", (ServerAddress{"/run/cups/cups.sock", 0, false}).name());
}

} // namespace
