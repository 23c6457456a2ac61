#pragma once

#include "TextSetter.h"

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

/// An annotation as it is to be drawn: with an appearance stream.
///
/// One that brings none gets what its own entries say (ISO 32000, 12.5.6): squares, circles, lines,
/// ink, polygons, text that is highlighted, underlined or struck out, and free text. Width and
/// dashes of the border, colours and opacity are as they say; cloudy borders, line endings, leader
/// and callout lines and rich text are left out. Free text is set in Helvetica, made smaller where
/// it would not fit.
/// @param document    the annotation's; gets the stream
/// @param annotation  a dictionary, whatever its entries are; not changed
/// @param texts       sets free text
/// @return the annotation itself when it has a normal appearance, when it is of another kind, or
///         when its entries do not say enough; else a copy
QPDFObjectHandle annotationWithLook(QPDF &document, QPDFObjectHandle annotation,
                                    Platform::TextSetter &texts);
