#include "postscriptRules.h"

#include <gtest/gtest.h>

namespace {

constexpr char kSetting[] = "<< /KMRPrivate (DSSC PRINT MEDIA=THICK) >> KMRsetpagedevice";

} // namespace

// postscriptFromPJLCode

TEST(PostscriptFromPJLCodeTest, SettingBehindThePrefixTakesItsPlaceInTheCall)
{
    EXPECT_EQ(kSetting, postscriptFromPJLCode("@PJL COMMENT DSSC PRINT MEDIA=THICK\r\n"));
}

TEST(PostscriptFromPJLCodeTest, WhiteSpaceAndLineEndsAroundTheCodeDoNotCount)
{
    EXPECT_EQ(kSetting, postscriptFromPJLCode("@PJL COMMENT DSSC PRINT MEDIA=THICK"));
    EXPECT_EQ(kSetting,
              postscriptFromPJLCode("\r\n\r\n \t@PJL COMMENT DSSC PRINT MEDIA=THICK \t\n\v\f\r\n"));
    // No-break space, next line, line separator, ideographic space.
    EXPECT_EQ(kSetting,
              postscriptFromPJLCode("\u00a0\u0085@PJL COMMENT DSSC PRINT MEDIA=THICK\u2028\u3000"));
}

TEST(PostscriptFromPJLCodeTest, WhiteSpaceInsideStays)
{
    EXPECT_EQ("<< /KMRPrivate (DSSC PRINT   A =\t1  B) >> KMRsetpagedevice",
              postscriptFromPJLCode("@PJL COMMENT DSSC PRINT   A =\t1  B\r\n"));
}

TEST(PostscriptFromPJLCodeTest, OtherCodesSayNoSetting)
{
    for (const char *code :
         {"", "\r\n", "@PJL COMMENT DSSC PRINTER MEDIA=THICK\r\n", "@PJL SET MEDIA=THICK\r\n",
          "@pjl comment dssc print MEDIA=THICK\r\n", "@PJL COMMENT  DSSC PRINT MEDIA=THICK\r\n",
          "@PJL COMMENT DSSC PRINT\tMEDIA=THICK\r\n", "x@PJL COMMENT DSSC PRINT MEDIA=THICK\r\n",
          "<< /MediaType (Thick) >> setpagedevice"})
        EXPECT_EQ(std::nullopt, postscriptFromPJLCode(code)) << code;
}

TEST(PostscriptFromPJLCodeTest, BarePrefixLosesItsBlankAndSaysNoSetting)
{
    EXPECT_EQ(std::nullopt, postscriptFromPJLCode("@PJL COMMENT DSSC PRINT"));
    EXPECT_EQ(std::nullopt, postscriptFromPJLCode("@PJL COMMENT DSSC PRINT \r\n"));
}

TEST(PostscriptFromPJLCodeTest, LinesBehindTheFirstAreCarriedAlongWithTheirLineEnds)
{
    EXPECT_EQ(
        "<< /KMRPrivate (DSSC PRINT A=1\r\n@PJL COMMENT DSSC PRINT B=2) >> KMRsetpagedevice",
        postscriptFromPJLCode("@PJL COMMENT DSSC PRINT A=1\r\n@PJL COMMENT DSSC PRINT B=2\r\n"));
}

TEST(PostscriptFromPJLCodeTest, SettingOnALaterLineIsNotLookedFor)
{
    EXPECT_EQ(std::nullopt,
              postscriptFromPJLCode("@PJL SET A=1\r\n@PJL COMMENT DSSC PRINT B=2\r\n"));
}

TEST(PostscriptFromPJLCodeTest, NothingIsEscapedAndPercentSignsMeanNothing)
{
    EXPECT_EQ("<< /KMRPrivate (DSSC PRINT A=(1\\)%@%n \u00fc) >> KMRsetpagedevice",
              postscriptFromPJLCode("@PJL COMMENT DSSC PRINT A=(1\\)%@%n \u00fc"));
}

// postscriptForDuplexSetting

TEST(PostscriptForDuplexSettingTest, EachSettingHasItsLine)
{
    EXPECT_EQ("<< /Duplex false /Tumble false >> KMRsetpagedevice\n",
              postscriptForDuplexSetting("None"));
    EXPECT_EQ("<< /Duplex true /Tumble false >> KMRsetpagedevice\n",
              postscriptForDuplexSetting("DuplexNoTumble"));
    EXPECT_EQ("<< /Duplex true /Tumble true >> KMRsetpagedevice\n",
              postscriptForDuplexSetting("DuplexTumble"));
}

TEST(PostscriptForDuplexSettingTest, AnythingElseHasNone)
{
    for (const char *setting : {"", "none", "duplexnotumble", "DUPLEXTUMBLE", "None ", "True"})
        EXPECT_EQ(std::nullopt, postscriptForDuplexSetting(setting)) << setting;
}
