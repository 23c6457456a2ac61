#include "LDAPConversation.h"

#include "LDAPAuthentication.h"

#include <array>
#include <cstdlib>
#include <unistd.h>

namespace Platform {
namespace {

/// Of one message: far above what the questions asked here can need.
constexpr ber_len_t kMostMessageBytes = 65536;

struct Freer {
    void operator()(void *memory) const { ldap_memfree(memory); }
    void operator()(LDAPURLDesc *url) const { ldap_free_urldesc(url); }
    void operator()(berval **values) const { ldap_value_free_len(values); }
};
using Text = std::unique_ptr<char, Freer>;
using URL = std::unique_ptr<LDAPURLDesc, Freer>;
using Values = std::unique_ptr<berval *, Freer>;

/// A text option.
std::string option(LDAP *ldap, int name)
{
    char *raw = nullptr;
    if (ldap_get_option(ldap, name, &raw) != LDAP_OPT_SUCCESS)
        return {};
    const Text text(raw);
    return text ? text.get() : std::string();
}

template <class Value>
void setOption(LDAP *ldap, int name, Value value)
{
    if (ldap_set_option(ldap, name, value) != LDAP_OPT_SUCCESS)
        failWith(LDAP_LOCAL_ERROR);
}

/// Lets a server announce no message that the library would find memory for beyond the limit.
void limitMessages(LDAP *ldap)
{
    Sockbuf *socket = nullptr;
    ber_len_t most = kMostMessageBytes;
    if (ldap_get_option(ldap, LDAP_OPT_SOCKBUF, &socket) != LDAP_OPT_SUCCESS ||
        ber_sockbuf_ctrl(socket, LBER_SB_OPT_SET_MAX_INCOMING, &most) != 1)
        failWith(LDAP_LOCAL_ERROR);
}

URL parsedURL(const std::string &text)
{
    LDAPURLDesc *raw = nullptr;
    if (ldap_url_parse(text.c_str(), &raw) != LDAP_URL_SUCCESS)
        throw LDAPFailure("Not an LDAP URL");
    return URL(raw);
}

/// @param dn  null for the URL of the server itself
std::string serverURL(const std::string &uri, char *dn)
{
    const URL url = parsedURL(uri);
    LDAPURLDesc parts = {};
    parts.lud_scheme = url->lud_scheme;
    parts.lud_host = url->lud_host;
    parts.lud_port = url->lud_port;
    parts.lud_dn = dn;
    parts.lud_scope = LDAP_SCOPE_DEFAULT;
    const Text text(ldap_url_desc2str(&parts));
    if (!text)
        failWith(LDAP_NO_MEMORY);
    return text.get();
}

std::vector<std::string> valuesOf(LDAP *ldap, LDAPMessage *entry, const std::string &attribute)
{
    const Values values(ldap_get_values_len(ldap, entry, attribute.c_str()));
    const int count = ldap_count_values_len(values.get());
    std::vector<std::string> texts;
    texts.reserve(static_cast<std::size_t>(count));
    for (int at = 0; at < count; ++at)
        texts.emplace_back(values.get()[at]->bv_val, values.get()[at]->bv_len);
    return texts;
}

} // namespace

void useOnlyHostConfiguration()
{
    std::vector<std::string> unwanted = {"HOME"}; // where personal files are looked for
    for (char **entry = environ; *entry != nullptr; ++entry) {
        const std::string_view text = *entry;
        const std::string_view name = text.substr(0, text.find('='));
        if (name.starts_with("LDAP") && name != "LDAPCONF")
            unwanted.emplace_back(name);
    }
    for (const std::string &name : unwanted)
        unsetenv(name.c_str());
}

LDAPConversation::LDAPConversation(const std::string &uri) : _scheme(parsedURL(uri)->lud_scheme)
{
    LDAP *raw = nullptr;
    const int code = ldap_initialize(&raw, serverURL(uri, nullptr).c_str());
    _ldap.reset(raw);
    if (code != LDAP_SUCCESS)
        failWith(code);
    const int version = LDAP_VERSION3;
    setOption(_ldap.get(), LDAP_OPT_PROTOCOL_VERSION, &version);
    setOption(_ldap.get(), LDAP_OPT_REFERRALS, LDAP_OPT_OFF);
    limitMessages(_ldap.get());
}

void LDAPConversation::connect(const LDAPSignIn &signIn)
{
    prepareToSignIn(_ldap.get(), _scheme, signIn);
    if (const int code = ldap_connect(_ldap.get()); code != LDAP_SUCCESS)
        fail(code);
    signInTo(_ldap.get(), _scheme, signIn);
}

std::string LDAPConversation::configuredBase() const
{
    return option(_ldap.get(), LDAP_OPT_DEFBASE);
}

std::vector<std::string> LDAPConversation::valuesOfEntry(const std::string &dn,
                                                         const std::string &attribute)
{
    std::optional<std::vector<std::string>> values;
    const auto keepFirst = [&](LDAPMessage *entry) {
        if (!values) // more than one entry is against the rules, and could be endless
            values = valuesOf(_ldap.get(), entry, attribute);
    };
    const int code = search(dn, LDAP_SCOPE_BASE, "(objectClass=*)", attribute, keepFirst);
    if (code != LDAP_SUCCESS)
        fail(code);
    if (!values) // it is there, but not for everybody
        fail(LDAP_NO_SUCH_OBJECT);
    return *values;
}

void LDAPConversation::searchBelow(
    const std::string &base, const std::string &filter,
    const std::function<void(const std::optional<std::string> &dn)> &action)
{
    const auto report = [&](LDAPMessage *entry) {
        const Text dn(ldap_get_dn(_ldap.get(), entry));
        action(dn ? std::optional<std::string>(dn.get()) : std::nullopt);
    };
    const int code = search(base, LDAP_SCOPE_SUBTREE, filter, LDAP_NO_ATTRS, report);
    if (code != LDAP_SUCCESS && code != LDAP_NO_SUCH_OBJECT)
        fail(code);
}

int LDAPConversation::search(const std::string &base, int scope, const std::string &filter,
                             const std::string &attribute,
                             const std::function<void(LDAPMessage *)> &action)
{
    std::string name = attribute; // the library wants texts that it could change
    std::array<char *, 2> attributes = {name.data(), nullptr};
    int id = 0;
    const int code =
        ldap_search_ext(_ldap.get(), base.c_str(), scope, filter.c_str(), attributes.data(), 0,
                        nullptr, nullptr, nullptr, LDAP_NO_LIMIT, &id);
    if (code != LDAP_SUCCESS)
        fail(code);
    // One message at a time: what has been looked at takes no memory any more.
    for (Message message = nextMessage(id);; message = nextMessage(id)) {
        const int type = ldap_msgtype(message.get());
        if (type == LDAP_RES_SEARCH_ENTRY)
            action(message.get());
        if (type == LDAP_RES_SEARCH_RESULT)
            return resultCode(message.get());
        // Anything else, where more could be asked for instance, is passed over.
    }
}

LDAPConversation::Message LDAPConversation::nextMessage(int id)
{
    LDAPMessage *raw = nullptr;
    const int type = ldap_result(_ldap.get(), id, LDAP_MSG_ONE, nullptr, &raw);
    Message message(raw);
    if (type > 0)
        return message;
    int code = LDAP_TIMEOUT;
    if (type < 0)
        ldap_get_option(_ldap.get(), LDAP_OPT_RESULT_CODE, &code);
    fail(code);
}

/// Leaves the server's own words where fail() finds them.
int LDAPConversation::resultCode(LDAPMessage *result)
{
    int code = LDAP_OTHER;
    const int parsed =
        ldap_parse_result(_ldap.get(), result, &code, nullptr, nullptr, nullptr, nullptr, 0);
    return parsed == LDAP_SUCCESS ? code : parsed;
}

void LDAPConversation::fail(int resultCode) const
{
    failWith(_ldap.get(), resultCode);
}

std::string escapedForFilter(const std::string &value)
{
    berval in = {value.size(), const_cast<char *>(value.data())};
    berval out = {};
    if (ldap_bv2escaped_filter_value(&in, &out) != 0)
        failWith(LDAP_NO_MEMORY);
    const Text owner(out.bv_val);
    return {out.bv_val, out.bv_len};
}

std::string urlOfEntry(const std::string &uri, const std::string &dn)
{
    std::string name = dn;
    return serverURL(uri, name.data());
}

std::string entryOfURL(const std::string &url)
{
    const URL parsed = parsedURL(url);
    return parsed->lud_dn != nullptr ? parsed->lud_dn : "";
}

} // namespace Platform
