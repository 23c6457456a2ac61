#include "KLJobControlStripper.h"
#include "MemoryShortage.h"
#include "Streams.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kBlockSize = 65536;

/// Ends the run with a "CRIT: " line that carries what() and with status 1.
class FatalError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

void writeToStandardOutput(std::string_view bytes)
{
    if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size())
        throw FatalError("Unable to write print data");
}

void stripJobControl(FILE *input)
{
    KLJobControlStripper stripper(writeToStandardOutput);
    std::vector<char> block(kBlockSize);
    while (const auto length = std::fread(block.data(), 1, block.size(), input))
        stripper.strip({block.data(), length});
    if (std::ferror(input) != 0)
        throw FatalError("Unable to read from input");
    stripper.finish();
    if (std::fflush(stdout) != 0)
        throw FatalError("Unable to write print data");
    if (stripper.hasDropped() && !stripper.hasKept())
        std::fputs("ERROR: The job holds job control only, there is nothing to print\n", stderr);
}

void stripFile(const char *path)
{
    const Platform::Stream file = Platform::openForReading(path);
    if (!file)
        throw FatalError("Unable to read from input");
    stripJobControl(file.get());
}

} // namespace

int main(int argc, char *argv[])
{
    Platform::occupyStandardDescriptors();
    std::signal(SIGPIPE, SIG_IGN); // a reader that has gone is a failed write
    std::signal(SIGXFSZ, SIG_IGN); // so is a limit on the size of files
    Platform::endWhenMemoryRunsOut("CRIT: Out of memory\n");

    if (argc != 6 && argc != 7) {
        std::fprintf(stderr,
                     "Unexpected number of arguments. Usage:\n\n"
                     "%s job-id username job-title num-copies options [ file ]\n",
                     argv[0]);
        return EXIT_FAILURE;
    }
    try {
        argc == 7 ? stripFile(argv[6]) : stripJobControl(stdin);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "CRIT: %s\n", error.what());
        // Not through exit(): a buffer that could not be written is not tried again.
        std::_Exit(EXIT_FAILURE);
    }
    return EXIT_SUCCESS;
}
