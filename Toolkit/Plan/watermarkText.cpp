#include "watermarkText.h"

#include "Ink.h"
#include "ToolkitError.h"

#include <fmt/format.h>

Platform::ShapedText watermarkText(const Watermark &watermark)
{
    auto text = Platform::shapeText(watermark.text, watermark.font, watermark.size);
    constexpr char kNoFont[] = "There is no font to draw the watermark with";
    if (!(text.ascent + text.descent > 0))
        throw ToolkitError(fmt::format("{}.", kNoFont));
    if (text.missing)
        throw ToolkitError(
            fmt::format("{}: U+{:04X}.", kNoFont, static_cast<std::uint32_t>(*text.missing)));
    if (inkOf(watermark).share == 0)
        text.outline.clear();
    return text;
}
