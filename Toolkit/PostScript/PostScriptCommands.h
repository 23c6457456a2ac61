#pragma once

#include "Commands.h"
#include "Job.h"

// The three commands on a PostScript document that keeps the structuring conventions (DSC 3.0): one
// without page comments is refused. The output is complete when a function returns; all of them
// throw ToolkitError when the document or the request cannot be served, and leave an output behind
// then that is of no use.

/// Draws the text on every page. Its position counts in the page's default user space.
void applyToPostScript(const Watermark &watermark, const Job &job);

/// Puts the pages two on a side, in the order for folding, and asks for printing on both sides,
/// flipped about the short edge.
void applyToPostScript(const Booklet &booklet, const Job &job);

/// Feeds cover sheets before and behind the job (see coverPlan()), with the PPD's code for source,
/// media and duplex. Where the PPD has none, duplex alone is asked for, in the words that every
/// PostScript printer understands. A front cover is left out when the document runs, with a mark
/// drawn ahead of its pages that has not been shown: that comes on the first page.
void applyToPostScript(const CoverPages &coverPages, const Job &job);
