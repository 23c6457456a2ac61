#include "PDFPageCount.h"

#include "PDFBuilder.h"

#include <gtest/gtest.h>

#include <exception>
#include <string>

using Platform::pagesOfPDF;
using Platform::pagesOfPDFWithModule;

namespace {

std::string document(int pages)
{
    Support::PDFBuilder builder;
    for (int page = 0; page < pages; ++page)
        builder.addPage("/MediaBox [0 0 9 9]");
    return builder.document();
}

/// With what the document says of the number of its pages made wrong.
std::string documentThatLies()
{
    std::string pdf = document(3);
    pdf.replace(pdf.find("/Count 3"), 8, "/Count 7");
    return pdf;
}

/// Encrypted with a password that is not known; the key's check fails for the empty one.
std::string encryptedDocument()
{
    std::string pdf = document(3);
    const std::string zeros(64, '0');
    pdf.insert(pdf.find("/Root"),
               "/ID [<00><00>] /Encrypt << /Filter /Standard /V 1 /R 2 /P -4 /O <" + zeros +
                   "> /U <" + zeros + "> >> ");
    return pdf;
}

TEST(PDFPageCountTest, PagesAreCounted)
{
    for (const int pages : {0, 1, 3, 500}) {
        EXPECT_EQ(std::size_t(pages), pagesOfPDF(document(pages)));
        EXPECT_EQ(std::size_t(pages), pagesOfPDFWithModule(document(pages)));
    }
}

TEST(PDFPageCountTest, PagesThatAreThereCountAndNotTheirNumberInTheDocument)
{
    EXPECT_EQ(3U, pagesOfPDF(documentThatLies()));
}

TEST(PDFPageCountTest, WhatIsNoWholePDFIsNotCounted)
{
    const std::string whole = document(3);
    for (const std::string &pdf : {std::string(), std::string("%PDF-1.7\n"),
                                   whole.substr(0, whole.size() / 2), whole.substr(9)}) {
        EXPECT_THROW(pagesOfPDF(pdf), std::exception) << pdf;
        EXPECT_EQ(std::nullopt, pagesOfPDFWithModule(pdf));
    }
}

TEST(PDFPageCountTest, PageTreeWithAHoleIsNotCounted)
{
    std::string pdf = document(3);
    pdf.replace(pdf.find("4 0 R"), 5, "9 0 R"); // the second page, which is not there
    EXPECT_THROW(pagesOfPDF(pdf), std::exception);
}

TEST(PDFPageCountTest, EncryptedDocumentIsNotCounted)
{
    ASSERT_NE(std::string::npos, encryptedDocument().find("trailer"));
    EXPECT_THROW(pagesOfPDF(encryptedDocument()), std::exception);
    EXPECT_EQ(std::nullopt, pagesOfPDFWithModule(encryptedDocument()));
}

TEST(PDFPageCountTest, PageTreeThatGoesInCirclesIsNotCounted)
{
    std::string pdf = document(1);
    pdf.replace(pdf.find("/Kids [ 3 0 R"), 13, "/Kids [ 2 0 R");
    EXPECT_EQ(std::nullopt, pagesOfPDFWithModule(pdf));
}

TEST(PDFPageCountTest, PageTreeThatGoesInCirclesByItsArraysIsNotCounted)
{
    std::string pdf = document(1);
    pdf.replace(pdf.find("/Kids [ 3 0 R ]"), 15, "/Kids   3 0 R  ");
    const std::size_t object = pdf.find("3 0 obj\n") + 8;
    std::string circle = "[ << /Kids 3 0 R >> << /Kids 3 0 R >> ]";
    circle.resize(pdf.find("endobj", object) - object, ' '); // all else stays where it is
    pdf.replace(object, circle.size(), circle);
    EXPECT_THROW(pagesOfPDF(pdf), std::exception);
}

} // namespace
