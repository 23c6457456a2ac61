// The options store's cover pages, and their PostScript run by Ghostscript.

#include "BackCoverPages.h"
#include "KLPrintOptions.h"
#include "QueueTest.h"
#include "Rendering.h"
#include "SystemLogCapture.h"

#include <gmock/gmock.h>

using namespace Support;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr std::int64_t kUntouched = 4711;

constexpr char kOptions[] = R"PPD(*OpenUI *MediaType/Media: PickOne
*OrderDependency: 30 JCLSetup *MediaType
*DefaultMediaType: Plain
*MediaType Plain: "@PJL COMMENT DSSC PRINT MEDIA=PLAIN<0D0A>"
*MediaType Thick: "@PJL COMMENT DSSC PRINT MEDIA=THICK<0D0A>"
*MediaType Other: "@PJL SET MEDIA=OTHER<0D0A>"
*CloseUI: *MediaType
*OpenUI *InputSlot/Source: PickOne
*OrderDependency: 30 AnySetup *InputSlot
*DefaultInputSlot: Upper
*InputSlot Upper: "<< /MediaPosition 1 >> setpagedevice"
*InputSlot Lower: "<< /MediaPosition 2 >> setpagedevice"
*InputSlot Broken: "nosuchoperator"
*CloseUI: *InputSlot
)PPD";

constexpr char kMediaLine[] = "<< /KMRPrivate (DSSC PRINT MEDIA=THICK) >> KMRsetpagedevice\n";
constexpr char kSlotLine[] = "<< /MediaPosition 2 >> setpagedevice\n";
constexpr char kDuplexOff[] = "<< /Duplex false /Tumble false >> KMRsetpagedevice\n";

class KLPrintOptionsCoverPagesTest : public Support::QueueTest {
protected:
    KLPrintOptionsCoverPagesTest() { usePPD(kOptions); }

    /// A job of two sides that wants a cover on thick paper from the lower source.
    static KLPrintOptions coverOptions(const std::string &position, const std::string &style,
                                       const std::string &more = "Duplex=DuplexTumble")
    {
        const std::string prefix = " com.kalmira.pde.cover-pages.";
        const std::string use = position == "front" ? "useFrontCover" : "useBackCover";
        return KLPrintOptions(prefix + use + "=true" + prefix + position + "CoverSource=Lower" +
                              prefix + position + "CoverMediaType=Thick" + prefix + position +
                              "CoverPrintStyle=" + style + " " + more);
    }

    /// The cover's PostScript; the page number is left in `page`.
    std::optional<std::string> generated(const KLPrintOptions &options, std::string_view position)
    {
        page = kUntouched;
        return options.generateCoverPageCodeForPositionRestorationPage(position, page);
    }

    std::int64_t page = kUntouched;
};

std::string frontCoverText(const std::string &style, const std::string &addition)
{
    return "[{\n%%BeginFeature: *FrontCoverPage Lower-Thick-" + style + "\n" + kMediaLine +
           kSlotLine + addition + "%%EndFeature\n} stopped cleartomark\n";
}

} // namespace

// generateCoverPageCodeForPositionRestorationPage

TEST_F(KLPrintOptionsCoverPagesTest, BlankFrontCoverSwitchesDuplexOffAndEndsItsPage)
{
    EXPECT_EQ(frontCoverText("NoPrint", std::string(kDuplexOff) + "KMRshowpage\n"),
              generated(coverOptions("front", "NoPrint"), "front"));
    EXPECT_EQ(1, page);
}

TEST_F(KLPrintOptionsCoverPagesTest, BlankFrontCoverOfAOneSidedJobNeedsNoDuplexSwitch)
{
    EXPECT_EQ(frontCoverText("NoPrint", "KMRshowpage\n"),
              generated(coverOptions("front", "NoPrint", "Duplex=None"), "front"));
    EXPECT_EQ(1, page);
}

