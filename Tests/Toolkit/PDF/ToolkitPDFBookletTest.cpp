#include "PDFCommands.h"

#include "MinimalPPD.h"
#include "PDFBuilder.h"
#include "Program.h"
#include "Rendering.h"
#include "Streams.h"
#include "TemporaryFolder.h"
#include "TextMeasuring.h"
#include "ToolkitError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qpdf/QPDF.hh>

#include <algorithm>

namespace {

using Support::Box;
using Support::kBlack;
using Support::kBlue;
using Support::kGreen;
using Support::kRed;
using Support::kWhite;
using Support::PDFBuilder;
using Support::RenderedPage;
using testing::HasSubstr;

/// Sheets of 600 by 400 points: each half takes a page of 300 by 400 at its own size.
constexpr char kExtraSizes[] = "*PageSize Test/Test: \"\"\n"
                               "*PaperDimension Test/Test: \"400 600\"\n"
                               "*PageSize Large/Large: \"\"\n"
                               "*PaperDimension Large/Large: \"842 1190\"\n";
constexpr double kWidth = 300;
constexpr double kHeight = 400;
constexpr char kHalf[] = "/MediaBox [0 0 300 400]";

Booklet plainBooklet(Ordering ordering = Ordering::LeftToRight)
{
    return {.pageSize = "Test", .centreMargin = 0, .outerMargin = 0, .ordering = ordering};
}

class ToolkitPDFBookletTest : public testing::Test {
protected:
    std::string folded(const std::string &document, const Booklet &booklet = plainBooklet()) const
    {
        return changed(document, booklet);
    }

    /// What a command makes of the document.
    template <class Request>
    std::string changed(const std::string &document, const Request &request) const
    {
        _folder.write("in", document);
        _folder.write("ppd", Support::minimalPPD(kExtraSizes));
        const Platform::Stream input = Platform::openForReading(_folder.file("in"));
        Platform::Stream output = Platform::openForWriting(_folder.file("out"));
        Platform::TextShaper texts;
        applyToPDF(request, {input.get(), output.get(), texts, _folder.file("ppd")});
        EXPECT_TRUE(Platform::closeStream(std::move(output)));
        return Support::readFile(_folder.file("out"));
    }

    std::string problem(const std::string &document, const Booklet &booklet) const
    {
        try {
            folded(document, booklet);
        } catch (const ToolkitError &error) {
            return error.what();
        }
        return "none";
    }

