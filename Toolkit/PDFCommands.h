#pragma once

#include "Commands.h"
#include "Job.h"

// The commands on a PDF document. The output is complete when a function returns; both throw
// ToolkitError when the document or the request cannot be served, and leave an output behind then
// that is of no use. Cover pages are missing: PDF has no means to choose a tray.

/// Draws the text on every page.
void applyWatermarkToPDF(const Watermark &watermark, const Job &job);

/// Puts the pages two on a side, in the order for folding.
void applyBookletToPDF(const Booklet &booklet, const Job &job);
