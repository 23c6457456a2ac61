// jobfilter-preview: opens a job's document, has the toolkit work on it and draws its pages, for a
// window that starts it. Not for use by hand.

#include "Cancellation.h"
#include "Descriptor.h"
#include "MemoryShortage.h"
#include "Streams.h"
#include "servePreview.h"

#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

/// The answers' stream, in whose place libraries find one that leads nowhere.
Platform::Descriptor takeStandardOutput()
{
    Platform::Descriptor output(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0));
    const Platform::Descriptor nowhere(open("/dev/null", O_WRONLY | O_CLOEXEC));
    dup2(nowhere.number(), STDOUT_FILENO);
    return output;
}

} // namespace

int main()
{
    Platform::occupyStandardDescriptors();
    std::signal(SIGPIPE, SIG_IGN); // the window has gone: a failed write
    std::signal(SIGXFSZ, SIG_IGN); // a file size limit is one, too
    Platform::cleanUpWhenCancelled();
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    Platform::endWhenMemoryRunsOut("There is not enough memory.\n");
    const Platform::Descriptor answers = takeStandardOutput();
    return servePreview(Platform::Descriptor(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)), answers);
}
