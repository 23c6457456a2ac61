// The options store's watermark, and its PostScript run by Ghostscript.

#include "KLPrintOptions.h"
#include "ObjectFormat.h"
#include "Program.h"
#include "QueueTest.h"
#include "Rendering.h"

#include <gmock/gmock.h>

#include <cmath>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <new>
#include <numbers>
#include <sstream>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Support;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr char kDefaultWatermark[] = R"PS([{
%%BeginFeature: *Watermark True
userdict begin
userdict /KMRWatermarkDefined known { KMRWatermarkDefined }{ false } ifelse not {
currentpagedevice /EndPage known
 { /KMROldEndPage currentpagedevice begin /EndPage load end def }
 { /KMROldEndPage { exch pop 2 eq not } def /KMROldBeginPage { pop true } def }
ifelse
/KMRWatermarkOriginator { currentpagedevice /PageSize get {} forall exch } bind def
<< /EndPage {
 gsave
 [ 0 0 1 0 0 1 ] defaultmatrix setmatrix
 /Helvetica 50.0 selectfont
 0 0 0 1 setcmykcolor
 KMRWatermarkOriginator
 50.0 100 div mul exch
 50.0 100 div mul translate
 -0.0 rotate
 () dup stringwidth pop 2 div neg 0 translate
 0 0 moveto show
 grestore
 KMROldEndPage
} >> KMRsetpagedevice
/KMRWatermarkDefined true def
} if
end
%%EndFeature
} stopped cleartomark
)PS";

constexpr char kFullWatermarkBeneath[] = R"PS([{
%%BeginFeature: *Watermark True
userdict begin
userdict /KMRWatermarkDefined known { KMRWatermarkDefined }{ false } ifelse not {
currentpagedevice /BeginPage known
 { /KMROldBeginPage currentpagedevice begin /BeginPage load end def }
 { /KMROldEndPage { exch pop 2 eq not } def /KMROldBeginPage { pop true } def }
ifelse
/KMRWatermarkOriginator { currentpagedevice /PageSize get {} forall 2 copy translate 180 rotate exch } bind def
<< /BeginPage {
 gsave
 [ 0 0 1 0 0 1 ] defaultmatrix setmatrix
 /Times-Roman 72.5 selectfont
 0.1 0.2 0.3 0.4 setcmykcolor
 KMRWatermarkOriginator
 10.25 100 div mul exch
 90.75 100 div mul translate
 -30 rotate
 (Größe 100%@) dup stringwidth pop 2 div neg 0 translate
 0 0 moveto show
 grestore
 KMROldBeginPage
} >> KMRsetpagedevice
/KMRWatermarkDefined true def
} if
end
%%EndFeature
} stopped cleartomark
)PS";

std::string watermarkKey(const std::string &setting)
{
    return "com.kalmira.pde.watermark." + setting;
}

class KLPrintOptionsWatermarkTest : public QueueTest {
protected:
    void set(KLValue value, const std::string &setting)
    {
        options.setValueForKey(std::move(value), watermarkKey(setting));
    }

    /// The PostScript's line of that number, counted from 1, without its line feed.
    std::string line(int number) const
    {
        std::istringstream lines(options.generageWatermarkCode());
        std::string line;
        for (; number > 0; --number)
            std::getline(lines, line);
        return line;
    }

    KLPrintOptions options{""};
};

} // namespace

// The text

TEST_F(KLPrintOptionsWatermarkTest, WithoutSettingsAllDefaultsStandInTheText)
{
    EXPECT_EQ(kDefaultWatermark, options.generageWatermarkCode());
}

TEST_F(KLPrintOptionsWatermarkTest, EachSettingStandsInItsPlace)
{
    set("Größe 100%@", "text");
    set("Times-Roman", "font");
    set("72.5", "size");
    set("10.25", "x");
    set("90.75", "y");
    set("30", "angle");
    set("0.1 0.2 0.3 0.4", "color");
    set("0", "ordering");
    options.setValueForKey("6", "orientation-requested");
    EXPECT_EQ(kFullWatermarkBeneath, options.generageWatermarkCode());
}

