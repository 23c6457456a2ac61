#include "PostScriptCommands.h"

#include "MinimalPPD.h"
#include "ToolkitPostScript.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

using Support::renderText;
using testing::HasSubstr;
using testing::Not;

namespace {

/// Trays as page device requests, media as job control, no Duplex option but the base one.
std::string queuePPD()
{
    return Support::minimalPPD(
        "*OpenUI *InputSlot: PickOne\n"
        "*OrderDependency: 20 AnySetup *InputSlot\n"
        "*DefaultInputSlot: Auto\n"
        "*InputSlot Auto: \"<</MediaPosition null>>setpagedevice\"\n"
        "*InputSlot SheetFeedBypass: \"<</MediaPosition 0>>setpagedevice\"\n"
        "*InputSlot AdditionalExternalLCF: \"<</MediaPosition 6>>setpagedevice\"\n"
        "*InputSlot Tray2: \"<</MediaPosition 2>>setpagedevice\"\n"
        "*InputSlot OwnTransfer: \"<</MediaPosition 3>>setpagedevice {} settransfer\"\n"
        "*InputSlot Broken: \"1 0 div\"\n"
        "*InputSlot Codeless: \"\"\n"
        "*CloseUI: *InputSlot\n"
        "*JCLOpenUI *MediaType: PickOne\n"
        "*OrderDependency: 50 JCLSetup *MediaType\n"
        "*DefaultMediaType: Plain\n"
        "*MediaType Plain: \"@PJL COMMENT DSSC PRINT MEDIATYPE=PLAIN<0D><0A>\"\n"
        "*MediaType Thick: \"@PJL COMMENT DSSC PRINT MEDIATYPE=THICK1<0D><0A>\"\n"
        "*MediaType Other: \"@PJL SET MEDIA = OTHER<0D><0A>\"\n"
        "*JCLCloseUI: *MediaType\n");
}

constexpr char kFront[] = "SET MediaPosition 0 \nSET PRIVATE DSSC PRINT MEDIATYPE=THICK1\n";
constexpr char kBack[] = "SET MediaPosition 2 \nSET PRIVATE DSSC PRINT MEDIATYPE=THICK1\n";
constexpr char kJob[] = "SET MediaPosition null \nSET PRIVATE DSSC PRINT MEDIATYPE=PLAIN\n";
constexpr char kOneSide[] = "SET Duplex false \n"; // as the PPD says it
constexpr char kTwoSides[] = "SET Duplex true Tumble false \n";
constexpr char kShow[] = "SHOW\n";

CoverPages covers(CoverStyle front, CoverStyle back, const std::string &duplex = "notumble")
{
    return {.back = {back, "Thick", "Tray2"},
            .front = {front, "Thick", "Bypass"},
            .source = "AutoSelect",
            .media = "Plain",
            .duplex = duplex};
}

/// Each page tells its number when it is run.
PostScriptSample pages(int count)
{
    PostScriptSample sample;
    sample.setup = "";
    for (int page = 1; page <= count; ++page)
        sample.pages.push_back("(page " + std::to_string(page) + ": ) print showpage\n");
    return sample;
}

std::string page(int number)
{
    return "page " + std::to_string(number) + ": " + kShow;
}

std::string logOf(int count, const CoverPages &request)
{
    return deviceLog(processed(pages(count).text(), request, queuePPD()));
}

using enum CoverStyle;

} // namespace

TEST(PostScriptCoverPagesTest, BlankFrontCoverIsOneSheetBeforeTheJob)
{
    EXPECT_EQ(std::string(kFront) + kOneSide + kShow + kJob + kTwoSides + page(1) + page(2),
              logOf(2, covers(NoPrint, None)));
}

TEST(PostScriptCoverPagesTest, FrontCoverOnOneSideHoldsPageOne)
{
    EXPECT_EQ(std::string(kFront) + kOneSide + page(1) + kJob + kTwoSides + page(2) + page(3),
              logOf(3, covers(Print1, None)));
}

TEST(PostScriptCoverPagesTest, FrontCoverOnBothSidesHoldsPagesOneAndTwo)
{
    EXPECT_EQ(std::string(kFront) + kTwoSides + page(1) + page(2) + kJob + kTwoSides + page(3),
              logOf(3, covers(Print, None)));
}

