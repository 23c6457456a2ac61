#include "handlePJL.h"

#include "Environment.h"
#include "ICCProfile.h"
#include "KLPrintJob.h"
#include "KLPrintOptions.h"
#include "MinimalPPD.h"
#include "PJLChecker.h"
#include "Streams.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

using testing::ElementsAre;
using testing::FieldsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using namespace std::string_literals;

namespace {

const std::string kExit = "\x1B%-12345X";
const std::string kFirst = "@PJL\n";
const std::string kJob = "@PJL JOB NAME = \"Title\" DISPLAY = \"7 anna Title\"\n";
const std::string kPrintMode = "@PJL COMMENT DSSC PRINT PRINTMODE=NORMAL\r\n";
const std::string kAccessCode = "@PJL COMMENT DSSC PRINT ACCESSCODE=\r\n";
const std::string kCollate = "@PJL COMMENT DSSC PRINT COLLATE=ON\r\n";
const std::string kAdvanced = "@PJL COMMENT DSSC PRINT DOCUMENTTYPE=ADVANCED\r\n";
const std::string kEnter = "@PJL ENTER LANGUAGE = POSTSCRIPT\r\n";
const std::string kHeader =
    kFirst + kJob + kPrintMode + kAccessCode + kCollate + kAdvanced + kEnter;

/// A job around a walked header, as it would go to the printer.
std::string finishedJob(const std::string &header)
{
    return kExit + header + "%!PS\nshowpage\n" + kExit +
           "@PJL COMMENT DSSC PRINT JOBENDINFO PAGES=1\r\n"
           "@PJL COMMENT DSSC PRINT JOBENDINFO PAGESIZE=A4\r\n"
           "@PJL EOJ\n";
}

std::string print(const std::string &setting)
{
    return "@PJL COMMENT DSSC PRINT " + setting + "\r\n";
}

std::string box(const std::string &setting)
{
    return "@PJL COMMENT DSSC BOX " + setting + "\r\n";
}

/// What becomes different between two walked headers, whatever the place.
struct Difference {
    std::vector<std::string> gone;
    std::vector<std::string> added;
};

Difference difference(const std::string &before, const std::string &after)
{
    auto left = Support::linesOf(before);
    auto right = Support::linesOf(after);
    std::ranges::sort(left);
    std::ranges::sort(right);
    Difference result;
    std::ranges::set_difference(left, right, std::back_inserter(result.gone));
    std::ranges::set_difference(right, left, std::back_inserter(result.added));
    return result;
}

/// Which files of a folder have been opened since the watch began.
class OpenWatch {
public:
    explicit OpenWatch(const std::string &path) : _descriptor(inotify_init1(IN_NONBLOCK))
    {
        EXPECT_GE(inotify_add_watch(_descriptor, path.c_str(), IN_OPEN), 0);
    }
    ~OpenWatch() { close(_descriptor); }
    OpenWatch(const OpenWatch &) = delete;
    OpenWatch &operator=(const OpenWatch &) = delete;

    bool sawOpen()
    {
        char events[4096];
        return read(_descriptor, events, sizeof(events)) > 0;
    }

private:
    int _descriptor;
};

using Settings = std::map<std::string, std::optional<KLValue>>;

const std::string kDepartmentCode = "com.kalmira.pde.print-mode-ovm.departmentCode";
const std::string kPrivatePassword = "com.kalmira.pde.print-mode-ovm.privatePassword";
const std::string kColorMatching = "AP_ColorMatchingMode";
const std::string kColorMatchingNumber = "com.apple.print.PrintSettings.PMColorMatchingMode";
const std::string kColorProfile = "com.kalmira.pde.q5.color-profile";
const std::string kColorSettings = "com.kalmira.pde.advancedcolorsettings.";
const std::string kBoxSettings = "com.kalmira.pde.docstore.";

class handlePJLTest : public testing::Test {
protected:
    /// The options of a job with every setting that goes together: device colour, the mode
    /// "Standard" and a document box with both passwords, storing only.
    Settings everySetting() const
    {
        return {{kDepartmentCode, "42"},
                {kColorMatching, "AP_ApplicationColorMatching"},
                {kColorMatchingNumber, std::int64_t{1}},
                {kColorProfile, urlOf("srgb.icc")},
                {kColorSettings + "mode", "Standard"},
                {kColorSettings + "rgb-source", "rgb"},
                {kColorSettings + "cmyk-source", "cmyk"},
                {kColorSettings + "cmyk-dest", "output"},
                {kColorSettings + "device-color-only", "device"},
                {kColorSettings + "rendering-intent", "perceptual"},
                {kColorSettings + "customized-rgb-profile", "custom"},
                {"com.kalmira.username", "anna"},
                {"com.kalmira.domainname", "example.com"},
                {"PrintMode", "Normal"},
                {kPrivatePassword, "1234"},
                {"StoreToDocStore", "True"},
                {kBoxSettings + "boxNumber", "7"},
                {kBoxSettings + "boxName", "Sales"},
                {kBoxSettings + "boxFolder", "2026"},
                {kBoxSettings + "boxPassword", "secret"},
                {kBoxSettings + "boxPasswordEx", "longer secret"},
                {"PrintAsWell", "False"},
                {"com.kalmira.copies", "3"}};
    }

