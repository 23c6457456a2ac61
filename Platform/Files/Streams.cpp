#include "Streams.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace Platform {
namespace {

/// Closes a descriptor that is of no use; errno goes on saying why.
void giveUp(Descriptor &file)
{
    const int problem = errno;
    file.close();
    errno = problem;
}

/// Whether the kernel says no more than that it does not move bytes between such files, or not
/// now.
bool isRefusal(int problem)
{
    switch (problem) {
    case EAGAIN:
    case EBADF: // a stream without a descriptor
    case EINTR:
    case EINVAL:
    case ENOSYS:
    case EOPNOTSUPP:
    case EPERM:
    case ESPIPE:
        return true;
    default:
        return false;
    }
}

/// For file systems that cannot make a file without a name.
Descriptor makeAndUnlink(const std::string &folder)
{
    std::string path = folder + "/jobfilter-XXXXXX";
    Descriptor file(mkostemp(path.data(), O_CLOEXEC));
    struct stat ours = {};
    struct stat named = {};
    // The folder's owner may have given the name to another file.
    if (file.number() >= 0 && fstat(file.number(), &ours) == 0 &&
        lstat(path.c_str(), &named) == 0 && isSameFile(ours, named))
        unlink(path.c_str());
    return file;
}

/// Lets a pipe hold more than the usual 64 KiB, so that its two ends wait for each other less
/// often. What the system does not allow is left.
void widenPipe(int descriptor)
{
    static constexpr int kCapacity = 256 << 10; // bytes
    const int capacity = fcntl(descriptor, F_GETPIPE_SZ);
    if (capacity > 0 && capacity < kCapacity)
        fcntl(descriptor, F_SETPIPE_SZ, kCapacity);
}

} // namespace

Stream streamOf(Descriptor file, const char *mode)
{
    Stream stream(fdopen(file.number(), mode));
    if (stream)
        file.release();
    else
        giveUp(file);
    return stream;
}

bool closeStream(Stream stream)
{
    const bool failedBefore = std::ferror(stream.get()) != 0;
    return std::fclose(stream.release()) == 0 && !failedBefore;
}

Stream openForReading(const std::string &path)
{
    // Without O_NONBLOCK the open itself would wait for a FIFO's writer. Regular files and
    // devices are read the same either way.
    Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file.number() < 0)
        return nullptr;
    struct stat status = {};
    if (fstat(file.number(), &status) == 0) {
        if (!S_ISDIR(status.st_mode) && !S_ISFIFO(status.st_mode))
            return streamOf(std::move(file), "rb");
        errno = S_ISDIR(status.st_mode) ? EISDIR : ESPIPE;
    }
    giveUp(file);
    return nullptr;
}

Stream openForWriting(const std::string &path)
{
    Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
    if (file.number() < 0)
        return nullptr;
    if (makeEmpty(file.number()))
        return streamOf(std::move(file), "wb");
    giveUp(file);
    return nullptr;
}

bool isSameFile(const struct stat &one, const struct stat &other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

bool makeEmpty(int descriptor)
{
    struct stat status = {};
    if (fstat(descriptor, &status) != 0)
        return false;
    return status.st_size == 0 || ftruncate(descriptor, 0) == 0;
}

Stream openTemporary()
{
    Descriptor file(memfd_create("temporary", MFD_CLOEXEC));
    return file.number() < 0 ? nullptr : streamOf(std::move(file), "w+b");
}

Stream openTemporaryIn(const std::string &folder)
{
    Descriptor file(open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
    if (file.number() < 0 && errno == EOPNOTSUPP)
        file = makeAndUnlink(folder);
    return file.number() < 0 ? nullptr : streamOf(std::move(file), "w+b");
}

bool moveInKernel(FILE *input, FILE *output)
{
    static constexpr std::size_t kAtMost = std::size_t{16} << 20; // bytes; a signal waits for them
    const int from = fileno(input);
    const int to = fileno(output);
    widenPipe(from);
    widenPipe(to);
    ssize_t moved = 0;
    do
        moved = splice(from, nullptr, to, nullptr, kAtMost, 0); // where one of them is a pipe
    while (moved > 0);
    if (moved < 0 && isRefusal(errno)) {
        do
            moved = sendfile(to, from, nullptr, kAtMost); // from a file to anything else
        while (moved > 0);
    }
    return moved == 0 || isRefusal(errno);
}

void occupyStandardDescriptors()
{
    // Opened the wrong way round on purpose: reading 0 and writing 1 must fail, not pretend.
    // open() takes the lowest free descriptor, so going upwards fills exactly the gaps.
    static constexpr int kFlags[] = {O_WRONLY, O_RDONLY, O_WRONLY};
    for (int descriptor = 0; descriptor <= 2; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) < 0 && errno == EBADF &&
            // cppcheck-suppress leakReturnValNotUsed ; it is to stay open
            open("/dev/null", kFlags[descriptor]) < 0)
            return; // nothing to be done here, and the next gap would fare no better
    }
}

} // namespace Platform
