#include "PDFCommands.h"

#include "CoverPlan.h"
#include "PDFDocument.h"
#include "ToolkitError.h"

#include <qpdf/QPDFPageObjectHelper.hh>

#include <cstddef>
#include <cstdint>

namespace {

/// A blank page of the same size as another.
QPDFObjectHandle blankPageLike(const QPDFObjectHandle &page)
{
    QPDFObjectHandle blank = QPDFObjectHandle::newDictionary();
    blank.replaceKey("/Type", QPDFObjectHandle::newName("/Page"));
    blank.replaceKey("/Resources", QPDFObjectHandle::newDictionary());
    // What is inherited is so only by the page itself.
    for (const char *key : {"/MediaBox", "/CropBox", "/Rotate"})
        blank.replaceKey(key, QPDFPageObjectHelper(page).getAttribute(key, false));
    blank.replaceKey("/UserUnit", QPDFObjectHandle(page).getKey("/UserUnit"));
    return blank;
}

/// Goes through a document side by side, in the order in which it is printed.
class CoveredDocument {
public:
    CoveredDocument(PDFDocument &document, bool oneSided) : _document(document), _oneSided(oneSided)
    {
    }

    /// The pages begin on the next sheet; none of them is a blank side.
    void passOnFreshSheet(const PageRange &pages);

private:
    /// The blank side is of the size of the page before it, the first one of that behind it.
    void insertBlankSide();

    PDFDocument &_document;
    bool _oneSided;
    std::size_t _sides = 0;
};

void CoveredDocument::passOnFreshSheet(const PageRange &pages)
{
    if (!_oneSided && _sides % 2 == 1)
        insertBlankSide();
    if (pages.isEmpty())
        insertBlankSide();
    _sides += static_cast<std::size_t>(pages.size());
}

void CoveredDocument::insertBlankSide()
{
    const std::size_t neighbour = _sides == 0 ? 0 : _sides - 1;
    _document.insertPage(blankPageLike(_document.pages().at(neighbour)), _sides);
    ++_sides;
}

} // namespace

void applyToPDF(const CoverPages &coverPages, const Job &job)
{
    if (!coverPages.inPDF)
        throw ToolkitError("Cover pages need a PostScript document: PDF cannot choose trays.");
    PDFDocument document(job);
    const bool oneSided = isOneSided(coverPages.duplex, job.ppdPath);
    const CoverPlan plan = coverPlan(static_cast<std::int64_t>(document.pages().size()),
                                     coverPages.front.style, coverPages.back.style, oneSided);
    CoveredDocument covered(document, oneSided);
    if (plan.front)
        covered.passOnFreshSheet(plan.front->pages);
    if (!plan.job.isEmpty())
        covered.passOnFreshSheet(plan.job);
    if (plan.back)
        covered.passOnFreshSheet(plan.back->pages);
    document.write(job.output);
}