    /// The same with some of them different; nullopt takes one away.
    Settings everySettingBut(const Settings &different) const
    {
        Settings settings = everySetting();
        for (const auto &[key, value] : different)
            settings[key] = value;
        return settings;
    }

    /// A private job.
    Settings privateJob() const { return everySettingBut({{"PrintMode", "Private"}}); }
    /// A job with another mode of the advanced colour settings.
    Settings customizedColor() const
    {
        return everySettingBut({{kColorSettings + "mode", "Advanced"}});
    }

    std::shared_ptr<KLPrintOptions> optionsOf(const Settings &settings) const
    {
        auto options = std::make_shared<KLPrintOptions>("");
        for (const auto &[key, value] : settings)
            options->setValueForKey(value, key);
        return options;
    }

    /// What becomes of the lines of a header; every result is also read as a finished job.
    std::string walk(const Settings &settings, const std::string &lines) const
    {
        const std::string header = walkUnchecked(settings, lines);
        const std::string whole =
            lines.find(kEnter) == std::string::npos ? header + kEnter : header;
        EXPECT_THAT(Support::problemsOfPJLJob(finishedJob(whole)), IsEmpty());
        return header;
    }

    std::string walkUnchecked(const Settings &settings, const std::string &lines) const
    {
        const std::string inputPath = _folder.write("in", kExit + lines);
        const std::string outputPath = _folder.file("out");
        {
            const Platform::Stream input = Platform::openForReading(inputPath);
            const Platform::Stream output = Platform::openForWriting(outputPath);
            const auto job = std::make_shared<KLPrintJob>(input.get(), output.get());
            job->setPrintOptions(optionsOf(settings));
            KLPJLHandler::enumeratePJLFromPrintJobUsingBlock(job, handlePJL(job));
        }
        const std::string output = Support::readFile(outputPath);
        EXPECT_TRUE(output.starts_with(kExit));
        return output.substr(kExit.size());
    }

    /// What changes in the header when one option of the job is another or, with nullopt, away.
    Difference whenOnly(const std::string &key, const std::optional<KLValue> &value,
                        const Settings &base) const
    {
        Settings settings = base;
        settings[key] = value;
        return difference(walk(base, kHeader), walk(settings, kHeader));
    }
    Difference whenOnly(const std::string &key, const std::optional<KLValue> &value) const
    {
        return whenOnly(key, value, everySetting());
    }

    /// The device colour flag of a job that names the profile by this URL.
    std::string flagFor(const std::optional<KLValue> &url) const
    {
        const std::string header = walk(everySettingBut({{kColorProfile, url}}), kCollate);
        return header.substr(0, header.find('\r'));
    }

    std::string urlOf(std::string_view name) const { return "file://" + _folder.file(name); }

    void SetUp() override { _folder.write("srgb.icc", Support::standardSRGBProfile()); }

    Support::TemporaryFolder _folder;
    Support::ScopedEnvironment _ppd{"PPD", _folder.write("test.ppd", Support::minimalPPD())};
};

const std::string kForced = print("FORCE_DEVICECOLOR=1");
const std::string kNotForced = print("FORCE_DEVICECOLOR=0");
constexpr char kFlagSet[] = "@PJL COMMENT DSSC PRINT FORCE_DEVICECOLOR=1";
constexpr char kFlagClear[] = "@PJL COMMENT DSSC PRINT FORCE_DEVICECOLOR=0";

/// Nothing gone, nothing added.
const auto kNothing = FieldsAre(IsEmpty(), IsEmpty());

auto becomes(const std::string &before, const std::string &after)
{
    return FieldsAre(ElementsAre(before), ElementsAre(after));
}

auto disappears(const std::string &line)
{
    return FieldsAre(ElementsAre(line), IsEmpty());
}

} // namespace

//
// Whole headers
//

TEST_F(handlePJLTest, EverySetting)
{
    EXPECT_EQ(kFirst + kJob + "@PJL SET COPIES = 3\r\n" +
                  // user, domain and box stand before the print mode line
                  print("USERLOGIN=anna") + print("DOMAINNAME=example.com") + box("BOX=1") +
                  box("BOXNO=7") + box("BOXNAME=Sales") + box("BOXFOLDER=2026") +
                  box("BOXPASSWORD=secret") + print("PRINTMODE=BOX") +
                  // the code in the place of the marker
                  print("ACCESSCODE=42") +
                  // the flag before the collation
                  kForced + kCollate +
                  // the profiles behind the document type
                  kAdvanced + print("RGB PROFILE=rgb") + print("CMYK PROFILE=cmyk") +
                  print("OUTPUT PROFILE=output") + print("USE PROFILE=device") +
                  print("RENDERING INTENT=perceptual") + kEnter,
              walk(everySetting(), kHeader));
}

TEST_F(handlePJLTest, PrivateJob)
{
    EXPECT_EQ(print("USERLOGIN=anna") + print("DOMAINNAME=example.com") + kPrintMode +
                  print("PRIVPRINT=1234"),
              walk(privateJob(), kPrintMode));
}

TEST_F(handlePJLTest, CustomizedColorJob)
{
    EXPECT_EQ(kAdvanced + print("EXTRADOCUMENTTYPE=custom"), walk(customizedColor(), kAdvanced));
}

TEST_F(handlePJLTest, JobWithoutAnySetting)
{
    // The minimal PPD marks none of these options.
    EXPECT_EQ(kFirst + kJob + "@PJL SET COPIES = 1\r\n" + print("USERLOGIN=") + kPrintMode +
                  kNotForced + kCollate + kAdvanced + print("EXTRADOCUMENTTYPE=DEFAULT") + kEnter,
              walk({}, kHeader));
}

