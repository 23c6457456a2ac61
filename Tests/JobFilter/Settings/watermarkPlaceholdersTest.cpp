#include "watermarkPlaceholders.h"

#include "Environment.h"

#include <ctime>
#include <gtest/gtest.h>
#include <stdexcept>

namespace {

/// 5 March 2026, 23:04:05 UTC.
constexpr std::time_t kEvening = 1'772'751'845;

JobValues job()
{
    return {.user = "anna", .title = "Budget", .jobId = "7", .printed = kEvening};
}

class watermarkPlaceholdersTest : public testing::Test {
protected:
    watermarkPlaceholdersTest() { tzset(); }

    const Support::ScopedEnvironment _zone{"TZ", "UTC0"};
};

TEST_F(watermarkPlaceholdersTest, ValuesTakeThePlaceOfTheirNames)
{
    EXPECT_EQ("Budget by anna, job 7", withJobValues("[title] by [user], job [job-id]", job()));
    EXPECT_EQ("annaanna", withJobValues("[user][user]", job()));
    EXPECT_EQ("", withJobValues("", job()));
}

TEST_F(watermarkPlaceholdersTest, DateAndTimeAreThoseOfTheHost)
{
    EXPECT_EQ("2026-03-05 23:04", withJobValues("[date] [time]", job()));
    const Support::ScopedEnvironment zone("TZ", "CET-1");
    tzset();
    EXPECT_EQ("2026-03-06 00:04", withJobValues("[date] [time]", job()));
}

TEST_F(watermarkPlaceholdersTest, WhatIsNotTheFiltersStays)
{
    for (const char *text : {"Page [page] of [pages]", "[User]", "[ user ]", "[user", "user]", "[]",
                             "[", "]", "[[", "]]", "[[user]]", "[password]", "Σχέδιο"})
        EXPECT_EQ(text, withJobValues(text, job()));
}

TEST_F(watermarkPlaceholdersTest, AValueMayStandInsideDoubledBrackets)
{
    EXPECT_EQ("[[anna]]", withJobValues("[[[user]]]", job()));
    EXPECT_EQ("[[[[user]]", withJobValues("[[[[user]]", job()));
}

TEST_F(watermarkPlaceholdersTest, BracketsOfAValueAreDoubledAndNothingInItIsReplaced)
{
    JobValues odd = job();
    odd.title = "[user] ][";
    EXPECT_EQ("[[user]] ]][[", withJobValues("[title]", odd));
}

TEST_F(watermarkPlaceholdersTest, BytesThatAreNoTextAreQuestionMarks)
{
    JobValues odd = job();
    odd.title = "caf\xE9 \xC3\xA9";
    EXPECT_EQ("caf? \xC3\xA9", withJobValues("[title]", odd));
}

TEST_F(watermarkPlaceholdersTest, AnEndlessTextIsRefused)
{
    JobValues odd = job();
    odd.title = std::string(1000, 'x');
    std::string text;
    for (int i = 0; i < 100; ++i)
        text += "[title]";
    EXPECT_EQ(100'000U, withJobValues(text, odd).size());
    EXPECT_THROW(withJobValues(text + "[title]", odd), std::length_error);
}

} // namespace