TEST_F(KLPrintOptionsWatermarkTest, SettingsOfTheOptionStringAreTaken)
{
    const KLPrintOptions job("com.kalmira.pde.watermark.text='TOP SECRET' "
                             "com.kalmira.pde.watermark.size..n.=40");
    EXPECT_THAT(job.generageWatermarkCode(), HasSubstr(" (TOP SECRET) dup stringwidth"));
    EXPECT_THAT(job.generageWatermarkCode(), HasSubstr(" /Helvetica 40 selectfont\n"));
}

TEST_F(KLPrintOptionsWatermarkTest, OnlyTheTextZeroPutsItBeneath)
{
    for (const KLValue &ordering :
         {KLValue("1"), KLValue("00"), KLValue(""), KLValue(std::int64_t{0}), KLValue(false)}) {
        set(ordering, "ordering");
        EXPECT_EQ(kDefaultWatermark, options.generageWatermarkCode());
    }
    set("0", "ordering");
    EXPECT_EQ("currentpagedevice /BeginPage known", line(5));
    EXPECT_EQ(" { /KMROldBeginPage currentpagedevice begin /BeginPage load end def }", line(6));
    EXPECT_EQ("<< /BeginPage {", line(10));
    EXPECT_EQ(" KMROldBeginPage", line(22));
}

TEST_F(KLPrintOptionsWatermarkTest, OrientationChoosesTheFragmentByItsNumber)
{
    const auto fragmentLine = [](const std::string &fragment) {
        return "/KMRWatermarkOriginator { currentpagedevice /PageSize get {} forall " + fragment +
               " } bind def";
    };
    const std::string landscape = fragmentLine("exch dup 0.0 translate 90 rotate exch");
    const std::string reverseLandscape = fragmentLine("dup 0.0 exch translate -90 rotate");
    const std::string reversePortrait = fragmentLine("2 copy translate 180 rotate exch");
    const std::string portrait = fragmentLine("exch");

    EXPECT_EQ(portrait, line(9));
    const std::pair<KLValue, std::string> cases[] = {
        {"4", landscape},        {"4abc", landscape},
        {" +4", landscape},      {std::int64_t{4}, landscape},
        {"5", reverseLandscape}, {std::int64_t{5}, reverseLandscape},
        {"6", reversePortrait},  {std::int64_t{6}, reversePortrait},
        {"3", portrait},         {"0", portrait},
        {"7", portrait},         {"-4", portrait},
        {"landscape", portrait}, {"", portrait},
        {true, portrait},        {std::int64_t{4} << 32, portrait},
    };
    for (const auto &[value, expected] : cases) {
        options.setValueForKey(value, "orientation-requested");
        EXPECT_EQ(expected, line(9)) << Platform::description(value);
    }
}

TEST_F(KLPrintOptionsWatermarkTest, NumbersAreWrittenInDecimal)
{
    set(std::int64_t{40}, "size");
    set(true, "x");
    set(std::int64_t{-20}, "y");
    EXPECT_EQ(" /Helvetica 40 selectfont", line(13));
    EXPECT_EQ(" 1 100 div mul exch", line(16));
    EXPECT_EQ(" -20 100 div mul translate", line(17));
}

TEST_F(KLPrintOptionsWatermarkTest, NegativeAngleGetsASecondMinusSign)
{
    set("-30", "angle");
    EXPECT_EQ(" --30 rotate", line(18));
    set(std::int64_t{-30}, "angle");
    EXPECT_EQ(" --30 rotate", line(18));
}

TEST_F(KLPrintOptionsWatermarkTest, EmptyValuesAreValues)
{
    for (const char *setting : {"text", "font", "color"})
        set("", setting);
    EXPECT_EQ(" / 50.0 selectfont", line(13));
    EXPECT_EQ("  setcmykcolor", line(14));
    EXPECT_EQ(" () dup stringwidth pop 2 div neg 0 translate", line(19));
}

