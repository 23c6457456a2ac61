#include "Loopback.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <netinet/in.h>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace Support {

LoopbackListener listenOnLoopback()
{
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto *generic = reinterpret_cast<sockaddr *>(&address);
    if (listener < 0 || bind(listener, generic, size) != 0 || listen(listener, 64) != 0 ||
        getsockname(listener, generic, &size) != 0)
        throw std::runtime_error(std::string("no free port on 127.0.0.1: ") + std::strerror(errno));
    return {listener, ntohs(address.sin_port)};
}

int listenOnFile(const std::string &path)
{
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    unlink(path.c_str());
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    if (listener < 0 ||
        bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0 ||
        listen(listener, 64) != 0 || chmod(path.c_str(), 0777) != 0)
        throw std::runtime_error("no socket " + path + ": " + std::strerror(errno));
    return listener;
}

int freePort()
{
    const LoopbackListener listener = listenOnLoopback();
    close(listener.socket);
    return listener.port;
}

} // namespace Support
