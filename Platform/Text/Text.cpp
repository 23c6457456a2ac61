#include "Text.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <optional>

namespace Platform {
namespace {

const utf8proc_uint8_t *bytesOf(std::string_view text)
{
    return reinterpret_cast<const utf8proc_uint8_t *>(text.data());
}

/// The text in canonically decomposed form, mapped further as the options say; nullopt for what is
/// not UTF-8.
std::optional<std::string> mapped(std::string_view text, unsigned options)
{
    utf8proc_uint8_t *buffer = nullptr;
    const auto length = utf8proc_map(
        bytesOf(text), static_cast<utf8proc_ssize_t>(text.size()), &buffer,
        static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_DECOMPOSE | options));
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(buffer, &std::free);
    if (length == UTF8PROC_ERROR_NOMEM)
        throw std::bad_alloc();
    if (length < 0)
        return std::nullopt;
    return std::string(reinterpret_cast<const char *>(buffer), static_cast<std::size_t>(length));
}

/// A code point and how many bytes it takes; 0 bytes for what is not UTF-8.
struct Character {
    char32_t codePoint;
    std::size_t length;
};

/// @param text  not empty
Character firstCharacter(std::string_view text)
{
    utf8proc_int32_t codePoint = 0;
    const auto length =
        utf8proc_iterate(bytesOf(text), static_cast<utf8proc_ssize_t>(text.size()), &codePoint);
    if (length < 1)
        return {0, 0};
    return {static_cast<char32_t>(codePoint), static_cast<std::size_t>(length)};
}

/// The code points of a text; nullopt for what is not UTF-8.
std::optional<std::u32string> codePoints(std::string_view text)
{
    std::u32string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        if (character.length == 0)
            return std::nullopt;
        result.push_back(character.codePoint);
        text.remove_prefix(character.length);
    }
    return result;
}

std::string encoded(std::u32string_view codePoints)
{
    std::string result;
    result.reserve(codePoints.size());
    for (const char32_t codePoint : codePoints) {
        utf8proc_uint8_t bytes[4];
        const auto length = utf8proc_encode_char(static_cast<utf8proc_int32_t>(codePoint), bytes);
        result.append(reinterpret_cast<const char *>(bytes), static_cast<std::size_t>(length));
    }
    return result;
}

bool isWhiteSpaceOrLineEnd(char32_t c)
{
    if ((c >= 0x09 && c <= 0x0D) || c == 0x85)
        return true;
    switch (utf8proc_category(static_cast<utf8proc_int32_t>(c))) {
    case UTF8PROC_CATEGORY_ZS:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
        return true;
    default:
        return false;
    }
}

bool belongsToWord(char32_t c)
{
    if (c == U'\'' || c == U'\u2019')
        return true;
    const auto category = utf8proc_category(static_cast<utf8proc_int32_t>(c));
    return category >= UTF8PROC_CATEGORY_LU && category <= UTF8PROC_CATEGORY_NO;
}

char32_t lowercase(char32_t c)
{
    return static_cast<char32_t>(utf8proc_tolower(static_cast<utf8proc_int32_t>(c)));
}

char32_t titlecase(char32_t c)
{
    return static_cast<char32_t>(utf8proc_totitle(static_cast<utf8proc_int32_t>(c)));
}

} // namespace

bool isValidUTF8(std::string_view bytes)
{
    return codePoints(bytes).has_value();
}

std::string repairedUTF8(std::string bytes, char replacement)
{
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t length = firstCharacter(std::string_view(bytes).substr(at)).length;
        if (length == 0)
            bytes[at] = replacement;
        at += std::max<std::size_t>(length, 1);
    }
    return bytes;
}

bool isControl(char byte)
{
    return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F;
}

std::string withoutControls(std::string text)
{
    std::ranges::replace_if(text, isControl, ' ');
    return text;
}

bool isInvisible(char32_t character)
{
    const auto codePoint = static_cast<utf8proc_int32_t>(character);
    return utf8proc_category(codePoint) == UTF8PROC_CATEGORY_CC ||
           isWhiteSpaceOrLineEnd(character) || utf8proc_get_property(codePoint)->ignorable != 0;
}

bool isEqualText(std::string_view left, std::string_view right, unsigned options)
{
    if (left == right)
        return true;
    const unsigned folding =
        (options & CaseInsensitiveComparison) != 0U ? unsigned{UTF8PROC_CASEFOLD} : 0U;
    const auto canonicalLeft = mapped(left, folding);
    return canonicalLeft && canonicalLeft == mapped(right, folding);
}

std::string trimmedText(std::string_view text)
{
    const auto points = codePoints(text);
    if (!points)
        return std::string(text);
    std::u32string_view rest = *points;
    while (!rest.empty() && isWhiteSpaceOrLineEnd(rest.front()))
        rest.remove_prefix(1);
    while (!rest.empty() && isWhiteSpaceOrLineEnd(rest.back()))
        rest.remove_suffix(1);
    return encoded(rest);
}

std::string lowercaseText(std::string_view text)
{
    auto points = codePoints(text);
    if (!points)
        return std::string(text);
    for (char32_t &c : *points)
        c = lowercase(c);
    return encoded(*points);
}

std::string titlecaseText(std::string_view text)
{
    auto points = codePoints(text);
    if (!points)
        return std::string(text);
    bool insideWord = false;
    for (char32_t &c : *points) {
        c = insideWord ? lowercase(c) : titlecase(c);
        insideWord = belongsToWord(c);
    }
    return encoded(*points);
}

std::string_view withoutBlanks(std::string_view text, std::string_view blanks)
{
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::size_t lengthCutAtCharacter(std::string_view text, std::size_t most)
{
    if (text.size() <= most)
        return text.size();
    const auto continues = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
    };
    while (most > 0 && continues(text[most]))
        --most;
    return most;
}

} // namespace Platform
