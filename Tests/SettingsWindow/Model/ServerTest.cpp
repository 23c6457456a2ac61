#include "Server.h"

#include "Environment.h"

#include <gtest/gtest.h>

#include <thread>

using Model::ServerAddress;
using Support::ScopedEnvironment;

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
    EXPECT_EQ((ServerAddress{"/run/cups/cups.sock", 0, true}), standardWith("/run/cups/cups.sock"));
}

TEST(ServerTest, IsCalledAsClientProgramsNameIt)
{
    EXPECT_EQ("print.example.com:8631", (ServerAddress{"print.example.com", 8631, false}).name());
    EXPECT_EQ("/run/cups/cups.sock", (ServerAddress{"/run/cups/cups.sock", 0, false}).name());
}

} // namespace
