#pragma once

#include <qpdf/InputSource.hh>

#include <cstdio>
#include <memory>
#include <string_view>

/// What a PDF document begins with.
constexpr std::string_view kPDFHeader = "%PDF-";
/// How far into a file a document may begin, in bytes: as far as readers look.
constexpr std::size_t kLatestPDFStart = 1024;

/// A PDF document as the library is to read it: without what others have put before and behind it,
/// which keeps it from finding the document's table of objects. What it finds by itself, and a file
/// that has more damage than that, is the file as it is.
///
/// Read like that, a document is as sound as if nothing had been there: nothing is guessed.
/// Positions that it states may count from its own first byte or from the file's. Objects behind
/// its end are no foreign matter but a change that is not complete: they are left where they are.
/// @param input  a regular file; stays the caller's, who keeps it open as long as the result lives
/// @throws ToolkitError when reading fails
std::shared_ptr<InputSource> pdfInput(std::FILE *input);