TEST(PostScriptCoverPagesTest, JobOnOneSideStaysOnOneSide)
{
    EXPECT_EQ(std::string(kFront) + kOneSide + page(1) + kJob + kOneSide + page(2) + kBack +
                  kOneSide + page(3) + kJob + kOneSide,
              logOf(3, covers(Print, Print, "none")));
}

TEST(PostScriptCoverPagesTest, BlankBackCoverIsOneSheetBehindTheFilledJob)
{
    EXPECT_EQ(page(1) + page(2) + page(3) + kShow + kBack + kOneSide + kShow + kJob + kTwoSides,
              logOf(3, covers(None, NoPrint)));
    EXPECT_EQ(page(1) + page(2) + kBack + kOneSide + kShow + kJob + kTwoSides,
              logOf(2, covers(None, NoPrint)));
}

TEST(PostScriptCoverPagesTest, BackCoverOnOneSideHoldsTheLastPage)
{
    EXPECT_EQ(page(1) + page(2) + page(3) + kShow + kBack + kOneSide + page(4) + kJob + kTwoSides,
              logOf(4, covers(None, Print1)));
}

TEST(PostScriptCoverPagesTest, BackCoverOnBothSidesHoldsTheLastSheet)
{
    EXPECT_EQ(std::string(kFront) + kOneSide + page(1) + kJob + kTwoSides + page(2) + page(3) +
                  kBack + kTwoSides + page(4) + page(5) + kJob + kTwoSides,
              logOf(5, covers(Print1, Print)));
    EXPECT_EQ(page(1) + page(2) + page(3) + page(4) + kBack + kTwoSides + kShow + kJob + kTwoSides,
              logOf(4, covers(None, Print)));
}

TEST(PostScriptCoverPagesTest, FrontCoverIsFilledBeforeTheBackCover)
{
    EXPECT_EQ(std::string(kFront) + kTwoSides + page(1) + kShow + kBack + kOneSide + page(2) +
                  kJob + kTwoSides,
              logOf(2, covers(Print, Print1)));
}

TEST(PostScriptCoverPagesTest, SettingsComeBackWhereTheCoverIsTheWholeJob)
{
    EXPECT_EQ(std::string(kFront) + kOneSide + page(1) + kJob + kTwoSides,
              logOf(1, covers(Print1, None)));
}

TEST(PostScriptCoverPagesTest, WithoutCoverTheJobIsLeftAlone)
{
    EXPECT_EQ(page(1) + page(2), logOf(2, covers(None, None)));
    EXPECT_EQ(page(1), logOf(1, covers(None, Print1)));
}

TEST(PostScriptCoverPagesTest, TumbleIsSetAgain)
{
    const std::string log = logOf(2, covers(Print1, None, "tumble"));
    EXPECT_THAT(log, HasSubstr("SET Duplex true Tumble true \npage 2"));
}

TEST(PostScriptCoverPagesTest, UnknownDuplexWordCountsAsTwoSidedAndSetsNothing)
{
    EXPECT_EQ(std::string(kFront) + page(1) + page(2) + kJob + page(3),
              logOf(3, covers(Print, None, "Manual")));
}

TEST(PostScriptCoverPagesTest, SourcesAreMappedBackToThePPDsNames)
{
    CoverPages request = covers(Print1, Print1);
    request.front.source = "ExternalLCF2";
    request.back.source = "AutoSelect";
    request.source = "Tray2";
    const std::string log = logOf(3, request);
    EXPECT_THAT(log, testing::StartsWith("SET MediaPosition 6 \n"));
    EXPECT_THAT(log, HasSubstr("SET MediaPosition 2 \nSET PRIVATE DSSC PRINT MEDIATYPE=PLAIN\n"));
    EXPECT_THAT(log,
                HasSubstr("SET MediaPosition null \nSET PRIVATE DSSC PRINT MEDIATYPE=THICK1\n"));
}

TEST(PostScriptCoverPagesTest, WhatThePPDDoesNotSaySetsNothing)
{
    for (const auto *source : {"Tray9", "Codeless"}) {
        CoverPages request = covers(Print1, None);
        request.front = {Print1, "None", source};
        EXPECT_THAT(logOf(2, request), testing::StartsWith(std::string(kOneSide) + page(1)));
        request.front.media = "Unknown";
        EXPECT_THAT(logOf(2, request), testing::StartsWith(std::string(kOneSide) + page(1)));
        request.front.media = "Other"; // job control that is no setting of the printer
        EXPECT_THAT(logOf(2, request), testing::StartsWith(std::string(kOneSide) + page(1)));
    }
}

