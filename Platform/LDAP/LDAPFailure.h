#pragma once

#include <ldap.h>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Platform {

struct LDAPSignIn;

/// The server or the way to it failed; what() says how, in the client library's words.
class LDAPFailure : public std::runtime_error {
public:
    /// @param resultCode  the library's; LDAP_OTHER for a failure that has none
    explicit LDAPFailure(const std::string &reason, int resultCode = LDAP_OTHER)
        : std::runtime_error(reason), _resultCode(resultCode)
    {
    }

    int resultCode() const { return _resultCode; }

private:
    int _resultCode;
};

/// Throws the failure of that code. @param more  what else is known, added to the code's own words
[[noreturn]] void failWith(int resultCode, std::string_view more = {});

/// The same, with what the server said.
[[noreturn]] void failWith(LDAP *conversation, int resultCode);

/// What failed, for an administrator: what it means comes first, the library's words behind it.
std::string inPlainWords(const LDAPFailure &failure, const LDAPSignIn &signIn);

} // namespace Platform
