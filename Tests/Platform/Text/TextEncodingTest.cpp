#include "TextEncoding.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <ostream>
#include <stdexcept>
#include <sys/resource.h>

using namespace Platform;
using namespace std::string_literals;

namespace {

struct Sample {
    const char *name;
    TextEncoding encoding;
    std::string text; ///< UTF-8
    std::string bytes;
};

class TextEncodingTest : public testing::TestWithParam<Sample> {};

struct Misfit {
    const char *name;
    TextEncoding encoding;
    std::string bytes; ///< to be decoded, or the text to be encoded
};

// Cases are listed by name.
void PrintTo(const Sample &sample, std::ostream *stream)
{
    *stream << sample.name;
}

void PrintTo(const Misfit &misfit, std::ostream *stream)
{
    *stream << misfit.name;
}

class UndecodableTest : public testing::TestWithParam<Misfit> {};
class UnencodableTest : public testing::TestWithParam<Misfit> {};

const auto nameOf = [](const auto &info) { return std::string(info.param.name); };

} // namespace

TEST_P(TextEncodingTest, DecodesAndEncodes)
{
    const Sample &sample = GetParam();
    EXPECT_EQ(sample.text, decodedText(sample.bytes, sample.encoding));
    EXPECT_EQ(sample.bytes, encodedText(sample.text, sample.encoding));
}

INSTANTIATE_TEST_SUITE_P(
    All, TextEncodingTest,
    testing::Values(
        Sample{"UTF8", TextEncoding::UTF8, "A\0\xC3\xA9\xE2\x82\xAC\xF0\x9F\x96\xA8\r\n"s,
               "A\0\xC3\xA9\xE2\x82\xAC\xF0\x9F\x96\xA8\r\n"s},
        Sample{"UTF8Mark", TextEncoding::UTF8,
               "\xEF\xBB\xBF"
               "A",
               "\xEF\xBB\xBF"
               "A"},
        // e acute, y diaeresis, control characters of both halves
        Sample{"ISOLatin1", TextEncoding::ISOLatin1, "A\0\xC3\xA9\xC3\xBF\n\xC2\x80"s,
               "A\0\xE9\xFF\n\x80"s},
        Sample{"ASCII", TextEncoding::ASCII, "A\0~\x7F\r\n"s, "A\0~\x7F\r\n"s},
        // e acute, euro sign, a printer (U+1F5A8: surrogates D83D DDA8)
        Sample{"UTF16BigEndian", TextEncoding::UTF16BigEndian,
               "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x96\xA8\n", "\0A\0\xE9\x20\xAC\xD8\x3D\xDD\xA8\0\n"s},
        Sample{"UTF16LittleEndian", TextEncoding::UTF16LittleEndian,
               "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x96\xA8\n", "A\0\xE9\0\xAC\x20\x3D\xD8\xA8\xDD\n\0"s},
        Sample{"UTF16BigEndianMark", TextEncoding::UTF16BigEndian,
               "\xEF\xBB\xBF"
               "A",
               "\xFE\xFF\0A"s},
        Sample{"UTF16LittleEndianMark", TextEncoding::UTF16LittleEndian,
               "\xEF\xBB\xBF"
               "A",
               "\xFF\xFE"
               "A\0"s},
        // A diaeresis, e acute, euro sign, ligature fi
        Sample{"MacRoman", TextEncoding::MacRoman, "A\xC3\x84\xC3\xA9\xE2\x82\xAC\xEF\xAC\x81",
               "A\x80\x8E\xDB\xDE"}),
    nameOf);

TEST_P(UndecodableTest, YieldsNothing)
{
    EXPECT_EQ(std::nullopt, decodedText(GetParam().bytes, GetParam().encoding));
    EXPECT_EQ(std::nullopt,
              decodedText(std::string(2000, 'x') + GetParam().bytes, GetParam().encoding));
}

