#include "DomainName.h"

#include "Text.h"

#include <algorithm>

namespace Platform {
namespace {

constexpr std::size_t kLongestLabel = 63;
constexpr std::size_t kLongestName = 253;

bool isLabelByte(char byte)
{
    const auto code = static_cast<unsigned char>(byte);
    return code >= 0x80 || (code >= '0' && code <= '9') || (code >= 'a' && code <= 'z') ||
           (code >= 'A' && code <= 'Z') || byte == '-' || byte == '_';
}

bool isLabel(std::string_view text)
{
    return !text.empty() && text.size() <= kLongestLabel && std::ranges::all_of(text, &isLabelByte);
}

/// Takes the first component off a distinguished name, and the comma behind it. @return nullopt
/// when there is none. A sign behind a backslash is only a sign; quotation marks and semicolons
/// that are not are of an older form, which is not read.
std::optional<std::string_view> takeComponent(std::string_view &name)
{
    std::size_t end = 0;
    for (; end < name.size() && name[end] != ','; ++end) {
        if (name[end] == '"' || name[end] == ';' || (name[end] == '\\' && ++end == name.size()))
            return std::nullopt;
    }
    const std::string_view component = name.substr(0, end);
    const bool isLast = end == name.size();
    name.remove_prefix(isLast ? end : end + 1);
    if (component.find('=') == std::string_view::npos || (!isLast && name.empty()))
        return std::nullopt;
    return component;
}

bool isDomainComponent(std::string_view type)
{
    return isEqualText(type, "dc", CaseInsensitiveComparison) ||
           type == "0.9.2342.19200300.100.1.25";
}

} // namespace

std::optional<std::string> domainName(std::string_view text)
{
    if (text.size() > kLongestName || !isValidUTF8(text))
        return std::nullopt;
    for (std::string_view rest = text;;) {
        const auto dot = rest.find('.');
        if (!isLabel(rest.substr(0, dot)))
            return std::nullopt;
        if (dot == std::string_view::npos)
            return lowercaseText(text);
        rest.remove_prefix(dot + 1);
    }
}

std::optional<std::string> domainOfDistinguishedName(std::string_view name)
{
    std::string domain;
    while (!name.empty()) {
        const auto component = takeComponent(name);
        if (!component)
            return std::nullopt;
        const auto equals = component->find('=');
        // One that stands above the last domain components belongs to something else.
        if (!isDomainComponent(withoutBlanks(component->substr(0, equals))))
            domain.clear();
        else
            domain.append(domain.empty() ? "" : ".")
                .append(withoutBlanks(component->substr(equals + 1)));
    }
    return domainName(domain);
}

} // namespace Platform
