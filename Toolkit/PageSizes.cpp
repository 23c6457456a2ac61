#include "PageSizes.h"

#include <cups/ppd.h>
#include <cups/pwg.h>

#include <memory>

namespace {

constexpr double kPointsPerUnit = 72.0 / 2540; // CUPS counts hundredths of a millimetre

std::optional<PageSize> pageSizeInPPD(const std::string &name, const std::string &ppdPath)
{
    const std::unique_ptr<ppd_file_t, decltype(&ppdClose)> ppd(ppdOpenFile(ppdPath.c_str()),
                                                               &ppdClose);
    const ppd_size_t *size = ppd ? ppdPageSize(ppd.get(), name.c_str()) : nullptr;
    if (size == nullptr || size->width <= 0 || size->length <= 0)
        return std::nullopt;
    return PageSize{size->width, size->length};
}

std::optional<PageSize> standardPageSize(const std::string &name)
{
    const pwg_media_t *media = pwgMediaForPPD(name.c_str());
    if (media == nullptr)
        media = pwgMediaForPWG(name.c_str());
    if (media == nullptr || media->width <= 0 || media->length <= 0)
        return std::nullopt;
    return PageSize{media->width * kPointsPerUnit, media->length * kPointsPerUnit};
}

} // namespace

std::optional<PageSize> pageSizeNamed(const std::string &name, const std::string &ppdPath)
{
    if (!ppdPath.empty()) {
        if (const auto size = pageSizeInPPD(name, ppdPath))
            return size;
    }
    return standardPageSize(name);
}
