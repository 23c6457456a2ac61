#pragma once

#include "Commands.h"
#include "PageSizes.h"

#include <cstddef>
#include <optional>
#include <string>

// How the pages of a booklet stand on its sheets, whatever the document's format. A sheet lies on
// its long edge here: its left and its right half carry a page each, on both sides.
//
// Sheets that are folded one in the other are a signature; a thick booklet has several of them, one
// behind the other. All have as many sheets as the booklet asks for, but for the last one, which
// has what the pages that are left need.

/// An upright box in points, its lower left corner and its extent.
struct Rectangle {
    double x;
    double y;
    double width;
    double height;
};

/// One side of a sheet. Pages are counted from 1; nullopt is a half that stays blank.
struct SheetSide {
    std::optional<std::size_t> left;
    std::optional<std::size_t> right;
    std::size_t depth;  ///< how many sheets of the signature lie around this one
    bool endsSignature; ///< it is the back of the innermost sheet
};

/// A sheet lying on its long edge, and where pages may stand on it.
struct SheetLayout {
    double width;  ///< the longer edge
    double height; ///< the shorter edge
    Rectangle left;
    Rectangle right;
};

/// A page's place: it is scaled, then turned, then its own lower left corner is put to (x, y).
struct Placement {
    double scale;
    double x;
    double y;
    int turn = 0; ///< degrees, counter-clockwise: 0, 90 or 270
};

/// How many sides the booklet has: two for each sheet of four pages, the last one filled up. 0 for
/// no pages.
std::size_t bookletSideCount(std::size_t pages);

/// What stands on a side.
/// @param side   counted from 0, below bookletSideCount(): even ones are fronts, each followed by
///               its back
/// @param pages  of the document, not counting those that fill the last sheet
SheetSide bookletSide(std::size_t side, std::size_t pages, const Booklet &booklet);

/// The size of the booklet's sheets, upright or not.
/// @param ppdPath  @see pageSizeNamed()
/// @throws ToolkitError for a name that nobody knows, and when the PPD cannot be read
PageSize sheetSize(const Booklet &booklet, const std::string &ppdPath);

/// The places as the margins alone make them, whatever creep there is.
/// @param sheet  upright or not, it is laid on its long edge
/// @throws ToolkitError when the margins leave less than 36 points for a page in either direction
SheetLayout sheetLayout(PageSize sheet, const Booklet &booklet);

/// The places on one sheet of a signature.
///
/// On all sheets of the booklet they are narrower, at the fold, by what the innermost sheet of the
/// fullest signature sticks out of the outermost one; and on each sheet they are moved towards the
/// fold, on both sides, by what it sticks out itself. So the pages lie one above the other once the
/// sheets are folded, the margins stay clear on each of them, and with everything cut to the
/// outermost sheet the outer margin is the same on all. Without creep they are those of the layout.
/// @param layout  from sheetLayout()
/// @param depth   of the sheet (SheetSide)
/// @param pages   of the document
/// @throws ToolkitError when that leaves less than 36 points for a page's width
SheetLayout layoutAtDepth(const SheetLayout &layout, std::size_t depth, std::size_t pages,
                          const Booklet &booklet);

/// How far landscape pages are turned in the booklet: counter-clockwise in one that is read from
/// left to right, clockwise in the other, on both halves. With the booklet turned back they are
/// upright, and the page that is read first stands on top.
/// @return as Placement has it; 0 when they are not turned
int turnOfLandscapePages(const Booklet &booklet);

/// The page as large as the area allows, centred in it.
/// @param page  both above 0; in points, as the area is
/// @param turn  from turnOfLandscapePages(): a page that is wider than high is turned so in an area
///              that is higher than wide; all others are upright
Placement placementInArea(PageSize page, const Rectangle &area, int turn = 0);
