#include "PostScriptCommands.h"

#include "ToolkitError.h"
#include "ToolkitPostScript.h"
#include "Watermarks.h"

#include <gtest/gtest.h>

using Support::kBlue;
using Support::kRed;
using Support::RenderedPage;
using Support::Rendering;
using Support::renderText;

namespace {

constexpr double kClose = 1; // point

/// Red, in the middle of a page of 200 by 300 points.
Watermark draft(bool above = true)
{
    return {.above = above,
            .font = "Helvetica",
            .angle = 30,
            .colour = {1, 0, 0},
            .position = {50, 120},
            .size = 24,
            .text = "Draft"};
}

void expectWatermark(const RenderedPage &page, const Watermark &watermark)
{
    const auto found = page.boxOf(kRed);
    ASSERT_TRUE(found) << "no watermark";
    const Support::Box wanted = Support::inkBoxOf(watermark);
    EXPECT_NEAR((wanted.left + wanted.right) / 2, (found->left + found->right) / 2, kClose);
    EXPECT_NEAR((wanted.bottom + wanted.top) / 2, (found->bottom + found->top) / 2, kClose);
    EXPECT_NEAR(wanted.right - wanted.left, found->right - found->left, 2);
    EXPECT_NEAR(wanted.top - wanted.bottom, found->top - found->bottom, 2);
}

Rendering rendered(std::string_view document)
{
    return renderText(document, {.resolution = 144});
}

/// The watermark is on every page, and nothing else has changed.
void expectOnEveryPage(const PostScriptSample &sample, const Watermark &watermark)
{
    const Rendering before = rendered(sample.text());
    const Rendering after = rendered(processed(sample.text(), watermark));
    EXPECT_EQ(before.log, after.log);
    ASSERT_EQ(before.pages.size(), after.pages.size());
    for (std::size_t page = 0; page < after.pages.size(); ++page) {
        SCOPED_TRACE("page " + std::to_string(page + 1));
        expectWatermark(after.pages[page], watermark);
        // Also below: by its transfer function, a page may have another ground than white.
        EXPECT_EQ(0U, Support::changesBesideText(before.pages[page], after.pages[page], true));
    }
}

const std::string kBlueBox = "0 0 1 setrgbcolor 20 20 160 100 rectfill\n";

void erase(std::string &text, std::string_view begin, std::string_view end = "")
{
    const auto at = text.find(begin);
    if (at != std::string::npos)
        text.erase(at, text.find(end, at + begin.size()) + end.size() - at);
}

/// The document that a watermark was put on once.
std::string withoutWatermark(std::string output)
{
    erase(output, "%%BeginResource: procset KLToolkitWatermark", "%%EndResource\n");
    while (output.find("\nKLToolkitWatermarkPage") != std::string::npos)
        erase(output, "KLToolkitWatermarkPage", ".1\n");
    return output;
}

} // namespace

// --- Where it stands -----------------------------------------------------------------------------

namespace {

struct Case {
    const char *name;
    const char *text;
    bool above;
};

void PrintTo(const Case &example, std::ostream *stream)
{
    *stream << example.name;
}

constexpr double kBarLeft = 68; ///< of a blue bar across the middle of the text
constexpr double kBarRight = 78;

void expectBarIs(bool above, const RenderedPage &page)
{
    bool isCrossed = false;
    for (double x = kBarLeft + 1; x < kBarRight - 1; x += 0.5) {
        for (double y = 0.25; y < page.height(); y += 0.5) {
            const auto colour = page.colourAt({x, y});
            isCrossed = isCrossed || colour == kRed;
            ASSERT_TRUE(colour == kRed || colour == kBlue) << "at " << x << ", " << y;
        }
    }
    EXPECT_EQ(above, isCrossed);
}

} // namespace

class PostScriptWatermarkScriptTest : public testing::TestWithParam<Case> {};

