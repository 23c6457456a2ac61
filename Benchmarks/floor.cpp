// The least that a filter of this kind can cost: the PPD functions that the filter calls, the job's
// way into a file when it comes on standard input, and the copy onto standard output. No
// settings, no walk, no toolkit, no error handling: only what the filter is measured against.
//
//   floor job-id username job-title num-copies options [ file ]

#include "ppdLibrary.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace {

bool copy(int from, int to)
{
    static std::array<char, 64 << 10> block; // as much as a pipe holds
    ssize_t length = 0;
    while ((length = read(from, block.data(), block.size())) > 0) {
        if (write(to, block.data(), static_cast<std::size_t>(length)) != length)
            return false;
    }
    return length == 0;
}

/// Standard input, whole, in an unnamed file.
int spooledInput()
{
    std::array<char, 32> name = {"/tmp/floorXXXXXX"};
    const int file = mkstemp(name.data());
    unlink(name.data());
    if (file < 0 || !copy(STDIN_FILENO, file) || lseek(file, 0, SEEK_SET) != 0)
        std::exit(EXIT_FAILURE);
    return file;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc < 6)
        return EXIT_FAILURE;
    const int job = argc > 6 ? open(argv[6], O_RDONLY) : spooledInput();

    cups_option_t *options = nullptr;
    const int count = cupsParseOptions(argv[5], 0, &options);
    ppd_file_t *ppd = ppdOpenFile(std::getenv("PPD"));
    ppdMarkDefaults(ppd);
    ppdMarkOptions(ppd, count, options);
    ppdEmitJCL(ppd, stdout, std::atoi(argv[1]), argv[2], argv[3]);
    std::fflush(stdout);

    const bool whole = copy(job, STDOUT_FILENO);
    cupsFreeOptions(count, options);
    ppdClose(ppd);
    return whole ? EXIT_SUCCESS : EXIT_FAILURE;
}
