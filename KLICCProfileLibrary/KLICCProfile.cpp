#include "KLICCProfile.h"

#include "Descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <new>
#include <span>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

using Bytes = std::span<const std::uint8_t>;
using Data = std::pmr::vector<std::uint8_t>;
using Platform::Descriptor;

// The parts of the format that are read, as offsets in bytes from the start of the file (ICC.1,
// "Profile header" and "Profile tag table"). All numbers are big-endian.
constexpr std::size_t kModelOffset = 52;
constexpr std::size_t kModelLength = 4;
constexpr std::size_t kTagCountOffset = 128;
constexpr std::size_t kTagTableOffset = 132;
constexpr std::size_t kTagEntryLength = 12;
constexpr std::size_t kShortestProfile = 129;
constexpr std::uint32_t kDescriptionSignature = 0x64657363; // "desc"

// Offsets from the start of a text description (ICC.1:2001-04, "textDescriptionType").
constexpr std::size_t kASCIICountOffset = 8;
constexpr std::size_t kASCIITextOffset = 12;

struct TagTableEntry {
    std::uint32_t signature;
    std::uint32_t offset; ///< from the start of the file
    std::uint32_t size;
};

} // namespace

struct KLICCProfile {
    KLICCProfile(Data &&wholeFile, std::pmr::vector<TagTableEntry> &&table,
                 std::pmr::memory_resource *memory)
        : data(std::move(wholeFile)), allocator(memory), tagTable(std::move(table))
    {
    }

    std::uint64_t retainCount = 1;
    const Data data;                            ///< the whole file
    std::pmr::memory_resource *const allocator; ///< not null: what null stood for is settled
    const std::pmr::vector<TagTableEntry> tagTable;
};

namespace {

/// `length` bytes at `offset`; nullopt if they are not all there. 64-bit numbers, so that the sum
/// of a 32-bit offset and a distance cannot wrap.
std::optional<Bytes> bytesAt(Bytes bytes, std::uint64_t offset, std::uint64_t length)
{
    if (offset > bytes.size() || length > bytes.size() - offset)
        return std::nullopt;
    return bytes.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(length));
}

/// Big-endian number in the four bytes at `offset`; nullopt if they are not all there.
std::optional<std::uint32_t> numberAt(Bytes bytes, std::uint64_t offset)
{
    const auto four = bytesAt(bytes, offset, 4);
    if (!four)
        return std::nullopt;
    return std::uint32_t{(*four)[0]} << 24 | std::uint32_t{(*four)[1]} << 16 |
           std::uint32_t{(*four)[2]} << 8 | std::uint32_t{(*four)[3]};
}

bool isRegularFile(const struct stat &status)
{
    return S_ISREG(status.st_mode);
}

/// Opens a regular file; everything else gives no descriptor (-1).
Descriptor openRegularFile(const std::string &path)
{
    // Asked before the open, which by itself may wait (a FIFO) or move something (a tape), and
    // after it, for the file that was opened. What the kernel makes up as a regular file may still
    // wait for data to come: not with O_NONBLOCK, which means nothing to files on a disk.
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0 || !isRegularFile(status))
        return Descriptor();
    Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    if (fstat(file.number(), &status) != 0 || !isRegularFile(status))
        file.close();
    return file;
}

/// The next bytes of the file; empty at its end and after an error.
Bytes readBlock(const Descriptor &file, std::span<std::uint8_t> block)
{
    ssize_t length = 0;
    do
        length = read(file.number(), block.data(), block.size());
    while (length < 0 && errno == EINTR);
    return block.first(length > 0 ? static_cast<std::size_t>(length) : 0);
}

/// The whole file; empty unless it is as long as its header says.
Data readProfile(const std::string &path, std::pmr::memory_resource *memory)
{
    const Descriptor file = openRegularFile(path);
    Data data(memory);
    std::array<std::uint8_t, 4096> block;
    for (Bytes more = readBlock(file, block); !more.empty(); more = readBlock(file, block)) {
        data.insert(data.end(), more.begin(), more.end());
        if (const auto size = numberAt(data, 0); size && data.size() > *size)
            break;
    }
    if (data.size() < kShortestProfile || data.size() != numberAt(data, 0))
        data.clear();
    return data;
}