//
// One option at a time
//

TEST_F(handlePJLTest, DepartmentCode)
{
    EXPECT_THAT(whenOnly(kDepartmentCode, "43"),
                becomes(print("ACCESSCODE=42"), print("ACCESSCODE=43")));
    EXPECT_THAT(whenOnly(kDepartmentCode, std::nullopt), disappears(print("ACCESSCODE=42")));
    EXPECT_THAT(whenOnly(kDepartmentCode, ""),
                becomes(print("ACCESSCODE=42"), print("ACCESSCODE=")));
}

TEST_F(handlePJLTest, ColorMatchingMode)
{
    EXPECT_THAT(whenOnly(kColorMatching, "AP_VendorColorMatching"), becomes(kForced, kNotForced));
    EXPECT_THAT(whenOnly(kColorMatching, "ap_vendorcolormatching"), kNothing);
    EXPECT_THAT(whenOnly(kColorMatching, "AP_VendorColorMatchingX"), kNothing);
    EXPECT_THAT(whenOnly(kColorMatching, std::nullopt), kNothing);
}

TEST_F(handlePJLTest, ColorMatchingModeOfThePrintSettings)
{
    EXPECT_THAT(whenOnly(kColorMatchingNumber, std::int64_t{0}), becomes(kForced, kNotForced));
    EXPECT_THAT(whenOnly(kColorMatchingNumber, false), becomes(kForced, kNotForced));
    EXPECT_THAT(whenOnly(kColorMatchingNumber, std::int64_t{2}), kNothing);
    EXPECT_THAT(whenOnly(kColorMatchingNumber, true), kNothing);
    EXPECT_THAT(whenOnly(kColorMatchingNumber, std::nullopt), kNothing);
    // A text is no number, whatever it spells.
    EXPECT_THAT(whenOnly(kColorMatchingNumber, "0"), kNothing);
}

TEST_F(handlePJLTest, ColorProfile)
{
    EXPECT_THAT(whenOnly(kColorProfile, urlOf("missing.icc")), becomes(kForced, kNotForced));
    EXPECT_THAT(whenOnly(kColorProfile, std::nullopt), becomes(kForced, kNotForced));
}

TEST_F(handlePJLTest, AdvancedColorMode)
{
    for (const std::optional<KLValue> &mode :
         {std::optional<KLValue>("Advanced"), std::optional<KLValue>("standard"),
          std::optional<KLValue>("Standard "), std::optional<KLValue>(std::int64_t{1}),
          std::optional<KLValue>()})
        EXPECT_THAT(whenOnly(kColorSettings + "mode", mode),
                    FieldsAre(UnorderedElementsAre(
                                  print("RGB PROFILE=rgb"), print("CMYK PROFILE=cmyk"),
                                  print("OUTPUT PROFILE=output"), print("USE PROFILE=device"),
                                  print("RENDERING INTENT=perceptual")),
                              ElementsAre(print("EXTRADOCUMENTTYPE=custom"))));
}

TEST_F(handlePJLTest, ProfilesOfTheStandardMode)
{
    const std::map<std::string, std::pair<std::string, std::string>> rows = {
        {"rgb-source", {"RGB PROFILE", "rgb"}},
        {"cmyk-source", {"CMYK PROFILE", "cmyk"}},
        {"cmyk-dest", {"OUTPUT PROFILE", "output"}},
        {"device-color-only", {"USE PROFILE", "device"}},
        {"rendering-intent", {"RENDERING INTENT", "perceptual"}}};
    for (const auto &[key, row] : rows) {
        const std::string line = print(row.first + "=" + row.second);
        EXPECT_THAT(whenOnly(kColorSettings + key, "other"),
                    becomes(line, print(row.first + "=other")));
        EXPECT_THAT(whenOnly(kColorSettings + key, std::nullopt), disappears(line));
        // They mean nothing in another mode.
        EXPECT_THAT(whenOnly(kColorSettings + key, "other", customizedColor()), kNothing);
    }
}

TEST_F(handlePJLTest, CustomizedProfile)
{
    const std::string key = kColorSettings + "customized-rgb-profile";
    const std::string line = print("EXTRADOCUMENTTYPE=custom");
    EXPECT_THAT(whenOnly(key, "other", customizedColor()),
                becomes(line, print("EXTRADOCUMENTTYPE=other")));
    EXPECT_THAT(whenOnly(key, std::nullopt, customizedColor()),
                becomes(line, print("EXTRADOCUMENTTYPE=DEFAULT")));
    EXPECT_THAT(whenOnly(key, "other"), kNothing); // the mode is "Standard"
}

TEST_F(handlePJLTest, UserName)
{
    const std::string line = print("USERLOGIN=anna");
    EXPECT_THAT(whenOnly("com.kalmira.username", "bert"), becomes(line, print("USERLOGIN=bert")));
    EXPECT_THAT(whenOnly("com.kalmira.username", std::nullopt), becomes(line, print("USERLOGIN=")));
}

