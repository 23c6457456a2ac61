#include "PJLChecker.h"
#include "Program.h"
#include "Rendering.h"
#include "TemporaryFolder.h"
#include "Watermarks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <map>
#include <span>

using Support::kRed;
using Place = Support::Point;
using Support::RenderedPage;
using Support::TemporaryFolder;
using testing::IsEmpty;

// Documents of the programs that people print with: each through the three commands of the toolkit
// and through the whole chain, compared page by page with the document as it came.

namespace {

constexpr double kResolution = 24; ///< pixels per inch
constexpr double kPixel = 72 / kResolution;

struct Document {
    const char *name;
    std::size_t pages = 3;
    bool hidesWhatIsBelow = false; ///< paints its pages white, or is a picture as large as they
    bool isLandscape = false;      ///< by its own word, on portrait paper
    bool isKept = false;           ///< else Tests/Documents/produce makes it
};

void PrintTo(const Document &document, std::ostream *stream)
{
    *stream << document.name;
}

const Document kDocuments[] = {
    {.name = "a2ps.ps"},
    {.name = "a2ps-two.ps", .isLandscape = true},
    {.name = "cairo.pdf"},
    {.name = "cairo.ps"},
    {.name = "cups-text.pdf"},
    {.name = "enscript.ps"},
    {.name = "ghostscript.pdf"},
    {.name = "ghostscript.ps"},
    {.name = "gnuplot.pdf"},
    {.name = "gnuplot.ps", .isLandscape = true},
    {.name = "graphviz.pdf", .pages = 1},
    {.name = "graphviz.ps", .pages = 4},
    {.name = "groff.ps"},
    {.name = "img2pdf.pdf", .hidesWhatIsBelow = true},
    {.name = "poppler.ps"},
    {.name = "psutils.ps"},
    {.name = "qpdf-linearized.pdf"},
    {.name = "qpdf-streams.pdf"},
    {.name = "chromium-7.pdf", .pages = 7, .isKept = true},
    {.name = "inkscape-1.ps", .pages = 1, .isKept = true},
    {.name = "inkscape-3.pdf", .isKept = true},
    {.name = "office-7.pdf", .pages = 7, .isKept = true},
    {.name = "r-3.pdf", .isKept = true},
    {.name = "r-3.ps", .isLandscape = true, .isKept = true},
    {.name = "tex-7.pdf", .pages = 7, .isKept = true},
    {.name = "tex-7.ps", .pages = 7, .isKept = true},
};

// --- Looks of pages ------------------------------------------------------------------------------

constexpr std::size_t kColumns = 20;
constexpr std::size_t kRows = 28;

/// How dark the fields of a page are, row by row from below; a red mark is not.
using Look = std::array<double, kColumns * kRows>;

/// @param colourAt  the colour at a place: parts of the page's width and height, from its lower
/// left
template <class ColourAt>
Look lookOf(const ColourAt &colourAt)
{
    constexpr std::size_t kSamples = 5; ///< of a field, in either direction
    Look look = {};
    for (std::size_t row = 0; row < kRows * kSamples; ++row) {
        for (std::size_t column = 0; column < kColumns * kSamples; ++column) {
            const Support::Colour colour =
                colourAt(Place{(static_cast<double>(column) + 0.5) / (kColumns * kSamples),
                               (static_cast<double>(row) + 0.5) / (kRows * kSamples)});
            look.at(row / kSamples * kColumns + column / kSamples) += 255 - colour.red;
        }
    }
    return look;
}

double distanceOf(const Look &one, const Look &other)
{
    double sum = 0;
    for (std::size_t field = 0; field < one.size(); ++field)
        sum += std::abs(one.at(field) - other.at(field));
    return sum;
}

Support::Colour colourWithin(const RenderedPage &page, Place place)
{
    return page.colourAt({std::clamp(place.x, 0.0, page.width() - kPixel / 2),
                          std::clamp(place.y, 0.0, page.height() - kPixel / 2)});
}

Look lookOf(const RenderedPage &page)
{
    return lookOf([&](Place part) {
        return colourWithin(page, {part.x * page.width(), part.y * page.height()});
    });
}

/// Half of one side of an A4 sheet, with a page that is scaled to fit and centred there.
class Half {
public:
    /// @param side    landscape, or upright with its halves turned by a quarter to the left
    /// @param format  has the size of the page
    Half(const RenderedPage &side, bool right, const RenderedPage &format)
        : _side(side),
          _isTurned(side.width() < side.height()),
          _width(format.width()),
          _height(format.height()),
          _scale(std::min(kWidth / _width, kHeight / _height)),
          _corner{(right ? kWidth : 0) + (kWidth - _width * _scale) / 2,
                  (kHeight - _height * _scale) / 2}
    {
    }

