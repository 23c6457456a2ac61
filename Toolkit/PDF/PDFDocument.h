#pragma once

#include "Job.h"

#include <qpdf/QPDF.hh>

#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// A PDF document that is read from one file and, once changed, written to another.
class PDFDocument {
public:
    /// @param job  of which it takes the input, that stays open as long as this object lives, and
    ///             whether the document's memory is left to the system
    /// @throws ToolkitError for a document that needs a password, has no pages or is damaged in a
    ///         way that cannot be mended
    explicit PDFDocument(const Job &job);

    /// The library's view of it.
    QPDF &qpdf() { return _qpdf; }

    /// All pages in order, at least one.
    const std::vector<QPDFObjectHandle> &pages() const { return _pages; }

    /// Puts a page between the others; all that the document holds stays, but for labels and a
    /// range of pages to print, which count the pages.
    /// @param page    a page object of this document
    /// @param before  how many pages stand before it, at most as many as there are
    void insertPage(QPDFObjectHandle page, std::size_t before);

    /// Puts other pages in the place of all. What the catalogue says about the old ones goes along
    /// with them: outlines, names, forms, structure.
    /// @param pages  page objects; each is given its place in the page tree
    void replacePages(std::vector<QPDFObjectHandle> pages);

    /// What is drawn asks for a reader of that version of PDF: the output is of no lower one.
    /// @param version  "1.4"
    void needVersion(std::string version) { _leastVersion = std::move(version); }

    /// Writes all that can be reached from the catalogue. What was encrypted stays encrypted, with
    /// the same passwords and permissions.
    /// @throws ToolkitError when the output cannot be written, when a part of the document cannot
    ///         be read, and when a damaged document has lost something that its pages draw with
    void write(std::FILE *output);

private:
    struct Deleter {
        bool leavesMemory;
        void operator()(QPDF *document) const;
    };

    void refuseLostParts();

    std::shared_ptr<InputSource> _file;
    std::unique_ptr<QPDF, Deleter> _owned;
    QPDF &_qpdf = *_owned;
    std::vector<QPDFObjectHandle> _pages;
    std::vector<QPDFObjectHandle> _pagesAsRead; ///< the same before they were replaced
    std::string _leastVersion = "1.0";
};
