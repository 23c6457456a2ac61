#include "PDFPageCount.h"

#include <qpdf/QPDF.hh>

#include <algorithm>
#include <set>
#include <stdexcept>
#include <vector>

namespace Platform {
namespace {

/// A page without resources is whole: it needs none. From 12.3 on the library warns of it all the
/// same.
bool tellsOfDamage(const QPDFExc &warning)
{
    return warning.getMessageDetail().find("Resources is missing") == std::string::npos;
}

/// Whether each page that the page tree names is there. From 12 on the library leaves out what is
/// not, and says so on standard error.
bool hasEveryPage(QPDF &document)
{
    std::set<QPDFObjGen> seen; // a tree that goes in circles is the library's to find
    std::vector<QPDFObjectHandle> nodes = {document.getRoot().getKey("/Pages")};
    while (!nodes.empty()) {
        QPDFObjectHandle node = nodes.back();
        nodes.pop_back();
        if (!node.isDictionary())
            return false;
        if (node.isIndirect() && !seen.insert(node.getObjGen()).second)
            continue;
        QPDFObjectHandle kids = node.getKey("/Kids");
        for (int index = 0; kids.isArray() && index < kids.getArrayNItems(); ++index)
            nodes.push_back(kids.getArrayItem(index));
    }
    return true;
}

} // namespace

std::size_t pagesOfPDF(std::string_view pdf)
{
    QPDF document;
    document.setSuppressWarnings(true);
    document.setAttemptRecovery(false); // what is guessed of a damaged document may be too little
    document.processMemoryFile("page data", pdf.data(), pdf.size());
    constexpr char kDamaged[] = "The document is damaged";
    if (!hasEveryPage(document))
        throw std::runtime_error(kDamaged);
    const std::size_t pages = document.getAllPages().size();
    if (std::ranges::any_of(document.getWarnings(), tellsOfDamage))
        throw std::runtime_error(kDamaged);
    return pages;
}

} // namespace Platform
