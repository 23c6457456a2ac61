#include "DistinguishedName.h"

#include "Text.h"

#include <algorithm>
#include <ldap.h>
#include <memory>
#include <string_view>
#include <type_traits>

namespace Platform {
namespace {

struct NameFreer {
    void operator()(LDAPDN name) const { ldap_dnfree(name); }
};
using ParsedName = std::unique_ptr<std::remove_pointer_t<LDAPDN>, NameFreer>;

std::string_view view(const berval &bytes)
{
    return {bytes.bv_val, bytes.bv_len};
}

std::string componentText(LDAPRDN component)
{
    std::vector<std::string> assertions;
    for (; *component != nullptr; ++component) {
        const LDAPAVA &assertion = **component;
        assertions.push_back(
            std::string(view(assertion.la_attr)).append("=").append(view(assertion.la_value)));
    }
    std::ranges::sort(assertions);
    std::string text;
    for (const std::string &assertion : assertions)
        text.append(text.empty() ? "" : "+").append(assertion);
    return text;
}

bool isSameComponent(const std::string &left, const std::string &right)
{
    return isEqualText(left, right, CaseInsensitiveComparison);
}

} // namespace

std::optional<DistinguishedName> DistinguishedName::parse(const std::string &text)
{
    LDAPDN raw = nullptr;
    if (ldap_str2dn(text.c_str(), &raw, LDAP_DN_FORMAT_LDAPV3) != LDAP_SUCCESS)
        return std::nullopt;
    const ParsedName parsed(raw); // null for the root
    DistinguishedName name;
    for (const LDAPRDN *component = parsed.get(); component != nullptr && *component != nullptr;
         ++component)
        name._components.push_back(componentText(*component));
    return name;
}

bool DistinguishedName::isWithin(const DistinguishedName &other) const
{
    return other.depth() <= depth() &&
           std::equal(other._components.rbegin(), other._components.rend(), _components.rbegin(),
                      &isSameComponent);
}

} // namespace Platform
