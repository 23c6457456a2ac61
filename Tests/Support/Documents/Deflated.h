#pragma once

#include <cstddef>
#include <string>

namespace Support {

/// The bytes as the PDF filter FlateDecode takes them.
std::string deflated(const std::string &bytes);

/// The text and so many MiB of blanks behind it: in one kilobyte for each of them, for FlateDecode
/// once.
std::string deflatedWithBlanks(const std::string &text, std::size_t mebibytes);

} // namespace Support
