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
    // A tree that goes in circles is the library's to find; it does so by way of one of these, for
    // what stands in its place is as long as the document.
    std::set<QPDFObjGen> seen;
    const auto isKnown = [&seen](QPDFObjectHandle &object) {
        return object.isIndirect() && !seen.insert(object.getObjGen()).second;
    };
    std::vector<QPDFObjectHandle> nodes = {document.getRoot().getKey("/Pages")};
    while (!nodes.empty()) {
        QPDFObjectHandle node = nodes.back();
        nodes.pop_back();
        if (!node.isDictionary())
            return false;
        if (isKnown(node))
            continue;
        QPDFObjectHandle kids = node.getKey("/Kids");
        if (isKnown(kids))
            continue;
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
