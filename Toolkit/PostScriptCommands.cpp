#include "PostScriptCommands.h"

#include "ToolkitError.h"

namespace {

constexpr char kNotYet[] = "PostScript documents cannot be processed yet.";

} // namespace

void applyCoverPagesToPostScript(const CoverPages &, const Job &)
{
    throw ToolkitError(kNotYet);
}
