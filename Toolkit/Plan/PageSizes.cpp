#include "PageSizes.h"

#include "queuePPD.h"

#include <cups/cups.h>
#include <cups/pwg.h>

namespace {

constexpr double kPointsPerUnit = 72.0 / 2540; // CUPS counts hundredths of a millimetre

/// The PPD's size as one that a page can have.
std::optional<PageSize> usable(const std::optional<PPD::PageSize> &size)
{
    if (!size || size->width <= 0 || size->height <= 0)
        return std::nullopt;
    return PageSize{size->width, size->height};
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
    const auto ppd = queuePPD(ppdPath);
    const auto size = ppd ? usable(ppd->pageSize(name)) : std::nullopt;
    return size ? size : standardPageSize(name);
}

std::optional<PageSize> defaultPageSize(const std::string &ppdPath)
{
    auto ppd = queuePPD(ppdPath);
    if (!ppd)
        return std::nullopt;
    ppd->markDefaults();
    return usable(ppd->markedPageSize());
}
