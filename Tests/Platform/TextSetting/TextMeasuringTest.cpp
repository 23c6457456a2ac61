#include "TextMeasuring.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "PackagedFonts.h"
#include "TemporaryFolder.h"

using Platform::measureText;
using Platform::ShapedText;
using Platform::shapeText;
using Platform::TextPathSegment;
using Platform::TextSize;

namespace {

using Kind = TextPathSegment::Kind;

/// The published widths of the face "Helvetica", in thousandths of the size.
constexpr int kHelveticaH = 722, kHelveticaE = 667, kHelveticaX = 667, kHelveticaBlank = 278;

/// A font that has the letters that the face "Helvetica" lacks.
std::string manyScripts()
{
    return Support::manyScriptsFont().name;
}

double width(const std::string &text, const std::string &font = "Helvetica", double size = 1000)
{
    return measureText(text, font, size).width;
}

/// The corner points of what is drawn; control points are left out.
std::vector<Platform::TextPoint> corners(const ShapedText &line)
{
    std::vector<Platform::TextPoint> points;
    for (const TextPathSegment &segment : line.outline) {
        if (segment.kind == Kind::Curve)
            points.push_back(segment.points[2]);
        else if (segment.kind != Kind::Close)
            points.push_back(segment.points[0]);
    }
    return points;
}

struct Range {
    double low, high;
};

Range heightsOf(const ShapedText &line)
{
    const auto points = corners(line);
    const auto [low, high] =
        std::ranges::minmax(points, {}, [](const Platform::TextPoint &p) { return p.y; });
    return {low.y, high.y};
}

Range widthsOf(const ShapedText &line)
{
    const auto points = corners(line);
    const auto [low, high] =
        std::ranges::minmax(points, {}, [](const Platform::TextPoint &p) { return p.x; });
    return {low.x, high.x};
}

/// Whether the part stands in the line from the given corner on, that much to the right.
bool isDrawnFrom(std::size_t firstCorner, const ShapedText &part, double shift,
                 const ShapedText &line)
{
    const auto partCorners = corners(part);
    const auto lineCorners = corners(line);
    if (partCorners.empty() || firstCorner + partCorners.size() > lineCorners.size())
        return false;
    for (std::size_t i = 0; i < partCorners.size(); ++i) {
        const Platform::TextPoint &at = lineCorners[firstCorner + i];
        if (std::abs(partCorners[i].x + shift - at.x) > 1e-6 ||
            std::abs(partCorners[i].y - at.y) > 1e-6)
            return false;
    }
    return true;
}

void expectWithin1Percent(double expected, double actual)
{
    EXPECT_NEAR(expected, actual, std::abs(expected) / 100);
}

/// What the metrics file (AFM) of a face publishes about a text: the sum of its characters' widths,
/// and from where to where their boxes reach. In thousandths of the size; without kerning.
struct PublishedMetrics {
    double width = 0;
    Range heights = {0, 0};
};

/// The metrics file that Debian ships beside the face for "Helvetica".
std::string metricsFileOfHelvetica()
{
    return Support::readFile(Support::packagedFile(
        "/usr/share/fonts/type1/urw-base35/NimbusSans-Regular.afm", "fonts-urw-base35"));
}

PublishedMetrics publishedMetrics(const std::string &metricsFile, const std::string &text)
{
    PublishedMetrics all;
    for (const char character : text) {
        const auto at = metricsFile.find("\nC " + std::to_string(int{character}) + " ;");
        double width = 0, low = 0, high = 0;
        EXPECT_EQ(3,
                  std::sscanf(metricsFile.c_str() + std::min(at, metricsFile.size()),
                              " C %*d ; WX %lf ; N %*s ; B %*f %lf %*f %lf", &width, &low, &high))
            << character;
        all.width += width;
        all.heights = {std::min(all.heights.low, low), std::max(all.heights.high, high)};
    }
    return all;
}

} // namespace

// --- metrics of the base names ---

