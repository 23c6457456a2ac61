#include "Fonts.h"

#include "Text.h"

#include <algorithm>
#include <hb-ft.h>
#include <string_view>

namespace Platform {
namespace {

using Pattern = std::unique_ptr<FcPattern, Releaser<FcPatternDestroy>>;
using FontSet = std::unique_ptr<FcFontSet, Releaser<FcFontSetDestroy>>;

/// A word inside a PostScript name's style, and the property that it stands for.
struct StyleWord {
    std::string_view word;
    const char *property;
    int value;
};

/// Of several words for one property the first counts: "DemiBold" is no "Bold".
constexpr StyleWord kStyleWords[] = {
    {"ExtraLight", FC_WEIGHT, FC_WEIGHT_EXTRALIGHT},
    {"Demi", FC_WEIGHT, FC_WEIGHT_DEMIBOLD},
    {"Semi", FC_WEIGHT, FC_WEIGHT_DEMIBOLD},
    {"ExtraBold", FC_WEIGHT, FC_WEIGHT_EXTRABOLD},
    {"Bold", FC_WEIGHT, FC_WEIGHT_BOLD},
    {"Black", FC_WEIGHT, FC_WEIGHT_BLACK},
    {"Heavy", FC_WEIGHT, FC_WEIGHT_BLACK},
    {"Medium", FC_WEIGHT, FC_WEIGHT_MEDIUM},
    {"Light", FC_WEIGHT, FC_WEIGHT_LIGHT},
    {"Thin", FC_WEIGHT, FC_WEIGHT_THIN},
    {"Oblique", FC_SLANT, FC_SLANT_OBLIQUE},
    {"Ital", FC_SLANT, FC_SLANT_ITALIC},
    {"Narrow", FC_WIDTH, FC_WIDTH_CONDENSED},
    {"Cond", FC_WIDTH, FC_WIDTH_CONDENSED},
};

void addText(FcPattern *pattern, const char *property, const std::string &text)
{
    FcPatternAddString(pattern, property, reinterpret_cast<const FcChar8 *>(text.c_str()));
}

/// Family names compare without regard to blanks: "TimesNewRomanPS" needs only its end cut off.
std::string_view familyOf(std::string_view name)
{
    name = name.substr(0, name.find('-'));
    for (const std::string_view end : {"MT", "PS"}) {
        if (name.size() > end.size() && name.ends_with(end))
            name.remove_suffix(end.size());
    }
    return name;
}

std::string_view styleOf(std::string_view name)
{
    const auto hyphen = name.find('-');
    return hyphen == std::string_view::npos ? std::string_view() : name.substr(hyphen + 1);
}

void addStyle(FcPattern *pattern, std::string_view style)
{
    for (const auto &[word, property, value] : kStyleWords) {
        int present = 0;
        if (style.find(word) != std::string_view::npos &&
            FcPatternGetInteger(pattern, property, 0, &present) != FcResultMatch)
            FcPatternAddInteger(pattern, property, value);
    }
}

/// What to ask fontconfig for when it does not know the PostScript name itself.
Pattern patternFromName(std::string_view name)
{
    Pattern pattern(FcPatternCreate());
    const std::string family(familyOf(name));
    const std::string_view style = styleOf(name);
    if (style.find("Narrow") != std::string_view::npos)
        addText(pattern.get(), FC_FAMILY, family + " Narrow");
    addText(pattern.get(), FC_FAMILY, family);
    addStyle(pattern.get(), style);
    FcPatternAddBool(pattern.get(), FC_OUTLINE, FcTrue);
    FcPatternAddBool(pattern.get(), FC_VARIABLE, FcFalse);
    // Of two fonts with the same picture, the one that has it in colour hides the other.
    FcPatternAddBool(pattern.get(), FC_COLOR, FcFalse);
    // Type 1 files know no line gap, and few of the characters that their OpenType twins have.
    addText(pattern.get(), "fontwrapper", "SFNT");
    FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    return pattern;
}

/// The installed fonts of exactly that PostScript name.
FontSet fontsNamed(const std::string &name)
{
    const Pattern pattern(FcPatternCreate());
    addText(pattern.get(), FC_POSTSCRIPT_NAME, name);
    FcPatternAddBool(pattern.get(), FC_OUTLINE, FcTrue);
    const std::unique_ptr<FcObjectSet, Releaser<FcObjectSetDestroy>> properties(
        FcObjectSetBuild(FC_FILE, FC_INDEX, static_cast<char *>(nullptr)));
    return FontSet(FcFontList(nullptr, pattern.get(), properties.get()));
}

bool hasCharacter(const FcPattern *pattern, char32_t character)
{
    FcCharSet *characters = nullptr;
    return FcPatternGetCharSet(pattern, FC_CHARSET, 0, &characters) == FcResultMatch &&
           FcCharSetHasChar(characters, character) == FcTrue;
}

} // namespace

std::optional<Font> Font::open(FT_Library library, const FcPattern *pattern)
{
    FcChar8 *file = nullptr;
    int index = 0;
    FcPatternGetInteger(pattern, FC_INDEX, 0, &index);
    FT_Face face = nullptr;
    if (FcPatternGetString(pattern, FC_FILE, 0, &file) != FcResultMatch ||
        FT_New_Face(library, reinterpret_cast<const char *>(file), index, &face) != 0)
        return std::nullopt;
    Font font(face);
    if (!FT_IS_SCALABLE(face) ||
        FT_Set_Char_Size(face, 0, FT_F26Dot6{64} * face->units_per_EM, 72, 72) != 0)
        return std::nullopt;
    font._shaper.reset(hb_ft_font_create_referenced(face));
    hb_ft_font_set_load_flags(font._shaper.get(), FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP);
    return font;
}

Font::Font(FT_Face face) : _face(face) {}

bool Font::hasCharacter(char32_t character) const
{
    const unsigned glyph = FT_Get_Char_Index(_face.get(), character);
    const bool mayBePicture = FT_HAS_COLOR(_face.get()) && !isInvisible(character);
    return mayBePicture ? hasLook(glyph) : glyph != 0;
}

bool Font::hasLook(unsigned glyph) const
{
    FT_Face face = _face.get();
    if (glyph == 0 || FT_Load_Glyph(face, glyph, FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP) != 0)
        return false;
    return !FT_HAS_COLOR(face) || face->glyph->outline.n_points > 0;
}

Fonts::Fonts(const std::string &postScriptName) : _wanted(patternFromName(postScriptName))
{
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0)
        return;
    _library.reset(library);
    openNamedFont(postScriptName);
}

