#pragma once

#include "Loopback.h"

#include <atomic>
#include <list>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace Support {

/// A network printer on the loopback interface that keeps what it is sent: one job for each
/// connection, any number at a time.
class RecordingPrinter {
public:
    /// @throws std::runtime_error when no port can be had
    RecordingPrinter();
    /// Drops the connections that are still open.
    ~RecordingPrinter();
    RecordingPrinter(const RecordingPrinter &) = delete;
    RecordingPrinter &operator=(const RecordingPrinter &) = delete;

    /// For CUPS' socket backend.
    std::string deviceURI() const;

    /// The jobs that have been received to their end, in the order of their ends.
    std::vector<std::string> jobs() const;
    void forgetJobs();

    /// While the printer is stalled it takes connections, but reads nothing.
    void stall(bool stalled);
    /// Reads on if it was stalled, and waits until all connections are at their ends.
    /// @throws std::runtime_error after half a minute
    void finishJobs();

private:
    void acceptConnections(const std::stop_token &stop);
    void receive(const std::stop_token &stop, int connection);
    bool waitUntilReadable(const std::stop_token &stop, int descriptor) const;

    const LoopbackListener _listener;
    mutable std::mutex _mutex;
    std::vector<std::string> _jobs;
    std::atomic<bool> _stalled = false;
    std::atomic<int> _openConnections = 0;
    std::list<std::jthread> _connections; ///< of the accepting thread
    std::jthread _acceptor;
};

} // namespace Support