TEST(TextMeasuringTest, HelveticaHasTheExtentThatTheMetricsFileOfItsFacePublishes)
{
    const std::string file = metricsFileOfHelvetica();
    for (const std::string text : {"HEX", "CONFIDENTIAL", "Draft", "Hg", "0123456789"}) {
        SCOPED_TRACE(text);
        const PublishedMetrics published = publishedMetrics(file, text);
        const ShapedText line = shapeText(text, "Helvetica", 1000);
        const Range drawn = heightsOf(line);
        expectWithin1Percent(published.width, line.advance);
        expectWithin1Percent(published.heights.high - published.heights.low,
                             drawn.high - drawn.low);
    }
}

TEST(TextMeasuringTest, HelveticaHasThePublishedWidths)
{
    expectWithin1Percent(kHelveticaH + kHelveticaE + kHelveticaX, width("HEX"));
    // C O N F I D E N T I A L: 722 778 722 611 278 722 667 722 611 278 667 556
    expectWithin1Percent(7334, width("CONFIDENTIAL"));
    // D r a f t: 722 333 556 278 278
    expectWithin1Percent(2167, width("Draft"));
    // The ten digits, 556 each
    expectWithin1Percent(5560, width("0123456789"));
}

TEST(TextMeasuringTest, HelveticaIsDrawnInThePublishedHeights)
{
    // As the metric-compatible face publishes them, in thousandths: H from 0 to 729, p from -218.
    const Range capital = heightsOf(shapeText("H", "Helvetica", 1000));
    const Range withDescender = heightsOf(shapeText("Hp", "Helvetica", 1000));
    EXPECT_NEAR(0, capital.low, 0.5);
    expectWithin1Percent(729, capital.high);
    expectWithin1Percent(729 + 218, withDescender.high - withDescender.low);
}

TEST(TextMeasuringTest, OtherBaseNamesHaveThePublishedWidths)
{
    // H E X
    expectWithin1Percent(722 + 667 + 667, width("HEX", "Helvetica-Bold"));
    expectWithin1Percent(722 + 667 + 667, width("HEX", "Helvetica-Oblique"));
    expectWithin1Percent(722 + 667 + 667, width("HEX", "Helvetica-BoldOblique"));
    expectWithin1Percent(722 + 611 + 722, width("HEX", "Times-Roman"));
    expectWithin1Percent(778 + 667 + 722, width("HEX", "Times-Bold"));
    expectWithin1Percent(722 + 611 + 611, width("HEX", "Times-Italic"));
    expectWithin1Percent(778 + 667, width("HE", "Times-BoldItalic")); // its EX is kerned
    expectWithin1Percent(1800, width("HEX", "Courier"));
    expectWithin1Percent(1800, width("HEX", "Courier-Bold"));
    expectWithin1Percent(1800, width("HEX", "Courier-Oblique"));
    expectWithin1Percent(1800, width("HEX", "Courier-BoldOblique"));
    expectWithin1Percent(592 + 547 + 547, width("HEX", "Helvetica-Narrow"));
    // alpha beta gamma
    expectWithin1Percent(631 + 549 + 411, width("αβγ", "Symbol"));
    // black scissors, black star
    expectWithin1Percent(974 + 816, width("✁★", "ZapfDingbats"));
}

TEST(TextMeasuringTest, BoldIsDrawnBolder)
{
    // The stem of I: 91 to 188 in Helvetica, 64 to 214 in its bold face.
    const Range regular = widthsOf(shapeText("I", "Helvetica", 1000));
    const Range bold = widthsOf(shapeText("I", "Helvetica-Bold", 1000));
    EXPECT_NEAR(188 - 91, regular.high - regular.low, 10);
    EXPECT_NEAR(214 - 64, bold.high - bold.low, 10);
}

TEST(TextMeasuringTest, ObliqueLeans)
{
    // Helvetica leans by 12 degrees: the top of a stem of 718 lies 718 * tan 12 = 153 further on.
    const Range upright = widthsOf(shapeText("I", "Helvetica", 1000));
    const Range oblique = widthsOf(shapeText("I", "Helvetica-Oblique", 1000));
    EXPECT_NEAR(153, (oblique.high - oblique.low) - (upright.high - upright.low), 15);
}

