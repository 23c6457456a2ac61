#include "watermarkText.h"

#include "ToolkitError.h"

Platform::ShapedText watermarkText(const Watermark &watermark)
{
    auto text = Platform::shapeText(watermark.text, watermark.font, watermark.size);
    if (!(text.ascent + text.descent > 0))
        throw ToolkitError("There is no font to draw the watermark with.");
    return text;
}
