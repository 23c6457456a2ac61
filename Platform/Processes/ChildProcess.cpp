#include "ChildProcess.h"

#include "Cancellation.h"
#include "Fork.h"
#include "OpenDescriptors.h"
#include "Pipe.h"
#include "Text.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/wait.h>
#include <unistd.h>

namespace Platform {
namespace {

/// What a forked child needs in order to become the program.
struct Start {
    const char *program;
    int file; ///< the program's, or -1
    char *const *arguments;
    int standardError;
    int report; ///< where the errno goes of a start that failed; closed by one that worked
};

/// Leaves the program the three standard streams.
bool connectStreams(int standardError)
{
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    return dup2(standardError, STDERR_FILENO) >= 0 && dup2(nothing, STDIN_FILENO) >= 0 &&
           dup2(nothing, STDOUT_FILENO) >= 0 && closeDescriptorsFromOnExec(STDERR_FILENO + 1);
}

/// Returns, with errno set, only when the program does not start.
void execute(const Start &start)
{
    if (start.file >= 0)
        fexecve(start.file, start.arguments, environ);
    // A script is opened once more by its interpreter, by name: that file would be closed by then,
    // and the kernel says that there is none.
    if (start.file < 0 || errno == ENOENT)
        execve(start.program, start.arguments, environ);
}

void becomeProgram(const Start &start)
{
    std::signal(SIGPIPE, SIG_DFL);
    if (connectStreams(start.standardError))
        execute(start);
    const int problem = errno;
    if (write(start.report, &problem, sizeof problem) < 0)
        _exit(EXIT_FAILURE); // to nobody
}

/// Waits until the child has become the program, or has ended. @return errno of what was in the
/// way, 0 for nothing
int problemReported(int report)
{
    int problem = 0;
    ssize_t length = 0;
    do
        length = read(report, &problem, sizeof problem);
    while (length < 0 && errno == EINTR);
    return length == sizeof problem ? problem : 0;
}

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

ChildProcess::ChildProcess(const std::string &program, const std::vector<std::string> &arguments,
                           int file)
{
    if (const int problem = start(program, arguments, file); problem != 0)
        throw ChildProcessError("Unable to start " + program + ": " + std::strerror(problem));
}

int ChildProcess::start(const std::string &program, const std::vector<std::string> &arguments,
                        int file)
{
    auto errors = makePipe();
    auto report = makePipe();
    if (!errors || !report)
        return errno;
    const auto vector = argumentVector(program, arguments);
    const Start start = {program.c_str(), file, vector.data(), errors->writeEnd.number(),
                         report->writeEnd.number()};
    const pid_t child = forkChild([&start] { becomeProgram(start); });
    if (child < 0)
        return errno;
    _child = child;
    _guard.emplace(); // at once: the program may soon have started others
    _errors = std::move(errors->readEnd);
    report->writeEnd.close(); // so that the child's end is the end of its report
    const int problem = problemReported(report->readEnd.number());
    if (problem != 0)
        terminationStatus();
    return problem;
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

    // Off the lists while its number is still its own.
    _guard.reset();
    endWhenCancelled(0);
    waitpid(_child, nullptr, 0);
    _child = 0;
    return _terminationStatus;
}

} // namespace Platform
