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

/// Refuses the request, whatever it is: a PDF document has no way to choose a sheet's tray.
[[noreturn]] void applyToPDF(const CoverPages &coverPages, const Job &job);
