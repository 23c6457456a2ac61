#include "LDAPFailure.h"

#include "LDAPSignIn.h"

#include <memory>

namespace Platform {
namespace {

constexpr std::size_t kLongestServerText = 256;

/// What the code means; empty where the library's words say all.
std::string meaning(int resultCode, const LDAPSignIn &signIn)
{
    const bool anonymous = signIn.method == LDAPSignIn::Method::Anonymous;
    switch (resultCode) {
    case LDAP_SERVER_DOWN:
    case LDAP_CONNECT_ERROR:
        return "the server cannot be reached, or its certificate is not trusted";
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
    const std::string words = meaning(failure.resultCode(), signIn);
    return words.empty() ? failure.what() : words + " (" + failure.what() + ")";
}

} // namespace Platform