    const Support::TemporaryFolder _folder;
};

std::vector<RenderedPage> rendered(const std::string &document, double resolution = 72)
{
    return Support::renderText(document, {.resolution = resolution}).pages;
}

/// A green page of 300 by 400 points that carries its number in black squares across its middle,
/// the lowest bit first, and a blue square in its lower left corner.
std::string numberedPage(int number)
{
    std::string contents = "0 1 0 rg 0 0 300 400 re f 0 0 1 rg 0 0 40 40 re f 0 g\n";
    for (int bit = 0; bit < 7; ++bit) {
        if ((number >> bit & 1) != 0)
            contents += std::to_string(30 + 36 * bit) + " 190 24 24 re f\n";
    }
    return contents;
}

std::string numberedDocument(int pages)
{
    PDFBuilder builder;
    for (int number = 1; number <= pages; ++number)
        builder.addPage(kHalf, numberedPage(number));
    return builder.document();
}

/// The number of the page on one half of a side; 0 for a half that is white all over, -1 for
/// anything that is not a page in its place.
int numberOn(const RenderedPage &side, bool right)
{
    const double left = right ? kWidth : 0;
    const auto at = [&](double x, double y) { return side.colourAt({left + x, y}); };
    bool isWhite = true;
    for (double y = 2; y < kHeight; y += 4) {
        for (double x = 2; x < kWidth; x += 4)
            isWhite = isWhite && at(x, y) == kWhite;
    }
    if (isWhite)
        return 0;
    const bool isUpright = at(20, 20) == kBlue && at(280, 20) == kGreen && at(20, 380) == kGreen &&
                           at(280, 380) == kGreen;
    int number = 0;
    for (int bit = 0; bit < 7; ++bit)
        number += at(42 + 36 * bit, 202) == kBlack ? 1 << bit : 0;
    return isUpright ? number : -1;
}

/// What a reader finds who folds the sheets and turns the pages. The sides of a sheet lie back to
/// back as they do once it has been turned about its short edge.
std::vector<int> readFolded(const std::vector<RenderedPage> &sides, Ordering ordering)
{
    const bool leftToRight = ordering == Ordering::LeftToRight;
    std::vector<int> firstHalf;
    std::vector<int> secondHalf;
    for (std::size_t front = 0; front + 1 < sides.size(); front += 2) {
        const RenderedPage &back = sides[front + 1];
        // The leaf that is read first, its front and its back, then the other one from inside.
        firstHalf.push_back(numberOn(sides[front], leftToRight));
        firstHalf.push_back(numberOn(back, !leftToRight));
        secondHalf.push_back(numberOn(sides[front], !leftToRight));
        secondHalf.push_back(numberOn(back, leftToRight));
    }
    firstHalf.insert(firstHalf.end(), secondHalf.rbegin(), secondHalf.rend());
    return firstHalf;
}

class ToolkitPDFBookletOrderTest : public ToolkitPDFBookletTest,
                                   public testing::WithParamInterface<Ordering> {};

TEST_P(ToolkitPDFBookletOrderTest, BookletsOf1To64PagesReadInOrderOnceFolded)
{
    // All of them are rendered in one go, one behind the other.
    std::vector<std::string> join = {"qpdf", "--empty", "--pages"};
    for (int pages = 1; pages <= 64; ++pages)
        join.push_back(_folder.write("booklet" + std::to_string(pages),
                                     folded(numberedDocument(pages), plainBooklet(GetParam()))));
    join.insert(join.end(), {"--", _folder.file("all")});
    ASSERT_EQ(0, Support::runProgram({.arguments = join}).exitStatus);
    const auto sides = Support::renderFile(_folder.file("all"), {.resolution = 12}).pages;

    auto next = sides.begin();
    for (int pages = 1; pages <= 64; ++pages) {
        const int padded = (pages + 3) / 4 * 4;
        ASSERT_GE(sides.end() - next, padded / 2);
        std::vector<int> expected(static_cast<std::size_t>(padded), 0);
        for (int number = 1; number <= pages; ++number)
            expected[static_cast<std::size_t>(number - 1)] = number;
        EXPECT_EQ(expected, readFolded({next, next + padded / 2}, GetParam())) << pages;
        next += padded / 2;
    }
    EXPECT_EQ(sides.end(), next);
}

INSTANTIATE_TEST_SUITE_P(BothWays, ToolkitPDFBookletOrderTest,
                         testing::Values(Ordering::LeftToRight, Ordering::RightToLeft),
                         [](const auto &instance) {
                             return instance.param == Ordering::LeftToRight ? "LTR" : "RTL";
                         });

TEST_F(ToolkitPDFBookletTest, TheFirstFrontHasTheLastPageOnTheLeft)
{
    const auto sides = rendered(folded(numberedDocument(6)));
    ASSERT_EQ(4U, sides.size());
    const auto halves = [](const RenderedPage &side) {
        return std::pair(numberOn(side, false), numberOn(side, true));
    };
    EXPECT_EQ(std::pair(0, 1), halves(sides[0]));
    EXPECT_EQ(std::pair(2, 0), halves(sides[1]));
    EXPECT_EQ(std::pair(6, 3), halves(sides[2]));
    EXPECT_EQ(std::pair(4, 5), halves(sides[3]));
}

TEST_F(ToolkitPDFBookletTest, SheetsAreLandscapeAndTurnAboutTheShortEdge)
{
    Booklet booklet = plainBooklet();
    booklet.pageSize = "A4"; // 595 by 842 in the PPD
    const std::string result = folded(numberedDocument(1), booklet);
    QPDF pdf;
    pdf.processMemoryFile("booklet", result.data(), result.size());
    QPDFObjectHandle root = pdf.getRoot();
    EXPECT_EQ("/DuplexFlipShortEdge",
              root.getKey("/ViewerPreferences").getKey("/Duplex").getName());
    EXPECT_EQ("/1.7", root.getKey("/Version").getName());
    ASSERT_EQ(2U, pdf.getAllPages().size());
    for (QPDFObjectHandle page : pdf.getAllPages()) {
        const auto box = page.getKey("/MediaBox").getArrayAsRectangle();
        EXPECT_EQ(0, box.llx);
        EXPECT_EQ(0, box.lly);
        EXPECT_EQ(842, box.urx);
        EXPECT_EQ(595, box.ury);
        EXPECT_FALSE(page.hasKey("/Rotate"));
    }
}

TEST_F(ToolkitPDFBookletTest, APageSizeOutsideThePPDIsAStandardOne)
{
    Booklet booklet = plainBooklet();
    booklet.pageSize = "A5";
    const auto sides = rendered(folded(numberedDocument(1), booklet));
    EXPECT_NEAR(595, sides.at(0).width(), 1);
    EXPECT_NEAR(420, sides.at(0).height(), 1);
    booklet.pageSize = "Secret";
    EXPECT_EQ("The booklet's page size is not known.", problem(numberedDocument(1), booklet));
}

TEST_F(ToolkitPDFBookletTest, PagesAreScaledBySmallerRatioAndCentredInTheClearArea)
{
    Booklet booklet = plainBooklet();
    booklet.centreMargin = 40;
    booklet.outerMargin = 10;
    // Each half leaves 270 by 380 points: from 10 to 280 and from 320 to 590, from 10 to 390.
    PDFBuilder builder;
    builder.addPage("/MediaBox [0 0 135 380]", "0 1 0 rg 0 0 135 380 re f");
    builder.addPage("/MediaBox [0 0 27 19]", "0 1 0 rg 0 0 27 19 re f");
    builder.addPage("/MediaBox [0 0 2700 7600]", "0 1 0 rg 0 0 2700 7600 re f");
    builder.addPage("/MediaBox [0 0 300 400]", "0 1 0 rg 0 0 300 400 re f");
    const auto sides = rendered(folded(builder.document(), booklet), 144);
    ASSERT_EQ(2U, sides.size());

    const auto expectHalves = [](const RenderedPage &side, const Box &left, const Box &right) {
        for (const Box &box : {left, right}) {
            for (const auto &[x, y] : {std::pair(box.left, box.bottom), {box.right, box.top}}) {
                // A point inside the corner is green, a point outside is white.
                const double inward = x == box.left ? 1 : -1;
                EXPECT_EQ(kGreen, side.colourAt({x + inward, y + inward})) << x << " " << y;
                EXPECT_EQ(kWhite, side.colourAt({x - inward, y + inward})) << x << " " << y;
                EXPECT_EQ(kWhite, side.colourAt({x + inward, y - inward})) << x << " " << y;
            }
        }
    };
    // Front: page 4, by 0.9 to 270 by 360; page 1 as it is. Back: page 2, by 10 to 270 by 190;
    // page 3, by 0.05 to 135 by 380.
    expectHalves(sides[0], {10, 20, 280, 380}, {387.5, 10, 522.5, 390});
    expectHalves(sides[1], {10, 105, 280, 295}, {387.5, 10, 522.5, 390});
}

TEST_F(ToolkitPDFBookletTest, MarginsThatLeaveLessThan36PointsAreRefused)
{
    Booklet booklet = plainBooklet();
    booklet.outerMargin = 182;
    EXPECT_EQ("none", problem(numberedDocument(1), booklet));
    booklet.outerMargin = 182.1;
    EXPECT_THAT(problem(numberedDocument(1), booklet), HasSubstr("margins leave no room"));
    booklet = plainBooklet();
    booklet.centreMargin = 528.1;
    EXPECT_THAT(problem(numberedDocument(1), booklet), HasSubstr("margins leave no room"));
}

TEST_F(ToolkitPDFBookletTest, PagesStandAsTheyAreReadWhateverTheirRotation)
{
    // The same picture: read upright, its size is 300 by 400 and its blue corner the lower left.
    const std::vector<std::string> pages = {
        "/MediaBox [0 0 300 400] /Rotate 0",
        "/MediaBox [0 0 400 300] /Rotate 90",
        "/MediaBox [0 0 300 400] /Rotate 180",
        "/MediaBox [0 0 400 300] /Rotate -90",
        "/MediaBox [0 0 900 900] /CropBox [0 0 300 400]",
        "/MediaBox [-9 -9 300 400] /CropBox [0 0 300 400] /Rotate 360",
        "/MediaBox [0 0 150 200] /UserUnit 2",
    };
    // From the upright picture to user space.
    const std::vector<std::string> turns = {"1 0 0 1 0 0",    "0 1 -1 0 400 0", "-1 0 0 -1 300 400",
                                            "0 -1 1 0 0 300", "1 0 0 1 0 0",    "1 0 0 1 0 0",
                                            "0.5 0 0 0.5 0 0"};
    PDFBuilder builder;
    for (std::size_t i = 0; i < pages.size(); ++i)
        builder.addPage(pages[i], turns[i] + " cm " + numberedPage(static_cast<int>(i) + 1));
    const auto sides = rendered(folded(builder.document()));
    EXPECT_EQ((std::vector<int>{1, 2, 3, 4, 5, 6, 7, 0}), readFolded(sides, Ordering::LeftToRight));
}

TEST_F(ToolkitPDFBookletTest, SignaturesAreFoldedOneBehindTheOther)
{
    for (const Ordering ordering : {Ordering::LeftToRight, Ordering::RightToLeft}) {
        Booklet booklet = plainBooklet(ordering);
        booklet.signatureSheets = 2;
        const auto sides = rendered(folded(numberedDocument(19), booklet), 12);
        ASSERT_EQ(10U, sides.size());
        // Signatures of two sheets, two and one.
        std::vector<int> book;
        for (const auto &[first, end] : {std::pair(0, 4), {4, 8}, {8, 10}}) {
            const auto part = readFolded({sides.begin() + first, sides.begin() + end}, ordering);
            book.insert(book.end(), part.begin(), part.end());
        }
        EXPECT_EQ((std::vector<int>{1,  2,  3,  4,  5,  6,  7,  8,  9,  10,
                                    11, 12, 13, 14, 15, 16, 17, 18, 19, 0}),
                  book);
    }
}

TEST_F(ToolkitPDFBookletTest, PagesOfInnerSheetsMoveTowardsTheFold)
{
    Booklet booklet = plainBooklet();
    booklet.centreMargin = 20;
    booklet.outerMargin = 20;
    booklet.creep = 5;
    PDFBuilder builder;
    for (int page = 0; page < 12; ++page) // halves are 260 by 360 on three sheets, a page as well
        builder.addPage("/MediaBox [0 0 130 180]", "0 1 0 rg -9 -9 999 999 re f");
    const auto sides = rendered(folded(builder.document(), booklet));
    ASSERT_EQ(6U, sides.size());
    for (std::size_t side = 0; side < 6; ++side) {
        SCOPED_TRACE(side);
        const double moved = 5.0 * static_cast<double>(side / 2);
        const auto colour = [&](double x) { return sides[side].colourAt({x, 200}); };
        EXPECT_EQ(kWhite, colour(20 + moved - 1));
        EXPECT_EQ(kGreen, colour(20 + moved + 1));
        EXPECT_EQ(kGreen, colour(280 + moved - 1));
        EXPECT_EQ(kWhite, colour(280 + moved + 1));
        EXPECT_EQ(kWhite, colour(320 - moved - 1));
        EXPECT_EQ(kGreen, colour(320 - moved + 1));
        EXPECT_EQ(kGreen, colour(580 - moved - 1));
        EXPECT_EQ(kWhite, colour(580 - moved + 1));
    }
}

TEST_F(ToolkitPDFBookletTest, CreepThatLeavesNoRoomIsRefused)
{
    Booklet booklet = plainBooklet();
    booklet.creep = 133; // two sheets around the innermost: 300 - 2 * 133 is 34
    EXPECT_EQ("The booklet's margins and creep leave no room for the pages.",
              problem(numberedDocument(12), booklet));
    EXPECT_EQ("none", problem(numberedDocument(8), booklet));
}

TEST_F(ToolkitPDFBookletTest, LandscapePagesAreTurnedToFillTheirHalves)
{
    // Of each page the left foot is blue and the left head red.
    const std::string contents =
        "0 1 0 rg 0 0 400 300 re f 0 0 1 rg 0 0 40 40 re f 1 0 0 rg 0 260 40 40 re f";
    PDFBuilder builder;
    for (int page = 0; page < 3; ++page)
        builder.addPage("/MediaBox [0 0 400 300]", contents);
    builder.addPage(kHalf, "0 0 0 rg 0 0 40 40 re f"); // upright, and stays so
    for (const Ordering ordering : {Ordering::LeftToRight, Ordering::RightToLeft}) {
        Booklet booklet = plainBooklet(ordering);
        booklet.turnLandscape = true;
        const auto sides = rendered(folded(builder.document(), booklet));
        ASSERT_EQ(2U, sides.size());
        const bool leftToRight = ordering == Ordering::LeftToRight;
        const auto expectTurned = [&](const RenderedPage &side, double left) {
            const auto at = [&](double x, double y) { return side.colourAt({left + x, y}); };
            // The head lies on the left, or on the right.
            EXPECT_EQ(leftToRight ? kRed : kGreen, at(20, 20));
            EXPECT_EQ(leftToRight ? kBlue : kGreen, at(280, 20));
            EXPECT_EQ(leftToRight ? kGreen : kBlue, at(20, 380));
            EXPECT_EQ(leftToRight ? kGreen : kRed, at(280, 380));
        };
        expectTurned(sides[0], leftToRight ? kWidth : 0);
        expectTurned(sides[1], 0);
        expectTurned(sides[1], kWidth);
        EXPECT_EQ(kBlack, sides[0].colourAt({leftToRight ? 20 : kWidth + 20, 20}));
    }
}

TEST_F(ToolkitPDFBookletTest, LandscapeIsHowAPageIsRead)
{
    Booklet booklet = plainBooklet();
    booklet.turnLandscape = true;
    PDFBuilder builder;
    builder.addPage("/MediaBox [0 0 300 400] /Rotate 90", "0 1 0 rg 0 0 300 400 re f");
    builder.addPage("/MediaBox [0 0 400 300] /Rotate 90", "0 1 0 rg 0 0 400 300 re f");
    const auto sides = rendered(folded(builder.document(), booklet));
    ASSERT_EQ(2U, sides.size());
    for (const auto &[side, left] : {std::pair(0U, kWidth), {1U, 0.0}}) {
        for (const double x : {2.0, kWidth - 2}) {
            EXPECT_EQ(kGreen, sides[side].colourAt({left + x, 2})) << side;
            EXPECT_EQ(kGreen, sides[side].colourAt({left + x, kHeight - 2})) << side;
        }
    }
}

TEST_F(ToolkitPDFBookletTest, NothingLeavesThePagesOwnArea)
{
    PDFBuilder builder;
    const char *const flood = " 1 0 0 rg -9000 -9000 18000 18000 re f";
    builder.addPage("/MediaBox [0 0 300 300]", std::string("Q Q 2 0 0 2 9 9 cm") + flood);
    builder.addPage("/MediaBox [0 0 300 300]", std::string("q q 0 1 -1 0 0 0 cm") + flood);
    const auto sides = rendered(folded(builder.document()));
    ASSERT_EQ(2U, sides.size());
    const auto right = sides[0].inkBox();
    const auto left = sides[1].inkBox();
    ASSERT_TRUE(left && right);
    EXPECT_NEAR(300, right->left, 1);
    EXPECT_NEAR(600, right->right, 1);
    EXPECT_NEAR(50, right->bottom, 1);
    EXPECT_NEAR(350, right->top, 1);
    EXPECT_NEAR(0, left->left, 1);
    EXPECT_NEAR(300, left->right, 1);
}

TEST_F(ToolkitPDFBookletTest, WhatAPageLeavesBehindStaysWithIt)
{
    PDFBuilder builder;
    const char *const leftovers[] = {
        "q 3 0 0 3 5 5 cm", "Q Q 0 0 1 1 re W n", "BT /F1 9 Tf", "[ 1 2 (three",
        "10 10 m",          "/Span BMC",          "<< /Key",     "Q 0 1 -1 0 0 0 cm"};
    int number = 0;
    for (const char *leftover : leftovers)
        builder.addPage(kHalf, numberedPage(++number) + leftover);
    EXPECT_EQ((std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8}),
              readFolded(rendered(folded(builder.document())), Ordering::LeftToRight));
}