TEST_F(KLPrintOptionsCoverPagesTest, FrontCoverPrintedOnce)
{
    EXPECT_EQ(frontCoverText("Print1", kDuplexOff),
              generated(coverOptions("front", "Print1"), "front"));
    EXPECT_EQ(2, page);
    EXPECT_EQ(frontCoverText("Print1", ""),
              generated(coverOptions("front", "Print1", "Duplex=None"), "front"));
    EXPECT_EQ(2, page);
}

TEST_F(KLPrintOptionsCoverPagesTest, FrontCoverPrintedLikeTheJob)
{
    EXPECT_EQ(frontCoverText("Print", ""), generated(coverOptions("front", "Print"), "front"));
    EXPECT_EQ(3, page);
    EXPECT_EQ(frontCoverText("Print", ""),
              generated(coverOptions("front", "Print", "Duplex=None"), "front"));
    EXPECT_EQ(2, page);
}

TEST_F(KLPrintOptionsCoverPagesTest, UnknownFrontCoverStyleAddsNothingAndLeavesThePage)
{
    EXPECT_EQ(frontCoverText("noprint", ""), generated(coverOptions("front", "noprint"), "front"));
    EXPECT_EQ(kUntouched, page);
}

TEST_F(KLPrintOptionsCoverPagesTest, AnyDuplexValueButNoneCountsAsTwoSided)
{
    for (const char *duplex : {"Duplex=Sideways", "Duplex..n.=0"}) {
        generated(coverOptions("front", "Print", duplex), "front");
        EXPECT_EQ(3, page) << duplex;
    }
    KLPrintOptions options = coverOptions("front", "Print");
    for (const auto &value : {std::optional<KLValue>("none"), std::optional<KLValue>()}) {
        options.setValueForKey(value, "Duplex");
        generated(options, "front");
        EXPECT_EQ(3, page);
    }
}

TEST_F(KLPrintOptionsCoverPagesTest, NoneInAnyLetterCaseIsThePPDsOwnAndOneSided)
{
    generated(coverOptions("front", "Print", "Duplex=none"), "front");
    EXPECT_EQ(2, page);
}

TEST_F(KLPrintOptionsCoverPagesTest, BackCoverGetsNoAdditionAndNoPageWhateverItsStyle)
{
    for (const std::string style : {"NoPrint", "Print1", "Print", "other"}) {
        EXPECT_EQ("[{\n%%BeginFeature: *BackCoverPage Lower-Thick-" + style + "\n" + kMediaLine +
                      kSlotLine + "%%EndFeature\n} stopped cleartomark\n",
                  generated(coverOptions("back", style), "back"));
        EXPECT_EQ(kUntouched, page) << style;
    }
}

TEST_F(KLPrintOptionsCoverPagesTest, PositionMayBeInAnyLetterCase)
{
    const auto expected = frontCoverText("Print1", kDuplexOff);
    for (const char *position : {"FRONT", "Front", "fRONT"}) {
        EXPECT_EQ(expected, generated(coverOptions("front", "Print1"), position)) << position;
        EXPECT_EQ(2, page) << position;
    }
    EXPECT_THAT(generated(coverOptions("back", "Print"), "BACK").value_or(""),
                HasSubstr("*BackCoverPage"));
}

TEST_F(KLPrintOptionsCoverPagesTest, UseMayBeTrueInAnyLetterCase)
{
    KLPrintOptions options = coverOptions("front", "Print");
    for (const char *use : {"True", "true", "TRUE"}) {
        options.setValueForKey(use, "com.kalmira.pde.cover-pages.useFrontCover");
        EXPECT_TRUE(generated(options, "front").has_value()) << use;
    }
}