/// On a portrait page, on a landscape page and on one that its setup turns.
TEST_P(PostScriptWatermarkScriptTest, StandsWhereItBelongs)
{
    Watermark watermark = draft(GetParam().above);
    watermark.text = GetParam().text;
    const std::string bar = "0 0 1 setrgbcolor 68 0 10 300 rectfill showpage\n";
    const PostScriptSample sample{
        .setup = "",
        .pages = {
            "%%BeginPageSetup\n<< /PageSize [200 300] >> setpagedevice\n%%EndPageSetup\n" + bar,
            "%%BeginPageSetup\n<< /PageSize [300 200] >> setpagedevice\n%%EndPageSetup\n" + bar,
            "%%BeginPageSetup\n<< /PageSize [200 300] >> setpagedevice\n"
            "90 rotate 0 -200 translate 0.5 0.5 scale\n%%EndPageSetup\n"
            "0 0 1 setrgbcolor 0 244 600 20 rectfill showpage\n"}};
    expectOnEveryPage(sample, watermark);
    for (const RenderedPage &page : rendered(processed(sample.text(), watermark)).pages)
        expectBarIs(watermark.above, page);
}

INSTANTIATE_TEST_SUITE_P(
    Scripts, PostScriptWatermarkScriptTest,
    testing::Values(Case{"LatinAbove", "Draft (1)", true}, Case{"LatinBelow", "Draft (1)", false},
                    Case{"GreekAbove", "Σχέδιο", true}, Case{"GreekBelow", "Σχέδιο", false},
                    Case{"ArabicAbove", "مسودة", true}, Case{"ArabicBelow", "مسودة", false},
                    Case{"ChineseAbove", "草稿", true}, Case{"ChineseBelow", "草稿", false}),
    [](const auto &example) { return std::string(example.param.name); });

class PostScriptWatermarkAngleTest : public testing::TestWithParam<double> {};

TEST_P(PostScriptWatermarkAngleTest, TurnsAboutTheBoxsCorner)
{
    Watermark watermark = draft();
    watermark.angle = GetParam();
    watermark.position = {100, 150};
    expectOnEveryPage({.pages = {"showpage\n"}}, watermark);
}

INSTANTIATE_TEST_SUITE_P(Angles, PostScriptWatermarkAngleTest,
                         testing::Values(0.0, -0.0, 45.0, 90.0, -45.0, 180.0, 270.0));

TEST(PostScriptWatermarkTest, EveryColourModelIsUnderstood)
{
    const auto colour = [](std::vector<double> components) {
        Watermark watermark = draft();
        watermark.colour = std::move(components);
        const auto page =
            rendered(processed(PostScriptSample{.pages = {"showpage\n"}}.text(), watermark));
        return page.pages.at(0);
    };
    EXPECT_TRUE(colour({0}).boxOf(Support::kBlack));
    EXPECT_TRUE(colour({0, 0, 1}).boxOf(kBlue));
    EXPECT_TRUE(colour({0, 1, 1, 0}).boxOf(kRed));
}

TEST(PostScriptWatermarkTest, TextWithoutInkDrawsNothing)
{
    Watermark watermark = draft();
    watermark.text = " ";
    const auto result =
        rendered(processed(PostScriptSample{.pages = {"showpage\n"}}.text(), watermark));
    EXPECT_EQ(0, result.pages.at(0).coverage());
}

TEST(PostScriptWatermarkTest, LongTextIsDrawnWhole)
{
    Watermark watermark = draft();
    watermark.size = 1;
    watermark.angle = 0;
    watermark.position = {2, 100};
    for (int word = 0; word < 60; ++word)
        watermark.text += " Draft";
    expectOnEveryPage({.pages = {"showpage\n"}}, watermark);
}

// --- Landscape pages on portrait paper -----------------------------------------------------------

