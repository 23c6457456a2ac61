#include "Server.h"

#include <algorithm>
#include <cups/cups.h>
#include <unistd.h>

namespace Model {
namespace {

constexpr int kPortOfSchedulers = 631; // IANA's for IPP

/// Whether the host is this one, by one of the names that it has for itself.
bool isThisHost(const std::string &host)
{
    char name[HTTP_MAX_HOST] = {};
    const std::string own = httpGetHostname(nullptr, name, sizeof name) != nullptr ? name : "";
    const std::string names[] = {"localhost", "127.0.0.1", "::1",
                                 "[::1]",     own,         own.substr(0, own.find('.'))};
    return std::ranges::find(names, host) != std::end(names);
}

} // namespace

ServerAddress ServerAddress::standard()
{
    const std::string host = cupsServer();
    if (host.starts_with('/'))
        return {host, 0, true, host == socketOfThisComputer()};
    const int port = ippPort();
    return {host, port, true, port == kPortOfSchedulers && isThisHost(host)};
}

std::string ServerAddress::name() const
{
    return port == 0 ? host : host + ":" + std::to_string(port);
}

std::string socketOfThisComputer()
{
    return KL_CUPS_SOCKET;
}

std::vector<ServerAddress> serversOfTheUser(const std::string &ownSocket)
{
    std::vector<ServerAddress> servers = {ServerAddress::standard()};
    const bool isOwn = servers[0].isOwn || servers[0].host == ownSocket;
    if (!isOwn && access(ownSocket.c_str(), R_OK | W_OK) == 0)
        servers.push_back({ownSocket, 0, false, true});
    return servers;
}

} // namespace Model
