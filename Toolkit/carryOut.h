#pragma once

#include "Arguments.h"

#include <string>

/// Carries out one command: reads the input, writes the output.
/// @param ppdPath      the queue's PPD; empty when there is none
/// @param endsProcess  as a Job has it
/// @throws ToolkitError when it cannot be done; the output is not there then, except where it is
///         the input itself or no regular file
void carryOut(const Arguments &arguments, const std::string &ppdPath, bool endsProcess);
