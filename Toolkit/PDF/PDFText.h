#pragma once

#include "TextSetter.h"

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

#include <cstdint>
#include <map>
#include <string>

// Texts as outlines in a PDF document.

/// How texts are filled.
struct PDFPaint {
    std::string operators;      ///< in front of all others, whole lines
    QPDFObjectHandle resources; ///< what these name
};

/// A form XObject that fills the outline of the text, its baseline's start being the origin.
QPDFObjectHandle formOf(QPDF &document, const Platform::ShapedText &text, const PDFPaint &paint);

/// The same for many texts of one font and size: each shape that they are made of is in the
/// document once.
class PDFGlyphs {
public:
    /// @param document  stays the caller's and outlives this object
    PDFGlyphs(QPDF &document, const PDFPaint &paint);

    QPDFObjectHandle formOf(const Platform::ShapedText &text);

private:
    std::string nameOf(const Platform::ShapedGlyph &glyph, const Platform::ShapedText &text);

    QPDF &_document;
    std::string _operators;
    QPDFObjectHandle _forms;
    QPDFObjectHandle _resources;                 ///< with these forms
    std::map<std::uint64_t, std::string> _names; ///< of the forms, by the shapes that they draw
};
