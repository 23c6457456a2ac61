#include "PostScriptStamp.h"

#include "Ink.h"
#include "PostScriptText.h"
#include "ProcSets.h"
#include "ToolkitError.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace {

using Platform::ShapedGlyph;
using Platform::ShapedText;
using Platform::TextPathSegment;

/// A procedure must not become too long for an interpreter.
constexpr std::size_t kSegmentsInProcedure = 1000;
/// Nor must the operands of one text, three for a glyph: an array has 65,535 elements at most.
constexpr std::size_t kMostGlyphs = 20'000;

std::string colourProcedure(const std::vector<double> &colour)
{
    const std::string_view operation = colour.size() == 1   ? "setgray"
                                       : colour.size() == 3 ? "setrgbcolor"
                                                            : "setcmykcolor";
    return "/colour { " + postScriptNumbers(colour) + " " + std::string(operation) +
           " } bind def\n";
}

/// The cell in which so much is drawn, as Overprint.ps wants it: two spots that grow, as far from
/// each other as can be.
std::string cellOfDots(double share)
{
    static constexpr std::array kCells = {"<80000000>", "<80002000>", "<c0002000>", "<c0003000>"};
    constexpr long kDots = 16;
    const long count = std::clamp(std::lround(share * kDots), 1L, static_cast<long>(kCells.size()));
    return kCells[static_cast<std::size_t>(count - 1)];
}

/// What the procedures for a text that the page shows through have to know (Overprint.ps).
std::string overprintRequest(const Ink &ink)
{
    const std::string_view space = ink.colour.size() == 1   ? "DeviceGray"
                                   : ink.colour.size() == 3 ? "DeviceRGB"
                                                            : "DeviceCMYK";
    return fmt::format("/inkSpace [/{}] def\n/ink {{ {} }} def\n/dots {} def\n", space,
                       postScriptNumbers(ink.colour), cellOfDots(ink.share));
}

/// To the lower left corner of the text's box, turned, and up to the baseline.
std::string placeProcedure(const Watermark &watermark, double descent)
{
    return "/place { " + postScriptNumbers(std::array{watermark.position.x, watermark.position.y}) +
           " translate " + postScriptNumber(watermark.angle) + " rotate 0 " +
           postScriptNumber(descent) + " translate } bind def\n";
}

std::string pathOperation(const TextPathSegment &segment)
{
    const auto &[first, second, third] = segment.points;
    switch (segment.kind) {
    case TextPathSegment::Kind::Move:
        return postScriptNumbers(std::array{first.x, first.y}) + " moveto\n";
    case TextPathSegment::Kind::Line:
        return postScriptNumbers(std::array{first.x, first.y}) + " lineto\n";
    case TextPathSegment::Kind::Curve:
        return postScriptNumbers(
                   std::array{first.x, first.y, second.x, second.y, third.x, third.y}) +
               " curveto\n";
    case TextPathSegment::Kind::Close:
        break;
    }
    return "closepath\n";
}

std::string pathOperations(const std::vector<TextPathSegment> &outline)
{
    std::string text;
    for (const TextPathSegment &segment : outline)
        text += pathOperation(segment);
    return text;
}

std::string outlineProcedures(const std::vector<TextPathSegment> &outline)
{
    std::string text = "/outline [\n";
    for (std::size_t index = 0; index < outline.size(); ++index) {
        if (index % kSegmentsInProcedure == 0)
            text += index == 0 ? "{ " : "} bind { ";
        text += pathOperation(outline[index]);
    }
    return text + (outline.empty() ? "" : "} bind ") + "] def\n";
}

/// "{ 120.5 42 9 }": width, height and descent of the text's box, above 0 the first two.
std::string boxProcedure(const ShapedText &text)
{
    constexpr double kLeastWidth = 0.01; // of blanks without any
    return "{ " +
           postScriptNumbers(std::array{std::max(text.size().width, kLeastWidth),
                                        text.size().height, text.descent}) +
           " }";
}

std::string definition(std::string_view name, double value)
{
    return "/" + std::string(name) + " " + postScriptNumber(value) + " def\n";
}

std::string definition(std::string_view name, bool value)
{
    return "/" + std::string(name) + (value ? " true def\n" : " false def\n");
}

/// Where the text comes on a page, and which size a page has that does not tell it
/// (WatermarkPlace.ps).
std::string layoutOf(const TextPlace &place, double angle, const PageSize &usual)
{
    return "/layout 64 dict dup begin\n" + definition("spotX", place.spot.x) +
           definition("spotY", place.spot.y) + definition("inwardsX", place.inwards.x) +
           definition("inwardsY", place.inwards.y) + definition("distance", place.distance) +
           definition("isAlongDiagonal", place.alongDiagonal) + definition("isTiled", place.tiled) +
           definition("isFitted", place.fitted) + definition("slope", std::fmod(angle, 360)) +
           definition("usualWidth", usual.width) + definition("usualHeight", usual.height) +
           "end def\n";
}