namespace {

/// Out of the watermark's way, however that lies.
const std::string kCornerBox = "0 0 1 setrgbcolor 5 5 20 20 rectfill\n";

enum class Read { Upright, Turned };

/// @param read  whether the paper, 200 by 300 points, has to be turned clockwise for reading
void expectWatermark(const RenderedPage &paper, const Watermark &watermark, Read read)
{
    if (read == Read::Upright)
        return expectWatermark(paper, watermark);
    const auto found = paper.boxOf(kRed);
    ASSERT_TRUE(found) << "no watermark";
    const Support::Box wanted = Support::inkBoxOf(Support::onLandscapePage(watermark, 200, 300));
    EXPECT_NEAR(200 - wanted.top, found->left, kClose);
    EXPECT_NEAR(200 - wanted.bottom, found->right, kClose);
    EXPECT_NEAR(wanted.left, found->bottom, kClose);
    EXPECT_NEAR(wanted.right, found->top, kClose);
}

/// A page of our sample, which says so and asks for its paper itself.
std::string page(const std::string &comment, const std::string &paper)
{
    return comment + "%%BeginPageSetup\n<< /PageSize [" + paper +
           "] >> setpagedevice\n%%EndPageSetup\n" + kCornerBox + "showpage\n";
}

const std::string kLandscape = "%%PageOrientation: Landscape\n";
const std::string kPortrait = "%%PageOrientation: Portrait\n";

} // namespace

class PostScriptWatermarkTurnTest : public testing::TestWithParam<bool> {
protected:
    static Watermark watermark()
    {
        Watermark watermark = draft(GetParam());
        watermark.position = {130, 60};
        watermark.angle = 10;
        return watermark;
    }

    static void expectReads(const std::string &document, const std::vector<Read> &reads)
    {
        const auto result = rendered(processed(document, watermark()));
        ASSERT_EQ(reads.size(), result.pages.size());
        for (std::size_t index = 0; index < reads.size(); ++index) {
            SCOPED_TRACE("page " + std::to_string(index + 1));
            expectWatermark(result.pages[index], watermark(), reads[index]);
        }
    }
};

TEST_P(PostScriptWatermarkTurnTest, LandscapePagesHaveItAlongTheirReadingDirection)
{
    const PostScriptSample sample{.setup = "",
                                  .pages = {page("", "200 300"), page(kLandscape, "200 300"),
                                            page(kPortrait, "200 300"),
                                            page(kLandscape, "300 200")}};
    expectReads(sample.text(), {Read::Upright, Read::Turned, Read::Upright, Read::Upright});
}

// As the filter sends it, which knows the size of upright pages only.
TEST(PostScriptWatermarkTest, PositionAtTheTopOfAnUprightPageIsAtTheTopOfALandscapeOne)
{
    const PostScriptSample sample{.setup = "", .pages = {page(kLandscape, "200 300")}};
    Watermark watermark = draft();
    watermark.angle = 0;
    watermark.size = 20;
    watermark.position = {70, 260}; // more than a landscape page is high
    const auto result = rendered(processed(sample.text(), watermark));
    ASSERT_EQ(1U, result.pages.size());
    const auto found = result.pages[0].boxOf(kRed);
    ASSERT_TRUE(found) << "no watermark";
    EXPECT_LT(found->right, 40) << "the left edge of the paper is the top of the page";
}

TEST_P(PostScriptWatermarkTurnTest, OrientationOfTheDocumentCountsForPagesThatSayNothing)
{
    const PostScriptSample sample{
        .pages = {kCornerBox + "showpage\n", kPortrait + kCornerBox + "showpage\n"}};
    std::string text = sample.text();
    text.insert(text.find("%%EndComments"), "%%Orientation: Landscape\n");
    expectReads(text, {Read::Turned, Read::Upright});
}

TEST_P(PostScriptWatermarkTurnTest, WhatADocumentSavesAndBringsBackTurnsNothing)
{
    const PostScriptSample sample{
        .setup = "<< /PageSize [200 300] >> setpagedevice /level save def\n",
        .pages = {kLandscape + "level restore /level save def\n" + kCornerBox + "showpage\n",
                  kLandscape + "level restore save " + kCornerBox + "showpage restore\n"}};
    expectReads(sample.text(), {Read::Turned, Read::Turned});
}

