#pragma once

#include "Commands.h"
#include "Watermarks.h"

#include <gtest/gtest.h>
#include <ostream>
#include <string>

// What tests of a watermark's places have in common, whatever the document is.

namespace Support {

struct PlaceExample {
    const char *name;
    const char *place;
    double angle = 0;
    double distance = 20;
    bool fitted = false;
};

inline void PrintTo(const PlaceExample &example, std::ostream *stream)
{
    *stream << example.name;
}

inline std::string nameOf(const testing::TestParamInfo<PlaceExample> &info)
{
    return info.param.name;
}

inline constexpr PlaceExample kPlaceExamples[] = {
    {"Centre", "centre"},
    {"CentreTurned", "centre", 30},
    {"Spot", "30%,60%", -90},
    {"TopLeft", "top-left"},
    {"Top", "top", 15, 0},
    {"TopRight", "top-right", 0, 40},
    {"Left", "left", 90},
    {"Right", "right", -90},
    {"BottomLeft", "bottom-left", 180},
    {"Bottom", "bottom"},
    {"BottomRight", "bottom-right", 45},
    {"Diagonal", "diagonal", 7},
    {"FittedAtTheTop", "top", 0, 15, true},
    {"FittedAndTurned", "60%,50%", 60, 15, true},
    {"FarFromTheEdge", "centre", 0, 5000, true},
    {"Tiled", "tiled", 25, 30},
};

/// Red, "Draft".
inline Watermark watermarkOf(const PlaceExample &example, bool above)
{
    Watermark watermark = {.above = above,
                           .font = "Helvetica",
                           .angle = example.angle,
                           .colour = {1, 0, 0},
                           .position = {},
                           .size = 24,
                           .text = "Draft"};
    watermark.place = textPlaceFromText(example.place).value();
    watermark.place->fitted |= example.fitted;
    watermark.place->distance = example.distance;
    return watermark;
}

/// The page has the text in each of its places, as far as that is on the page, and no other red.
inline void expectPlaces(const Watermark &watermark, const RenderedPage &page)
{
    const auto all = page.boxOf(kRed);
    ASSERT_TRUE(all) << "no watermark";
    Box wanted = {page.width(), page.height(), 0, 0};
    for (const Watermark &one : positioned(watermark, {page.width(), page.height()})) {
        const Box box = inkBoxOf(one);
        if (box.right < 0 || box.top < 0 || box.left > page.width() || box.bottom > page.height())
            continue;
        wanted = {std::max(0.0, std::min(wanted.left, box.left)),
                  std::max(0.0, std::min(wanted.bottom, box.bottom)),
                  std::min(page.width(), std::max(wanted.right, box.right)),
                  std::min(page.height(), std::max(wanted.top, box.top))};
    }
    EXPECT_NEAR(wanted.left, all->left, 1);
    EXPECT_NEAR(wanted.bottom, all->bottom, 1);
    EXPECT_NEAR(wanted.right, all->right, 1);
    EXPECT_NEAR(wanted.top, all->top, 1);
}

} // namespace Support
