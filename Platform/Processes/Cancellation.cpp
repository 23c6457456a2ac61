#include "Cancellation.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Platform {
namespace {

constexpr std::array kSignals = {SIGTERM, SIGINT, SIGHUP};
constexpr std::size_t kMostFiles = 8;
constexpr std::size_t kPathSize = 1024;

/// A file that the run has made.
struct MadeFile {
    char path[kPathSize]; ///< empty in a free slot
    bool unfinished;
};

/// Their paths change only while the signals are held back.
MadeFile madeFiles[kMostFiles];
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

void cleanUp(bool everything)
{
    if (childToEnd != 0)
        endChild(childToEnd);
    for (const MadeFile &file : madeFiles) {
        if (*file.path != '\0' && (everything || file.unfinished))
            unlink(file.path);
    }
}

extern "C" void cleanUpAndDie(int signalNumber)
{
    cleanUp(true);
    signal(signalNumber, SIG_DFL);
    raise(signalNumber); // pending until the handler returns, deadly then
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

} // namespace

void cleanUpWhenCancelled()
{
    struct sigaction action = {};
    action.sa_handler = &cleanUpAndDie;
    action.sa_mask = cleaningSignals();
    for (const int signalNumber : kSignals) {
        struct sigaction inherited = {};
        if (sigaction(signalNumber, nullptr, &inherited) == 0 && inherited.sa_handler != SIG_IGN)
            sigaction(signalNumber, &action, nullptr);
    }
}

bool removeWhenCancelled(const std::string &path)
{
    const CancellationDelay delay;
    const auto slot =
        std::ranges::find_if(madeFiles, [](const auto &file) { return *file.path == '\0'; });
    if (path.size() >= kPathSize || slot == std::end(madeFiles))
        return false;
    std::memcpy(slot->path, path.c_str(), path.size() + 1);
    slot->unfinished = false;
    return true;
}

void keepWhenCancelled(const std::string &path)
{
    const CancellationDelay delay;
    for (MadeFile &file : madeFiles) {
        if (path == file.path)
            *file.path = '\0';
    }
}

void setUnfinished(const std::string &path, bool unfinished)
{
    for (MadeFile &file : madeFiles) {
        if (path == file.path)
            file.unfinished = unfinished;
    }
}

void endWhenCancelled(pid_t child)
{
    childToEnd = child;
}

void abandonRun(const char *line)
{
    const CancellationDelay delay;
    cleanUp(false);
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
