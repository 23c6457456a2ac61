#pragma once

#include "Commands.h"
#include "Job.h"

/// Puts the pages of a PDF document two on a side of landscape sheets, in the order for folding,
/// and asks for printing on both sides, flipped about the short edge.
///
/// Annotations that print become part of their page; links, outlines and forms are gone.
/// @throws ToolkitError when the document cannot be read or written, when the sheet's size is
///         unknown or its margins leave too little; the output is of no use then
void applyBookletToPDF(const Booklet &booklet, const Job &job);
