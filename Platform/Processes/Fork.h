#pragma once

#include <functional>
#include <sys/types.h>

namespace Platform {

/// Forks a child that does some work, never outlives this process, and is ended when the run is
/// cancelled (Cancellation.h).
///
/// The child leads a process group of its own. It has the signal mask from before any
/// CancellationDelay; SIGTERM, SIGINT and SIGHUP are deadly there, unless they are ignored. When
/// this process ends, however that comes about, the child is killed. (The kernel goes by threads:
/// the one that calls this must live as long as the process.)
/// @param work  what the child does: it ends the child itself, with _exit(2) or by becoming a
///              program; the child fails where it does not
/// @return the child; -1 with errno set when there is none
pid_t forkChild(const std::function<void()> &work);

/// Kills the group of a child of forkChild() that has not been waited for, and waits for it.
void endForkedChild(pid_t child);

} // namespace Platform
