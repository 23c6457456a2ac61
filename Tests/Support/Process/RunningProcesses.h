#pragma once

#include "TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/types.h>
#include <unistd.h>
#include <vector>

namespace Support {

/// The processes, this one aside, that were started with a text in their environment: in the path
/// of the test's own folder, say. Those that somebody else's are, or that end meanwhile, are not
/// among them.
inline std::vector<pid_t> processesStartedWith(const std::string &text)
{
    std::vector<pid_t> found;
    for (const auto &entry : std::filesystem::directory_iterator("/proc")) {
        const pid_t process = std::atoi(entry.path().filename().c_str());
        if (process <= 0 || process == getpid())
            continue;
        try {
            if (readFile(entry.path() / "environ").find(text) != std::string::npos)
                found.push_back(process);
        } catch (const std::exception &) {
            continue;
        }
    }
    return found;
}

} // namespace Support
