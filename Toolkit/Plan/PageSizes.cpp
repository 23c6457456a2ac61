#include "PageSizes.h"

#include "queuePPD.h"

#include <cups/pwg.h>

namespace {

constexpr double kPointsPerUnit = 72.0 / 2540; // CUPS counts hundredths of a millimetre

/// @param name  null for the one that is marked
std::optional<PageSize> pageSizeInPPD(ppd_file_t *ppd, const char *name)
{
    const ppd_size_t *size = ppd != nullptr ? ppdPageSize(ppd, name) : nullptr;
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
    if (const auto size = pageSizeInPPD(queuePPD(ppdPath).get(), name.c_str()))
        return size;
    return standardPageSize(name);
}

std::optional<PageSize> defaultPageSize(const std::string &ppdPath)
{
    const PPD ppd = queuePPD(ppdPath);
    if (ppd)
        ppdMarkDefaults(ppd.get());
    return pageSizeInPPD(ppd.get(), nullptr);
}
