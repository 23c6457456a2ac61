#include "OpenDescriptors.h"

#ifdef KL_HAVE_CLOSE_RANGE

#include <unistd.h>

namespace Platform {

bool closeDescriptorsFrom(int first)
{
    return close_range(static_cast<unsigned int>(first), ~0U, 0) == 0;
}

bool closeDescriptorsFromOnExec(int first)
{
    return close_range(static_cast<unsigned int>(first), ~0U, CLOSE_RANGE_CLOEXEC) == 0;
}

} // namespace Platform

#else // a C library without it, as musl is

#include <charconv>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace Platform {
namespace {

struct FolderCloser {
    void operator()(DIR *folder) const { closedir(folder); }
};

/// @return the number that a file of /proc/self/fd is named by, -1 for "." and ".."
int numberFrom(std::string_view name)
{
    int number = -1;
    const auto result = std::from_chars(name.data(), name.data() + name.size(), number);
    return result.ec == std::errc() ? number : -1;
}

/// @return false, with errno set, when the list of them cannot be opened
bool forDescriptorsFrom(int first, void (*action)(int number))
{
    const std::unique_ptr<DIR, FolderCloser> list(opendir("/proc/self/fd"));
    if (!list)
        return false;
    while (const dirent *entry = readdir(list.get())) {
        const int number = numberFrom(entry->d_name);
        if (number >= first && number != dirfd(list.get())) // the list's own goes with it
            action(number);
    }
    return true;
}

} // namespace

bool closeDescriptorsFrom(int first)
{
    return forDescriptorsFrom(first, [](int number) { close(number); });
}

bool closeDescriptorsFromOnExec(int first)
{
    return forDescriptorsFrom(first, [](int number) { fcntl(number, F_SETFD, FD_CLOEXEC); });
}

} // namespace Platform

#endif
