#include "Module.h"
#include "PPD.h"
#include "QueuePPD.h"

#include <cups/cups.h>
#include <cups/pwg.h>

#include <stdexcept>
#include <utility>

namespace {

constexpr double kPointsPerUnit = 72.0 / 2540; // CUPS counts hundredths of a millimetre

/// The PPD's size as one that a page can have.
std::optional<PageSize> usable(const std::optional<PPD::PageSize> &size)
{
    if (!size || size->width <= 0 || size->height <= 0)
        return std::nullopt;
    return PageSize{size->width, size->height};
}

std::optional<PageSize> sizeOfStandardName(const std::string &name)
{
    const pwg_media_t *media = pwgMediaForPPD(name.c_str());
    if (media == nullptr)
        media = pwgMediaForPWG(name.c_str());
    if (media == nullptr || media->width <= 0 || media->length <= 0)
        return std::nullopt;
    return PageSize{media->width * kPointsPerUnit, media->length * kPointsPerUnit};
}

class OpenedPPD : public QueuePPD {
public:
    explicit OpenedPPD(PPD ppd) : _ppd(std::move(ppd)) {}

    std::optional<PageSize> pageSize(const std::string &name) const override
    {
        return usable(_ppd.pageSize(name));
    }
    std::optional<PageSize> defaultPageSize() override
    {
        _ppd.markDefaults();
        return usable(_ppd.markedPageSize());
    }
    std::optional<std::string> code(const std::string &option,
                                    const std::string &choice) const override
    {
        return _ppd.code(option, choice);
    }
    bool hasChoice(const std::string &option, const std::string &choice) const override
    {
        return _ppd.hasChoice(option, choice);
    }
    bool isJobControl(const std::string &option) const override
    {
        return _ppd.isJobControl(option);
    }

private:
    PPD _ppd;
};

std::unique_ptr<QueuePPD> opened(const std::string &path)
{
    std::string whyNot;
    auto ppd = PPD::open(path, &whyNot);
    if (!ppd)
        throw std::runtime_error("The PPD file of the print queue cannot be read: " + whyNot);
    return std::make_unique<OpenedPPD>(std::move(*ppd));
}

} // namespace

// What the module exports; QueuePPDLoader.cpp looks for it.

KL_MODULE_EXPORT void KLOpenQueuePPD(const std::string &path, std::unique_ptr<QueuePPD> &ppd,
                                     std::string &failure)
{
    Platform::withinModule(failure, [&] { ppd = opened(path); });
}

KL_MODULE_EXPORT void KLStandardPageSize(const std::string &name, std::optional<PageSize> &size,
                                         std::string &failure)
{
    Platform::withinModule(failure, [&] { size = sizeOfStandardName(name); });
}