PageSize usualPageSize(const DSCDocument &document, const std::string &ppdPath)
{
    constexpr PageSize kLetter = {612, 792};
    const auto named = document.mediaOf(document.pages().front());
    return named ? *named : defaultPageSize(ppdPath).value_or(kLetter);
}

} // namespace

void PageTexts::add(std::uint64_t page)
{
    const ShapedText text = _text.onPage(page);
    if (text.glyphs.size() > kMostGlyphs)
        throw ToolkitError("The watermark's text is too long.");
    std::string operands = "{";
    for (const ShapedGlyph &glyph : text.glyphs) {
        const auto number = static_cast<double>(numberOf(glyph, text));
        operands += "\n" + postScriptNumbers(std::array{glyph.origin.x, glyph.origin.y, number});
    }
    _operands[page] = operands + "\n} " + boxProcedure(text);
}

std::size_t PageTexts::numberOf(const ShapedGlyph &glyph, const ShapedText &text)
{
    const auto [shape, isNew] = _numbers.try_emplace(glyph.shape, _numbers.size());
    if (isNew)
        _glyphs += "{ " + pathOperations(outlineOf(glyph, text)) + "} bind\n";
    return shape->second;
}

PostScriptStamp::PostScriptStamp(const Watermark &watermark, const DSCDocument &document,
                                 const Job &job)
    : _watermark(watermark),
      _document(document),
      _text(watermark, document.pages().size(), job.texts),
      _firstText(_text.onPage(1)),
      _texts(_text)
{
    if (watermark.place)
        _usualSize = usualPageSize(document, job.ppdPath);
    for (std::uint64_t page = 1; page <= document.pages().size(); ++page) {
        const bool isMarked = watermark.pages.contains(page);
        if (isMarked && _text.differs())
            _texts.add(page);
        _isOnAllPages = _isOnAllPages && isMarked;
        _turns = _turns || isLandscape(page);
    }
    job.texts.forgetFonts();
}

/// Of the text's box on an upright page; the origin for one that has a place.
Point PostScriptStamp::middle() const
{
    if (_watermark.place)
        return {0, 0};
    const Platform::TextSize box = _firstText.size();
    const double angle = _watermark.angle * std::numbers::pi / 180;
    return {
        _watermark.position.x + (box.width * std::cos(angle) - box.height * std::sin(angle)) / 2,
        _watermark.position.y + (box.width * std::sin(angle) + box.height * std::cos(angle)) / 2};
}

std::string PostScriptStamp::request() const
{
    const Ink ink = inkOf(_watermark);
    std::string text = _watermark.overprint ? overprintRequest(ink) : colourProcedure(ink.colour);
    text += _watermark.place ? layoutOf(*_watermark.place, _watermark.angle, _usualSize)
                             : placeProcedure(_watermark, _firstText.descent);
    if (_text.differs())
        text += _texts.glyphs();
    else
        text += outlineProcedures(_firstText.outline);
    if (_watermark.place && !_text.differs())
        text += "/box " + boxProcedure(_firstText) + " bind def\n";
    if (_turns)
        text += definition("middleX", middle().x) + definition("middleY", middle().y);
    return text + definition("isAbove", _watermark.above);
}

std::string PostScriptStamp::procedures() const
{
    std::string text;
    if (_text.differs())
        text += kWatermarkPagesProcSet;
    if (_watermark.place)
        text += kWatermarkPlaceProcSet;
    if (_turns)
        text += kLandscapePageProcSet;
    if (_watermark.overprint)
        text += kOverprintProcSet;
    text += kWatermarkProcSet;
    if (!_isOnAllPages)
        text += kUnmarkedPageProcSet;
    return text;
}

bool PostScriptStamp::suits(std::uint64_t page) const
{
    return (_turns || !isLandscape(page)) && (!_isOnAllPages || _watermark.pages.contains(page));
}

void PostScriptStamp::callFor(std::uint64_t page, DocumentWriter &writer) const
{
    if (!_watermark.pages.contains(page))
        return writer.call("KLToolkitUnmarkedPage");
    if (_turns)
        writer.call("KLToolkitWatermarkTurned", isLandscape(page) ? "90" : "0");
    if (_text.differs())
        writer.call("KLToolkitWatermarkText", _texts.operandsFor(page));
    writer.call("KLToolkitWatermarkPage");
}

bool PostScriptStamp::isLandscape(std::uint64_t page) const
{
    const DSCPage &there = _document.pages()[page - 1];
    return _document.orientationOf(there) == DSCOrientation::Landscape;
}
