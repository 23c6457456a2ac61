#pragma once

#include "PPD.h"
#include "Queues.h"
#include "Server.h"
#include "Words.h"

#include <chrono>
#include <optional>
#include <string>

namespace Model {

/// A job that was given to a server.
struct PrintJob {
    ServerAddress server;
    std::string queue;
    int number;
};

/// How a job stands.
struct JobStatus {
    enum class State {
        Waiting,
        Held,
        Printing,
        Stopped, ///< it waits for somebody to mend something
        Printed, ///< the printer has it
        Cancelled,
        Failed, ///< it was not printed
    };
    State state;
    std::string message; ///< what the filter or the printer said last; perhaps empty

    /// Whether nothing will change any more.
    bool isAtItsEnd() const { return state >= State::Printed; }
};

/// What the state is called.
Words wordsFor(JobStatus::State state);

/// Prints a document.
/// @param path    of a regular file; it is sent as it is
/// @param bound   for how long a server that says nothing is waited for
/// @param whyNot  says why it is not printed; not null
std::optional<PrintJob> print(const Queue &queue, const std::string &path, const std::string &title,
                              const JobOptions &options, std::chrono::milliseconds bound,
                              Words *whyNot);

/// @param whyNot  says why it is not known; not null
std::optional<JobStatus> statusOf(const PrintJob &job, std::chrono::milliseconds bound,
                                  Words *whyNot);

/// @return why it is not cancelled; nullopt when it is
std::optional<Words> cancel(const PrintJob &job, std::chrono::milliseconds bound);

} // namespace Model
