#include "LoginName.h"

namespace Platform {
namespace {

/// Whether the text has something on both sides of that place.
bool isInside(std::string_view text, std::size_t at)
{
    return at != std::string_view::npos && at > 0 && at + 1 < text.size();
}

} // namespace

std::optional<QualifiedName> nameBehindItsDomain(std::string_view login, char separator)
{
    const auto at = login.find(separator);
    if (!isInside(login, at))
        return std::nullopt;
    return QualifiedName{std::string(login.substr(0, at)), std::string(login.substr(at + 1))};
}

std::optional<QualifiedName> qualifiedName(std::string_view login)
{
    if (auto user = nameBehindItsDomain(login))
        return user;
    const auto at = login.rfind('@');
    if (!isInside(login, at))
        return std::nullopt;
    return QualifiedName{std::string(login.substr(at + 1)), std::string(login.substr(0, at))};
}

} // namespace Platform
