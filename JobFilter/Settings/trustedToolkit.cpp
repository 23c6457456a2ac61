#include "toolkitPath.h"

#include "Bundle.h"
#include "KLPrintOptions.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Objection = std::optional<std::string>;

/// The path of the auxiliary executable, whoever put it there.
std::optional<std::string> namedToolkit(const KLPrintOptions &options)
{
    const auto bundlePath = options.ppd().attribute("APDialogExtension");
    const auto bundle = bundlePath ? Platform::Bundle::withPath(*bundlePath) : std::nullopt;
    return bundle ? bundle->pathForAuxiliaryExecutable("toolkit") : std::nullopt;
}

Objection objectionToFile(const std::string &path, uid_t runningUser)
{
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0)
        return path + ": " + std::strerror(errno);
    if (!S_ISREG(status.st_mode))
        return path + " is not a regular file";
    if (access(path.c_str(), X_OK) != 0)
        return path + " may not be executed";
    if (status.st_uid != 0 && status.st_uid != runningUser)
        return path + " belongs to neither root nor the running user";
    if ((status.st_mode & S_IWOTH) != 0)
        return path + " is writable by everyone";
    return std::nullopt;
}

Objection objectionToFolderOf(const std::string &path)
{
    const std::string parent = std::filesystem::path(path).parent_path();
    const std::string folder = parent.empty() ? "." : parent;
    struct stat status = {};
    if (stat(folder.c_str(), &status) != 0)
        return folder + ": " + std::strerror(errno);
    if ((status.st_mode & S_IWOTH) != 0 && (status.st_mode & S_ISVTX) == 0)
        return folder + " is writable by everyone";
    return std::nullopt;
}

} // namespace

std::optional<std::string> toolkitPath(const KLPrintOptions &options,
                                       std::optional<std::string> *objection)
{
    auto path = namedToolkit(options);
    auto found = path ? objectionToProgram(*path, geteuid()) : std::nullopt;
    if (!found)
        return path;
    if (objection != nullptr)
        *objection = std::move(found);
    return std::nullopt;
}

std::optional<std::string> objectionToProgram(const std::string &path, uid_t runningUser)
{
    if (auto objection = objectionToFile(path, runningUser))
        return objection;
    if (auto objection = objectionToFolderOf(path))
        return objection;
    std::error_code failure;
    const std::string target = std::filesystem::canonical(path, failure);
    return failure ? path + ": " + failure.message() : objectionToFolderOf(target);
}