TEST_F(KLPrintOptionsCoverPagesTest, CoverThatIsNotEnabledIsToldToTheSystemLogAlone)
{
    const Support::SystemLogCapture log;
    KLPrintOptions options = coverOptions("front", "Print");
    options.setValueForKey("False", "com.kalmira.pde.cover-pages.useFrontCover");
    testing::internal::CaptureStderr();
    EXPECT_EQ(std::nullopt, generated(options, "fRont"));
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
    EXPECT_EQ(kUntouched, page);
    EXPECT_THAT(log.texts(), ElementsAre("Front cover is not enabled "
                                         "(com.kalmira.pde.cover-pages.useFrontCover = False)"));
}

TEST_F(KLPrintOptionsCoverPagesTest, MissingUseKeyIsLoggedAsNull)
{
    const Support::SystemLogCapture log;
    EXPECT_EQ(std::nullopt, generated(coverOptions("front", "Print"), "back"));
    EXPECT_EQ(kUntouched, page);
    EXPECT_THAT(log.texts(), ElementsAre("Back cover is not enabled "
                                         "(com.kalmira.pde.cover-pages.useBackCover = (null))"));
}

TEST_F(KLPrintOptionsCoverPagesTest, NumberIsNotTrueAndIsLoggedInItsTextForm)
{
    const Support::SystemLogCapture log;
    KLPrintOptions options = coverOptions("front", "Print");
    options.setValueForKey(true, "com.kalmira.pde.cover-pages.useFrontCover");
    EXPECT_EQ(std::nullopt, generated(options, "front"));
    EXPECT_THAT(log.texts(), ElementsAre("Front cover is not enabled "
                                         "(com.kalmira.pde.cover-pages.useFrontCover = 1)"));
}

TEST_F(KLPrintOptionsCoverPagesTest, LineBreakInAValueDoesNotStartASecondLogLine)
{
    const Support::SystemLogCapture log;
    KLPrintOptions options = coverOptions("front", "Print");
    options.setValueForKey("no\nsudo: accepted", "com.kalmira.pde.cover-pages.useFrontCover");
    generated(options, "front");
    EXPECT_THAT(log.texts(),
                ElementsAre("Front cover is not enabled "
                            "(com.kalmira.pde.cover-pages.useFrontCover = no sudo: accepted)"));
}

TEST_F(KLPrintOptionsCoverPagesTest, MissingSettingGivesNothingAndNoLogLine)
{
    const Support::SystemLogCapture log;
    for (const char *key : {"Source", "MediaType", "PrintStyle"}) {
        KLPrintOptions options = coverOptions("front", "NoPrint");
        options.setValueForKey(std::nullopt,
                               std::string("com.kalmira.pde.cover-pages.frontCover") + key);
        EXPECT_EQ(std::nullopt, generated(options, "front")) << key;
        EXPECT_EQ(kUntouched, page) << key;
    }
    EXPECT_THAT(log.texts(), IsEmpty());
}

TEST_F(KLPrintOptionsCoverPagesTest, GeneratedCoverIsNotLogged)
{
    const Support::SystemLogCapture log;
    EXPECT_TRUE(generated(coverOptions("front", "NoPrint"), "front").has_value());
    EXPECT_THAT(log.texts(), IsEmpty());
}

TEST_F(KLPrintOptionsCoverPagesTest, MediaTypeThatIsNoJobControlSettingHasASubstitute)
{
    for (const std::string media : {"Other", "NoSuchChoice"}) {
        KLPrintOptions options = coverOptions("back", "Print");
        options.setValueForKey(media, "com.kalmira.pde.cover-pages.backCoverMediaType");
        EXPECT_EQ("[{\n%%BeginFeature: *BackCoverPage Lower-" + media +
                      "-Print\n<< /MediaType (null) >> KMRsetpagedevice\n\n" + kSlotLine +
                      "%%EndFeature\n} stopped cleartomark\n",
                  generated(options, "back"));
    }
}

