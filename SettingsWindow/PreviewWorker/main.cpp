// jobfilter-preview: opens a job's document, has the toolkit work on it and draws its pages, for a
// window that starts it. Not for use by hand, which it says who asks.

#include "Cancellation.h"
#include "Descriptor.h"
#include "MemoryShortage.h"
#include "Streams.h"
#include "servePreview.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

/// Answers "--help" and "--version", each only when it is the one argument. @return false for none
bool answersQuestion(int argc, char *argv[])
{
    const std::string_view question = argc == 2 ? argv[1] : "";
    if (question == "--version")
        std::puts("jobfilter-preview " KL_VERSION);
    else if (question == "--help")
        std::puts("Usage: jobfilter-preview\n"
                  "       jobfilter-preview --help | --version\n\n"
                  "Draws the sheets of a job. jobfilter-settings(1) starts it and asks it on its\n"
                  "standard input.");
    else
        return false;
    return true;
}

/// The answers' stream, in whose place libraries find one that leads nowhere.
Platform::Descriptor takeStandardOutput()
{
    Platform::Descriptor output(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0));
    const Platform::Descriptor nowhere(open("/dev/null", O_WRONLY | O_CLOEXEC));
    dup2(nowhere.number(), STDOUT_FILENO);
    return output;
}

} // namespace

int main(int argc, char *argv[])
{
    if (answersQuestion(argc, argv))
        return std::fflush(stdout) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    Platform::occupyStandardDescriptors();
    std::signal(SIGPIPE, SIG_IGN); // the window has gone: a failed write
    std::signal(SIGXFSZ, SIG_IGN); // a file size limit is one, too
    Platform::cleanUpWhenCancelled();
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    Platform::endWhenMemoryRunsOut("There is not enough memory.\n");
    const Platform::Descriptor answers = takeStandardOutput();
    return servePreview(Platform::Descriptor(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)), answers);
}
