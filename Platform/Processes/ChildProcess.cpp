#include "ChildProcess.h"

#include "Cancellation.h"
#include "Text.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Platform {
namespace {

std::string reason(int errorNumber)
{
    return std::strerror(errorNumber);
}

/// What the child does with its descriptors before the program starts.
class SpawnFiles {
public:
    explicit SpawnFiles(int standardError)
    {
        posix_spawn_file_actions_init(&_actions);
        // The pipe first: its descriptor may be one of those that are opened next.
        posix_spawn_file_actions_adddup2(&_actions, standardError, STDERR_FILENO);
        posix_spawn_file_actions_addopen(&_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&_actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addclosefrom_np(&_actions, STDERR_FILENO + 1);
    }
    ~SpawnFiles() { posix_spawn_file_actions_destroy(&_actions); }
    SpawnFiles(const SpawnFiles &) = delete;
    SpawnFiles &operator=(const SpawnFiles &) = delete;

    const posix_spawn_file_actions_t *get() const { return &_actions; }

private:
    posix_spawn_file_actions_t _actions;
};

/// The child's process group and signals.
class SpawnAttributes {
public:
    explicit SpawnAttributes(const sigset_t &mask)
    {
        posix_spawnattr_init(&_attributes);
        sigset_t defaults;
        sigemptyset(&defaults);
        sigaddset(&defaults, SIGPIPE);
        posix_spawnattr_setsigdefault(&_attributes, &defaults);
        posix_spawnattr_setsigmask(&_attributes, &mask);
        posix_spawnattr_setpgroup(&_attributes, 0);
        posix_spawnattr_setflags(&_attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK |
                                                   POSIX_SPAWN_SETPGROUP);
    }
    ~SpawnAttributes() { posix_spawnattr_destroy(&_attributes); }
    SpawnAttributes(const SpawnAttributes &) = delete;
    SpawnAttributes &operator=(const SpawnAttributes &) = delete;

    const posix_spawnattr_t *get() const { return &_attributes; }

private:
    posix_spawnattr_t _attributes;
};

/// The argument vector for the C interface, which promises not to write to it. Refers to the
/// texts.
std::vector<char *> argumentVector(const std::string &program,
                                   const std::vector<std::string> &arguments)
{
    std::vector<char *> vector = {const_cast<char *>(program.c_str())};
    for (const std::string &argument : arguments)
        vector.push_back(const_cast<char *>(argument.c_str()));
    vector.push_back(nullptr);
    return vector;
}

} // namespace

ChildProcess::DefaultSignal::DefaultSignal(int signalNumber) : _signalNumber(signalNumber)
{
    struct sigaction action = {};
    action.sa_handler = SIG_DFL;
    sigaction(signalNumber, &action, &_before);
}

ChildProcess::DefaultSignal::~DefaultSignal()
{
    sigaction(_signalNumber, &_before, nullptr);
}

ChildProcess::ChildProcess(const std::string &program, const std::vector<std::string> &arguments)
{
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw ChildProcessError("Unable to start " + program + ": " + reason(errno));
    _errors = Descriptor(ends[0]);
    const Descriptor writeEnd(ends[1]); // the child's alone once it runs
    start(program, arguments, writeEnd.number());
}

void ChildProcess::start(const std::string &program, const std::vector<std::string> &arguments,
                         int standardError)
{
    const CancellationDelay delay; // until the child is known to the cancellation
    const SpawnFiles files(standardError);
    const SpawnAttributes attributes(delay.originalMask());
    const int problem = posix_spawn(&_child, program.c_str(), files.get(), attributes.get(),
                                    argumentVector(program, arguments).data(), environ);
    if (problem != 0) {
        _child = 0;
        throw ChildProcessError("Unable to start " + program + ": " + reason(problem));
    }
    endWhenCancelled(_child);
}

ChildProcess::~ChildProcess()
{
    if (_child == 0)
        return;
    kill(-_child, SIGKILL);
    terminationStatus();
}

bool ChildProcess::isRunning() const
{
    if (_child == 0)
        return false;
    // The child is left for terminationStatus(): as long as it is there, so is its process group.
    siginfo_t ended = {};
    return waitid(P_PID, static_cast<id_t>(_child), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           ended.si_pid == 0;
}

std::string ChildProcess::collectErrorText()
{
    // Once is enough, however long the child runs on: nothing comes after the end of a pipe.
    return isRunning() ? readErrorsToEnd() : std::string();
}

std::string ChildProcess::readErrorsToEnd()
{
    std::string text;
    std::array<char, 16384> block;
    for (;;) {
        const ssize_t count = read(_errors.number(), block.data(), block.size());
        if (count > 0 && text.size() <= kMostErrorText)
            text.append(block.data(), static_cast<std::size_t>(count));
        else if (count == 0 || (count < 0 && errno != EINTR))
            break;
    }
    text.resize(lengthCutAtCharacter(text, kMostErrorText));
    return text;
}

int ChildProcess::terminationStatus()
{
    if (_child == 0)
        return _terminationStatus;
    siginfo_t ended = {};
    int result = 0;
    do
        result = waitid(P_PID, static_cast<id_t>(_child), &ended, WEXITED | WNOWAIT);
    while (result != 0 && errno == EINTR);
    if (result == 0)
        _terminationStatus = ended.si_status;

    // Off the list while its number is still its own.
    endWhenCancelled(0);
    waitpid(_child, nullptr, 0);
    _child = 0;
    return _terminationStatus;
}

} // namespace Platform
