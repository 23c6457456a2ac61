#pragma once

#include "Commands.h"
#include "Rendering.h"
#include "TextMeasuring.h"
#include "TextPlace.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

namespace Support {

/// The box around the ink of a watermark on the page as it is read, from its outline: the corner
/// of the text's box in its place, the baseline one descent above, all of it turned.
inline Box inkBoxOf(const Watermark &watermark)
{
    const auto text = Platform::shapeText(watermark.text, watermark.font, watermark.size);
    const double angle = watermark.angle * std::numbers::pi / 180;
    constexpr double kFar = std::numeric_limits<double>::max();
    Box box = {kFar, kFar, -kFar, -kFar};
    Platform::TextPoint pen;
    const auto include = [&](Platform::TextPoint point) {
        const double y = point.y + text.descent;
        const double turnedX =
            watermark.position.x + point.x * std::cos(angle) - y * std::sin(angle);
        const double turnedY =
            watermark.position.y + point.x * std::sin(angle) + y * std::cos(angle);
        box = {std::min(box.left, turnedX), std::min(box.bottom, turnedY),
               std::max(box.right, turnedX), std::max(box.top, turnedY)};
    };
    for (const auto &[kind, points] : text.outline) {
        using Kind = Platform::TextPathSegment::Kind;
        if (kind == Kind::Close)
            continue;
        const bool isCurve = kind == Kind::Curve;
        for (double t = 0.125; isCurve && t < 1; t += 0.125) {
            const auto at = [t](double a, double b, double c, double d) {
                const double u = 1 - t;
                return u * u * u * a + 3 * u * u * t * b + 3 * u * t * t * c + t * t * t * d;
            };
            include({at(pen.x, points[0].x, points[1].x, points[2].x),
                     at(pen.y, points[0].y, points[1].y, points[2].y)});
        }
        pen = points[isCurve ? 2 : 0];
        include(pen);
    }
    return box;
}

/// What the watermark is on a landscape page on portrait paper of that size, on the page as it is
/// read: its middle is at the same part of the width and of the height as on an upright page.
inline Watermark onLandscapePage(Watermark watermark, double paperWidth, double paperHeight)
{
    const auto box = Platform::shapeText(watermark.text, watermark.font, watermark.size).size();
    const double angle = watermark.angle * std::numbers::pi / 180;
    const double middleX =
        watermark.position.x + (box.width * std::cos(angle) - box.height * std::sin(angle)) / 2;
    const double middleY =
        watermark.position.y + (box.width * std::sin(angle) + box.height * std::cos(angle)) / 2;
    watermark.position.x += middleX / paperWidth * paperHeight - middleX;
    watermark.position.y += middleY / paperHeight * paperWidth - middleY;
    return watermark;
}

/// Watermarks with a position that together are what one with a place is on such a page.
inline std::vector<Watermark> positioned(Watermark watermark, const PageSize &page)
{
    const auto text = Platform::shapeText(watermark.text, watermark.font, watermark.size);
    std::vector<Watermark> watermarks;
    for (const PlacedText &place : placedTexts(watermark, text.size(), page)) {
        watermarks.push_back(watermark);
        watermarks.back().place = {};
        watermarks.back().position = place.corner;
        watermarks.back().angle = place.angle;
        watermarks.back().size = watermark.size * place.scale;
    }
    return watermarks;
}

/// How many pixels a red watermark has changed beside its text. Above a page's marks the text takes
/// the place of everything, below them that of white only.
/// @throws std::invalid_argument when the page has another size with the watermark than without
inline std::size_t changesBesideText(const RenderedPage &before, const RenderedPage &after,
                                     bool above)
{
    return after.countChanges(before, [above](Colour was, Colour is) {
        const bool isText = is == kRed && (above || was == kWhite);
        return is != was && !isText;
    });
}

} // namespace Support
