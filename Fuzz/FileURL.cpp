// A file URL, against a reading of RFC 3986's grammar that is as plain as it is slow.

#include "FileURL.h"

#include "Fuzzing.h"

#include <cctype>
#include <optional>

namespace {

bool isHexDigit(char c)
{
    return std::isxdigit(static_cast<unsigned char>(c)) != 0;
}

/// Takes an ASCII text off the front, in any letter case. @return whether it was there
bool take(std::string_view &text, std::string_view lowerCase)
{
    for (std::size_t i = 0; i < lowerCase.size(); ++i) {
        if (i == text.size() || std::tolower(static_cast<unsigned char>(text[i])) != lowerCase[i])
            return false;
    }
    text.remove_prefix(lowerCase.size());
    return true;
}

/// @return nullopt for what no part of a URL may hold behind its host
std::optional<std::string> decoded(std::string_view text, std::string_view further)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool isEscape =
            c == '%' && i + 2 < text.size() && isHexDigit(text[i + 1]) && isHexDigit(text[i + 2]);
        const bool isPlain = std::isalnum(static_cast<unsigned char>(c)) != 0 ||
                             std::string_view("-._~!$&'()*+,;=:@/").find(c) != std::string::npos ||
                             further.find(c) != std::string::npos;
        if (isEscape)
            result += static_cast<char>(std::stoi(std::string(text.substr(i + 1, 2)), nullptr, 16));
        else if (isPlain)
            result += c;
        else
            return std::nullopt;
        i += isEscape ? 2 : 0;
    }
    return result;
}

/// The path that a URL names; nullopt when it is no file URL of this host.
std::optional<std::string> modelOfPath(std::string_view url)
{
    const auto fragment = url.substr(std::min(url.find('#'), url.size()));
    url.remove_suffix(fragment.size());
    const auto query = url.substr(std::min(url.find('?'), url.size()));
    url.remove_suffix(query.size());
    if (!decoded(fragment.substr(fragment.empty() ? 0 : 1), "?") || !decoded(query, "?"))
        return std::nullopt;
    if (!take(url, "file:"))
        return std::nullopt;
    if (take(url, "//"))
        take(url, "localhost");
    if (!url.starts_with('/'))
        return std::nullopt;
    auto path = decoded(url, "");
    if (path && path->find('\0') != std::string::npos)
        return std::nullopt;
    return path;
}

std::string urlOfPath(std::string_view path)
{
    static constexpr char kDigits[] = "0123456789aBcDeF";
    std::string url = "file://";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '/' || std::isalnum(byte) != 0)
            url += c;
        else
            url.append({'%', kDigits[byte >> 4U], kDigits[byte & 15U]});
    }
    return url;
}

} // namespace

void Fuzz::tryInput(std::string_view input)
{
    const auto url = Platform::FileURL::withString(input);
    const auto expected = modelOfPath(input);
    require(url.has_value() == expected.has_value(), "a URL is usable when the grammar says so");
    if (url)
        requireEqual(*expected, url->path(), "the path is what the URL spells");

    const auto fromPath = Platform::FileURL::withPath(std::string(input));
    const bool isPath = input.starts_with('/') && input.find('\0') == std::string_view::npos;
    require(fromPath.has_value() == isPath, "an absolute path without NUL makes a URL");
    if (isPath)
        requireEqual(input, Platform::FileURL::withString(urlOfPath(input)).value().path(),
                     "every path comes back out of its URL");
}
