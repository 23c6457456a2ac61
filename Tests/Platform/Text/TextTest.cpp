#include "Text.h"

#include <gtest/gtest.h>

using namespace Platform;

namespace {
// "é" in one code point, and as "e" with a combining accent.
constexpr char kComposed[] = "caf\xC3\xA9";
constexpr char kDecomposed[] = "cafe\xCC\x81";
constexpr char kNotUTF8[] = "caf\xE9";
} // namespace

TEST(TextTest, BlanksGoFromBothEndsAndNoneFromWithin)
{
    EXPECT_EQ("a b", withoutBlanks("  a b "));
    EXPECT_EQ("a", withoutBlanks("a"));
    EXPECT_EQ("\ta\t", withoutBlanks(" \ta\t "));
    EXPECT_EQ("a", withoutBlanks(" \ta\t ", " \t"));
    EXPECT_EQ("", withoutBlanks(""));
    EXPECT_EQ("", withoutBlanks("   "));
}

TEST(TextTest, TextIsCutBetweenCharacters)
{
    EXPECT_EQ(3U, lengthCutAtCharacter("abc", 3));
    EXPECT_EQ(2U, lengthCutAtCharacter("abc", 2));
    EXPECT_EQ(0U, lengthCutAtCharacter("", 2));
    const std::string text = "a\xE2\x82\xAC"
                             "b"; // a euro sign of three bytes
    EXPECT_EQ(4U, lengthCutAtCharacter(text, 4));
    EXPECT_EQ(1U, lengthCutAtCharacter(text, 3));
    EXPECT_EQ(1U, lengthCutAtCharacter(text, 2));
    EXPECT_EQ(0U, lengthCutAtCharacter("\xE2\x82\xAC", 2));
    EXPECT_EQ(0U, lengthCutAtCharacter("\x82\xAC\xAC", 2)); // no beginning of a character
}

TEST(TextTest, TellsUTF8FromOtherBytes)
{
    EXPECT_TRUE(isValidUTF8(""));
    EXPECT_TRUE(isValidUTF8(kComposed));
    EXPECT_TRUE(isValidUTF8(std::string_view("a\0b", 3)));
    EXPECT_FALSE(isValidUTF8(kNotUTF8));
    EXPECT_FALSE(isValidUTF8("\xC0\x80"));     // overlong
    EXPECT_FALSE(isValidUTF8("\xED\xA0\x80")); // a surrogate
    EXPECT_FALSE(isValidUTF8("\xE2\x82"));     // cut off
}

TEST(TextTest, EachByteThatBelongsToNoCharacterIsReplaced)
{
    EXPECT_EQ("", repairedUTF8("", '?'));
    EXPECT_EQ("a\xC3\xA9\xE6\xBC\xA2\xF0\x9D\x84\x9E",
              repairedUTF8("a\xC3\xA9\xE6\xBC\xA2\xF0\x9D\x84\x9E", '?'));
    EXPECT_EQ("?", repairedUTF8("\xC3", '?'));
    EXPECT_EQ("a??b", repairedUTF8("a\xE6\xBC"
                                   "b",
                                   '?'));
    EXPECT_EQ("???", repairedUTF8("\xF0\x9D\x84", '?'));
    EXPECT_EQ("?\xC3\xA9?", repairedUTF8("\xFF\xC3\xA9\xA9", '?'));
    EXPECT_EQ(".. ...", repairedUTF8("\xC0\x80 \xED\xA0\x80", '.')); // overlong, a surrogate
    EXPECT_EQ(std::string("\0.\0", 3), repairedUTF8(std::string("\0\xE9\0", 3), '.'));
}

TEST(TextTest, TellsControlCharactersOfASCII)
{
    int controls = 0;
    for (int byte = 0; byte < 0x100; ++byte)
        controls += isControl(static_cast<char>(byte)) ? 1 : 0;
    EXPECT_EQ(33, controls);
    EXPECT_TRUE(isControl('\0') && isControl('\n') && isControl('\x1F') && isControl('\x7F'));
    EXPECT_FALSE(isControl(' ') || isControl('~') || isControl('\x80') || isControl('\xFF'));
}

TEST(TextTest, PutsABlankInPlaceOfEachControlCharacter)
{
    EXPECT_EQ("", withoutControls(""));
    EXPECT_EQ("a  b ü % ", withoutControls("a\r\nb\x1Bü\x7F%\t"));
    EXPECT_EQ("  ", withoutControls(std::string("\0\x1F", 2)));
}

