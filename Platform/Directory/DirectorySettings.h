#pragma once

#include "LDAPSignIn.h"

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace Platform {

/// Whom the host can ask about its users.
enum class DirectorySource : char {
    SSSD,    ///< sssd(8), of which the host is a client
    Winbind, ///< winbindd(8), which made the host a member of its domain
    LDAP,    ///< the servers that ldap.conf(5) names
};

/// How the directory is asked.
struct DirectorySettings {
    /// In this order; none twice.
    std::vector<DirectorySource> sources = {DirectorySource::SSSD, DirectorySource::Winbind,
                                            DirectorySource::LDAP};
    LDAPSignIn signIn;

    bool operator==(const DirectorySettings &) const = default;
};

/// The settings cannot be used; what() says where and why.
class DirectorySettingsError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads the lines of a settings file: a keyword and its value, with blanks or tabs between and
/// around them; comments begin with "#". Letter case counts. A keyword stands there once at most.
///
/// | keyword            | value                                                    |
/// |--------------------|----------------------------------------------------------|
/// | `DirectorySources` | one or more of `sssd`, `winbind` and `ldap`              |
/// | `LDAPBind`         | `anonymous`, `gssapi` or `simple`                        |
/// | `LDAPBindDN`       | a distinguished name: the rest of the line               |
/// | `LDAPPasswordFile` | an absolute path: the rest of the line; for `simple`     |
/// | `LDAPKeytab`       | an absolute path: the rest of the line; for `gssapi`     |
/// | `LDAPStartTLS`     | `yes` or `no`                                            |
/// @throws DirectorySettingsError for anything else, for `simple` without name or password file,
///         and for `gssapi` with StartTLS
DirectorySettings parseDirectorySettings(std::string_view text);

/// The settings in a file that belongs to root and that only root may write; the settings of no
/// line when there is no such file.
///
/// A password file is looked at too, where it will be needed.
/// @throws DirectorySettingsError and ProtectedFileError
DirectorySettings readDirectorySettings(const std::string &path);

} // namespace Platform
