#include "Bundle.h"

#include <sys/stat.h>
#include <unistd.h>

namespace Platform {
namespace {

bool isExecutableFile(const std::string &path)
{
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

} // namespace

std::optional<Bundle> Bundle::withPath(std::string path)
{
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
        return std::nullopt;
    return Bundle(std::move(path));
}

std::optional<std::string> Bundle::pathForAuxiliaryExecutable(std::string_view name) const
{
    if (name.empty() || name.find('/') != std::string_view::npos)
        return std::nullopt;
    for (const char *folder : {"/Contents/Linux/", "/Contents/MacOS/", "/"}) {
        std::string path = _path + folder + std::string(name);
        if (isExecutableFile(path))
            return path;
    }
    return std::nullopt;
}

} // namespace Platform
