#include "TrustedProgram.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace Platform {
namespace {

namespace fs = std::filesystem;

/// The path that an open file or folder has now, for people.
fs::path pathOf(const Descriptor &file)
{
    std::error_code ignored;
    return fs::read_symlink("/proc/self/fd/" + std::to_string(file.number()), ignored);
}

[[noreturn]] void refuse(const fs::path &path, const std::string &objection)
{
    throw UntrustedProgramError(path.string() + objection);
}

std::string reason(int errorNumber)
{
    return std::string(": ") + std::strerror(errorNumber);
}

struct stat statusOf(const Descriptor &file)
{
    struct stat status = {};
    if (fstat(file.number(), &status) != 0)
        refuse(pathOf(file), reason(errno));
    return status;
}

/// Takes the first name off a path.
std::string takeName(std::string &path)
{
    const auto end = path.find('/');
    std::string name = path.substr(0, end);
    path.erase(0, end == std::string::npos ? end : end + 1);
    return name;
}

/// The way to a file, one trusted folder after the other.
class Walk {
public:
    /// @param path  absolute
    Walk(std::string path, uid_t runningUser) : _rest(std::move(path)), _runningUser(runningUser) {}

    /// @return what the path leads to
    Descriptor toItsEnd()
    {
        openRoot();
        while (!_rest.empty())
            step(takeName(_rest));
        return std::move(_here);
    }

private:
    void openRoot() { _here = openTrusted("/"); }

    void step(const std::string &name)
    {
        if (name.empty())
            return;
        Descriptor next = openTrusted(name);
        if (S_ISLNK(statusOf(next).st_mode))
            follow(next);
        else
            _here = std::move(next);
    }

    void follow(const Descriptor &link)
    {
        std::array<char, PATH_MAX> target;
        const ssize_t length = readlinkat(link.number(), "", target.data(), target.size());
        if (length < 0 || ++_links > kMostLinks)
            refuse(pathOf(link), reason(length < 0 ? errno : ELOOP));
        _rest = std::string(target.data(), static_cast<std::size_t>(length)) + "/" + _rest;
        if (_rest.starts_with('/'))
            openRoot();
    }

    Descriptor openTrusted(const std::string &name) const
    {
        Descriptor file(openat(_here.number(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
        if (file.number() < 0)
            refuse(pathOf(_here) / name, reason(errno));
        requireTrust(file);
        return file;
    }

    void requireTrust(const Descriptor &file) const
    {
        const struct stat status = statusOf(file);
        if (status.st_uid != 0 && status.st_uid != _runningUser)
            refuse(pathOf(file), " belongs to neither root nor the running user");
        const bool isStickyOfRoots =
            S_ISDIR(status.st_mode) && (status.st_mode & S_ISVTX) != 0 && status.st_uid == 0;
        if (S_ISLNK(status.st_mode) || isStickyOfRoots) // a link's own mode means nothing
            return;
        if ((status.st_mode & S_IWOTH) != 0)
            refuse(pathOf(file), " is writable by everyone");
        if ((status.st_mode & S_IWGRP) != 0)
            refuse(pathOf(file), " is writable by its group");
    }

    static constexpr int kMostLinks = 40; // as the kernel has it

    std::string _rest; ///< of the path, links that were followed put in
    uid_t _runningUser;
    Descriptor _here;
    int _links = 0;
};

} // namespace

TrustedProgram openTrustedProgram(const std::string &path, uid_t runningUser)
{
    std::error_code failure;
    const fs::path absolute = fs::absolute(path, failure);
    if (failure)
        refuse(path, ": " + failure.message());
    TrustedProgram program = {path, Walk(absolute, runningUser).toItsEnd()};
    if (!S_ISREG(statusOf(program.file).st_mode))
        refuse(pathOf(program.file), " is not a regular file");
    if (faccessat(program.file.number(), "", X_OK, AT_EMPTY_PATH) != 0)
        refuse(pathOf(program.file), " may not be executed");
    return program;
}

} // namespace Platform
