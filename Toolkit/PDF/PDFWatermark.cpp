#include "PDFCommands.h"

#include "Ink.h"
#include "PDFDocument.h"
#include "PDFOutline.h"
#include "PDFPage.h"
#include "PDFStructure.h"
#include "watermarkText.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <string>

namespace {

using Platform::ShapedText;
using Platform::TextPathSegment;
using Rectangle = QPDFObjectHandle::Rectangle;

std::string colourOperator(const std::vector<double> &components)
{
    std::string text;
    for (const double component : components)
        text += pdfNumber(component) + " ";
    return text + (components.size() == 1 ? "g\n" : components.size() == 3 ? "rg\n" : "k\n");
}

/// A box around all of the outline, with a point to spare.
Rectangle boundsOf(const ShapedText &text)
{
    Rectangle bounds(0, 0, 0, 0);
    for (const TextPathSegment &segment : text.outline) {
        for (std::size_t i = 0; i < pointsOf(segment); ++i) {
            bounds.llx = std::min(bounds.llx, segment.points[i].x);
            bounds.lly = std::min(bounds.lly, segment.points[i].y);
            bounds.urx = std::max(bounds.urx, segment.points[i].x);
            bounds.ury = std::max(bounds.ury, segment.points[i].y);
        }
    }
    return {bounds.llx - 1, bounds.lly - 1, bounds.urx + 1, bounds.ury + 1};
}

/// The page's area and as much again on every side: nothing that shows is cut off by it.
Rectangle generousBounds(const PDFPage &page)
{
    const Rectangle box = page.box();
    const double width = box.urx - box.llx;
    const double height = box.ury - box.lly;
    return {box.llx - width, box.lly - height, box.urx + width, box.ury + height};
}

/// What the text refers to: nothing, or how the page's own marks show through it.
QPDFObjectHandle resourcesOf(const Watermark &watermark, const Ink &ink)
{
    QPDFObjectHandle resources = QPDFObjectHandle::newDictionary();
    if (watermark.overprint)
        resources.replaceKey(
            "/ExtGState", QPDFObjectHandle::parse("<< /Overprint << /Type /ExtGState /BM /Multiply "
                                                  "/ca " +
                                                  pdfNumber(ink.share) + " >> >>"));
    return resources;
}

/// One watermark for the pages of a document.
class Stamp {
public:
    Stamp(PDFDocument &document, const Watermark &watermark, const ShapedText &text);

    void drawOn(const PDFPage &page);

    /// To be called behind the last page.
    void finish() { _structure.followContents(); }

private:
    void drawAbove(const PDFPage &page);
    void drawBelow(const PDFPage &page);
    std::string drawing(const PDFPage &page, const std::string &name) const;
    std::string nameIn(QPDFObjectHandle objects);
    QPDFObjectHandle sharedStream(const std::string &bytes);

    QPDF &_document;
    const Watermark &_watermark;
    QPDFObjectHandle _text;
    double _descent;
    PDFPageForms _pageForms;
    PDFStructure _structure;
    std::map<std::string, QPDFObjectHandle> _streams;
};

Stamp::Stamp(PDFDocument &document, const Watermark &watermark, const ShapedText &text)
    : _document(document.qpdf()),
      _watermark(watermark),
      _text(QPDFObjectHandle::newStream(&_document)),
      _descent(text.descent),
      _pageForms(_document),
      _structure(_document)
{
    const Ink ink = inkOf(watermark);
    _text.replaceStreamData((watermark.overprint ? "/Overprint gs\n" : "") +
                                colourOperator(ink.colour) + pathOperators(text.outline),
                            QPDFObjectHandle::newNull(), QPDFObjectHandle::newNull());
    QPDFObjectHandle description = _text.getDict();
    description.replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
    description.replaceKey("/Subtype", QPDFObjectHandle::newName("/Form"));
    description.replaceKey("/BBox", QPDFObjectHandle::newArray(boundsOf(text)));
    description.replaceKey("/Resources", resourcesOf(watermark, ink));
}

void Stamp::drawOn(const PDFPage &page)
{
    if (_watermark.above)
        drawAbove(page);
    else
        drawBelow(page);
}

/// What is left behind at the end of a page's contents is unknown (an open "q", another matrix),
/// so they become a form and the text follows it.
void Stamp::drawAbove(const PDFPage &page)
{
    QPDFObjectHandle objects = QPDFObjectHandle::newDictionary();
    std::string contents;
    if (const auto form = _pageForms.formOf(page, generousBounds(page))) {
        objects.replaceKey("/Page", *form);
        _structure.contentsMoved(page.object(), *form);
        contents = "q /Page Do Q\n";
    }
    objects.replaceKey("/Text", _text);
    contents += drawing(page, "/Text");

    QPDFObjectHandle resources = page.resources().shallowCopy();
    resources.replaceKey("/XObject", objects);
    page.object().replaceKey("/Resources", resources);
    page.object().replaceKey("/Contents", sharedStream(contents));
}

/// Everything is as it should be at the beginning of a page's contents.
void Stamp::drawBelow(const PDFPage &page)
{
    QPDFObjectHandle resources = page.resources();
    if (!resources.getKey("/XObject").isDictionary())
        resources.replaceKey("/XObject", QPDFObjectHandle::newDictionary());
    QPDFObjectHandle objects = resources.getKey("/XObject");
    const std::string name = nameIn(objects);
    objects.replaceKey(name, _text);

    std::vector<QPDFObjectHandle> contents = page.contents();
    contents.insert(contents.begin(), sharedStream(drawing(page, name)));
    page.object().replaceKey("/Contents", QPDFObjectHandle::newArray(contents));
}

/// The operators that put the text in its place, in the page's user space. Who has a tagged page
/// read aloud is not told of it.
std::string Stamp::drawing(const PDFPage &page, const std::string &name) const
{
    const double angle = std::fmod(_watermark.angle, 360) * std::numbers::pi / 180;
    QPDFMatrix matrix = page.toUserSpace();
    matrix.translate(_watermark.position.x, _watermark.position.y);
    matrix.concat({std::cos(angle), std::sin(angle), -std::sin(angle), std::cos(angle), 0, 0});
    matrix.translate(0, _descent);
    return "/Artifact << /Type /Pagination /Subtype /Watermark >> BDC\nq " + matrix.unparse() +
           " cm " + name + " Do Q\nEMC\n";
}

/// The text's name among a page's XObjects: the same wherever it is free or already the text's.
std::string Stamp::nameIn(QPDFObjectHandle objects)
{
    std::string name = "/Watermark";
    for (int i = 1; objects.hasKey(name) && !objects.getKey(name).isSameObjectAs(_text); ++i)
        name = "/Watermark" + std::to_string(i);
    return name;
}

/// Pages of the same size share the stream.
QPDFObjectHandle Stamp::sharedStream(const std::string &bytes)
{
    const auto known = _streams.find(bytes);
    if (known != _streams.end())
        return known->second;
    return _streams.emplace(bytes, QPDFObjectHandle::newStream(&_document, bytes)).first->second;
}

} // namespace

void applyToPDF(const Watermark &watermark, const Job &job)
{
    PDFDocument document(job);
    const ShapedText text = watermarkText(watermark);
    if (!text.outline.empty()) {
        if (watermark.overprint)
            document.needVersion("1.4"); // the first one with transparency
        Stamp stamp(document, watermark, text);
        for (std::uint64_t number = 0; const QPDFObjectHandle &page : document.pages()) {
            if (watermark.pages.contains(++number))
                stamp.drawOn(PDFPage(page));
        }
        stamp.finish();
    }
    document.write(job.output);
}
