#pragma once

#include <span>
#include <string>

/// A number as PostScript reads it: up to four digits behind the point, no exponent, no -0.
/// @param number  finite
std::string postScriptNumber(double number);

/// Numbers with a blank between; empty for none.
std::string postScriptNumbers(std::span<const double> numbers);