    Look look() const
    {
        return lookOf([this](Place part) { return colourAt(part); });
    }

    bool isMarked() const
    {
        constexpr int kSteps = 120;
        for (int step = 0; step < kSteps * kSteps; ++step) {
            const auto colour = colourAt(
                {(step % kSteps + 0.5) / kSteps, (static_cast<double>(step) / kSteps) / kSteps});
            if (colour.red > 200 && colour.green < 100 && colour.blue < 100)
                return true;
        }
        return false;
    }

private:
    static constexpr double kWidth = 841.89 / 2;
    static constexpr double kHeight = 595.276;

    Support::Colour colourAt(Place part) const
    {
        const Place place = {_corner.x + part.x * _width * _scale,
                             _corner.y + part.y * _height * _scale};
        return colourWithin(_side, _isTurned ? Place{_side.width() - place.y, place.x} : place);
    }

    const RenderedPage &_side;
    bool _isTurned;
    double _width;
    double _height;
    double _scale;
    Place _corner;
};

// --- The documents -------------------------------------------------------------------------------

bool isPDF(const std::string &path)
{
    return path.ends_with(".pdf");
}

/// The pages as the printer of such a format interprets them.
std::vector<RenderedPage> rendered(const std::string &path, bool smooth = false)
{
    const Support::RenderingOptions options = {
        .resolution = kResolution, .smooth = smooth, .timeLimit = std::chrono::seconds(20)};
    return isPDF(path) ? Support::renderFileWithPoppler(path, options).pages
                       : Support::renderFile(path, options).pages;
}

/// A document as it came, made once.
struct Original {
    explicit Original(const Document &document)
        : path(document.isKept ? KL_DOCUMENTS + std::string("/") + document.name
                               : folder.file(document.name))
    {
        if (!document.isKept)
            Support::runOrThrow({KL_DOCUMENTS "/produce", document.name, folder.path()});
        pages = rendered(path);
        for (const RenderedPage &page : rendered(path, true))
            looks.push_back(lookOf(page));
    }

    /// The number of the page that looks most like it; 0 for a blank.
    std::size_t numberOf(const Look &look) const
    {
        std::size_t best = 0;
        double least = distanceOf(look, Look{});
        for (std::size_t page = 0; page < looks.size(); ++page) {
            const double distance = distanceOf(look, looks[page]);
            if (distance < least) {
                best = page + 1;
                least = distance;
            }
        }
        return best;
    }

