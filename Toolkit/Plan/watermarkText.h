#pragma once

#include "Commands.h"
#include "TextMeasuring.h"

/// The watermark's text, set in its font and size, in points; neither turned nor placed yet. An
/// empty text has no outline.
/// @throws ToolkitError when there is no font at all to draw it with
Platform::ShapedText watermarkText(const Watermark &watermark);
