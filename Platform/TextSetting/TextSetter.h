#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
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
    /// What it looks like: the same for the same glyph of a font, in all texts that one TextSetter
    /// sets in fonts of one name and size.
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

/// A text could not be set, for a reason that is not in the text; what() says which.
class TextSettingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Who sets texts. Not copied.
class TextSetter {
public:
    TextSetter() = default;
    virtual ~TextSetter() = default;
    TextSetter(const TextSetter &) = delete;
    TextSetter &operator=(const TextSetter &) = delete;

    /// Begins what takes its time, for one who will have texts to set but has other things to do
    /// before.
    /// @throws TextSettingError as shape() does
    virtual void prepare() = 0;

    /// Sets a text. An empty text has the font's height, no width and no outline; without any font
    /// on the system all is zero.
    /// @param fontName  PostScript name
    /// @param size      in points; 0 makes everything zero, a negative size mirrors both axes
    /// @throws TextSettingError where setting needs what can fail
    virtual ShapedText shape(const std::string &text, const std::string &fontName, double size) = 0;

    /// Gives back the memory that fonts take. For the next text they are looked for anew.
    virtual void forgetFonts() = 0;
};

} // namespace Platform
