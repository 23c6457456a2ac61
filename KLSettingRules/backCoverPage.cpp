#include "backCoverPage.h"

namespace {

constexpr std::int64_t kNoBackCover = -1;

std::int64_t printedBackCoverPage(std::int64_t totalPages, bool oneSided, bool frontPrintedOnce)
{
    if (totalPages < 2)
        return kNoBackCover;
    if (oneSided)
        return totalPages;
    if (frontPrintedOnce)
        return totalPages & ~std::int64_t{1};
    // Two pages fill one sheet, and that is the front of the job.
    return totalPages > 2 ? totalPages | 1 : kNoBackCover;
}

/// One more; the largest number, which no job has pages for, gives the smallest.
std::int64_t next(std::int64_t number)
{
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(number) + 1);
}

} // namespace

std::int64_t backCoverPage(std::int64_t totalPages, const std::optional<std::string> &printStyle,
                           bool oneSided, bool frontPrintedOnce)
{
    if (printStyle == "NoPrint")
        return next(totalPages);
    if (printStyle == "Print1")
        return totalPages >= 2 ? totalPages : kNoBackCover;
    if (printStyle == "Print")
        return printedBackCoverPage(totalPages, oneSided, frontPrintedOnce);
    return kNoBackCover;
}
