#pragma once

#include "FilterProgram.h"

#include <functional>

/// The filter's work: reads standard input when no file is named, writes the printer's job to
/// standard output and messages to standard error.
///
/// The queue's PPD is the one that the environment names (KLPrintOptions). What the process itself
/// needs once (signals, standard descriptors) is main()'s part. Once in a process, one thread.
/// @param isWhole  asked when standard input has been read to its end and nothing is written yet:
///                 whether that was all of the job, else nothing is printed. Empty where the end
///                 says so itself.
/// @return 0 when the whole job was written; else 1, and a line on standard error says why
int runFilter(const FilterArguments &arguments, const std::function<bool()> &isWhole = {});