    const TemporaryFolder folder;
    std::string path;
    std::vector<RenderedPage> pages;
    std::vector<Look> looks;
};

const Original &originalOf(const Document &document)
{
    static std::map<std::string, Original> originals;
    const auto known = originals.find(document.name);
    return known != originals.end() ? known->second
                                    : originals.try_emplace(document.name, document).first->second;
}

// --- What is asked for ---------------------------------------------------------------------------

Watermark draft(bool above)
{
    return {above, "Helvetica-Bold", 30, {1, 0, 0}, {100, 60}, 40, "Draft"};
}

std::vector<std::string> watermarkArguments(const Watermark &mark)
{
    return {"watermark",  mark.above ? "--above" : "--below",
            "--font",     mark.font,
            "--angle",    "30",
            "--colour",   "1,0,0",
            "--size",     "40",
            "--text",     mark.text,
            "--position", "100,60"};
}

const std::vector<std::string> kBooklet = {"booklet", "--pagesize",    "A4", "--centremargin",
                                           "0",       "--outermargin", "0",  "--ordering",
                                           "LTR"};

const std::vector<std::string> kBlankCovers = {
    "coverpages",     "--front-style", "noprint",      "--front-media", "None",
    "--front-source", "AutoSelect",    "--back-style", "noprint",       "--back-media",
    "None",           "--back-source", "AutoSelect",   "--source",      "AutoSelect",
    "--media",        "None",          "--duplex",     "none"};

/// A red watermark, a booklet and, where the language has trays, blank covers.
std::string jobOptions(bool withCovers)
{
    std::string options = "com.kalmira.pde.watermark.text=DRAFT "
                          "com.kalmira.pde.watermark.font=Helvetica-Bold "
                          "com.kalmira.pde.watermark.color=1,0,0 "
                          "com.kalmira.pde.watermark.size=60 com.kalmira.pde.watermark.y=25 "
                          "BookletPaperSize=A4";
    if (withCovers)
        options += " UseFrontCover=True FrontCoverPrintStyle=NoPrint FrontCoverSource=Tray3"
                   " UseBackCover=True BackCoverPrintStyle=NoPrint BackCoverSource=Tray3";
    return options;
}

class ProducersTest : public testing::TestWithParam<Document> {
protected:
    static const Original &original() { return originalOf(GetParam()); }
    static const std::vector<RenderedPage> &pages() { return original().pages; }
    static bool isPDF() { return ::isPDF(original().path); }

    std::string output() const { return _folder.file(isPDF() ? "output.pdf" : "output.ps"); }

    /// What the toolkit makes of the document.
    void process(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), KL_TOOLKIT);
        arguments.insert(arguments.end(), {original().path, output()});
        const auto result = Support::runProgram({.arguments = std::move(arguments)});
        ASSERT_EQ(0, result.exitStatus) << result.errors;
    }

    /// Prints the document on the sample queue.
    /// @return the job's log; its pages are the output
    std::string print() const
    {
        const auto result = Support::runProgram(
            {.arguments = {KL_CHAIN, "7", "anna", "Report", "1", jobOptions(!isPDF()),
                           original().path},
             .environment = {{"PPD", isPDF() ? KL_SAMPLE_PDF_PPD : KL_SAMPLE_PPD},
                             {"TMPDIR", _folder.path()}}});
        EXPECT_EQ(0, result.exitStatus);
        EXPECT_THAT(Support::problemsOfPJLJob(result.output), IsEmpty());
        const auto job = Support::splitPJLJob(result.output);
        if (job)
            _folder.write(isPDF() ? "output.pdf" : "output.ps", job->body);
        return result.errors;
    }

    /// The sides are those of a booklet of all pages, in order.
    void expectBooklet(std::span<const RenderedPage> sides, bool isMarked) const
    {
        const std::size_t padded = (pages().size() + 3) / 4 * 4;
        ASSERT_EQ(padded / 2, sides.size());
        for (std::size_t at = 0; at < sides.size(); ++at) {
            for (const bool right : {false, true}) {
                SCOPED_TRACE(std::to_string(at) + (right ? ", right" : ", left"));
                // The early pages are on the right of the fronts and on the left of the backs.
                const bool isEarly = right == (at % 2 == 0);
                const std::size_t place = isEarly ? at + 1 : padded - at;
                const std::size_t expected = place <= pages().size() ? place : 0;
                const Half half(sides[at], right, pages()[expected == 0 ? 0 : expected - 1]);
                EXPECT_EQ(expected, original().numberOf(half.look()));
                EXPECT_EQ(isMarked && expected != 0, half.isMarked());
            }
        }
    }

private:
    TemporaryFolder _folder;
};

/// Where the ink of the watermark lies on the paper: turned along with a landscape page.
Support::Box inkOnPaper(const Watermark &mark, const RenderedPage &page)
{
    if (!ProducersTest::GetParam().isLandscape)
        return Support::inkBoxOf(mark);
    const Support::Box ink =
        Support::inkBoxOf(Support::onLandscapePage(mark, page.width(), page.height()));
    return {page.width() - ink.top, ink.left, page.width() - ink.bottom, ink.right};
}

// A renderer may paint all pixels that it touches, and the page's height is one of whole pixels.
constexpr double kTolerance = 1.5 * kPixel;

