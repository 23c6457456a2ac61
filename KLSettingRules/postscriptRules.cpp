#include "postscriptRules.h"

#include "DSSC.h"
#include "ObjectFormat.h"
#include "Text.h"

std::optional<std::string> postscriptFromPJLCode(std::string_view code)
{
    const std::string line = Platform::trimmedText(code);
    if (!line.starts_with(kDSSCPrefix))
        return std::nullopt;
    return Platform::objectFormat("<< /KMRPrivate (DSSC PRINT %@) >> KMRsetpagedevice",
                                  line.substr(kDSSCPrefix.size()));
}

std::optional<std::string> postscriptForDuplexSetting(std::string_view setting)
{
    if (setting == "None")
        return "<< /Duplex false /Tumble false >> KMRsetpagedevice\n";
    if (setting == "DuplexNoTumble")
        return "<< /Duplex true /Tumble false >> KMRsetpagedevice\n";
    if (setting == "DuplexTumble")
        return "<< /Duplex true /Tumble true >> KMRsetpagedevice\n";
    return std::nullopt;
}
