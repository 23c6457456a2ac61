#include "KLICCProfile.h"

#include "ICCProfile.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>
#include <lcms2.h>

#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <map>
#include <memory>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using Platform::FileURL;
using Support::bigEndian;
using Support::iccProfileWithDescription;
using Support::iccProfileWithTags;
using Support::readFile;
using namespace std::string_literals;

namespace {

struct Releaser {
    void operator()(KLICCProfileRef profile) const { KLICCProfileRelease(profile); }
};
using Profile = std::unique_ptr<KLICCProfile, Releaser>;

Profile openFile(const std::string &path, std::pmr::memory_resource *allocator = nullptr)
{
    return Profile(KLICCProfileCreateWithContentsOfURL(allocator, *FileURL::withPath(path)));
}

/// A copied string as a plain one, for comparing.
std::optional<std::string> plain(const std::optional<std::pmr::string> &text)
{
    return text ? std::optional(std::string(*text)) : std::nullopt;
}

std::optional<std::string> model(const Profile &profile)
{
    return plain(KLICCProfileCopyModel(profile.get()));
}

std::optional<std::string> description(const Profile &profile)
{
    return plain(KLICCProfileCopyDescription(profile.get()));
}

/// A text description as far as it is read: 8 bytes that are not, the count, the characters.
std::string textDescription(std::uint32_t count, std::string_view characters)
{
    return "12345678" + bigEndian(count) + std::string(characters);
}

/// Gives the bytes' own length as the profile size.
std::string withTrueSize(std::string bytes)
{
    return bytes.replace(0, 4, bigEndian(static_cast<std::uint32_t>(bytes.size())));
}

/// Counts what is taken from it, and refuses when told so.
class CountingMemory : public std::pmr::memory_resource {
public:
    std::size_t outstanding = 0; ///< bytes taken and not given back
    std::size_t peak = 0;        ///< most bytes ever outstanding
    std::size_t requests = 0;
    std::size_t refuseFrom = SIZE_MAX; ///< the number of the first request that is refused

private:
    void *do_allocate(std::size_t bytes, std::size_t alignment) override
    {
        if (requests++ >= refuseFrom)
            throw std::bad_alloc();
        peak = std::max(peak, outstanding += bytes);
        return std::pmr::new_delete_resource()->allocate(bytes, alignment);
    }
    void do_deallocate(void *memory, std::size_t bytes, std::size_t alignment) override
    {
        outstanding -= bytes;
        std::pmr::new_delete_resource()->deallocate(memory, bytes, alignment);
    }
    bool do_is_equal(const memory_resource &other) const noexcept override
    {
        return this == &other;
    }
};

std::size_t openDescriptors()
{
    const std::filesystem::directory_iterator entries("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

class KLICCProfileTest : public testing::Test {
protected:
    Profile open(std::string_view bytes) { return openFile(_folder.write("profile.icc", bytes)); }

    /// The description of a profile whose only tag is "desc", at that offset; `rest` begins at 144.
    std::optional<std::string> descriptionAt(std::uint32_t offset, std::string_view rest)
    {
        const Profile profile = open(iccProfileWithTags("mode", {{"desc", offset, 0}}, rest));
        EXPECT_TRUE(profile);
        return profile ? description(profile) : "no profile";
    }

    Support::TemporaryFolder _folder;
};

} // namespace

//
// What is a profile
//

TEST_F(KLICCProfileTest, ShortestProfileHasAModelAndNoDescription)
{
    std::string bytes(129, '\0');
    bytes.replace(52, 4, "PRTR");
    const Profile profile = open(withTrueSize(bytes));

    ASSERT_TRUE(profile);
    EXPECT_EQ("PRTR", model(profile));
    EXPECT_EQ(std::nullopt, description(profile));
}

TEST_F(KLICCProfileTest, FileEndingInsideTheTagCountCountsTheMissingBytesAsZero)
{
    for (const std::size_t length : {129u, 130u, 131u}) {
        std::string bytes(length, '\0');
        EXPECT_TRUE(open(withTrueSize(bytes))) << length;
        bytes.back() = 1; // many tags, and no room for one
        EXPECT_FALSE(open(withTrueSize(bytes))) << length;
    }
}

TEST_F(KLICCProfileTest, UpTo128BytesAreNoProfile)
{
    for (std::size_t length = 0; length <= 128; ++length) {
        std::string bytes(length, '\0');
        if (length >= 4)
            bytes = withTrueSize(bytes);
        EXPECT_FALSE(open(bytes)) << length;
    }
}

TEST_F(KLICCProfileTest, ProfileSizeOneOffIsNoProfile)
{
    for (const std::string &good :
         {withTrueSize(std::string(129, '\0')), Support::standardSRGBProfile(),
          readFile(Support::freeSRGBProfile())}) {
        ASSERT_TRUE(open(good));
        const auto size = static_cast<std::uint32_t>(good.size());
        for (const std::uint32_t wrong : {size - 1, size + 1, 0u, 1u, 0xFFFFFFFFu})
            EXPECT_FALSE(open(bigEndian(wrong) + good.substr(4))) << size << " as " << wrong;
        EXPECT_FALSE(open(good + "x")) << size;
        EXPECT_FALSE(open(good.substr(0, size - 1))) << size;
    }
}

TEST_F(KLICCProfileTest, ProfileIsReadWholeWhateverItsLength)
{
    // Around the length of the blocks in which a file is read.
    for (const std::size_t length : {4095u, 4096u, 4097u, 8191u, 8192u, 8193u, 1'000'000u}) {
        const std::string text = textDescription(5, "last");
        const std::string rest = std::string(length - 144 - text.size(), '.') + text;
        const auto offset = static_cast<std::uint32_t>(length - text.size());
        EXPECT_EQ("last", descriptionAt(offset, rest)) << length;
    }
}

TEST_F(KLICCProfileTest, MissingFileIsNoProfile)
{
    EXPECT_FALSE(openFile(_folder.file("missing.icc")));
    EXPECT_FALSE(openFile(_folder.write("file", "") + "/below"));
    EXPECT_FALSE(openFile("/" + std::string(10'000, 'x')));
}

TEST_F(KLICCProfileTest, LinkToAProfileIsAProfile)
{
    _folder.write("profile.icc", Support::standardSRGBProfile());
    ASSERT_EQ(0, symlink("profile.icc", _folder.file("link.icc").c_str()));
    EXPECT_TRUE(openFile(_folder.file("link.icc")));
}

//
// Only regular files, and no more of them than their header says
//

TEST_F(KLICCProfileTest, FolderAndSocketAreNoProfiles)
{
    EXPECT_FALSE(openFile(_folder.path()));

    const int socketDescriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    _folder.file("socket").copy(address.sun_path, sizeof(address.sun_path) - 1);
    ASSERT_EQ(0, bind(socketDescriptor, reinterpret_cast<sockaddr *>(&address), sizeof(address)));
    EXPECT_FALSE(openFile(_folder.file("socket")));
    close(socketDescriptor);
}

TEST_F(KLICCProfileTest, DeviceIsNotRead)
{
    CountingMemory memory;
    ASSERT_EQ(0, symlink("/dev/zero", _folder.file("zero.icc").c_str()));
    for (const std::string &path :
         {"/dev/zero"s, "/dev/null"s, "/dev/urandom"s, _folder.file("zero.icc")})
        EXPECT_FALSE(openFile(path, &memory)) << path;
    EXPECT_EQ(0u, memory.peak);
}

TEST_F(KLICCProfileTest, FIFOIsNotWaitedFor)
{
    const std::string path = _folder.file("fifo.icc");
    ASSERT_EQ(0, mkfifo(path.c_str(), 0600));
    const int watch = inotify_init1(IN_NONBLOCK);
    ASSERT_GE(inotify_add_watch(watch, path.c_str(), IN_OPEN), 0);
    EXPECT_FALSE(openFile(path));
    char events[4096]; // none: an open by itself can wait, or wind a tape
    EXPECT_EQ(-1, read(watch, events, sizeof(events)));
    close(watch);

    // Nor is one read whose writer is there and has written a whole profile.
    const int writer = ::open(path.c_str(), O_RDWR | O_NONBLOCK);
    const std::string bytes = Support::standardSRGBProfile();
    ASSERT_EQ(static_cast<ssize_t>(bytes.size()), write(writer, bytes.data(), bytes.size()));
    EXPECT_FALSE(openFile(path));
    close(writer);
}

TEST_F(KLICCProfileTest, ReadingStopsBehindTheProfileSize)
{
    CountingMemory memory;
    const std::string path = _folder.write("profile.icc", Support::standardSRGBProfile());
    ASSERT_EQ(0, truncate(path.c_str(), off_t{1} << 40)); // a hole, not data
    EXPECT_FALSE(openFile(path, &memory));
    EXPECT_GT(memory.peak, 0u);
    EXPECT_LT(memory.peak, 65536u);
}

TEST_F(KLICCProfileTest, FileMadeUpByTheKernelIsNotWaitedFor)
{
    // Looks like a regular file and gives messages as they come. Only root may open it.
    EXPECT_FALSE(openFile("/proc/kmsg"));
}

TEST_F(KLICCProfileTest, DescriptorsAreGivenBack)
{
    const std::size_t before = openDescriptors();
    open(Support::standardSRGBProfile());
    open("no profile");
    openFile("/dev/zero");
    openFile(_folder.path());
    EXPECT_EQ(before, openDescriptors());
}

//
// The model
//

TEST_F(KLICCProfileTest, ModelIsGivenAsItStands)
{
    for (const std::string &four : {"sRGB"s, "431 "s, "    "s, "\0\0\0\0"s, "a\0b\n"s, "%@%s"s})
        EXPECT_EQ(four, model(open(iccProfileWithTags(four, {})))) << four;
}

TEST_F(KLICCProfileTest, ModelIsLatin1)
{
    EXPECT_EQ("\xC3\xA9\xC2\x80\xC3\xBF~", model(open(iccProfileWithTags("\xE9\x80\xFF~", {}))));
}

//
// The description
//

TEST_F(KLICCProfileTest, DescriptionIsTheTextWithoutItsNUL)
{
    EXPECT_EQ("sRGB IEC61966-2.1", description(open(Support::standardSRGBProfile())));
}

TEST_F(KLICCProfileTest, ProfileWithoutDescriptionTagHasNone)
{
    const std::string text = textDescription(5, "text");
    EXPECT_EQ(std::nullopt, description(open(iccProfileWithTags("mode", {}, text))));
    EXPECT_EQ(std::nullopt,
              description(open(iccProfileWithTags("mode", {{"cprt", 144, 0}}, text))));
    EXPECT_EQ(std::nullopt,
              description(open(iccProfileWithTags("mode", {{"DESC", 144, 0}}, text))));
}

TEST_F(KLICCProfileTest, FirstOfTwoDescriptionTagsIsTaken)
{
    // Three entries end at byte 168; a text description of four characters takes 16 bytes.
    const std::string rest = textDescription(5, "left") + textDescription(5, "hand");
    const Support::ICCTag left{"desc", 168, 0};
    const Support::ICCTag hand{"desc", 184, 0};
    const Support::ICCTag other{"wtpt", 0, 0};
    EXPECT_EQ("left", description(open(iccProfileWithTags("mode", {other, left, hand}, rest))));
    EXPECT_EQ("hand", description(open(iccProfileWithTags("mode", {other, hand, left}, rest))));
}

TEST_F(KLICCProfileTest, SecondDescriptionTagDoesNotStandInForABrokenFirst)
{
    EXPECT_EQ(std::nullopt,
              description(open(iccProfileWithTags("mode", {{"desc", 100'000, 0}, {"desc", 156, 0}},
                                                  textDescription(5, "good")))));
}

TEST_F(KLICCProfileTest, CountDecidesNotANULNorTheTagSize)
{
    EXPECT_EQ("abc", descriptionAt(144, textDescription(4, "abcdefg")));
    EXPECT_EQ("ab\0c"s, descriptionAt(144, textDescription(5, "ab\0c"s)));
}

TEST_F(KLICCProfileTest, CountOfOneIsAnEmptyText)
{
    EXPECT_EQ("", descriptionAt(144, textDescription(1, "\0"s)));
}

TEST_F(KLICCProfileTest, CountOfZeroIsNone)
{
    EXPECT_EQ(std::nullopt, descriptionAt(144, textDescription(0, "text")));
}

TEST_F(KLICCProfileTest, DescriptionThatIsNotASCIIIsNone)
{
    EXPECT_EQ("\x7F\x01"s, descriptionAt(144, textDescription(3, "\x7F\x01"s)));
    EXPECT_EQ(std::nullopt, descriptionAt(144, textDescription(3, "a\x80")));
    EXPECT_EQ(std::nullopt, descriptionAt(144, textDescription(3, "\xC3\xA9")));
}

TEST_F(KLICCProfileTest, DescriptionReachingBeyondTheDataIsNone)
{
    // The text's NUL is not looked at: four characters are enough for a count of five.
    EXPECT_EQ("text", descriptionAt(144, textDescription(5, "text")));
    for (const std::uint32_t count : {6u, 7u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
        EXPECT_EQ(std::nullopt, descriptionAt(144, textDescription(count, "text"))) << count;
}

TEST_F(KLICCProfileTest, DescriptionTagOutsideTheDataIsNone)
{
    // 160 bytes in all.
    const std::string rest(16, '\0');
    for (const std::uint32_t offset : {149u, 152u, 159u, 160u, 161u, 0x7FFFFFFFu, 0xFFFFFFF0u,
                                       0xFFFFFFF4u, 0xFFFFFFF8u, 0xFFFFFFFFu})
        EXPECT_EQ(std::nullopt, descriptionAt(offset, rest)) << offset;
}

TEST_F(KLICCProfileTest, LastPlaceForADescriptionIsTwelveBytesBeforeTheEnd)
{
    const std::string rest = "...."s + textDescription(1, "");
    EXPECT_EQ("", descriptionAt(148, rest));
    EXPECT_EQ(std::nullopt, descriptionAt(149, rest + "\0"s));
}

TEST_F(KLICCProfileTest, DescriptionMayLieAnywhereInTheData)
{
    // At the very start the count is bytes 8 to 11, zero here; at 44 it is the model.
    EXPECT_EQ(std::nullopt, description(open(iccProfileWithTags("mode", {{"desc", 0, 0}}))));
    const std::string one = "\0\0\0\1"s;
    EXPECT_EQ("", description(open(iccProfileWithTags(one, {{"desc", 44, 0}}))));
}

//
// The tag table
//

TEST_F(KLICCProfileTest, TagTableReachingBeyondTheDataIsNoProfile)
{
    // Two entries, and room for these two alone.
    std::string bytes = iccProfileWithTags("mode", {{"wtpt", 0, 0}, {"cprt", 0, 0}});
    EXPECT_TRUE(open(bytes));
    // The last three times 12 are 24 or 12 in 32 bits.
    for (const std::uint32_t count :
         {3u, 4u, 0x10000u, 0x80000000u, 0xFFFFFFFFu, 0x40000002u, 0x80000002u, 0xC0000001u})
        EXPECT_FALSE(open(bytes.replace(128, 4, bigEndian(count)))) << count;
    EXPECT_TRUE(open(bytes.replace(128, 4, bigEndian(1))));
}

TEST_F(KLICCProfileTest, TagTableOneByteShortIsNoProfile)
{
    const std::string bytes = iccProfileWithTags("mode", {{"wtpt", 0, 0}, {"cprt", 0, 0}});
    EXPECT_FALSE(open(withTrueSize(bytes.substr(0, bytes.size() - 1))));
}

TEST_F(KLICCProfileTest, LongTagTableIsRead)
{
    std::vector<Support::ICCTag> tags(10'000, {"none", 0, 0});
    tags.back() = {"desc", 132 + 120'000, 0};
    EXPECT_EQ("end",
              description(open(iccProfileWithTags("mode", tags, textDescription(4, "end")))));
}

//
// Ownership and allocators
//

TEST_F(KLICCProfileTest, RetainGivesTheSameProfile)
{
    const Profile first = open(Support::standardSRGBProfile());
    const Profile second(KLICCProfileRetain(first.get()));
    EXPECT_EQ(first.get(), second.get());
}

TEST_F(KLICCProfileTest, LastReleaseFreesTheProfileAndNoneBefore)
{
    CountingMemory memory;
    KLICCProfileRef profile = KLICCProfileCreateWithContentsOfURL(
        &memory, *FileURL::withPath(_folder.write("profile.icc", Support::standardSRGBProfile())));
    ASSERT_NE(nullptr, profile);
    const std::size_t taken = memory.outstanding;
    EXPECT_GT(taken, Support::standardSRGBProfile().size());

    KLICCProfileRetain(profile);
    KLICCProfileRetain(profile);
    KLICCProfileRelease(profile);
    KLICCProfileRelease(profile);
    EXPECT_EQ(taken, memory.outstanding);
    EXPECT_EQ("sRGB", plain(KLICCProfileCopyModel(profile)));

    KLICCProfileRelease(profile);
    EXPECT_EQ(0u, memory.outstanding);
}

TEST_F(KLICCProfileTest, ReleaseOfNullDoesNothing)
{
    KLICCProfileRelease(nullptr);
}

TEST_F(KLICCProfileTest, CopiedTextsOutliveTheProfile)
{
    Profile profile = open(Support::standardSRGBProfile());
    const auto copiedModel = KLICCProfileCopyModel(profile.get());
    const auto copiedDescription = KLICCProfileCopyDescription(profile.get());
    profile.reset();
    EXPECT_EQ("sRGB", plain(copiedModel));
    EXPECT_EQ("sRGB IEC61966-2.1", plain(copiedDescription));
}

TEST_F(KLICCProfileTest, ProfileKeepsItsOwnCopyOfTheFile)
{
    const Profile profile = open(Support::standardSRGBProfile());
    _folder.write("profile.icc", "something else");
    EXPECT_EQ("sRGB", model(profile));
    EXPECT_EQ("sRGB IEC61966-2.1", description(profile));
}

TEST_F(KLICCProfileTest, EverythingComesFromTheGivenAllocator)
{
    CountingMemory memory;
    const std::string path = _folder.write(
        "profile.icc",
        iccProfileWithDescription("mode", "A text too long for a string's own room to hold"));
    const Profile profile = openFile(path, &memory);
    ASSERT_TRUE(profile);

    const std::size_t before = memory.outstanding;
    const auto text = KLICCProfileCopyDescription(profile.get());
    ASSERT_TRUE(text);
    EXPECT_GT(memory.outstanding, before);
    EXPECT_EQ(&memory, text->get_allocator().resource());
    EXPECT_EQ(&memory, KLICCProfileCopyModel(profile.get())->get_allocator().resource());
}

TEST_F(KLICCProfileTest, NullAllocatorIsTheDefaultOne)
{
    CountingMemory memory;
    std::pmr::memory_resource *before = std::pmr::set_default_resource(&memory);
    Profile profile = open(Support::standardSRGBProfile());
    std::pmr::set_default_resource(before);

    EXPECT_GT(memory.outstanding, 0u);
    profile.reset(); // goes back where it came from, whatever the default is by now
    EXPECT_EQ(0u, memory.outstanding);
}

TEST_F(KLICCProfileTest, AllocatorWithoutMemoryGivesNoneAndLosesNothing)
{
    const std::string path = _folder.write(
        "profile.icc",
        iccProfileWithDescription("mode", "A text too long for a string's own room to hold"));
    CountingMemory memory;
    bool opened = false;
    for (memory.refuseFrom = 0; !opened && memory.refuseFrom < 100; ++memory.refuseFrom) {
        memory.requests = 0;
        const Profile profile = openFile(path, &memory);
        opened = profile != nullptr;
        if (opened) {
            memory.refuseFrom = 0;
            EXPECT_EQ(std::nullopt, description(profile));
            EXPECT_EQ("mode", model(profile)); // short enough to need no memory
        } else {
            EXPECT_EQ(0u, memory.outstanding) << memory.refuseFrom;
        }
    }
    EXPECT_TRUE(opened);
    EXPECT_EQ(0u, memory.outstanding);
}

//
// Real profiles
//

namespace {

constexpr char kFolder[] = "/usr/share/color";

struct LittleCMSCloser {
    void operator()(void *profile) const { cmsCloseProfile(profile); }
};
using LittleCMSProfile = std::unique_ptr<void, LittleCMSCloser>;

std::string asciiOf(const cmsMLU *text)
{
    std::string result(cmsMLUgetASCII(text, cmsNoLanguage, cmsNoCountry, nullptr, 0), '\0');
    cmsMLUgetASCII(text, cmsNoLanguage, cmsNoCountry, result.data(),
                   static_cast<cmsUInt32Number>(result.size()));
    return result.substr(0, result.find('\0'));
}

/// The standard sRGB profile, complete with its colours, as Little CMS writes it in version 2.
std::string sRGBProfileByLittleCMS(const std::string &text)
{
    const LittleCMSProfile profile(cmsCreate_sRGBProfile());
    cmsSetProfileVersion(profile.get(), 2.1);
    cmsSetHeaderModel(profile.get(), 0x73524742); // "sRGB"
    cmsMLU *description = cmsMLUalloc(nullptr, 1);
    cmsMLUsetASCII(description, cmsNoLanguage, cmsNoCountry, text.c_str());
    cmsWriteTag(profile.get(), cmsSigProfileDescriptionTag, description);
    cmsMLUfree(description);

    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile.get(), nullptr, &size);
    std::string bytes(size, '\0');
    cmsSaveProfileToMem(profile.get(), bytes.data(), &size);
    return bytes;
}

std::vector<std::string> installedProfiles()
{
    std::vector<std::string> paths;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(kFolder)) {
        const std::string extension = entry.path().extension();
        if (extension == ".icc" || extension == ".icm" || extension == ".ICM")
            paths.push_back(entry.path());
    }
    return paths;
}

} // namespace

TEST_F(KLICCProfileTest, EveryInstalledProfileReadsAsLittleCMSReadsIt)
{
    std::map<std::string, int> kinds; // e.g. "GRAY 2"
    for (const std::string &path : installedProfiles()) {
        const LittleCMSProfile reference(cmsOpenProfileFromFile(path.c_str(), "r"));
        ASSERT_TRUE(reference) << path;
        const Profile profile = openFile(path);
        ASSERT_TRUE(profile) << path;

        EXPECT_EQ(bigEndian(cmsGetHeaderModel(reference.get())), model(profile)) << path;
        const auto version = static_cast<int>(cmsGetProfileVersion(reference.get()));
        if (version == 2) {
            const auto *text = static_cast<const cmsMLU *>(
                cmsReadTag(reference.get(), cmsSigProfileDescriptionTag));
            ASSERT_NE(nullptr, text) << path;
            EXPECT_EQ(asciiOf(text), description(profile)) << path;
        } else {
            // Another layout stands there: anything may come out but the one text that matters.
            EXPECT_NE("sRGB IEC61966-2.1", description(profile)) << path;
        }
        ++kinds[bigEndian(cmsGetColorSpace(reference.get())) + " " + std::to_string(version)];
    }
    // Nothing is proven by a folder that lacks a kind.
    for (const char *kind : {"RGB  2", "RGB  4", "CMYK 2", "CMYK 4", "GRAY 2", "GRAY 4"})
        EXPECT_GE(kinds[kind], 1) << kind << ": one of the packages argyll-ref, colord-data, "
                                  << "icc-profiles-free and libgs-common lacks";
}

TEST_F(KLICCProfileTest, SRGBProfilesOfFourSources)
{
    // Of version 2.
    const Profile free = openFile(Support::freeSRGBProfile());
    EXPECT_EQ("\0\0\0\0"s, model(free));
    EXPECT_EQ("sRGB", description(free));

    const Profile ghostscript = openFile(Support::ghostscriptSRGBProfile());
    EXPECT_EQ("\0\0\0\0"s, model(ghostscript));
    EXPECT_EQ("Artifex Software sRGB ICC Profile", description(ghostscript));

    const Profile argyll = openFile(Support::argyllSRGBProfile());
    EXPECT_EQ("sRGB", model(argyll));
    EXPECT_EQ("sRGB IEC61966-2.1 (Equivalent to www.srgb.com 1998 HP profile)",
              description(argyll));

    // Of version 4. Where the count is expected stands the number of its
    // translations: one, which makes an empty text.
    const Profile colord = openFile(Support::colordSRGBProfile());
    EXPECT_EQ("\0\0\0\0"s, model(colord));
    EXPECT_EQ("", description(colord));
}

TEST_F(KLICCProfileTest, StandardProfileWrittenByLittleCMS)
{
    // No package of Debian's that is at hand has a profile of exactly this model and description.
    const Profile profile = open(sRGBProfileByLittleCMS("sRGB IEC61966-2.1"));
    ASSERT_TRUE(profile);
    EXPECT_EQ("sRGB", model(profile));
    EXPECT_EQ("sRGB IEC61966-2.1", description(profile));
}

TEST_F(KLICCProfileTest, EveryTruncationOfARealProfileIsNoProfile)
{
    const std::string path = _folder.write("cut.icc", readFile(Support::freeSRGBProfile()));
    for (auto length = static_cast<off_t>(std::filesystem::file_size(path)); length-- > 0;) {
        ASSERT_EQ(0, truncate(path.c_str(), length));
        EXPECT_FALSE(openFile(path)) << length;
    }
}

TEST_F(KLICCProfileTest, EveryTruncationWithAnHonestSizeGivesTheWholeAnswerOrNone)
{
    const std::string whole = readFile(Support::argyllSRGBProfile());
    const std::string text = "sRGB IEC61966-2.1 (Equivalent to www.srgb.com 1998 HP profile)";
    const std::size_t textEnd = whole.find(text) + text.size();
    const std::size_t tableEnd = 132 + 12 * static_cast<std::size_t>(whole[131]);
    ASSERT_EQ(std::string(3, '\0'), whole.substr(128, 3));
    ASSERT_LT(tableEnd, textEnd);

    // One file cut shorter and shorter: thousands of new files would take their time.
    const std::string path = _folder.write("cut.icc", whole);
    const int file = ::open(path.c_str(), O_WRONLY);
    for (std::size_t length = whole.size(); --length >= 4;) {
        const std::string size = bigEndian(static_cast<std::uint32_t>(length));
        ASSERT_EQ(0, ftruncate(file, static_cast<off_t>(length)));
        ASSERT_EQ(4, pwrite(file, size.data(), 4, 0));
        const Profile profile = openFile(path);
        const bool endsInTheCount = length >= 129 && length <= 131; // of which zeros are left
        ASSERT_EQ(endsInTheCount || length >= tableEnd, profile != nullptr) << length;
        if (!profile)
            continue;
        EXPECT_EQ("sRGB", model(profile)) << length;
        EXPECT_EQ(length >= textEnd ? std::optional(text) : std::nullopt, description(profile))
            << length;
    }
    close(file);
}
