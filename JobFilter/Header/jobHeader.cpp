#include "jobHeader.h"

#include "KLPJLHandler.h"
#include "KLPrintJob.h"
#include "Streams.h"
#include "Text.h"
#include "handlePJL.h"
#include "headerMarkers.h"

#include <algorithm>
#include <array>
#include <new>
#include <utility>

namespace {

/// As libcups may write it between the quotes of a PJL line.
std::string textForPJL(std::string text)
{
    text = Platform::withoutControls(std::move(text));
    std::ranges::replace(text, '"', '\'');
    return text;
}

/// The text as a stream, to be read while it lives.
Platform::Stream streamOver(const std::string &text)
{
    // What is opened for reading is not written to.
    Platform::Stream stream(fmemopen(const_cast<char *>(text.data()), text.size(), "rb"));
    if (!stream)
        throw std::bad_alloc();
    return stream;
}

} // namespace

std::optional<std::string> emittedHeader(const PPD &ppd, const JobName &job, FILE *file)
{
    ppd.emitJobControl(file, job.id, textForPJL(job.user), textForPJL(job.title));
    auto header = writtenBytes(file);
    if (header)
        header = Platform::repairedUTF8(std::move(*header), '?');
    return header;
}

std::size_t walkHeader(const std::string &header, std::shared_ptr<KLPrintOptions> options,
                       FILE *output)
{
    logMissingMarkers(header, *options);
    if (header.empty())
        return 0;
    const Platform::Stream input = streamOver(header);
    const auto job = std::make_shared<KLPrintJob>(input.get(), output);
    job->setPrintOptions(std::move(options));
    KLPJLHandler::enumeratePJLFromPrintJobUsingBlock(job, handlePJL(job));
    return header.size() - static_cast<std::size_t>(std::ftell(input.get()));
}

std::optional<std::string> writtenBytes(FILE *file)
{
    if (std::fflush(file) != 0 || std::ferror(file) != 0 || std::fseek(file, 0, SEEK_SET) != 0)
        return std::nullopt;
    std::string bytes;
    std::array<char, 4096> block;
    while (const std::size_t count = std::fread(block.data(), 1, block.size(), file))
        bytes.append(block.data(), count);
    return std::ferror(file) == 0 ? std::optional(std::move(bytes)) : std::nullopt;
}
