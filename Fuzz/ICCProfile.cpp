// An ICC profile, as it is and with a size in its header that is right.

#include "KLICCProfile.h"

#include "Fuzzing.h"
#include "ICCProfile.h"

#include <memory>

namespace {

/// The unsigned number in the four big-endian bytes there; missing ones are zeros.
std::uint64_t numberAt(std::string_view bytes, std::size_t offset)
{
    std::uint64_t number = 0;
    for (std::size_t i = offset; i < offset + 4; ++i)
        number = number * 256 + (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
    return number;
}

bool isUsable(std::string_view profile)
{
    const std::uint64_t tags = numberAt(profile, 128);
    return profile.size() >= 129 && profile.size() == numberAt(profile, 0) &&
           (tags == 0 || 132 + tags * 12 <= profile.size());
}

std::string modelOf(std::string_view profile)
{
    std::string model;
    for (const char c : profile.substr(52, 4)) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80)
            model += static_cast<char>(byte < 0xC0 ? 0xC2 : 0xC3);
        model += static_cast<char>(byte < 0x80 ? byte : 0x80 | (byte & 0x3F));
    }
    return model;
}

/// The description of the first "desc" tag; nullopt when there is none, or none that can be read.
std::optional<std::string> descriptionOf(std::string_view profile)
{
    for (std::size_t tag = 0; tag < numberAt(profile, 128); ++tag) {
        const std::size_t entry = 132 + tag * 12;
        if (profile.substr(entry, 4) != "desc")
            continue;
        const std::uint64_t offset = numberAt(profile, entry + 4);
        if (offset + 12 > profile.size())
            return std::nullopt;
        const std::uint64_t count = numberAt(profile, offset + 8);
        if (count == 0 || offset + 12 + count - 1 > profile.size())
            return std::nullopt;
        std::string text(profile.substr(offset + 12, count - 1));
        for (const char c : text) {
            if (static_cast<unsigned char>(c) >= 0x80)
                return std::nullopt;
        }
        return text;
    }
    return std::nullopt;
}

KLICCProfileRef open(std::string_view bytes)
{
    static Fuzz::MemoryFile file;
    file.assign(bytes);
    const auto url = Platform::FileURL::withPath(file.path());
    return KLICCProfileCreateWithContentsOfURL(nullptr, url.value());
}

void tryProfile(std::string_view bytes)
{
    const KLICCProfileRef profile = open(bytes);
    Fuzz::require((profile != nullptr) == isUsable(bytes),
                  "a profile is usable when size and tag table fit the file");
    if (profile == nullptr)
        return;
    Fuzz::requireEqual(modelOf(bytes), KLICCProfileCopyModel(profile).value(),
                       "the model is four characters of Latin-1");
    const auto description = KLICCProfileCopyDescription(profile);
    const auto expected = descriptionOf(bytes);
    Fuzz::require(description.has_value() == expected.has_value(),
                  "the description is there when its text lies inside the file and is ASCII");
    if (description)
        Fuzz::requireEqual(*expected, *description, "the description is the tag's text");
    Fuzz::require(KLICCProfileRetain(profile) == profile, "retaining gives the same profile");
    KLICCProfileRelease(profile);
    KLICCProfileRelease(profile);
}

} // namespace

void Fuzz::tryInput(std::string_view input)
{
    tryProfile(input);
    if (input.size() < 4)
        return;
    // Most changes of the length end at the header's size; with that mended, the rest is reached.
    tryProfile(Support::bigEndian(static_cast<std::uint32_t>(input.size())) +
               std::string(input.substr(4)));
}