TEST_F(handlePJLTest, DomainName)
{
    const std::string line = print("DOMAINNAME=example.com");
    EXPECT_THAT(whenOnly("com.kalmira.domainname", "example.org"),
                becomes(line, print("DOMAINNAME=example.org")));
    EXPECT_THAT(whenOnly("com.kalmira.domainname", std::nullopt), disappears(line));
    EXPECT_THAT(whenOnly("com.kalmira.domainname", ""), becomes(line, print("DOMAINNAME=")));
}

TEST_F(handlePJLTest, PrintMode)
{
    EXPECT_THAT(whenOnly("PrintMode", "Private"),
                FieldsAre(UnorderedElementsAre(box("BOX=1"), box("BOXNO=7"), box("BOXNAME=Sales"),
                                               box("BOXFOLDER=2026"), box("BOXPASSWORD=secret"),
                                               print("PRINTMODE=BOX")),
                          UnorderedElementsAre(kPrintMode, print("PRIVPRINT=1234"))));
    EXPECT_THAT(whenOnly("PrintMode", "private"), kNothing);
    EXPECT_THAT(whenOnly("PrintMode", "Hold"), kNothing);
    EXPECT_THAT(whenOnly("PrintMode", std::nullopt), kNothing);
}

TEST_F(handlePJLTest, PrivatePassword)
{
    const std::string line = print("PRIVPRINT=1234");
    EXPECT_THAT(whenOnly(kPrivatePassword, "99", privateJob()),
                becomes(line, print("PRIVPRINT=99")));
    EXPECT_THAT(whenOnly(kPrivatePassword, std::nullopt, privateJob()), disappears(line));
    EXPECT_THAT(whenOnly(kPrivatePassword, "99"), kNothing); // the job is not private
}

TEST_F(handlePJLTest, StoreToDocStore)
{
    for (const char *yes : {"true", "TRUE", "True", "tRuE"})
        EXPECT_THAT(whenOnly("StoreToDocStore", yes), kNothing) << yes;
    for (const std::optional<KLValue> &no :
         {std::optional<KLValue>("False"), std::optional<KLValue>("true "),
          std::optional<KLValue>("1"), std::optional<KLValue>("yes"), std::optional<KLValue>(""),
          std::optional<KLValue>(true), std::optional<KLValue>()})
        EXPECT_THAT(
            whenOnly("StoreToDocStore", no),
            FieldsAre(UnorderedElementsAre(box("BOX=1"), box("BOXNO=7"), box("BOXNAME=Sales"),
                                           box("BOXFOLDER=2026"), box("BOXPASSWORD=secret"),
                                           print("PRINTMODE=BOX")),
                      ElementsAre(kPrintMode)));
}

TEST_F(handlePJLTest, BoxNumberNameAndFolder)
{
    const std::map<std::string, std::pair<std::string, std::string>> rows = {
        {"boxNumber", {"BOXNO", "7"}},
        {"boxName", {"BOXNAME", "Sales"}},
        {"boxFolder", {"BOXFOLDER", "2026"}}};
    for (const auto &[key, row] : rows) {
        const std::string line = box(row.first + "=" + row.second);
        EXPECT_THAT(whenOnly(kBoxSettings + key, "other"),
                    becomes(line, box(row.first + "=other")));
        EXPECT_THAT(whenOnly(kBoxSettings + key, std::nullopt),
                    becomes(line, box(row.first + "=")));
    }
}

TEST_F(handlePJLTest, BoxPasswords)
{
    const std::string line = box("BOXPASSWORD=secret");
    const std::string extendedLine = box("BOXPASSWORDEX=longer secret");
    const std::string password = kBoxSettings + "boxPassword";
    const std::string extended = kBoxSettings + "boxPasswordEx";
    EXPECT_THAT(whenOnly(password, "other"), becomes(line, box("BOXPASSWORD=other")));
    EXPECT_THAT(whenOnly(password, ""), becomes(line, box("BOXPASSWORD=")));
    EXPECT_THAT(whenOnly(password, std::nullopt), becomes(line, extendedLine));

    // Of two passwords only the plain one is written.
    EXPECT_THAT(whenOnly(extended, "other"), kNothing);
    EXPECT_THAT(whenOnly(extended, std::nullopt), kNothing);
    const Settings withoutPassword = everySettingBut({{password, std::nullopt}});
    EXPECT_THAT(whenOnly(extended, "other", withoutPassword),
                becomes(extendedLine, box("BOXPASSWORDEX=other")));
    EXPECT_THAT(whenOnly(extended, std::nullopt, withoutPassword), disappears(extendedLine));
}

TEST_F(handlePJLTest, PrintAsWell)
{
    for (const std::optional<KLValue> &yes :
         {std::optional<KLValue>("True"), std::optional<KLValue>("false"),
          std::optional<KLValue>("FALSE"), std::optional<KLValue>(false), std::optional<KLValue>()})
        EXPECT_THAT(whenOnly("PrintAsWell", yes), becomes(print("PRINTMODE=BOX"), kPrintMode));
}

TEST_F(handlePJLTest, Copies)
{
    const std::string line = "@PJL SET COPIES = 3\r\n";
    EXPECT_THAT(whenOnly("com.kalmira.copies", "20"), becomes(line, "@PJL SET COPIES = 20\r\n"));
    EXPECT_THAT(whenOnly("com.kalmira.copies", std::nullopt),
                becomes(line, "@PJL SET COPIES = 1\r\n"));
}

//
// Department code
//

