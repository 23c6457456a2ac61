#include "Printers.h"

#include "ScriptedServer.h"
#include "TemporaryFolder.h"

#include <QCoreApplication>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <sys/socket.h>

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class Application : public testing::Environment {
public:
    void SetUp() override { _application = std::make_unique<QCoreApplication>(_argc, _argv); }
    void TearDown() override { _application.reset(); }

private:
    int _argc = 1;
    char _name[5] = "test";
    char *_argv[2] = {_name, nullptr};
    std::unique_ptr<QCoreApplication> _application;
};

const auto *const application = testing::AddGlobalTestEnvironment(new Application);

/// An attribute of IPP (RFC 8010), of less than 256 bytes each.
std::string attribute(char tag, const std::string &name, const std::string &value)
{
    const auto counted = [](const std::string &text) {
        return std::string{'\0', static_cast<char>(text.size())} + text;
    };
    return tag + counted(name) + counted(value);
}

/// The answer that names the printers "desk" and "office".
std::string twoPrinters()
{
    const std::string begin("\x02\x00\x00\x00\x00\x00\x00\x01\x01", 9);
    const std::string printer = "\x04" + attribute(0x42, "printer-name", "desk") + "\x04" +
                                attribute(0x42, "printer-name", "office");
    return begin + attribute(0x47, "attributes-charset", "utf-8") +
           attribute(0x48, "attributes-natural-language", "en") + printer + "\x03";
}

std::string answerOf(const std::string &status, const std::string &type, const std::string &body)
{
    return "HTTP/1.1 " + status + "\r\nContent-Type: " + type +
           "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

/// A server of two printers, whose PPDs are files of a folder; where there is a file "refuse",
/// nobody may see them.
class PrintersTest : public testing::Test {
protected:
    PrintersTest()
    {
        QObject::connect(&printers, &Printers::answered, &printers,
                         [this](const Model::ServerAddress &, bool isWell) { _isWell = isWell; });
    }

    /// Waits for the server. @return whether it has told all
    bool isWell()
    {
        EXPECT_TRUE(QTest::qWaitFor([this] { return _isWell.has_value(); }, 30000));
        return std::exchange(_isWell, std::nullopt).value_or(false);
    }

    std::vector<std::string> names() const
    {
        std::vector<std::string> names;
        for (const Model::Queue &queue : printers.all())
            names.push_back(queue.name);
        return names;
    }

    Support::TemporaryFolder folder;

private:
    std::string filledFolder() const
    {
        for (const char *name : {"desk.ppd", "office.ppd"})
            folder.write(name, Support::readFile(KL_SAMPLE_PPD));
        return folder.path();
    }

    static void serve(int client, const std::string &folder)
    {
        std::string received;
        char bytes[4096];
        for (;;) {
            const ssize_t count = recv(client, bytes, sizeof bytes, 0);
            if (count <= 0)
                return;
            received.append(bytes, static_cast<std::size_t>(count));
            if (const auto answer = answerTo(received, folder)) {
                Support::sendAll(client, *answer);
                received.clear();
            }
        }
    }

    /// @return nullopt as long as there is more to come
    static std::optional<std::string> answerTo(const std::string &request,
                                               const std::string &folder)
    {
        const std::size_t end = request.find("\r\n\r\n");
        if (end == std::string::npos)
            return std::nullopt;
        if (request.starts_with("GET "))
            return ppd(folder + "/" +
                       fs::path(request.substr(4, request.find(' ', 4) - 4)).filename().string());
        const std::string key = "Content-Length: ";
        const auto length = std::stoul(request.substr(request.find(key) + key.size()));
        if (request.size() < end + 4 + length)
            return std::nullopt;
        return answerOf("200 OK", "application/ipp", twoPrinters());
    }

    static std::string ppd(const fs::path &path)
    {
        if (fs::exists(path.parent_path() / "refuse"))
            return answerOf("403 Forbidden", "text/plain", "");
        return fs::exists(path)
                   ? answerOf("200 OK", "application/vnd.cups-ppd", Support::readFile(path))
                   : answerOf("404 Not Found", "text/plain", "");
    }

    Support::ScriptedServer _server{
        [path = filledFolder()](int client, int) { serve(client, path); }};
    std::optional<bool> _isWell;

protected:
    Printers printers{{{"127.0.0.1", _server.port(), true}}};
};

TEST_F(PrintersTest, AListThatIsNotCompleteTakesNothingAway)
{
    EXPECT_FALSE(printers.haveAllAnswered());
    ASSERT_TRUE(isWell());
    EXPECT_TRUE(printers.haveAllAnswered());
    ASSERT_THAT(names(), ElementsAre("desk", "office"));
    EXPECT_THAT(printers.problems(), IsEmpty());
    const Model::QueueId office = printers.all().back().id();

    folder.write("refuse", "");
    printers.lookAgain();
    ASSERT_FALSE(isWell());
    EXPECT_THAT(names(), ElementsAre("desk", "office"));
    EXPECT_THAT(printers.problems(), SizeIs(1));
    EXPECT_NE(printers.find(office), nullptr);
}

TEST_F(PrintersTest, AListThatIsCompleteTakesAwayWhatIsGone)
{
    ASSERT_TRUE(isWell());
    fs::remove(folder.file("desk.ppd"));
    printers.lookAgain();
    ASSERT_TRUE(isWell());
    EXPECT_THAT(names(), ElementsAre("office"));
    EXPECT_EQ(printers.others(), 1);
}

} // namespace
