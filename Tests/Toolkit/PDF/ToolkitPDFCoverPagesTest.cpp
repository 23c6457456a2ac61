#include "ToolkitPDF.h"

#include "MinimalPPD.h"
#include "PDFBuilder.h"
#include "Rendering.h"
#include "ToolkitError.h"

#include <gtest/gtest.h>
#include <qpdf/QPDF.hh>

#include <cmath>

namespace {

using enum CoverStyle;
using Support::PDFBuilder;

constexpr char kOwnWord[] = "*OpenUI *Duplex/Sides: PickOne\n"
                            "*DefaultDuplex: Simplex\n"
                            "*Duplex Simplex/One: \"<< /Duplex  false >> setpagedevice\"\n"
                            "*Duplex Single/One: \"@PJL SET DUPLEX = OFF<0A>\"\n"
                            "*Duplex Book/Two: \"<< /Duplex true >> setpagedevice\"\n"
                            "*CloseUI: *Duplex\n";

CoverPages covers(CoverStyle front, CoverStyle back, const std::string &duplex)
{
    return {.back = {back, "None", "Tray1"},
            .front = {front, "None", "Tray1"},
            .source = "AutoSelect",
            .media = "None",
            .duplex = duplex,
            .inPDF = true};
}

/// Page 1 is 101 points wide, page 2 102 and so on; all are black.
std::string document(int pages)
{
    PDFBuilder builder;
    for (int page = 1; page <= pages; ++page)
        builder.addPage("/MediaBox [0 0 " + std::to_string(100 + page) + " 50]", "0 0 200 50 re f");
    return builder.document();
}

std::string covered(const std::string &pdf, const CoverPages &request)
{
    return processedPDF(pdf, request, Support::minimalPPD(kOwnWord));
}

/// The sides that are printed: a page by its number, "(1)" for a blank one of page 1's size.
std::string sides(int pages, CoverStyle front, CoverStyle back, const std::string &duplex)
{
    std::string text;
    const std::string result = covered(document(pages), covers(front, back, duplex));
    for (const auto &side : Support::renderText(result).pages) {
        const std::string number = std::to_string(std::lround(side.width()) - 100);
        text += side.coverage() == 0 ? "(" + number + ")" : number;
    }
    return text;
}

TEST(ToolkitPDFCoverPagesTest, CoversAreRefusedUnlessTheJobsOwnPaperWillDo)
{
    CoverPages request = covers(NoPrint, None, "none");
    request.inPDF = false;
    try {
        covered(document(1), request);
        FAIL();
    } catch (const ToolkitError &error) {
        EXPECT_STREQ("Cover pages need a PostScript document: PDF cannot choose trays.",
                     error.what());
    }
}

TEST(ToolkitPDFCoverPagesTest, PrintedOnOneSideACoverIsAPage)
{
    EXPECT_EQ("123", sides(3, None, None, "none"));
    EXPECT_EQ("(1)123(3)", sides(3, NoPrint, NoPrint, "none"));
    EXPECT_EQ("123", sides(3, Print1, Print1, "none"));
    EXPECT_EQ("123", sides(3, Print, Print, "none"));
}

TEST(ToolkitPDFCoverPagesTest, PrintedOnBothSidesABlankCoverIsASheet)
{
    for (const char *duplex : {"tumble", "notumble"}) {
        EXPECT_EQ("(1)(1)123", sides(3, NoPrint, None, duplex));
        EXPECT_EQ("1234(4)", sides(4, None, NoPrint, duplex));
        EXPECT_EQ("(1)(1)123(3)(3)", sides(3, NoPrint, NoPrint, duplex));
    }
}

TEST(ToolkitPDFCoverPagesTest, PrintedOnBothSidesACoverWithOnePageHasABlankBack)
{
    EXPECT_EQ("1(1)234", sides(4, Print1, None, "notumble"));
    EXPECT_EQ("123(3)4", sides(4, None, Print1, "notumble"));
    EXPECT_EQ("1(1)23(3)", sides(3, Print1, NoPrint, "notumble"));
    EXPECT_EQ("1(1)2", sides(2, Print1, Print1, "notumble"));
    EXPECT_EQ("1", sides(1, Print1, None, "notumble"));
}

TEST(ToolkitPDFCoverPagesTest, PrintedOnBothSidesACoverThatIsPrintedLikeTheJobHasTwoPages)
{
    EXPECT_EQ("1234", sides(4, Print, None, "notumble"));
    EXPECT_EQ("12345", sides(5, Print, Print, "notumble"));
    EXPECT_EQ("123456(6)", sides(6, Print, Print, "notumble")); // the last sheet begins behind 6
    EXPECT_EQ("1(1)2345", sides(5, Print1, Print, "notumble"));
    EXPECT_EQ("1(1)(1)", sides(1, Print, NoPrint, "notumble"));
}

TEST(ToolkitPDFCoverPagesTest, ThePPDSaysWhichOfItsWordsIsOneSided)
{
    EXPECT_EQ("(1)12", sides(2, NoPrint, None, "Simplex"));
    EXPECT_EQ("(1)12", sides(2, NoPrint, None, "Single"));
    EXPECT_EQ("(1)(1)12", sides(2, NoPrint, None, "Book"));
    EXPECT_EQ("(1)(1)12", sides(2, NoPrint, None, "Unknown"));
}

// What the page has from the page tree, the blank one has, too.
TEST(ToolkitPDFCoverPagesTest, ABlankPageIsOfItsNeighboursSize)
{
    PDFBuilder builder;
    builder.addPage("/UserUnit 2", "0 0 9 9 re f");
    builder.addPage("/MediaBox [0 0 300 400]", "0 0 9 9 re f");
    const std::string result =
        covered(builder.document("/MediaBox [0 0 100 200] /CropBox [10 10 90 60] /Rotate 90"),
                covers(NoPrint, NoPrint, "none"));
    QPDF pdf;
    pdf.processMemoryFile("covered", result.data(), result.size());
    const auto pages = pdf.getAllPages();
    ASSERT_EQ(4U, pages.size());
    for (const char *key : {"/MediaBox", "/CropBox", "/Rotate", "/UserUnit"}) {
        for (const auto &[blank, page] : {std::pair(0, 1), std::pair(3, 2)})
            EXPECT_EQ(
                QPDFObjectHandle(pages[static_cast<std::size_t>(page)]).getKey(key).unparse(),
                QPDFObjectHandle(pages[static_cast<std::size_t>(blank)]).getKey(key).unparse())
                << key;
    }
    EXPECT_EQ("[ 0 0 100 200 ]", QPDFObjectHandle(pages[0]).getKey("/MediaBox").unparseResolved());
    EXPECT_EQ("2", QPDFObjectHandle(pages[0]).getKey("/UserUnit").unparse());
}

TEST(ToolkitPDFCoverPagesTest, WhatTheDocumentHoldsStaysButForWhatCountsItsPages)
{
    PDFBuilder builder;
    builder.addPage(
        "/MediaBox [0 0 100 100] /Annots [<< /Type /Annot /Subtype /Link /Rect [0 0 9 9] "
        "/Dest [3 0 R /Fit] >>]");
    const std::string result = covered(
        builder.document("", "/Outlines << /Count 0 >> /PageLabels << /Nums [0 << /S /r >>] >> "
                             "/ViewerPreferences << /PrintPageRange [0 0] /NumCopies 2 >>"),
        covers(NoPrint, None, "none"));
    QPDF pdf;
    pdf.processMemoryFile("covered", result.data(), result.size());
    QPDFObjectHandle root = pdf.getRoot();
    EXPECT_TRUE(root.hasKey("/Outlines"));
    EXPECT_FALSE(root.hasKey("/PageLabels"));
    EXPECT_FALSE(root.getKey("/ViewerPreferences").hasKey("/PrintPageRange"));
    EXPECT_TRUE(root.getKey("/ViewerPreferences").hasKey("/NumCopies"));
    QPDFObjectHandle page = pdf.getAllPages().at(1);
    EXPECT_EQ(page.getObjGen(),
              page.getKey("/Annots").getArrayItem(0).getKey("/Dest").getArrayItem(0).getObjGen());
}

} // namespace
