#include "PostScriptCommands.h"

#include "DSCDocument.h"
#include "DocumentWriter.h"
#include "Ink.h"
#include "PostScriptText.h"
#include "ProcSets.h"
#include "watermarkText.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

namespace {

using Platform::ShapedText;
using Platform::TextPathSegment;

/// A procedure must not become too long for an interpreter.
constexpr std::size_t kSegmentsInProcedure = 1000;

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

/// What the procedures have to know of the watermark (Watermark.ps).
std::string requestOf(const Watermark &watermark)
{
    const ShapedText text = watermarkText(watermark);
    const Ink ink = inkOf(watermark);
    return (watermark.overprint ? overprintRequest(ink) : colourProcedure(ink.colour)) +
           placeProcedure(watermark, text.descent) + outlineProcedures(text.outline) +
           (watermark.above ? "/isAbove true def\n" : "/isAbove false def\n");
}

bool isLandscape(const DSCDocument &document, const DSCPage &page)
{
    return document.orientationOf(page) == DSCOrientation::Landscape;
}

bool hasLandscapePages(const DSCDocument &document)
{
    return std::ranges::any_of(document.pages(),
                               [&](const DSCPage &page) { return isLandscape(document, page); });
}

bool hasUnmarkedPages(const Watermark &watermark, const DSCDocument &document)
{
    for (std::uint64_t page = 1; page <= document.pages().size(); ++page) {
        if (!watermark.pages.contains(page))
            return true;
    }
    return false;
}

/// The procedures, with what only some documents and requests need besides.
std::string procSetFor(const Watermark &watermark, const DSCDocument &document)
{
    std::string text(hasLandscapePages(document) ? kLandscapePageProcSet : "");
    text += watermark.overprint ? kOverprintProcSet : "";
    text += kWatermarkProcSet;
    text += hasUnmarkedPages(watermark, document) ? kUnmarkedPageProcSet : "";
    return text;
}

} // namespace

void applyToPostScript(const Watermark &watermark, const Job &job)
{
    const DSCDocument document(job.input);
    DocumentWriter writer(document, job.output);

    writer.copy({0, document.beginOfProcedures()});
    const bool turns = hasLandscapePages(document);
    writer.procedures("KLToolkitWatermark", requestOf(watermark), procSetFor(watermark, document));
    std::uint64_t copied = document.beginOfProcedures();
    for (std::uint64_t number = 0; const DSCPage &page : document.pages()) {
        const bool isMarked = watermark.pages.contains(++number);
        writer.copy({copied, page.content});
        if (isMarked && turns)
            writer.call("KLToolkitWatermarkTurned", isLandscape(document, page) ? "90" : "0");
        writer.call(isMarked ? "KLToolkitWatermarkPage" : "KLToolkitUnmarkedPage");
        copied = page.content;
        if (isMarked && !watermark.above && !document.isCutOff(page)) {
            writer.copy({copied, page.end});
            writer.call("KLToolkitWatermarkPageEnd");
            copied = page.end;
        }
    }
    writer.copy({copied, document.file().size()});
    writer.finish();
}
