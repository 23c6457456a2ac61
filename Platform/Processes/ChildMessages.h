#pragma once

#include "KLError.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Platform {

// Work that nobody can promise an end for (a library that waits on the network) is done in a
// forked child, which hands its results back one message at a time and is killed when it takes
// too long. Whatever the child does, the parent loses no more than the limits say.

/// One result of the child's work.
struct ChildMessage {
    char kind; ///< what the text means, by agreement between the work and its caller
    std::string text;

    bool operator==(const ChildMessage &) const = default;
};

/// The child's end of the line to its parent.
class ChildMessageSender {
public:
    /// @param descriptor  open for writing; stays the caller's
    explicit ChildMessageSender(int descriptor) : _descriptor(descriptor) {}

    /// Hands a message to the parent; each is a sign of life too. Waits while the parent is behind
    /// with reading, and ends the child when the parent has gone.
    /// @param kind  not NUL
    /// @param text  any bytes, less than 4 GiB; may be empty
    void send(char kind, std::string_view text = {}) const;

private:
    int _descriptor;
};

/// What the child may cost.
struct ChildLimits {
    /// When the work must be done. No child is started once it has passed.
    std::chrono::steady_clock::time_point deadline;
    /// The longest wait for the first message, and from one to the next.
    std::chrono::milliseconds silence;
    /// Of all messages together: their texts and five more bytes for each.
    std::size_t messageBytes = std::size_t{1} << 20;
    /// What the child may allocate beyond what it is born with, in bytes.
    std::size_t memory = std::size_t{64} << 20;
};

/// What came of the work.
struct ChildReport {
    std::vector<ChildMessage> messages; ///< all that came whole, in order
    /// Set when the work did not come to its end, in the domain "KLChildErrorDomain":
    /// - ETIMEDOUT: it took too long
    /// - EMSGSIZE: it said too much
    /// - ECHILD: it crashed or ended the process
    /// - 0: it threw; the description is the exception's what(), "unknown reason" for an empty one
    /// - else: why the child could not be started, a value of errno
    std::optional<KLError> error;
};

/// Runs the work in a child process of its own and returns when the work or its limits are over;
/// the child is gone then. A cancelled run ends the child too (see Cancellation.h).
///
/// The child has the parent's memory as it was, no standard input and output, no other open file,
/// the root folder as its working directory, and the parent's standard error. One child at a time.
/// @param work  not empty; throws nothing but std::exceptions: any other is a crash
/// @throws std::bad_alloc only. What goes wrong is in the report.
ChildReport messagesFromChild(const std::function<void(const ChildMessageSender &)> &work,
                              const ChildLimits &limits);

} // namespace Platform
