#include "ScriptedServer.h"

#include "Loopback.h"

#include <array>
#include <csignal>
#include <optional>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Support {
namespace {

/// To be called in a process that shall not outlive the one that made it.
void followParent()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::signal(SIGPIPE, SIG_IGN);
}

[[noreturn]] void serve(int listener, const ScriptedServer::Script &script, int mostConnections,
                        volatile int *connections)
{
    std::signal(SIGCHLD, SIG_IGN); // nobody asks how a connection's process ended
    for (int number = 0; number < mostConnections; ++number) {
        const int connection = accept(listener, nullptr, nullptr);
        *connections = number + 1;
        if (number + 1 == mostConnections)
            close(listener);
        if (fork() == 0) {
            followParent();
            close(listener);
            script(connection, number);
            _exit(0);
        }
        close(connection);
    }
    for (;;)
        pause(); // until the test ends it
}

/// Takes bytes off a basic-encoding-rules text.
class BERReader {
public:
    explicit BERReader(std::string_view bytes) : _rest(bytes) {}

    /// The next element's contents; its tag goes to `tag`. nullopt when it is not all there.
    std::optional<std::string_view> next(int *tag)
    {
        if (_rest.size() < 2)
            return std::nullopt;
        std::size_t length = byteAt(1);
        std::size_t header = 2;
        if (length > 0x80) {
            header += length - 0x80;
            if (_rest.size() < header)
                return std::nullopt;
            length = 0;
            for (std::size_t at = 2; at < header; ++at)
                length = length * 256 + byteAt(at);
        }
        if (_rest.size() - header < length)
            return std::nullopt;
        *tag = static_cast<int>(byteAt(0));
        const std::string_view contents = _rest.substr(header, length);
        _rest.remove_prefix(header + length);
        return contents;
    }
    int nextNumber()
    {
        int tag = 0;
        const std::string_view digits = next(&tag).value_or("");
        int number = 0;
        for (const char c : digits)
            number = number * 256 + static_cast<unsigned char>(c);
        return number;
    }
    std::size_t left() const { return _rest.size(); }

private:
    std::size_t byteAt(std::size_t at) const { return static_cast<unsigned char>(_rest[at]); }

    std::string_view _rest;
};

LDAPRequest requestFrom(std::string_view message)
{
    LDAPRequest request = {
        .id = 0, .operation = 0, .base = {}, .scope = -1, .bytes = std::string(message)};
    BERReader reader(message);
    request.id = reader.nextNumber();
    const auto operation = reader.next(&request.operation);
    if (request.operation == 0x63 && operation) {
        BERReader search(*operation);
        int tag = 0;
        request.base = search.next(&tag).value_or("");
        request.scope = search.nextNumber();
    }
    return request;
}

std::string number(int tag, int value)
{
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<char>(value >> shift));
    return berElement(tag, bytes);
}

std::string message(int id, int tag, std::string_view operation)
{
    return berElement(0x30, number(0x02, id) + berElement(tag, operation));
}

} // namespace

ScriptedServer::ScriptedServer(const Script &script, int mostConnections)
{
    const LoopbackListener listener = listenOnLoopback();
    _port = listener.port;
    start(listener.socket, script, mostConnections);
}

ScriptedServer::ScriptedServer(const std::string &path, const Script &script, int mostConnections)
{
    start(listenOnFile(path), script, mostConnections);
}

void ScriptedServer::start(int listener, const Script &script, int mostConnections)
{
    _connections = static_cast<int *>(
        mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    _process = fork();
    if (_process == 0) {
        followParent();
        serve(listener, script, mostConnections, _connections);
    }
    close(listener);
}

ScriptedServer::~ScriptedServer()
{
    kill(_process, SIGKILL);
    waitpid(_process, nullptr, 0);
    munmap(const_cast<int *>(_connections), sizeof(int));
}

std::string ScriptedServer::uri(const std::string &scheme) const
{
    return scheme + "://127.0.0.1:" + std::to_string(_port);
}

std::string berElement(int tag, std::string_view contents)
{
    std::string bytes = {static_cast<char>(tag), static_cast<char>(0x84)}; // length in four bytes
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<char>(contents.size() >> shift));
    return bytes.append(contents);
}

std::string ldapEntry(int id, std::string_view dn, const std::vector<LDAPAttribute> &attributes)
{
    std::string list;
    for (const LDAPAttribute &attribute : attributes) {
        std::string values;
        for (const std::string &value : attribute.values)
            values += berElement(0x04, value);
        list += berElement(0x30, berElement(0x04, attribute.name) + berElement(0x31, values));
    }
    return message(id, 0x64, berElement(0x04, dn) + berElement(0x30, list));
}

std::string ldapDone(int id, int resultCode, std::string_view referral)
{
    std::string result = number(0x0a, resultCode) + berElement(0x04, "") + berElement(0x04, "");
    if (!referral.empty())
        result += berElement(0xa3, berElement(0x04, referral));
    return message(id, 0x65, result);
}

std::string ldapReference(int id, std::string_view uri)
{
    return message(id, 0x73, berElement(0x04, uri));
}

bool sendAll(int socket, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t sent = send(socket, bytes.data(), bytes.size(), 0);
        if (sent <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

void serveLDAP(int socket, const std::function<std::string(const LDAPRequest &)> &reply)
{
    std::string received;
    for (;;) {
        int tag = 0;
        BERReader reader(received);
        if (const auto contents = reader.next(&tag)) {
            const LDAPRequest request = requestFrom(*contents);
            received.erase(0, received.size() - reader.left());
            if (request.operation != 0x63 || !sendAll(socket, reply(request)))
                return;
            continue;
        }
        std::array<char, 4096> block = {};
        const ssize_t length = recv(socket, block.data(), block.size(), 0);
        if (length <= 0)
            return;
        received.append(block.data(), static_cast<std::size_t>(length));
    }
}

} // namespace Support
