#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Platform {

/// A login name that says in which domain it holds.
struct QualifiedName {
    std::string domain; ///< as it was written: a DNS name, or the short one of Windows' networks
    std::string name;

    bool operator==(const QualifiedName &) const = default;
};

/// Takes "CORP\anna" apart, at the first separator.
/// @return nullopt when it has not something on both sides
std::optional<QualifiedName> nameBehindItsDomain(std::string_view login, char separator = '\\');

/// Takes "CORP\anna" apart, else "anna@corp.example.com", at the last @.
///
/// A login name may hold both signs without meaning a domain, which nobody can tell by its looks.
/// @return nullopt when neither sign has something on both sides
std::optional<QualifiedName> qualifiedName(std::string_view login);

} // namespace Platform
