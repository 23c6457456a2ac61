#pragma once

#include "Descriptor.h"

#include <stdexcept>
#include <string>
#include <sys/types.h>

namespace Platform {

/// A program that must not be run; what() names what was objected to, and why.
class UntrustedProgramError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A program that only root or the running user can have put where it is.
struct TrustedProgram {
    std::string path;  ///< as it was asked for
    Descriptor file{}; ///< the file that was looked at, open for being started (O_PATH)
};

/// Opens a program that may be run: a regular, executable file. It, every folder from the root to
/// it and every link on the way belong to root or to the running user, and neither file nor folder
/// may be written by group or others; a sticky folder of root's may, as there nobody can replace
/// what is another's. So nobody else can make the path lead elsewhere afterwards, either.
///
/// The path is walked once, one open folder after the other: no part of it can be swapped between
/// the look and the next step.
/// @throws UntrustedProgramError when something is missing or there is an objection; it names the
///         folder, link or file by the path without links
TrustedProgram openTrustedProgram(const std::string &path, uid_t runningUser);

} // namespace Platform
