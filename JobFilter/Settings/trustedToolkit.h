#pragma once

#include "TrustedProgram.h"

#include <optional>
#include <string>

class KLPrintOptions;

/// The toolkit of the job's queue: the auxiliary executable "toolkit" of the bundle that the PPD
/// attribute "APDialogExtension" names.
///
/// The PPD says which program that is, so the program must be one that only an administrator or
/// the filter's own user can have put there (see Platform::openTrustedProgram()).
/// @param objection  receives why a toolkit that is there must not be run; untouched otherwise.
///                   May be null.
/// @return the toolkit, open; nullopt when a link of that chain is missing or there is such an
///         objection
std::optional<Platform::TrustedProgram>
trustedToolkit(const KLPrintOptions &options, std::optional<std::string> *objection = nullptr);

/// The same for the bundle at that path.
std::optional<Platform::TrustedProgram>
trustedToolkitIn(const std::string &bundlePath, std::optional<std::string> *objection = nullptr);
