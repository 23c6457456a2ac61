#pragma once

#include "PPD.h"
#include "Queues.h"

#include <string>

namespace Model {

/// The line for a shell that prints a document on a queue with these options: lp(1) gets them as
/// they are, whatever bytes but NUL are in them.
/// @param path  of the document; empty for a line that ends where it would stand
/// @return a line without a line feed, unless one is in the options
std::string commandLine(const Queue &queue, const JobOptions &options, const std::string &path);

/// Options in the syntax of an option string (parsedOptions()), so that they come out of it as they
/// are. Names are those of options: no blank, quote or "=" in them.
std::string optionString(const JobOptions &options);

} // namespace Model
