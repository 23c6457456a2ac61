#include "keptLines.h"

#include "Descriptor.h"
#include "Streams.h"
#include "commandLine.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace Model {
namespace {

/// libcups has room for so many bytes of a line.
constexpr std::size_t kLongestLine = 8190;

/// What is larger was not written by a print dialog.
constexpr std::size_t kLargestFile = std::size_t{4} << 20;

constexpr std::string_view kBlanks = " \t\r\v\f";

bool isSame(std::string_view left, std::string_view right)
{
    return left.size() == right.size() &&
           (left.empty() || strncasecmp(left.data(), right.data(), left.size()) == 0);
}

/// The first word of a line, which is shortened by it.
std::string_view takeWord(std::string_view &line)
{
    line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
    const std::string_view word = line.substr(0, line.find_first_of(kBlanks));
    line.remove_prefix(word.size());
    return word;
}

/// What a line says.
struct Entry {
    std::string_view word; ///< "Dest" or "Default"
    std::string_view queue;
    std::string_view set;
    std::string_view options; ///< as they stand there
};

/// What counts of a line: of "#" the first one alone is looked at, and one behind "\" is a letter.
std::string withoutComment(std::string_view line)
{
    std::string text(line);
    const std::size_t sign = text.find('#');
    if (sign == std::string::npos)
        return text;
    if (sign > 0 && text[sign - 1] == '\\')
        return text.erase(sign - 1, 1);
    return text.substr(0, sign);
}

/// @return nullopt for a line that says something else, or nothing
std::optional<Entry> entryOf(std::string_view line)
{
    Entry entry = {};
    entry.word = takeWord(line);
    if (!isSame(entry.word, "Dest") && !isSame(entry.word, "Default"))
        return std::nullopt;
    const std::string_view name = takeWord(line);
    const std::size_t slash = name.find('/');
    entry.queue = name.substr(0, slash);
    if (slash != std::string_view::npos)
        entry.set = name.substr(slash + 1);
    entry.options = line;
    return entry.queue.empty() ? std::nullopt : std::optional(entry);
}

bool isOf(std::string_view line, std::string_view queue, std::string_view set)
{
    const auto entry = entryOf(line);
    return entry && isSame(entry->queue, queue) && isSame(entry->set, set);
}

/// The options of a line that has an entry, with a comment behind them.
std::string textBehindName(std::string_view line)
{
    const std::string_view options = entryOf(line)->options;
    return std::string(options.substr(std::min<std::size_t>(1, options.size())));
}

/// A line in which the first "#" is not read as a comment's.
std::string withSignKept(std::string line)
{
    const std::size_t sign = line.find('#');
    return sign == std::string::npos ? line : line.insert(sign, 1, '\\');
}

std::string lineFor(std::string_view word, std::string_view queue, std::string_view set,
                    std::string_view options)
{
    std::string line = std::string(word).append(" ").append(queue);
    if (!set.empty())
        line.append("/").append(set);
    if (!options.empty())
        line.append(" ").append(options);
    return line;
}

/// The file itself, where a link leads to it; the path where nothing is there.
std::string behindLinks(const std::string &path)
{
    std::error_code error;
    const fs::path whole = fs::weakly_canonical(path, error);
    return error ? path : whole.string();
}

bool writeAll(FILE *file, const std::string &bytes)
{
    return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() &&
           std::fflush(file) == 0 && fsync(fileno(file)) == 0;
}

/// Gives a file that is to stand in another's place its owner and mode.
void takeAfter(int descriptor, const std::string &path)
{
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0)
        return;
    if (fchown(descriptor, status.st_uid, status.st_gid) == 0)
        fchmod(descriptor, status.st_mode & 07777);
}

/// @return the system's error; 0 when all is well
int replaceFile(const std::string &path, const std::string &bytes)
{
    std::string newPath = path + "-XXXXXX";
    Platform::Descriptor descriptor(mkstemp(newPath.data()));
    if (descriptor.number() < 0)
        return errno;
    takeAfter(descriptor.number(), path);
    Platform::Stream file = Platform::streamOf(std::move(descriptor), "w");
    if (file && writeAll(file.get(), bytes) && rename(newPath.c_str(), path.c_str()) == 0)
        return 0;
    const int error = errno;
    unlink(newPath.c_str());
    return error;
}

} // namespace

