#include "Server.h"

#include <algorithm>
#include <cups/cups.h>
#include <filesystem>
#include <strings.h>
#include <unistd.h>

namespace Model {
namespace {

constexpr int kPortOfSchedulers = 631; // IANA's for IPP

/// Whether the host is this one, by one of the names that it has for itself. Asks nobody.
bool isThisHost(const std::string &host)
{
    char name[HTTP_MAX_HOST] = {};
    const std::string own = gethostname(name, sizeof name - 1) == 0 ? name : "";
    const std::string names[] = {"localhost", "127.0.0.1", "::1",
                                 "[::1]",     own,         own.substr(0, own.find('.'))};
    return std::ranges::any_of(names, [&host](const std::string &each) {
        return strcasecmp(each.c_str(), host.c_str()) == 0;
    });
}

/// Without the symbolic links on the way: /var/run is /run.
std::string resolved(const std::string &path)
{
    std::error_code error;
    const auto whole = std::filesystem::weakly_canonical(path, error);
    return error ? path : whole.string();
}

bool isSameSocket(const std::string &one, const std::string &other)
{
    return resolved(one) == resolved(other);
}

} // namespace

ServerAddress ServerAddress::standard()
{
    const std::string host = cupsServer();
    if (host.starts_with('/'))
        return {host, 0, true, isSameSocket(host, socketOfThisComputer())};
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
    const bool isOwn = servers[0].isOwn || isSameSocket(servers[0].host, ownSocket);
    if (!isOwn && access(ownSocket.c_str(), R_OK | W_OK) == 0)
        servers.push_back({ownSocket, 0, false, true});
    return servers;
}

} // namespace Model
