#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Platform {

/// The network domain's name in lower case.
/// @return nullopt for what cannot be one: each part has 1 to 63 bytes, letters of any script,
///         digits, hyphens and low lines, and the whole at most 253
std::optional<std::string> domainName(std::string_view text);

/// The domain that a directory entry's distinguished name (RFC 4514) lies in, made of the domain
/// components at its end: "CN=Anna,OU=Sales,DC=Corp,DC=Example" gives "corp.example".
///
/// Letter case and blanks around the parts make no difference.
/// @return nullopt when it ends in none, or in some that make no domain's name, and for what is no
///         distinguished name
std::optional<std::string> domainOfDistinguishedName(std::string_view name);

} // namespace Platform
