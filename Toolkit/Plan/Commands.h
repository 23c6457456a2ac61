#pragma once

#include "PageSelection.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

// What the toolkit is asked to do, as plain values. Lengths are points (1/72 inch). Of all rooms of
// the toolkit: one thread; what is given by pointer or reference stays the caller's.

/// A point or a vector on a page, x to the right, y up.
struct Point {
    double x;
    double y;
};

/// Where a text lies on a page, told by the page's own size and not in points from its corner.
struct TextPlace {
    Point spot;             ///< parts of width and height: 0,0 is lower left, 1,1 upper right
    Point inwards = {0, 0}; ///< x: 1 right of the spot, the distance away from it; -1 left of it;
                            ///< 0 centred on it. y: the same upwards
    bool alongDiagonal = false; ///< turned as the diagonal that rises to the right, whatever angle
    bool tiled = false;         ///< again and again over the page, one of them on the spot
    bool fitted = false;        ///< as wide as the page has room, in the place of the size
    double distance = 36;       ///< clear strip at the edges, clear space between tiled texts
};

/// A text on the pages.
struct Watermark {
    bool above;                 ///< on top of the page's own marks, else beneath them
    std::string font;           ///< PostScript name of the font
    double angle;               ///< degrees, counter-clockwise on the page as it is read
    std::vector<double> colour; ///< 1 (grey), 3 (RGB) or 4 (CMYK) components from 0 to 1
    Point position;             ///< lower left corner of the text's box
    double size;                ///< of the font, above 0
    std::string text;           ///< UTF-8 without control characters, perhaps empty
    PageSelection pages = {};   ///< those that get it
    bool overprint = false;     ///< lets the marks beneath show through; only with above
    /// Where the text lies, if it has no position.
    std::optional<TextPlace> place = {};
    bool hasPlaceholders = false; ///< the text has some, see textOnPage()
};

/// Which half of a sheet is read first.
enum class Ordering { LeftToRight, RightToLeft };

/// Two pages on each side of a sheet, for folding and stapling through the fold.
struct Booklet {
    std::string pageSize; ///< name of the sheet's page size
    double centreMargin;  ///< whole width of the clear strip along the fold, not below 0
    double outerMargin;   ///< width of the clear strip at the other three edges, not below 0
    Ordering ordering;
    std::uint64_t signatureSheets = 0; ///< folded one in the other; 0 for all of them
    double creep = 0;           ///< how far a sheet sticks out of the one around it, not below 0
    bool turnLandscape = false; ///< landscape pages are turned to fill upright halves
};

/// What a cover carries; an unknown word is no cover.
enum class CoverStyle { None, NoPrint, Print1, Print };

/// One cover sheet.
struct Cover {
    CoverStyle style;
    std::string media;  ///< choice of the PPD option "MediaType", "None" for no request
    std::string source; ///< the toolkit's name of the paper source
};

/// Cover sheets around the job.
struct CoverPages {
    Cover back;
    Cover front;
    std::string source; ///< paper source of the job itself
    std::string media;  ///< media of the job itself
    std::string duplex; ///< "none", "tumble", "notumble" or the PPD's own word
    /// Whether a PDF document, which cannot choose trays, has covers all the same.
    bool inPDF = false;
};

/// One command with its options.
using Command = std::variant<Watermark, Booklet, CoverPages>;