// The text that needs escaping

namespace {

/// Leaves this process little more memory than it has. A plain bound would not do: a process with
/// an address sanitizer has reserved terabytes before it starts.
void limitMemory()
{
    constexpr rlim_t kMore = rlim_t{16} << 20;
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    const rlim_t limit = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + kMore;
    rlimit limits = {};
    getrlimit(RLIMIT_AS, &limits);
    limits.rlim_cur = limit;
    if (pages == 0 || setrlimit(RLIMIT_AS, &limits) != 0)
        _exit(2);
}

} // namespace

/// A sanitizer calls this before it says that memory has ended. That takes memory, too: without
/// any, it may wait for itself.
extern "C" void __asan_on_error()
{
    rlimit limits = {};
    getrlimit(RLIMIT_AS, &limits);
    limits.rlim_cur = limits.rlim_max;
    setrlimit(RLIMIT_AS, &limits);
}

namespace {

/// Generates the watermark under a memory limit and ends the process: with 0 when the generator
/// came back, with 1 and a word about it when memory ended first. (A sanitizer ends the process
/// itself, in the same manner.) By a signal when neither happens in time.
[[noreturn]] void generateWithLittleMemory(const KLPrintOptions &options)
{
    limitMemory();
    constexpr rlim_t kSeconds = 60; // of processor time: the machine may be busy
    const rlimit limits = {kSeconds, kSeconds};
    if (setrlimit(RLIMIT_CPU, &limits) != 0)
        _exit(2);
    alarm(5 * kSeconds); // for what waits
    try {
        options.generageWatermarkCode();
    } catch (const std::bad_alloc &) {
        std::fputs("out of memory", stderr);
        _exit(1);
    }
    _exit(0);
}

class EndlessWatermarkTest : public KLPrintOptionsWatermarkTest {};

} // namespace

TEST_F(EndlessWatermarkTest, TextWithABackslashOrParenthesisNeverComesBack)
{
    for (const char *text : {"half (", ")", "C:\\"}) {
        set(text, "text");
        EXPECT_EXIT(generateWithLittleMemory(options), testing::ExitedWithCode(1),
                    "out of memory|failed to allocate")
            << text;
    }
}

TEST_F(EndlessWatermarkTest, AnyOtherTextComesBackWithTheSameLittleMemory)
{
    set(std::string(1000000, '/'), "text");
    EXPECT_EXIT(generateWithLittleMemory(options), testing::ExitedWithCode(0), "");
}

TEST_F(EndlessWatermarkTest, NoJobReachesTheGenerator)
{
    const auto result = runProgram({.arguments = {JOBFILTER_PROGRAM, "1", "user", "title", "1",
                                                  "com.kalmira.pde.watermark.text='a(b\\\\'"},
                                    .input = "%!PS\nshowpage\n"});
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_THAT(result.output, HasSubstr("%!PS\nshowpage\n"));
    EXPECT_THAT(result.output, Not(HasSubstr("KMR")));
    EXPECT_LT(result.peakMemory, 512 * 1024);
}

// The PostScript, run

