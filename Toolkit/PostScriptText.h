#pragma once

#include <span>
#include <string>
#include <string_view>

/// A number as PostScript reads it: up to four digits behind the point, no exponent.
std::string postScriptNumber(double number);

/// Numbers with a blank between.
std::string postScriptNumbers(std::span<const double> numbers);

/// A procedure set of ours (ProcSets.h) as a resource of a document.
/// @param name       of the set, begins with DSCDocument::kOurProcSets
/// @param run        tells the runs of the toolkit on one document apart
/// @param procedures lines of PostScript in which ".N" stands for the run
std::string procSetResource(std::string_view name, unsigned run, std::string_view procedures);

/// The text with the run's number in place of each ".N".
std::string withRunNumber(std::string_view text, unsigned run);

/// What frames a page that the end of the document cuts off (Unfinished.ps).
std::string unfinishedPageBegin(unsigned run);
/// @param missingEndOfData  @see DSCDocument::missingEndOfData
std::string unfinishedPageEnd(unsigned run, std::string_view missingEndOfData);
