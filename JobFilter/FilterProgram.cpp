#include "FilterProgram.h"

#include "MemoryShortage.h"
#include "Streams.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>

void prepareFilterProcess()
{
    Platform::occupyStandardDescriptors();
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    Platform::endWhenMemoryRunsOut(kOutOfMemoryLine);
}

std::optional<int> answeredQuestion(int argc, char *argv[], const char *name, const char *purpose)
{
    const std::string_view question = argc == 2 ? argv[1] : "";
    if (question == "--version")
        std::printf("%s %s\n", name, KL_VERSION);
    else if (question == "--help")
        std::printf("Usage: %s job-id username job-title num-copies options [ file ]\n"
                    "       %s --help | --version\n\n%s\n"
                    "The scheduler runs it; see %s(8).\n",
                    name, name, purpose, name);
    else
        return std::nullopt;
    return std::fflush(stdout) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
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
