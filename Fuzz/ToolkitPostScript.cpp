// A PostScript document, through the toolkit's three commands. The first line chooses how (see
// Toolkit.h), the document follows.

#include "DSCDocument.h"
#include "Fuzzing.h"
#include "Job.h"
#include "PostScriptCommands.h"
#include "Streams.h"
#include "Toolkit.h"
#include "ToolkitError.h"

#include <cstdlib>
#include <map>
#include <regex>
#include <vector>

namespace {

/// Most that a command adds: its procedures, and a few lines for each page.
constexpr std::size_t kMostAdded = 60'000;
constexpr std::size_t kMostAddedToPage = 2'000;

/// A document and where its pages lie.
struct Document {
    std::string bytes;
    std::vector<std::string> contents; ///< of each page
    std::string countInHeader;         ///< what %%Pages says; empty when it does not
};

/// The bytes, as the toolkit itself reads them.
Document readDocument(const std::string &bytes)
{
    Fuzz::MemoryFile file;
    file.assign(bytes);
    const Platform::Stream stream = Platform::openForReading(file.path());
    const DSCDocument document(stream.get());
    Document result = {bytes, {}, {}};
    for (const DSCPage &page : document.pages()) {
        Fuzz::require(page.begin <= page.content && page.content <= page.end &&
                          page.end <= bytes.size(),
                      "a page's parts follow each other inside the file");
        result.contents.push_back(bytes.substr(page.content, page.end - page.content));
    }
    DSCScanner scanner(document.file(), 0, document.header().end);
    while (const auto comment = scanner.next()) {
        if (result.countInHeader.empty() && comment->is("%%Pages"))
            result.countInHeader = comment->value();
    }
    return result;
}

/// The same for bytes from outside; nullopt for what the toolkit refuses whatever is asked for.
std::optional<Document> documentFrom(const std::string &bytes)
{
    try {
        return readDocument(bytes);
    } catch (const ToolkitError &) {
        return std::nullopt;
    }
}

/// Whether all bytes of the one stand in the other, in order.
bool isWithin(std::string_view part, std::string_view whole)
{
    std::size_t at = 0;
    for (std::size_t i = 0; i < whole.size() && at < part.size(); ++i)
        at += part[at] == whole[i] ? 1 : 0;
    return at == part.size();
}

/// The same without the lines that end prolog or setup: behind a cover they would tell that the
/// document's only page is none, and are left out.
std::string withoutEndsOfParts(const std::string &content)
{
    static const std::regex ends("(^|[\\r\\n])%%End(Prolog|Setup)[^\\r\\n]*");
    return std::regex_replace(content, ends, "");
}

/// Whether the document begins data that it never ends. Such a section is none, but once a command
/// has moved it, it may take for its end what stands behind it then.
bool leavesDataOpen(std::string_view bytes)
{
    std::map<std::string, bool> open;
    while (!bytes.empty()) {
        const auto line = bytes.substr(0, bytes.find_first_of("\r\n"));
        bytes.remove_prefix(std::min(line.size() + 1, bytes.size()));
        for (const std::string kind : {"Data", "Binary"}) {
            if (line.starts_with("%%Begin" + kind))
                open[kind] = true;
            else if (line.substr(0, line.find_first_of(": \t")) == "%%End" + kind)
                open[kind] = false;
        }
    }
    return open["Data"] || open["Binary"];
}

/// How many sections of data are as long, in bytes, as their begin says.
std::size_t trueLengths(std::string_view bytes)
{
    std::size_t count = 0;
    for (const std::string kind : {"Data", "Binary"}) {
        const std::string begin = "%%Begin" + kind + ":";
        for (std::size_t at = 0; (at = bytes.find(begin, at)) != std::string_view::npos;) {
            at += begin.size();
            const std::size_t data =
                std::min(bytes.find_first_of("\r\n", at), bytes.size() - 1) + 1;
            const std::string length(bytes.substr(at, data - at));
            const auto rest = bytes.substr(
                std::min(data + std::strtoul(length.c_str(), nullptr, 10), bytes.size()));
            const auto end = std::min(rest.find_first_not_of("\r\n"), rest.size());
            count += rest.substr(end).starts_with("%%End" + kind) ? 1 : 0;
        }
    }
    return count;
}

/// What the command makes of the document; nullopt when it refuses it, and when a length that was
/// wrong has come true by what it added: there are other data then. Whatever it is, it is a
/// document again, and not much longer.
template <class Request>
std::optional<Document> tryCommand(const Document &document, const Request &request)
{
    const auto output =
        Fuzz::outputOf(document.bytes, [&](const Job &job) { applyToPostScript(request, job); });
    if (!output)
        return std::nullopt;
    Fuzz::require(output->size() <= document.bytes.size() + kMostAdded +
                                        kMostAddedToPage * (document.contents.size() + 8),
                  "the output is not much longer than the input");
    if (trueLengths(*output) > trueLengths(document.bytes))
        return std::nullopt;
    return readDocument(*output);
}

void tryWatermark(const Document &document, const Watermark &watermark)
{
    const auto once = tryCommand(document, watermark);
    if (!once)
        return;
    Fuzz::require(isWithin(document.bytes, once->bytes), "a watermark takes nothing away");
    Fuzz::require(once->contents.size() == document.contents.size(),
                  "a watermark leaves the pages as they are");
    if (leavesDataOpen(document.bytes))
        return; // the first watermark's own words may end them for the second
    const auto twice = tryCommand(*once, watermark);
    Fuzz::require(twice && twice->contents.size() == once->contents.size(),
                  "what has one watermark takes another");
}

void tryBooklet(const Document &document, const Booklet &booklet)
{
    const auto output = tryCommand(document, booklet);
    if (!output)
        return;
    Fuzz::require(output->contents.size() == (document.contents.size() + 3) / 4 * 2,
                  "a booklet has two sides for four pages");
    Fuzz::requireEqual(std::to_string(output->contents.size()), output->countInHeader,
                       "the booklet says how many sides it has");
}

void tryCovers(const Document &document, const CoverPages &covers)
{
    const auto output = tryCommand(document, covers);
    if (!output)
        return;
    Fuzz::requireEqual(std::to_string(output->contents.size()), output->countInHeader,
                       "the document with covers says how many pages it has");
    Fuzz::require(output->contents.size() <= document.contents.size() + 4,
                  "covers add two sheets at most");
    std::size_t at = 0;
    for (const std::string &content : output->contents) {
        if (at < document.contents.size() &&
            isWithin(withoutEndsOfParts(document.contents[at]), content))
            ++at;
    }
    Fuzz::require(at == document.contents.size(), "all pages are there, in order");
}

} // namespace

void Fuzz::tryInput(std::string_view input)
{
    const ToolkitCommands commands(takeLine(input));
    const auto document = documentFrom("%!PS-Adobe-3.0" + std::string(input));
    if (!document)
        return;
    tryWatermark(*document, commands.watermark);
    if (leavesDataOpen(document->bytes))
        return;
    tryBooklet(*document, commands.booklet);
    tryCovers(*document, commands.covers);
}
