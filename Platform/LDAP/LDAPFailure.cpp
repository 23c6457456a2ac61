#include "LDAPFailure.h"

#include "LDAPSignIn.h"

#include <memory>

namespace Platform {
namespace {

constexpr std::size_t kLongestServerText = 256;

/// Whether it was the TLS handshake that failed: it leaves words of its own.
bool isTLSFailure(const LDAPFailure &failure)
{
    return failure.resultCode() == LDAP_CONNECT_ERROR ||
           std::string_view(failure.what()) != ldap_err2string(failure.resultCode());
}

/// What the failure means; empty where the library's words say all.
std::string meaning(const LDAPFailure &failure, const LDAPSignIn &signIn)
{
    const bool anonymous = signIn.method == LDAPSignIn::Method::Anonymous;
    switch (failure.resultCode()) {
    case LDAP_SERVER_DOWN:
    case LDAP_CONNECT_ERROR:
        return isTLSFailure(failure) ? "no TLS with the server, whose certificate may not be one "
                                       "for it or not trusted"
                                     : "the server cannot be reached";
    case LDAP_INVALID_CREDENTIALS:
        return "the server refuses the password or the name that it belongs to";
    case LDAP_OPERATIONS_ERROR: // Active Directory's way to say it
    case LDAP_STRONG_AUTH_REQUIRED:
    case LDAP_INAPPROPRIATE_AUTH:
    case LDAP_INSUFFICIENT_ACCESS:
    case LDAP_UNWILLING_TO_PERFORM:
        return anonymous ? "the server answers nobody who has not signed in"
                         : "the server refuses the request";
    case LDAP_CONFIDENTIALITY_REQUIRED:
        return "the server answers over TLS only";
    case LDAP_AUTH_UNKNOWN:
        return "SASL's part for Kerberos is not installed";
    case LDAP_LOCAL_ERROR:
        return signIn.method == LDAPSignIn::Method::GSSAPI ? "Kerberos gives no ticket" : "";
    default:
        return {};
    }
}

} // namespace

void failWith(int resultCode, std::string_view more)
{
    std::string reason = ldap_err2string(resultCode);
    if (!more.empty())
        reason.append(": ").append(more.substr(0, kLongestServerText));
    throw LDAPFailure(reason, resultCode);
}

void failWith(LDAP *conversation, int resultCode)
{
    char *raw = nullptr;
    ldap_get_option(conversation, LDAP_OPT_DIAGNOSTIC_MESSAGE, &raw);
    const std::unique_ptr<char, decltype(&ldap_memfree)> text(raw, &ldap_memfree);
    failWith(resultCode, text ? text.get() : "");
}

std::string inPlainWords(const LDAPFailure &failure, const LDAPSignIn &signIn)
{
    const std::string words = meaning(failure, signIn);
    return words.empty() ? failure.what() : words + " (" + failure.what() + ")";
}

} // namespace Platform
