#pragma once

#include <csignal>
#include <string>
#include <sys/types.h>

namespace Platform {

// What happens when a run is cancelled by SIGTERM, SIGINT or SIGHUP: the child that is running is
// ended, the files that the run created are removed, and the process dies by that signal. The
// work is done inside the signal handler with async-signal-safe calls only, on the fixed-size
// list that the functions below keep. One thread.

/// Installs the handlers. A signal that the parent has set to be ignored stays ignored.
void cleanUpWhenCancelled();

/// Puts a file on the list of those removed by a cancellation. Call it inside a
/// CancellationDelay that also spans the file's creation.
/// @return false when the list is full (8 files) or the path longer than 1023 bytes: the file
///         would survive a cancellation.
bool removeWhenCancelled(const std::string &path);

/// Takes a file off the list; nothing happens when it is not on it.
void keepWhenCancelled(const std::string &path);

/// Says whether a file on the list is one that is of no use to anybody yet. Others are kept by
/// abandonRun().
void setUnfinished(const std::string &path, bool unfinished);

/// Names the child, leader of its own process group, that a cancellation ends: with SIGTERM
/// first, with SIGKILL to the whole group when it still lives after a second. 0 for none.
void endWhenCancelled(pid_t child);

/// Ends the child and removes the unfinished files, for a run that cannot go on to clean up in
/// the usual way. Async-signal-safe.
void abandonRun();

/// Holds back the three signals as long as it lives, so that an effect and its registration
/// happen together or not at all.
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
