// A PDF document, through the toolkit's commands. The first line chooses how (see
// Toolkit.h), the document follows.

#include "Fuzzing.h"
#include "Job.h"
#include "PDFCommands.h"
#include "Toolkit.h"

#include <qpdf/QPDF.hh>

namespace {

struct Reading {
    std::size_t pages;
    bool hasFaults;
};

/// A document as the library reads it. What the toolkit wrote and what it took can be read.
Reading readDocument(std::string_view bytes)
{
    QPDF document;
    document.setSuppressWarnings(true);
    document.processMemoryFile("document", bytes.data(), bytes.size());
    const std::size_t pages = document.getAllPages().size();
    return {pages, document.anyWarnings()};
}

/// What a command makes of the document; nullopt when it refuses it.
template <class Request>
std::optional<Reading> tryCommand(std::string_view bytes, const Request &request)
{
    const auto output = Fuzz::outputOf(bytes, [&](const Job &job) { applyToPDF(request, job); });
    if (!output)
        return std::nullopt;
    const Reading result = readDocument(*output);
    Fuzz::require(!result.hasFaults || readDocument(bytes).hasFaults, "the toolkit does no damage");
    Fuzz::require(result.pages > 0, "every document has pages");
    return result;
}

} // namespace

void Fuzz::tryInput(std::string_view input)
{
    const ToolkitCommands commands(takeLine(input));
    const auto marked = tryCommand(input, commands.watermark);
    const auto booklet = tryCommand(input, commands.booklet);
    CoverPages covers = commands.covers;
    covers.inPDF = true;
    const auto covered = tryCommand(input, covers);
    if (marked && booklet)
        require(booklet->pages == (marked->pages + 3) / 4 * 2,
                "a booklet has two sides for four pages");
    // A blank sheet before and behind it, and a blank side to fill its last sheet.
    if (marked && covered)
        require(covered->pages >= marked->pages && covered->pages <= marked->pages + 4,
                "covers lose no page and add a few blank sides");
}
