#pragma once

#include <optional>
#include <string>
#include <sys/types.h>

class KLPrintOptions;

/// The toolkit of the job's queue: the auxiliary executable "toolkit" of the bundle that the PPD
/// attribute "APDialogExtension" names.
///
/// The PPD says which program that is, so the program must be one that only an administrator or
/// the filter's own user can have put there (see objectionToProgram()).
/// @param objection  receives why a toolkit that is there must not be run; untouched otherwise.
///                   May be null.
/// @return nullopt when a link of that chain is missing or there is such an objection
std::optional<std::string> toolkitPath(const KLPrintOptions &options,
                                       std::optional<std::string> *objection = nullptr);

/// Why a program must not be run, for the log; nullopt when it may. It has to be a regular file
/// that may be executed and belongs to root or to the running user; neither it nor its folder may
/// be writable by everyone, save for a sticky folder. Links are followed, and both ends' folders
/// count.
std::optional<std::string> objectionToProgram(const std::string &path, uid_t runningUser);
