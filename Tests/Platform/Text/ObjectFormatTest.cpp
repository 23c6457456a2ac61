#include "ObjectFormat.h"

#include <clocale>
#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>

using Platform::objectFormat;

TEST(ObjectFormatTest, InsertsATextWhole)
{
    EXPECT_EQ("USERLOGIN=50%s%@", objectFormat("USERLOGIN=%@", "50%s%@"));
}

TEST(ObjectFormatTest, KeepsNulBytesOfATextAndOfTheFormat)
{
    const std::string text("a\0b", 3);
    EXPECT_EQ(std::string("<a\0b>", 5), objectFormat("<%@>", text));
    EXPECT_EQ(std::string("x\0y", 3), objectFormat(std::string_view("x\0y", 3)));
}

TEST(ObjectFormatTest, PrintsAnAbsentObjectAsNullInParentheses)
{
    EXPECT_EQ("DEBUG: (null): (null)",
              objectFormat("DEBUG: %@: %@", std::optional<std::string>(), std::nullopt));
    EXPECT_EQ("(null)", objectFormat("%@", std::optional<KLValue>()));
}

TEST(ObjectFormatTest, PrintsEveryKindOfValue)
{
    EXPECT_EQ("A4", objectFormat("%@", KLValue("A4")));
    EXPECT_EQ("-42", objectFormat("%@", KLValue(std::int64_t{-42})));
    EXPECT_EQ("1", objectFormat("%@", KLValue(true)));
    EXPECT_EQ("0", objectFormat("%@", std::optional<KLValue>(false)));
    EXPECT_EQ("-9223372036854775808",
              Platform::description(KLValue(std::numeric_limits<std::int64_t>::min())));
}

TEST(ObjectFormatTest, TakesArgumentsByPosition)
{
    EXPECT_EQ(" { /OldEndPage currentpagedevice begin /EndPage load end def }",
              objectFormat(" { /Old%1$@ currentpagedevice begin /%1$@ load end def }", "EndPage"));
    EXPECT_EQ("b a", objectFormat("%2$@ %1$@", "a", "b"));
}

TEST(ObjectFormatTest, PrintsNumbersAsPrintfDoes)
{
    EXPECT_EQ("Found 2 records", objectFormat("Found %lu records", 2UL));
    // As many bits as the machine has.
    constexpr auto kLargest = std::numeric_limits<unsigned long>::max();
    EXPECT_EQ(std::to_string(kLargest), objectFormat("%lu", kLargest));
    EXPECT_EQ("-7", objectFormat("%d", -7));
    EXPECT_EQ("-45.000000", objectFormat("%f", -45.0));
    EXPECT_EQ("-0.000000", objectFormat("%f", -0.0));
    EXPECT_EQ("0.50", objectFormat("%.2f", 0.5));
    EXPECT_EQ("text", objectFormat("%s", "text"));
}

TEST(ObjectFormatTest, WritesAPercentSignForTwo)
{
    EXPECT_EQ("%%BeginFeature: 100% @", objectFormat("%%%%BeginFeature: %d%% @", 100));
}

TEST(ObjectFormatTest, LeavesAnAtSignBehindTwoPercentSignsAlone)
{
    EXPECT_EQ("%@", objectFormat("%%@"));
}

TEST(ObjectFormatTest, IgnoresSurplusArguments)
{
    EXPECT_EQ("a", objectFormat("%@", "a", "b"));
}

TEST(ObjectFormatTest, RejectsAFormatThatAsksForTooMuch)
{
    EXPECT_THROW(objectFormat("%@ %@", "one"), std::invalid_argument);
    EXPECT_THROW(objectFormat("%3$@", "one"), std::invalid_argument);
    EXPECT_THROW(objectFormat("%d", "text"), std::invalid_argument);
    EXPECT_THROW(objectFormat("%@", 1), std::invalid_argument);
    EXPECT_THROW(objectFormat("100%"), std::invalid_argument);
}

TEST(ObjectFormatTest, DoesNotFollowTheLocale)
{
    // A locale with a decimal comma where the system has one; the C locale proves nothing less.
    for (const char *name : {"de_DE.UTF-8", "fr_FR.UTF-8"})
        std::setlocale(LC_ALL, name);
    EXPECT_EQ("0.500000", objectFormat("%f", 0.5));
    EXPECT_EQ("1234567", objectFormat("%d", 1234567));
    std::setlocale(LC_ALL, "C");
}
