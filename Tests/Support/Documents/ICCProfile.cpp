#include "ICCProfile.h"

#include "TemporaryFolder.h"

namespace Support {

std::string bigEndian(std::uint32_t number)
{
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(number >> shift & 0xFF);
    return bytes;
}

std::string iccProfileWithTags(std::string_view model, const std::vector<ICCTag> &tags,
                               std::string_view rest)
{
    std::string bytes(128, '\0');
    bytes.replace(36, 4, "acsp");
    bytes.replace(52, 4, model);
    bytes += bigEndian(static_cast<std::uint32_t>(tags.size()));
    for (const ICCTag &tag : tags)
        (bytes += tag.signature) += bigEndian(tag.offset) + bigEndian(tag.size);
    bytes += rest;
    bytes.replace(0, 4, bigEndian(static_cast<std::uint32_t>(bytes.size())));
    return bytes;
}

std::string iccProfileWithDescription(std::string_view model, std::string_view description)
{
    const auto count = static_cast<std::uint32_t>(description.size()) + 1;
    std::string text = "desc" + bigEndian(0) + bigEndian(count);
    (text += description) += '\0';
    // No Unicode text and no script code text: both counts are zero, the latter's 67 bytes empty.
    text += std::string(4 + 4 + 2 + 1 + 67, '\0');
    return iccProfileWithTags(model, {{"desc", 144, static_cast<std::uint32_t>(text.size())}},
                              text);
}

std::string standardSRGBProfile()
{
    return iccProfileWithDescription("sRGB", "sRGB IEC61966-2.1");
}

std::string freeSRGBProfile()
{
    return packagedFile("/usr/share/color/icc/sRGB.icc", "icc-profiles-free");
}

std::string ghostscriptSRGBProfile()
{
    return packagedFile("/usr/share/color/icc/ghostscript/srgb.icc", "libgs-common");
}

std::string colordSRGBProfile()
{
    return packagedFile("/usr/share/color/icc/colord/sRGB.icc", "colord-data");
}

std::string argyllSRGBProfile()
{
    return packagedFile("/usr/share/color/argyll/ref/sRGB.icm", "argyll-ref");
}

} // namespace Support
