#pragma once

#include <string>

namespace Model {

/// A server that has queues.
struct ServerAddress {
    std::string host;       ///< or the path of its socket
    int port = 0;           ///< 0 with a socket
    bool isStandard = true; ///< the one that lp(1) takes when nobody says otherwise

    /// The one that the user or the system has set (CUPS_SERVER, client.conf(5)), else this host's.
    static ServerAddress standard();

    /// As client programs name it: "host:port" or a path.
    std::string name() const;

    bool operator==(const ServerAddress &) const = default;
};

} // namespace Model
