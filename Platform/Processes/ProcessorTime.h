#pragma once

#include <chrono>

namespace Platform {

/// Ends the process once it has taken so much processor time, its own and the system's since it
/// began: abandonRun() cleans up (Cancellation.h), the line goes to standard error, the status
/// is 1.
///
/// The system may have set a lower bound: that one holds then, and ends the process with the same
/// line. Children inherit the bound, but each has its own time, and no line. One thread.
/// @param line  with its line feed; of static lifetime
void endAfterProcessorTime(std::chrono::seconds most, const char *line);

} // namespace Platform
