#pragma once

#include "TextSetter.h"

#include <string>
#include <vector>

// Outlines as a content stream has them.

/// A number: a fourth decimal of a point is far below what any printer resolves.
std::string pdfNumber(double value);

/// How many points a segment has.
std::size_t pointsOf(const Platform::TextPathSegment &segment);

/// The operators that fill an outline, whole lines.
std::string pathOperators(const std::vector<Platform::TextPathSegment> &outline);
