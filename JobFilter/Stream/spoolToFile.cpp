#include "spoolToFile.h"

#include <vector>

namespace {
constexpr std::size_t kBlockSize = 16384;
} // namespace

bool spoolToFile(FILE *input, FILE *output)
{
    std::vector<char> block(kBlockSize);
    for (;;) {
        const std::size_t length = std::fread(block.data(), 1, block.size(), input);
        // On purpose no look at the error indicator (ReadErrorEndsTheCopyLikeTheEnd).
        if (length == 0)
            return true;
        if (std::fwrite(block.data(), 1, length, output) < length)
            return false;
    }
}
