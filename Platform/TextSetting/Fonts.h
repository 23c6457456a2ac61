#pragma once

#include <cstddef>
#include <cstdint>
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include <hb.h>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>
#include FT_FREETYPE_H

namespace Platform {

/// Releases a C library's object by the given function.
template <auto release>
struct Releaser {
    template <class Object>
    void operator()(Object *object) const
    {
        release(object);
    }
};

/// A font file, opened at one pixel per font unit, so that nothing is rounded or hinted. Moves, and
/// is not copied. One thread.
///
/// Lengths of `shaper()` and of glyph outlines come in font units times 64; times `unit()` they
/// are fractions of the font's size. The other lengths are such fractions at once; the descent is
/// positive.
class Font {
public:
    /// @param library  outlives the font
    /// @param pattern  what fontconfig knows of the file, its path at least; stays the caller's
    /// @return nullopt when the pattern names no file, the file cannot be read or has no outlines.
    static std::optional<Font> open(FT_Library library, const FcPattern *pattern);

    // Both are never null and stay this object's.

    FT_Face face() const { return _face.get(); }
    hb_font_t *shaper() const { return _shaper.get(); }
    double unit() const { return 1.0 / (64.0 * _face->units_per_EM); }
    double ascent() const { return fraction(_face->ascender); }
    double descent() const { return fraction(-_face->descender); }
    double lineGap() const { return fraction(_face->height) - ascent() - descent(); }
    /// Whether the font can set the character. A colour font has some of its own that are nothing
    /// but pictures: those it cannot, as all that is drawn are outlines.
    bool hasCharacter(char32_t character) const;
    /// Whether the glyph draws what a visible character looks like. Its outline is in `face()`
    /// then.
    bool hasLook(unsigned glyph) const;

private:
    explicit Font(FT_Face face);
    double fraction(double fontUnits) const { return fontUnits / _face->units_per_EM; }

    std::unique_ptr<FT_FaceRec_, Releaser<FT_Done_Face>> _face;
    std::unique_ptr<hb_font_t, Releaser<hb_font_destroy>> _shaper;
};

/// The font of a PostScript name and those that fontconfig puts behind it for what it lacks. Owns
/// them all. Not copied. One thread.
class Fonts {
public:
    /// @param postScriptName  an unknown one, and the empty text, give what fontconfig takes for
    ///                        the nearest.
    explicit Fonts(const std::string &postScriptName);

    /// True only when the system has no font that could be opened. Nothing else is to be asked
    /// then.
    bool empty() const { return _fonts.empty(); }

    /// 0 is the font of the name. The index is one that one of the two below has returned; the
    /// reference is good until they are called again.
    const Font &operator[](std::size_t index) const { return _fonts[index]; }

    /// The font to set the character in: the first that has it, else the font of the name. May open
    /// one more font.
    std::size_t fontWithCharacter(char32_t character);
    /// The same for a letter and the marks on it, as a font sets them that knows each of them.
    /// @return nullopt when no font has them all; marks that are invisible do not count
    std::optional<std::size_t> fontWithMarks(char32_t letter, std::span<const std::uint32_t> marks);

private:
    bool open(const FcPattern *pattern);
    void openNamedFont(const std::string &postScriptName);
    const FcFontSet &substitutes();

    std::unique_ptr<FT_LibraryRec_, Releaser<FT_Done_FreeType>> _library;
    std::unique_ptr<FcPattern, Releaser<FcPatternDestroy>> _wanted;
    std::unique_ptr<FcFontSet, Releaser<FcFontSetDestroy>> _substitutes; ///< made when needed
    std::vector<Font> _fonts;
};

} // namespace Platform
