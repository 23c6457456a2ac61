#include "PDFBuilder.h"

#include <cstdio>

namespace Support {

std::string PDFBuilder::add(std::string_view object)
{
    _objects.emplace_back(object);
    return std::to_string(_objects.size()) + " 0 R";
}

std::string PDFBuilder::addStream(std::string_view data, std::string_view entries)
{
    return add("<< " + std::string(entries) + " /Length " + std::to_string(data.size()) +
               " >>\nstream\n" + std::string(data) + "\nendstream");
}

void PDFBuilder::addPage(std::string_view entries)
{
    _kids += add("<< /Type /Page /Parent 2 0 R " + std::string(entries) + " >>") + " ";
    ++_pages;
}

void PDFBuilder::addPage(std::string_view entries, std::string_view contents)
{
    addPage("/Contents " + addStream(contents) + " " + std::string(entries));
}

std::string PDFBuilder::document(std::string_view pagesEntries,
                                 std::string_view catalogEntries) const
{
    std::vector<std::string> objects = _objects;
    objects[0] = "<< /Type /Catalog /Pages 2 0 R " + std::string(catalogEntries) + " >>";
    objects[1] = "<< /Type /Pages /Kids [ " + _kids + "] /Count " + std::to_string(_pages) + " " +
                 std::string(pagesEntries) + " >>";

    std::string bytes = "%PDF-1.4\n";
    std::string table = "0000000000 65535 f \n";
    for (std::size_t i = 0; i < objects.size(); ++i) {
        char entry[32];
        std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", bytes.size());
        table += entry;
        bytes += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const std::string size = std::to_string(objects.size() + 1);
    return bytes + "xref\n0 " + size + "\n" + table + "trailer\n<< /Size " + size +
           " /Root 1 0 R >>\nstartxref\n" + std::to_string(bytes.size()) + "\n%%EOF\n";
}

} // namespace Support
