#include "ProcessorTime.h"

#include "Cancellation.h"

#include <algorithm>
#include <csignal>
#include <sys/resource.h>

namespace Platform {
namespace {

const char *lastLine = nullptr;

extern "C" void endForTime(int /*signalNumber*/)
{
    abandonRun(lastLine);
}

} // namespace

void endAfterProcessorTime(std::chrono::seconds most, const char *line)
{
    lastLine = line;
    struct sigaction action = {};
    action.sa_handler = &endForTime;
    sigfillset(&action.sa_mask);
    sigaction(SIGXCPU, &action, nullptr);

    rlimit limit = {};
    if (getrlimit(RLIMIT_CPU, &limit) != 0)
        return;
    limit.rlim_cur = std::min(limit.rlim_cur, static_cast<rlim_t>(most.count()));
    setrlimit(RLIMIT_CPU, &limit);
}

} // namespace Platform
