#pragma once

#include <sys/types.h>

namespace Platform {

/// Cleans up behind this process should it be killed: a process of its own, which waits for that as
/// long as this object lives. Then it ends the whole process group of the child that the
/// cancellation knows, and removes the unfinished files (abandonRun()).
///
/// Without it only the child itself would end (Fork.h), not what that has started. Where there is
/// no room for a process more, all goes on without a guard.
class GroupGuard {
public:
    /// The child has been forked and is known to the cancellation.
    GroupGuard();
    ~GroupGuard();
    GroupGuard(const GroupGuard &) = delete;
    GroupGuard &operator=(const GroupGuard &) = delete;

private:
    pid_t _process;
};

} // namespace Platform
