#pragma once

#include "TemporaryFolder.h"

#include <string>

// The sample driver's models as the benchmarks compare them.

/// Paths of PPDs for queues of one model. The printer is asked nothing over SNMP.
struct SamplePPDs {
    std::string asItIs;
    std::string withoutOurPrograms; ///< what the scheduler's own filters make goes to the printer
};

/// @param ppd     path of the model's PPD
/// @param type    what its printer takes, "application/vnd.cups-postscript" for instance
/// @param folder  where the PPDs are written; it must outlive their use
/// @throws std::runtime_error when a file cannot be read or written
SamplePPDs samplePPDs(const std::string &ppd, const std::string &type,
                      const Support::TemporaryFolder &folder);
