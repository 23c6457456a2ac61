#include "FileURL.h"

#include <uriparser/Uri.h>

namespace Platform {
namespace {

/// The parts of a URI; they refer to the parsed text.
class ParsedURI {
public:
    explicit ParsedURI(std::string_view text)
        : _valid(uriParseSingleUriExA(&_uri, text.data(), text.data() + text.size(), nullptr) ==
                 URI_SUCCESS)
    {
    }
    ~ParsedURI()
    {
        if (_valid)
            uriFreeUriMembersA(&_uri);
    }
    ParsedURI(const ParsedURI &) = delete;
    ParsedURI &operator=(const ParsedURI &) = delete;

    /// Brings scheme and host into the one spelling that compares.
    /// @return false when the text is no URI at all
    bool normalize()
    {
        constexpr unsigned kParts = URI_NORMALIZE_SCHEME | URI_NORMALIZE_HOST;
        return _valid && uriNormalizeSyntaxExA(&_uri, kParts) == URI_SUCCESS;
    }
    const UriUriA &operator*() const { return _uri; }

private:
    UriUriA _uri = {};
    bool _valid;
};

std::string_view textOf(const UriTextRangeA &range)
{
    if (range.first == nullptr)
        return {};
    return {range.first, range.afterLast};
}

bool isOnThisHost(const UriUriA &uri)
{
    const std::string_view host = textOf(uri.hostText);
    return (host.empty() || host == "localhost") && uri.userInfo.first == nullptr &&
           uri.portText.first == nullptr;
}

std::string decoded(std::string_view segment)
{
    std::string text(segment);
    const char *end = uriUnescapeInPlaceExA(text.data(), URI_FALSE, URI_BR_DONT_TOUCH);
    text.resize(static_cast<std::size_t>(end - text.data()));
    return text;
}

/// Empty when the URI has no absolute path.
std::string pathOf(const UriUriA &uri)
{
    // Behind an authority a path is absolute without the flag's saying so.
    if (uri.hostText.first == nullptr && uri.absolutePath == URI_FALSE)
        return {};
    if (uri.absolutePath != URI_FALSE && uri.pathHead == nullptr)
        return "/"; // "file:/", the one path whose only segment is left out
    std::string path;
    for (const auto *segment = uri.pathHead; segment != nullptr; segment = segment->next)
        path += "/" + decoded(textOf(segment->text));
    return path;
}

} // namespace

std::optional<FileURL> FileURL::withString(std::string_view text)
{
    ParsedURI uri(text);
    if (!uri.normalize() || textOf((*uri).scheme) != "file" || !isOnThisHost(*uri))
        return std::nullopt;
    return withPath(pathOf(*uri));
}

std::optional<FileURL> FileURL::withPath(std::string path)
{
    if (!path.starts_with('/') || path.find('\0') != std::string::npos)
        return std::nullopt;
    return FileURL(std::move(path));
}

std::string FileURL::text() const
{
    // Three letters for each byte, and "file://" and a NUL, is what uriparser asks for.
    std::string text(3 * _path.size() + sizeof "file://", '\0');
    uriUnixFilenameToUriStringA(_path.c_str(), text.data());
    text.resize(text.find('\0'));
    return text;
}

} // namespace Platform
