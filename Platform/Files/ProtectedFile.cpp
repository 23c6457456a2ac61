#include "ProtectedFile.h"

#include "Descriptor.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace Platform {
namespace {

constexpr std::size_t kMostBytes = 65536;

[[noreturn]] void fail(const std::string &path, const std::string &reason)
{
    throw ProtectedFileError(path + ": " + reason);
}

void requireProtection(int file, const std::string &path, Readers most)
{
    struct stat status = {};
    if (fstat(file, &status) != 0)
        fail(path, std::strerror(errno));
    if (!S_ISREG(status.st_mode))
        fail(path, "not a regular file");
    if (status.st_uid != 0)
        fail(path, "does not belong to root");
    if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0)
        fail(path, "others than root may write it");
    if (most == Readers::ItsGroup && (status.st_mode & S_IRWXO) != 0)
        fail(path, "everybody may read it");
}

std::string readAll(int file, const std::string &path)
{
    std::string text;
    std::array<char, 4096> block = {};
    for (;;) {
        const ssize_t length = read(file, block.data(), block.size());
        if (length == 0)
            return text;
        if (length < 0 && errno == EINTR)
            continue;
        if (length < 0)
            fail(path, std::strerror(errno));
        text.append(block.data(), static_cast<std::size_t>(length));
        if (text.size() > kMostBytes)
            fail(path, "too long");
    }
}

} // namespace

std::optional<std::string> readProtectedFile(const std::string &path, Readers most)
{
    // Not to wait for the writer of a FIFO before it can be seen that it is one.
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (file.number() < 0 && errno == ENOENT)
        return std::nullopt;
    if (file.number() < 0)
        fail(path, std::strerror(errno));
    requireProtection(file.number(), path, most);
    return readAll(file.number(), path);
}

} // namespace Platform