TEST_F(KLPrintOptionsCoverPagesTest, UnknownSourceIsWrittenAsNull)
{
    KLPrintOptions options = coverOptions("back", "Print");
    options.setValueForKey("NoSuchSlot", "com.kalmira.pde.cover-pages.backCoverSource");
    EXPECT_EQ(std::string("[{\n%%BeginFeature: *BackCoverPage NoSuchSlot-Thick-Print\n") +
                  kMediaLine + "(null)\n%%EndFeature\n} stopped cleartomark\n",
              generated(options, "back"));
}

// calculateBackCoverPageFromTotalPages

namespace {

struct Combination {
    const char *backStyle; ///< null for none
    const char *duplex;    ///< null for none
    const char *useFront;  ///< null for none
    const char *frontStyle;
    const Support::BackCoverPages &expected;
};

constexpr Combination kCombinations[] = {
    {"NoPrint", "None", nullptr, nullptr, kBehindTheLast},
    {"NoPrint", "None", "True", "NoPrint", kBehindTheLast},
    {"NoPrint", "None", "True", "Print1", kBehindTheLast},
    {"NoPrint", "None", "True", "Print", kBehindTheLast},
    {"NoPrint", "DuplexTumble", nullptr, nullptr, kBehindTheLast},
    {"NoPrint", "DuplexTumble", "True", "NoPrint", kBehindTheLast},
    {"NoPrint", "DuplexTumble", "True", "Print1", kBehindTheLast},
    {"NoPrint", "DuplexTumble", "True", "Print", kBehindTheLast},

    {"Print1", "None", nullptr, nullptr, kLast},
    {"Print1", "None", "True", "NoPrint", kLast},
    {"Print1", "None", "True", "Print1", kLast},
    {"Print1", "None", "True", "Print", kLast},
    {"Print1", "DuplexTumble", nullptr, nullptr, kLast},
    {"Print1", "DuplexTumble", "True", "NoPrint", kLast},
    {"Print1", "DuplexTumble", "True", "Print1", kLast},
    {"Print1", "DuplexTumble", "True", "Print", kLast},

    {"Print", "None", nullptr, nullptr, kLast},
    {"Print", "None", "True", "NoPrint", kLast},
    {"Print", "None", "True", "Print1", kLast},
    {"Print", "None", "True", "Print", kLast},
    {"Print", "DuplexTumble", nullptr, nullptr, kLastOdd},
    {"Print", "DuplexTumble", "True", "NoPrint", kLastOdd},
    {"Print", "DuplexTumble", "True", "Print1", kLastEven},
    {"Print", "DuplexTumble", "True", "Print", kLastOdd},

    // Two-sided is all that is not exactly "None".
    {"Print", "DuplexNoTumble", nullptr, nullptr, kLastOdd},
    {"Print", "none", nullptr, nullptr, kLastOdd},
    {"Print", nullptr, nullptr, nullptr, kLastOdd},
    {"Print", nullptr, "True", "Print1", kLastEven},
    // The front is printed once only when it is wanted, in exactly that style.
    {"Print", "DuplexTumble", "TRUE", "Print1", kLastEven},
    {"Print", "DuplexTumble", "False", "Print1", kLastOdd},
    {"Print", "DuplexTumble", nullptr, "Print1", kLastOdd},
    {"Print", "DuplexTumble", "True", "print1", kLastOdd},
    {"Print", "DuplexTumble", "True", nullptr, kLastOdd},

    {nullptr, "None", "True", "Print1", kNever},
    {nullptr, "DuplexTumble", nullptr, nullptr, kNever},
    {"print", "None", "True", "Print1", kNever},
    {"noprint", "DuplexTumble", nullptr, nullptr, kNever},
    {"", "DuplexTumble", "True", "Print", kNever},
};

std::optional<KLValue> valueOf(const char *text)
{
    return text != nullptr ? std::optional<KLValue>(text) : std::nullopt;
}

class StoredBackCoverPageTest : public Support::QueueTest {
protected:
    static KLPrintOptions options(const Combination &combination)
    {
        KLPrintOptions options("com.kalmira.pde.cover-pages.useBackCover=true");
        options.setValueForKey(valueOf(combination.backStyle),
                               "com.kalmira.pde.cover-pages.backCoverPrintStyle");
        options.setValueForKey(valueOf(combination.duplex), "Duplex");
        options.setValueForKey(valueOf(combination.useFront),
                               "com.kalmira.pde.cover-pages.useFrontCover");
        options.setValueForKey(valueOf(combination.frontStyle),
                               "com.kalmira.pde.cover-pages.frontCoverPrintStyle");
        return options;
    }

