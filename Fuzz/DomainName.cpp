// A distinguished name as SSSD hands it on from a directory: the domain that it lies in.

#include "DomainName.h"

#include "Fuzzing.h"
#include "Text.h"

#include <algorithm>
#include <cctype>
#include <ldap.h>
#include <memory>

namespace {

struct Freer {
    void operator()(LDAPDN name) const { ldap_dnfree(name); }
};

/// What the LDAP library makes of the name; nullopt for what it does not take for one.
std::optional<std::string> domainByTheLibrary(const std::string &name)
{
    LDAPDN parsed = nullptr;
    if (ldap_str2dn(name.c_str(), &parsed, LDAP_DN_FORMAT_LDAPV3) != LDAP_SUCCESS)
        return std::nullopt;
    const std::unique_ptr<std::remove_pointer_t<LDAPDN>, Freer> owner(parsed);
    char *domain = nullptr;
    if (ldap_dn2domain(name.c_str(), &domain) != 0 || domain == nullptr)
        return std::nullopt;
    const std::unique_ptr<char, decltype(&ldap_memfree)> text(domain, &ldap_memfree);
    return Platform::lowercaseText(text.get());
}

} // namespace

void Fuzz::tryInput(std::string_view input)
{
    const auto domain = Platform::domainOfDistinguishedName(input);
    if (!domain)
        return;
    Fuzz::require(!domain->empty() && domain->size() <= 253, "a domain has a length");
    Fuzz::require(std::ranges::none_of(*domain,
                                       [](char c) {
                                           const auto byte = static_cast<unsigned char>(c);
                                           return byte <= ' ' || byte == 0x7f || std::isupper(byte);
                                       }),
                  "a domain commands nobody, and is in lower case");
    Fuzz::require(Platform::isValidUTF8(*domain), "a domain is a text");
    Fuzz::requireEqual(*domain, Platform::domainName(*domain).value_or(""),
                       "a domain is a domain's name");
    Fuzz::requireEqual(
        *domain, Platform::domainOfDistinguishedName("CN=a\\,b," + std::string(input)).value_or(""),
        "an entry lies in its parent's domain");
    // The library's names end at a NUL, line breaks are blanks to it, its domains have no letters
    // but ASCII's, and it looks for them among several assertions too.
    if (std::ranges::any_of(input, [](char c) { return c < ' ' || c == '+'; }))
        return;
    if (const auto expected = domainByTheLibrary(std::string(input)))
        Fuzz::requireEqual(*expected, *domain, "both agree on what is a name to both");
}