INSTANTIATE_TEST_SUITE_P(AboveAndBelow, PostScriptWatermarkTurnTest, testing::Bool(),
                         [](const auto &example) { return example.param ? "Above" : "Below"; });

TEST(PostScriptWatermarkTest, LandscapePageKeepsItsWatermarkInABooklet)
{
    PostScriptSample sample{.pages = {kLandscape + "showpage\n", "showpage\n"}};
    Watermark watermark = draft();
    watermark.angle = 0;
    const Booklet booklet = {"A4", 0, 0, Ordering::LeftToRight};
    const auto sheets = rendered(processed(processed(sample.text(), watermark), booklet));
    ASSERT_EQ(2U, sheets.pages.size());
    // Page 1 is alone on its side, which is read turned; page 2 on the other.
    const auto isWide = [](const RenderedPage &sheet) {
        const auto box = sheet.boxOf(kRed);
        return box && box->right - box->left > box->top - box->bottom;
    };
    EXPECT_TRUE(isWide(sheets.pages[0]));
    EXPECT_FALSE(isWide(sheets.pages[1]));
    EXPECT_TRUE(sheets.pages[1].boxOf(kRed));
}

TEST(PostScriptWatermarkTest, WithoutLandscapePagesTheCommentsChangeNothing)
{
    std::string text = PostScriptSample{.pages = {kPortrait + "showpage\n"}}.text();
    text.insert(text.find("%%EndComments"), "%%Orientation: Landscape\n");
    EXPECT_EQ(text, withoutWatermark(processed(text, draft())));
    EXPECT_EQ(std::string::npos, processed(text, draft()).find("Turned"));
}

// --- Above and below -----------------------------------------------------------------------------

TEST(PostScriptWatermarkTest, AboveCoversThePagesMarks)
{
    const PostScriptSample sample{.pages = {"0 0 1 setrgbcolor 0 0 200 300 rectfill showpage\n"}};
    expectOnEveryPage(sample, draft());
}

TEST(PostScriptWatermarkTest, BelowIsCoveredByThePagesMarks)
{
    const PostScriptSample whole{.pages = {"0 0 1 setrgbcolor 0 0 200 300 rectfill showpage\n"}};
    const auto covered = rendered(processed(whole.text(), draft(false)));
    EXPECT_EQ(1, covered.pages.at(0).shareOf(kBlue));

    const PostScriptSample part{.pages = {"0 0 1 setrgbcolor 0 0 200 140 rectfill showpage\n"}};
    const auto half = rendered(processed(part.text(), draft(false)));
    EXPECT_NEAR(140, half.pages.at(0).boxOf(kRed)->bottom, kClose);
    EXPECT_NEAR(Support::inkBoxOf(draft()).top, half.pages.at(0).boxOf(kRed)->top, kClose);
}

// --- Whatever a page does ------------------------------------------------------------------------

namespace {

struct Page {
    const char *name;
    std::string prolog;
    std::string page;
};

void PrintTo(const Page &page, std::ostream *stream)
{
    *stream << page.name;
}

/// "/EP { //showpage } def" with the procedure as a binary object sequence: its head, an executable
/// array of one element, and that element, a name whose value is taken at once.
const std::string kBinaryProcedure = "1 setobjectformat /EP " +
                                     std::string("\x80\x01\x00\x1c\x89\x00\x00\x01\x00\x00\x00\x08"
                                                 "\x86\x00\x00\x08\x00\x00\x00\x10",
                                                 20) +
                                     "showpage def\n";

} // namespace

class PostScriptWatermarkPageTest : public testing::TestWithParam<Page> {
protected:
    static PostScriptSample sample()
    {
        // The marks stand beside the watermark.
        const std::string page = kBlueBox + GetParam().page;
        return {.prolog = GetParam().prolog, .pages = {page, page, page}};
    }
};

TEST_P(PostScriptWatermarkPageTest, KeepsTheWatermarkAbove)
{
    expectOnEveryPage(sample(), draft());
}

