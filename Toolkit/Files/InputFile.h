#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The bytes of a regular file, read by position: the stream itself stays where it stands.
class InputFile {
public:
    /// @param stream  of a regular file; stays the caller's, who keeps it open at least as long
    /// @throws ToolkitError when its size cannot be told
    explicit InputFile(std::FILE *stream);

    /// The bytes from begin up to end as a file of their own, from the same stream.
    /// @param begin  not above end
    /// @param end    not above the size
    InputFile part(std::uint64_t begin, std::uint64_t end) const;

    /// In bytes, as it was when this object was made.
    std::uint64_t size() const { return _size; }

    /// Fills the buffer from that position on.
    /// @return how many bytes there were; less than the buffer holds only at the end of the file
    /// @throws ToolkitError when reading fails
    std::size_t read(std::uint64_t position, std::span<char> buffer) const;

    /// The bytes from begin up to end, for small ranges: fewer at the end of the file, none when
    /// begin is not below end.
    /// @throws ToolkitError when reading fails
    std::string text(std::uint64_t begin, std::uint64_t end) const;

private:
    int _descriptor;
    std::uint64_t _begin = 0; ///< within what is open
    std::uint64_t _size;
};

/// A stretch of a file, held in memory to be looked at. It moves where it is asked to.
class FileWindow {
public:
    /// @param file     stays the caller's, who keeps it at least as long
    /// @param end      nothing from here on is seen
    /// @param watched  a word to look out for, of two bytes or more, the second one rare if it is
    ///                 to be fast; empty for none. Its bytes stay the caller's.
    FileWindow(const InputFile &file, std::uint64_t end, std::string_view watched = {});

    /// The bytes from a position on: as many as are held, at least so many if there are.
    /// @param atLeast  at most kSize
    /// @return valid until the next call; empty from the end on
    /// @throws ToolkitError when reading fails
    std::string_view from(std::uint64_t position, std::size_t atLeast);

    /// Whether from() would give these bytes without moving.
    bool holds(std::uint64_t position, std::size_t atLeast) const
    {
        const std::uint64_t there = position < _end ? _end - position : 0;
        return position >= _begin &&
               position + std::min<std::uint64_t>(atLeast, there) <= _begin + _filled;
    }
    /// Where the bytes begin that are held.
    std::uint64_t begin() const { return _begin; }
    /// The bytes that are held, from a position on.
    /// @return valid until the next call of from(); empty for a position that is not held
    std::string_view held(std::uint64_t position) const;

    /// Whether the watched word stands in anything that the window has moved over.
    bool hasSeenWatched() const { return _hasSeenWatched; }

    /// Bytes.
    static constexpr std::size_t kSize = 128 * 1024;

private:
    void moveTo(std::uint64_t position);

    const InputFile &_file;
    std::uint64_t _end;
    std::string_view _watched;
    bool _hasSeenWatched = false;
    std::vector<char> _buffer;
    std::uint64_t _begin = 0;
    std::size_t _filled = 0;
};
