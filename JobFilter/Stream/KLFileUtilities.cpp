#include "KLFileUtilities.h"

#include "Cancellation.h"
#include "Descriptor.h"
#include "MadeFiles.h"
#include "ObjectFormat.h"
#include "TemporaryDirectory.h"

#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace MadeFiles = Platform::MadeFiles;

namespace {

constexpr char kPrefix[] = "jobfilter";
constexpr std::size_t kPathBufferSize = 1024; // terminating zero included

std::string pathInTemporaryDirectory(std::string_view name)
{
    std::string path = Platform::temporaryDirectory();
    if (!path.ends_with('/'))
        path += '/';
    return path.append(name);
}

/// Makes the file and puts it on the list of those that the run has made.
/// @param file  where its descriptor goes, for reading and writing
std::optional<std::string> makeFile(std::string_view prefix, Platform::Descriptor &file)
{
    std::string path = pathInTemporaryDirectory(Platform::objectFormat("%@-XXXXXX", prefix));
    if (path.size() >= kPathBufferSize)
        return std::nullopt;

    const Platform::CancellationDelay delay;
    file = Platform::Descriptor(mkostemp(path.data(), O_CLOEXEC));
    if (file.number() < 0)
        return std::nullopt;
    MadeFiles::add(path);
    return path;
}

} // namespace

std::optional<std::string>
KLFileUtilities::generateTemporaryFilenameWithPrefix(std::string_view prefix)
{
    Platform::Descriptor closedAgain;
    return makeFile(prefix, closedAgain);
}

std::optional<std::string> KLFileUtilities::generateTemporaryFilename()
{
    return generateTemporaryFilenameWithPrefix(kPrefix);
}

std::optional<KLFileUtilities::TemporaryFile> KLFileUtilities::makeTemporaryFile()
{
    Platform::Descriptor file;
    auto path = makeFile(kPrefix, file);
    if (!path)
        return std::nullopt;
    if (MadeFiles::hold(*path, file.duplicate())) {
        if (auto stream = Platform::streamOf(std::move(file), "wb"))
            return TemporaryFile{std::move(*path), std::move(stream)};
    }
    removeFile(*path);
    return std::nullopt;
}

void KLFileUtilities::takeBack(const std::string &path)
{
    MadeFiles::takeBack(path);
}

bool KLFileUtilities::isReplaced(const std::string &path)
{
    return MadeFiles::isReplaced(path);
}

Platform::Stream KLFileUtilities::openForReading(const std::string &path)
{
    return MadeFiles::isListed(path) ? MadeFiles::openForReading(path)
                                     : Platform::openForReading(path);
}

void KLFileUtilities::removeFile(const std::string &path)
{
    if (MadeFiles::isListed(path))
        MadeFiles::remove(path);
    else
        unlink(path.c_str());
}

void KLFileUtilities::keepFile(const std::string &path)
{
    MadeFiles::forget(path);
}
