#pragma once

#include <string>

namespace Platform {

/// Writes one message to the system's general log (syslog(3)) as a notice under the program's
/// name. Nothing goes to standard error; without a log daemon the message is lost.
/// @param message  stands in the log as it is, up to its first NUL byte; percent signs mean nothing
void writeSystemLog(const std::string &message);

} // namespace Platform
