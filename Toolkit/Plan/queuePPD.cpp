#include "queuePPD.h"

#include "ToolkitError.h"

std::optional<PPD> queuePPD(const std::string &path)
{
    if (path.empty())
        return std::nullopt;
    std::string whyNot;
    auto ppd = PPD::open(path, &whyNot);
    if (!ppd)
        throw ToolkitError("The PPD file of the print queue cannot be read: " + whyNot + ".");
    return ppd;
}