/// An annotation that draws a red square over the whole of its rectangle.
std::string annotation(PDFBuilder &builder, const std::string &rectangle,
                       const std::string &entries)
{
    const std::string appearance = builder.addStream(
        "1 0 0 rg 0 0 10 10 re f", "/Type /XObject /Subtype /Form /BBox [0 0 10 10]");
    return builder.add("<< /Type /Annot /Subtype /Stamp /Rect [" + rectangle + "] /AP << /N " +
                       appearance + " >> " + entries + " >>");
}

TEST_F(ToolkitPDFBookletTest, AnnotationsThatPrintStayWithTheirPage)
{
    PDFBuilder builder;
    builder.addPage(std::string(kHalf) + " /Annots [" +
                        annotation(builder, "200 300 220 320", "/F 4") + "]",
                    "Q q 5 0 0 5 0 0 cm");
    const auto box = rendered(folded(builder.document())).at(0).boxOf(kRed);
    ASSERT_TRUE(box);
    EXPECT_NEAR(500, box->left, 1);
    EXPECT_NEAR(520, box->right, 1);
    EXPECT_NEAR(300, box->bottom, 1);
    EXPECT_NEAR(320, box->top, 1);
}

TEST_F(ToolkitPDFBookletTest, ADamagedDocumentThatLostAnAnnotationsLookIsRefused)
{
    PDFBuilder builder;
    const std::string note = annotation(builder, "200 300 220 320", "/F 4");
    builder.addPage(std::string(kHalf) + " /Annots [" + note + "]", "0 0 9 9 re f");
    std::string document = builder.document();
    EXPECT_EQ("none", problem(document, plainBooklet()));
    document.replace(document.find("\n3 0 obj"), 8, "\n3 0 ob_");
    EXPECT_EQ("The PDF document is damaged: not all parts of its pages are there; open it and "
              "print it to a new PDF.",
              problem(document, plainBooklet()));
}

