#include "PDFStructure.h"

#include <set>
#include <utility>
#include <vector>

namespace {

bool isElement(const QPDFObjectHandle &kid)
{
    QPDFObjectHandle object = kid;
    return object.isDictionary() && !object.isDictionaryOfType("/MCR") &&
           !object.isDictionaryOfType("/OBJR");
}

std::vector<QPDFObjectHandle> kidsOf(QPDFObjectHandle element)
{
    QPDFObjectHandle kids = element.getKey("/K");
    if (kids.isArray())
        return kids.getArrayAsVector();
    return kids.isNull() ? std::vector<QPDFObjectHandle>() : std::vector{kids};
}

} // namespace

void PDFStructure::contentsMoved(QPDFObjectHandle page, QPDFObjectHandle form)
{
    QPDFObjectHandle number = page.getKey("/StructParents");
    if (!number.isInteger())
        return;
    form.getDict().replaceKey("/StructParents", number);
    page.removeKey("/StructParents");
    _forms.insert_or_assign(page.getObjGen(), form);
}

void PDFStructure::followContents()
{
    if (_forms.empty())
        return;
    // Elements, each with the page that its parents name.
    std::vector<std::pair<QPDFObjectHandle, QPDFObjectHandle>> pending = {
        {_document.getRoot().getKey("/StructTreeRoot"), QPDFObjectHandle::newNull()}};
    std::set<QPDFObjGen> seen;
    while (!pending.empty()) {
        auto [element, page] = pending.back();
        pending.pop_back();
        if (!element.isDictionary() ||
            (element.isIndirect() && !seen.insert(element.getObjGen()).second))
            continue;
        if (element.hasKey("/Pg"))
            page = element.getKey("/Pg");
        std::vector<QPDFObjectHandle> kids = kidsOf(element);
        for (QPDFObjectHandle &kid : kids) {
            if (isElement(kid))
                pending.emplace_back(kid, page);
            else
                kid = followed(kid, page);
        }
        if (!kids.empty())
            element.replaceKey("/K", QPDFObjectHandle::newArray(kids));
    }
}

QPDFObjectHandle PDFStructure::formOf(const QPDFObjectHandle &page) const
{
    const auto form = _forms.find(page.getObjGen());
    return form == _forms.end() ? QPDFObjectHandle::newNull() : form->second;
}

/// A number alone means the page's own contents, and so does a reference without a stream.
QPDFObjectHandle PDFStructure::followed(QPDFObjectHandle kid, const QPDFObjectHandle &page) const
{
    const bool isReference = kid.isDictionaryOfType("/MCR");
    if (!kid.isInteger() && (!isReference || kid.hasKey("/Stm")))
        return kid;
    QPDFObjectHandle itsPage = isReference && kid.hasKey("/Pg") ? kid.getKey("/Pg") : page;
    QPDFObjectHandle form = formOf(itsPage);
    if (form.isNull())
        return kid;
    QPDFObjectHandle reference = QPDFObjectHandle::newDictionary();
    reference.replaceKey("/Type", QPDFObjectHandle::newName("/MCR"));
    reference.replaceKey("/Pg", itsPage);
    reference.replaceKey("/Stm", form);
    reference.replaceKey("/MCID", isReference ? kid.getKey("/MCID") : kid);
    return reference;
}
