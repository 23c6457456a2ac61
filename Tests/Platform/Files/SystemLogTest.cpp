#include "SystemLog.h"

#include "Program.h"
#include "SystemLogCapture.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;

namespace {

constexpr char kMessage[] = "Größe 100%s of %n";

/// A log daemon's end of the log socket, in a folder of its own.
class LogSocket {
public:
    explicit LogSocket(const std::string &path)
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
        if (bind(_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
            throw std::runtime_error("cannot bind " + path);
    }
    ~LogSocket() { close(_socket); }
    LogSocket(const LogSocket &) = delete;
    LogSocket &operator=(const LogSocket &) = delete;

    /// The next message that has arrived; empty when there is none.
    std::string received() const
    {
        std::array<char, 8192> bytes = {};
        const ssize_t length = recv(_socket, bytes.data(), bytes.size(), MSG_DONTWAIT);
        return {bytes.data(), length > 0 ? static_cast<std::size_t>(length) : 0};
    }

private:
    int _socket = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
};

/// Runs a shell command, in which "$1" is the folder, with the folder in place of /dev.
Support::ProgramResult runWithDevices(const std::string &folder, const std::string &command)
{
    return Support::runProgram(
        {.arguments = {"unshare", "--user", "--map-root-user", "--mount", "sh", "-c",
                       "mount --bind \"$1\" /dev && " + command, "sh", folder}});
}

} // namespace

TEST(SystemLogTest, MessageIsANoticeAndPercentSignsMeanNothing)
{
    const Support::SystemLogCapture log;
    Platform::writeSystemLog(kMessage);
    EXPECT_THAT(log.texts(), ElementsAre(kMessage));
    EXPECT_EQ(LOG_NOTICE, log.messages().at(0).priority);
}

TEST(SystemLogTest, NothingGoesToTheStandardStreams)
{
    const auto result = Support::runProgram({.arguments = {KL_SYSTEM_LOG_WRITER, kMessage}});
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_EQ("", result.output);
    EXPECT_EQ("", result.errors);
}

TEST(SystemLogTest, LogDaemonGetsTheMessageUnderTheProgramsName)
{
    const Support::TemporaryFolder folder;
    if (runWithDevices(folder.path(), "true").exitStatus != 0)
        GTEST_SKIP() << "this machine does not let a test have a /dev of its own";

    const LogSocket socket(folder.file("log"));
    const auto result = runWithDevices(folder.path(), "exec " KL_SYSTEM_LOG_WRITER " '" +
                                                          std::string(kMessage) + "'");
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_EQ("", result.errors);
    const std::string message = socket.received();
    EXPECT_THAT(message, StartsWith("<13>")); // facility user, severity notice
    EXPECT_THAT(message, EndsWith(" systemLogWriter: " + std::string(kMessage)));
    EXPECT_EQ("", socket.received());
}