TEST_F(ToolkitPDFBookletTest, AnnotationsEndAtTheirPagesEdge)
{
    PDFBuilder builder;
    builder.addPage(kHalf);
    builder.addPage(std::string(kHalf) + " /Annots [" +
                    annotation(builder, "250 300 350 320", "/F 4") + "]");
    const auto box = rendered(folded(builder.document())).at(1).boxOf(kRed);
    ASSERT_TRUE(box);
    EXPECT_NEAR(250, box->left, 1);
    EXPECT_NEAR(300, box->right, 1);
}

TEST_F(ToolkitPDFBookletTest, AnnotationsTurnWithTheirPage)
{
    PDFBuilder builder;
    builder.addPage("/MediaBox [0 0 400 300] /Rotate 90 /Annots [" +
                    annotation(builder, "300 200 320 240", "/F 4") + "]");
    // Read, the point (x, y) is at (y, 400 - x).
    const auto box = rendered(folded(builder.document())).at(0).boxOf(kRed);
    ASSERT_TRUE(box);
    EXPECT_NEAR(500, box->left, 1);
    EXPECT_NEAR(540, box->right, 1);
    EXPECT_NEAR(80, box->bottom, 1);
    EXPECT_NEAR(100, box->top, 1);
}

TEST_F(ToolkitPDFBookletTest, AnnotationsThatDoNotPrintAreLeftOut)
{
    PDFBuilder builder;
    builder.addPage(std::string(kHalf) + " /Annots [" + annotation(builder, "10 10 20 20", "/F 0") +
                    " " + annotation(builder, "30 10 40 20", "/F 6") + " " + // hidden
                    annotation(builder, "50 10 60 20", "") + " null 7 << /F 4 >> " +
                    builder.add("<< /Subtype /Link /F 4 /Rect [1 2 3 4] >>") + "]");
    EXPECT_EQ(std::nullopt, rendered(folded(builder.document())).at(0).inkBox());
}