TEST_P(PostScriptWatermarkPageTest, KeepsTheWatermarkBelow)
{
    PostScriptSample pages = sample();
    Watermark watermark = draft(false);
    watermark.position = {50, 180};
    expectOnEveryPage(pages, watermark);
}

INSTANTIATE_TEST_SUITE_P(
    Pages, PostScriptWatermarkPageTest,
    testing::Values(
        Page{"Plain", "", "showpage\n"},
        Page{"GraphicsState", "",
             "3 7 translate 40 rotate 9 9 scale 0.3 setgray 100 setflat true setoverprint\n"
             "[5 1] 0 setdash 0 0 moveto 9 9 lineto showpage\n"},
        Page{"Clip", "", "0 0 1 1 rectclip showpage\n"},
        Page{"TransferFunction", "", "{ pop 0.5 } settransfer showpage { } settransfer\n"},
        Page{"SavedStates", "", "gsave gsave 2 2 scale gsave showpage\n"},
        Page{"Operands", "", "1 2 (three) [4] mark showpage\n"},
        Page{"NoOperandsToTake", "", "clear showpage\n"},
        Page{"OpenDictionaries", "", "20 dict begin 20 dict begin showpage\n"},
        Page{
            "RedefinedInADictionary", "",
            "30 dict begin /moveto { pop pop } def /fill { } def /gsave { } def /grestore { } def\n"
            "/exec { } def /true false def /newpath { } def /initgraphics { } def showpage end\n"},
        Page{"RedefinedForGood", "",
             "userdict begin /moveto { pop pop } def /fill { } def /gsave { } def /true false def\n"
             "/newpath { } def /initgraphics { } def /curveto { 6 { pop } repeat } def end\n"
             "showpage\n"},
        Page{"BoundInTheProlog", "/EP { grestore showpage } bind def\n", "gsave EP\n"},
        Page{"LoadedInTheProlog", "/EP /showpage load def\n", "EP\n"},
        Page{"ShownByTheOperatorItself", "/EP { systemdict /showpage get exec } bind def\n",
             "EP\n"},
        Page{"SizeByTheOperatorItself", "/SZ { systemdict begin setpagedevice end } def\n",
             "<< /PageSize [220 320] >> SZ\n"
             "0 0 1 setrgbcolor 20 20 160 100 rectfill showpage\n"},
        Page{"ShownByTheOperatorItselfInThePageOnly", "", "systemdict /showpage get exec\n"},
        Page{"ValueTakenAtOnce", "/EP { //showpage } def\n",
             "//erasepage 0 0 1 setrgbcolor 20 20 160 100 rectfill EP\n"},
        Page{"ValueTakenAtOnceInBinary", kBinaryProcedure,
             "0 0 1 setrgbcolor 20 20 160 100 rectfill EP\n"},
        Page{"SizeTakenAtOnce", "/SZ { //setpagedevice } def\n",
             "<< /PageSize [220 320] >> SZ\n"
             "0 0 1 setrgbcolor 20 20 160 100 rectfill //showpage\n"},
        Page{"ShownAfterRestore", "/EP { level restore showpage } bind def\n",
             "/level save def 0 0 1 1 rectclip EP\n"},
        Page{"RestoredAfterItWasShown", "", "save showpage restore\n"},
        Page{"WhiteOnceMore", "", "erasepage 0 0 1 setrgbcolor 20 20 160 100 rectfill showpage\n"},
        Page{"LateSize", "",
             "<< /PageSize [220 320] >> setpagedevice\n"
             "0 0 1 setrgbcolor 20 20 160 100 rectfill showpage\n"},
        Page{"LateSizeInASavedState", "",
             "save << /PageSize [220 320] >> setpagedevice\n"
             "0 0 1 setrgbcolor 20 20 160 100 rectfill showpage restore\n"},
        Page{"EmbeddedDocument", "",
             "save /showpage { } def\n%%BeginDocument: inner.eps\n%!PS-Adobe-3.0 EPSF-3.0\n"
             "%%Page: 1 1\n0 0 1 setrgbcolor 60 20 160 100 rectfill showpage\n%%Trailer\n%%EOF\n"
             "%%EndDocument\nrestore showpage\n"},
        Page{"DataThatLookLikeAPage", "",
             "%%BeginBinary: 53\ncurrentfile 12 string readstring\n%%Page: 9 9\npop pop\n"
             "%%EndBinary\nshowpage\n"}),
    [](const auto &page) { return std::string(page.param.name); });

