#pragma once

#include "PDFCommands.h"
#include "Streams.h"
#include "TemporaryFolder.h"
#include "TextMeasuring.h"

#include <string>
#include <string_view>

/// What a command makes of a PDF document.
/// @param request  one of the commands
/// @param ppd      text of the queue's PPD; empty for none
/// @throws ToolkitError as the command does
template <class Request>
std::string processedPDF(std::string_view document, const Request &request,
                         const std::string &ppd = {})
{
    const Support::TemporaryFolder folder;
    const Platform::Stream input = Platform::openForReading(folder.write("input.pdf", document));
    Platform::Stream output = Platform::openForWriting(folder.file("output.pdf"));
    Platform::TextShaper texts;
    applyToPDF(request, {input.get(), output.get(), texts,
                         ppd.empty() ? "" : folder.write("queue.ppd", ppd)});
    Platform::closeStream(std::move(output));
    return Support::readFile(folder.file("output.pdf"));
}
