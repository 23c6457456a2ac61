#pragma once

#include "ObjectFormat.h"

#include <string>
#include <string_view>

/// The message on one line: every CR and LF that has more text behind it becomes a blank. Line
/// breaks at the very end stay. A NUL becomes a blank too: behind one the scheduler would not see
/// the line's end. A message of more than 2046 bytes is cut at the end of a character and ends in
/// "...".
///
/// The scheduler takes each line of a filter's standard error as a command ("PPD: ", "ATTR: "), so
/// a line break inside an option's value must not start one. Nor must its length: the scheduler
/// breaks a line that is too long for it.
std::string onOneLine(std::string message);

/// Writes one log line, the finished message (see onOneLine()) and a line feed, to standard error
/// in a single write. The outcome of the write is ignored.
void writeLogLine(const std::string &message);

/// Writes one log line to standard error.
///
/// @param format  object-format syntax (see Platform::objectFormat). It begins with the level that
///                the scheduler reads: "DEBUG: ", "INFO: ", "ERROR: "; see filter(7).
/// @throws std::invalid_argument when the format does not fit the arguments; nothing is written
template <class... Arguments>
void WriteLog(std::string_view format, const Arguments &...arguments)
{
    writeLogLine(Platform::objectFormat(format, arguments...));
}
