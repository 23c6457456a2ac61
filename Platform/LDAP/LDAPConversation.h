#pragma once

#include "LDAPFailure.h"
#include "LDAPSignIn.h"

#include <cstddef>
#include <functional>
#include <ldap.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Platform {

/// Makes the host's own ldap.conf(5), and the file that LDAPCONF names, all that configures the
/// client library: personal files and all other LDAP variables of the environment are left out.
/// To be called before the library's first use in this process, with a working directory that only
/// the administrator writes to. Changes the environment.
void useOnlyHostConfiguration();

/// A conversation with one LDAP server.
///
/// Waits as long as the server lets it: bounding that is the caller's part. No message of more
/// than 64 KiB is taken in. Referrals are not followed. TLS is used for "ldaps:" URIs, by the
/// configuration's rules. Every operation but configuredBase() throws
/// LDAPFailure. One thread.
class LDAPConversation {
public:
    /// Contacts nobody.
    /// @param uri  scheme, host and port; what follows is ignored
    /// @throws LDAPFailure also for what is no LDAP URL (RFC 4516)
    explicit LDAPConversation(const std::string &uri);

    /// Connects; for "ldaps:" this includes the handshake and the check of the certificate. Then
    /// signs in.
    /// @throws ProtectedFileError too, for a password that cannot be used
    void connect(const LDAPSignIn &signIn);

    /// The search base that the configuration names; empty when it names none.
    std::string configuredBase() const;

    /// The values of one attribute of one entry, bytes as the server sends them; none when the
    /// entry has no such attribute.
    /// @param dn  empty for the server's own entry, the root DSE
    /// @throws LDAPFailure also when there is no such entry, or none that may be read
    std::vector<std::string> valuesOfEntry(const std::string &dn, const std::string &attribute);

    /// Finds all entries at and below the base. The base itself may be missing: nothing is found
    /// then.
    /// @param filter  in the form of RFC 4515
    /// @param action  called with the distinguished name of each entry as it comes in; nullopt for
    ///                a name that cannot be read. What it throws comes through.
    /// @throws LDAPFailure also when the server's limits end the search; the action has then been
    ///         called for what came before
    void searchBelow(const std::string &base, const std::string &filter,
                     const std::function<void(const std::optional<std::string> &dn)> &action);

private:
    struct Closer {
        void operator()(LDAP *ldap) const { ldap_unbind_ext(ldap, nullptr, nullptr); }
        void operator()(LDAPMessage *message) const { ldap_msgfree(message); }
    };
    using Message = std::unique_ptr<LDAPMessage, Closer>;

    /// @return the result code that the server ends the search with
    int search(const std::string &base, int scope, const std::string &filter,
               const std::string &attribute, const std::function<void(LDAPMessage *)> &action);
    Message nextMessage(int id);
    int resultCode(LDAPMessage *result);
    [[noreturn]] void fail(int resultCode) const;

    std::string _scheme;
    std::unique_ptr<LDAP, Closer> _ldap;
};

/// The value as it must stand in a filter to mean nothing but itself (RFC 4515). Any bytes; the
/// empty text stays empty.
/// @throws LDAPFailure when the library has no memory
std::string escapedForFilter(const std::string &value);

/// The LDAP URL (RFC 4516) of an entry on the server that `uri` names: scheme, host, port and the
/// distinguished name.
/// @throws LDAPFailure when `uri` is no LDAP URL
std::string urlOfEntry(const std::string &uri, const std::string &dn);

/// The distinguished name in an LDAP URL; empty when it names none.
/// @throws LDAPFailure when `url` is no LDAP URL
std::string entryOfURL(const std::string &url);

} // namespace Platform
