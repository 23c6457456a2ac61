#pragma once

#include <qpdf/QPDF.hh>

#include <map>

/// The structure of a tagged document (ISO 32000, 14.7): it says of the marked parts of the pages'
/// contents what they are, by page and number. In any other document nothing happens.
class PDFStructure {
public:
    /// @param document  stays the caller's and outlives this object
    explicit PDFStructure(QPDF &document) : _document(document) {}

    /// The page's contents have become those of a form, which is this page's alone. Nothing happens
    /// for a page that the structure says nothing of.
    /// @param page  a page object
    /// @param form  a form XObject's stream; the page's number in the structure becomes its
    void contentsMoved(QPDFObjectHandle page, QPDFObjectHandle form);

    /// Lets the structure refer to the forms. To be called once, behind the last page.
    void followContents();

private:
    /// The form that the page's marks are in now; null when they are where they were.
    QPDFObjectHandle formOf(const QPDFObjectHandle &page) const;
    QPDFObjectHandle followed(QPDFObjectHandle kid, const QPDFObjectHandle &page) const;

    QPDF &_document;
    std::map<QPDFObjGen, QPDFObjectHandle> _forms;
};
