#include "MadeFiles.h"

#include "Cancellation.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace Platform::MadeFiles {
namespace {

constexpr std::size_t kMostFiles = 8;
constexpr std::size_t kPathSize = 1024;

struct MadeFile {
    char path[kPathSize]; ///< empty in a free slot
    bool unfinished;
    bool held;
    int descriptor;     ///< keeps the file, and its number from being another's; only when held
    struct stat status; ///< says which file it is; only when held
};

/// A signal handler reads it, so it changes only while the signals are held back.
MadeFile madeFiles[kMostFiles];

/// Null when it is not on the list.
MadeFile *find(const std::string &path)
{
    const auto found =
        std::ranges::find_if(madeFiles, [&](const MadeFile &file) { return path == file.path; });
    return path.empty() || found == std::end(madeFiles) ? nullptr : found;
}

// What follows down to removeIfOurs() is async-signal-safe.

bool isOwnRegularFile(const struct stat &status)
{
    return S_ISREG(status.st_mode) && status.st_uid == geteuid();
}

/// @param named  what has the file's name
bool isOurs(const struct stat &named, const MadeFile &file)
{
    return file.held ? isSameFile(named, file.status) : isOwnRegularFile(named);
}

void removeIfOurs(const MadeFile &file)
{
    struct stat named = {};
    if (*file.path != '\0' && lstat(file.path, &named) == 0 && isOurs(named, file))
        unlink(file.path);
}

void letGo(MadeFile &file)
{
    if (std::exchange(file.held, false))
        close(file.descriptor);
}

} // namespace

bool add(const std::string &path)
{
    const CancellationDelay delay;
    const auto slot =
        std::ranges::find_if(madeFiles, [](const auto &file) { return *file.path == '\0'; });
    if (path.size() >= kPathSize || slot == std::end(madeFiles))
        return false;
    std::memcpy(slot->path, path.c_str(), path.size() + 1);
    slot->unfinished = false;
    return true;
}

bool hold(const std::string &path, Descriptor file)
{
    const CancellationDelay delay;
    MadeFile *const made = find(path);
    struct stat status = {};
    if (made == nullptr || file.number() < 0 || fstat(file.number(), &status) != 0)
        return false;
    letGo(*made);
    made->status = status;
    made->descriptor = file.release();
    made->held = true;
    return true;
}

void takeBack(const std::string &path)
{
    // Without O_NONBLOCK the open itself would wait for a FIFO's writer.
    Descriptor file(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status = {};
    if (file.number() >= 0 && fstat(file.number(), &status) == 0 && isOwnRegularFile(status))
        hold(path, std::move(file));
}

void setUnfinished(const std::string &path, bool unfinished)
{
    if (MadeFile *const file = find(path); file != nullptr)
        file->unfinished = unfinished;
}

bool isListed(const std::string &path)
{
    return find(path) != nullptr;
}

bool isReplaced(const std::string &path)
{
    struct stat named = {};
    const MadeFile *const file = find(path);
    return file != nullptr && lstat(file->path, &named) == 0 && !isOurs(named, *file);
}

Stream openForReading(const std::string &path)
{
    const MadeFile *const file = find(path);
    if (file == nullptr || !file->held)
        return nullptr;
    Descriptor again(fcntl(file->descriptor, F_DUPFD_CLOEXEC, 0));
    if (again.number() < 0 || lseek(again.number(), 0, SEEK_SET) != 0)
        return nullptr;
    return streamOf(std::move(again), "rb");
}

void remove(const std::string &path)
{
    const CancellationDelay delay;
    if (const MadeFile *const file = find(path); file != nullptr)
        removeIfOurs(*file);
    forget(path);
}

void forget(const std::string &path)
{
    const CancellationDelay delay;
    if (MadeFile *const file = find(path); file != nullptr) {
        letGo(*file);
        *file->path = '\0';
    }
}

void removeAll()
{
    for (const MadeFile &file : madeFiles)
        removeIfOurs(file);
}

void removeUnfinished()
{
    for (const MadeFile &file : madeFiles) {
        if (file.unfinished)
            removeIfOurs(file);
    }
}

} // namespace Platform::MadeFiles
