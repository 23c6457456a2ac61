#pragma once

#include <string>

namespace Platform {

/// How to sign in to LDAP servers. Holds no password.
struct LDAPSignIn {
    enum class Method : char {
        Anonymous, ///< not at all
        GSSAPI,    ///< with Kerberos, signed and sealed by it
        Simple,    ///< with a password, inside TLS
    };
    Method method = Method::Anonymous;
    std::string bindDN = {};       ///< of Simple: the entry whose password it is
    std::string passwordFile = {}; ///< of Simple: an absolute path
    /// Of GSSAPI: the keys to sign in with, an absolute path. Empty for those that Kerberos' own
    /// settings name, or gssproxy(8) has.
    std::string keytab = {};
    /// "ldap:" connections are made safe by StartTLS before anything is asked.
    bool startTLS = false;

    bool operator==(const LDAPSignIn &) const = default;
};

/// The password in that file, without the line's end behind it.
/// @throws ProtectedFileError for a file that is not there, that others than root and the file's
///         group may read or others than root write, and for an empty password
std::string readPassword(const std::string &path);

} // namespace Platform
