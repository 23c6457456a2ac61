#include "watermarkRules.h"

#include "ObjectFormat.h"

namespace {

constexpr std::size_t kRoom = 4096;

} // namespace

std::string watermarkPostScript(const WatermarkSettings &watermark)
{
    using Platform::objectFormat;

    const std::string procedure = watermark.beneath ? "BeginPage" : "EndPage";
    const std::string text = escapedWatermarkText(watermark.text);
    std::string code;
    code.reserve(kRoom);
    code += "[{\n";
    code += "%%BeginFeature: *Watermark True\n";
    code += "userdict begin\n";
    code += "userdict /KMRWatermarkDefined known { KMRWatermarkDefined }{ false } ifelse not {\n";
    code += objectFormat("currentpagedevice /%@ known\n", procedure);
    code +=
        objectFormat(" { /KMROld%1$@ currentpagedevice begin /%1$@ load end def }\n", procedure);
    // On purpose: the stand-in for a missing start of page leaves a true behind.
    code += " { /KMROldEndPage { exch pop 2 eq not } def /KMROldBeginPage { pop true } def }\n";
    code += "ifelse\n";
    code += objectFormat("/KMRWatermarkOriginator { currentpagedevice /PageSize get {} forall %@ } "
                         "bind def\n",
                         watermarkOrientationFragment(watermark.orientation));
    code += objectFormat("<< /%@ {\n", procedure);
    code += " gsave\n";
    code += " [ 0 0 1 0 0 1 ] defaultmatrix setmatrix\n";
    code += objectFormat(" /%@ %@ selectfont\n", watermark.font, watermark.size);
    code += objectFormat(" %@ setcmykcolor\n", watermark.color);
    code += " KMRWatermarkOriginator\n";
    code += objectFormat(" %@ 100 div mul exch\n", watermark.x);
    code += objectFormat(" %@ 100 div mul translate\n", watermark.y);
    code += objectFormat(" -%@ rotate\n", watermark.angle);
    code += objectFormat(" (%@) dup stringwidth pop 2 div neg 0 translate\n", text);
    code += " 0 0 moveto show\n";
    code += " grestore\n";
    code += objectFormat(" KMROld%@\n", procedure);
    code += "} >> KMRsetpagedevice\n";
    code += "/KMRWatermarkDefined true def\n";
    code += "} if\n";
    code += "end\n";
    code += "%%EndFeature\n";
    code += "} stopped cleartomark\n";
    return code;
}

std::string_view watermarkOrientationFragment(std::int64_t orientation)
{
    switch (orientation) {
    case 4:
        return "exch dup 0.0 translate 90 rotate exch";
    case 5:
        return "dup 0.0 exch translate -90 rotate";
    case 6:
        return "2 copy translate 180 rotate exch";
    default:
        return "exch";
    }
}

std::string escapedWatermarkText(std::string_view text)
{
    const std::size_t special = text.find_first_of("\\()");
    if (special == std::string_view::npos)
        return std::string(text);

    // On purpose: the search is made once, so the next part is empty and no part is ever the last
    // (KLPrintOptionsWatermarkTest, TextWithABackslashOrParenthesisNeverComesBack).
    std::string escaped;
    for (std::size_t start = 0;; start = special)
        escaped.append(text.substr(start, special - start)).append("\\");
}
