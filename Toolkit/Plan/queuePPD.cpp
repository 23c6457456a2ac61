#include "queuePPD.h"

#include "ToolkitError.h"

PPD queuePPD(const std::string &path)
{
    if (path.empty())
        return nullptr;
    std::string whyNot;
    PPD ppd = openPPD(path, &whyNot);
    if (!ppd)
        throw ToolkitError("The PPD file of the print queue cannot be read: " + whyNot + ".");
    return ppd;
}
