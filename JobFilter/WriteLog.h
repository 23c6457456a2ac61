#pragma once

#include "ObjectFormat.h"

#include <string>
#include <string_view>

/// The message on one line: every CR and LF that has more text behind it becomes a blank. Line
/// breaks at the very end stay.
///
/// The scheduler takes each line of a filter's standard error as a command ("PPD: ", "ATTR: "), so
/// a line break inside an option's value must not start one.
std::string onOneLine(std::string message);

/// Writes one log line, the finished message and a line feed, to standard error in a single
/// write. The outcome of the write is ignored.
void writeLogLine(const std::string &message);

/// Writes one log line to standard error.
///
/// @param format  object-format syntax (see Platform::objectFormat). It begins with the level that
///                the scheduler reads: "DEBUG: ", "INFO: ", "ERROR: "; see filter(7).
template <class... Arguments>
void WriteLog(std::string_view format, const Arguments &...arguments)
{
    writeLogLine(Platform::objectFormat(format, arguments...));
}
