#pragma once

#include <string>
#include <string_view>

namespace Platform {

// Of the whole room: nothing here keeps anything between two calls. Functions may be called from
// any thread, and an object belongs to one thread at a time. Text is UTF-8; NUL bytes are ordinary
// characters.

/// Options of a text comparison, a bit set.
enum TextComparison : unsigned {
    ExactComparison = 0,
    CaseInsensitiveComparison = 1,
};

/// Whether the bytes are well-formed UTF-8 (an empty text is).
bool isValidUTF8(std::string_view bytes);

/// The bytes as UTF-8: in place of each one that belongs to no character stands the other byte. Of
/// a character that is cut off these are all bytes that are left of it.
/// @param replacement  ASCII
std::string repairedUTF8(std::string bytes, char replacement);

/// Whether the byte is a control character of ASCII (C0, DEL): one that may end a line or do more
/// where text is read by a machine.
bool isControl(char byte);

/// The text with a blank in place of each of them.
std::string withoutControls(std::string text);

/// Whether a character shows nothing wherever it stands: white space, a control character, or one
/// of those that Unicode has a font ignore (joiners, variation selectors, marks of direction).
bool isInvisible(char32_t character);

/// Whether two UTF-8 texts compare as the same.
///
/// Canonically equivalent forms are the same text ("é" in one code point or in two). With
/// `CaseInsensitiveComparison` letter case is folded away, by the locale-independent rules of
/// Unicode. Bytes that are not UTF-8 are the same only as themselves.
/// @param options  a bit set of TextComparison; other bits count for nothing
bool isEqualText(std::string_view left, std::string_view right, unsigned options);

/// The text without white space and line ends at either end (Unicode's, tab, CR and LF included).
/// What is not UTF-8 comes back as it is.
std::string trimmedText(std::string_view text);

/// The text without the bytes of `blanks` at either end; empty when there are no others.
std::string_view withoutBlanks(std::string_view text, std::string_view blanks = " ");

/// How long the text's beginning of at most so many bytes is when it is cut between two characters.
/// Of what is not UTF-8, bytes that only go on with a character count as belonging to it.
/// @param most  bytes
/// @return bytes; 0 when not even the first character fits
std::size_t lengthCutAtCharacter(std::string_view text, std::size_t most);

/// The text in lower case, by Unicode's simple mapping. What is not UTF-8 comes back as it is.
std::string lowercaseText(std::string_view text);

/// The text with the first character of each word in title case and the others in lower case.
/// A word is a run of letters, digits, marks and apostrophes: one that begins with a digit or an
/// apostrophe gets no capital. What is not UTF-8 comes back as it is.
std::string titlecaseText(std::string_view text);

} // namespace Platform
