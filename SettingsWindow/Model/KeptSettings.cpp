#include "KeptSettings.h"

#include "commandLine.h"
#include "keptLines.h"
#include "sentences.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace Model {
namespace {

constexpr std::size_t kLongestName = 127; // IPP's

/// Of the system's records of a user and of a group.
constexpr std::size_t kLongestEntry = 65536;

std::string homeFolder()
{
    if (const char *home = std::getenv("HOME"); home != nullptr && home[0] != '\0')
        return home;
    passwd entry = {};
    passwd *user = nullptr;
    char texts[kLongestEntry];
    const int error = getpwuid_r(getuid(), &entry, texts, sizeof texts, &user);
    return error == 0 && user != nullptr ? user->pw_dir : "";
}

std::string userFile()
{
    const std::string home = homeFolder();
    return home.empty() ? home : home + "/.cups/lpoptions";
}

Words wordsOf(std::string_view sentence, const std::string &path, int error)
{
    return {sentence, {asTheyAre(path), asTheyAre(std::strerror(error))}};
}

std::string nameOfGroup(gid_t id)
{
    group entry = {};
    group *found = nullptr;
    char texts[kLongestEntry];
    const int error = getgrgid_r(id, &entry, texts, sizeof texts, &found);
    return error == 0 && found != nullptr ? found->gr_name : std::to_string(id);
}

/// Whether everybody gets through all folders above the file.
bool isWithinReach(const fs::path &path)
{
    for (fs::path folder = path.parent_path();; folder = folder.parent_path()) {
        struct stat status = {};
        if (stat(folder.c_str(), &status) == 0 && (status.st_mode & S_IXOTH) == 0)
            return false;
        if (folder == folder.parent_path())
            return true;
    }
}

/// The lines of the file; none when it is not there.
std::optional<KeptLines> readLines(const std::string &path, std::optional<Words> *whyNot)
{
    whyNot->reset();
    if (path.empty()) {
        *whyNot = Words{kNoHome};
        return std::nullopt;
    }
    int error = 0;
    auto lines = KeptLines::read(path, &error);
    if (!lines)
        *whyNot = wordsOf(kCannotRead, path, error);
    return lines;
}

std::optional<Words> writeLines(const KeptLines &lines, const std::string &path)
{
    if (lines.hasTooLong())
        return Words{kTooMuchToKeep};
    const int error = lines.write(path);
    return error != 0 ? std::optional(wordsOf(kCannotWrite, path, error)) : std::nullopt;
}

} // namespace

KeptSettings::KeptSettings() : KeptSettings(userFile()) {}

KeptSettings KeptSettings::ofEverybody()
{
    const char *const folder = std::getenv("CUPS_SERVERROOT");
    return KeptSettings(std::string(folder != nullptr ? folder : KL_CUPS_SERVERROOT) +
                        "/lpoptions");
}

Words KeptSettings::whoCanRead() const
{
    struct stat status = {};
    const Words path = asTheyAre(_path);
    if (stat(_path.c_str(), &status) != 0 || !isWithinReach(fs::absolute(_path)))
        return {kReadByOwner, {path}};
    if ((status.st_mode & S_IROTH) != 0)
        return {kReadByAll, {path}};
    if ((status.st_mode & S_IRGRP) != 0)
        return {kReadByGroup, {path, asTheyAre(nameOfGroup(status.st_gid))}};
    return {kReadByOwner, {path}};
}

std::vector<KeptSet> KeptSettings::setsOf(const std::string &queue,
                                          std::optional<Words> *whyNot) const
{
    const auto lines = readLines(_path, whyNot);
    std::vector<KeptSet> sets;
    for (const std::string &set : lines ? lines->setsOf(queue) : std::vector<std::string>())
        sets.push_back({set, lines->optionsOf(queue, set)});
    return sets;
}

JobOptions KeptSettings::defaultsOf(const std::string &queue) const
{
    std::optional<Words> whyNot;
    const auto lines = readLines(_path, &whyNot);
    return lines ? lines->optionsOf(queue, {}) : JobOptions();
}

std::optional<Words> KeptSettings::keep(const std::string &queue, const KeptSet &set) const
{
    if (auto objection = set.name.empty() ? std::nullopt : objectionToName(set.name))
        return objection;
    std::optional<Words> whyNot;
    auto lines = readLines(_path, &whyNot);
    if (!lines)
        return whyNot;
    JobOptions options = set.options;
    std::erase_if(options, [](const auto &option) { return option.second.empty(); });
    if (options.empty() && set.name.empty())
        lines->remove(queue, set.name);
    else
        lines->keep(queue, set.name, options);
    return writeLines(*lines, _path);
}

std::optional<Words> KeptSettings::remove(const std::string &queue, const std::string &set) const
{
    std::optional<Words> whyNot;
    auto lines = readLines(_path, &whyNot);
    if (!lines)
        return whyNot;
    if (!lines->has(queue, set))
        return std::nullopt;
    lines->remove(queue, set);
    return writeLines(*lines, _path);
}

std::optional<Words> KeptSettings::rename(const std::string &queue, const std::string &set,
                                          const std::string &newName) const
{
    if (auto objection = objectionToName(newName))
        return objection;
    std::optional<Words> whyNot;
    auto lines = readLines(_path, &whyNot);
    if (!lines)
        return whyNot;
    if (!lines->has(queue, set))
        return Words{kNoSuchSet, {asTheyAre(set)}};
    if (lines->has(queue, newName))
        return Words{kSetIsThere, {asTheyAre(newName)}};
    lines->rename(queue, set, newName);
    return writeLines(*lines, _path);
}

std::optional<Words> KeptSettings::objectionToName(const std::string &set)
{
    if (set.empty())
        return Words{kNoName};
    if (set.size() > kLongestName)
        return Words{kNameTooLong};
    const bool isUsable = std::ranges::none_of(set, [](unsigned char byte) {
        return byte <= ' ' || byte == 127 || std::strchr("/#\\\"'=", byte) != nullptr;
    });
    return isUsable ? std::nullopt : std::optional(Words{kNameHas});
}

JobOptions laidOver(JobOptions below, const JobOptions &above)
{
    for (const auto &option : above) {
        std::erase_if(below, [&](const auto &one) { return one.first == option.first; });
        below.push_back(option);
    }
    return below;
}

JobOptions optionsAddedByClients(const std::string &queue, const KeptSettings &users)
{
    return laidOver(KeptSettings::ofEverybody().defaultsOf(queue), users.defaultsOf(queue));
}

} // namespace Model
