#pragma once

#include "Commands.h"
#include "Job.h"

/// Draws the text on every page of a PDF document, in the page's own contents.
///
/// The watermark's position counts from the lower left corner of the page as it is read.
/// @throws ToolkitError when the document cannot be read or written; the output is of no use then
void applyWatermarkToPDF(const Watermark &watermark, const Job &job);
