#pragma once

#include "Commands.h"

#include <cstdint>
#include <string>

// A watermark's text may have placeholders: "[page]" stands for the number of the page, counted
// from 1 as the pages stand in the document, "[pages]" for how many there are, "[[" and "]]" for a
// single bracket. A watermark that has no placeholders has its text as it is, brackets and all.

/// The watermark's text on one page of a document.
/// @throws ToolkitError for an unknown placeholder, and for a bracket that belongs to none
std::string textOnPage(const Watermark &watermark, std::uint64_t page, std::uint64_t pages);

/// Whether the text is not the same on all pages of such a document.
/// @throws ToolkitError as above
bool differsFromPageToPage(const Watermark &watermark, std::uint64_t pages);