TEST_F(handlePJLTest, DepartmentCodeReplacesTheHeadersOwn)
{
    EXPECT_EQ(print("ACCESSCODE=42"), walk(everySetting(), print("ACCESSCODE=4711")));
}

TEST_F(handlePJLTest, WithoutDepartmentCodeTheHeadersOwnIsDroppedToo)
{
    EXPECT_EQ("", walk({}, print("ACCESSCODE=4711")));
}

//
// Device colour
//

TEST_F(handlePJLTest, ProfileIsNotOpenedWhenItDoesNotDecide)
{
    OpenWatch watch(_folder.file("srgb.icc"));
    const Settings vendor = everySettingBut({{kColorMatching, "AP_VendorColorMatching"}});
    EXPECT_EQ(kNotForced + kCollate, walk(vendor, kCollate));
    EXPECT_FALSE(watch.sawOpen());
    const Settings zero = everySettingBut({{kColorMatchingNumber, std::int64_t{0}}});
    EXPECT_EQ(kNotForced + kCollate, walk(zero, kCollate));
    EXPECT_FALSE(watch.sawOpen());

    EXPECT_EQ(kForced + kCollate, walk(everySetting(), kCollate));
    EXPECT_TRUE(watch.sawOpen());
}

TEST_F(handlePJLTest, ModelAndDescriptionMustBeExactlyTheStandardOnes)
{
    const auto flagOf = [this](std::string_view model, std::string_view description) {
        _folder.write("other.icc", Support::iccProfileWithDescription(model, description));
        return flagFor(urlOf("other.icc"));
    };
    EXPECT_EQ(kFlagSet, flagOf("sRGB", "sRGB IEC61966-2.1"));
    EXPECT_EQ(kFlagClear, flagOf("sRGB", "sRGB IEC61966-2.2"));
    EXPECT_EQ(kFlagClear, flagOf("sRGB", "sRGB IEC61966-2.1 "));
    EXPECT_EQ(kFlagClear, flagOf("sRGB", "srgb iec61966-2.1"));
    EXPECT_EQ(kFlagClear, flagOf("sRGB", ""));
    EXPECT_EQ(kFlagClear, flagOf("srgb", "sRGB IEC61966-2.1"));
    EXPECT_EQ(kFlagClear, flagOf("\0\0\0\0"s, "sRGB IEC61966-2.1"));
}

TEST_F(handlePJLTest, ProfileWithoutDescriptionIsNotTheStandardOne)
{
    _folder.write("bare.icc", Support::iccProfileWithTags("sRGB", {}));
    EXPECT_EQ(kFlagClear, flagFor(urlOf("bare.icc")));
}

TEST_F(handlePJLTest, RealProfilesThatAreNotTheStandardOne)
{
    // The last one has the model "sRGB", and a description that begins with the standard's.
    for (const std::string &path : {Support::freeSRGBProfile(), Support::ghostscriptSRGBProfile(),
                                    Support::colordSRGBProfile(), Support::argyllSRGBProfile()})
        EXPECT_EQ(kFlagClear, flagFor("file://" + path)) << path;
}

TEST_F(handlePJLTest, URLsOfTheProfile)
{
    _folder.write("my \xC3\xA9 profile.icc", Support::standardSRGBProfile());
    EXPECT_EQ(kFlagSet, flagFor("file://" + _folder.path() + "/my%20%C3%A9%20profile.icc"));
    EXPECT_EQ(kFlagSet, flagFor("file://localhost" + _folder.file("srgb.icc")));
    EXPECT_EQ(kFlagSet, flagFor("file:" + _folder.file("srgb.icc")));
}

TEST_F(handlePJLTest, TextThatIsNoUsableURLClearsTheFlag)
{
    _folder.write("my \xC3\xA9 profile.icc", Support::standardSRGBProfile());
    for (const std::string &text :
         {""s, "srgb.icc"s, _folder.file("srgb.icc"), "file://server" + _folder.file("srgb.icc"),
          "http://localhost" + _folder.file("srgb.icc"), urlOf("my \xC3\xA9 profile.icc"),
          "file://" + std::string(4096, '/') + "x", urlOf(std::string(5000, 'x')),
          urlOf("srgb.icc") + "%00", urlOf("srgb.icc") + "/", "file:///"s})
        EXPECT_EQ(kFlagClear, flagFor(text)) << text.substr(0, 100);
    EXPECT_EQ(kFlagClear, flagFor(std::int64_t{7}));
    EXPECT_EQ(kFlagClear, flagFor(true));
}

TEST_F(handlePJLTest, LongURLOfAProfileIsUsed)
{
    // The kernel takes paths of up to 4095 bytes, a URL with escapes may be three times as long.
    std::string escaped;
    for (const char c : _folder.file("srgb.icc"))
        escaped += c == '/' ? std::string("/") : "%" + [c] {
            const char digits[] = "0123456789ABCDEF";
            return std::string{digits[c >> 4 & 15], digits[c & 15]};
        }();
    const std::string dots = [] {
        std::string result;
        while (result.size() < 3900)
            result += "/.";
        return result;
    }();
    EXPECT_EQ(kFlagSet, flagFor("file://" + dots + escaped));
}

TEST_F(handlePJLTest, DeviceOrFIFOAsProfileClearsTheFlag)
{
    ASSERT_EQ(0, mkfifo(_folder.file("fifo.icc").c_str(), 0600));
    EXPECT_EQ(kFlagClear, flagFor(urlOf("fifo.icc")));
    EXPECT_EQ(kFlagClear, flagFor("file:///dev/zero"));
    EXPECT_EQ(kFlagClear, flagFor(urlOf("")));
}