TEST_F(ToolkitPDFBookletTest, AnAnnotationShowsTheStateThatIsSet)
{
    PDFBuilder builder;
    const std::string on = builder.addStream("0 0 1 rg 0 0 10 10 re f",
                                             "/Type /XObject /Subtype /Form /BBox [0 0 10 10]");
    const std::string off = builder.addStream("1 0 0 rg 0 0 10 10 re f",
                                              "/Type /XObject /Subtype /Form /BBox [0 0 10 10]");
    builder.addPage(std::string(kHalf) + " /Annots [" +
                    builder.add("<< /Subtype /Widget /FT /Btn /F 4 /Rect [10 10 20 20] /AS /On "
                                "/AP << /N << /On " +
                                on + " /Off " + off + " >> >> >>") +
                    "]");
    const auto page = rendered(folded(builder.document())).at(0);
    EXPECT_TRUE(page.boxOf(kBlue));
    EXPECT_FALSE(page.boxOf(kRed));
}

TEST_F(ToolkitPDFBookletTest, HiddenLayersStayHidden)
{
    PDFBuilder builder;
    const std::string layer = builder.add("<< /Type /OCG /Name (Draft) >>");
    builder.addPage(std::string(kHalf) + " /Resources << /Properties << /L " + layer +
                        " >> >> /Annots [" +
                        annotation(builder, "10 10 20 20", "/F 4 /OC " + layer) + "]",
                    "/OC /L BDC 1 0 0 rg 50 50 50 50 re f EMC 0 0 1 rg 200 200 50 50 re f");
    const std::string document = builder.document(
        "", "/OCProperties << /OCGs [" + layer + "] /D << /OFF [" + layer + "] /Order [] >> >>");
    const auto page = rendered(folded(document)).at(0);
    EXPECT_TRUE(page.boxOf(kBlue));
    EXPECT_FALSE(page.boxOf(kRed));
}

