#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Makes temporary files. Class operations only; holds no state.
class KLFileUtilities {
public:
    KLFileUtilities() = delete;

    /// Makes a new, empty file, mode 0600, in the temporary directory: the prefix, a hyphen and
    /// six unique characters.
    ///
    /// The file is closed again and belongs to the caller, who removes it. A cancelled run removes
    /// it unless Platform::keepWhenCancelled() has been called for it, or eight files were on its
    /// list already (Cancellation.h).
    /// @return its path; nullopt, and no file, when it cannot be made or when the path needs more
    ///         than 1023 bytes.
    static std::optional<std::string> generateTemporaryFilenameWithPrefix(std::string_view prefix);

    /// The same with the prefix "jobfilter".
    static std::optional<std::string> generateTemporaryFilename();

    /// Removes a file, also from what a cancelled run would remove. A file that cannot be removed
    /// stays, and nobody is told.
    static void removeFile(const std::string &path);
};
