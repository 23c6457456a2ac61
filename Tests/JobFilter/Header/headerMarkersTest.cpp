#include "headerMarkers.h"

#include "CapturedErrors.h"
#include "KLPrintOptions.h"
#include "QueueTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr char kUserLine[] = "@PJL COMMENT DSSC PRINT PRINTMODE=NORMAL\r\n";

class headerMarkersTest : public Support::QueueTest {
protected:
    headerMarkersTest() { usePPD(""); }

    static std::vector<std::string_view> missing(const std::string &header,
                                                 const std::string &optionString)
    {
        return missingMarkers(header, KLPrintOptions(optionString));
    }

    /// What is logged about a header without markers for a job with a department code; "" for
    /// nothing.
    static std::string logged()
    {
        const KLPrintOptions options("com.kalmira.pde.print-mode-ovm.departmentCode=4711");
        Support::CapturedErrors errors;
        logMissingMarkers(kUserLine, options);
        return errors.nextWrite();
    }
};

} // namespace

TEST_F(headerMarkersTest, AMarkerBeginsASettingWhateverFollows)
{
    EXPECT_TRUE(isMarkerLine("@PJL COMMENT DSSC PRINT PRINTMODE=HOLD\r\n", kPrintModeMarker));
    EXPECT_TRUE(isMarkerLine("@PJL COMMENT DSSC PRINT PRINTMODE=", kPrintModeMarker));
    EXPECT_FALSE(isMarkerLine("@PJL COMMENT DSSC PRINT printmode=HOLD\r\n", kPrintModeMarker));
    EXPECT_FALSE(isMarkerLine("PRINTMODE=HOLD\r\n", kPrintModeMarker));
    EXPECT_FALSE(isMarkerLine("", kPrintModeMarker));
}

TEST_F(headerMarkersTest, EveryJobNeedsTheOneOfTheUser)
{
    EXPECT_THAT(missing("", ""), ElementsAre(kPrintModeMarker));
    EXPECT_THAT(missing("\033%-12345X@PJL\n@PJL JOB NAME = \"t\"\n", ""),
                ElementsAre(kPrintModeMarker));
    EXPECT_THAT(missing(std::string("@PJL\n") + kUserLine + "@PJL X\n", ""), IsEmpty());
    EXPECT_THAT(missing("@PJL COMMENT DSSC PRINT PRINTMODE=NORMAL", ""), IsEmpty());
}

TEST_F(headerMarkersTest, ADepartmentCodeNeedsItsOwn)
{
    const std::string code = "com.kalmira.pde.print-mode-ovm.departmentCode=4711";
    EXPECT_THAT(missing(kUserLine, code), ElementsAre(kAccessCodeMarker));
    EXPECT_THAT(missing(kUserLine + std::string("@PJL COMMENT DSSC PRINT ACCESSCODE=\r\n"), code),
                IsEmpty());
}

TEST_F(headerMarkersTest, ColoursNeedTheirs)
{
    EXPECT_THAT(missing(kUserLine, "AP_ColorMatchingMode=AP_VendorColorMatching"),
                ElementsAre(kCollateMarker));
    EXPECT_THAT(missing(kUserLine, "AP_ColorMatchingMode=Other"), IsEmpty());
    EXPECT_THAT(missing(kUserLine, "com.kalmira.pde.q5.color-profile=file:///x"),
                ElementsAre(kCollateMarker));
    EXPECT_THAT(missing(kUserLine, "com.apple.print.PrintSettings.PMColorMatchingMode..n.=0"),
                ElementsAre(kCollateMarker));
    EXPECT_THAT(missing(kUserLine, "com.kalmira.pde.advancedcolorsettings.mode=Standard"),
                ElementsAre(kAdvancedColorMarker));
    EXPECT_THAT(missing(kUserLine, "com.kalmira.pde.advancedcolorsettings.rgb-source=x"),
                ElementsAre(kAdvancedColorMarker));
}

TEST_F(headerMarkersTest, OnlyAPPDWithLinesOfOursIsTold)
{
    EXPECT_EQ("", logged());
    usePPD("*KLPinnedUser: False\n");
    EXPECT_EQ("DEBUG: The job needs a header line that begins with the marker ACCESSCODE=, and the "
              "PPD gives none\n",
              logged());
}
