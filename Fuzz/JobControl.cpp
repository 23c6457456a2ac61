// A stream with job control in it, taken apart as a whole and in blocks, against a model that sees
// all of it at once.

#include "KLJobControlStripper.h"

#include "Fuzzing.h"

#include <algorithm>
#include <cctype>

namespace {

constexpr std::string_view kMarker = "\033%-12345X";

/// What is kept of the stream, which comes in blocks of that many bytes.
std::string strip(std::string_view stream, std::size_t blockSize)
{
    std::string kept;
    KLJobControlStripper stripper([&](std::string_view bytes) {
        Fuzz::require(!bytes.empty(), "the sink is never called for nothing");
        kept += bytes;
    });
    for (std::size_t at = 0; at < stream.size(); at += blockSize)
        stripper.strip(stream.substr(at, blockSize));
    stripper.finish();
    Fuzz::require(stripper.hasKept() == !kept.empty(), "it says whether bytes were kept");
    Fuzz::require(stripper.hasDropped() == (kept.size() < stream.size()),
                  "it says whether bytes were dropped");
    return kept;
}

/// A job-control line without the control-Ds in front, in upper case, each run of blanks as one.
std::string normalForm(std::string_view line)
{
    line.remove_prefix(std::min(line.find_first_not_of('\x04'), line.size()));
    std::string text;
    for (const char c : line) {
        const char plain = c == '\t' ? ' ' : c;
        if (plain != ' ' || !text.ends_with(' '))
            text += static_cast<char>(std::toupper(static_cast<unsigned char>(plain)));
    }
    return text;
}

bool entersLanguage(std::string_view line)
{
    static constexpr std::string_view kCommand = "@PJL ENTER LANGUAGE";
    const std::string text = normalForm(line);
    return text.starts_with(kCommand) &&
           (text.size() == kCommand.size() ||
            std::isalpha(static_cast<unsigned char>(text[kCommand.size()])) == 0);
}

/// The page data of a job-control block, from behind its marker up to the next one.
std::string_view pageDataOf(std::string_view block)
{
    while (!block.empty()) {
        const auto behindEnds =
            block.substr(std::min(block.find_first_not_of('\x04'), block.size()));
        if (behindEnds.starts_with("%!"))
            return behindEnds;
        const auto lineEnd = block.find_first_of("\r\n");
        if (lineEnd == std::string_view::npos)
            return {};
        const auto line = block.substr(0, lineEnd);
        block.remove_prefix(lineEnd);
        const bool isLast = entersLanguage(line);
        block.remove_prefix(isLast && block.starts_with("\r\n") ? 2 : 1);
        if (isLast)
            return block;
    }
    return {};
}

std::string_view withoutEnds(std::string_view pageData)
{
    return pageData.substr(0, pageData.find_last_not_of('\x04') + 1);
}

std::string modelOfStrip(std::string_view stream)
{
    const auto first = std::min(stream.find(kMarker), stream.size());
    std::string kept(withoutEnds(stream.substr(0, first)));
    stream.remove_prefix(first);
    while (!stream.empty()) {
        stream.remove_prefix(kMarker.size());
        const auto next = std::min(stream.find(kMarker), stream.size());
        kept += withoutEnds(pageDataOf(stream.substr(0, next)));
        stream.remove_prefix(next);
    }
    return kept;
}

} // namespace

void Fuzz::tryInput(std::string_view input)
{
    const std::string expected = modelOfStrip(input);
    for (const std::size_t blockSize : {std::max<std::size_t>(input.size(), 1), std::size_t{1},
                                        std::size_t{2}, std::size_t{7}, std::size_t{64}})
        requireEqual(expected, strip(input, blockSize), "job control goes, all else stays");
}