TEST(PostScriptCoverPagesTest, JobControlNeverGoesIntoThePageData)
{
    const std::string output = processed(pages(3).text(), covers(Print1, NoPrint), queuePPD());
    EXPECT_THAT(output, Not(HasSubstr("@PJL")));
}

TEST(PostScriptCoverPagesTest, WithoutPPDTheSheetsAreFedAllTheSame)
{
    EXPECT_EQ("SET Duplex false Tumble false \n" + std::string(kShow) + kTwoSides + page(1),
              deviceLog(processed(pages(1).text(), covers(NoPrint, None))));
}

TEST(PostScriptCoverPagesTest, ErrorInAFeatureDoesNotEndTheJob)
{
    CoverPages request = covers(Print1, None);
    request.front.source = "Broken";
    EXPECT_THAT(logOf(2, request), HasSubstr(page(2)));
}

TEST(PostScriptCoverPagesTest, DuplexThatIsJobControlIsAskedForInBothWays)
{
    std::string ppd = queuePPD();
    ppd.replace(ppd.find("20 AnySetup *Duplex"), 19, "20 JCLSetup *Duplex");
    const std::string code = "<</Duplex false>>setpagedevice";
    ppd.replace(ppd.find(code), code.size(), "@PJL COMMENT DSSC PRINT DUPLEX=OFF<0D><0A>");
    const std::string log = deviceLog(processed(pages(2).text(), covers(Print1, None), ppd));
    EXPECT_THAT(log, HasSubstr("SET PRIVATE DSSC PRINT DUPLEX=OFF\n"
                               "SET Duplex false Tumble false \npage 1"));
}

TEST(PostScriptCoverPagesTest, FeaturesReachTheDeviceWhateverTheDocumentRedefines)
{
    PostScriptSample sample = pages(3);
    sample.setup = "9 dict begin /setpagedevice { pop } def /stopped { exec false } def\n"
                   "/cleartomark { } def /null 5 def\n";
    EXPECT_EQ(std::string(kFront) + kOneSide + page(1) + kJob + kTwoSides + page(2) + page(3),
              deviceLog(processed(sample.text(), covers(Print1, None), queuePPD())));
}

// --- What the pages ask for themselves -----------------------------------------------------------

namespace {

constexpr char kOwnRequest[] =
    "<< /MediaPosition 3 /MediaType (Own) /MediaColor (red) /Duplex false"
    " /Tumble true >> setpagedevice\n";
constexpr char kOwn[] =
    "SET Duplex false Tumble true MediaColor red MediaPosition 3 MediaType Own \n";
constexpr char kNothing[] = "SET \n"; // a request of which nothing is left

PostScriptSample pagesWith(int count, int page, const std::string &request)
{
    PostScriptSample sample = pages(count);
    auto &content = sample.pages[static_cast<std::size_t>(page - 1)];
    content = request + content;
    return sample;
}

std::string logOf(const PostScriptSample &sample, const CoverPages &request)
{
    return deviceLog(processed(sample.text(), request, queuePPD()));
}

} // namespace

TEST(PostScriptCoverPagesTest, PagesOwnRequestsWaitUntilTheCoverIsOut)
{
    EXPECT_EQ(std::string(kFront) + kOneSide + kNothing + page(1) + kJob + kTwoSides + kOwn +
                  page(2) + page(3),
              logOf(pagesWith(3, 1, kOwnRequest), covers(Print1, None)));
    EXPECT_EQ(std::string(kFront) + kTwoSides + page(1) + kNothing + page(2) + kJob + kTwoSides +
                  kOwn + page(3),
              logOf(pagesWith(3, 2, kOwnRequest), covers(Print, None)));
    EXPECT_EQ(page(1) + page(2) + kBack + kOneSide + kNothing + page(3) + kJob + kTwoSides + kOwn,
              logOf(pagesWith(3, 3, kOwnRequest), covers(None, Print1)));
}

