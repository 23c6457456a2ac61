#pragma once

#include <cstdint>
#include <string_view>

namespace Platform {

// How a text is read as a number: leading white space (trimmedText()'s) is skipped, then as much is
// read as makes a number, and whatever follows is ignored. Of a text that is not UTF-8, white space
// is not skipped, and so none may lead. Nothing fails, and nothing depends on the locale.

/// An optional sign and decimal digits. No digits give 0; beyond the range, the nearest limit.
std::int64_t integerFromText(std::string_view text);

/// Whether the first character behind an optional sign and any zeros is "Y", "y", "T", "t" or a
/// digit from 1 to 9; false for the empty text.
bool booleanFromText(std::string_view text);

/// An optional sign, decimal digits with an optional point, an optional exponent. No digits give
/// 0; beyond the range, an infinity of that sign; too close to 0, a 0. "inf", "nan" and hexadecimal
/// are no numbers.
double doubleFromText(std::string_view text);

} // namespace Platform
