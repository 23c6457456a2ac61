#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace Platform {

/// The name of a directory entry (RFC 4514), taken apart to be compared with others. A value.
class DistinguishedName {
public:
    /// @param text  the empty text is the name of the root, above all entries; what follows a NUL
    ///              byte is not seen
    /// @return nullopt when the text is no distinguished name
    static std::optional<DistinguishedName> parse(const std::string &text);

    /// How far below the root the entry is; 0 for the root.
    std::size_t depth() const { return _components.size(); }

    /// Whether the entry is the other one or below it, letter case aside. Escapes, blanks between
    /// components and the order within a component make no difference. Types compare as they are
    /// spelt: a name and its number are two.
    bool isWithin(const DistinguishedName &other) const;

private:
    /// From the entry up to the root, each "type=value", several of them in order of type.
    std::vector<std::string> _components;
};

} // namespace Platform
