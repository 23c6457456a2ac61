#include "Arguments.h"
#include "Cancellation.h"
#include "MemoryShortage.h"
#include "ProcessorTime.h"
#include "Streams.h"
#include "Text.h"
#include "TextSettingChild.h"
#include "ToolkitError.h"
#include "carryOut.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <malloc.h>
#include <new>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

namespace {

/// One line without control characters: the filter hands it on to the user.
void complain(const std::string &message)
{
    std::fprintf(stderr, "%s\n", Platform::withoutControls(message).c_str());
}

#ifdef KL_SANITIZED // the sanitizers want all memory back
constexpr bool kLeavesMemory = false;
#else
constexpr bool kLeavesMemory = true;
#endif

/// A small document can unpack to any size. Past this bound the program finds no more memory,
/// before the machine does.
void limitMemory()
{
#ifndef KL_SANITIZED // the sanitizers take address space as they please
    constexpr rlim_t kMost = rlim_t{1} << 30;
    rlimit limit = {};
    if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur <= kMost)
        return;
    limit.rlim_cur = kMost;
    setrlimit(RLIMIT_AS, &limit);
#endif
}

/// What one large stream leaves behind serves the next one: to give so much memory back to the
/// system and get it anew takes a sixth of the time. Of blocks above the bound it is given back.
void keepFreedMemory()
{
#ifdef M_MMAP_THRESHOLD              // not every C library has bounds to set
    constexpr int kBound = 32 << 20; // bytes, the most that it takes
    mallopt(M_MMAP_THRESHOLD, kBound);
    mallopt(M_TRIM_THRESHOLD, 2 * kBound);
#endif
}

/// It can also keep a processor busy for hours. A sound document takes a small part of this time,
/// which grows with it: nothing that it unpacks to counts.
void limitTime(const std::string &inputPath)
{
    constexpr std::chrono::seconds kLeast(3);
    constexpr off_t kBytesInASecond = 50'000;
    struct stat status = {};
    const off_t size = stat(inputPath.c_str(), &status) == 0 ? status.st_size : 0;
    Platform::endAfterProcessorTime(kLeast + std::chrono::seconds(size / kBytesInASecond),
                                    "The document takes too much processor time.\n");
}

int printHelp(const std::string &text)
{
    return std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0 ? EXIT_SUCCESS
                                                                             : EXIT_FAILURE;
}

} // namespace

int main(int argc, char *argv[])
{
    Platform::occupyStandardDescriptors();
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN); // a file size limit is a failed write
    Platform::cleanUpWhenCancelled();
    Platform::endWhenMemoryRunsOut("There is not enough memory.\n");
    limitMemory();
    keepFreedMemory();

    const std::vector<std::string> words(argv + (argc > 0 ? 1 : 0), argv + argc);
    try {
        if (const auto help = requestedHelp(words))
            return printHelp(*help);
        const Arguments arguments = splitArguments(words);
        limitTime(arguments.input);
        const char *ppdPath = std::getenv("PPD");
        Platform::TextSettingChild texts;
        carryOut(arguments, ppdPath == nullptr ? "" : ppdPath, kLeavesMemory, texts);
        return EXIT_SUCCESS;
    } catch (const ToolkitError &error) {
        complain(error.what());
    } catch (const Platform::TextSettingError &error) {
        complain(std::string("The fonts cannot be used: ") + error.what() + ".");
    } catch (const std::bad_alloc &) {
        complain("There is not enough memory.");
    } catch (const std::exception &) {
        // What a library has to say may quote the job.
        complain("The document could not be processed.");
    }
    return EXIT_FAILURE;
}
