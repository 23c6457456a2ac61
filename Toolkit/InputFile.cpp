#include "InputFile.h"

#include "ToolkitError.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char kUnreadable[] = "The input file cannot be read.";

} // namespace

InputFile::InputFile(std::FILE *stream) : _descriptor(fileno(stream))
{
    struct stat status = {};
    if (fstat(_descriptor, &status) != 0)
        throw ToolkitError(kUnreadable);
    _size = static_cast<std::uint64_t>(status.st_size);
}

std::size_t InputFile::read(std::uint64_t position, std::span<char> buffer) const
{
    std::size_t filled = 0;
    while (filled < buffer.size()) {
        const ssize_t count = pread(_descriptor, buffer.data() + filled, buffer.size() - filled,
                                    static_cast<off_t>(position + filled));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            throw ToolkitError(kUnreadable);
        if (count == 0)
            break;
        filled += static_cast<std::size_t>(count);
    }
    return filled;
}

std::string InputFile::text(std::uint64_t begin, std::uint64_t end) const
{
    std::string bytes(std::max(begin, end) - begin, '\0');
    bytes.resize(read(begin, bytes));
    return bytes;
}

FileWindow::FileWindow(const InputFile &file, std::uint64_t end)
    : _file(file), _end(std::min(end, file.size())), _buffer(std::min<std::uint64_t>(kSize, _end))
{
}

std::string_view FileWindow::from(std::uint64_t position, std::size_t atLeast)
{
    if (position >= _end)
        return {};
    const std::uint64_t wanted = std::min<std::uint64_t>(atLeast, _end - position);
    const bool held = position >= _begin && position + wanted <= _begin + _filled;
    if (!held) {
        const std::uint64_t size = std::min<std::uint64_t>(_buffer.size(), _end - position);
        _filled = _file.read(position, std::span(_buffer).first(size));
        _begin = position;
    }
    const std::size_t offset = position - _begin;
    return std::string_view(_buffer.data(), _filled).substr(offset);
}

std::optional<std::uint64_t> FileWindow::find(std::string_view text, std::uint64_t position)
{
    while (true) {
        const std::string_view bytes = from(position, text.size());
        if (bytes.size() < text.size())
            return std::nullopt;
        // Several times as fast as the string's own search.
        const void *found = memmem(bytes.data(), bytes.size(), text.data(), text.size());
        if (found != nullptr)
            return position +
                   static_cast<std::uint64_t>(static_cast<const char *>(found) - bytes.data());
        position += bytes.size() - text.size() + 1;
    }
}
