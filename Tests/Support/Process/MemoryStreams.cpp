#include "MemoryStreams.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <system_error>
#include <utility>

namespace Support {
namespace {

ssize_t readCookie(void *cookie, char *buffer, std::size_t size)
{
    const auto &functions = *static_cast<StreamFunctions *>(cookie);
    return functions.read ? functions.read(buffer, size) : 0;
}

ssize_t writeCookie(void *cookie, const char *bytes, std::size_t size)
{
    const auto &functions = *static_cast<StreamFunctions *>(cookie);
    return functions.write ? functions.write(bytes, size) : static_cast<ssize_t>(size);
}

int closeCookie(void *cookie)
{
    const std::unique_ptr<StreamFunctions> functions(static_cast<StreamFunctions *>(cookie));
    if (functions->close)
        functions->close();
    return 0;
}

FILE *orThrow(FILE *stream)
{
    if (stream == nullptr)
        throw std::system_error(errno, std::generic_category(), "stream in memory");
    return stream;
}

} // namespace

FILE *openStream(StreamFunctions functions)
{
    auto cookie = std::make_unique<StreamFunctions>(std::move(functions));
    FILE *stream =
        orThrow(fopencookie(cookie.get(), "r+", {readCookie, writeCookie, nullptr, closeCookie}));
    static_cast<void>(cookie.release()); // closeCookie() has it now
    return stream;
}

FILE *openInput(std::string bytes)
{
    return openStream({.read = [bytes = std::move(bytes),
                                at = std::size_t(0)](char *buffer, std::size_t size) mutable {
        const std::size_t count = std::min(size, bytes.size() - at);
        std::memcpy(buffer, bytes.data() + at, count);
        at += count;
        return static_cast<ssize_t>(count);
    }});
}

MemoryOutput::MemoryOutput() : _stream(orThrow(open_memstream(&_bytes, &_size))) {}

MemoryOutput::~MemoryOutput()
{
    std::fclose(_stream);
    std::free(_bytes);
}

std::string MemoryOutput::bytes() const
{
    std::fflush(_stream);
    return {_bytes, _size};
}

} // namespace Support