TEST(TextMeasuringTest, HeightIsAscentAndDescentAndLineGap)
{
    // The metric-compatible face of Helvetica: 729 + 271 + 200 thousandths.
    const ShapedText line = shapeText("x", "Helvetica", 50);
    EXPECT_NEAR(36.45, line.ascent, 1e-9);
    EXPECT_NEAR(13.55, line.descent, 1e-9);
    EXPECT_NEAR(10, line.lineGap, 1e-9);
    EXPECT_NEAR(60, line.size().height, 1e-9);
}

// --- names ---

TEST(TextMeasuringTest, FindsAnInstalledFontByItsOwnName)
{
    // Of all faces only this one has 1233 of 2048 units for every character.
    EXPECT_NEAR(3 * 1233 / 2.048, width("HEX", "DejaVuSansMono"), 1e-6);
}

TEST(TextMeasuringTest, FindsTheTwinOfAnOfficeFont)
{
    EXPECT_DOUBLE_EQ(width("HEX"), width("HEX", "ArialMT"));
    EXPECT_DOUBLE_EQ(width("HEX", "Times-Bold"), width("HEX", "TimesNewRomanPS-BoldMT"));
}

TEST(TextMeasuringTest, UnknownFontFallsBack)
{
    EXPECT_GT(width("HEX", "NoSuchFont-Ever"), 0);
    EXPECT_GT(width("HEX", "-"), 0);
    EXPECT_GT(width("HEX", ""), 0);
    EXPECT_GT(width("HEX", std::string(100000, 'x')), 0);
    EXPECT_GT(width("HEX", "\xff\xfe:size=%"), 0);
}

TEST(TextMeasuringTest, UnknownBoldFontFallsBackToABoldFace)
{
    EXPECT_GT(width("HEX", "NoSuchFont-Bold"), width("HEX", "NoSuchFont"));
}

// --- texts ---

TEST(TextMeasuringTest, SizeScalesEverything)
{
    const TextSize small = measureText("HEX", "Helvetica", 10);
    const TextSize large = measureText("HEX", "Helvetica", 360);
    EXPECT_NEAR(36 * small.width, large.width, 1e-9);
    EXPECT_NEAR(36 * small.height, large.height, 1e-9);
}

TEST(TextMeasuringTest, SizeZeroIsNoSize)
{
    const ShapedText line = shapeText("HEX", "Helvetica", 0);
    EXPECT_EQ(0, line.advance);
    EXPECT_EQ(0, line.size().height);
}

TEST(TextMeasuringTest, EmptyTextHasTheHeightOfALine)
{
    const ShapedText line = shapeText("", "Helvetica", 10);
    EXPECT_EQ(0, line.advance);
    EXPECT_NEAR(12, line.size().height, 1e-9);
    EXPECT_THAT(line.outline, testing::IsEmpty());
}

TEST(TextMeasuringTest, BlanksAtTheEndsCount)
{
    EXPECT_NEAR(kHelveticaH + 2 * kHelveticaBlank, width(" H "), 1);
}

TEST(TextMeasuringTest, ControlCharactersAreDropped)
{
    EXPECT_DOUBLE_EQ(width("HE"), width("H\n\t\x1b\x7f\xC2\x85"
                                        "E"));
}

TEST(TextMeasuringTest, BytesThatAreNotTextSetTheReplacementCharacter)
{
    EXPECT_DOUBLE_EQ(width("H\uFFFDE"), width("H\xff"
                                              "E"));
}

TEST(TextMeasuringTest, NullByteDoesNotEndTheText)
{
    EXPECT_DOUBLE_EQ(width("HE"), width(std::string("H\0E", 3)));
}

