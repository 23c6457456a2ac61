#pragma once

#include <string>
#include <string_view>

namespace Platform {

/// Options of a text comparison, a bit set.
enum TextComparison : unsigned {
    ExactComparison = 0,
    CaseInsensitiveComparison = 1,
};

/// Whether the bytes are well-formed UTF-8 (an empty text is).
bool isValidUTF8(std::string_view bytes);

/// Whether two UTF-8 texts compare as the same.
///
/// Canonically equivalent forms are the same text ("é" in one code point or in two). With
/// `CaseInsensitiveComparison` letter case is folded away, by the locale-independent rules of
/// Unicode. Bytes that are not UTF-8 are the same only as themselves.
bool isEqualText(std::string_view left, std::string_view right, unsigned options);

/// The text without white space and line ends at either end (Unicode's, tab, CR and LF included).
/// What is not UTF-8 comes back as it is.
std::string trimmedText(std::string_view text);

/// How long the text's beginning of at most so many bytes is when it is cut between two characters.
/// Of what is not UTF-8, bytes that only go on with a character count as belonging to it.
std::size_t lengthCutAtCharacter(std::string_view text, std::size_t most);

/// The text in lower case, by Unicode's simple mapping. What is not UTF-8 comes back as it is.
std::string lowercaseText(std::string_view text);

/// The text with the first letter of each word in title case and the others in lower case.
/// A word is a run of letters, digits, marks and apostrophes. What is not UTF-8 comes back as it
/// is.
std::string titlecaseText(std::string_view text);

} // namespace Platform
