#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Platform {

/// The encodings that text is read and written in. Text inside the program is always UTF-8.
enum class TextEncoding {
    UTF8,
    ISOLatin1,
    ASCII,
    UTF16BigEndian,    ///< without a byte order mark; one that is there is a character
    UTF16LittleEndian, ///< likewise
    MacRoman,
};

/// The bytes in the given encoding as text; the empty text for no bytes.
///
/// Strict: nullopt when any byte does not belong to a character of the encoding (ill-formed UTF-8,
/// a byte above 127 in ASCII, an unpaired surrogate, a character cut short).
/// @throws std::runtime_error when the system lacks the converter for the encoding, whatever the
///         bytes are. UTF-8 needs none. Converters may be files of their own (iconv(3)).
std::optional<std::string> decodedText(std::string_view bytes, TextEncoding encoding);

/// The text as bytes in the given encoding.
///
/// Strict: nullopt when the text holds a character that the encoding lacks, or is not UTF-8
/// itself. UTF-8 is the exception: the text's bytes come back as they are, well-formed or not,
/// because option values may be any bytes and go out as they came in.
/// @throws std::runtime_error as above
std::optional<std::string> encodedText(std::string_view text, TextEncoding encoding);

} // namespace Platform
