#pragma once

#include "Program.h"

#include <optional>
#include <string>

namespace Support {

// Jobs that ask for the user's domain, and what became of them.

/// The PPD of a queue without toolkit whose header names the user and the domain.
/// @param extraLines  further PPD lines, each with its line feed
std::string directoryPPD(const std::string &extraLines = {});

/// What the job's header says the domain is; "none" when it says nothing, and for a job that failed
/// or lacks its end. The job's page data are "%!PS\n".
std::string domainIn(const ProgramResult &job);

/// The job's log without the line about the toolkit, which the queue does not have; a complaint
/// when there was no such line.
std::string logOf(const ProgramResult &job);

/// The log of a job of this user's for whom the directory knows records.
/// @param node  the last record's
std::string logOfFound(const std::string &user, const std::string &node, int records = 1);

/// The log of a job of this user's whom no directory knows.
std::string logOfNone(const std::string &user);

/// What stands between the first `begin` and the `end` behind it; nullopt without them.
std::optional<std::string> textBetween(const std::string &text, const std::string &begin,
                                       const std::string &end);

} // namespace Support
