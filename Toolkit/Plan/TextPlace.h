#pragma once

#include "Commands.h"
#include "PageSizes.h"
#include "TextMeasuring.h"

#include <optional>
#include <string_view>
#include <vector>

/// A place by its name: "centre", "diagonal" (which is fitted, too), "tiled", "top-left",
/// "top", "top-right", "left", "right", "bottom-left", "bottom" and "bottom-right"; or by the spot
/// that the text is centred on, "X%,Y%" of the page's width and height from its lower left corner.
/// @return nullopt for any other text
std::optional<TextPlace> textPlaceFromText(std::string_view text);

/// One text on a page.
struct PlacedText {
    Point corner; ///< lower left corner of its box, in points from that of the page
    double angle; ///< degrees, counter-clockwise, about the corner
    double scale; ///< of the box in either direction, above 0
};

/// Where the watermark's text comes on a page, perhaps more than once.
///
/// A watermark with a place is turned about the middle of its box, and what counts for its
/// distance from the edges is the upright rectangle around the turned box. A fitted one is as wide
/// as the page less the distances, or as high if that makes it smaller; distances take no more than
/// nine tenths of the page. Tiled ones lie in rows along the text, each second row moved by half a
/// text, no more than 101 rows or texts in a row; those that miss the page are left out.
/// (WatermarkPlace.ps has the same rules for pages whose size only the interpreter knows.)
/// @param box   the text's at the watermark's size, its height above 0
/// @param page  as it is read
std::vector<PlacedText> placedTexts(const Watermark &watermark, const Platform::TextSize &box,
                                    const PageSize &page);
