#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Platform {

// Text set in a font, measured and as outlines. Lengths are in points, y goes up.
//
// A font is named by its PostScript name ("Helvetica-Bold"). Fontconfig finds it; the base names
// that every PostScript printer has resolve to faces of the same metrics, and an unknown name to
// the nearest that fontconfig offers. What the font lacks comes from other fonts, character by
// character. Texts are UTF-8; a byte that is not, sets U+FFFD, a control character nothing.
// Right-to-left and complex scripts are set as their rules ask. A text is one line, whatever line
// ends are in it. One thread.

/// Points. Width: how far the pen moves. Height: ascent + descent + line gap, of whatever letters.
struct TextSize {
    double width = 0;
    double height = 0;
};

struct TextPoint {
    double x = 0;
    double y = 0;
};

/// One step of an outline. Every contour begins with a Move and ends with a Close.
struct TextPathSegment {
    enum class Kind { Move, Line, Curve, Close };

    Kind kind = Kind::Close;
    /// Move and Line: the first point is where to. Curve: two control points, then where to.
    /// Close: none.
    std::array<TextPoint, 3> points = {};
};

/// A glyph of a line: the segments [begin, end) of the outline are its.
struct ShapedGlyph {
    /// What it looks like: the same for the same glyph of a font, in all texts of one TextShaper.
    std::uint64_t shape = 0;
    TextPoint origin; ///< its own, which the segments of one shape lie about in the same way
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// One line of text, set. The baseline's start is the origin.
struct ShapedText {
    double advance = 0; ///< how far the pen moves; white space at the end counts
    double ascent = 0;  ///< above the baseline, the greatest of the fonts in use
    double descent = 0; ///< below the baseline, positive, the greatest of the fonts in use
    double lineGap = 0; ///< between two lines, the greatest of the fonts in use
    std::vector<TextPathSegment> outline; ///< to be filled by the nonzero winding rule
    std::vector<ShapedGlyph> glyphs;      ///< all of the outline, without glyphs that draw nothing
    /// The first visible character of the text that no font draws, and that the outline lacks;
    /// nullopt when it lacks none.
    std::optional<char32_t> missing;

    TextSize size() const { return {advance, ascent + descent + lineGap}; }
};

/// Sets a text. An empty text has the font's height, no width and no outline; without any font on
/// the system all is zero. Throws nothing of its own.
/// @param fontName  PostScript name
/// @param size      in points; 0 makes everything zero, a negative size mirrors both axes
ShapedText shapeText(const std::string &text, const std::string &fontName, double size);

class Fonts;

/// Sets texts as shapeText() does, many in one font: it is looked for once. Not copied.
class TextShaper {
public:
    /// @param fontName  PostScript name
    /// @param size      as for shapeText()
    TextShaper(const std::string &fontName, double size);
    ~TextShaper();
    TextShaper(const TextShaper &) = delete;
    TextShaper &operator=(const TextShaper &) = delete;

    ShapedText shape(const std::string &text);

private:
    std::unique_ptr<Fonts> _fonts; ///< grow with the texts
    double _size;
};

/// The size of the text as shapeText() sets it.
TextSize measureText(const std::string &text, const std::string &fontName, double size);

/// The same through the module that carries the font libraries, which is loaded by the first
/// call: for a program that seldom measures. (In the library KLPlatformTextSetting; the others are
/// in KLTextMeasuring.)
/// @throws ModuleError when the module is not installed or fails, or when there is no font at all:
///         a height of 0 for any size but 0
TextSize measureTextWithModule(const std::string &text, const std::string &fontName, double size);

} // namespace Platform
