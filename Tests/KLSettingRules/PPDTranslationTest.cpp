#include "PPDTranslation.h"

#include "TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

class PPDTranslationTest : public testing::Test {
protected:
    /// What the line of "Option Choice" says in a file of these lines; "-" for nothing.
    std::string words(std::string_view lines, std::string_view language = "de") const
    {
        return PPDTranslation(folder.write("ppd", lines), language).of("Option", "Choice", "-");
    }

    Support::TemporaryFolder folder;
};

TEST_F(PPDTranslationTest, WordsStandBehindKeywordAndName)
{
    EXPECT_EQ("Wörter (zwei)", words("*de.Option Choice/Wörter (zwei): \"\"\n"));
    EXPECT_EQ("Wörter", words("*de.Option  Choice/Wörter: \"\""));
    EXPECT_EQ("Wörter", words("*other\r\n*de.Option Choice/Wörter: \"\"\r\n"));
    EXPECT_EQ("-", words("*de.Option Other/Wörter: \"\"\n*de.Opti Choice/Wörter: \"\"\n"));
}

TEST_F(PPDTranslationTest, OtherLanguagesDoNotCount)
{
    EXPECT_EQ("-", words("*fr.Option Choice/Mots: \"\"\n*dex.Option Choice/x: \"\"\n"));
    EXPECT_EQ("-", words("*de.Option Choice/Wörter: \"\"\n", ""));
}

TEST_F(PPDTranslationTest, WordsOfThePlaceComeBeforeThoseOfTheLanguage)
{
    constexpr std::string_view kBoth =
        "*zh_TW.Option Choice/TW: \"\"\n*zh.Option Choice/zh: \"\"\n";
    EXPECT_EQ("TW", words(kBoth, "zh_TW"));
    EXPECT_EQ("zh", words(kBoth, "zh_CN"));
    EXPECT_EQ("zh", words(kBoth, "zh"));
}

TEST_F(PPDTranslationTest, HexadecimalBytesAreDecodedAndWhatIsNoneStays)
{
    EXPECT_EQ("Köln <x> <", words("*de.Option Choice/K<C3B6>ln <x> <: \"\"\n"));
    EXPECT_EQ("a<C3b", words("*de.Option Choice/a<C3b: \"\"\n"));
    EXPECT_EQ("<>", words("*de.Option Choice/<>: \"\"\n"));
}

TEST_F(PPDTranslationTest, WhatIsNoUTF8IsAQuestionMark)
{
    EXPECT_EQ("K?ln", words("*de.Option Choice/K<F6>ln: \"\"\n"));
}

TEST_F(PPDTranslationTest, LinesThatSayNothingAreNothing)
{
    for (const std::string line : {"*de.", "*de.Option", "*de.Option Choice", "*de.Option Choice/",
                                   "*de.Option Choice/:", "*de.Option Choice: x",
                                   "*de.Option/Choice: x", "*de./:", "*de. /x: \"\""})
        EXPECT_EQ("-", words(line + "\n")) << line;
}

TEST_F(PPDTranslationTest, LongLinesAreReadAsFarAsWordsGo)
{
    EXPECT_EQ("-", words("*de.Option Choice/" + std::string(100000, 'x') + ": \"\"\n"));
    EXPECT_EQ("y", words(std::string(100000, 'x') + "\n*de.Option Choice/y: \"\"\n"));
}

TEST_F(PPDTranslationTest, FileThatCannotBeReadTranslatesNothing)
{
    EXPECT_EQ("-", PPDTranslation(folder.path(), "de").of("Option", "Choice", "-"));
    EXPECT_EQ("-", PPDTranslation(folder.file("none"), "de").of("Option", "Choice", "-"));
}

} // namespace
