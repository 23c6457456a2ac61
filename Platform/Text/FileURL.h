#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace Platform {

/// The URL of a local file (RFC 8089), kept as the absolute path that it names. Whether the file
/// exists is not looked at. A value: copies are independent.
class FileURL {
public:
    /// Reads a URL by the rules of RFC 3986.
    ///
    /// A usable one is "file:" in any letter case, with an absolute path and with no host, an
    /// empty one or "localhost". Percent escapes are decoded, also those of "/" and of bytes that
    /// are no UTF-8. A query and a fragment are no part of the file's name and are ignored.
    /// @return nullopt for everything else: an empty text, a plain path, another scheme or host, a
    ///         user or port, a character that a URL writes as an escape (a blank, a non-ASCII
    ///         letter), a broken escape, an escaped NUL.
    static std::optional<FileURL> withString(std::string_view text);

    /// The URL of the file at an absolute path, every byte of which is taken as it stands.
    /// @return nullopt when the path does not begin with "/" or holds a NUL byte.
    static std::optional<FileURL> withPath(std::string path);

    /// Begins with "/", holds no NUL byte; of any length.
    const std::string &path() const { return _path; }

    /// The URL itself ("file:///a%20b"): withString() makes the same path of it.
    std::string text() const;

private:
    explicit FileURL(std::string path) : _path(std::move(path)) {}

    std::string _path;
};

} // namespace Platform
