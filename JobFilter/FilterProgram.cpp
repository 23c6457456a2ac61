#include "FilterProgram.h"

#include "MemoryShortage.h"
#include "Streams.h"

#include <csignal>
#include <cstdio>

void prepareFilterProcess()
{
    Platform::occupyStandardDescriptors();
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    Platform::endWhenMemoryRunsOut(kOutOfMemoryLine);
}

std::optional<FilterArguments> filterArguments(int argc, char *argv[])
{
    if (argc == 6 || argc == 7)
        return FilterArguments{argv[1], argv[2], argv[3],
                               argv[4], argv[5], argc == 7 ? argv[6] : nullptr};
    std::fprintf(stderr,
                 "Unexpected number of arguments. Usage:\n\n"
                 "%s job-id username job-title num-copies options [ file ]\n",
                 argv[0]);
    return std::nullopt;
}
