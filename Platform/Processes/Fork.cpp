#include "Fork.h"

#include "Cancellation.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Platform {
namespace {

void becomeChild(pid_t parent, const sigset_t &signalMask)
{
    setpgid(0, 0);
    forgetCancellation();
    sigprocmask(SIG_SETMASK, &signalMask, nullptr);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) // which has ended before it was said
        _exit(EXIT_FAILURE);
}

} // namespace

pid_t forkChild(const std::function<void()> &work)
{
    const pid_t parent = getpid();
    const CancellationDelay delay; // until the child is known to the cancellation
    const pid_t child = fork();
    if (child == 0) {
        becomeChild(parent, delay.originalMask());
        work();
        _exit(EXIT_FAILURE);
    }
    if (child > 0) {
        setpgid(child, child);
        endWhenCancelled(child);
    }
    return child;
}

void endForkedChild(pid_t child)
{
    const CancellationDelay delay;
    kill(-child, SIGKILL);
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    endWhenCancelled(0);
}

} // namespace Platform
