#pragma once

#include "Streams.h"

#include <optional>
#include <string>
#include <string_view>

/// Makes temporary files, and reads and removes them. Class operations only; holds no state of its
/// own.
///
/// Which files are temporary ones of this run, Platform::MadeFiles knows, and also which file each
/// one is when somebody else has given its name to another: that one is neither read nor removed.
/// Any other file is known by its path alone, and so is the ninth temporary one at a time. A
/// cancelled run removes its temporary files.
class KLFileUtilities {
public:
    KLFileUtilities() = delete;

    /// A new temporary file.
    struct TemporaryFile {
        std::string path;
        Platform::Stream stream; ///< for writing
    };

    /// Makes a new, empty file, mode 0600, in the temporary directory: the prefix, a hyphen and
    /// six unique characters.
    ///
    /// The file is closed again and belongs to the caller, who removes it. Others may write it and
    /// put a new one in its place; takeBack() says that they have done.
    /// @return its path; nullopt, and no file, when it cannot be made or when the path needs more
    ///         than 1023 bytes.
    static std::optional<std::string> generateTemporaryFilenameWithPrefix(std::string_view prefix);

    /// The same with the prefix "jobfilter".
    static std::optional<std::string> generateTemporaryFilename();

    /// Makes the same file for this program alone: it stays open until it is removed, and what is
    /// read is what was written, whatever has its name.
    /// @return nullopt, and no file, as above
    static std::optional<TemporaryFile> makeTemporaryFile();

    /// What others have left under the name of a temporary file is the file from now on, if it is
    /// a regular file of the user as whom the process runs, and no link. Else it cannot be read.
    static void takeBack(const std::string &path);

    /// Whether another file has the name of a temporary one, so that its path must not be handed
    /// on. Whoever owns the folder can still replace it as soon as this has been asked.
    static bool isReplaced(const std::string &path);

    /// Opens a file for reading: a temporary one that was kept open or taken back, or any other
    /// file as Platform::openForReading() does.
    /// @return null on failure
    static Platform::Stream openForReading(const std::string &path);

    /// Removes a file: a temporary one only while its name leads to it, any other whatever it is.
    /// One that cannot be removed stays, and nobody is told.
    static void removeFile(const std::string &path);

    /// Leaves a temporary file to whoever wants it: it is a file like any other from now on.
    static void keepFile(const std::string &path);
};
