#pragma once

#include "LDAPFailure.h"
#include "LDAPSignIn.h"

namespace Platform {

// Signing in to one server. Each function throws LDAPFailure, or ProtectedFileError for a password
// that cannot be used.

/// Gets a conversation that is not connected yet ready to sign in; contacts nobody. Changes the
/// environment of this process, where Kerberos looks for its settings.
///
/// Fails when the way to the server is none for this sign-in: a password goes over TLS only, to a
/// server whose certificate verifies whatever the configuration says; Kerberos brings a protection
/// of its own, which Active Directory does not take inside TLS.
/// @param scheme  of the server's URI
void prepareToSignIn(LDAP *conversation, const std::string &scheme, const LDAPSignIn &signIn);

/// Signs in over the connection; where StartTLS is asked for, it comes first.
void signInTo(LDAP *conversation, const std::string &scheme, const LDAPSignIn &signIn);

} // namespace Platform
