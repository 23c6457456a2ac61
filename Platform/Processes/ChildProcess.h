#pragma once

#include "Descriptor.h"
#include "GroupGuard.h"

#include <csignal>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/types.h>
#include <vector>

namespace Platform {

/// A program could not be started; what() names it and the reason.
class ChildProcessError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A child process: a program run without a shell.
///
/// Its standard input and output are the null device, its standard error is a pipe to here. It
/// inherits environment, working directory and signal mask, and no other descriptor; a SIGPIPE
/// that is ignored here is deadly there as usual. It leads a process group of its own, which ends
/// when the run is cancelled (Cancellation.h), and it is killed when this process ends in whatever
/// way (Fork.h), then with its group (GroupGuard.h). Children of a parent that ignores SIGCHLD can
/// be waited for all the same: its disposition is the default one as long as this object lives. One
/// child at a time, one thread. This process' own standard streams must be open.
class ChildProcess {
public:
    /// Bytes of the error text that are kept; it is cut between two characters.
    static constexpr std::size_t kMostErrorText = std::size_t{16} << 20;

    /// Starts the program.
    /// @param program    its path; PATH is not searched
    /// @param arguments  what follows the program's own name, each as it stands
    /// @param file       the program's file, open; -1 for whatever the path leads to. It stays the
    ///                   caller's. Of a script only the interpreter is started in this way, which
    ///                   opens the path: that must be one that nobody else can change.
    /// @throws ChildProcessError when it does not start; nothing is left behind then
    ChildProcess(const std::string &program, const std::vector<std::string> &arguments,
                 int file = -1);

    /// Kills the child's process group if the child has not been waited for, and waits for it.
    ~ChildProcess();
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    /// Whether the child has not ended yet. Does not wait.
    bool isRunning() const;

    /// Reads the child's standard error to its end, that is until nobody holds it open any more:
    /// a process that the child leaves behind counts too. The child itself may run on. Of a longer
    /// text than kMostErrorText the rest is read and lost.
    ///
    /// A child that has already ended when this is called keeps its text to itself. That is meant
    /// (ChildThatHasEndedAtTheFirstLookKeepsItsTextToItself).
    /// @return any bytes; empty when the child said nothing, and when asked again
    std::string collectErrorText();

    /// The same, also of a child that has already ended.
    std::string collectWholeErrorText() { return readErrorsToEnd(); }

    /// Waits until the child has ended. Can be asked again.
    /// @return its exit status, or the number of the signal that ended it; -1 when the system does
    ///         not tell
    int terminationStatus();

private:
    /// The default disposition of a signal for as long as this object lives.
    class DefaultSignal {
    public:
        explicit DefaultSignal(int signalNumber);
        ~DefaultSignal();
        DefaultSignal(const DefaultSignal &) = delete;
        DefaultSignal &operator=(const DefaultSignal &) = delete;

    private:
        int _signalNumber;
        struct sigaction _before = {};
    };

    std::string readErrorsToEnd();
    /// @return errno of what was in the way, 0 for nothing
    int start(const std::string &program, const std::vector<std::string> &arguments, int file);

    DefaultSignal _defaultChildSignal{SIGCHLD};
    Descriptor _errors;
    pid_t _child = 0;            ///< 0 before the start and once it has been waited for
    int _terminationStatus = -1; ///< no success as long as nothing is known
    std::optional<GroupGuard> _guard;
};

} // namespace Platform
