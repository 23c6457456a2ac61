#pragma once

#include <string>

namespace Platform {

class ChildMessageSender;
struct LDAPSignIn;

// The questions to LDAP servers, made to be asked in a child process (see ChildMessages.h): each
// may hang for as long as a server likes. They change the environment of the process that asks
// (useOnlyHostConfiguration()) and throw LDAPFailure; what was sent before that stands.
// KLDirectoryModule exports them.

/// What the messages that come in answer mean.
enum LDAPAnswer : char {
    LDAPServer = 's',           ///< the URI of a configured server
    LDAPProgress = 'p',         ///< connected, or one more answer is in
    LDAPNode = 'n',             ///< the URL of a naming context of the server
    LDAPRecord = 'r',           ///< a record: its node's index, decimal, in the order of the nodes
    LDAPRecordOutside = 'o',    ///< a record that lies in none of the nodes
    LDAPRecordUnreadable = 'u', ///< a record whose name cannot be read
    LDAPSearchBase = 'b',       ///< the node's distinguished name
    LDAPNativeDomain = 'd',     ///< the domain name that the directory gives the node
};

/// Sends the servers that ldap.conf(5) names, in its order; nothing when it names none. Contacts
/// none.
void listLDAPServers(const ChildMessageSender &answers);

/// Sends the server's naming contexts, then all entries whose `uid` or `sAMAccountName` is the
/// name: below the configured search base, else below each context in the server's order. Of an
/// unknown user, nothing follows the contexts but LDAPProgress.
///
/// When there is no such entry and the name is one with a domain ("CORP\anna",
/// "anna@corp.example.com"), the entries of the bare name; of several only those that lie in a
/// domain of that name, or of which it is the first part.
/// @param uri       a server from listLDAPServers()
/// @param userName  UTF-8, taken literally
/// @throws LDAPFailure, in words for an administrator
void findLDAPUser(const ChildMessageSender &answers, const std::string &uri,
                  const std::string &userName, const LDAPSignIn &signIn);

/// Sends the search base of a naming context, as soon as its server is reached, and, when it has
/// one, its domain name: `associatedDomain` (RFC 4524), else `canonicalName`, which Active
/// Directory has, without the slash at its end. Of several values the first counts.
/// @param url  a node from findLDAPUser()
void inspectLDAPNode(const ChildMessageSender &answers, const std::string &url,
                     const LDAPSignIn &signIn);

} // namespace Platform