TEST(PostScriptCoverPagesTest, RequestsOfTheJobsOtherPagesAreMadeAtOnce)
{
    EXPECT_EQ(std::string(kFront) + kOneSide + page(1) + kJob + kTwoSides + kOwn + page(2) + kShow +
                  kBack + kOneSide + page(3) + kJob + kTwoSides,
              logOf(pagesWith(3, 2, kOwnRequest), covers(Print1, Print1)));
}

TEST(PostScriptCoverPagesTest, RequestsForOtherThingsAreMadeAtOnceOnACover)
{
    EXPECT_EQ(std::string(kFront) + kOneSide + "SET PageSize 200 300 \n" + page(1) + kJob +
                  kTwoSides + "SET MediaPosition 3 \n" + page(2),
              logOf(pagesWith(2, 1, "<< /PageSize [200 300] /MediaPosition 3 >> setpagedevice\n"),
                    covers(Print1, None)));
}

TEST(PostScriptCoverPagesTest, WhatACoverDoesNotSayItsPageSays)
{
    CoverPages request = covers(Print1, None);
    request.front.media = "None";
    EXPECT_EQ("SET MediaPosition 0 \n" + std::string(kOneSide) +
                  "SET MediaColor red MediaType Own \n" + page(1) + kJob + kTwoSides +
                  "SET Duplex false Tumble true MediaPosition 3 \n" + page(2),
              logOf(pagesWith(2, 1, kOwnRequest), request));
}

TEST(PostScriptCoverPagesTest, RequestOfASavedStateIsOverWithIt)
{
    PostScriptSample sample = pages(2);
    sample.pages[0] = "save " + std::string(kOwnRequest) + sample.pages[0] + "restore\n";
    EXPECT_EQ(std::string(kFront) + kOneSide + kNothing + page(1) + kJob + kTwoSides + page(2),
              logOf(sample, covers(Print1, None)));
}

TEST(PostScriptCoverPagesTest, CoverStaysWhereAPageBringsBackAStateOfTheSetup)
{
    PostScriptSample sample = pages(3);
    sample.setup = "/level save def\n";
    for (auto &content : sample.pages)
        content = "level restore /level save def\n" + content;
    EXPECT_EQ(std::string(kFront) + kOneSide + "SET Duplex false MediaPosition 0 \n" + page(1) +
                  kJob + kTwoSides + page(2) + page(3),
              logOf(sample, covers(Print1, None)));
}

TEST(PostScriptCoverPagesTest, NoWayToAskGoesAroundTheCover)
{
    PostScriptSample sample = pages(2);
    sample.prolog = "/ask { setpagedevice } bind def /askAtOnce { //setpagedevice } def\n"
                    "/askLoaded /setpagedevice load def\n"
                    "/askDictionary { systemdict /setpagedevice get exec } bind def\n";
    for (const char *ask : {"ask", "askAtOnce", "askLoaded", "askDictionary"}) {
        sample.pages[0] = "<< /MediaPosition 3 >> " + std::string(ask) + "\n" + pages(1).pages[0];
        EXPECT_EQ(std::string(kFront) + kOneSide + kNothing + page(1) + kJob + kTwoSides +
                      "SET MediaPosition 3 \n" + page(2),
                  logOf(sample, covers(Print1, None)))
            << ask;
    }
}

TEST(PostScriptCoverPagesTest, RequestThatFailsWhenTheJobResumesDoesNotEndIt)
{
    const std::string wrong = "{ << /Duplex (x) >> setpagedevice } stopped { clear } if\n";
    EXPECT_THAT(logOf(pagesWith(2, 1, wrong), covers(Print1, None)), testing::EndsWith(page(2)));
}

TEST(PostScriptCoverPagesTest, BookletsSheetsAreCoversToo)
{
    PostScriptSample sample;
    for (int number = 1; number <= 12; ++number) {
        sample.pages.push_back("<< /MediaPosition " + std::to_string(number) +
                               " >> setpagedevice showpage\n");
    }
    const std::string sheets = processed(sample.text(), Booklet{"A4", 0, 0, {}});
    const std::string log = deviceLog(processed(sheets, covers(Print, None, "tumble"), queuePPD()));
    const auto asks = [](int tray) { return "SET MediaPosition " + std::to_string(tray) + " \n"; };
    const std::string both = "SET Duplex true Tumble true \n";
    const std::string twoShown = std::string(kShow) + kShow;
    EXPECT_THAT(log, testing::EndsWith(kFront + both + kNothing + kShow + kShow + kNothing + kJob +
                                       both + asks(2) + asks(3) + twoShown + asks(4) + asks(5) +
                                       twoShown + asks(6) + asks(12)));
}

