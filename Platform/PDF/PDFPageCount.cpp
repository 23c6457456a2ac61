#include "PDFPageCount.h"

#include <qpdf/QPDF.hh>

#include <stdexcept>

namespace Platform {

std::size_t pagesOfPDF(std::string_view pdf)
{
    QPDF document;
    document.setSuppressWarnings(true);
    document.setAttemptRecovery(false); // what is guessed of a damaged document may be too little
    document.processMemoryFile("page data", pdf.data(), pdf.size());
    const std::size_t pages = document.getAllPages().size();
    if (document.anyWarnings())
        throw std::runtime_error("The document is damaged");
    return pages;
}

} // namespace Platform
