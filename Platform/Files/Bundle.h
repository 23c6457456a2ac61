#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace Platform {

/// A bundle: a directory that carries executables and resources under fixed places.
class Bundle {
public:
    /// @return nullopt unless `path` names a directory.
    static std::optional<Bundle> withPath(std::string path);

    /// Looks for a regular file (or a link to one) that this process may execute, in
    /// `Contents/Linux`, then `Contents/MacOS`, then at the bundle's root.
    /// @return the path of the first one found; nullopt when there is none.
    /// @param name  a plain file name; one that is empty or holds a slash finds nothing.
    std::optional<std::string> pathForAuxiliaryExecutable(std::string_view name) const;

private:
    explicit Bundle(std::string path) : _path(std::move(path)) {}

    std::string _path;
};

} // namespace Platform
