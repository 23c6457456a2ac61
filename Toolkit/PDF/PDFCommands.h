#pragma once

#include "Commands.h"
#include "Job.h"

// The three commands on a PDF document (ISO 32000). The output is complete when a function returns;
// all of them throw ToolkitError when the document or the request cannot be served, and leave an
// output behind then that is of no use.

/// Draws the text on every page, in the page's own contents.
///
/// The watermark's position counts from the lower left corner of the page as it is read.
void applyToPDF(const Watermark &watermark, const Job &job);

/// Puts the pages two on a side of landscape sheets, in the order for folding, and asks for
/// printing on both sides, flipped about the short edge.
///
/// Annotations that print become part of their page; links, outlines and forms are gone.
void applyToPDF(const Booklet &booklet, const Job &job);

/// Puts covers before and behind the document, as pages of it: a PDF document has no way to choose
/// a sheet's tray or medium. A document that is printed on both sides gets blank pages where a
/// cover or the job has to begin on a sheet of its own. Refuses all unless the request says that
/// covers like these will do.
void applyToPDF(const CoverPages &coverPages, const Job &job);
