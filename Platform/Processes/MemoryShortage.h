#pragma once

namespace Platform {

/// Memory that cannot be had ends the process from here on: abandonRun() cleans up
/// (Cancellation.h), the line goes to standard error, the status is 1.
///
/// This holds for the libraries too, and because of them: libcups uses what malloc() returns
/// without a look, so that it would crash, or leave settings out and have the rest printed. A
/// request for more than there can ever be counts as well. Children are not concerned; in the
/// sanitizers' build, and with another C library than glibc, nobody is, for the allocator is
/// another. A program that links this file has its malloc() and kin.
/// @param line  with its level word and line feed; of static lifetime. That of the last call
///              counts.
void endWhenMemoryRunsOut(const char *line);

} // namespace Platform
