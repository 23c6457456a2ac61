#include "Module.h"
#include "PDFPageCount.h"

/// What the module exports; pagesOfPDFWithModule() looks for it.
KL_MODULE_EXPORT void KLCountPDFPages(std::string_view pdf, std::size_t &pages,
                                      std::string &failure)
{
    Platform::withinModule(failure, [&] { pages = Platform::pagesOfPDF(pdf); });
}
