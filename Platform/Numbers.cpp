#include "Numbers.h"

#include "Text.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <system_error>

namespace Platform {
namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Takes an optional sign off the front of the text.
/// @return whether it was a minus
bool takeSign(std::string_view &text)
{
    if (text.empty() || (text.front() != '+' && text.front() != '-'))
        return false;
    const bool negative = text.front() == '-';
    text.remove_prefix(1);
    return negative;
}

} // namespace

std::int64_t integerFromText(std::string_view text)
{
    const std::string trimmed = trimmedText(text);
    std::string_view rest = trimmed;
    const bool negative = takeSign(rest);
    if (rest.empty() || !isDigit(rest.front()))
        return 0;
    // The sign goes along, so that the lowest number is read without overflow.
    const std::string signedText = (negative ? "-" : "") + std::string(rest);
    std::int64_t number = 0;
    const auto result =
        std::from_chars(signedText.data(), signedText.data() + signedText.size(), number);
    if (result.ec == std::errc::result_out_of_range)
        return negative ? std::numeric_limits<std::int64_t>::min()
                        : std::numeric_limits<std::int64_t>::max();
    return number;
}

bool booleanFromText(std::string_view text)
{
    const std::string trimmed = trimmedText(text);
    std::string_view rest = trimmed;
    takeSign(rest);
    const auto first = rest.find_first_not_of('0');
    return first != std::string_view::npos &&
           std::string_view("YyTt123456789").find(rest[first]) != std::string_view::npos;
}

double doubleFromText(std::string_view text)
{
    const std::string trimmed = trimmedText(text);
    std::string_view rest = trimmed;
    const bool negative = takeSign(rest);
    const bool startsNumber =
        !rest.empty() &&
        (isDigit(rest[0]) || (rest[0] == '.' && rest.size() > 1 && isDigit(rest[1])));
    if (!startsNumber)
        return 0;
    double number = 0;
    const auto result = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    if (result.ec == std::errc::result_out_of_range) {
        // Too small is 0, too large is infinite: the exponent's sign tells which.
        const std::string_view read(rest.data(),
                                    static_cast<std::size_t>(result.ptr - rest.data()));
        number =
            read.find("e-") == std::string_view::npos && read.find("E-") == std::string_view::npos
                ? std::numeric_limits<double>::infinity()
                : 0;
    }
    return negative ? -number : number;
}

} // namespace Platform
