#pragma once

#include "Commands.h"

#include <vector>

/// What a text is drawn with.
struct Ink {
    std::vector<double> colour; ///< 1 (grey), 3 (RGB) or 4 (CMYK) components from 0 to 1
    double share;               ///< of the area that it covers, from 0 to 1
};

/// The watermark's colour over all of its area, but for one that lets the page show through: that
/// is the pure colour, without any white in it, and covers so much that it comes out as the colour
/// on white paper, a quarter of the area at most. Grey is black, and so leaves black marks as they
/// are. White covers nothing then.
Ink inkOf(const Watermark &watermark);