    static std::string name(const Combination &combination)
    {
        const auto shown = [](const char *text) { return text != nullptr ? text : "(none)"; };
        return std::string("back ") + shown(combination.backStyle) + ", Duplex " +
               shown(combination.duplex) + ", front " + shown(combination.useFront) + " " +
               shown(combination.frontStyle);
    }
};

} // namespace

TEST_F(StoredBackCoverPageTest, FollowsSidesFrontAndBackStyle)
{
    for (const Combination &combination : kCombinations) {
        const KLPrintOptions store = options(combination);
        for (auto total = combination.expected.kFewest; total <= combination.expected.kMost;
             ++total)
            EXPECT_EQ(combination.expected.forTotal(total),
                      store.calculateBackCoverPageFromTotalPages(total))
                << name(combination) << ", " << total << " pages";
    }
}

TEST_F(StoredBackCoverPageTest, ThereIsNoneUnlessItIsWanted)
{
    KLPrintOptions store = options({"NoPrint", "None", "True", "Print1", kNever});
    for (const char *use : {"False", "", "yes", "1"}) {
        store.setValueForKey(use, "com.kalmira.pde.cover-pages.useBackCover");
        EXPECT_EQ(-1, store.calculateBackCoverPageFromTotalPages(5)) << use;
    }
    store.setValueForKey(true, "com.kalmira.pde.cover-pages.useBackCover");
    EXPECT_EQ(-1, store.calculateBackCoverPageFromTotalPages(5));
    store.setValueForKey(std::nullopt, "com.kalmira.pde.cover-pages.useBackCover");
    EXPECT_EQ(-1, store.calculateBackCoverPageFromTotalPages(5));
    store.setValueForKey("tRUE", "com.kalmira.pde.cover-pages.useBackCover");
    EXPECT_EQ(6, store.calculateBackCoverPageFromTotalPages(5));
}

// The PostScript, run

namespace {

/// The printer's environment: what changes the page device is logged and then done, pages and
/// caught errors are logged.
constexpr char kPrinter[] = R"PS(%!PS
/setpagedevice {
    [ /KMRPrivate /MediaType /MediaPosition /Duplex /Tumble ] {
        2 copy known { dup =only ( ) print 1 index exch get == } { pop } ifelse
    } forall
    //setpagedevice
} def
/KMRsetpagedevice { setpagedevice } def
/KMRshowpage { (page) = showpage } def
/stopped { //stopped dup { (error ) print $error /errorname get = } if } def
<< /PageSize [200 100] /Policies << /PolicyNotFound 1 >> >> setpagedevice
)PS";

constexpr char kJobPage[] = "50 50 20 20 rectfill KMRshowpage\n";

class CoverPageRunTest : public KLPrintOptionsCoverPagesTest {
protected:
    Support::Rendering run(const KLPrintOptions &options, std::string_view position)
    {
        return Support::renderText(kPrinter + generated(options, position).value() + kJobPage +
                                   "count =\n");
    }
};

} // namespace

TEST_F(CoverPageRunTest, BlankFrontCoverIsABlankOneSidedSheetBeforeTheJob)
{
    const auto rendering = run(coverOptions("front", "NoPrint"), "front");
    EXPECT_EQ("KMRPrivate (DSSC PRINT MEDIA=THICK)\n"
              "MediaPosition 2\n"
              "Duplex false\n"
              "Tumble false\n"
              "page\n"
              "page\n"
              "0\n",
              rendering.log);
    ASSERT_EQ(2U, rendering.pages.size());
    EXPECT_EQ(0, rendering.pages[0].coverage());
    EXPECT_LT(0, rendering.pages[1].coverage());
}

