#pragma once

#include "Arguments.h"
#include "TextSetter.h"

#include <string>

/// Carries out one command: reads the input, writes the output.
/// @param ppdPath      the queue's PPD; empty when there is none
/// @param endsProcess  as a Job has it
/// @param texts        likewise
/// @throws ToolkitError when it cannot be done; the output is not there then, except where it is
///         the input itself or no regular file
/// @throws Platform::TextSettingError when a text cannot be set; the output is not there then
void carryOut(const Arguments &arguments, const std::string &ppdPath, bool endsProcess,
              Platform::TextSetter &texts);
