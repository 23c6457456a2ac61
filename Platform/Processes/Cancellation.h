#pragma once

#include <csignal>
#include <sys/types.h>

namespace Platform {

// What happens when a run is cancelled by SIGTERM, SIGINT or SIGHUP: the child that is running is
// ended, the files that the run has made (MadeFiles.h) are removed, and the process dies by that
// signal. The work is done inside the signal handler with async-signal-safe calls only. One thread,
// also that of the whole room where nothing else is said.

/// Installs the handlers. A signal that the parent has set to be ignored stays ignored.
///
/// A process that is to be killed as soon as its parent has ended (Fork.h) is cancelled instead, by
/// SIGTERM, so that it removes its files.
void cleanUpWhenCancelled();

/// In a child that was forked off a run: what the run has made is the run's to remove. The three
/// signals are deadly again, but for those that are ignored.
void forgetCancellation();

/// Names the child, leader of its own process group, that a cancellation ends: with SIGTERM
/// first, with SIGKILL to the whole group when it still lives after a second. It takes the place of
/// the one named before; 0 for none.
void endWhenCancelled(pid_t child);

/// Ends a run that cannot go on to clean up in the usual way: ends the child, which may take a
/// second, removes the unfinished of the files that it has made (MadeFiles.h), writes the line to
/// standard error and exits with status 1.
/// What streams still hold is not written. Async-signal-safe; allocates nothing.
/// @param line  with its line feed
[[noreturn]] void abandonRun(const char *line);

/// Holds back the three signals, and the one that ends the run's processor time, as long as it
/// lives, so that an effect and its registration happen together or not at all. What came meanwhile
/// is acted on at its end. May be nested: the outermost one counts.
class CancellationDelay {
public:
    CancellationDelay();
    ~CancellationDelay();
    CancellationDelay(const CancellationDelay &) = delete;
    CancellationDelay &operator=(const CancellationDelay &) = delete;

    /// The signal mask from before, for a child that must not inherit the delay.
    const sigset_t &originalMask() const { return _originalMask; }

private:
    sigset_t _originalMask;
};

} // namespace Platform