TEST_F(CoverPageRunTest, FrontCoverPrintedOnceIsThePageItself)
{
    const auto rendering = run(coverOptions("front", "Print1"), "front");
    EXPECT_EQ("KMRPrivate (DSSC PRINT MEDIA=THICK)\n"
              "MediaPosition 2\n"
              "Duplex false\n"
              "Tumble false\n"
              "page\n"
              "0\n",
              rendering.log);
    ASSERT_EQ(1U, rendering.pages.size());
    EXPECT_LT(0, rendering.pages[0].coverage());
}

TEST_F(CoverPageRunTest, BackCoverChangesMediaAndSourceOnly)
{
    const auto rendering = run(coverOptions("back", "NoPrint"), "back");
    EXPECT_EQ("KMRPrivate (DSSC PRINT MEDIA=THICK)\n"
              "MediaPosition 2\n"
              "page\n"
              "0\n",
              rendering.log);
    EXPECT_EQ(1U, rendering.pages.size());
}

TEST_F(CoverPageRunTest, SubstitutesForMissingCodesAreHarmless)
{
    KLPrintOptions options = coverOptions("front", "NoPrint", "Duplex=None");
    options.setValueForKey("NoSuchSlot", "com.kalmira.pde.cover-pages.frontCoverSource");
    options.setValueForKey("NoSuchMedia", "com.kalmira.pde.cover-pages.frontCoverMediaType");
    EXPECT_EQ("MediaType (null)\n"
              "page\n"
              "page\n"
              "0\n",
              run(options, "front").log);
}

TEST_F(CoverPageRunTest, ErrorInsideIsCaughtAndTheJobGoesOn)
{
    KLPrintOptions options = coverOptions("front", "NoPrint");
    options.setValueForKey("Broken", "com.kalmira.pde.cover-pages.frontCoverSource");
    const auto rendering = run(options, "front");
    EXPECT_EQ("KMRPrivate (DSSC PRINT MEDIA=THICK)\n"
              "error undefined\n"
              "page\n"
              "0\n",
              rendering.log);
    EXPECT_EQ(1U, rendering.pages.size());
}

TEST_F(CoverPageRunTest, EveryCombinationRunsWithoutAnErrorAndLeavesNothingBehind)
{
    std::string document = kPrinter;
    int covers = 0;
    for (const std::string position : {"front", "back"}) {
        for (const char *style : {"NoPrint", "Print1", "Print", "other"}) {
            for (const char *duplex : {"None", "DuplexNoTumble", "DuplexTumble"}) {
                for (const char *source : {"Upper", "Lower", "NoSuchSlot"}) {
                    for (const char *media : {"Plain", "Other", "NoSuchMedia"}) {
                        KLPrintOptions options = coverOptions(position, style);
                        options.setValueForKey(duplex, "Duplex");
                        const std::string prefix = "com.kalmira.pde.cover-pages." + position;
                        options.setValueForKey(source, prefix + "CoverSource");
                        options.setValueForKey(media, prefix + "CoverMediaType");
                        document += generated(options, position).value();
                        ++covers;
                    }
                }
            }
        }
    }
    ASSERT_EQ(2 * 4 * 3 * 3 * 3, covers);
    const auto rendering = Support::renderText(document + "(operands ) print count =\n");
    EXPECT_THAT(rendering.log, Not(HasSubstr("error")));
    EXPECT_THAT(rendering.log, HasSubstr("operands 0\n"));
    // A blank sheet for each front cover in the style "NoPrint".
    EXPECT_EQ(3U * 3 * 3, rendering.pages.size());
}
