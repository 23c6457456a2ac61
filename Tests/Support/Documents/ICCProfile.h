#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Support {

/// The number in four big-endian bytes, as ICC profiles (ICC.1) have them.
std::string bigEndian(std::uint32_t number);

/// One entry of an ICC profile's tag table.
struct ICCTag {
    std::string_view signature; ///< four characters
    std::uint32_t offset;       ///< bytes from the start of the file
    std::uint32_t size;         ///< bytes
};

/// The bytes of an ICC profile that is empty but for its size, its device model and its tag table
/// (right behind the header, at byte 128), followed by `rest`.
/// @param model  four characters
std::string iccProfileWithTags(std::string_view model, const std::vector<ICCTag> &tags,
                               std::string_view rest = {});

/// The same with one "desc" tag: a text description as ICC version 2 has it, of ASCII text only.
std::string iccProfileWithDescription(std::string_view model, std::string_view description);

/// Model and description of the standard sRGB profile; in all else it is empty, and no colour
/// management would take it.
std::string standardSRGBProfile();

/// Paths of sRGB profiles that packages bring. The last one's is that of the standard profile, but
/// for the end of its description.
/// @throws std::runtime_error, which names the package, where it is not installed
std::string freeSRGBProfile();
std::string ghostscriptSRGBProfile();
std::string colordSRGBProfile();
std::string argyllSRGBProfile();

} // namespace Support
