#pragma once

#include "Commands.h"
#include "TextSetter.h"

#include <string>
#include <vector>

/// How the text of a free text annotation looks (ISO 32000, 12.7.3.3).
struct TextAppearance {
    double size = 12;                 ///< of the font, in points, above 0
    std::vector<double> colour = {0}; ///< 1, 3 or 4 components: grey, RGB, CMYK
};

/// What a default appearance string says ("/Helv 12 Tf 0 0 1 rg"); what it does not say, or in a
/// way that makes no sense, is as above. A size of 0, which leaves it to the reader, is none.
TextAppearance textAppearance(const std::string &defaultAppearance);

/// A line of text and where its baseline starts.
struct TextLine {
    Platform::ShapedText text;
    Point start;
};

/// Sets a text in a box: in lines that are no wider, as many as fit in it, the first one at its
/// top. The font is Helvetica, of the size that is given or as much smaller as the text needs, down
/// to a size that nobody reads: what does not fit then leaves the box.
/// @param texts    sets them; stays the caller's
/// @param text     UTF-8, with line ends where it has to have them
/// @param width    in points, as height is; any value
/// @param shares   of a line's free width that stand in front of it: 0, 0.5 or 1
/// @return places from the box's lower left corner
/// @throws ToolkitError when there is no font, or none that has a character of the text
/// @throws Platform::TextSettingError
std::vector<TextLine> linesInBox(Platform::TextSetter &texts, const std::string &text, double size,
                                 double width, double height, double shares);
