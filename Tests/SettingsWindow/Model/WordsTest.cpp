#include "Words.h"

#include <gmock/gmock.h>

#include <set>

using Model::asTheyAre;
using Model::inEnglish;
using Model::inLanguage;
using Model::Words;
using testing::Contains;
using testing::Not;

namespace {

TEST(WordsTest, ArgumentsStandWhereTheTextHasTheirNumbers)
{
    EXPECT_EQ("b and a", inEnglish({"%2 and %1", {asTheyAre("a"), asTheyAre("b")}}));
}

TEST(WordsTest, NumberWithoutAnArgumentStays)
{
    EXPECT_EQ("a %2 100% %0 %", inEnglish({"%1 %2 100% %0 %", {asTheyAre("a")}}));
}

TEST(WordsTest, TextAndItsArgumentsAreTranslated)
{
    const auto translator = [](std::string_view english) {
        return english == "Only with %1" ? std::string("Nur mit %1") : "Box";
    };
    EXPECT_EQ("Nur mit Box", inLanguage({"Only with %1", {Words{"Document box"}}}, translator));
}

TEST(WordsTest, WordsAsTheyAreAreNeitherTranslatedNorSearched)
{
    const auto translator = [](std::string_view) { return std::string("%1"); };
    EXPECT_EQ("%1 x", inLanguage({"anything", {asTheyAre("%1 x")}}, translator));
}

TEST(WordsTest, WhatIsNoUTF8IsAQuestionMark)
{
    EXPECT_EQ("K?ln", inEnglish(asTheyAre("K\xF6ln")));
}

TEST(WordsTest, AllWordsHaveSentencesTitlesLabelsAndChoicesEachOnce)
{
    const auto all = Model::allWords();
    EXPECT_THAT(all, testing::IsSupersetOf({"Must be a number", "Who prints", "Department code",
                                            "As wide as the page"}));
    EXPECT_THAT(all, Not(Contains("")));
    EXPECT_EQ(all.size(), std::set(all.begin(), all.end()).size());
}

} // namespace
