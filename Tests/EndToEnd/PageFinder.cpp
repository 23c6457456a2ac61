#include "PageFinder.h"

#include "DeviceLog.h"
#include "PrivateScheduler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

using Support::lpOption;

namespace {

constexpr double kPixel = 72 / kAfar; ///< points
constexpr std::size_t kColumns = 148;
constexpr double kHalf = 595.5; ///< of an A3 sheet, in points

/// @param colourAt  the colour at a place of the page, from its lower left corner
template <class ColourAt>
PageLook lookOf(const ColourAt &colourAt)
{
    PageLook look;
    for (std::size_t i = 0; i < look.size(); ++i) {
        const Support::Point place = {(static_cast<double>(i % kColumns) + 0.5) * kPixel,
                                      (static_cast<double>(i / kColumns) + 0.5) * kPixel};
        look[i] = colourAt(place).red < 128;
    }
    return look;
}

} // namespace

Support::Rendering renderedFromAfar(const std::string &document)
{
    return Support::renderText(
        document,
        {.resolution = kAfar, .smooth = true, .arguments = Support::deviceLogArguments()});
}

PageLook BookletSide::look(bool right) const
{
    return lookOf([&](Support::Point place) { return colourAt(right, place); });
}

bool BookletSide::isMarked(bool right) const
{
    bool isMarked = false;
    for (double y = 30; y < 420; y += kPixel) {
        const auto colour = colourAt(right, {kHalf / 2, y});
        isMarked = isMarked || (colour.red > 200 && colour.green < 100);
    }
    return isMarked;
}

Support::Colour BookletSide::colourAt(bool right, Support::Point place) const
{
    const double x = place.x + (right ? kHalf : 0);
    return _page.colourAt(_stand == Turned ? Support::Point{_page.width() - place.y, x}
                                           : Support::Point{x, place.y});
}

PageFinder::PageFinder(const std::string &document)
{
    for (const Support::RenderedPage &page : renderedFromAfar(document).pages)
        _looks.push_back(lookOf([&](Support::Point place) { return page.colourAt(place); }));
}

const PageFinder &PageFinder::of(const std::string &path)
{
    static std::map<std::string, PageFinder> finders;
    const auto known = finders.find(path);
    return known != finders.end()
               ? known->second
               : finders.emplace(path, PageFinder(Support::readFile(path))).first->second;
}

std::size_t PageFinder::numberOf(const PageLook &look) const
{
    if (look.none())
        return 0;
    // A chain may have set the page anew, a pixel beside where it was.
    std::vector<PageLook> places = {look};
    for (const std::size_t shift : {std::size_t{1}, kColumns - 1, kColumns, kColumns + 1})
        places.insert(places.end(), {look << shift, look >> shift});
    const auto distance = [&](const PageLook &page) {
        std::size_t least = page.size();
        for (const PageLook &place : places)
            least = std::min(least, (page ^ place).count());
        return least;
    };
    const auto best = std::ranges::min_element(_looks, {}, distance);
    return static_cast<std::size_t>(best - _looks.begin()) + 1;
}

void PageFinder::expectSideOfBooklet(std::size_t at, const BookletSide &side) const
{
    // Its early pages are on the right of the fronts and on the left of the backs.
    const std::size_t padded = (_looks.size() + 3) / 4 * 4;
    const bool isFront = at % 2 == 0;
    for (const bool right : {false, true}) {
        const std::size_t place = right == isFront ? at + 1 : padded - at;
        const std::size_t expected = place <= _looks.size() ? place : 0;
        EXPECT_EQ(expected, numberOf(side.look(right))) << "right: " << right;
        EXPECT_EQ(expected != 0, side.isMarked(right)) << "right: " << right;
    }
}

std::vector<std::string> redWatermark()
{
    return {lpOption("com.kalmira.pde.watermark.text", "DRAFT"),
            lpOption("com.kalmira.pde.watermark.font", "Helvetica-Bold"),
            lpOption("com.kalmira.pde.watermark.color", "1,0,0"),
            lpOption("com.kalmira.pde.watermark.size", "96"),
            lpOption("com.kalmira.pde.watermark.y", "25")};
}
