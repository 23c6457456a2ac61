#include "Cancellation.h"

#include "MadeFiles.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Platform {
namespace {

constexpr std::array kSignals = {SIGTERM, SIGINT, SIGHUP};
volatile pid_t childToEnd = 0;

bool hasEnded(pid_t child)
{
    const pid_t ended = waitpid(child, nullptr, WNOHANG);
    return ended == child || (ended < 0 && errno == ECHILD);
}

/// Async-signal-safe, as is all that it calls.
void endChild(pid_t child)
{
    kill(-child, SIGTERM);
    for (int hundredths = 0; hundredths < 100; ++hundredths) {
        if (hasEnded(child))
            break;
        poll(nullptr, 0, 10);
    }
    kill(-child, SIGKILL);
}

void endTheChild()
{
    if (childToEnd != 0)
        endChild(childToEnd);
}

extern "C" void cleanUpAndDie(int signalNumber)
{
    endTheChild();
    MadeFiles::removeAll();
    signal(signalNumber, SIG_DFL);
    raise(signalNumber); // pending until the handler returns, deadly then
}

bool isIgnored(int signalNumber)
{
    struct sigaction action = {};
    return sigaction(signalNumber, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

/// Whose handlers look at the list of files.
sigset_t cleaningSignals()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGXCPU); // ProcessorTime.h
    for (const int signalNumber : kSignals)
        sigaddset(&set, signalNumber);
    return set;
}

void handleCancellingSignals(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_mask = cleaningSignals();
    for (const int signalNumber : kSignals) {
        if (!isIgnored(signalNumber))
            sigaction(signalNumber, &action, nullptr);
    }
}

/// Exchanges the signal that cannot be handled for one that is.
void cancelWithParent()
{
    int signalNumber = 0;
    if (prctl(PR_GET_PDEATHSIG, &signalNumber) == 0 && signalNumber == SIGKILL &&
        !isIgnored(SIGTERM))
        prctl(PR_SET_PDEATHSIG, SIGTERM);
}

} // namespace

void cleanUpWhenCancelled()
{
    handleCancellingSignals(&cleanUpAndDie);
    cancelWithParent();
}

void forgetCancellation()
{
    handleCancellingSignals(SIG_DFL);
    if (!isIgnored(SIGXCPU)) // ProcessorTime.h
        signal(SIGXCPU, SIG_DFL);
}

void endWhenCancelled(pid_t child)
{
    childToEnd = child;
}

void abandonRun(const char *line)
{
    const CancellationDelay delay;
    endTheChild();
    MadeFiles::removeUnfinished();
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line, std::strlen(line));
    _exit(EXIT_FAILURE);
}

CancellationDelay::CancellationDelay()
{
    const sigset_t signals = cleaningSignals();
    sigprocmask(SIG_BLOCK, &signals, &_originalMask);
}

CancellationDelay::~CancellationDelay()
{
    sigprocmask(SIG_SETMASK, &_originalMask, nullptr);
}

} // namespace Platform
