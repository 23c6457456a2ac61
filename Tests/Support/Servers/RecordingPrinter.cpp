#include "RecordingPrinter.h"

#include "Waiting.h"

#include <array>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace Support {
namespace {

/// How soon a thread notices that it shall stop.
constexpr int kPatience = 20; // milliseconds

} // namespace

RecordingPrinter::RecordingPrinter()
    : _listener(listenOnLoopback()),
      _acceptor([this](const std::stop_token &stop) { acceptConnections(stop); })
{
}

RecordingPrinter::~RecordingPrinter()
{
    _acceptor.request_stop();
    _acceptor.join();
    close(_listener.socket);
}

std::string RecordingPrinter::deviceURI() const
{
    return "socket://127.0.0.1:" + std::to_string(_listener.port);
}

std::vector<std::string> RecordingPrinter::jobs() const
{
    const std::lock_guard lock(_mutex);
    return _jobs;
}

void RecordingPrinter::forgetJobs()
{
    const std::lock_guard lock(_mutex);
    _jobs.clear();
}

void RecordingPrinter::stall(bool stalled)
{
    _stalled = stalled;
}

void RecordingPrinter::finishJobs()
{
    stall(false);
    if (!comesTrue([this] { return _openConnections == 0; }))
        throw std::runtime_error("a connection to the printer does not end");
}

void RecordingPrinter::acceptConnections(const std::stop_token &stop)
{
    while (waitUntilReadable(stop, _listener.socket)) {
        const int connection = accept4(_listener.socket, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0)
            continue;
        _openConnections++;
        _connections.emplace_back([this, connection](const std::stop_token &connectionStop) {
            receive(connectionStop, connection);
            _openConnections--;
        });
    }
    _connections.clear();
}

/// Keeps the job before it lets go of the connection, for which the backend waits.
void RecordingPrinter::receive(const std::stop_token &stop, int connection)
{
    std::string job;
    std::array<char, 65536> block;
    ssize_t length = -1;
    while (length != 0 && waitUntilReadable(stop, connection)) {
        if (_stalled) {
            std::this_thread::sleep_for(std::chrono::milliseconds(kPatience));
            continue;
        }
        length = recv(connection, block.data(), block.size(), 0);
        if (length < 0)
            break; // cut off: no job
        job.append(block.data(), static_cast<std::size_t>(length));
    }
    if (length == 0) {
        const std::lock_guard lock(_mutex);
        _jobs.push_back(std::move(job));
    }
    close(connection);
}

bool RecordingPrinter::waitUntilReadable(const std::stop_token &stop, int descriptor) const
{
    while (!stop.stop_requested()) {
        pollfd entry = {descriptor, POLLIN, 0};
        if (poll(&entry, 1, kPatience) > 0)
            return true;
    }
    return false;
}

} // namespace Support
