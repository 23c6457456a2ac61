// A line with a number, a line with a text, and a format for them.

#include "ObjectFormat.h"

#include "Fuzzing.h"
#include "Numbers.h"

#include <cctype>
#include <cstdio>
#include <stdexcept>
#include <vector>

using Platform::objectFormat;

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Whether the format may ask for a width that fills the memory. All formats are the program's own:
/// that they are sensible is their writer's part.
bool asksForMuch(std::string_view format)
{
    std::size_t digits = 0;
    for (const char c : format) {
        digits = isDigit(c) ? digits + 1 : 0;
        if (digits > 3 || c == '*')
            return true;
    }
    return false;
}

/// What the format makes of the texts when all its conversions are "%@" and "%%".
/// @return nullopt for other formats and for those that ask for too much
std::optional<std::string> modelOfTexts(std::string_view format,
                                        const std::vector<std::string> &texts)
{
    std::string result;
    std::size_t next = 0;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] != '%') {
            result += format[i];
            continue;
        }
        ++i;
        if (i == format.size())
            return std::nullopt;
        if (format[i] == '%')
            result += '%';
        else if (format[i] == '@' && next < texts.size())
            result += texts[next++];
        else
            return std::nullopt;
    }
    return result;
}

template <class... Arguments>
std::optional<std::string> tryFormat(std::string_view format, const Arguments &...arguments)
{
    try {
        return objectFormat(format, arguments...);
    } catch (const std::invalid_argument &) {
        return std::nullopt;
    }
}

/// The C library's view of one conversion of one number. Both types are wide enough that no length
/// is lost on the way.
template <class Number>
std::string printed(const std::string &conversion, Number number)
{
    std::string text(2000, '\0');
    const int length = std::snprintf(text.data(), text.size(), conversion.c_str(), number);
    Fuzz::require(length >= 0 && static_cast<std::size_t>(length) < text.size(),
                  "the width is bounded");
    text.resize(static_cast<std::size_t>(length));
    return text;
}

void tryTexts(std::string_view format, const std::string &text)
{
    const auto result = tryFormat(format, text, "second", "third");
    if (const auto expected = modelOfTexts(format, {text, "second", "third"})) {
        Fuzz::require(result.has_value(), "a right format gives a text");
        Fuzz::requireEqual(*expected, *result, "texts are inserted whole, in order");
    }
}

/// Width and precision from the format's first digits, in conversions that the C library has too.
void tryNumbers(std::string_view format, std::int64_t number)
{
    std::string width;
    for (const char c : format) {
        if (isDigit(c) && width.size() < 2 && (c != '0' || !width.empty()))
            width += c;
    }
    const auto real = static_cast<double>(number) / 1000;
    for (const std::string &flags : {"", "-", "0", "+"}) {
        const std::string start = "%" + flags + width;
        Fuzz::requireEqual(printed(start + "ld", number), objectFormat(start + "ld", number),
                           "an integer is printed as printf does it");
        Fuzz::requireEqual(printed(start + "f", real), objectFormat(start + "f", real),
                           "a number is printed as printf does it");
    }
    const auto count = static_cast<unsigned long>(number);
    Fuzz::requireEqual(printed("%" + width + "lu", count), objectFormat("%" + width + "lu", count),
                       "a count is printed as printf does it");
    const std::string precision = "%." + (width.empty() ? "0" : width) + "f";
    Fuzz::requireEqual(printed(precision, real), objectFormat(precision, real),
                       "a precision counts as with printf");
}

} // namespace

void Fuzz::tryInput(std::string_view input)
{
    const auto number = Platform::integerFromText(takeLine(input));
    const std::string text(takeLine(input));
    if (asksForMuch(input))
        return;
    tryTexts(input, text);
    tryNumbers(input, number);
    tryFormat(input, text, number, static_cast<unsigned long>(number), static_cast<double>(number),
              std::optional<std::string>());
}
