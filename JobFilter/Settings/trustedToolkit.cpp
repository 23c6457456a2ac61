#include "trustedToolkit.h"

#include "Bundle.h"
#include "KLPrintOptions.h"

#include <unistd.h>

namespace {

/// The path of the auxiliary executable, whoever put it there.
std::optional<std::string> namedToolkit(const KLPrintOptions &options)
{
    const auto bundlePath = options.ppd().attribute("APDialogExtension");
    const auto bundle = bundlePath ? Platform::Bundle::withPath(*bundlePath) : std::nullopt;
    return bundle ? bundle->pathForAuxiliaryExecutable("toolkit") : std::nullopt;
}

} // namespace

std::optional<Platform::TrustedProgram> trustedToolkit(const KLPrintOptions &options,
                                                       std::optional<std::string> *objection)
{
    const auto path = namedToolkit(options);
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
