#include "sampleDocument.h"

#include "ObjectFormat.h"

#include <algorithm>
#include <vector>

namespace {

using Platform::objectFormat;

constexpr int kPages = 8;
constexpr int kFirstPageObject = 4; // behind catalogue, page tree and font

/// Lines of grey bars, shorter at the end of a paragraph, between margins of a tenth.
std::string linesOfText(QSizeF page)
{
    constexpr int kLines = 32;
    constexpr int kLinesOfParagraph = 6;
    const double step = page.height() * 0.02;
    std::string bars = "0.8 g\n";
    for (int line = 0; line < kLines; ++line) {
        const int place = line % (kLinesOfParagraph + 1);
        if (place == kLinesOfParagraph)
            continue;
        const double part = place + 1 == kLinesOfParagraph ? 0.45 : 0.8;
        bars += objectFormat("%f %f %f %f re f\n", page.width() * 0.1,
                             page.height() * 0.76 - line * step, page.width() * part, step / 2);
    }
    return bars;
}

/// The number stands where a heading would.
std::string pageContents(QSizeF page, int number)
{
    const double size = std::min(page.width(), page.height()) * 0.12;
    return linesOfText(page) + objectFormat("0.2 g BT /F %f Tf %f %f Td (%d) Tj ET\n", size,
                                            page.width() * 0.1, page.height() * 0.82, number);
}

std::string stream(const std::string &contents)
{
    return "<< /Length " + std::to_string(contents.size()) + " >>\nstream\n" + contents +
           "endstream";
}

std::vector<std::string> objects(QSizeF page)
{
    std::string kids;
    std::vector<std::string> pages;
    for (int number = 1; number <= kPages; ++number) {
        const int object = kFirstPageObject + 2 * (number - 1);
        kids += std::to_string(object) + " 0 R ";
        pages.push_back("<< /Type /Page /Parent 2 0 R /Contents " + std::to_string(object + 1) +
                        " 0 R >>");
        pages.push_back(stream(pageContents(page, number)));
    }
    std::vector<std::string> all = {
        "<< /Type /Catalog /Pages 2 0 R >>",
        objectFormat("<< /Type /Pages /Count %d /Kids [ %@] /MediaBox [0 0 %f %f] "
                     "/Resources << /Font << /F 3 0 R >> >> >>",
                     kPages, kids, page.width(), page.height()),
        "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica-Bold >>"};
    all.insert(all.end(), pages.begin(), pages.end());
    return all;
}

} // namespace

std::string sampleDocument(QSizeF page)
{
    std::string document = "%PDF-1.4\n";
    const std::vector<std::string> all = objects(page);
    std::string table = "xref\n0 " + std::to_string(all.size() + 1) + "\n0000000000 65535 f \n";
    int number = 0;
    for (const std::string &object : all) {
        const std::string offset = std::to_string(document.size());
        table += std::string(10 - offset.size(), '0') + offset + " 00000 n \n";
        document += std::to_string(++number) + " 0 obj\n" + object + "\nendobj\n";
    }
    const std::string start = std::to_string(document.size());
    return document + table + "trailer\n<< /Size " + std::to_string(all.size() + 1) +
           " /Root 1 0 R >>\nstartxref\n" + start + "\n%%EOF\n";
}