std::optional<KeptLines> KeptLines::read(const std::string &path, int *error)
{
    *error = 0;
    const Platform::Stream file = Platform::openForReading(path);
    if (!file && (errno == ENOENT || errno == ENOTDIR))
        return KeptLines();
    if (!file) {
        *error = errno;
        return std::nullopt;
    }
    KeptLines lines;
    std::string line;
    std::size_t count = 0;
    for (int byte = 0; (byte = std::getc(file.get())) != EOF && count < kLargestFile; ++count) {
        if (byte == '\n')
            lines._lines.push_back({std::exchange(line, {})});
        else
            line += static_cast<char>(byte);
    }
    if (!line.empty())
        lines._lines.push_back({std::move(line)});
    if (std::ferror(file.get()) != 0 || count == kLargestFile) {
        *error = count == kLargestFile ? EFBIG : EIO;
        return std::nullopt;
    }
    return lines;
}

int KeptLines::write(const std::string &path) const
{
    const fs::path file = behindLinks(path);
    std::error_code error;
    if (!fs::exists(file.parent_path(), error) && mkdir(file.parent_path().c_str(), 0700) != 0)
        return errno;
    std::string bytes;
    for (const Line &line : _lines)
        bytes.append(line.bytes).append("\n");
    return replaceFile(file, bytes);
}

std::vector<std::string> KeptLines::setsOf(const std::string &queue) const
{
    std::vector<std::string> sets;
    for (const Line &line : _lines) {
        const auto entry = entryOf(line.bytes);
        if (!entry || !isSame(entry->queue, queue))
            continue;
        const auto isThere = [&entry](const std::string &set) { return isSame(set, entry->set); };
        if (std::ranges::none_of(sets, isThere))
            sets.emplace_back(entry->set);
    }
    std::stable_partition(sets.begin(), sets.end(),
                          [](const std::string &set) { return set.empty(); });
    return sets;
}

bool KeptLines::has(const std::string &queue, const std::string &set) const
{
    return std::ranges::any_of(_lines,
                               [&](const Line &line) { return isOf(line.bytes, queue, set); });
}

JobOptions KeptLines::optionsOf(const std::string &queue, const std::string &set) const
{
    std::string all;
    for (const Line &line : _lines) {
        if (!isOf(line.bytes, queue, set))
            continue;
        const std::string text = withoutComment(line.bytes);
        if (const auto entry = entryOf(text))
            all.append(entry->options).append(" ");
    }
    return parsedOptions(all);
}

/// Whether it is the one that is printed on when nobody says where.
bool KeptLines::isDefault(const std::string &queue, const std::string &set) const
{
    return std::ranges::any_of(_lines, [&](const Line &line) {
        return isOf(line.bytes, queue, set) && isSame(entryOf(line.bytes)->word, "Default");
    });
}

void KeptLines::keep(const std::string &queue, const std::string &set, const JobOptions &options)
{
    const auto isOfSet = [&](const Line &line) { return isOf(line.bytes, queue, set); };
    const auto place = std::ranges::find_if(_lines, isOfSet);
    const std::string_view word = isDefault(queue, set) ? "Default" : "Dest";
    const Line made = {withSignKept(lineFor(word, queue, set, optionString(options))), true};
    if (place == _lines.end()) {
        _lines.push_back(made);
        return;
    }
    *place = made;
    // Of several lines lp(1) reads the first alone.
    _lines.erase(std::remove_if(place + 1, _lines.end(), isOfSet), _lines.end());
}

void KeptLines::remove(const std::string &queue, const std::string &set)
{
    const bool wasDefault = isDefault(queue, set);
    std::erase_if(_lines, [&](const Line &line) { return isOf(line.bytes, queue, set); });
    if (!wasDefault)
        return;
    const auto unnamed =
        std::ranges::find_if(_lines, [&](const Line &line) { return isOf(line.bytes, queue, {}); });
    if (unnamed == _lines.end())
        _lines.push_back({lineFor("Default", queue, {}, {}), true});
    else
        *unnamed = {lineFor("Default", queue, {}, textBehindName(unnamed->bytes)), true};
}

void KeptLines::rename(const std::string &queue, const std::string &set, const std::string &newName)
{
    for (Line &line : _lines) {
        if (!isOf(line.bytes, queue, set))
            continue;
        const Entry entry = *entryOf(line.bytes);
        line = {lineFor(entry.word, entry.queue, newName, textBehindName(line.bytes)), true};
    }
}

bool KeptLines::hasTooLong() const
{
    return std::ranges::any_of(
        _lines, [](const Line &line) { return line.isMade && line.bytes.size() > kLongestLine; });
}

} // namespace Model
