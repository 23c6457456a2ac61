#pragma once

#include <string>
#include <vector>

namespace Platform {

/// The URIs of the servers that the configuration names, in its order; empty when it names none.
///
/// A URI without a server but with a domain's distinguished name,
/// "ldap:///dc%3Dexample%2Cdc%3Dcom", stands for the servers that the domain's SRV records name
/// (RFC 2782), as for the library's own tools. One whose servers cannot be found is passed over
/// while there are others.
/// @throws LDAPFailure when the library cannot be set up, or no domain's servers can be found and
///         no others are named
std::vector<std::string> configuredServers();

} // namespace Platform
