#include "OutputFile.h"

#include "Cancellation.h"
#include "MadeFiles.h"
#include "ToolkitError.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace MadeFiles = Platform::MadeFiles;

namespace {

/// @param reason  a value of errno
ToolkitError unopenableOutput(int reason)
{
    return reason == ELOOP ? ToolkitError("The output is a symbolic link.")
                           : unwritableOutput(reason);
}

struct stat statusOf(int descriptor)
{
    struct stat status = {};
    if (fstat(descriptor, &status) != 0)
        throw unwritableOutput(errno);
    return status;
}

/// @throws ToolkitError when the file is no regular one, or is the input
void requireFit(int file, std::FILE *input)
{
    const struct stat status = statusOf(file);
    if (!S_ISREG(status.st_mode))
        throw ToolkitError("The output is no regular file.");
    if (input != nullptr && Platform::isSameFile(status, statusOf(fileno(input))))
        throw ToolkitError("The input and the output are the same file.");
}

} // namespace

OutputFile::OutputFile(const std::string &path, std::FILE *input) : _path(path)
{
    const Platform::CancellationDelay delay;
    // Without O_NONBLOCK the open itself would wait for a FIFO's reader.
    Platform::Descriptor file(open(
        path.c_str(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0666));
    if (file.number() < 0)
        throw unopenableOutput(errno);
    requireFit(file.number(), input);
    putOnList(file);
    openStream(std::move(file));
}

void OutputFile::putOnList(const Platform::Descriptor &file)
{
    if (!MadeFiles::add(_path)) {
        unlink(_path.c_str());
        throw ToolkitError("The name of the output file is too long.");
    }
    MadeFiles::setUnfinished(_path, true);
    if (!MadeFiles::hold(_path, file.duplicate())) {
        const int problem = errno;
        remove();
        throw unwritableOutput(problem);
    }
}

void OutputFile::openStream(Platform::Descriptor file)
{
    if (Platform::makeEmpty(file.number()))
        _stream = Platform::streamOf(std::move(file), "wb");
    const int problem = errno;
    if (!_stream) {
        remove();
        throw unwritableOutput(problem);
    }
}

OutputFile::~OutputFile()
{
    if (!_committed)
        remove();
}

void OutputFile::remove()
{
    MadeFiles::remove(_path);
}

void OutputFile::commit()
{
    if (!Platform::closeStream(std::move(_stream)))
        throw ToolkitError("The output file could not be written completely.");
    MadeFiles::forget(_path);
    _committed = true;
}