TEST(PostScriptWatermarkTest, UnbalancedRestoresDoNoHarm)
{
    // They take back what the setup asked of the device, so that it asks nothing here.
    const std::string page = "grestore grestore " + kBlueBox + "grestore showpage grestore\n";
    Watermark watermark = draft();
    watermark.position = {50, 180};
    for (const bool above : {true, false}) {
        watermark.above = above;
        expectOnEveryPage({.setup = "", .pages = {page, page}}, watermark);
    }
}

TEST(PostScriptWatermarkTest, EverySheetOfAPageHasIt)
{
    const std::string sheet = kBlueBox + "EP\n";
    Watermark watermark = draft();
    watermark.position = {50, 180};
    for (const bool above : {true, false}) {
        watermark.above = above;
        expectOnEveryPage({.prolog = "/EP { gsave 9 9 scale showpage grestore } bind def\n",
                           .pages = {sheet + sheet + sheet, sheet, sheet + "copypage\n" + sheet}},
                          watermark);
    }
}

namespace {

/// Where the watermark and a box over its lower half lie, on each sheet of the only page.
std::vector<RenderedPage> sheetsWithBoxes(const std::string &setup, const std::string &page)
{
    const PostScriptSample sample{.setup = setup, .pages = {page, page}};
    return rendered(processed(sample.text(), draft(false))).pages;
}

const std::string kBoxBelow140 = "0 0 1 setrgbcolor 0 0 200 140 rectfill ";

void expectBeneathTheBox(const RenderedPage &sheet)
{
    EXPECT_NEAR(140, sheet.boxOf(kRed)->bottom, kClose);
    EXPECT_NEAR(Support::inkBoxOf(draft()).top, sheet.boxOf(kRed)->top, kClose);
}

} // namespace

TEST(PostScriptWatermarkTest, LiesBeneathTheMarksOfEverySheetOfAPage)
{
    const std::string size = "<< /PageSize [200 300] >> setpagedevice\n";
    const std::string page = kBoxBelow140 + "showpage " + size + kBoxBelow140 + "showpage save " +
                             kBoxBelow140 + "copypage " + kBoxBelow140 + "showpage restore\n";
    const auto sheets = sheetsWithBoxes(size, page);
    ASSERT_EQ(8U, sheets.size());
    for (const auto &sheet : sheets)
        expectBeneathTheBox(sheet);
}

TEST(PostScriptWatermarkTest, ComesLateWhereTheDocumentTakesPartInShowing)
{
    // Every other page goes on the same sheet as the one before.
    const auto together =
        sheetsWithBoxes("<< /PageSize [200 300] /EndPage { 2 lt exch 2 mod 1 eq and } >> "
                        "setpagedevice\n",
                        kBoxBelow140 + "showpage " + kBoxBelow140 + "showpage\n");
    ASSERT_EQ(2U, together.size());
    for (const auto &sheet : together)
        EXPECT_TRUE(sheet.boxOf(kRed));
    // The document's own mark on each sheet is there before the page's are.
    const auto withMark = sheetsWithBoxes(
        "<< /PageSize [200 300] /BeginPage { pop 0 1 0 setrgbcolor 0 280 200 20 rectfill } >> "
        "setpagedevice\n",
        kBoxBelow140 + "showpage " + kBoxBelow140 + "showpage\n");
    ASSERT_EQ(4U, withMark.size());
    for (const auto &sheet : withMark) {
        EXPECT_TRUE(sheet.boxOf(kRed));
        EXPECT_EQ(Support::kGreen, sheet.colourAt({10, 290}));
    }
    expectBeneathTheBox(withMark[0]);
    expectBeneathTheBox(withMark[2]);
}

