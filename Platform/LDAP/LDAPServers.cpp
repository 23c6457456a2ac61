#include "LDAPServers.h"

#include "LDAPFailure.h"

#include <memory>
#include <optional>
#include <sstream>
#include <string_view>

namespace Platform {
namespace {

/// What the library takes for the server when the configuration names none. A configured one never
/// comes out in this form (OpenedWithoutConfiguredServerHasNoAuthenticationNode, and
/// LocalhostCanBeConfigured).
constexpr std::string_view kBuiltInServer = "ldap://localhost:389/??base";

using Text = std::unique_ptr<char, decltype(&ldap_memfree)>;
using URL = std::unique_ptr<LDAPURLDesc, decltype(&ldap_free_urldesc)>;

std::string configuredURIs()
{
    LDAP *raw = nullptr;
    if (const int code = ldap_create(&raw); code != LDAP_SUCCESS)
        failWith(code);
    char *uris = nullptr;
    ldap_get_option(raw, LDAP_OPT_URI, &uris);
    const Text text(uris, &ldap_memfree);
    ldap_destroy(raw);
    return text && text.get() != kBuiltInServer ? text.get() : "";
}

std::vector<std::string> words(const std::string &text)
{
    std::vector<std::string> list;
    std::istringstream stream(text);
    for (std::string word; stream >> word;)
        list.push_back(word);
    return list;
}

/// The distinguished name in a URI that names no server; nullopt for any other.
std::optional<std::string> domainInPlaceOfServer(const std::string &uri)
{
    LDAPURLDesc *raw = nullptr;
    if (ldap_url_parse(uri.c_str(), &raw) != LDAP_URL_SUCCESS)
        return std::nullopt;
    const URL url(raw, &ldap_free_urldesc);
    const auto isEmpty = [](const char *text) { return text == nullptr || *text == '\0'; };
    if (!isEmpty(url->lud_host) || isEmpty(url->lud_dn))
        return std::nullopt;
    return url->lud_dn;
}

/// The servers, "host:port", in the order of their records; none when they cannot be found.
std::vector<std::string> hostsOfDomain(const std::string &distinguishedName)
{
    char *domain = nullptr;
    if (ldap_dn2domain(distinguishedName.c_str(), &domain) != 0 || domain == nullptr)
        return {};
    const Text domainOwner(domain, &ldap_memfree);
    char *hosts = nullptr;
    if (*domain == '\0' || ldap_domain2hostlist(domain, &hosts) != 0 || hosts == nullptr)
        return {};
    const Text hostsOwner(hosts, &ldap_memfree);
    return words(hosts);
}

} // namespace

std::vector<std::string> configuredServers()
{
    std::vector<std::string> servers;
    std::string unknownDomain;
    for (const std::string &uri : words(configuredURIs())) {
        const auto name = domainInPlaceOfServer(uri);
        if (!name) {
            servers.push_back(uri);
            continue;
        }
        const auto hosts = hostsOfDomain(*name);
        for (const std::string &host : hosts)
            servers.push_back(uri.substr(0, uri.find("://")) + "://" + host);
        if (hosts.empty())
            unknownDomain = *name;
    }
    if (servers.empty() && !unknownDomain.empty())
        throw LDAPFailure("The DNS names no LDAP servers of " + unknownDomain);
    return servers;
}

} // namespace Platform
