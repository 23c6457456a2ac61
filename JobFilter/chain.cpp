#include "Cancellation.h"
#include "FilterProgram.h"
#include "Fork.h"
#include "Pipe.h"
#include "runCompanion.h"
#include "runFilter.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr char kUnableToRead[] = "Unable to read from input";

/// The companion at work in a process of its own, whose output is this process' standard input as
/// long as this object lives. It ends when the run is cancelled, and never outlives the run.
class Companion {
public:
    /// @throws FatalError when there is no process or no pipe to be had
    explicit Companion(const FilterArguments &arguments);
    ~Companion();
    Companion(const Companion &) = delete;
    Companion &operator=(const Companion &) = delete;

    /// Waits for the companion's end. Once.
    /// @return whether it has written the whole job; else it has said why
    bool hasSucceeded();

private:
    pid_t _process = -1; ///< -1 once it has been waited for
};

[[noreturn]] void doCompanionsWork(const FilterArguments &arguments, int output)
{
    const bool isConnected = dup2(output, STDOUT_FILENO) >= 0;
    _exit(isConnected ? runCompanion(arguments) : EXIT_FAILURE);
}

Companion::Companion(const FilterArguments &arguments)
{
    const auto pipe = Platform::makePipe();
    if (!pipe)
        throw FatalError(kUnableToRead);
    _process = Platform::forkChild([&] { doCompanionsWork(arguments, pipe->writeEnd.number()); });
    if (_process < 0 || dup2(pipe->readEnd.number(), STDIN_FILENO) < 0)
        throw FatalError(kUnableToRead);
}

Companion::~Companion()
{
    if (_process < 0)
        return;
    kill(_process, SIGKILL); // it would complain that nobody reads any more
    hasSucceeded();
}

bool Companion::hasSucceeded()
{
    siginfo_t ended = {};
    while (waitid(P_PID, static_cast<id_t>(_process), &ended, WEXITED | WNOWAIT) != 0 &&
           errno == EINTR) {
    }
    // Off the list while its number is still its own.
    Platform::endWhenCancelled(0);
    waitpid(_process, nullptr, 0);
    _process = -1;
    return ended.si_code == CLD_EXITED && ended.si_status == EXIT_SUCCESS;
}

/// The filter reads its whole job before it writes, so nothing is printed of a job that the
/// companion has lost a part of.
int runChain(const FilterArguments &arguments)
{
    Companion companion(arguments);
    FilterArguments filterArguments = arguments;
    filterArguments.file = nullptr; // the companion reads it
    return runFilter(filterArguments, [&companion] { return companion.hasSucceeded(); });
}

} // namespace

int main(int argc, char *argv[])
{
    prepareFilterProcess();
    Platform::cleanUpWhenCancelled();
    if (const auto status =
            answeredQuestion(argc, argv, "jobfilter-chain",
                             "Is jobfilter and jobfilter-nojcl in one, as a CUPS filter."))
        return *status;

    std::signal(SIGCHLD, SIG_DFL); // so that the system tells how the companion has ended

    const auto arguments = filterArguments(argc, argv);
    if (!arguments)
        return EXIT_FAILURE;
    try {
        return runChain(*arguments);
    } catch (const FatalError &error) {
        std::fprintf(stderr, "CRIT: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
