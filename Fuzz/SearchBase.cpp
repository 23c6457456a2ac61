// Two lines, each a search base: the domain that it spells, and how the two names lie to each
// other.

#include "DistinguishedName.h"
#include "Fuzzing.h"
#include "domainLookup.h"

#include <vector>

using Platform::DistinguishedName;

namespace {

std::vector<std::string> piecesOf(const std::string &text)
{
    std::vector<std::string> pieces = {""};
    for (const char c : text) {
        if (c == ',')
            pieces.emplace_back();
        else
            pieces.back() += c;
    }
    return pieces;
}

/// The rule, word by word.
std::optional<std::string> modelOfDomain(const std::string &searchBase)
{
    std::string domain;
    for (const std::string &piece : piecesOf(searchBase)) {
        if (piece.substr(0, 3) != "dc=")
            return std::nullopt;
        domain += "." + piece.substr(3);
    }
    return domain.substr(1);
}

void tryDomain(const std::string &searchBase)
{
    const auto domain = domainFromSearchBase(searchBase);
    const auto expected = modelOfDomain(searchBase);
    Fuzz::require(domain.has_value() == expected.has_value(), "every piece begins with dc=");
    if (domain)
        Fuzz::requireEqual(*expected, *domain, "the domain joins the pieces");
}

void tryName(const std::string &text)
{
    const auto name = DistinguishedName::parse(text);
    if (!name)
        return;
    Fuzz::require(name->isWithin(*name), "a name lies within itself");
    const auto root = DistinguishedName::parse("");
    Fuzz::require(root && root->depth() == 0 && name->isWithin(*root),
                  "every name lies below the root");
    if (name->depth() == 0)
        return;
    const auto child = DistinguishedName::parse("cn=child," + text);
    Fuzz::require(child.has_value(), "a name in front of a name makes a name");
    Fuzz::require(child->depth() == name->depth() + 1, "a child lies one deeper");
    Fuzz::require(child->isWithin(*name) && !name->isWithin(*child),
                  "a child lies below its parent, and not the other way round");
}

void tryPair(const std::string &first, const std::string &second)
{
    const auto left = DistinguishedName::parse(first);
    const auto right = DistinguishedName::parse(second);
    if (!left || !right)
        return;
    const bool leftInRight = left->isWithin(*right);
    Fuzz::require(!leftInRight || left->depth() >= right->depth(), "what lies within is as deep");
    Fuzz::require((leftInRight && right->isWithin(*left)) ==
                      (leftInRight && left->depth() == right->depth()),
                  "two of the same depth lie within each other, or neither does");
}

} // namespace

void Fuzz::tryInput(std::string_view input)
{
    const std::string first(takeLine(input));
    const std::string second(input);
    tryDomain(first);
    tryName(first);
    tryPair(first, second);
}
