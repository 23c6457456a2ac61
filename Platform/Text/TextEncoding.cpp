#include "TextEncoding.h"

#include "Text.h"

#include <cerrno>
#include <cstdint>
#include <iconv.h>
#include <stdexcept>
#include <system_error>

namespace Platform {
namespace {

/// The encoding's name to iconv(3).
const char *converterName(TextEncoding encoding)
{
    switch (encoding) {
    case TextEncoding::UTF8:
        return "UTF-8";
    case TextEncoding::ISOLatin1:
        return "ISO-8859-1";
    case TextEncoding::ASCII:
        return "US-ASCII";
    case TextEncoding::UTF16BigEndian:
        return "UTF-16BE";
    case TextEncoding::UTF16LittleEndian:
        return "UTF-16LE";
    case TextEncoding::MacRoman:
        return "MACINTOSH";
    }
    throw std::invalid_argument("no such text encoding");
}

/// An open iconv(3) conversion.
class Converter {
public:
    Converter(TextEncoding to, TextEncoding from)
        : _conversion(iconv_open(converterName(to), converterName(from)))
    {
        if (reinterpret_cast<std::intptr_t>(_conversion) == -1)
            throw std::system_error(errno, std::generic_category(),
                                    std::string("cannot convert text from ") + converterName(from) +
                                        " to " + converterName(to));
    }
    ~Converter() { iconv_close(_conversion); }
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;

    /// All of the input converted; nullopt when some of it cannot be.
    std::optional<std::string> convert(std::string_view input)
    {
        std::string result;
        char *next = const_cast<char *>(input.data()); // iconv() does not write there
        std::size_t left = input.size();
        while (left > 0) {
            char block[512];
            char *end = block;
            std::size_t room = sizeof block;
            const std::size_t inexact = iconv(_conversion, &next, &left, &end, &room);
            result.append(block, sizeof block - room);
            // A full block is the one failure to go on after. Inexact conversions are counted: a
            // character was replaced by a look-alike.
            if (inexact == static_cast<std::size_t>(-1) ? errno != E2BIG : inexact > 0)
                return std::nullopt;
        }
        return result;
    }

private:
    iconv_t _conversion;
};

} // namespace

std::optional<std::string> decodedText(std::string_view bytes, TextEncoding encoding)
{
    if (encoding == TextEncoding::UTF8)
        return isValidUTF8(bytes) ? std::optional<std::string>(bytes) : std::nullopt;
    return Converter(TextEncoding::UTF8, encoding).convert(bytes);
}

std::optional<std::string> encodedText(std::string_view text, TextEncoding encoding)
{
    if (encoding == TextEncoding::UTF8)
        return std::string(text);
    return Converter(encoding, TextEncoding::UTF8).convert(text);
}

} // namespace Platform
