#pragma once

#include "TextSetter.h"

#include <cstdio>
#include <string>

/// What one command works on, and with. All stays the caller's, who checks the output for write
/// errors when he closes it.
struct Job {
    std::FILE *input;  ///< regular file, seekable, at its start
    std::FILE *output; ///< regular file, seekable, empty
    Platform::TextSetter &texts;
    std::string ppdPath; ///< the queue's PPD; empty when there is none
    /// Whether the process ends behind this job. The system takes all memory back at once then,
    /// where to give back each of a document's parts takes up to a sixth of the time.
    bool endsProcess = false;
};
