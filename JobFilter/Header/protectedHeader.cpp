#include "protectedHeader.h"

#include "DSSC.h"
#include "KLPJLHandler.h"
#include "KLPrintOptions.h"
#include "PJL.h"
#include "Streams.h"
#include "headerMarkers.h"
#include "headerText.h"
#include "jobHeader.h"
#include "printMode.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace {

using Lines = std::vector<std::string_view>;

/// The lines of a text, each with its line end.
Lines linesOf(std::string_view text)
{
    Lines lines;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.push_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return lines;
}

/// What the printer reads as PJL: the lines behind the first marker.
Lines linesOfPJL(std::string_view header)
{
    const auto marker = header.find(kUniversalExitLanguageMarker);
    if (marker == std::string_view::npos)
        return {};
    return linesOf(header.substr(marker + kUniversalExitLanguageMarker.size()));
}

bool entersLanguage(std::string_view line)
{
    return line.starts_with(kEnterLanguage);
}

/// Whether the walk came to the header's own end, and not to one that a value has put before it.
/// @param unread  how many bytes of the header it has left
bool isWhole(const Lines &walked, std::size_t unread, const std::string &endOfHeader)
{
    const Lines end = linesOf(endOfHeader);
    const auto entering = std::ranges::find_if(end, entersLanguage);
    if (entering == end.end())
        return unread == 0;
    const auto behind = static_cast<std::size_t>(endOfHeader.data() + endOfHeader.size() -
                                                 (entering->data() + entering->size()));
    return unread == behind && !walked.empty() && entersLanguage(walked.back());
}

bool hasLine(const Lines &lines, const std::string &line)
{
    return std::ranges::find(lines, line) != lines.end();
}

bool hasPrintMode(const Lines &lines)
{
    return std::ranges::any_of(lines,
                               [](auto line) { return isMarkerLine(line, kPrintModeMarker); });
}

bool saysPrivate(const Lines &lines, const KLPrintOptions &options)
{
    if (const auto code = privatePrintCode(options))
        return hasLine(lines, KLPJLHandler::formatDSSCLine(kPrivatePrintSetting, headerText(code)));
    return hasPrintMode(lines) && options.codeForMarkedChoiceForPPDOption("PrintMode") ==
                                      options.codeForPPDOptionWithChoice("PrintMode", "Private");
}

bool saysProtection(const Lines &lines, const KLPrintOptions &options)
{
    return printMode(options) == PrintMode::Private
               ? saysPrivate(lines, options)
               : hasLine(lines, KLPJLHandler::formatDSSCLine(kStoredOnlySetting));
}

} // namespace

bool asksForProtection(const KLPrintOptions &options)
{
    const PrintMode mode = printMode(options);
    return mode == PrintMode::Private || mode == PrintMode::StoredOnly;
}

std::optional<std::string> protectedHeader(const std::shared_ptr<KLPrintOptions> &options,
                                           const JobName &job)
{
    const Platform::Stream emission = Platform::openTemporary();
    const Platform::Stream output = Platform::openTemporary();
    if (!emission || !output)
        return std::nullopt;
    const auto emitted = emittedHeader(options->ppd(), job, emission.get());
    if (!emitted)
        return std::nullopt;
    const std::size_t unread = walkHeader(*emitted, options, output.get());
    auto header = writtenBytes(output.get());
    if (!header)
        return std::nullopt;
    const Lines lines = linesOfPJL(*header);
    const bool isProtected = isWhole(lines, unread, options->ppd().headerEnd().value_or("")) &&
                             saysProtection(lines, *options);
    return isProtected ? header : std::nullopt;
}