/// The tag count. Of a file that ends inside it, the missing bytes are zeros: a profile of 129
/// bytes can say that it has no tags.
std::uint32_t tagCountOf(Bytes data)
{
    std::array<std::uint8_t, 4> four = {};
    std::ranges::copy(
        data.subspan(kTagCountOffset, std::min(four.size(), data.size() - kTagCountOffset)),
        four.begin());
    return *numberAt(four, 0);
}

/// Fills the table. @return false when it reaches beyond the data
bool readTagTable(Bytes data, std::pmr::vector<TagTableEntry> &table)
{
    const std::uint64_t count = tagCountOf(data);
    if (count == 0)
        return true;
    const auto bytes = bytesAt(data, kTagTableOffset, count * kTagEntryLength);
    if (!bytes)
        return false;
    table.reserve(static_cast<std::size_t>(count));
    for (std::size_t at = 0; at < bytes->size(); at += kTagEntryLength)
        table.push_back(
            {*numberAt(*bytes, at), *numberAt(*bytes, at + 4), *numberAt(*bytes, at + 8)});
    return true;
}

/// What the function gives; none when it runs out of memory.
template <class Function>
auto noneWithoutMemory(const Function &function) -> decltype(function())
{
    try {
        return function();
    } catch (const std::bad_alloc &) {
        return {};
    }
}

KLICCProfileRef createProfile(std::pmr::memory_resource *memory, const std::string &path)
{
    Data data = readProfile(path, memory);
    std::pmr::vector<TagTableEntry> tagTable(memory);
    if (data.empty() || !readTagTable(data, tagTable))
        return nullptr;
    return std::pmr::polymorphic_allocator<>(memory).new_object<KLICCProfile>(
        std::move(data), std::move(tagTable), memory);
}

using Text = std::optional<std::pmr::string>;

Text textFromLatin1(Bytes bytes, std::pmr::memory_resource *memory)
{
    Text text(std::in_place, memory);
    for (const std::uint8_t byte : bytes) {
        if (byte < 0x80) {
            text->push_back(static_cast<char>(byte));
        } else {
            text->push_back(static_cast<char>(0xC0 | byte >> 6));
            text->push_back(static_cast<char>(0x80 | (byte & 0x3F)));
        }
    }
    return text;
}

Text textFromASCII(Bytes bytes, std::pmr::memory_resource *memory)
{
    if (std::ranges::any_of(bytes, [](std::uint8_t byte) { return byte >= 0x80; }))
        return std::nullopt;
    return Text(std::in_place, bytes.begin(), bytes.end(), memory);
}

/// The characters of the text description at `offset`, without the terminating NUL.
std::optional<Bytes> descriptionAt(Bytes data, std::uint64_t offset)
{
    const auto count = numberAt(data, offset + kASCIICountOffset);
    if (!count || *count == 0)
        return std::nullopt;
    return bytesAt(data, offset + kASCIITextOffset, *count - 1);
}

} // namespace

KLICCProfileRef KLICCProfileCreateWithContentsOfURL(std::pmr::memory_resource *allocator,
                                                    const Platform::FileURL &url)
{
    auto *memory = allocator != nullptr ? allocator : std::pmr::get_default_resource();
    return noneWithoutMemory([&] { return createProfile(memory, url.path()); });
}

KLICCProfileRef KLICCProfileRetain(KLICCProfileRef profile)
{
    ++profile->retainCount;
    return profile;
}

void KLICCProfileRelease(KLICCProfileRef profile)
{
    if (profile != nullptr && --profile->retainCount == 0)
        std::pmr::polymorphic_allocator<>(profile->allocator).delete_object(profile);
}

Text KLICCProfileCopyModel(KLICCProfileRef profile)
{
    const Bytes model = Bytes(profile->data).subspan(kModelOffset, kModelLength);
    return noneWithoutMemory([&] { return textFromLatin1(model, profile->allocator); });
}

Text KLICCProfileCopyDescription(KLICCProfileRef profile)
{
    const auto tag =
        std::ranges::find(profile->tagTable, kDescriptionSignature, &TagTableEntry::signature);
    if (tag == profile->tagTable.end())
        return std::nullopt;
    const auto text = descriptionAt(profile->data, tag->offset);
    if (!text)
        return std::nullopt;
    return noneWithoutMemory([&] { return textFromASCII(*text, profile->allocator); });
}
