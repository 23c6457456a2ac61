#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace Platform {

/// A bundle: a directory that carries executables and resources under fixed places. A value: it is
/// a path, and the directory is looked at by each call anew.
class Bundle {
public:
    /// @param path  with or without a trailing slash; a relative one counts from the working
    ///              directory
    /// @return nullopt unless `path` names a directory. What is in it is not looked at.
    static std::optional<Bundle> withPath(std::string path);

    /// Looks for a regular file (or a link to one) that this process may execute (access(2)), in
    /// `Contents/Linux`, then `Contents/MacOS`, then at the bundle's root.
    /// @param name  a plain file name; one that is empty or holds a slash finds nothing.
    /// @return the path of the first one found, beginning with the bundle's; nullopt when there is
    ///         none.
    std::optional<std::string> pathForAuxiliaryExecutable(std::string_view name) const;

private:
    explicit Bundle(std::string path) : _path(std::move(path)) {}

    std::string _path;
};

} // namespace Platform
