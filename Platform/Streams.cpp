#include "Streams.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Platform {
namespace {

/// The stream takes the descriptor over; when there is no memory for it, the descriptor is closed.
Stream streamOf(int descriptor, const char *mode)
{
    Stream stream(fdopen(descriptor, mode));
    if (!stream) {
        const int problem = errno;
        close(descriptor);
        errno = problem;
    }
    return stream;
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

/// Lets a pipe hold more than the usual 64 KiB, so that its two ends wait for each other less often.
/// What the system does not allow is left.
void widenPipe(int descriptor)
{
    static constexpr int kCapacity = 256 << 10; // bytes
    const int capacity = fcntl(descriptor, F_GETPIPE_SZ);
    if (capacity > 0 && capacity < kCapacity)
        fcntl(descriptor, F_SETPIPE_SZ, kCapacity);
}

} // namespace

bool closeStream(Stream stream)
{
    const bool failedBefore = std::ferror(stream.get()) != 0;
    return std::fclose(stream.release()) == 0 && !failedBefore;
}

Stream openForReading(const std::string &path)
{
    // Without O_NONBLOCK the open itself would wait for a FIFO's writer. Regular files and
    // devices are read the same either way.
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return nullptr;
    struct stat status = {};
    int problem = 0;
    if (fstat(descriptor, &status) != 0)
        problem = errno;
    else if (S_ISDIR(status.st_mode))
        problem = EISDIR;
    else if (S_ISFIFO(status.st_mode))
        problem = ESPIPE;
    if (problem == 0)
        return streamOf(descriptor, "rb");
    close(descriptor);
    errno = problem;
    return nullptr;
}

Stream openForWriting(const std::string &path)
{
    return Stream(std::fopen(path.c_str(), "wbe"));
}

Stream openTemporary()
{
    const int descriptor = memfd_create("temporary", MFD_CLOEXEC);
    return descriptor < 0 ? nullptr : streamOf(descriptor, "w+b");
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
