#pragma once

#include "Descriptor.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// What the fuzzers share. A fuzzer is a source that defines
///
///     void Fuzz::tryInput(std::string_view input);
///
/// which is called with one input after another and comes back from each, whatever it is. A crash,
/// a sanitizer's objection, a leak, an exception that comes out and a broken require() end the
/// process as a finding.
namespace Fuzz {

void tryInput(std::string_view input);

/// Ends the process as a finding unless the invariant holds.
/// @param invariant  what was expected, for the report
void require(bool holds, std::string_view invariant);

/// The same for two texts that are expected to be equal, which the report then shows.
void requireEqual(std::string_view expected, std::string_view actual, std::string_view invariant);

/// Takes the first line off the input, without its line feed; all of it when there is none.
std::string_view takeLine(std::string_view &input);

/// Takes the first field off the line, without the tab behind it; all of it when there is none.
std::string_view takeField(std::string_view &line);

/// A regular file in memory, gone with its owner.
class MemoryFile {
public:
    /// An empty file.
    MemoryFile();

    /// Puts the bytes in the place of all that the file holds.
    void assign(std::string_view bytes);
    /// What it holds now.
    std::string bytes() const;
    /// Names the file for this process and its children; each opening starts at the file's start.
    std::string path() const;

private:
    Platform::Descriptor _descriptor;
};

} // namespace Fuzz
