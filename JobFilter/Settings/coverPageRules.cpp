#include "coverPageRules.h"

#include "ObjectFormat.h"
#include "postscriptRules.h"

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
