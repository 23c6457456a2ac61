#pragma once

#include <optional>
#include <string>

class KLPrintOptions;

/// The toolkit of the job's queue: the auxiliary executable "toolkit" of the bundle that the PPD
/// attribute "APDialogExtension" names.
/// @return nullopt when a link of that chain is missing
std::optional<std::string> toolkitPath(const KLPrintOptions &options);
