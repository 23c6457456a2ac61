#pragma once

#include "PPD.h"

#include <string>
#include <vector>

/// A mistake in a PPD, in three sentences.
struct PPDMistake {
    std::string what;    ///< which line is wrong, "There is no line *JCLBegin."
    std::string onPaper; ///< what becomes of jobs
    std::string cure;    ///< what to write instead
};

/// Every mistake that the guide for driver writers warns of, the gravest first: none of them is an
/// error of the format (PPD 4.3), and none leaves a trace when a job is printed.
/// @return empty when the PPD makes none
std::vector<PPDMistake> checkPPD(const PPD &ppd);
