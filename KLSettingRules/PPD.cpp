#include "openPPD.h"

#include "Descriptor.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Far above any real PPD, and small enough for libcups to hold in memory.
constexpr off_t kLargestPPD = off_t{16} << 20;

/// Why the file cannot be a PPD; empty when it may be one. libcups would read a device or a FIFO
/// for ever, and calls a folder an empty file.
std::string whyNotReadable(const struct stat &status)
{
    if (!S_ISREG(status.st_mode))
        return "not a regular file";
    if (status.st_size > kLargestPPD)
        return "larger than 16 MiB";
    return {};
}

std::string whyNotOpened(int error)
{
    int line = 0;
    const ppd_status_t status = ppdLastError(&line);
    if (status == PPD_FILE_OPEN_ERROR)
        return std::strerror(error);
    return std::string(ppdErrorString(status)) + " on line " + std::to_string(line);
}

PPD readPPD(const Platform::Descriptor &file, off_t size, std::string *whyNot)
{
    // libcups closes what it has read; the copy stands where the file does.
    const int copy = fcntl(file.number(), F_DUPFD_CLOEXEC, 0);
    PPD ppd(copy < 0 ? nullptr : ppdOpenFd(copy));
    if (!ppd)
        *whyNot = copy < 0 ? std::strerror(errno) : whyNotOpened(errno);
    else if (lseek(file.number(), 0, SEEK_CUR) != size) {
        *whyNot = "not all of it could be read";
        ppd.reset();
    }
    return ppd;
}

} // namespace

PPD openPPD(const std::string &path, std::string *whyNot)
{
    // Without O_NONBLOCK the open itself would wait for a FIFO's writer.
    const Platform::Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (file.number() < 0 || fstat(file.number(), &status) != 0) {
        *whyNot = std::strerror(errno);
        return nullptr;
    }
    *whyNot = whyNotReadable(status);
    return whyNot->empty() ? readPPD(file, status.st_size, whyNot) : nullptr;
}