void expectInPlace(const RenderedPage &page, const Watermark &mark)
{
    const auto box = page.boxOf(kRed);
    ASSERT_TRUE(box);
    const Support::Box ink = inkOnPaper(mark, page);
    EXPECT_NEAR(ink.left, box->left, kTolerance);
    EXPECT_NEAR(ink.bottom, box->bottom, kTolerance);
    EXPECT_NEAR(ink.right, box->right, kTolerance);
    EXPECT_NEAR(ink.top, box->top, kTolerance);
}

/// As much of it as the page's own marks leave to be seen.
void expectNowhereElse(const RenderedPage &page, const Watermark &mark)
{
    const auto box = page.boxOf(kRed);
    ASSERT_TRUE(box);
    const Support::Box ink = inkOnPaper(mark, page);
    EXPECT_GT(box->left, ink.left - kTolerance);
    EXPECT_GT(box->bottom, ink.bottom - kTolerance);
    EXPECT_LT(box->right, ink.right + kTolerance);
    EXPECT_LT(box->top, ink.top + kTolerance);
}

TEST_P(ProducersTest, HasItsPages)
{
    EXPECT_EQ(GetParam().pages, pages().size());
    for (std::size_t page = 0; page < pages().size(); ++page) {
        EXPECT_FALSE(pages()[page].boxOf(kRed));
        EXPECT_EQ(page + 1, original().numberOf(original().looks[page]));
    }
}

TEST_P(ProducersTest, WatermarkIsOnTopOfEveryPageAndChangesNothingElse)
{
    process(watermarkArguments(draft(true)));
    const auto marked = rendered(output());
    ASSERT_EQ(pages().size(), marked.size());
    for (std::size_t page = 0; page < marked.size(); ++page) {
        SCOPED_TRACE(page);
        EXPECT_EQ(0U, Support::changesBesideText(pages()[page], marked[page], true));
        expectInPlace(marked[page], draft(true));
    }
}

TEST_P(ProducersTest, WatermarkIsBeneathEveryPageAndChangesNothingElse)
{
    process(watermarkArguments(draft(false)));
    const auto marked = rendered(output());
    ASSERT_EQ(pages().size(), marked.size());
    for (std::size_t page = 0; page < marked.size(); ++page) {
        SCOPED_TRACE(page);
        EXPECT_EQ(0U, Support::changesBesideText(pages()[page], marked[page], false));
        if (GetParam().hidesWhatIsBelow)
            EXPECT_FALSE(marked[page].boxOf(kRed));
        else
            expectNowhereElse(marked[page], draft(false));
    }
}

TEST_P(ProducersTest, BookletHasEveryPageInItsPlace)
{
    process(kBooklet);
    expectBooklet(rendered(output(), true), false);
}

TEST_P(ProducersTest, BlankCoversAreAroundIt)
{
    if (isPDF())
        return; // which has no means to choose a tray
    process(kBlankCovers);
    const auto covered = rendered(output());
    ASSERT_EQ(pages().size() + 2, covered.size());
    EXPECT_EQ(0, covered.front().coverage());
    EXPECT_EQ(0, covered.back().coverage());
    for (std::size_t page = 0; page < pages().size(); ++page)
        EXPECT_TRUE(pages()[page] == covered[page + 1]) << page;
}

TEST_P(ProducersTest, ChainPrintsItAsABookletUnderAWatermarkBetweenBlankCovers)
{
    const std::string log = print();
    EXPECT_THAT(log, testing::HasSubstr("PAGE: " + std::to_string(pages().size())));
    EXPECT_THAT(log, testing::Not(testing::HasSubstr("ERROR")));
    const auto printed = rendered(output(), true);
    std::span<const RenderedPage> sides = printed;
    if (!isPDF()) {
        ASSERT_GT(sides.size(), 2U);
        EXPECT_EQ(0, sides.front().coverage());
        EXPECT_EQ(0, sides.back().coverage());
        sides = sides.subspan(1, sides.size() - 2);
    }
    expectBooklet(sides, true);
}

std::string nameOf(const testing::TestParamInfo<Document> &test)
{
    std::string name = test.param.name;
    std::ranges::replace_if(
        name, [](char letter) { return letter == '.' || letter == '-'; }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Documents, ProducersTest, testing::ValuesIn(kDocuments), nameOf);

} // namespace