namespace {

constexpr double kWidth = 595;
constexpr double kHeight = 842;

/// The printer's environment. What the watermark shows and which errors are caught is logged.
constexpr char kPrinter[] = R"PS(%!PS
/KMRsetpagedevice { setpagedevice } def
/show { dup (show ) print = //show } def
/stopped { //stopped dup { (error ) print $error /errorname get = } if } def
<< /PageSize [595 842] >> setpagedevice
)PS";

/// A "H" of 50 points in Helvetica is 718 thousandths of that high, and its middle is half way
/// along: the middle of its ink lies this many points from the middle of its base line.
constexpr double kInkAboveBaseLine = 0.718 / 2 * 50;

class WatermarkRunTest : public KLPrintOptionsWatermarkTest {
protected:
    WatermarkRunTest() { set("H", "text"); }

    Rendering run(const std::string &pages) const
    {
        return renderText(kPrinter + options.generageWatermarkCode() + pages);
    }
};

/// Where the watermark's base line has its middle, in points from the lower left of the page, and
/// which way the text runs, in degrees counterclockwise from the page's lower edge.
struct Placement {
    const char *orientation;
    const char *x;
    const char *y;
    const char *angle;
    Point middle;
    double direction;
};

class WatermarkPlacementTest : public WatermarkRunTest,
                               public testing::WithParamInterface<Placement> {};

// Of a width of 595 points 20 % are 119 and 75 % are 446.25; of a height of 842 points they are
// 168.4 and 631.5.
constexpr Placement kPlacements[] = {
    {"3", "50.0", "50.0", "0.0", {297.5, 421}, 0},
    {"3", "20", "75", "0.0", {119, 631.5}, 0},
    {"3", "20", "75", "30", {119, 631.5}, -30},
    {"3", "20", "75", "90", {119, 631.5}, -90},
    {"3", "20", "75", "180.0", {119, 631.5}, -180},
    {"3", "75", "20", "315", {446.25, 168.4}, 45},
    // Landscape: x runs up along the right edge's height, y from the right edge to the left.
    {"4", "50.0", "50.0", "0.0", {297.5, 421}, 90},
    {"4", "20", "75", "0.0", {595 - 446.25, 168.4}, 90},
    {"4", "20", "75", "30", {595 - 446.25, 168.4}, 60},
    // Reverse landscape: x runs down, y from the left edge to the right.
    {"5", "50.0", "50.0", "0.0", {297.5, 421}, -90},
    {"5", "20", "75", "0.0", {446.25, 842 - 168.4}, -90},
    {"5", "20", "75", "30", {446.25, 842 - 168.4}, -120},
    // Reverse portrait: x runs to the left, y down.
    {"6", "50.0", "50.0", "0.0", {297.5, 421}, 180},
    {"6", "20", "75", "0.0", {595 - 119, 842 - 631.5}, 180},
    {"6", "20", "75", "30", {595 - 119, 842 - 631.5}, 150},
};

INSTANTIATE_TEST_SUITE_P(Orientations, WatermarkPlacementTest, testing::ValuesIn(kPlacements));

} // namespace

TEST_P(WatermarkPlacementTest, MiddleOfTheTextLiesWhereTheSettingsSay)
{
    const Placement &placement = GetParam();
    options.setValueForKey(placement.orientation, "orientation-requested");
    set(placement.x, "x");
    set(placement.y, "y");
    set(placement.angle, "angle");
    const auto rendering = run("showpage\n");
    ASSERT_EQ(1U, rendering.pages.size());
    ASSERT_DOUBLE_EQ(kWidth, rendering.pages[0].width());
    ASSERT_DOUBLE_EQ(kHeight, rendering.pages[0].height());

    const double upwards = (placement.direction + 90) * std::numbers::pi / 180;
    const auto centre = rendering.pages[0].centreOf(kBlack);
    ASSERT_TRUE(centre.has_value());
    EXPECT_NEAR(placement.middle.x + std::cos(upwards) * kInkAboveBaseLine, centre->x, 2);
    EXPECT_NEAR(placement.middle.y + std::sin(upwards) * kInkAboveBaseLine, centre->y, 2);
}

TEST_F(WatermarkRunTest, LongTextRunsAlongItsDirectionOnBothSidesOfTheMiddle)
{
    set("HHHHHHHHH", "text");
    set("20.0", "size");
    // Nine letters of 722 thousandths of 20 points, less the bare 77 thousandths at either end.
    const double half = (9 * 0.722 - 2 * 0.077) / 2 * 20;
    const auto level = run("showpage\n").pages.at(0).inkBox().value();
    EXPECT_NEAR(297.5 - half, level.left, 2);
    EXPECT_NEAR(297.5 + half, level.right, 2);
    EXPECT_NEAR(421, level.bottom, 2);
    EXPECT_NEAR(421 + 0.718 * 20, level.top, 2);

    set("90.0", "angle");
    const auto downwards = run("showpage\n").pages.at(0).inkBox().value();
    EXPECT_NEAR(421 - half, downwards.bottom, 2);
    EXPECT_NEAR(421 + half, downwards.top, 2);
    EXPECT_NEAR(297.5, downwards.left, 2);
    EXPECT_NEAR(297.5 + 0.718 * 20, downwards.right, 2);
}

TEST_F(WatermarkRunTest, FontSizeAndColourAreTheSettings)
{
    set("Times-Roman", "font");
    set("100", "size");
    set("0 1 1 0", "color");
    const auto page = run("showpage\n").pages.at(0);
    // A "H" in Times is 662 thousandths high and reaches from 19 to 702 thousandths.
    const auto box = page.boxOf(kRed).value();
    EXPECT_NEAR(66.2, box.top - box.bottom, 2);
    EXPECT_NEAR(68.3, box.right - box.left, 2);
    // Red is two thirds of black, and there is no other ink.
    EXPECT_NEAR(page.shareOf(kRed) * 2 / 3, page.coverage(), 1e-9);
}

TEST_F(WatermarkRunTest, MatrixAndColourOfThePageDoNotMoveIt)
{
    const auto plain = run("showpage\n");
    const auto turned =
        run("2 3 scale 45 rotate 100 100 translate 1 0 0 setrgbcolor /Courier 7 selectfont "
            "showpage\n");
    EXPECT_TRUE(plain.pages.at(0) == turned.pages.at(0));
}

TEST_F(WatermarkRunTest, OnEveryPageOnceAndWithoutAnError)
{
    const auto rendering = run("showpage showpage showpage count =\n");
    EXPECT_EQ("show H\nshow H\nshow H\n0\n", rendering.log);
    ASSERT_EQ(3U, rendering.pages.size());
    EXPECT_LT(0, rendering.pages[0].coverage());
    EXPECT_TRUE(rendering.pages[0] == rendering.pages[1]);
    EXPECT_TRUE(rendering.pages[0] == rendering.pages[2]);
}

TEST_F(WatermarkRunTest, NegativeAngleIsInstalledAndFailsAtThePage)
{
    set("-30", "angle");
    const auto atPage = "{ showpage } stopped { (page failed) = } if\n";
    EXPECT_EQ("error undefined\npage failed\nerror undefined\npage failed\n",
              run(std::string(atPage) + atPage).log);
}

TEST_F(WatermarkRunTest, SentTwiceItIsDrawnOnce)
{
    const std::string first = options.generageWatermarkCode();
    set("X", "text");
    const std::string second = options.generageWatermarkCode();
    const auto once = renderText(kPrinter + first + "showpage\n");
    const auto twice = renderText(kPrinter + first + first + second + "showpage count =\n");
    EXPECT_EQ("show H\n0\n", twice.log);
    EXPECT_TRUE(once.pages.at(0) == twice.pages.at(0));
}

TEST_F(WatermarkRunTest, EmptyTextLeavesThePageBlank)
{
    set("", "text");
    const auto rendering = run("showpage\n");
    EXPECT_EQ("show \n", rendering.log);
    EXPECT_EQ(0, rendering.pages.at(0).coverage());
}

TEST_F(WatermarkRunTest, PageProcedureFromBeforeIsStillAskedLast)
{
    const std::string before =
        "<< /EndPage { (reason ) print dup = exch pop 2 ne } >> setpagedevice\n";
    const auto rendering =
        renderText(kPrinter + before + options.generageWatermarkCode() + "showpage\n");
    EXPECT_THAT(rendering.log, HasSubstr("show H\nreason 0\n"));
    EXPECT_EQ(1U, rendering.pages.size());
}

TEST_F(WatermarkRunTest, PageProcedureFromBeforeStillDecidesAboutThePage)
{
    const std::string before = "<< /EndPage { pop pop false } >> setpagedevice\n";
    const auto rendering =
        renderText(kPrinter + before + options.generageWatermarkCode() + "showpage\n");
    EXPECT_THAT(rendering.log, HasSubstr("show H\n"));
    EXPECT_EQ(0U, rendering.pages.size());
}

namespace {

/// A page device without page procedures. What is installed is only kept, for the test to call:
/// Ghostscript throws away what a procedure leaves behind.
constexpr char kNoProcedures[] = "/currentpagedevice { << /PageSize [595 842] >> } def\n"
                                 "/KMRsetpagedevice { /installed exch def } def\n";

} // namespace

TEST_F(WatermarkRunTest, WithoutAnEndOfPageAllPagesButThoseOfALeftDeviceArePrinted)
{
    const auto rendering =
        renderText(std::string(kPrinter) + kNoProcedures + options.generageWatermarkCode() +
                   "0 0 installed /EndPage get exec = count =\n"
                   "0 1 installed /EndPage get exec = count =\n"
                   "0 2 installed /EndPage get exec = count =\n");
    EXPECT_EQ("show H\ntrue\n0\n"
              "show H\ntrue\n0\n"
              "show H\nfalse\n0\n",
              rendering.log);
}

// On purpose: the stand-in for a missing start of page leaves a true behind.
TEST_F(WatermarkRunTest, WithoutAStartOfPageATrueStaysBehind)
{
    set("0", "ordering");
    const auto rendering =
        renderText(std::string(kPrinter) + kNoProcedures + options.generageWatermarkCode() +
                   "0 installed /BeginPage get exec count = =\n");
    EXPECT_EQ("show H\n1\ntrue\n", rendering.log);
}

TEST_F(WatermarkRunTest, PrinterWithoutItsOwnProcedureLosesTheWatermarkAndNotTheJob)
{
    const auto rendering =
        renderText(std::string(kPrinter) + "userdict /KMRsetpagedevice undef\n" +
                   options.generageWatermarkCode() + "100 100 10 10 rectfill showpage\n");
    EXPECT_EQ("error undefined\n", rendering.log);
    ASSERT_EQ(1U, rendering.pages.size());
    EXPECT_DOUBLE_EQ(100 / (kWidth * kHeight), rendering.pages[0].coverage());
}

namespace {

/// A red box around the middle of the page; a line of text reaches out of it on both sides.
constexpr char kPageWithBox[] =
    "gsave 1 0 0 setrgbcolor 247 400 100 100 rectfill grestore showpage\n";
constexpr double kShareOfBox = 100 * 100 / (kWidth * kHeight);

class WatermarkOrderingTest : public WatermarkRunTest {
protected:
    WatermarkOrderingTest() { set("HHHHHHHHHH", "text"); }
};

} // namespace

TEST_F(WatermarkOrderingTest, OnTopItCoversThePage)
{
    const auto page = run(kPageWithBox).pages.at(0);
    EXPECT_LT(page.boxOf(kBlack).value().left, 247);
    EXPECT_LT(page.shareOf(kRed), 0.9 * kShareOfBox);
}

TEST_F(WatermarkOrderingTest, BeneathItIsCoveredByThePage)
{
    set("0", "ordering");
    const auto page = run(kPageWithBox).pages.at(0);
    EXPECT_LT(page.boxOf(kBlack).value().left, 247);
    EXPECT_DOUBLE_EQ(kShareOfBox, page.shareOf(kRed));
}

TEST_F(WatermarkOrderingTest, BeneathItIsOnEveryPageToo)
{
    set("0", "ordering");
    const auto rendering = run("showpage showpage count =\n");
    ASSERT_EQ(2U, rendering.pages.size());
    EXPECT_LT(0, rendering.pages[0].coverage());
    EXPECT_TRUE(rendering.pages[0] == rendering.pages[1]);
    EXPECT_THAT(rendering.log, Not(HasSubstr("error")));
    EXPECT_THAT(rendering.log, testing::EndsWith("\n0\n"));
}
