#include "PDFCommands.h"

#include "Ink.h"
#include "PDFDocument.h"
#include "PDFOutline.h"
#include "PDFPage.h"
#include "PDFStructure.h"
#include "PDFText.h"
#include "TextPlace.h"
#include "watermarkText.h"

#include <array>
#include <cmath>
#include <map>
#include <numbers>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using Platform::ShapedText;
using Rectangle = QPDFObjectHandle::Rectangle;

std::string colourOperator(const std::vector<double> &components)
{
    std::string text;
    for (const double component : components)
        text += pdfNumber(component) + " ";
    return text + (components.size() == 1 ? "g\n" : components.size() == 3 ? "rg\n" : "k\n");
}

/// The page's area and as much again on every side: nothing that shows is cut off by it.
Rectangle generousBounds(const PDFPage &page)
{
    const Rectangle box = page.box();
    const double width = box.urx - box.llx;
    const double height = box.ury - box.lly;
    return {box.llx - width, box.lly - height, box.urx + width, box.ury + height};
}

/// How the text is filled: in its colour, and perhaps so that the page's own marks show through.
PDFPaint paintOf(const Watermark &watermark)
{
    const Ink ink = inkOf(watermark);
    PDFPaint paint = {colourOperator(ink.colour), QPDFObjectHandle::newDictionary()};
    if (!watermark.overprint)
        return paint;
    paint.operators.insert(0, "/Overprint gs\n");
    paint.resources.replaceKey(
        "/ExtGState",
        QPDFObjectHandle::parse("<< /Overprint << /Type /ExtGState /BM /Multiply /ca " +
                                pdfNumber(ink.share) + " >> >>"));
    return paint;
}

/// What a page is marked with.
struct Mark {
    QPDFObjectHandle form; ///< its origin is where the baseline starts
    double descent;
    Platform::TextSize box;
    std::string name; ///< among the objects of a page, where that is free
};

/// The mark's name among a page's XObjects: the same wherever it is free or already the mark's.
std::string nameIn(QPDFObjectHandle objects, const Mark &mark)
{
    std::string name = mark.name;
    for (int i = 1; objects.hasKey(name) && !objects.getKey(name).isSameObjectAs(mark.form); ++i)
        name = mark.name + std::to_string(i);
    return name;
}

/// Where the texts come on a page, and all that decides it.
struct Placing {
    std::array<double, 6> page = {};
    std::array<double, 3> text = {};
    std::vector<std::string> matrices = {};
};

/// One watermark for the pages of a document.
class Stamp {
public:
    /// @throws ToolkitError when the text cannot be drawn
    Stamp(PDFDocument &document, const Watermark &watermark, Platform::TextSetter &texts);

    /// @param number  of the page, from 1
    void drawOn(const PDFPage &page, std::uint64_t number);

    /// To be called behind the last page.
    void finish() { _structure.followContents(); }

private:
    std::optional<Mark> markOf(std::uint64_t page);
    void drawAbove(const PDFPage &page, const Mark &mark);
    void drawBelow(const PDFPage &page, const Mark &mark);
    std::string drawing(const PDFPage &page, const Mark &mark, const std::string &name);
    std::string operatorsFor(const PDFPage &page, const Mark &mark, const std::string &name);
    const std::vector<std::string> &matricesFor(const PDFPage &page, const Mark &mark);
    QPDFObjectHandle sharedStream(const std::string &bytes);

    QPDF &_document;
    const Watermark &_watermark;
    WatermarkText _text;
    std::optional<Mark> _mark; ///< of the first page, if it draws anything
    PDFGlyphs _glyphs;
    PDFPageForms _pageForms;
    PDFStructure _structure;
    std::map<std::string, QPDFObjectHandle> _streams;
    std::map<std::pair<std::array<double, 6>, std::string>, std::string> _drawings;
    Placing _latest; ///< mostly it is that of the next page, too
};

Stamp::Stamp(PDFDocument &document, const Watermark &watermark, Platform::TextSetter &texts)
    : _document(document.qpdf()),
      _watermark(watermark),
      _text(watermark, document.pages().size(), texts),
      _glyphs(_document, paintOf(watermark)),
      _pageForms(_document),
      _structure(_document)
{
    const ShapedText text = _text.onPage(1);
    if (text.outline.empty())
        return;
    _mark = {formOf(_document, text, paintOf(watermark)), text.descent, text.size(), "/Watermark"};
    if (watermark.overprint)
        document.needVersion("1.4"); // the first one with transparency
}

/// @return nullopt for a text that draws nothing
std::optional<Mark> Stamp::markOf(std::uint64_t page)
{
    if (!_mark || !_text.differs())
        return _mark;
    const ShapedText text = _text.onPage(page);
    return Mark{_glyphs.formOf(text), text.descent, text.size(),
                "/WatermarkOnPage" + std::to_string(page)};
}

