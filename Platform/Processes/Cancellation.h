#pragma once

#include <csignal>
#include <string>
#include <sys/types.h>

namespace Platform {

// What happens when a run is cancelled by SIGTERM, SIGINT or SIGHUP: the child that is running is
// ended, the files that the run created are removed, and the process dies by that signal. The
// work is done inside the signal handler with async-signal-safe calls only, on the fixed-size
// list that the functions below keep, one for the process. One thread, also that of the whole room
// where nothing else is said. The list is filled whether the handlers are installed or not.

/// Installs the handlers. A signal that the parent has set to be ignored stays ignored.
void cleanUpWhenCancelled();

/// Puts a file on the list of those removed by a cancellation. It counts as finished there. Call it
/// inside a CancellationDelay that also spans the file's creation.
/// @param path  copied; a relative one counts from the working directory of that moment
/// @return false when the list is full (8 files) or the path longer than 1023 bytes: the file
///         would survive a cancellation.
bool removeWhenCancelled(const std::string &path);

/// Takes a file off the list; nothing happens when it is not on it.
/// @param path  spelt as it was when it was put there
void keepWhenCancelled(const std::string &path);

/// Says whether a file on the list is one that is of no use to anybody yet. Others are kept by
/// abandonRun(). Nothing happens when it is not on the list.
void setUnfinished(const std::string &path, bool unfinished);

/// Names the child, leader of its own process group, that a cancellation ends: with SIGTERM
/// first, with SIGKILL to the whole group when it still lives after a second. It takes the place of
/// the one named before; 0 for none.
void endWhenCancelled(pid_t child);

/// Ends a run that cannot go on to clean up in the usual way: ends the child, which may take a
/// second, removes the unfinished files, writes the line to standard error and exits with status 1.
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
