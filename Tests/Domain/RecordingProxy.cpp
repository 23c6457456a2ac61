#include "RecordingProxy.h"

#include "DomainController.h"

#include <arpa/inet.h>
#include <array>
#include <fstream>
#include <netinet/in.h>
#include <poll.h>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>

namespace {

int connectToController()
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(389);
    inet_pton(AF_INET, DomainController::kAddress, &address.sin_addr);
    const int connection = socket(AF_INET, SOCK_STREAM, 0);
    if (connect(connection, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0)
        _exit(1);
    return connection;
}

/// Hands on what is there. @return it; empty when that side has gone
std::string_view handOn(int from, int to, std::array<char, 65536> &block)
{
    const ssize_t length = recv(from, block.data(), block.size(), 0);
    const std::string_view bytes(block.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    return Support::sendAll(to, bytes) ? bytes : std::string_view();
}

void serve(int client, const std::string &recording)
{
    const int server = connectToController();
    std::array<char, 65536> block = {};
    for (;;) {
        std::array<pollfd, 2> waits = {{{client, POLLIN, 0}, {server, POLLIN, 0}}};
        poll(waits.data(), waits.size(), -1);
        if (waits[0].revents != 0) {
            const std::string_view bytes = handOn(client, server, block);
            std::ofstream(recording, std::ios::app | std::ios::binary) << bytes;
            if (bytes.empty())
                return;
        } else if (handOn(server, client, block).empty()) {
            return;
        }
    }
}

} // namespace

RecordingProxy::RecordingProxy()
    : _server([this](int client, int) { serve(client, _folder.file("recording")); })
{
    _folder.write("recording", "");
}

std::string RecordingProxy::address() const
{
    return "127.0.0.1:" + std::to_string(port());
}

std::string RecordingProxy::recorded() const
{
    return Support::readFile(_folder.file("recording"));
}
