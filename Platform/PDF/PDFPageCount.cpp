#include "PDFPageCount.h"

#include <qpdf/QPDF.hh>

#include <algorithm>
#include <stdexcept>

namespace Platform {
namespace {

/// A page without resources is whole: it needs none. From 12.3 on the library warns of it all the
/// same.
bool tellsOfDamage(const QPDFExc &warning)
{
    return warning.getMessageDetail().find("Resources is missing") == std::string::npos;
}

} // namespace

std::size_t pagesOfPDF(std::string_view pdf)
{
    QPDF document;
    document.setSuppressWarnings(true);
    document.setAttemptRecovery(false); // what is guessed of a damaged document may be too little
    document.processMemoryFile("page data", pdf.data(), pdf.size());
    const std::size_t pages = document.getAllPages().size();
    if (std::ranges::any_of(document.getWarnings(), tellsOfDamage))
        throw std::runtime_error("The document is damaged");
    return pages;
}

} // namespace Platform
