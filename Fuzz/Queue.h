#pragma once

#include <string>

class KLPrintOptions;

namespace Fuzz {

/// A PPD whose header holds every line that takes a job's settings, and with the options that those
/// go by. No toolkit comes with it.
/// @param extraLines  further lines, each with its line feed
std::string queuePPD(const std::string &extraLines = {});

/// Asks the store all that it can be asked about a job's settings, for names that the PPD has and
/// for some that it has not, and looks at what is promised about the answers.
void askEverything(const KLPrintOptions &options);

} // namespace Fuzz