TEST(TextMeasuringTest, MissingCharactersComeFromOtherFonts)
{
    // Helvetica's face has no Hebrew letters: they must be drawn as they are elsewhere.
    EXPECT_DOUBLE_EQ(width("ש", manyScripts()), width("ש", "Helvetica"));
    EXPECT_DOUBLE_EQ(width("ש", manyScripts()) + kHelveticaH, width("שH", "Helvetica"));
}

TEST(TextMeasuringTest, OtherFontsRaiseTheLine)
{
    const ShapedText plain = shapeText("H", "Helvetica", 1000);
    const ShapedText other = shapeText("ש", manyScripts(), 1000);
    const ShapedText mixed = shapeText("Hש", "Helvetica", 1000);
    EXPECT_DOUBLE_EQ(std::max(plain.ascent, other.ascent), mixed.ascent);
    EXPECT_DOUBLE_EQ(std::max(plain.descent, other.descent), mixed.descent);
}

TEST(TextMeasuringTest, CharactersOfNoFontStillTakeSpace)
{
    EXPECT_GT(width("\U0010FFFD"), 0); // private use
}

TEST(TextMeasuringTest, TellsTheFirstCharacterThatNoFontDraws)
{
    EXPECT_EQ(std::nullopt, shapeText("Hש", "Helvetica", 10).missing);
    EXPECT_EQ(std::nullopt, shapeText("", "Helvetica", 10).missing);
    EXPECT_EQ(U'\U0010FFFD', shapeText("H\U0010FFFD\U0010FFFC", "Helvetica", 10).missing);
    EXPECT_EQ(U'\U0010FFFC', shapeText("ש\U0010FFFC\U0010FFFD", "Helvetica", 10).missing);
    EXPECT_EQ(corners(shapeText("H", manyScripts(), 10)).size(),
              corners(shapeText("H\U0010FFFD", manyScripts(), 10)).size());
}

TEST(TextMeasuringTest, ArabicLettersJoin)
{
    // Lam and alef become one sign, narrower than the two apart.
    EXPECT_LT(width("لا"), width("ل") + width("ا") - 100);
}

TEST(TextMeasuringTest, RightToLeftTextIsSetFromTheRight)
{
    // Drawn from left to right: the I that was written last, then the Hebrew letter.
    const ShapedText line = shapeText("שI", manyScripts(), 1000);
    const ShapedText latin = shapeText("I", manyScripts(), 1000);
    EXPECT_TRUE(isDrawnFrom(0, latin, 0, line));
    EXPECT_TRUE(isDrawnFrom(corners(latin).size(), shapeText("ש", manyScripts(), 1000),
                            latin.advance, line));
}

TEST(TextMeasuringTest, BlankBehindRightToLeftTextLiesToItsLeft)
{
    EXPECT_TRUE(isDrawnFrom(0, shapeText("ש", manyScripts(), 1000), width(" ", manyScripts()),
                            shapeText("ש ", manyScripts(), 1000)));
}

TEST(TextMeasuringTest, NumbersInsideRightToLeftTextReadFromTheLeft)
{
    const ShapedText letter = shapeText("ש", manyScripts(), 1000);
    const ShapedText line = shapeText("12 ש", manyScripts(), 1000);
    EXPECT_TRUE(isDrawnFrom(corners(letter).size(), shapeText("12", manyScripts(), 1000),
                            letter.advance + width(" ", manyScripts()), line));
}

TEST(TextMeasuringTest, MarksStayOnTheirLetter)
{
    EXPECT_DOUBLE_EQ(width("e"), width("e\u0301"));
    EXPECT_DOUBLE_EQ(width("é"), width("e\u0301"));
}

TEST(TextMeasuringTest, LongTextsAreSetWhole)
{
    std::string text;
    for (int i = 0; i < 10000; ++i)
        text += "Hש";
    EXPECT_NEAR(10000 * (kHelveticaH + width("ש")), width(text), 1);
}

// --- outlines ---

