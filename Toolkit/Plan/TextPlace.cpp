#include "TextPlace.h"

#include "Values.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace {

using Platform::TextSize;

constexpr double kDegrees = std::numbers::pi / 180;
/// What of a page distances always leave.
constexpr double kLeastRoom = 0.1;
/// Rows of tiled texts on either side of the middle one, and texts of a row likewise.
constexpr double kMostTiles = 50;
/// Far beyond any page.
constexpr double kMostPercent = 1'000'000;

constexpr Point kCentre = {0.5, 0.5};
constexpr std::array kNames = {
    std::pair<std::string_view, TextPlace>{"centre", {.spot = kCentre}},
    std::pair<std::string_view, TextPlace>{
        "diagonal", {.spot = kCentre, .alongDiagonal = true, .fitted = true}},
    std::pair<std::string_view, TextPlace>{"tiled", {.spot = kCentre, .tiled = true}},
    std::pair<std::string_view, TextPlace>{"top-left", {.spot = {0, 1}, .inwards = {1, -1}}},
    std::pair<std::string_view, TextPlace>{"top", {.spot = {0.5, 1}, .inwards = {0, -1}}},
    std::pair<std::string_view, TextPlace>{"top-right", {.spot = {1, 1}, .inwards = {-1, -1}}},
    std::pair<std::string_view, TextPlace>{"left", {.spot = {0, 0.5}, .inwards = {1, 0}}},
    std::pair<std::string_view, TextPlace>{"right", {.spot = {1, 0.5}, .inwards = {-1, 0}}},
    std::pair<std::string_view, TextPlace>{"bottom-left", {.spot = {0, 0}, .inwards = {1, 1}}},
    std::pair<std::string_view, TextPlace>{"bottom", {.spot = {0.5, 0}, .inwards = {0, 1}}},
    std::pair<std::string_view, TextPlace>{"bottom-right", {.spot = {1, 0}, .inwards = {-1, 1}}},
};

/// "25%" is 0.25.
std::optional<double> partFromText(std::string_view text)
{
    if (!text.ends_with('%'))
        return std::nullopt;
    text.remove_suffix(1);
    const auto percent = numberFromText(text);
    if (!percent || std::abs(*percent) > kMostPercent)
        return std::nullopt;
    return *percent / 100;
}

/// The upright rectangle around a turned box.
TextSize around(const TextSize &box, double degrees)
{
    const double c = std::abs(std::cos(degrees * kDegrees));
    const double s = std::abs(std::sin(degrees * kDegrees));
    return {box.width * c + box.height * s, box.width * s + box.height * c};
}

double room(double extent, double distance)
{
    return std::max(extent - 2 * distance, extent * kLeastRoom);
}

/// Lays the box of one watermark on one page.
class Layout {
public:
    Layout(const Watermark &watermark, const TextPlace &place, const TextSize &box,
           const PageSize &page);

    std::vector<PlacedText> texts() const { return _place.tiled ? tiles() : std::vector{one()}; }

private:
    PlacedText one() const;
    std::vector<PlacedText> tiles() const;
    bool meetsPage(Point middle) const;
    PlacedText centredOn(Point middle) const;
    /// The point so far along the text and so far up from it, from the middle of the page.
    Point turned(double along, double up) const;

    const TextPlace &_place;
    const PageSize &_page;
    double _angle; ///< degrees
    double _scale = 1;
    TextSize _box;    ///< scaled
    TextSize _around; ///< of the scaled box
};

Layout::Layout(const Watermark &watermark, const TextPlace &place, const TextSize &box,
               const PageSize &page)
    : _place(place),
      _page(page),
      _angle(place.alongDiagonal ? std::atan2(page.height, page.width) / kDegrees : watermark.angle)
{
    _around = around(box, _angle);
    if (place.fitted)
        _scale = std::min(room(page.width, place.distance) / _around.width,
                          room(page.height, place.distance) / _around.height);
    _box = {box.width * _scale, box.height * _scale};
    _around = {_around.width * _scale, _around.height * _scale};
}

PlacedText Layout::one() const
{
    const auto &[spot, inwards, alongDiagonal, tiled, fitted, distance] = _place;
    return centredOn({_page.width * spot.x + inwards.x * (distance + _around.width / 2),
                      _page.height * spot.y + inwards.y * (distance + _around.height / 2)});
}

std::vector<PlacedText> Layout::tiles() const
{
    const double reach =
        (std::hypot(_page.width, _page.height) + std::hypot(_box.width, _box.height)) / 2;
    const double pitch = std::max(_box.width + _place.distance, reach / kMostTiles);
    const double rise = std::max(_box.height + _place.distance, reach / kMostTiles);
    const int columns = static_cast<int>(std::ceil(reach / pitch));
    const int rows = static_cast<int>(std::ceil(reach / rise));
    std::vector<PlacedText> tiles;
    for (int row = -rows; row <= rows; ++row) {
        const double shift = row % 2 == 0 ? 0 : pitch / 2;
        for (int column = -columns; column <= columns; ++column) {
            const Point middle = turned(column * pitch + shift, row * rise);
            if (meetsPage(middle))
                tiles.push_back(centredOn(middle));
        }
    }
    return tiles;
}

bool Layout::meetsPage(Point middle) const
{
    return std::abs(middle.x - _page.width / 2) < (_page.width + _around.width) / 2 &&
           std::abs(middle.y - _page.height / 2) < (_page.height + _around.height) / 2;
}

PlacedText Layout::centredOn(Point middle) const
{
    const double c = std::cos(_angle * kDegrees);
    const double s = std::sin(_angle * kDegrees);
    return {.corner = {middle.x - (_box.width * c - _box.height * s) / 2,
                       middle.y - (_box.width * s + _box.height * c) / 2},
            .angle = _angle,
            .scale = _scale};
}

Point Layout::turned(double along, double up) const
{
    const double c = std::cos(_angle * kDegrees);
    const double s = std::sin(_angle * kDegrees);
    return {_page.width / 2 + along * c - up * s, _page.height / 2 + along * s + up * c};
}

} // namespace

std::optional<TextPlace> textPlaceFromText(std::string_view text)
{
    const auto *const named =
        std::ranges::find(kNames, text, &std::pair<std::string_view, TextPlace>::first);
    if (named != kNames.end())
        return named->second;
    const auto comma = text.find(',');
    if (comma == std::string_view::npos)
        return std::nullopt;
    const auto x = partFromText(text.substr(0, comma));
    const auto y = partFromText(text.substr(comma + 1));
    return x && y ? std::optional(TextPlace{.spot = {*x, *y}}) : std::nullopt;
}

std::vector<PlacedText> placedTexts(const Watermark &watermark, const TextSize &box,
                                    const PageSize &page)
{
    if (!watermark.place)
        return {{.corner = watermark.position, .angle = watermark.angle, .scale = 1}};
    return Layout(watermark, *watermark.place, box, page).texts();
}
