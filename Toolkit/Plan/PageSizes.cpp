#include "PageSizes.h"

#include "QueuePPD.h"

std::optional<PageSize> pageSizeNamed(const std::string &name, const std::string &ppdPath)
{
    const auto ppd = queuePPD(ppdPath);
    const auto size = ppd ? ppd->pageSize(name) : std::nullopt;
    return size ? size : standardPageSize(name);
}

std::optional<PageSize> defaultPageSize(const std::string &ppdPath)
{
    const auto ppd = queuePPD(ppdPath);
    return ppd ? ppd->defaultPageSize() : std::nullopt;
}
