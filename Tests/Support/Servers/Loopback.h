#pragma once

#include <string>

namespace Support {

/// A socket that listens on a free port of 127.0.0.1. It is inherited by no program.
struct LoopbackListener {
    int socket; ///< the caller closes it
    int port;
};

/// @throws std::runtime_error when no port can be had
LoopbackListener listenOnLoopback();

/// A port of 127.0.0.1 that was free just now.
/// @throws std::runtime_error when none can be had
int freePort();

/// A socket that listens on that path, where everybody may connect. It is inherited by no program.
/// @param path  its folder is made when it is not there; a file of that name is replaced
/// @return the socket, which the caller closes
/// @throws std::runtime_error when it cannot be had
int listenOnFile(const std::string &path);

} // namespace Support