// --- Sheets and comments -------------------------------------------------------------------------

TEST(PostScriptCoverPagesTest, EverySideIsAPageWithItsNumber)
{
    std::string text = pages(3).text();
    const std::string count = "%%Pages: 3\n";
    text.replace(text.find(count), count.size(), "%%Pages: (atend)\n");
    text.replace(text.find("%%Page: 2 2"), 11, "%%Page: (page two) 2\n%%PageOrientation: Portrait");
    text.insert(text.find("%%EOF"), count);
    const std::string output = processed(text, covers(NoPrint, NoPrint), queuePPD());
    EXPECT_EQ(1U, countOf("%%Pages:", output));
    EXPECT_EQ(1U, countOf("%%Pages: 6\n", output)); // two blank sheets, one blank side
    EXPECT_EQ(6U, countOf("\n%%Page:", output));
    EXPECT_THAT(output, HasSubstr("\n%%Page: 1 2\n"));
    EXPECT_THAT(output, HasSubstr("\n%%Page: (page two) 3\n%%PageOrientation: Portrait\n"));
    EXPECT_THAT(output, HasSubstr("\n%%Page: (blank) 6\n"));
    EXPECT_EQ(6U, renderText(output, {.resolution = 10}).pages.size());
}

namespace {

/// The widths of the sheets of a document, which has some more comments in its header, with a blank
/// cover on either side.
std::vector<double> widthsWithBlankCovers(const PostScriptSample &sample,
                                          const std::string &comments)
{
    std::string text = sample.text();
    text.insert(text.find("%%EndComments"), comments);
    std::vector<double> widths;
    for (const auto &sheet : renderText(processed(text, covers(NoPrint, NoPrint))).pages)
        widths.push_back(sheet.width());
    return widths;
}

const std::vector<double> kFourSmall(4, 200);

} // namespace

class PostScriptCoverPagesSizeTest : public testing::TestWithParam<const char *> {};

TEST_P(PostScriptCoverPagesSizeTest, CommentChangesNoSheetWhereTheSetupChooses)
{
    PostScriptSample sample = pages(2);
    sample.setup = "<< /PageSize [200 300] >> setpagedevice\n";
    EXPECT_EQ(kFourSmall, widthsWithBlankCovers(sample, GetParam()));
}

