#include "watermarkText.h"

#include "Ink.h"
#include "ToolkitError.h"
#include "textOnPage.h"

#include <fmt/format.h>

WatermarkText::WatermarkText(const Watermark &watermark, std::uint64_t pages,
                             Platform::TextSetter &texts)
    : _watermark(watermark),
      _pages(pages),
      _differs(differsFromPageToPage(watermark, pages)),
      _texts(texts)
{
}

Platform::ShapedText WatermarkText::onPage(std::uint64_t page)
{
    auto text =
        _texts.shape(textOnPage(_watermark, page, _pages), _watermark.font, _watermark.size);
    constexpr char kNoFont[] = "There is no font to draw the watermark with";
    if (!(text.ascent + text.descent > 0))
        throw ToolkitError(fmt::format("{}.", kNoFont));
    if (text.missing)
        throw ToolkitError(
            fmt::format("{}: U+{:04X}.", kNoFont, static_cast<std::uint32_t>(*text.missing)));
    if (inkOf(_watermark).share == 0) {
        text.outline.clear();
        text.glyphs.clear();
    }
    return text;
}

std::vector<Platform::TextPathSegment> outlineOf(const Platform::ShapedGlyph &glyph,
                                                 const Platform::ShapedText &text)
{
    std::vector<Platform::TextPathSegment> outline;
    for (std::size_t i = glyph.begin; i < glyph.end; ++i) {
        outline.push_back(text.outline[i]);
        for (Platform::TextPoint &point : outline.back().points)
            point = {point.x - glyph.origin.x, point.y - glyph.origin.y};
    }
    return outline;
}
