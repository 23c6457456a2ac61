#pragma once

#include "Commands.h"
#include "Job.h"

// The three commands on a PostScript document that keeps the structuring conventions. The output
// is complete when a function returns; all of them throw ToolkitError when the document or the
// request cannot be served, and leave an output behind then that is of no use.

/// Draws the text on every page.
void applyToPostScript(const Watermark &watermark, const Job &job);

/// Puts the pages two on a side, in the order for folding.
void applyToPostScript(const Booklet &booklet, const Job &job);

/// Feeds cover sheets before and behind the job.
void applyToPostScript(const CoverPages &coverPages, const Job &job);
