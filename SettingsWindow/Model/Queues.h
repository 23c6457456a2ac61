#pragma once

#include "PPD.h"
#include "Server.h"
#include "Streams.h"
#include "Words.h"

#include <chrono>
#include <compare>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Model {

/// What tells a queue from all others: servers may have queues of the same name.
struct QueueId {
    ServerAddress server;
    std::string name;

    // NOLINTNEXTLINE(modernize-use-nullptr): takes the zero of a comparison for a pointer
    auto operator<=>(const QueueId &) const = default;
};

/// A destination whose jobs go through this filter.
struct Queue {
    enum class State { Idle, Printing, Stopped };

    std::string name;
    std::string description; ///< perhaps empty, as the next two
    std::string location;
    std::string model;
    ServerAddress server; ///< that has it
    State state = State::Idle;
    bool acceptsJobs = true;
    std::string stateWords; ///< what the printer or the filter said last; perhaps empty
    bool isDefault = false; ///< the user's or else the server's
    bool isClass = false;   ///< several queues that share the work
    /// What the queue says by itself for options that its PPD does not have ("KEY-default").
    JobOptions defaults;

    QueueId id() const { return {server, name}; }
};

/// What a server told.
struct QueueList {
    std::vector<Queue> queues;    ///< by their names
    int others = 0;               ///< how many destinations do not have this filter
    std::optional<Words> problem; ///< why the list is not complete
};

/// All destinations of a server whose PPD names this filter. Does not return later than a few times
/// the bound.
/// @param bound  for how long a server that says nothing is waited for
QueueList queuesOfThisFilter(const ServerAddress &server, std::chrono::milliseconds bound);

/// A copy of a queue's PPD in a file that has no name in any folder: it is gone with this object,
/// however the process ends. Can be moved.
class PPDCopy {
public:
    /// @return nullopt, with errno set, when there is no memory for it
    static std::optional<PPDCopy> of(std::string bytes);

    /// Where this process and its children find it, in /proc, as long as this object lives.
    std::string path() const;

    /// Whether both have the same bytes: if not, the PPD was changed.
    bool isSameAs(const PPDCopy &other) const { return _bytes == other._bytes; }

private:
    PPDCopy(Platform::Stream file, std::string bytes)
        : _file(std::move(file)), _bytes(std::move(bytes))
    {
    }

    Platform::Stream _file;
    std::string _bytes;
};

/// @param whyNot  says why there is none: the server does not answer, the queue is gone, its PPD
///                cannot be read or does not name this filter any more; not null
std::optional<PPDCopy> ppdOf(const Queue &queue, std::chrono::milliseconds bound, Words *whyNot);

} // namespace Model
