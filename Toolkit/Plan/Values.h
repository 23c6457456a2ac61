#pragma once

#include "Commands.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// How the value of an option is read. The whole text must make the value: the empty text, blanks,
// signs of other notations and anything left over make the first five of these hand back nothing.
// Nothing depends on the locale.

/// A decimal number: an optional sign, digits with an optional point, no exponent.
/// @return nullopt also for one that is out of a double's range
std::optional<double> numberFromText(std::string_view text);

/// How many there are of something: digits alone, up to 1,000,000.
std::optional<std::uint64_t> countFromText(std::string_view text);

/// A decimal number with "pt", "mm" or "in" directly behind it, points without.
/// @return points, within 1,000,000 of 0
std::optional<double> lengthFromText(std::string_view text);

/// Two lengths with a comma between, each with a unit of its own or none.
std::optional<Point> positionFromText(std::string_view text);

/// One, three or four numbers from 0 to 1 (grey, RGB, CMYK) with a comma, blanks or both between.
std::optional<std::vector<double>> colourFromText(std::string_view text);

/// The text without its control characters (U+0000 to U+001F, U+007F to U+009F); perhaps empty.
/// @return nullopt for what is not UTF-8
std::optional<std::string> printableText(std::string_view text);