TEST_F(ToolkitPDFBookletTest, FormFieldsAreFilledInWhereTheReaderShouldDoIt)
{
    PDFBuilder builder;
    const std::string field =
        builder.add("<< /Type /Annot /Subtype /Widget /FT /Tx /T (name) /V (Anna) /F 4 "
                    "/DA (/Helv 12 Tf 0 g) /Rect [50 50 250 80] >>");
    builder.addPage(std::string(kHalf) + " /Annots [" + field + "]");
    const std::string document = builder.document(
        "", "/AcroForm << /NeedAppearances true /Fields [" + field +
                "] /DA (/Helv 12 Tf 0 g) /DR << /Font << /Helv << /Type /Font /Subtype /Type1 "
                "/BaseFont /Helvetica /Encoding /WinAnsiEncoding >> >> >> >>");
    const auto ink = rendered(folded(document)).at(0).inkBox();
    ASSERT_TRUE(ink);
    EXPECT_GT(ink->left, 349);
    EXPECT_LT(ink->right, 550);
}

TEST_F(ToolkitPDFBookletTest, WhatPointsToTheOldPagesIsGone)
{
    PDFBuilder builder;
    builder.addPage(kHalf, numberedPage(1));
    const std::string result =
        folded(builder.document("", "/OpenAction [4 0 R /Fit] /PageLabels << /Nums [] >> "
                                    "/Lang (en) /ViewerPreferences << /PrintPageRange [0 0] "
                                    "/NumCopies 2 >>"));
    QPDF pdf;
    pdf.processMemoryFile("booklet", result.data(), result.size());
    QPDFObjectHandle root = pdf.getRoot();
    EXPECT_FALSE(root.hasKey("/OpenAction"));
    EXPECT_FALSE(root.hasKey("/PageLabels"));
    EXPECT_TRUE(root.hasKey("/Lang"));
    EXPECT_FALSE(root.getKey("/ViewerPreferences").hasKey("/PrintPageRange"));
    EXPECT_TRUE(root.getKey("/ViewerPreferences").hasKey("/NumCopies"));
    int pages = 0;
    for (QPDFObjectHandle object : pdf.getAllObjects())
        pages += object.isDictionaryOfType("/Page") ? 1 : 0;
    EXPECT_EQ(2, pages);
}