bool Fonts::open(const FcPattern *pattern)
{
    auto font = Font::open(_library.get(), pattern);
    if (font)
        _fonts.push_back(std::move(*font));
    return font.has_value();
}

void Fonts::openNamedFont(const std::string &postScriptName)
{
    const auto openFirst = [this](const FcFontSet &set) {
        return std::any_of(set.fonts, set.fonts + set.nfont,
                           [this](const FcPattern *pattern) { return open(pattern); });
    };
    const FontSet exact = fontsNamed(postScriptName);
    if (exact && openFirst(*exact))
        return;
    FcResult result = FcResultMatch;
    const Pattern nearest(FcFontMatch(nullptr, _wanted.get(), &result));
    if (nearest && open(nearest.get()))
        return;
    openFirst(substitutes());
}

std::size_t Fonts::fontWithCharacter(char32_t character)
{
    return fontWithMarks(character, {}).value_or(0);
}

std::optional<std::size_t> Fonts::fontWithMarks(char32_t letter,
                                                std::span<const std::uint32_t> marks)
{
    const auto hasAll = [&](const auto &hasOne) {
        return hasOne(letter) && std::ranges::all_of(marks, [&](char32_t mark) {
                   return isInvisible(mark) || hasOne(mark);
               });
    };
    const auto found = std::ranges::find_if(_fonts, [&](const Font &font) {
        return hasAll([&](char32_t character) { return font.hasCharacter(character); });
    });
    if (found != _fonts.end())
        return static_cast<std::size_t>(found - _fonts.begin());
    const FcFontSet &others = substitutes();
    const bool opened =
        std::any_of(others.fonts, others.fonts + others.nfont, [&](const FcPattern *pattern) {
            return hasAll([&](char32_t character) { return hasCharacter(pattern, character); }) &&
                   open(pattern);
        });
    return opened ? std::optional(_fonts.size() - 1) : std::nullopt;
}

const FcFontSet &Fonts::substitutes()
{
    if (!_substitutes) {
        FcResult result = FcResultMatch;
        _substitutes.reset(FcFontSort(nullptr, _wanted.get(), FcTrue, nullptr, &result));
    }
    if (!_substitutes)
        _substitutes.reset(FcFontSetCreate());
    return *_substitutes;
}

} // namespace Platform
