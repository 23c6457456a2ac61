#pragma once

#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>
#include <sys/types.h>

namespace Support {

/// What a made-up stream does. Functions that are left empty: reading finds the end, writing takes
/// everything, closing does nothing.
struct StreamFunctions {
    /// Fills the buffer. @return how many bytes were put there, 0 at the end, -1 with errno set
    std::function<ssize_t(char *buffer, std::size_t size)> read = {};
    /// Takes the bytes. @return how many were taken, 0 with errno set on failure
    std::function<ssize_t(const char *bytes, std::size_t size)> write = {};
    std::function<void()> close = {};
};

/// A stdio stream, for reading and writing, made of functions. None of them may throw.
/// The caller closes it.
/// @throws std::system_error, as all here, when there is no memory for it
FILE *openStream(StreamFunctions functions);

/// A stream to read the bytes from. The caller closes it.
FILE *openInput(std::string bytes);

/// A stream that keeps in memory what is written to it.
class MemoryOutput {
public:
    MemoryOutput();
    ~MemoryOutput();
    MemoryOutput(const MemoryOutput &) = delete;
    MemoryOutput &operator=(const MemoryOutput &) = delete;

    /// Open for writing, as long as this object lives.
    FILE *stream() const { return _stream; }
    /// All bytes written up to now, those included that the stream holds back.
    std::string bytes() const;

private:
    char *_bytes = nullptr;
    std::size_t _size = 0;
    FILE *_stream;
};

} // namespace Support
