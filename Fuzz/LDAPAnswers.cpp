// What an LDAP server sends, whatever it is asked: to the search for a user, and to the questions
// about a node.

#include "ChildMessages.h"
#include "Fuzzing.h"
#include "LDAPConversation.h"
#include "LDAPQuestions.h"
#include "Streams.h"
#include "TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <ldap.h>
#include <mutex>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <vector>

using Platform::ChildMessage;
using Platform::ChildMessageSender;
using Platform::Descriptor;

namespace {

/// A server on a socket of this process. It sends the same bytes to everyone, closes its side and
/// listens until the client goes.
class Server {
public:
    Server() : _socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        const std::string path = _folder.file("ldapi");
        std::memcpy(address.sun_path, path.data(), path.size());
        Fuzz::require(
            bind(_socket.number(), reinterpret_cast<sockaddr *>(&address), sizeof address) == 0 &&
                listen(_socket.number(), 8) == 0,
            "there is a socket to be had");
        std::thread([this] { serve(); }).detach();
    }

    void answerWith(std::string_view bytes)
    {
        const std::lock_guard lock(_mutex);
        _answers = bytes;
    }

    std::string uri() const
    {
        std::string escaped;
        for (const char c : _folder.file("ldapi"))
            escaped += c == '/' ? "%2F" : std::string(1, c);
        return "ldapi://" + escaped;
    }

private:
    [[noreturn]] void serve()
    {
        for (;;)
            serve(Descriptor(accept4(_socket.number(), nullptr, nullptr, SOCK_CLOEXEC)));
    }

    void serve(const Descriptor &client)
    {
        std::string answers;
        {
            const std::lock_guard lock(_mutex);
            answers = _answers;
        }
        std::string_view rest = answers;
        while (!rest.empty()) {
            const ssize_t sent = send(client.number(), rest.data(), rest.size(), MSG_NOSIGNAL);
            if (sent <= 0)
                return;
            rest.remove_prefix(static_cast<std::size_t>(sent));
        }
        shutdown(client.number(), SHUT_WR);
        std::array<char, 4096> questions;
        while (recv(client.number(), questions.data(), questions.size(), 0) > 0) {
        }
    }

    Support::TemporaryFolder _folder;
    Descriptor _socket;
    std::mutex _mutex;
    std::string _answers;
};

/// What the questions hand to the process that asked for them.
std::vector<ChildMessage> messagesOf(const std::function<void(const ChildMessageSender &)> &work)
{
    Fuzz::MemoryFile line;
    {
        const Platform::Stream stream = Platform::openForWriting(line.path());
        try {
            work(ChildMessageSender(fileno(stream.get())));
        } catch (const Platform::LDAPFailure &) {
            // Whatever was said before counts.
        }
    }
    std::vector<ChildMessage> messages;
    const std::string bytes = line.bytes();
    for (std::size_t at = 0; at < bytes.size();) {
        std::uint32_t length = 0;
        std::memcpy(&length, bytes.data() + at + 1, sizeof length);
        messages.push_back({bytes[at], bytes.substr(at + 1 + sizeof length, length)});
        at += 1 + sizeof length + length;
    }
    return messages;
}

void requireNodeURL(const std::string &url, const std::string &uri)
{
    Fuzz::requireEqual(url, Platform::urlOfEntry(uri, Platform::entryOfURL(url)),
                       "a node's name comes back out of its URL");
}

void tryUser(const std::string &uri)
{
    const auto messages = messagesOf([&](const ChildMessageSender &answers) {
        Platform::findLDAPUser(answers, uri, "anna", {});
    });
    Fuzz::require(!messages.empty() && messages.front().kind == Platform::LDAPProgress,
                  "first comes the connection");
    std::size_t nodes = 0;
    for (const auto &[kind, text] : messages) {
        if (kind == Platform::LDAPNode) {
            requireNodeURL(text, uri);
            ++nodes;
        } else if (kind == Platform::LDAPRecord) {
            Fuzz::require(text.size() < 10 && std::stoul(text) < nodes,
                          "a record lies in a node that was named before");
        } else {
            Fuzz::require(text.empty() && (kind == Platform::LDAPProgress ||
                                           kind == Platform::LDAPRecordOutside ||
                                           kind == Platform::LDAPRecordUnreadable),
                          "all other answers are words");
        }
    }
}

void tryNode(const std::string &uri)
{
    const std::string context = "dc=example,dc=com";
    const auto messages = messagesOf([&](const ChildMessageSender &answers) {
        Platform::inspectLDAPNode(answers, Platform::urlOfEntry(uri, context), {});
    });
    Fuzz::require(!messages.empty() &&
                      messages.front() == ChildMessage{Platform::LDAPSearchBase, context},
                  "the search base is the one that was asked about");
    Fuzz::require(messages.size() <= 3, "a node has one domain at most");
    for (std::size_t i = 1; i < messages.size(); ++i)
        Fuzz::require(messages[i].kind == Platform::LDAPNativeDomain ||
                          messages[i] == ChildMessage{Platform::LDAPProgress, ""},
                      "what follows is the domain");
}

} // namespace

void Fuzz::tryInput(std::string_view input)
{
    static Server &server = *new Server; // its thread lasts as long as the process
    server.answerWith(input);
    tryUser(server.uri());
    tryNode(server.uri());
}
