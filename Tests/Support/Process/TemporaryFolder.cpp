#include "TemporaryFolder.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <unistd.h>
#include <utility>

namespace fs = std::filesystem;

namespace Support {
namespace {

/// Begins the folders' names; the number of the process that made them and six characters follow.
constexpr std::string_view kPrefix = "jobfilter-tests-";

/// Removes the folders of test programs that were killed and could not do it themselves.
bool removeFoldersOfEndedProcesses()
{
    std::error_code ignored;
    for (const auto &entry : fs::directory_iterator(fs::temp_directory_path(), ignored)) {
        const std::string name = entry.path().filename();
        if (!name.starts_with(kPrefix))
            continue;
        const pid_t process = std::atoi(name.c_str() + kPrefix.size());
        if (process > 0 && kill(process, 0) != 0 && errno == ESRCH)
            fs::remove_all(entry.path(), ignored);
    }
    return true;
}

} // namespace

TemporaryFolder::TemporaryFolder()
{
    [[maybe_unused]] static const bool removed = removeFoldersOfEndedProcesses();
    std::string path = fs::temp_directory_path();
    path.append("/").append(kPrefix).append(std::to_string(getpid())).append("-XXXXXX");
    if (mkdtemp(path.data()) == nullptr)
        throw std::runtime_error("cannot make a folder " + path);
    _path = path;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    fs::remove_all(_path, ignored);
}

std::string TemporaryFolder::file(std::string_view name) const
{
    return _path + "/" + std::string(name);
}

std::string TemporaryFolder::write(std::string_view name, std::string_view bytes) const
{
    writeFile(file(name), bytes);
    return file(name);
}

std::string TemporaryFolder::writeScript(std::string_view name, std::string_view lines) const
{
    const std::string path = write(name, "#!/bin/sh\n" + std::string(lines));
    fs::permissions(path, fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                              fs::perms::others_read | fs::perms::others_exec);
    return path;
}

std::vector<std::string> TemporaryFolder::names() const
{
    std::vector<std::string> names;
    for (const auto &entry : fs::directory_iterator(_path))
        names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
}

std::string readFile(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    std::ostringstream bytes;
    bytes << file.rdbuf(); // in blocks: pages of pixels are read here
    return std::move(bytes).str();
}

std::string packagedFile(const std::string &path, const std::string &package)
{
    if (access(path.c_str(), R_OK) != 0)
        throw std::runtime_error("no " + path + ": the package " + package + " brings it");
    return path;
}

void writeFile(const std::string &path, std::string_view bytes)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush())
        throw std::runtime_error("cannot write " + path);
}

} // namespace Support
