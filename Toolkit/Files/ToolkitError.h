#pragma once

#include <stdexcept>

/// Why a command cannot be carried out: one sentence in plain words that the user is shown. It
/// names nothing of the job: no text but one character that no font has, no file, no option value.
/// what() has no line end.
class ToolkitError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// "The input file cannot be read: Input/output error."
/// @param reason  a value of errno
ToolkitError unreadableInput(int reason);

/// "The output file cannot be written: No space left on device."
/// @param reason  a value of errno
ToolkitError unwritableOutput(int reason);
