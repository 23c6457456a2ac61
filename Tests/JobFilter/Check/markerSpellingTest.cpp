#include "markerSpelling.h"

#include <gtest/gtest.h>

namespace {

constexpr char kPrintMode[] = "@PJL COMMENT DSSC PRINT PRINTMODE=";

} // namespace

TEST(markerSpellingTest, AMarkerIsNoSlipWhateverFollows)
{
    EXPECT_EQ(std::nullopt, intendedMarkerLine("@PJL COMMENT DSSC PRINT PRINTMODE=HOLD\r"));
    EXPECT_EQ(std::nullopt, intendedMarkerLine("@PJL COMMENT DSSC PRINT ACCESSCODE=\r"));
}

TEST(markerSpellingTest, BlanksAndLetterCaseAreSlips)
{
    EXPECT_EQ(kPrintMode, intendedMarkerLine("@PJL COMMENT DSSC  PRINT PRINTMODE=HOLD"));
    EXPECT_EQ(kPrintMode, intendedMarkerLine("@pjl comment dssc print printmode=hold"));
    EXPECT_EQ(kPrintMode, intendedMarkerLine("@PJL COMMENT DSSC PRINTPRINTMODE=HOLD"));
    EXPECT_EQ(kPrintMode, intendedMarkerLine("@PJL\tCOMMENT DSSC PRINT PRINTMODE =HOLD"));
}

TEST(markerSpellingTest, TwoWrongLettersAreASlipAndThreeAreNot)
{
    EXPECT_EQ(kPrintMode, intendedMarkerLine("@PJL COMMENT DSSC PRINT PRINTMODD=HOLD"));
    EXPECT_EQ(kPrintMode, intendedMarkerLine("@PJL COMMENT DSSC PRINT PRINMOD=HOLD"));
    EXPECT_EQ(std::nullopt, intendedMarkerLine("@PJL COMMENT DSSC PRINT PRINTWORK=HOLD"));
    EXPECT_EQ("@PJL COMMENT DSSC PRINT DOCUMENTTYPE=ADVANCED",
              intendedMarkerLine("@PJL COMMENT DSSC PRINT DOCUMENTTYPE=ADVANCE"));
}

TEST(markerSpellingTest, OtherSettingsAreNoSlips)
{
    EXPECT_EQ(std::nullopt, intendedMarkerLine("@PJL COMMENT DSSC PRINT DOCUMENTTYPE=GENERAL"));
    EXPECT_EQ(std::nullopt, intendedMarkerLine("@PJL COMMENT DSSC PRINT COLORMODE=BW"));
    EXPECT_EQ(std::nullopt, intendedMarkerLine("@PJL COMMENT DSSC PRINT STAPLE=OFF"));
    EXPECT_EQ(std::nullopt, intendedMarkerLine("@PJL SET PRINTMODE=HOLD"));
    EXPECT_EQ(std::nullopt, intendedMarkerLine("PRINTMODE=HOLD"));
    EXPECT_EQ(std::nullopt, intendedMarkerLine(""));
}
