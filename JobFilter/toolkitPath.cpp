#include "toolkitPath.h"

#include "Bundle.h"
#include "KLPrintOptions.h"

std::optional<std::string> toolkitPath(const KLPrintOptions &options)
{
    if (options.ppd() == nullptr)
        return std::nullopt;
    const ppd_attr_t *attribute = ppdFindAttr(options.ppd(), "APDialogExtension", nullptr);
    if (attribute == nullptr || attribute->value == nullptr)
        return std::nullopt;
    const auto bundle = Platform::Bundle::withPath(attribute->value);
    return bundle ? bundle->pathForAuxiliaryExecutable("toolkit") : std::nullopt;
}