//
// Advanced colour
//

TEST_F(handlePJLTest, StandardModeWithOneKeyAddsOneLine)
{
    EXPECT_EQ(kAdvanced + print("RENDERING INTENT=saturation"),
              walk({{kColorSettings + "mode", "Standard"},
                    {kColorSettings + "rendering-intent", "saturation"}},
                   kAdvanced));
}

TEST_F(handlePJLTest, StandardModeWithoutKeysAddsNothing)
{
    EXPECT_EQ(kAdvanced, walk({{kColorSettings + "mode", "Standard"}}, kAdvanced));
}

TEST_F(handlePJLTest, OtherModeTakesTheCustomizedProfile)
{
    // The names would let one expect it the other way round.
    EXPECT_EQ(
        kAdvanced + print("EXTRADOCUMENTTYPE=DEFAULT"),
        walk({{kColorSettings + "mode", "Customized"}, {kColorSettings + "rgb-source", "rgb"}},
             kAdvanced));
}

TEST_F(handlePJLTest, AnyBeginningWithAdvancedIsTheMarker)
{
    const std::string line = print("DOCUMENTTYPE=ADVANCED2");
    EXPECT_EQ(line + print("EXTRADOCUMENTTYPE=DEFAULT"), walk({}, line));
}

//
// Print mode
//

TEST_F(handlePJLTest, PrivateJobWithoutPasswordStoresNothingEither)
{
    Settings settings = privateJob();
    settings[kPrivatePassword] = std::nullopt;
    EXPECT_EQ(print("USERLOGIN=anna") + print("DOMAINNAME=example.com") + kPrintMode,
              walk(settings, kPrintMode));
    settings["com.kalmira.domainname"] = std::nullopt;
    EXPECT_EQ(print("USERLOGIN=anna") + kPrintMode, walk(settings, kPrintMode));
}

TEST_F(handlePJLTest, BoxValuesThatAreAbsentMakeLinesWithAnEmptyValue)
{
    EXPECT_EQ(print("USERLOGIN=") + box("BOX=1") + box("BOXNO=") + box("BOXNAME=") +
                  box("BOXFOLDER=") + kPrintMode,
              walk({{"StoreToDocStore", "True"}}, kPrintMode));
}

TEST_F(handlePJLTest, StoredJobThatIsPrintedKeepsItsPrintMode)
{
    const std::string line = print("PRINTMODE=PROOF");
    const std::string header = walk(everySettingBut({{"PrintAsWell", "false"}}), line);
    EXPECT_TRUE(header.ends_with(box("BOXPASSWORD=secret") + line)) << header;
}

//
// Values
//

namespace {

/// Every option whose value goes into the header, with the line that carries it as it begins.
const std::vector<std::pair<std::string, std::string>> kValueLines = {
    {kDepartmentCode, "@PJL COMMENT DSSC PRINT ACCESSCODE="},
    {kColorSettings + "rgb-source", "@PJL COMMENT DSSC PRINT RGB PROFILE="},
    {kColorSettings + "cmyk-source", "@PJL COMMENT DSSC PRINT CMYK PROFILE="},
    {kColorSettings + "cmyk-dest", "@PJL COMMENT DSSC PRINT OUTPUT PROFILE="},
    {kColorSettings + "device-color-only", "@PJL COMMENT DSSC PRINT USE PROFILE="},
    {kColorSettings + "rendering-intent", "@PJL COMMENT DSSC PRINT RENDERING INTENT="},
    {kColorSettings + "customized-rgb-profile", "@PJL COMMENT DSSC PRINT EXTRADOCUMENTTYPE="},
    {"com.kalmira.username", "@PJL COMMENT DSSC PRINT USERLOGIN="},
    {"com.kalmira.domainname", "@PJL COMMENT DSSC PRINT DOMAINNAME="},
    {kPrivatePassword, "@PJL COMMENT DSSC PRINT PRIVPRINT="},
    {kBoxSettings + "boxNumber", "@PJL COMMENT DSSC BOX BOXNO="},
    {kBoxSettings + "boxName", "@PJL COMMENT DSSC BOX BOXNAME="},
    {kBoxSettings + "boxFolder", "@PJL COMMENT DSSC BOX BOXFOLDER="},
    {kBoxSettings + "boxPassword", "@PJL COMMENT DSSC BOX BOXPASSWORD="},
    {kBoxSettings + "boxPasswordEx", "@PJL COMMENT DSSC BOX BOXPASSWORDEX="},
    {"com.kalmira.copies", "@PJL SET COPIES = "},
};

} // namespace

/// Fixture verbs for values: puts one into every line that carries one.
class handlePJLValueTest : public handlePJLTest {
protected:
    /// The line of the value's option, wherever a job of that kind has it; walked without the
    /// checker, because the copies line does not take every text.
    std::string lineWith(const std::string &key, const std::string &begin,
                         const KLValue &value) const
    {
        Settings settings = key == kPrivatePassword                    ? privateJob()
                            : begin.find("EXTRA") != std::string::npos ? customizedColor()
                                                                       : everySetting();
        if (key == kBoxSettings + "boxPasswordEx")
            settings[kBoxSettings + "boxPassword"] = std::nullopt;
        settings[key] = value;
        for (const std::string &line : Support::linesOf(walkUnchecked(settings, kHeader))) {
            if (line.starts_with(begin))
                return line;
        }
        return "no line";
    }

