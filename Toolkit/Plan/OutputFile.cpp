#include "OutputFile.h"

#include "Cancellation.h"
#include "ToolkitError.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

/// @param place  where the path goes that this one leads to; allocates nothing when it has room
void resolve(const std::string &path, std::string &place)
{
    std::array<char, PATH_MAX> real;
    place = realpath(path.c_str(), real.data()) != nullptr ? real.data() : path.c_str();
}

struct stat statusOf(int descriptor)
{
    struct stat status = {};
    if (fstat(descriptor, &status) != 0)
        throw unwritableOutput(errno);
    return status;
}

bool isSameFile(const struct stat &one, const struct stat &other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

/// @throws ToolkitError when the file is no regular one, or is the input
void requireFit(int file, std::FILE *input)
{
    const struct stat status = statusOf(file);
    if (!S_ISREG(status.st_mode))
        throw ToolkitError("The output is no regular file.");
    if (input != nullptr && isSameFile(status, statusOf(fileno(input))))
        throw ToolkitError("The input and the output are the same file.");
}

} // namespace

OutputFile::OutputFile(const std::string &path, std::FILE *input)
{
    _path.reserve(PATH_MAX); // from the open on, memory that runs out must leave no file
    const Platform::CancellationDelay delay;
    // Without O_NONBLOCK the open itself would wait for a FIFO's reader.
    Platform::Descriptor file(
        open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0666));
    if (file.number() < 0)
        throw unwritableOutput(errno);
    requireFit(file.number(), input);
    resolve(path, _path);
    if (!Platform::removeWhenCancelled(_path)) {
        unlink(_path.c_str());
        throw ToolkitError("The name of the output file is too long.");
    }
    Platform::setUnfinished(_path, true);
    openStream(std::move(file));
}

void OutputFile::openStream(Platform::Descriptor file)
{
    if (Platform::makeEmpty(file.number()))
        _stream.reset(fdopen(file.number(), "wb"));
    const int problem = errno;
    if (!_stream) {
        remove();
        throw unwritableOutput(problem);
    }
    file.release(); // the stream's from now on
}

OutputFile::~OutputFile()
{
    if (!_committed)
        remove();
}

void OutputFile::remove()
{
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