TEST_F(ToolkitPDFBookletTest, TransparentPagesKeepTheirLook)
{
    PDFBuilder builder;
    const char *const resources = " /Group << /S /Transparency /CS /DeviceRGB /K true >> "
                                  "/Resources << /ExtGState << /Half << /ca "
                                  "0.5 >> /Mixed << /BM /Screen >> >> >>";
    const char *const contents = "0 1 0 rg 0 0 200 400 re f /Half gs 1 0 0 rg 100 0 200 200 re f "
                                 "/Mixed gs 0 1 1 rg 0 200 300 100 re f";
    builder.addPage(std::string(kHalf) + resources, contents);
    const auto before = rendered(builder.document()).at(0);
    const auto side = rendered(folded(builder.document())).at(0);
    std::size_t different = 0;
    for (double y = 0.5; y < kHeight; ++y) {
        for (double x = 0.5; x < kWidth; ++x)
            different += before.colourAt({x, y}) == side.colourAt({x + kWidth, y}) ? 0U : 1U;
    }
    EXPECT_EQ(0U, different);
}

TEST_F(ToolkitPDFBookletTest, AWatermarkStandsOnEveryPageOfTheBooklet)
{
    Watermark watermark = {.above = true,
                           .font = "Helvetica",
                           .angle = 0,
                           .colour = {1, 0, 0},
                           .position = {60, 300},
                           .size = 30,
                           .text = "DRAFT"};
    const std::string marked = changed(numberedDocument(8), watermark);
    const auto sides = rendered(folded(marked));
    ASSERT_EQ(4U, sides.size());
    EXPECT_EQ((std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8}), readFolded(sides, Ordering::LeftToRight));
    const double one = rendered(marked).at(0).shareOf(kRed);
    for (const RenderedPage &side : sides)
        EXPECT_NEAR(one, side.shareOf(kRed), one / 20);
}

