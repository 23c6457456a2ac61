#include "SSSDScript.h"

#include <array>
#include <cerrno>
#include <optional>
#include <sys/socket.h>

namespace Support::SSSDScript {
namespace {

constexpr std::size_t kHeaderSize = 16;
constexpr std::uint32_t kVersion = 1;

std::optional<Request> receive(int socket)
{
    std::array<std::uint32_t, 4> header = {};
    if (recv(socket, header.data(), kHeaderSize, MSG_WAITALL) != kHeaderSize)
        return std::nullopt;
    Request request = {header[1], std::string(header[0] - kHeaderSize, '\0')};
    if (recv(socket, request.body.data(), request.body.size(), MSG_WAITALL) !=
        static_cast<ssize_t>(request.body.size()))
        return std::nullopt;
    return request;
}

} // namespace

std::string bytesOf(const std::vector<std::uint32_t> &numbers)
{
    return {reinterpret_cast<const char *>(numbers.data()), numbers.size() * 4};
}

std::string reply(std::uint32_t command, std::uint32_t status, const std::string &body)
{
    return bytesOf({static_cast<std::uint32_t>(kHeaderSize + body.size()), command, status, 0}) +
           body;
}

std::string user(const std::string &keysAndValues, std::uint32_t results)
{
    return bytesOf({results, 0, 1}) + keysAndValues;
}

std::string keyAndValue(const std::string &key, const std::string &value)
{
    return key + '\0' + value + '\0';
}

ScriptedServer::Script answering(const std::function<std::string(const Request &)> &answer)
{
    return [=](int socket, int) {
        const auto greeting = receive(socket);
        if (!greeting || !sendAll(socket, reply(greeting->command, 0, bytesOf({kVersion}))))
            return;
        while (const auto question = receive(socket)) {
            if (!sendAll(socket, answer(*question)))
                return;
        }
    };
}

ScriptedServer::Script answeringBody(const std::string &body, std::uint32_t status)
{
    return answering([=](const Request &request) { return reply(request.command, status, body); });
}

ScriptedServer::Script knowing(const std::string &userName, const std::string &distinguishedName)
{
    return answering([=](const Request &request) {
        if (request.body != userName + '\0')
            return reply(request.command, ENOENT, "");
        return reply(request.command, 0, user(keyAndValue("originalDN", distinguishedName)));
    });
}

} // namespace Support::SSSDScript