TEST_P(PostScriptCoverPagesSizeTest, CommentChangesNoSheetWhereNothingChooses)
{
    const double own = renderText(pages(1).text()).pages.at(0).width();
    ASSERT_NE(842, own); // as the comments say
    EXPECT_EQ(std::vector<double>(4, own), widthsWithBlankCovers(pages(2), GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Comments, PostScriptCoverPagesSizeTest,
                         testing::Values("%%DocumentMedia: Large 842 1191 0 () ()\n",
                                         "%%DocumentMedia: A3\n", "%%DocumentPaperSizes: A3\n"),
                         [](const auto &example) {
                             return "Comment" + std::to_string(example.index);
                         });

TEST_P(PostScriptCoverPagesSizeTest, PaperThatThePagesChooseIsNotThatOfTheCovers)
{
    const double own = renderText(pages(1).text()).pages.at(0).width();
    PostScriptSample sample = pages(2);
    sample.pages[0].insert(0, "<< /PageSize [200 300] >> setpagedevice\n");
    EXPECT_EQ((std::vector<double>{own, 200, 200, own}), widthsWithBlankCovers(sample, GetParam()));
    sample.setup = "<< /PageSize [400 500] >> setpagedevice\n";
    EXPECT_EQ((std::vector<double>{400, 200, 200, 400}), widthsWithBlankCovers(sample, GetParam()));
}

TEST_P(PostScriptCoverPagesSizeTest, PaperThatAPageNamesIsNotThatOfTheCovers)
{
    const double own = renderText(pages(1).text()).pages.at(0).width();
    PostScriptSample sample = pages(2);
    for (auto &page : sample.pages)
        page.insert(0, "%%PageMedia: Large\n");
    EXPECT_EQ(std::vector<double>(4, own), widthsWithBlankCovers(sample, GetParam()));
}

TEST(PostScriptCoverPagesTest, CoverAroundABookletWithWatermark)
{
    const Watermark watermark = {.above = false,
                                 .font = "Helvetica",
                                 .angle = 0,
                                 .colour = {1, 0, 0},
                                 .position = {60, 140},
                                 .size = 24,
                                 .text = "Draft"};
    const Booklet booklet = {"A4", 0, 0, Ordering::LeftToRight};
    PostScriptSample sample;
    sample.pages.assign(3, "0 0 1 setrgbcolor 0 0 200 100 rectfill showpage\n");
    const std::string document = processed(processed(processed(sample.text(), watermark), booklet),
                                           covers(NoPrint, NoPrint, "tumble"), queuePPD());
    const auto sheets = renderText(document);
    ASSERT_EQ(4U, sheets.pages.size());
    EXPECT_EQ(0, sheets.pages[0].coverage());
    EXPECT_TRUE(sheets.pages[1].boxOf(Support::kRed));
    EXPECT_TRUE(sheets.pages[2].boxOf(Support::kRed));
    EXPECT_EQ(0, sheets.pages[3].coverage());

    const std::string log = deviceLog(document);
    const std::string both = "SET Duplex true Tumble true \n";
    EXPECT_THAT(log, HasSubstr(kFront + std::string(kOneSide) + kShow + kJob + both + kShow +
                               kShow + kBack + kOneSide + kShow + kJob + both));
}

TEST(PostScriptCoverPagesTest, CutOffPageDoesNotSwallowTheBackCover)
{
    PostScriptSample sample = pages(2);
    sample.setup = "/level save def\n";
    for (const std::string begin : {"", "level restore /level save def "}) {
        std::string text = sample.text();
        text.erase(text.find("%%Trailer"));
        text += "%%Page: 3 3\n" + begin + "(page 3: ) print showpage (open";
        EXPECT_EQ(page(1) + page(2) + page(3) + kShow + kBack + kOneSide + kShow + kJob + kTwoSides,
                  deviceLog(processed(text, covers(None, NoPrint), queuePPD())))
            << begin;
    }
}

// --- What the document has made of its graphics state -------------------------------------------

namespace {

std::vector<Support::RenderedPage> inkedSides(const std::string &document)
{
    const auto sides = renderText(document, {.resolution = 36}).pages;
    std::vector<Support::RenderedPage> inked;
    std::ranges::copy_if(sides, std::back_inserter(inked),
                         [](const auto &side) { return side.coverage() > 0; });
    return inked;
}

/// Whether all sides with ink come out as without covers.
void expectSameInk(const std::string &text, CoverStyle style)
{
    const auto expected = inkedSides(text);
    ASSERT_FALSE(expected.empty());
    CoverPages request = covers(style, style);
    request.source = request.front.source = "OwnTransfer";
    EXPECT_TRUE(expected == inkedSides(processed(text, request, queuePPD())));
}

constexpr char kMarks[] = "20 20 moveto 90 20 lineto 20 190 lineto stroke\n"
                          "30 50 60 50 rectfill showpage\n";

} // namespace

class PostScriptCoverPagesStateTest : public testing::TestWithParam<const char *> {};

TEST_P(PostScriptCoverPagesStateTest, PageGoesOnWithTheStateOfTheSetup)
{
    PostScriptSample sample;
    sample.setup += GetParam();
    sample.pages = {kMarks, kMarks};
    expectSameInk(sample.text(), NoPrint);
}

TEST_P(PostScriptCoverPagesStateTest, PageGoesOnWithTheStateThatARestoreHasBroughtBack)
{
    const std::string again = "level restore /level save def\n";
    PostScriptSample sample;
    sample.setup += GetParam() + std::string(" /level save def\n");
    sample.pages.assign(3, again + kMarks + again);
    expectSameInk(sample.text(), Print1);
}

INSTANTIATE_TEST_SUITE_P(
    States, PostScriptCoverPagesStateTest,
    testing::Values("0.5 0.8 scale 9 setlinewidth 1 setlinecap [20 15] 1 setdash 1 0 0 setrgbcolor",
                    "30 rotate 50 0 translate 9 setlinewidth 2 setlinejoin newpath 0 0 moveto\n"
                    "90 0 lineto 20 90 lineto clip newpath",
                    "9 setlinewidth 1 setmiterlimit [/Indexed /DeviceRGB 1 <00ff000000ff>]\n"
                    "setcolorspace 1 setcolor 0.5 0.5 scale 100 100 moveto 300 300 lineto",
                    "0.5 setgray 6 45 { pop } setscreen",
                    "0.4 setgray { dup 0.5 lt { pop 0 } if } settransfer"),
    [](const auto &example) { return "State" + std::to_string(example.index); });

// --- What the document draws ahead of its pages --------------------------------------------------

namespace {

/// What a setup may do, and whether there are marks then that the first page shows.
struct Ahead {
    const char *name;
    std::string setup;
    bool leavesMarks;
};

void PrintTo(const Ahead &ahead, std::ostream *stream)
{
    *stream << ahead.name;
}

const std::string kMark = "0 0 1 setrgbcolor 20 200 90 90 rectfill\n";

const std::vector<Ahead> kAhead = {
    {"Marks", kMark, true},
    {"MarksInASavedState", "save " + kMark + "restore\n", true},
    {"MarksInAKeptState", "gsave " + kMark + "grestore\n", true},
    {"MarksOfABoundProcedure", "/F { rectfill } bind def 20 200 90 90 F\n", true},
    {"Text", "/Courier 90 selectfont 20 200 moveto (x) show\n", true},
    {"MarksThatAreShown", kMark + "showpage\n", false},
    {"MarksThatAreWhitened", kMark + "erasepage\n", false},
    {"MarksOnOtherPaper", kMark + "<< /PageSize [200 300] >> setpagedevice\n", false},
    {"MarksOnNoPage", "gsave nulldevice " + kMark + "grestore\n", false},
    {"TextThatIsMeasured", "/Courier 90 selectfont 20 200 moveto { pop pop pop } (x) cshow\n",
     false},
    {"MarksThatAreMeasured",
     "<< /FontType 3 /FontMatrix [1 0 0 1 0 0] /FontBBox [0 0 1 1] /Encoding 256 array\n"
     "dup 0 1 255 { /x put dup } for pop /BuildChar { pop pop 1 0 setcharwidth 0 0 1 1 rectfill }\n"
     ">> /F exch definefont 20 scalefont setfont (x) stringwidth pop pop 0 { (x) show } repeat\n",
     false},
};

} // namespace

class PostScriptCoverPagesAheadTest : public testing::TestWithParam<Ahead> {};

TEST_P(PostScriptCoverPagesAheadTest, NoMarksAreLostBehindAFrontCover)
{
    const bool leavesMarks = GetParam().leavesMarks;
    PostScriptSample sample;
    sample.setup += GetParam().setup;
    sample.pages.assign(3, kMarks);
    for (const CoverStyle style : {NoPrint, Print1, Print}) {
        const auto results = Support::renderEach(
            {sample.text(), processed(sample.text(), covers(style, NoPrint, "none"))},
            {.resolution = 18});
        std::vector<Support::RenderedPage> wanted = results[0].pages;
        const std::ptrdiff_t ahead = wanted.size() == 4 ? 1 : 0;
        const Support::RenderedPage blank =
            renderText(PostScriptSample{.pages = {"showpage\n"}}.text(), {.resolution = 18})
                .pages[0];
        wanted.push_back(blank);
        if (style == NoPrint && !leavesMarks)
            wanted.insert(wanted.begin() + ahead, blank);
        EXPECT_EQ("", results[1].log);
        EXPECT_TRUE(wanted == results[1].pages) << static_cast<int>(style);
    }
}

TEST_P(PostScriptCoverPagesAheadTest, CoverHasItsSettingsWhereNoMarksAreLost)
{
    PostScriptSample sample = pages(2);
    sample.setup = GetParam().setup;
    const std::string log = logOf(sample, covers(Print1, NoPrint));
    EXPECT_EQ(!GetParam().leavesMarks,
              log.find(kFront + std::string(kOneSide) + page(1)) != std::string::npos);
    EXPECT_THAT(log, testing::EndsWith(page(1) + kJob + kTwoSides + page(2) + kShow + kBack +
                                       kOneSide + kShow + kJob + kTwoSides));
}

INSTANTIATE_TEST_SUITE_P(Setups, PostScriptCoverPagesAheadTest, testing::ValuesIn(kAhead),
                         [](const auto &example) { return example.param.name; });