INSTANTIATE_TEST_SUITE_P(
    All, UndecodableTest,
    testing::Values(Misfit{"StrayContinuation", TextEncoding::UTF8, "A\x80"},
                    Misfit{"CutShort", TextEncoding::UTF8, "A\xE2\x82"},
                    Misfit{"OverlongForm", TextEncoding::UTF8, "\xC0\xAF"},
                    Misfit{"SurrogateInUTF8", TextEncoding::UTF8, "\xED\xA0\x80"},
                    Misfit{"BeyondUnicode", TextEncoding::UTF8, "\xF4\x90\x80\x80"},
                    Misfit{"EightBitsInASCII", TextEncoding::ASCII, "A\x80"},
                    Misfit{"HalfAUnit", TextEncoding::UTF16BigEndian, "\0A\0"s},
                    Misfit{"HighSurrogateAlone", TextEncoding::UTF16BigEndian, "\xD8\x3D"},
                    Misfit{"LowSurrogateFirst", TextEncoding::UTF16BigEndian, "\xDD\xA8\0A"s},
                    Misfit{"HighSurrogateTwice", TextEncoding::UTF16LittleEndian,
                           "\x3D\xD8\x3D\xD8"},
                    Misfit{"LineFeedCutInTwo", TextEncoding::UTF16LittleEndian, "A\0\n"s}),
    nameOf);

TEST_P(UnencodableTest, YieldsNothing)
{
    EXPECT_EQ(std::nullopt, encodedText(GetParam().bytes, GetParam().encoding));
}

INSTANTIATE_TEST_SUITE_P(
    All, UnencodableTest,
    testing::Values(Misfit{"EuroInLatin1", TextEncoding::ISOLatin1, "5 \xE2\x82\xAC"},
                    Misfit{"AccentInASCII", TextEncoding::ASCII, "caf\xC3\xA9"},
                    Misfit{"KanjiInMacRoman", TextEncoding::MacRoman, "\xE6\xBC\xA2"},
                    Misfit{"TextThatIsNotUTF8", TextEncoding::UTF16BigEndian, "A\xFF"},
                    Misfit{"TextCutShort", TextEncoding::ISOLatin1, "A\xC3"}),
    nameOf);

TEST(TextEncodingTest, NoBytesAreTheEmptyText)
{
    for (const auto encoding :
         {TextEncoding::UTF8, TextEncoding::ISOLatin1, TextEncoding::ASCII,
          TextEncoding::UTF16BigEndian, TextEncoding::UTF16LittleEndian, TextEncoding::MacRoman}) {
        EXPECT_EQ("", decodedText("", encoding));
        EXPECT_EQ("", encodedText("", encoding));
    }
}

TEST(TextEncodingTest, EncodesTextThatIsNotUTF8AsItIsInUTF8)
{
    EXPECT_EQ("\xFF\x80", encodedText("\xFF\x80", TextEncoding::UTF8));
}

TEST(TextEncodingTest, ConvertsTextOfAnyLength)
{
    std::string latin1;
    std::string utf8;
    for (int i = 0; i < 100'000; ++i) {
        latin1 += "a\xE9";
        utf8 += "a\xC3\xA9";
    }
    EXPECT_EQ(utf8, decodedText(latin1, TextEncoding::ISOLatin1));
    EXPECT_EQ(latin1, encodedText(utf8, TextEncoding::ISOLatin1));
}

namespace {

/// Leaves with status 0 when the operation says that there is no converter. Converters are files,
/// and none can be opened.
template <class Operation>
[[noreturn]] void runWithoutConverters(const Operation &operation)
{
    constexpr rlimit kNoFiles = {0, 0};
    setrlimit(RLIMIT_NOFILE, &kNoFiles);
    try {
        operation();
    } catch (const std::runtime_error &) {
        std::_Exit(0);
    }
    std::_Exit(1);
}

} // namespace

TEST(TextEncodingTest, MissingConverterIsReportedWhateverIsToBeConverted)
{
#if defined(__has_feature)
#if __has_feature(undefined_behavior_sanitizer)
    GTEST_SKIP() << "The sanitizers need a file of their own, and there is none to be had.";
#endif
#endif
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a new process: no converter is there yet
    const auto isTold = testing::ExitedWithCode(0);
    EXPECT_EXIT(runWithoutConverters([] { decodedText("A", TextEncoding::MacRoman); }), isTold, "");
    EXPECT_EXIT(runWithoutConverters([] { encodedText("A", TextEncoding::MacRoman); }), isTold, "");
    EXPECT_EXIT(runWithoutConverters([] { decodedText("", TextEncoding::MacRoman); }), isTold, "");
    const auto isNotNeeded = testing::ExitedWithCode(1);
    EXPECT_EXIT(runWithoutConverters([] { decodedText("A", TextEncoding::UTF8); }), isNotNeeded,
                "");
}

TEST(TextEncodingTest, UnknownEncodingIsRefused)
{
    EXPECT_THROW(decodedText("A", static_cast<TextEncoding>(99)), std::invalid_argument);
}