TEST(TextMeasuringTest, EveryContourBeginsWithAMoveAndEndsWithAClose)
{
    for (const std::string &font :
         {std::string("Helvetica"), manyScripts()}) { // cubic curves and quadratic ones
        bool open = false;
        for (const TextPathSegment &segment : shapeText("Be8é", font, 10).outline) {
            EXPECT_EQ(segment.kind == Kind::Move, !open);
            open = segment.kind != Kind::Close;
        }
        EXPECT_FALSE(open);
    }
}

TEST(TextMeasuringTest, GlyphsStandOneBehindTheOther)
{
    // Two stems of I, one advance of 278 apart.
    const auto one = corners(shapeText("I", "Helvetica", 1000));
    const auto two = corners(shapeText("II", "Helvetica", 1000));
    ASSERT_EQ(2 * one.size(), two.size());
    for (std::size_t i = 0; i < one.size(); ++i) {
        EXPECT_NEAR(one[i].x, two[i].x, 1e-9);
        EXPECT_NEAR(one[i].x + 278, two[i + one.size()].x, 1e-9);
        EXPECT_NEAR(one[i].y, two[i + one.size()].y, 1e-9);
    }
}

TEST(TextMeasuringTest, TheGlyphsOfALineMakeUpItsOutline)
{
    const ShapedText text = shapeText("I I", "Helvetica", 1000); // the blank draws nothing
    ASSERT_EQ(2U, text.glyphs.size());
    EXPECT_EQ(0U, text.glyphs[0].begin);
    EXPECT_EQ(text.glyphs[0].end, text.glyphs[1].begin);
    EXPECT_EQ(text.outline.size(), text.glyphs[1].end);
    EXPECT_NEAR(0, text.glyphs[0].origin.x, 1e-9);
    EXPECT_NEAR(278 + kHelveticaBlank, text.glyphs[1].origin.x, 1e-9);
    EXPECT_EQ(0, text.glyphs[1].origin.y);
}

TEST(TextMeasuringTest, AShaperTellsTheShapesOfItsTextsApart)
{
    Platform::TextShaper shaper;
    const auto shapes = [&shaper](const char *text) {
        std::vector<std::uint64_t> numbers;
        for (const Platform::ShapedGlyph &glyph : shaper.shape(text, "Helvetica", 10).glyphs)
            numbers.push_back(glyph.shape);
        return numbers;
    };
    const auto first = shapes("aba");
    ASSERT_EQ(3U, first.size());
    EXPECT_EQ(first[0], first[2]);
    EXPECT_NE(first[0], first[1]);
    EXPECT_EQ(std::vector({first[1], first[0]}), shapes("ba"));
    shaper.forgetFonts();
    EXPECT_EQ(shapeText("ab", "Helvetica", 10).advance,
              shaper.shape("ab", "Helvetica", 10).advance);
}

TEST(TextMeasuringTest, QuadraticCurvesKeepTheirShape)
{
    // The "o" of a TrueType face: a curve's control points lie on its tangents, here inside the
    // letter's bounds, and two thirds of the way to where the tangents meet.
    const ShapedText line = shapeText("o", manyScripts(), 1000);
    Platform::TextPoint from;
    int curves = 0;
    for (const auto &[kind, points] : line.outline) {
        if (kind == Kind::Curve) {
            // Going on from either control point by half its way leads to the same point.
            EXPECT_NEAR(points[0].x + (points[0].x - from.x) / 2,
                        points[1].x + (points[1].x - points[2].x) / 2, 1e-6);
            EXPECT_NEAR(points[0].y + (points[0].y - from.y) / 2,
                        points[1].y + (points[1].y - points[2].y) / 2, 1e-6);
            ++curves;
        }
        from = kind == Kind::Curve ? points[2] : points[0];
    }
    EXPECT_GT(curves, 8);
}

// --- surroundings ---

TEST(TextMeasuringTest, ModuleMeasuresTheSame)
{
    const TextSize direct = measureText("Draft", "Times-Italic", 36);
    const TextSize loaded = Platform::measureTextWithModule("Draft", "Times-Italic", 36);
    EXPECT_EQ(direct.width, loaded.width);
    EXPECT_EQ(direct.height, loaded.height);
}