TEST(PostScriptWatermarkTest, LeavesNothingBehindThePage)
{
    // A blank sheet that another command puts between the pages stays blank.
    std::string text =
        processed(PostScriptSample{.pages = {"showpage\n", "showpage\n"}}.text(), draft(false));
    for (const char *comment : {"%%Page: 2 2", "%%Trailer"})
        text.insert(text.find(comment), "%%Page: (blank) 9\nsystemdict /showpage get exec\n");
    const auto sheets = rendered(text).pages;
    ASSERT_EQ(4U, sheets.size());
    EXPECT_TRUE(sheets[0].boxOf(kRed));
    EXPECT_EQ(0, sheets[1].coverage());
    EXPECT_TRUE(sheets[2].boxOf(kRed));
    EXPECT_EQ(0, sheets[3].coverage());
}

class PostScriptWatermarkAheadTest : public testing::TestWithParam<const char *> {};

TEST_P(PostScriptWatermarkAheadTest, SheetAheadOfTheFirstPageHasItsWatermark)
{
    const PostScriptSample sample{.prolog = "/ep { showpage } bind def\n",
                                  .setup = kBlueBox + GetParam() + "\n",
                                  .pages = {"showpage\n", "showpage\n"}};
    for (const bool above : {true, false}) {
        Watermark watermark = draft(above);
        watermark.pages = *pageSelectionFromText("first");
        const auto result = rendered(processed(sample.text(), watermark));
        ASSERT_EQ(3U, result.pages.size());
        EXPECT_TRUE(result.pages[0].boxOf(kRed));
        EXPECT_TRUE(result.pages[0].boxOf(kBlue));
        EXPECT_TRUE(result.pages[1].boxOf(kRed));
        EXPECT_FALSE(result.pages[2].boxOf(kRed));
    }
}

INSTANTIATE_TEST_SUITE_P(Ways, PostScriptWatermarkAheadTest,
                         testing::Values("showpage", "copypage erasepage", "ep"),
                         [](const auto &example) { return "Way" + std::to_string(example.index); });

TEST(PostScriptWatermarkTest, BoundingBoxesTellOfTheDocumentsOwnInk)
{
    const std::string boxes = "%%BoundingBox: 20 20 180 120\n%%HiResBoundingBox: 20 20 180 120\n";
    const std::string page = "%%Page: 1 1\n%%PageBoundingBox: 20 20 180 120\n";
    const std::string output =
        processed("%!PS-Adobe-3.0\n" + boxes + "%%EndComments\n" + page + "showpage\n", draft());
    EXPECT_NE(std::string::npos, output.find(boxes));
    EXPECT_NE(std::string::npos, output.find(page));
}

TEST(PostScriptWatermarkTest, CanBeRunTwice)
{
    const PostScriptSample sample{.pages = {kBlueBox + "showpage\n", kBlueBox + "showpage\n"}};
    Watermark second = draft();
    second.position = {40, 220};
    second.colour = {0, 1, 0};
    for (const bool above : {true, false}) {
        Watermark first = draft(above);
        const auto both = rendered(processed(processed(sample.text(), first), second));
        for (const auto &page : both.pages) {
            expectWatermark(page, first);
            EXPECT_TRUE(page.boxOf(Support::kGreen));
        }
    }
}

TEST(PostScriptWatermarkTest, DocumentWithoutPageCommentsIsRefused)
{
    EXPECT_THROW(processed("%!PS-Adobe-3.0\n%%EndComments\nshowpage\n", draft()), ToolkitError);
}

TEST(PostScriptWatermarkTest, EverythingElseOfTheDocumentIsKept)
{
    const std::string text =
        PostScriptSample{.prolog = "/x 1 def % a comment\r\n", .pages = {"showpage\n"}}.text();
    for (const bool above : {true, false})
        EXPECT_EQ(text, withoutWatermark(processed(text, draft(above))));
}
