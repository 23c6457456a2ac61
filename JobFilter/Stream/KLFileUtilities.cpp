#include "KLFileUtilities.h"

#include "Cancellation.h"
#include "ObjectFormat.h"
#include "TemporaryDirectory.h"

#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::size_t kPathBufferSize = 1024; // terminating zero included

std::string pathInTemporaryDirectory(std::string_view name)
{
    std::string path = Platform::temporaryDirectory();
    if (!path.ends_with('/'))
        path += '/';
    return path.append(name);
}

} // namespace

std::optional<std::string>
KLFileUtilities::generateTemporaryFilenameWithPrefix(std::string_view prefix)
{
    std::string path = pathInTemporaryDirectory(Platform::objectFormat("%@-XXXXXX", prefix));
    if (path.size() >= kPathBufferSize)
        return std::nullopt;

    const Platform::CancellationDelay delay;
    const int descriptor = mkostemp(path.data(), O_CLOEXEC);
    if (descriptor < 0)
        return std::nullopt;
    close(descriptor);
    Platform::removeWhenCancelled(path);
    return path;
}

std::optional<std::string> KLFileUtilities::generateTemporaryFilename()
{
    return generateTemporaryFilenameWithPrefix("jobfilter");
}

void KLFileUtilities::removeFile(const std::string &path)
{
    unlink(path.c_str());
    Platform::keepWhenCancelled(path);
}
