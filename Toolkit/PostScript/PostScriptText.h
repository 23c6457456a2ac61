#pragma once

#include <span>
#include <string>

/// A number as PostScript reads it: up to four digits behind the point, no exponent.
std::string postScriptNumber(double number);

/// Numbers with a blank between.
std::string postScriptNumbers(std::span<const double> numbers);
