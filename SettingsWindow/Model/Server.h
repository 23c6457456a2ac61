#pragma once

#include <compare>
#include <string>
#include <vector>

namespace Model {

/// A server that has queues.
struct ServerAddress {
    std::string host;       ///< or the path of its socket
    int port = 0;           ///< 0 with a socket
    bool isStandard = true; ///< the one that lp(1) takes when nobody says otherwise
    bool isOwn = false;     ///< the scheduler of this computer

    /// The one that the user or the system has set (CUPS_SERVER, client.conf(5)), else this
    /// computer's.
    static ServerAddress standard();

    /// As client programs name it: "host:port" or a path.
    std::string name() const;

    // NOLINTNEXTLINE(modernize-use-nullptr): takes the zero of a comparison for a pointer
    auto operator<=>(const ServerAddress &) const = default;
};

/// Where the scheduler of this computer listens, as libcups was built to look for it.
std::string socketOfThisComputer();

/// The servers that have a user's queues: the standard one and, where that is another, the
/// scheduler of this computer, if there is one.
/// @param ownSocket  where that one listens; it is there when its socket is
std::vector<ServerAddress> serversOfTheUser(const std::string &ownSocket = socketOfThisComputer());

} // namespace Model
