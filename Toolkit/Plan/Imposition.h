#pragma once

#include "Commands.h"
#include "PageSizes.h"

#include <cstdint>
#include <optional>
#include <string>

// How the pages of a booklet stand on its sheets, whatever the document's format. A sheet lies on
// its long edge here: its left and its right half carry a page each, on both sides.

/// An upright box in points, its lower left corner and its extent.
struct Rectangle {
    double x;
    double y;
    double width;
    double height;
};

/// One side of a sheet. Pages are counted from 1; nullopt is a half that stays blank.
struct SheetSide {
    std::optional<std::uint64_t> left;
    std::optional<std::uint64_t> right;
};

/// A sheet lying on its long edge, and where pages may stand on it.
struct SheetLayout {
    double width;  ///< the longer edge
    double height; ///< the shorter edge
    Rectangle left;
    Rectangle right;
};

/// A page's place: it is scaled, then its lower left corner is put to (x, y).
struct Placement {
    double scale;
    double x;
    double y;
};

/// How many sides the booklet has: two for each sheet of four pages, the last one filled up. 0 for
/// no pages.
std::uint64_t bookletSideCount(std::uint64_t pages);

/// What stands on a side.
/// @param side   counted from 0, below bookletSideCount(): even ones are fronts, each followed by
///               its back
/// @param pages  of the document, not counting those that fill the last sheet
SheetSide bookletSide(std::uint64_t side, std::uint64_t pages, Ordering ordering);

/// The size of the booklet's sheets, upright or not.
/// @param ppdPath  @see pageSizeNamed()
/// @throws ToolkitError for a name that nobody knows, and when the PPD cannot be read
PageSize sheetSize(const Booklet &booklet, const std::string &ppdPath);

/// @param sheet  upright or not, it is laid on its long edge
/// @throws ToolkitError when the margins leave less than 36 points for a page in either direction
SheetLayout sheetLayout(PageSize sheet, const Booklet &booklet);

/// The page as large as the area allows, centred in it, not turned.
/// @param page  both above 0; in points, as the area is
Placement placementInArea(PageSize page, const Rectangle &area);