void Stamp::drawOn(const PDFPage &page, std::uint64_t number)
{
    const auto mark = markOf(number);
    if (!mark)
        return;
    if (_watermark.above)
        drawAbove(page, *mark);
    else
        drawBelow(page, *mark);
}

/// What is left behind at the end of a page's contents is unknown (an open "q", another matrix),
/// so they become a form and the text follows it.
void Stamp::drawAbove(const PDFPage &page, const Mark &mark)
{
    QPDFObjectHandle objects = QPDFObjectHandle::newDictionary();
    std::string contents;
    if (const auto form = _pageForms.formOf(page, generousBounds(page))) {
        objects.replaceKey("/Page", *form);
        _structure.contentsMoved(page.object(), *form);
        contents = "q /Page Do Q\n";
    }
    objects.replaceKey("/Text", mark.form);
    contents += drawing(page, mark, "/Text");

    QPDFObjectHandle resources = page.resources().shallowCopy();
    resources.replaceKey("/XObject", objects);
    page.object().replaceKey("/Resources", resources);
    page.object().replaceKey("/Contents", sharedStream(contents));
}

/// Everything is as it should be at the beginning of a page's contents.
void Stamp::drawBelow(const PDFPage &page, const Mark &mark)
{
    QPDFObjectHandle resources = page.resources();
    if (!resources.getKey("/XObject").isDictionary())
        resources.replaceKey("/XObject", QPDFObjectHandle::newDictionary());
    QPDFObjectHandle objects = resources.getKey("/XObject");
    const std::string name = nameIn(objects, mark);
    objects.replaceKey(name, mark.form);

    std::vector<QPDFObjectHandle> contents = page.contents();
    contents.insert(contents.begin(), sharedStream(drawing(page, mark, name)));
    page.object().replaceKey("/Contents", QPDFObjectHandle::newArray(contents));
}

/// The operators that put the text in its places, in the page's user space. To make text of their
/// numbers takes as long as the rest of a page, and most pages of a document are alike.
std::string Stamp::drawing(const PDFPage &page, const Mark &mark, const std::string &name)
{
    if (_text.differs())
        return operatorsFor(page, mark, name);
    const auto [drawing, isNew] = _drawings.try_emplace({page.geometry(), name});
    if (isNew)
        drawing->second = operatorsFor(page, mark, name);
    return drawing->second;
}

/// Who has a tagged page read aloud is not told of the text.
std::string Stamp::operatorsFor(const PDFPage &page, const Mark &mark, const std::string &name)
{
    std::string text = "/Artifact << /Type /Pagination /Subtype /Watermark >> BDC\n";
    for (const std::string &matrix : matricesFor(page, mark))
        text.append("q ").append(matrix).append(" cm ").append(name).append(" Do Q\n");
    return text + "EMC\n";
}

/// From the mark's form to the page's user space, for each of the texts.
/// @return valid until the next call
const std::vector<std::string> &Stamp::matricesFor(const PDFPage &page, const Mark &mark)
{
    Placing placing = {page.geometry(), {mark.box.width, mark.box.height, mark.descent}};
    if (placing.page == _latest.page && placing.text == _latest.text)
        return _latest.matrices;
    for (const PlacedText &place :
         placedTexts(_watermark, mark.box, {page.width(), page.height()})) {
        const double angle = std::fmod(place.angle, 360) * std::numbers::pi / 180;
        QPDFMatrix matrix = page.toUserSpace();
        matrix.translate(place.corner.x, place.corner.y);
        matrix.concat({std::cos(angle), std::sin(angle), -std::sin(angle), std::cos(angle), 0, 0});
        matrix.scale(place.scale, place.scale);
        matrix.translate(0, mark.descent);
        placing.matrices.push_back(matrix.unparse());
    }
    _latest = std::move(placing);
    return _latest.matrices;
}

/// Pages of the same size share the stream, unless it names a text of their own.
QPDFObjectHandle Stamp::sharedStream(const std::string &bytes)
{
    if (_text.differs() && !_watermark.above)
        return QPDFObjectHandle::newStream(&_document, bytes);
    const auto known = _streams.find(bytes);
    if (known != _streams.end())
        return known->second;
    return _streams.emplace(bytes, QPDFObjectHandle::newStream(&_document, bytes)).first->second;
}

} // namespace

void applyToPDF(const Watermark &watermark, const Job &job)
{
    job.texts.prepare(); // ahead of the document, which is much memory
    PDFDocument document(job);
    Stamp stamp(document, watermark, job.texts);
    for (std::uint64_t number = 0; const QPDFObjectHandle &page : document.pages()) {
        if (watermark.pages.contains(++number))
            stamp.drawOn(PDFPage(page), number);
    }
    stamp.finish();
    job.texts.forgetFonts();
    document.write(job.output);
}
