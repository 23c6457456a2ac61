#include "PDFText.h"

#include "PDFOutline.h"
#include "watermarkText.h"

#include <algorithm>

namespace {

using Platform::ShapedGlyph;
using Platform::ShapedText;
using Platform::TextPathSegment;
using Rectangle = QPDFObjectHandle::Rectangle;

/// A box around all of the outline, with a point to spare.
Rectangle boundsOf(const std::vector<TextPathSegment> &outline)
{
    Rectangle bounds(0, 0, 0, 0);
    for (const TextPathSegment &segment : outline) {
        for (std::size_t i = 0; i < pointsOf(segment); ++i) {
            bounds.llx = std::min(bounds.llx, segment.points[i].x);
            bounds.lly = std::min(bounds.lly, segment.points[i].y);
            bounds.urx = std::max(bounds.urx, segment.points[i].x);
            bounds.ury = std::max(bounds.ury, segment.points[i].y);
        }
    }
    return {bounds.llx - 1, bounds.lly - 1, bounds.urx + 1, bounds.ury + 1};
}

QPDFObjectHandle makeForm(QPDF &document, const std::string &contents, const Rectangle &bounds,
                          const QPDFObjectHandle &resources)
{
    QPDFObjectHandle form = QPDFObjectHandle::newStream(&document, contents);
    QPDFObjectHandle description = form.getDict();
    description.replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
    description.replaceKey("/Subtype", QPDFObjectHandle::newName("/Form"));
    description.replaceKey("/BBox", QPDFObjectHandle::newArray(bounds));
    description.replaceKey("/Resources", resources);
    return form;
}

} // namespace

QPDFObjectHandle formOf(QPDF &document, const ShapedText &text, const PDFPaint &paint)
{
    return makeForm(document, paint.operators + pathOperators(text.outline), boundsOf(text.outline),
                    paint.resources);
}

PDFGlyphs::PDFGlyphs(QPDF &document, const PDFPaint &paint)
    : _document(document),
      _operators(paint.operators),
      _forms(QPDFObjectHandle::newDictionary()),
      _resources(document.makeIndirectObject(QPDFObjectHandle(paint.resources).shallowCopy()))
{
    _resources.replaceKey("/XObject", _forms);
}

QPDFObjectHandle PDFGlyphs::formOf(const ShapedText &text)
{
    std::string contents = _operators;
    for (const ShapedGlyph &glyph : text.glyphs) {
        contents += "q 1 0 0 1 " + pdfNumber(glyph.origin.x) + " " + pdfNumber(glyph.origin.y) +
                    " cm " + nameOf(glyph, text) + " Do Q\n";
    }
    return makeForm(_document, contents, boundsOf(text.outline), _resources);
}

std::string PDFGlyphs::nameOf(const ShapedGlyph &glyph, const ShapedText &text)
{
    const auto [shape, isNew] =
        _names.try_emplace(glyph.shape, "/G" + std::to_string(_names.size() + 1));
    if (isNew) {
        const auto outline = outlineOf(glyph, text);
        _forms.replaceKey(shape->second,
                          makeForm(_document, pathOperators(outline), boundsOf(outline),
                                   QPDFObjectHandle::newDictionary()));
    }
    return shape->second;
}
