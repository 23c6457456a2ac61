#include "trustedToolkit.h"

#include "Bundle.h"
#include "KLPrintOptions.h"

#include <unistd.h>

std::optional<Platform::TrustedProgram> trustedToolkit(const KLPrintOptions &options,
                                                       std::optional<std::string> *objection)
{
    const auto bundlePath = options.ppd().attribute("APDialogExtension");
    return bundlePath ? trustedToolkitIn(*bundlePath, objection) : std::nullopt;
}

std::optional<Platform::TrustedProgram> trustedToolkitIn(const std::string &bundlePath,
                                                         std::optional<std::string> *objection)
{
    const auto bundle = Platform::Bundle::withPath(bundlePath);
    const auto path = bundle ? bundle->pathForAuxiliaryExecutable("toolkit") : std::nullopt;
    if (!path)
        return std::nullopt;
    try {
        return Platform::openTrustedProgram(*path, geteuid());
    } catch (const Platform::UntrustedProgramError &error) {
        if (objection != nullptr)
            *objection = error.what();
        return std::nullopt;
    }
}
