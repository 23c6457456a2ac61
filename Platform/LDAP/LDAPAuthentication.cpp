#include "LDAPAuthentication.h"

#include <cstdlib>
#include <sasl/sasl.h>

namespace Platform {
namespace {

using Method = LDAPSignIn::Method;

/// @param conversation  null for the default of those to come
template <class Value>
void setOption(LDAP *conversation, int name, Value value)
{
    if (ldap_set_option(conversation, name, value) != LDAP_OPT_SUCCESS)
        failWith(LDAP_LOCAL_ERROR);
}

bool startsTLS(const std::string &scheme, const LDAPSignIn &signIn)
{
    return scheme == "ldap" && signIn.startTLS;
}

void trustNobodyUnverified(LDAP *conversation)
{
    const int demand = LDAP_OPT_X_TLS_DEMAND;
    // The default says whether the certificate is looked at, the conversation's own whether the
    // name in it is.
    setOption(nullptr, LDAP_OPT_X_TLS_REQUIRE_CERT, &demand);
    setOption(conversation, LDAP_OPT_X_TLS_REQUIRE_CERT, &demand);
}

void prepareKerberos(LDAP *conversation, const LDAPSignIn &signIn)
{
    // Tickets of others are none of ours, and ours are not to be found in a folder of everybody's.
    setenv("KRB5CCNAME", "MEMORY:sign-in", 1);
    if (signIn.keytab.empty())
        setenv("GSS_USE_PROXY", "yes", 1); // where gssproxy(8) is installed it holds the keys
    else
        setenv("KRB5_CLIENT_KTNAME", ("FILE:" + signIn.keytab).c_str(), 1);
    // The server is called as the URI does: the DNS could be made to say another name.
    setOption(conversation, LDAP_OPT_X_SASL_NOCANON, LDAP_OPT_ON);
    setOption(conversation, LDAP_OPT_X_SASL_SECPROPS, "minssf=56,noanonymous,noplain");
}

/// Kerberos knows who we are: to whatever SASL asks, the default is the answer.
int answerWithDefaults(LDAP *, unsigned, void *, void *questions)
{
    for (auto *question = static_cast<sasl_interact_t *>(questions);
         question->id != SASL_CB_LIST_END; ++question) {
        question->result = question->defresult != nullptr ? question->defresult : "";
        question->len = static_cast<unsigned>(
            std::char_traits<char>::length(static_cast<const char *>(question->result)));
    }
    return LDAP_SUCCESS;
}

int signInWithKerberos(LDAP *conversation)
{
    return ldap_sasl_interactive_bind_s(conversation, nullptr, "GSSAPI", nullptr, nullptr,
                                        LDAP_SASL_QUIET, &answerWithDefaults, nullptr);
}

int signInWithPassword(LDAP *conversation, const LDAPSignIn &signIn)
{
    std::string password = readPassword(signIn.passwordFile);
    berval credentials = {password.size(), password.data()};
    return ldap_sasl_bind_s(conversation, signIn.bindDN.c_str(), LDAP_SASL_SIMPLE, &credentials,
                            nullptr, nullptr, nullptr);
}

} // namespace

void prepareToSignIn(LDAP *conversation, const std::string &scheme, const LDAPSignIn &signIn)
{
    const bool overTLS = scheme == "ldaps" || startsTLS(scheme, signIn);
    if (signIn.method == Method::Simple) {
        if (!overTLS)
            throw LDAPFailure("A password is sent over ldaps: or after StartTLS only");
        trustNobodyUnverified(conversation);
    } else if (signIn.method == Method::GSSAPI) {
        if (overTLS)
            throw LDAPFailure("Kerberos signs in over ldap: without StartTLS only");
        prepareKerberos(conversation, signIn);
    }
}

void signInTo(LDAP *conversation, const std::string &scheme, const LDAPSignIn &signIn)
{
    int code = LDAP_SUCCESS;
    if (startsTLS(scheme, signIn))
        code = ldap_start_tls_s(conversation, nullptr, nullptr);
    if (code == LDAP_SUCCESS && signIn.method == Method::GSSAPI)
        code = signInWithKerberos(conversation);
    if (code == LDAP_SUCCESS && signIn.method == Method::Simple)
        code = signInWithPassword(conversation, signIn);
    if (code != LDAP_SUCCESS)
        failWith(conversation, code);
}

} // namespace Platform
