#include "Numbers.h"

#include "Text.h"

#include <charconv>
#include <clocale>
#include <cstdlib>
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
        // Zero or infinite? from_chars() does not tell, strtod() does.
        static const locale_t kPlainLocale = newlocale(LC_ALL_MASK, "C", nullptr);
        number = strtod_l(std::string(rest.data(), result.ptr).c_str(), nullptr, kPlainLocale);
    }
    return negative ? -number : number;
}

} // namespace Platform
