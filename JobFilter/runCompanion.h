#pragma once

#include "FilterProgram.h"

/// The companion's work: copies standard input, or the file that is named, to standard output
/// without the job control in it, and tells the scheduler its pages where the queue's PPD, which
/// the environment names, asks for that. Messages go to standard error. Once in a process.
/// @return 0 when the whole job was written; else 1, and a line on standard error says why. What
///         standard output then still holds is not to be written any more.
int runCompanion(const FilterArguments &arguments);
