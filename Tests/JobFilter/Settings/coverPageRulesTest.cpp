#include "coverPageRules.h"

#include <gtest/gtest.h>

namespace {

constexpr char kDuplexOff[] = "<< /Duplex false /Tumble false >> KMRsetpagedevice\n";

CoverPage backCover()
{
    return {"Back", "Lower", "Thick", "NoPrint", "media code", "source code", ""};
}

} // namespace

// coverPagePostScript

TEST(CoverPagePostScriptTest, CodesAndAdditionStandInTheProtectedForm)
{
    CoverPage cover = backCover();
    cover.addition = "addition\n";
    EXPECT_EQ("[{\n"
              "%%BeginFeature: *BackCoverPage Lower-Thick-NoPrint\n"
              "media code\n"
              "source code\n"
              "addition\n"
              "%%EndFeature\n"
              "} stopped cleartomark\n",
              coverPagePostScript(cover));
}

TEST(CoverPagePostScriptTest, MissingMediaCodeHasASubstituteAndAnEmptyLineBehindIt)
{
    CoverPage cover = backCover();
    cover.mediaTypeCode = std::nullopt;
    EXPECT_EQ("[{\n"
              "%%BeginFeature: *BackCoverPage Lower-Thick-NoPrint\n"
              "<< /MediaType (null) >> KMRsetpagedevice\n"
              "\n"
              "source code\n"
              "%%EndFeature\n"
              "} stopped cleartomark\n",
              coverPagePostScript(cover));
}

TEST(CoverPagePostScriptTest, MissingSourceCodeIsWrittenAsNull)
{
    CoverPage cover = backCover();
    cover.sourceCode = std::nullopt;
    EXPECT_EQ("[{\n"
              "%%BeginFeature: *BackCoverPage Lower-Thick-NoPrint\n"
              "media code\n"
              "(null)\n"
              "%%EndFeature\n"
              "} stopped cleartomark\n",
              coverPagePostScript(cover));
}

TEST(CoverPagePostScriptTest, EmptyCodesAreEmptyLinesAndPercentSignsMeanNothing)
{
    EXPECT_EQ("[{\n"
              "%%BeginFeature: *FrontCoverPage %@-%n-%%\n"
              "\n"
              "\n"
              "%%EndFeature\n"
              "} stopped cleartomark\n",
              coverPagePostScript({"Front", "%@", "%n", "%%", "", "", ""}));
}

// frontCover

TEST(FrontCoverTest, BlankSheetComesBeforePageOne)
{
    EXPECT_EQ(std::string(kDuplexOff) + "KMRshowpage\n", frontCover("NoPrint", false).addition);
    EXPECT_EQ("KMRshowpage\n", frontCover("NoPrint", true).addition);
    EXPECT_EQ(1, frontCover("NoPrint", false).restorationPage);
    EXPECT_EQ(1, frontCover("NoPrint", true).restorationPage);
}

TEST(FrontCoverTest, SheetPrintedOnceHoldsPageOne)
{
    EXPECT_EQ(kDuplexOff, frontCover("Print1", false).addition);
    EXPECT_EQ("", frontCover("Print1", true).addition);
    EXPECT_EQ(2, frontCover("Print1", false).restorationPage);
    EXPECT_EQ(2, frontCover("Print1", true).restorationPage);
}

TEST(FrontCoverTest, SheetPrintedLikeTheJobHoldsOneOrTwoPages)
{
    EXPECT_EQ("", frontCover("Print", false).addition);
    EXPECT_EQ("", frontCover("Print", true).addition);
    EXPECT_EQ(3, frontCover("Print", false).restorationPage);
    EXPECT_EQ(2, frontCover("Print", true).restorationPage);
}

TEST(FrontCoverTest, UnknownStyleAddsNothingAndNamesNoPage)
{
    for (const char *style : {"", "noprint", "PRINT", "Print2", "Print1 "}) {
        for (const bool oneSided : {false, true}) {
            EXPECT_EQ("", frontCover(style, oneSided).addition) << style;
            EXPECT_EQ(std::nullopt, frontCover(style, oneSided).restorationPage) << style;
        }
    }
}
