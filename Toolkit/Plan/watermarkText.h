#pragma once

#include "Commands.h"
#include "TextMeasuring.h"

/// The watermark's text, set in its font and size, in points; neither turned nor placed yet. An
/// empty text has no outline, nor has one whose ink covers nothing.
/// @throws ToolkitError when there is no font at all to draw it with, or none for one of its
///         characters; the message has the code point of the first of those
Platform::ShapedText watermarkText(const Watermark &watermark);
