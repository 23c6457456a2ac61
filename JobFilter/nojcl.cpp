#include "FilterProgram.h"
#include "KLJobControlStripper.h"
#include "Streams.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kBlockSize = 65536;

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
    prepareFilterProcess();
    const auto arguments = filterArguments(argc, argv);
    if (!arguments)
        return EXIT_FAILURE;
    try {
        arguments->file != nullptr ? stripFile(arguments->file) : stripJobControl(stdin);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "CRIT: %s\n", error.what());
        // Not through exit(): a buffer that could not be written is not tried again.
        std::_Exit(EXIT_FAILURE);
    }
    return EXIT_SUCCESS;
}
