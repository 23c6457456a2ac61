#include "runCompanion.h"

#include "KLJobControlStripper.h"
#include "KLPageCounter.h"
#include "Streams.h"
#include "accountingRules.h"

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

void stripJobControl(FILE *input, const KLJobControlStripper::Sink &sink)
{
    KLJobControlStripper stripper(sink);
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

void stripJob(const FilterArguments &arguments, const KLJobControlStripper::Sink &sink)
{
    if (arguments.file == nullptr)
        return stripJobControl(stdin, sink);
    const Platform::Stream file = Platform::openForReading(arguments.file);
    if (!file)
        throw FatalError("Unable to read from input");
    stripJobControl(file.get(), sink);
}

/// Tells the scheduler, which adds up the copies of the lines. Each is one write.
void reportPages(std::size_t pages, int copies)
{
    for (std::size_t page = 1; page <= pages; ++page)
        std::fprintf(stderr, "PAGE: %zu %d\n", page, copies);
}

void stripAndCount(const FilterArguments &arguments)
{
    KLPageCounter counter;
    stripJob(arguments, [&counter](std::string_view bytes) {
        writeToStandardOutput(bytes);
        counter.count(bytes);
    });
    // Not before all has gone out: a job that fails until then is not printed.
    if (const auto pages = counter.pages())
        reportPages(*pages, copiesOfHeader(arguments.options, arguments.copies));
}

} // namespace

int runCompanion(const FilterArguments &arguments)
{
    try {
        if (asksForPageAccounting(std::getenv("PPD")))
            stripAndCount(arguments);
        else
            stripJob(arguments, writeToStandardOutput);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "CRIT: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
