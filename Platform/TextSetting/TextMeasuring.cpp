#include "TextMeasuring.h"

#include "Fonts.h"
#include "Text.h"

#include <algorithm>
#include <cstdint>
#include <fribidi.h>
#include <memory>
#include <span>
#include FT_OUTLINE_H

namespace Platform {
namespace {

using Buffer = std::unique_ptr<hb_buffer_t, Releaser<hb_buffer_destroy>>;
using Characters = std::vector<std::uint32_t>; // as HarfBuzz and FriBidi take them

/// Neighbouring characters of one direction, script and font: what can be shaped at once.
struct Run {
    std::size_t start;
    std::size_t length;
    FriBidiLevel level; ///< odd: right to left
    hb_script_t script;
    std::size_t font;
};

// --- from bytes to characters ---

bool isControl(char32_t character)
{
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

/// The buffer reads UTF-8 with every malformed sequence replaced by U+FFFD.
Characters charactersOf(const std::string &text)
{
    const Buffer buffer(hb_buffer_create());
    hb_buffer_add_utf8(buffer.get(), text.data(), static_cast<int>(text.size()), 0, -1);
    unsigned count = 0;
    const hb_glyph_info_t *decoded = hb_buffer_get_glyph_infos(buffer.get(), &count);
    Characters characters;
    for (unsigned i = 0; i < count; ++i) {
        if (!isControl(decoded[i].codepoint))
            characters.push_back(decoded[i].codepoint);
    }
    return characters;
}

// --- from characters to runs ---

/// The embedding levels of the line; its own direction follows its first strong character.
std::vector<FriBidiLevel> levelsOf(const Characters &characters)
{
    const auto count = static_cast<FriBidiStrIndex>(characters.size());
    std::vector<FriBidiCharType> types(characters.size());
    std::vector<FriBidiBracketType> brackets(characters.size());
    std::vector<FriBidiLevel> levels(characters.size(), 0);
    fribidi_get_bidi_types(characters.data(), count, types.data());
    fribidi_get_bracket_types(characters.data(), count, types.data(), brackets.data());
    FriBidiParType direction = FRIBIDI_PAR_ON;
    const bool known = fribidi_get_par_embedding_levels_ex(types.data(), brackets.data(), count,
                                                           &direction, levels.data()) != 0 &&
                       fribidi_reorder_line(FRIBIDI_FLAGS_DEFAULT, types.data(), count, 0,
                                            direction, levels.data(), nullptr, nullptr) != 0;
    if (!known) // out of memory, or no text at all
        std::ranges::fill(levels, 0);
    return levels;
}

bool isOfAnyScript(hb_script_t script)
{
    return script == HB_SCRIPT_COMMON || script == HB_SCRIPT_INHERITED ||
           script == HB_SCRIPT_UNKNOWN;
}

/// Every character's script; what belongs to any script goes along with what stands before it.
std::vector<hb_script_t> scriptsOf(const Characters &characters)
{
    std::vector<hb_script_t> scripts;
    hb_unicode_funcs_t *unicode = hb_unicode_funcs_get_default();
    for (const char32_t character : characters) {
        const hb_script_t script = hb_unicode_script(unicode, character);
        scripts.push_back(isOfAnyScript(script) && !scripts.empty() ? scripts.back() : script);
    }
    // What stands before the first letter goes along with that.
    const auto first = std::ranges::find_if_not(scripts, isOfAnyScript);
    std::fill(scripts.begin(), first, first == scripts.end() ? HB_SCRIPT_LATIN : *first);
    return scripts;
}

/// Marks and joiners must stay in the font of the letter before them to be joined to it.
bool clingsToPrevious(char32_t character)
{
    hb_unicode_funcs_t *unicode = hb_unicode_funcs_get_default();
    switch (hb_unicode_general_category(unicode, character)) {
    case HB_UNICODE_GENERAL_CATEGORY_FORMAT:
    case HB_UNICODE_GENERAL_CATEGORY_ENCLOSING_MARK:
    case HB_UNICODE_GENERAL_CATEGORY_NON_SPACING_MARK:
    case HB_UNICODE_GENERAL_CATEGORY_SPACING_MARK:
        return true;
    default:
        return false;
    }
}

/// Whether the font by itself draws all that is visible of a letter with marks, put together or
/// not.
bool setsWhole(const Font &font, std::span<const std::uint32_t> characters)
{
    const Buffer buffer(hb_buffer_create());
    const auto count = static_cast<int>(characters.size());
    hb_buffer_add_codepoints(buffer.get(), characters.data(), count, 0, count);
    hb_buffer_set_cluster_level(buffer.get(), HB_BUFFER_CLUSTER_LEVEL_MONOTONE_CHARACTERS);
    hb_buffer_guess_segment_properties(buffer.get());
    hb_shape(font.shaper(), buffer.get(), nullptr, 0);
    unsigned glyphCount = 0;
    const hb_glyph_info_t *glyphs = hb_buffer_get_glyph_infos(buffer.get(), &glyphCount);
    return std::all_of(glyphs, glyphs + glyphCount, [&](const hb_glyph_info_t &glyph) {
        return glyph.codepoint != 0 || isInvisible(characters[glyph.cluster]);
    });
}

/// Which font sets each character. A letter and the marks that follow have the same: the first that
/// has the letter, unless that lacks a mark and another has them all.
std::vector<std::size_t> fontsOf(const Characters &characters, Fonts &fonts)
{
    std::vector<std::size_t> chosen;
    while (chosen.size() < characters.size()) {
        const auto letter = characters.begin() + static_cast<std::ptrdiff_t>(chosen.size());
        const auto end = std::find_if_not(letter + 1, characters.end(), clingsToPrevious);
        std::size_t font = fonts.fontWithCharacter(*letter);
        if (end - letter > 1 && !setsWhole(fonts[font], {letter, end}))
            font = fonts.fontWithMarks(*letter, {letter + 1, end}).value_or(font);
        chosen.insert(chosen.end(), static_cast<std::size_t>(end - letter), font);
    }
    return chosen;
}

/// The text cut into runs, in reading order.
std::vector<Run> runsOf(const Characters &characters, Fonts &fonts)
{
    const auto levels = levelsOf(characters);
    const auto scripts = scriptsOf(characters);
    const auto chosen = fontsOf(characters, fonts);
    std::vector<Run> runs;
    for (std::size_t i = 0; i < characters.size(); ++i) {
        const bool continues = !runs.empty() && runs.back().level == levels[i] &&
                               runs.back().script == scripts[i] && runs.back().font == chosen[i];
        if (continues)
            ++runs.back().length;
        else
            runs.push_back({i, 1, levels[i], scripts[i], chosen[i]});
    }
    return runs;
}

/// Puts runs into the order in which they stand on the line, from left to right: each row of
/// runs of a level or higher is turned round, from the highest level down to 1.
void orderFromLeftToRight(std::vector<Run> &runs)
{
    FriBidiLevel highest = 0;
    for (const Run &run : runs)
        highest = std::max(highest, run.level);
    for (FriBidiLevel level = highest; level >= 1; --level) {
        const auto reaches = [level](const Run &run) { return run.level >= level; };
        for (auto start = runs.begin(); start != runs.end();) {
            start = std::find_if(start, runs.end(), reaches);
            const auto end = std::find_if_not(start, runs.end(), reaches);
            std::reverse(start, end);
            start = end;
        }
    }
}

// --- from runs to outlines ---

/// Takes a glyph's outline, in the font's coordinates, into a path in points.
class OutlineWriter {
public:
    /// @param origin  where the glyph's own origin lies, in parts of the size
    OutlineWriter(std::vector<TextPathSegment> &path, TextPoint origin, double unit, double size)
        : _path(path), _origin(origin), _unit(unit), _size(size)
    {
    }

    void write(FT_Outline &outline)
    {
        static constexpr FT_Outline_Funcs kSteps = {&moveTo, &lineTo, &conicTo, &cubicTo, 0, 0};
        FT_Outline_Decompose(&outline, &kSteps, this);
        close();
    }

private:
    using Kind = TextPathSegment::Kind;

    static OutlineWriter &self(void *writer) { return *static_cast<OutlineWriter *>(writer); }
    static int moveTo(const FT_Vector *to, void *writer)
    {
        self(writer).close();
        self(writer).add(Kind::Move, {self(writer).point(*to)});
        self(writer)._open = true;
        return 0;
    }
    static int lineTo(const FT_Vector *to, void *writer)
    {
        self(writer).add(Kind::Line, {self(writer).point(*to)});
        return 0;
    }
    /// A curve with one control point is the one with two that lie two thirds of the way to it.
    static int conicTo(const FT_Vector *control, const FT_Vector *to, void *writer)
    {
        const TextPoint from = self(writer)._current;
        const TextPoint by = self(writer).point(*control);
        const TextPoint end = self(writer).point(*to);
        const auto towards = [by](TextPoint p) {
            return TextPoint{p.x + (by.x - p.x) * 2 / 3, p.y + (by.y - p.y) * 2 / 3};
        };
        self(writer).add(Kind::Curve, {towards(from), towards(end), end});
        return 0;
    }
    static int cubicTo(const FT_Vector *first, const FT_Vector *second, const FT_Vector *to,
                       void *writer)
    {
        OutlineWriter &w = self(writer);
        w.add(Kind::Curve, {w.point(*first), w.point(*second), w.point(*to)});
        return 0;
    }

    TextPoint point(const FT_Vector &vector) const
    {
        return {(_origin.x + static_cast<double>(vector.x) * _unit) * _size,
                (_origin.y + static_cast<double>(vector.y) * _unit) * _size};
    }
    void add(Kind kind, std::array<TextPoint, 3> points)
    {
        _path.push_back({kind, points});
        _current = kind == Kind::Curve ? points[2] : points[0];
    }
    void close()
    {
        if (_open)
            _path.push_back({Kind::Close, {}});
        _open = false;
    }

    std::vector<TextPathSegment> &_path;
    TextPoint _origin;
    double _unit;
    double _size;
    TextPoint _current;
    bool _open = false;
};

/// Sets runs one behind the other. Counts in parts of the size, so that any size will do.
class LineSetter {
public:
    LineSetter(const Characters &characters, const Fonts &fonts, double size)
        : _characters(characters), _fonts(fonts), _size(size), _missing(characters.size())
    {
        useMetrics(fonts[0]);
    }

    void set(const Run &run)
    {
        const Font &font = _fonts[run.font];
        useMetrics(font);
        const Buffer buffer = shape(run);
        unsigned count = 0;
        const hb_glyph_info_t *glyphs = hb_buffer_get_glyph_infos(buffer.get(), &count);
        const hb_glyph_position_t *positions = hb_buffer_get_glyph_positions(buffer.get(), nullptr);
        for (unsigned i = 0; i < count; ++i) {
            const hb_glyph_position_t &position = positions[i];
            addGlyph(run.font, glyphs[i],
                     {_pen + position.x_offset * font.unit(), position.y_offset * font.unit()});
            _pen += position.x_advance * font.unit();
        }
    }

    ShapedText line()
    {
        const auto missing = _missing < _characters.size()
                                 ? std::optional<char32_t>(_characters[_missing])
                                 : std::nullopt;
        return {_pen * _size,        _ascent * _size,    _descent * _size, _lineGap * _size,
                std::move(_outline), std::move(_glyphs), missing};
    }

private:
    void useMetrics(const Font &font)
    {
        _ascent = std::max(_ascent, font.ascent());
        _descent = std::max(_descent, font.descent());
        _lineGap = std::max(_lineGap, font.lineGap());
    }

    Buffer shape(const Run &run) const
    {
        Buffer buffer(hb_buffer_create());
        // All of the text goes along: what stands around a run decides how its ends are joined.
        hb_buffer_add_codepoints(buffer.get(), _characters.data(),
                                 static_cast<int>(_characters.size()),
                                 static_cast<unsigned>(run.start), static_cast<int>(run.length));
        hb_buffer_set_direction(buffer.get(),
                                run.level % 2 == 1 ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
        hb_buffer_set_script(buffer.get(), run.script);
        hb_buffer_set_language(buffer.get(), hb_language_from_string("und", -1));
        // So that each glyph tells which of a letter and its marks it is for.
        hb_buffer_set_cluster_level(buffer.get(), HB_BUFFER_CLUSTER_LEVEL_MONOTONE_CHARACTERS);
        hb_shape(_fonts[run.font].shaper(), buffer.get(), nullptr, 0);
        return buffer;
    }

    void addGlyph(std::size_t fontIndex, const hb_glyph_info_t &glyph, TextPoint origin)
    {
        const Font &font = _fonts[fontIndex];
        const std::size_t begin = _outline.size();
        if (font.hasLook(glyph.codepoint))
            OutlineWriter(_outline, origin, font.unit(), _size).write(font.face()->glyph->outline);
        else if (!isInvisible(_characters[glyph.cluster]))
            _missing = std::min<std::size_t>(_missing, glyph.cluster);
        if (_outline.size() > begin)
            _glyphs.push_back({std::uint64_t{fontIndex} << 32 | glyph.codepoint,
                               {origin.x * _size, origin.y * _size},
                               begin,
                               _outline.size()});
    }

    const Characters &_characters;
    const Fonts &_fonts;
    double _size;
    double _pen = 0;
    double _ascent = 0;
    double _descent = 0;
    double _lineGap = 0;
    std::vector<TextPathSegment> _outline;
    std::vector<ShapedGlyph> _glyphs;
    std::size_t _missing; ///< index of the first character without a look, else how many there are
};

} // namespace

TextShaper::TextShaper() = default;

TextShaper::~TextShaper() = default;

void TextShaper::prepare()
{
    FcInit();
}

ShapedText TextShaper::shape(const std::string &text, const std::string &fontName, double size)
{
    auto &fonts = _fonts[fontName];
    if (!fonts)
        fonts = std::make_unique<Fonts>(fontName);
    if (fonts->empty())
        return {};
    const Characters characters = charactersOf(text);
    std::vector<Run> runs = runsOf(characters, *fonts);
    orderFromLeftToRight(runs);
    LineSetter setter(characters, *fonts, size);
    for (const Run &run : runs)
        setter.set(run);
    return setter.line();
}

void TextShaper::forgetFonts()
{
    _fonts.clear();
}

ShapedText shapeText(const std::string &text, const std::string &fontName, double size)
{
    return TextShaper().shape(text, fontName, size);
}

TextSize measureText(const std::string &text, const std::string &fontName, double size)
{
    return shapeText(text, fontName, size).size();
}

} // namespace Platform
