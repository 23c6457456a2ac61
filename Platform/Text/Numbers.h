#pragma once

#include <cstdint>
#include <string_view>

namespace Platform {

// How a text is read as a number: leading white space is skipped, then as much is read as makes a
// number, and whatever follows is ignored. Nothing fails, and nothing depends on the locale.

/// An optional sign and decimal digits. No digits give 0; beyond the range, the nearest limit.
std::int64_t integerFromText(std::string_view text);

/// True when the first character behind an optional sign and any zeros is one of "YyTt1" to "9".
bool booleanFromText(std::string_view text);

/// An optional sign, decimal digits with an optional point, an optional exponent. No digits give
/// 0; beyond the range, an infinity of that sign. "inf", "nan" and hexadecimal are no numbers.
double doubleFromText(std::string_view text);

} // namespace Platform
