#pragma once

#include "InputFile.h"

#include <cstddef>
#include <string_view>

// The job control that drivers and spoolers put around page data: universal exit language markers
// (byte 27 and "%-12345X"), lines of the printer job language ("@PJL ..."), resets (byte 27 and
// "E") and control-Ds (byte 4), with any blanks, line ends and NUL bytes between them.

/// How many bytes of job control a text begins with.
/// @return 0 when there is nothing but blanks in front of something else
std::size_t jobControlBefore(std::string_view text);

/// Where the job control begins that a text ends with.
/// @return the text's size when there is none
std::size_t jobControlBehind(std::string_view text);

/// The PostScript document in a file: without the job control around it.
/// @return the whole file when no job control is in front of it or no PostScript behind that
/// @throws ToolkitError when it cannot be read
InputFile withoutJobControl(const InputFile &file);
