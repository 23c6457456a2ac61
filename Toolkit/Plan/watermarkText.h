#pragma once

#include "Commands.h"
#include "TextSetter.h"

#include <cstdint>

/// What a watermark says on the pages of a document, set in its font and size, in points; neither
/// turned nor placed yet. An empty text has no outline, nor has one whose ink covers nothing.
class WatermarkText {
public:
    /// @param watermark  stays the caller's and outlives this object
    /// @param pages      how many the document has
    /// @param texts      likewise
    WatermarkText(const Watermark &watermark, std::uint64_t pages, Platform::TextSetter &texts);

    /// Whether it is not the same on all pages.
    bool differs() const { return _differs; }

    /// @param page  from 1
    /// @throws ToolkitError when there is no font at all to draw it with, or none for one of its
    ///         characters; the message has the code point of the first of those
    /// @throws Platform::TextSettingError
    Platform::ShapedText onPage(std::uint64_t page);

private:
    const Watermark &_watermark;
    std::uint64_t _pages;
    bool _differs;
    Platform::TextSetter &_texts;
};

/// The segments of a glyph of the text, as they lie about its origin: the same for the same glyph
/// wherever it stands.
std::vector<Platform::TextPathSegment> outlineOf(const Platform::ShapedGlyph &glyph,
                                                 const Platform::ShapedText &text);
