// A stream with job control in it, taken apart as a whole and in blocks, against a model that sees
// all of it at once.

#include "KLJobControlStripper.h"

#include "Fuzzing.h"
#include "JobControlModel.h"

#include <algorithm>

namespace {

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

/// What the filter promises of every document.
void requirePromises(std::string_view document, const std::string &kept)
{
    Fuzz::require(!Support::hasMarker(kept), "what is kept holds no marker");
    if (!Support::hasMarker(document))
        Fuzz::requireEqual(Support::withoutEnds(document), kept,
                           "a document without job control is kept byte for byte");
    const std::string whole = Support::pageDataBetweenWholeMarkers(document);
    if (!Support::hasMarker(whole))
        Fuzz::requireEqual(whole, kept, "only a marker that would be joined costs more bytes");
    Fuzz::requireEqual(kept, strip(kept, kept.size()), "what is kept is without job control");
}

} // namespace

void Fuzz::tryInput(std::string_view input)
{
    const std::string expected = Support::pageDataOf(input);
    for (const std::size_t blockSize : {std::max<std::size_t>(input.size(), 1), std::size_t{1},
                                        std::size_t{2}, std::size_t{7}, std::size_t{64}})
        requireEqual(expected, strip(input, blockSize), "job control goes, all else stays");
    requirePromises(input, expected);
}