/// Whether one half of the side looks as the page does on its own, or is white for no page.
void expectHalf(const RenderedPage &side, double left, const RenderedPage *page)
{
    ASSERT_EQ(1190, side.width());
    ASSERT_EQ(842, side.height());
    std::size_t different = 0;
    for (double y = 0.5; y < 842; ++y) {
        for (double x = 0.5; x < 595; ++x) {
            const auto expected = page == nullptr ? kWhite : page->colourAt({x, y});
            different += side.colourAt({left + x, y}) == expected ? 0U : 1U;
        }
    }
    EXPECT_EQ(0U, different);
}

TEST_F(ToolkitPDFBookletTest, RealDocumentsLookTheSameInTheirHalves)
{
    _folder.write("ps", Support::readFile(KL_SAMPLE_DOCUMENT));
    const auto run = [](std::vector<std::string> arguments) {
        const auto result = Support::runProgram({.arguments = std::move(arguments)});
        ASSERT_EQ(0, result.exitStatus) << result.errors;
    };
    run({"gs", "-q", "-dSAFER", "-sDEVICE=pdfwrite", "-o", _folder.file("gs"), _folder.file("ps")});
    run({"pdftocairo", "-pdf", _folder.file("gs"), _folder.file("cairo")});
    Booklet booklet = plainBooklet();
    booklet.pageSize = "Large"; // 842 by 1190: each half takes a page of 595 by 842 as it is
    for (const char *name : {"gs", "cairo"}) {
        const std::string document = Support::readFile(_folder.file(name));
        const auto pages = rendered(document);
        ASSERT_EQ(5U, pages.size());
        const auto sides = rendered(folded(document, booklet));
        ASSERT_EQ(4U, sides.size());
        SCOPED_TRACE(name);
        expectHalf(sides[0], 0, nullptr);
        expectHalf(sides[0], 595, &pages[0]);
        expectHalf(sides[1], 0, &pages[1]);
        expectHalf(sides[1], 595, nullptr);
        expectHalf(sides[2], 0, nullptr);
        expectHalf(sides[2], 595, &pages[2]);
        expectHalf(sides[3], 0, &pages[3]);
        expectHalf(sides[3], 595, &pages[4]);
    }
}

} // namespace
