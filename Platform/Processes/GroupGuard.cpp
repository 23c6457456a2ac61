#include "GroupGuard.h"

#include "Cancellation.h"
#include "OpenDescriptors.h"

#include <cerrno>
#include <csignal>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Platform {
namespace {

/// What cancels the parent is held back here, and stays so.
[[noreturn]] void watch(pid_t parent)
{
    setpgid(0, 0); // who kills the parent's group does not mean the guard
    closeDescriptorsFrom(0);
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    sigset_t awaited;
    sigemptyset(&awaited);
    sigaddset(&awaited, SIGTERM);
    while (getppid() == parent) {
        int received = 0;
        sigwait(&awaited, &received);
    }
    abandonRun("");
}

} // namespace

GroupGuard::GroupGuard()
{
    const pid_t parent = getpid();
    const CancellationDelay delay;
    _process = fork();
    if (_process == 0)
        watch(parent);
}

GroupGuard::~GroupGuard()
{
    if (_process < 0)
        return;
    kill(_process, SIGKILL);
    while (waitpid(_process, nullptr, 0) < 0 && errno == EINTR) {
    }
}

} // namespace Platform
