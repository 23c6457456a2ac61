#include "OutputFile.h"

#include "Cancellation.h"
#include "ToolkitError.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

std::string resolved(const std::string &path)
{
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                           &std::free);
    return real ? real.get() : path;
}

std::string cannotWrite(int reason)
{
    return "The output file cannot be written: " + std::generic_category().message(reason) + ".";
}

struct stat statusOf(int descriptor)
{
    struct stat status = {};
    if (fstat(descriptor, &status) != 0)
        throw ToolkitError(cannotWrite(errno));
    return status;
}

bool isSameFile(const struct stat &one, const struct stat &other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

} // namespace

OutputFile::OutputFile(const std::string &path, std::FILE *input)
{
    const Platform::CancellationDelay delay;
    // Without O_NONBLOCK the open itself would wait for a FIFO's reader.
    const int descriptor =
        open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0666);
    if (descriptor < 0)
        throw ToolkitError(cannotWrite(errno));
    _stream.reset(fdopen(descriptor, "wb"));
    if (!_stream) {
        const int problem = errno;
        close(descriptor);
        throw ToolkitError(cannotWrite(problem));
    }
    const struct stat status = statusOf(descriptor);
    if (!S_ISREG(status.st_mode))
        throw ToolkitError("The output is no regular file.");
    if (input != nullptr && isSameFile(status, statusOf(fileno(input))))
        throw ToolkitError("The input and the output are the same file.");
    _path = resolved(path);
    if (ftruncate(descriptor, 0) != 0)
        throw ToolkitError(cannotWrite(errno));
    if (!Platform::removeWhenCancelled(_path)) {
        unlink(_path.c_str());
        throw ToolkitError("The name of the output file is too long.");
    }
}

OutputFile::~OutputFile()
{
    if (_committed)
        return;
    const Platform::CancellationDelay delay;
    unlink(_path.c_str());
    Platform::keepWhenCancelled(_path);
}

void OutputFile::commit()
{
    if (!Platform::closeStream(std::move(_stream)))
        throw ToolkitError("The output file could not be written completely.");
    Platform::keepWhenCancelled(_path);
    _committed = true;
}
