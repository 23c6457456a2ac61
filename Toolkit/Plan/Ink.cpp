#include "Ink.h"

#include <algorithm>
#include <cmath>

namespace {

/// Small print stays easy to read beneath so much of any colour.
constexpr double kLargestShare = 0.25;

} // namespace

Ink inkOf(const Watermark &watermark)
{
    if (!watermark.overprint)
        return {watermark.colour, 1};

    const double paper = watermark.colour.size() == 4 ? 0 : 1;
    double strength = 0;
    for (const double component : watermark.colour)
        strength = std::max(strength, std::abs(component - paper));
    if (strength == 0)
        return {watermark.colour, 0};

    Ink ink = {watermark.colour, std::min(strength, kLargestShare)};
    for (double &component : ink.colour)
        component = paper + (component - paper) / strength;
    return ink;
}