TEST(TextTest, CharactersThatShowNothingAreInvisible)
{
    for (const char32_t character : {U' ', U'\t', U'\n', U'\x7F', U'\x85', U'\u00A0', U'\u1680',
                                     U'\u3000', U'\u2028', U'\u200D', U'\u200E', U'\u00AD',
                                     U'\u034F', U'\u115F', U'\uFE0F', U'\uFEFF', U'\U000E0100'})
        EXPECT_TRUE(Platform::isInvisible(character)) << std::hex << std::uint32_t{character};
    for (const char32_t character : {U'x', U'0', U'-', U'\u0301', U'\u0600', U'\u2800', U'\u793E',
                                     U'\U0001F600', U'\uE000', U'\U0010FFFD'})
        EXPECT_FALSE(Platform::isInvisible(character)) << std::hex << std::uint32_t{character};
}

TEST(TextTest, CanonicallyEquivalentFormsAreTheSame)
{
    EXPECT_TRUE(isEqualText(kComposed, kDecomposed, ExactComparison));
    EXPECT_FALSE(isEqualText(kComposed, "cafe", ExactComparison));
}

TEST(TextTest, ExactComparisonMindsLetterCase)
{
    EXPECT_FALSE(isEqualText("True", "true", ExactComparison));
    EXPECT_TRUE(isEqualText("True", "True", ExactComparison));
}

TEST(TextTest, CaseInsensitiveComparisonFoldsLetterCase)
{
    EXPECT_TRUE(isEqualText("TRUE", "true", CaseInsensitiveComparison));
    EXPECT_TRUE(isEqualText("CAF\xC3\x89", kDecomposed, CaseInsensitiveComparison));
    EXPECT_FALSE(isEqualText("true ", "true", CaseInsensitiveComparison));
}

TEST(TextTest, CompatibleFormsAreNotTheSame)
{
    EXPECT_FALSE(isEqualText("\xEF\xAC\x81", "fi", ExactComparison)); // the ligature fi
}

TEST(TextTest, BytesThatAreNotUTF8AreTheSameOnlyAsThemselves)
{
    EXPECT_TRUE(isEqualText(kNotUTF8, kNotUTF8, CaseInsensitiveComparison));
    EXPECT_FALSE(isEqualText(kNotUTF8, kComposed, ExactComparison));
    EXPECT_FALSE(isEqualText(kNotUTF8, "caf\xC9", CaseInsensitiveComparison));
}

TEST(TextTest, ComparesBeyondANulByte)
{
    EXPECT_FALSE(isEqualText(std::string_view("a\0b", 3), std::string_view("a\0c", 3),
                             CaseInsensitiveComparison));
}

TEST(TextTest, TrimsWhiteSpaceAndLineEndsFromBothEndsOnly)
{
    EXPECT_EQ("@PJL  X", trimmedText("\r\n\t @PJL  X \r\n"));
    EXPECT_EQ("x", trimmedText("\xC2\xA0\xE2\x80\xA8x\xC2\x85\xE3\x80\x80"));
    EXPECT_EQ("", trimmedText(" \n"));
    EXPECT_EQ("", trimmedText(""));
}

TEST(TextTest, LeavesTextThatIsNotUTF8Alone)
{
    EXPECT_EQ(" \xE9 ", trimmedText(" \xE9 "));
    EXPECT_EQ("A\xE9", lowercaseText("A\xE9"));
    EXPECT_EQ("a\xE9", titlecaseText("a\xE9"));
}

TEST(TextTest, LowersLetters)
{
    EXPECT_EQ("noprint \xC3\xA9", lowercaseText("NoPrint \xC3\x89"));
}

TEST(TextTest, GivesEveryWordATitleLetter)
{
    EXPECT_EQ("Front", titlecaseText("fRONT"));
    EXPECT_EQ("Front-Side It's 2nd", titlecaseText("FRONT-SIDE IT'S 2ND"));
    EXPECT_EQ("\xC3\x89t\xC3\xA9", titlecaseText("\xC3\xA9T\xC3\x89"));
    EXPECT_EQ("", titlecaseText(""));
}

TEST(TextTest, AWordThatBeginsWithADigitOrAnApostropheGetsNoTitleLetter)
{
    EXPECT_EQ("2nd 'tis \xE2\x80\x99tis", titlecaseText("2ND 'TIS \xE2\x80\x99TIS"));
}
