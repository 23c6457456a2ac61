#include "Fuzzing.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fmt/format.h>
#include <sys/mman.h>
#include <system_error>
#include <unistd.h>

namespace Fuzz {
namespace {

/// Where findings are reported: standard error as it was at the start. The log lines of what is
/// fuzzed go to a standard error that Fuzz/run has the fuzzer close.
const int reportDescriptor = dup(STDERR_FILENO);

[[noreturn]] void report(const std::string &text)
{
    [[maybe_unused]] const auto written = write(reportDescriptor, text.data(), text.size());
    std::abort();
}

[[noreturn]] void throwErrno(const char *what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

} // namespace

void require(bool holds, std::string_view invariant)
{
    if (!holds)
        report(fmt::format("BROKEN: {}\n", invariant));
}

void requireEqual(std::string_view expected, std::string_view actual, std::string_view invariant)
{
    if (expected != actual)
        report(fmt::format("BROKEN: {}\nexpected ({} bytes): {}\nactual   ({} bytes): {}\n",
                           invariant, expected.size(), expected, actual.size(), actual));
}

std::string_view takeLine(std::string_view &input)
{
    const std::string_view line = input.substr(0, input.find('\n'));
    input.remove_prefix(std::min(line.size() + 1, input.size()));
    return line;
}

std::string_view takeField(std::string_view &line)
{
    const std::string_view field = line.substr(0, line.find('\t'));
    line.remove_prefix(std::min(field.size() + 1, line.size()));
    return field;
}

MemoryFile::MemoryFile() : _descriptor(memfd_create("fuzz", MFD_CLOEXEC))
{
    if (_descriptor.number() < 0)
        throwErrno("memfd_create");
}

void MemoryFile::assign(std::string_view bytes)
{
    if (ftruncate(_descriptor.number(), 0) != 0)
        throwErrno("ftruncate");
    for (std::size_t at = 0; at < bytes.size();) {
        const ssize_t length = pwrite(_descriptor.number(), bytes.data() + at, bytes.size() - at,
                                      static_cast<off_t>(at));
        if (length < 0)
            throwErrno("pwrite");
        at += static_cast<std::size_t>(length);
    }
}

std::string MemoryFile::bytes() const
{
    std::string bytes(static_cast<std::size_t>(lseek(_descriptor.number(), 0, SEEK_END)), '\0');
    const ssize_t length = pread(_descriptor.number(), bytes.data(), bytes.size(), 0);
    if (length != static_cast<ssize_t>(bytes.size()))
        throwErrno("pread");
    return bytes;
}

std::string MemoryFile::path() const
{
    return fmt::format("/proc/{}/fd/{}", getpid(), _descriptor.number());
}

} // namespace Fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Fuzz::tryInput({reinterpret_cast<const char *>(data), size});
    return 0;
}
