#include "coverPageRules.h"

#include "ObjectFormat.h"
#include "postscriptRules.h"

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

std::string coverPagePostScript(const CoverPage &cover)
{
    using Platform::objectFormat;

    // The substitute has a line feed of its own, hence the empty line.
    const std::string mediaTypeCode =
        cover.mediaTypeCode.value_or("<< /MediaType (null) >> KMRsetpagedevice\n");
    std::string code = "[{\n";
    code += objectFormat("%%%%BeginFeature: *%@CoverPage %@-%@-%@\n", cover.position, cover.source,
                         cover.mediaType, cover.printStyle);
    code += objectFormat("%@\n", mediaTypeCode);
    code += objectFormat("%@\n", cover.sourceCode);
    code += cover.addition;
    code += objectFormat("%%%%EndFeature\n");
    code += "} stopped cleartomark\n";
    return code;
}

FrontCover frontCover(std::string_view printStyle, bool oneSided)
{
    const std::string duplexOff = oneSided ? "" : postscriptForDuplexSetting("None").value();
    if (printStyle == "NoPrint")
        return {duplexOff + "KMRshowpage\n", 1};
    if (printStyle == "Print1")
        return {duplexOff, 2};
    if (printStyle == "Print")
        return {"", oneSided ? 2 : 3};
    return {"", std::nullopt};
}

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