    void expectValueAs(const KLValue &value, const std::string &written) const
    {
        for (const auto &[key, begin] : kValueLines)
            EXPECT_EQ(begin + written + "\r\n", lineWith(key, begin, value)) << key;
    }
};

TEST_F(handlePJLValueTest, TextKeepsEveryByteThatIsNoControlCharacter)
{
    for (const std::string &text :
         {"50% off %@ %s %1$@ %n"s, "a \"quoted\" 'text' \\n \\"s, "@PJL EOJ"s, "  two  blanks  "s,
          "Gr\xC3\xBC\xC3\x9F e\xCC\x81 \xF0\x9F\x96\xA8"s, "not UTF-8: \xFF\x80"s,
          std::string(10'000, 'x'), "~!#$^&*()[]{}<>|;:,.?/`=+-_"s})
        expectValueAs(text, text);
}

TEST_F(handlePJLValueTest, ControlCharactersBecomeBlanks)
{
    expectValueAs("a\r\n@PJL EOJ\r\nb", "a  @PJL EOJ  b");
    expectValueAs("\x1B%-12345X@PJL", " %-12345X@PJL");
    std::string all;
    for (char c = 1; c < 0x20; ++c)
        all += c;
    expectValueAs(all + '\x7F' + '\0' + "x", std::string(33, ' ') + "x");
}

TEST_F(handlePJLValueTest, NumbersAreWrittenInTheirPlainForm)
{
    expectValueAs(std::int64_t{-42}, "-42");
    expectValueAs(INT64_MAX, "9223372036854775807");
    expectValueAs(true, "1");
    expectValueAs(false, "0");
}

TEST_F(handlePJLValueTest, NoValueCanSpeakPJL)
{
    Settings settings = everySetting();
    for (auto &[key, value] : settings) {
        // These five decide; and copies is no quoted text, in which anything may stand.
        if (key != "PrintMode" && key != "StoreToDocStore" && key != "PrintAsWell" &&
            key != kColorSettings + "mode" && key != kColorProfile && key != "com.kalmira.copies")
            value = "x\r\n@PJL EOJ\r\n" + kExit + "@PJL JOB\r\n@PJL ENTER LANGUAGE = PCL\r\n";
    }
    const std::string header = walk(settings, kHeader); // with the checker
    EXPECT_EQ(Support::linesOf(walk(everySetting(), kHeader)).size(),
              Support::linesOf(header).size());
}

//
// Which lines are markers
//

TEST_F(handlePJLTest, HeaderWithoutMarkersPassesUnchanged)
{
    const std::string header = kFirst + "@PJL SET USERNAME = \"anna\"\n" + print("STAPLE=LEFT") +
                               box("BOXNO=99") + "@PJL COMMENT ACCESSCODE=1\r\n" + kEnter;
    EXPECT_EQ(header, walk(everySetting(), header));
}

TEST_F(handlePJLTest, LinesThatOnlyLookLikeMarkersPassUnchanged)
{
    for (const std::string &line : {print("accesscode="),
                                    print("Collate=ON"),
                                    print("DOCUMENTTYPE=advanced"),
                                    print("DOCUMENTTYPE=GENERAL"),
                                    print("printmode=NORMAL"),
                                    print(" ACCESSCODE="),
                                    print("XACCESSCODE="),
                                    print("ACCESSCODE"),
                                    print("ACCESSCODE ="),
                                    print("COLLATE"),
                                    print("DOCUMENTTYPE= ADVANCED"),
                                    print("DOCUMENTTYPE=ADVANCE"),
                                    print("PRINTMODE"),
                                    print(""),
                                    box("ACCESSCODE="),
                                    box("PRINTMODE=NORMAL"),
                                    "@PJL COMMENT DSSC  PRINT ACCESSCODE=\r\n"s,
                                    "@PJL COMMENT dssc PRINT COLLATE=ON\r\n"s,
                                    " @PJL COMMENT DSSC PRINT ACCESSCODE=\r\n"s,
                                    "@PJL COMMENT DSSC PRINT\r\n"s,
                                    "@PJL JOB\r\n"s,
                                    "@PJL JOB DISPLAY = \"a\" NAME = \"b\"\r\n"s,
                                    "@PJL job NAME = \"a\"\r\n"s,
                                    "@PJL JOB  NAME = \"a\"\r\n"s,
                                    " @PJL JOB NAME = \"a\"\r\n"s,
                                    "@PJL COMMENT @PJL JOB NAME\r\n"s,
                                    "@PJL SET COPIES = 9\r\n"s,
                                    print("@PJL JOB NAME = \"a\""),
                                    "\r\n"s})
        EXPECT_EQ(line, walkUnchecked(everySetting(), line)) << line;
}

TEST_F(handlePJLTest, MarkerWithoutLineEndAtTheEndOfTheHeader)
{
    EXPECT_EQ(print("ACCESSCODE=42"),
              walkUnchecked(everySetting(), "@PJL COMMENT DSSC PRINT ACCESSCODE="));
    EXPECT_EQ("@PJL JOB NAME@PJL SET COPIES = 3\r\n",
              walkUnchecked(everySetting(), "@PJL JOB NAME"));
}

TEST_F(handlePJLTest, FirstLineBehindTheExitMarkerCanBeAMarker)
{
    EXPECT_EQ(print("ACCESSCODE=42") + kEnter, walk(everySetting(), kAccessCode + kEnter));
}

/// A header line and what must become of it.
struct Shape {
    std::string line;
    std::string expected;
};

/// Headers made of several shapes.
class handlePJLShapeTest : public handlePJLTest {
protected:
    /// One line each, ending in that line end, and its due for everySetting().
    static std::vector<Shape> shapes(const std::string &lineEnd)
    {
        const auto own = [&lineEnd](const std::string &setting) {
            return "@PJL COMMENT DSSC PRINT " + setting + lineEnd;
        };
        const std::string jobLine = "@PJL JOB NAME = \"x\"" + lineEnd;
        return {
            {own("ACCESSCODE=99"), print("ACCESSCODE=42")},
            {own("COLLATE=OFF"), kForced + own("COLLATE=OFF")},
            {own("DOCUMENTTYPE=ADVANCED"),
             own("DOCUMENTTYPE=ADVANCED") + print("RGB PROFILE=rgb") + print("CMYK PROFILE=cmyk") +
                 print("OUTPUT PROFILE=output") + print("USE PROFILE=device") +
                 print("RENDERING INTENT=perceptual")},
            {own("PRINTMODE=HOLD"), print("USERLOGIN=anna") + print("DOMAINNAME=example.com") +
                                        box("BOX=1") + box("BOXNO=7") + box("BOXNAME=Sales") +
                                        box("BOXFOLDER=2026") + box("BOXPASSWORD=secret") +
                                        print("PRINTMODE=BOX")},
            {jobLine, jobLine + "@PJL SET COPIES = 3\r\n"},
            {own("STAPLE=LEFT"), own("STAPLE=LEFT")},
        };
    }

    /// Walks the header of these shapes and compares.
    void expectDue(const std::vector<Shape> &header) const
    {
        std::string lines = kFirst;
        std::string expected = kFirst;
        for (const Shape &shape : header) {
            lines += shape.line;
            expected += shape.expected;
        }
        ASSERT_EQ(expected + kEnter, walk(everySetting(), lines + kEnter));
    }
};

TEST_F(handlePJLShapeTest, AnySubsetOfTheMarkersInAnyOrder)
{
    const auto withLF = shapes("\n");
    const auto withCRLF = shapes("\r\n");
    for (unsigned subset = 0; subset < 1u << withLF.size(); ++subset) {
        std::vector<std::size_t> order;
        for (std::size_t shape = 0; shape < withLF.size(); ++shape) {
            if ((subset >> shape & 1) != 0)
                order.push_back(shape);
        }
        do {
            std::vector<Shape> header;
            for (const std::size_t shape : order) // line ends change from line to line
                header.push_back((header.size() + subset) % 2 == 0 ? withLF[shape]
                                                                   : withCRLF[shape]);
            expectDue(header);
            if (HasFailure())
                return;
        } while (std::next_permutation(order.begin(), order.end()));
    }
}

TEST_F(handlePJLShapeTest, RepeatedMarkersEachGetTheirDue)
{
    // All but the job line, which a job has once.
    std::vector<Shape> header;
    for (const std::string lineEnd : {"\n", "\r\n"}) {
        for (const Shape &shape : shapes(lineEnd)) {
            if (!shape.line.starts_with("@PJL JOB"))
                header.insert(header.end(), 3, shape);
        }
    }
    expectDue(header);
}

TEST_F(handlePJLShapeTest, LongHeader)
{
    std::vector<Shape> header;
    const auto all = shapes("\r\n");
    for (std::size_t line = 0; line < 2000; ++line)
        header.push_back(all[line % 4]);
    expectDue(header);
}

//
// What the action holds
//

TEST_F(handlePJLTest, ActionSharesThePrintJobAndLetsGoOfIt)
{
    auto job = std::make_shared<KLPrintJob>(stdin, stdout);
    const std::weak_ptr<KLPrintJob> watch = job;
    auto action = handlePJL(job);
    job.reset();
    EXPECT_EQ(1, watch.use_count());
    action = nullptr;
    EXPECT_TRUE(watch.expired());
}

TEST_F(handlePJLTest, OptionsAreAskedForAtEachLine)
{
    const Platform::Stream input =
        Platform::openForReading(_folder.write("in", kExit + kAccessCode + kAccessCode));
    Platform::Stream output = Platform::openForWriting(_folder.file("out"));
    const auto job = std::make_shared<KLPrintJob>(input.get(), output.get());
    const auto action = handlePJL(job);
    int code = 0;
    KLPJLHandler::enumeratePJLFromPrintJobUsingBlock(
        job, [&](KLPJLHandler &handler, const std::string &line) {
            job->setPrintOptions(optionsOf({{kDepartmentCode, std::int64_t{++code}}}));
            action(handler, line);
        });
    Platform::closeStream(std::move(output));
    EXPECT_EQ(kExit + print("ACCESSCODE=1") + print("ACCESSCODE=2"),
              Support::readFile(_folder.file("out")));
}

TEST_F(handlePJLTest, NothingIsLogged)
{
    testing::internal::CaptureStderr();
    walk(everySetting(), kHeader);
    walk({}, kHeader);
    flagFor("no URL");
    flagFor("file:///dev/zero");
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
}
