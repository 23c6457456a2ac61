#pragma once

#include <cstdio>

/// Copies the rest of one open stream to another in blocks of 16384 bytes. An empty input writes
/// nothing and is true.
///
/// A read error ends the copy like the end of the data: who must know asks `input` for its error
/// indicator afterwards. Neither stream is closed, flushed or repositioned.
/// @return true when the input ran out and every block was written whole; false as soon as a
///         write falls short.
bool spoolToFile(FILE *input, FILE *output);
