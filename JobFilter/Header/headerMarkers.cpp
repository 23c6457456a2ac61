#include "headerMarkers.h"

#include "DSSC.h"
#include "KLPrintOptions.h"
#include "WriteLog.h"

#include <algorithm>

namespace {

constexpr std::string_view kAdvancedColorKeys[] = {
    "com.kalmira.pde.advancedcolorsettings.mode",
    "com.kalmira.pde.advancedcolorsettings.rgb-source",
    "com.kalmira.pde.advancedcolorsettings.cmyk-source",
    "com.kalmira.pde.advancedcolorsettings.cmyk-dest",
    "com.kalmira.pde.advancedcolorsettings.device-color-only",
    "com.kalmira.pde.advancedcolorsettings.rendering-intent",
    "com.kalmira.pde.advancedcolorsettings.customized-rgb-profile",
};

bool isNeeded(std::string_view marker, const KLPrintOptions &options)
{
    const auto has = [&options](std::string_view key) {
        return options.valueForKey(key).has_value();
    };
    if (marker == kAccessCodeMarker)
        return has("com.kalmira.pde.print-mode-ovm.departmentCode");
    if (marker == kCollateMarker)
        return has("com.kalmira.pde.q5.color-profile") ||
               has("com.apple.print.PrintSettings.PMColorMatchingMode") ||
               options.valueForKeyIsEqualToString("AP_ColorMatchingMode", "AP_VendorColorMatching");
    if (marker == kAdvancedColorMarker)
        return std::ranges::any_of(kAdvancedColorKeys, has);
    return true;
}

bool hasMarkerLine(std::string_view header, std::string_view marker)
{
    while (!header.empty()) {
        const auto end = std::min(header.find('\n'), header.size() - 1) + 1;
        if (isMarkerLine(header.substr(0, end), marker))
            return true;
        header.remove_prefix(end);
    }
    return false;
}

} // namespace

bool isMarkerLine(std::string_view line, std::string_view marker)
{
    return line.starts_with(kDSSCPrefix) && line.substr(kDSSCPrefix.size()).starts_with(marker);
}

std::vector<std::string_view> missingMarkers(std::string_view header, const KLPrintOptions &options)
{
    std::vector<std::string_view> missing;
    std::ranges::copy_if(kHeaderMarkers, std::back_inserter(missing), [&](std::string_view marker) {
        return isNeeded(marker, options) && !hasMarkerLine(header, marker);
    });
    return missing;
}

void logMissingMarkers(std::string_view header, const KLPrintOptions &options)
{
    if (!options.ppd().hasAttributeThatBegins("KL"))
        return;
    for (const std::string_view marker : missingMarkers(header, options))
        WriteLog("DEBUG: The job needs a header line that begins with the marker %@, and the PPD "
                 "gives none",
                 marker);
}
