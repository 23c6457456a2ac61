#include "ToolkitError.h"

#include <string>
#include <system_error>

namespace {

ToolkitError withReason(const std::string &what, int reason)
{
    return ToolkitError(what + ": " + std::generic_category().message(reason) + ".");
}

} // namespace

ToolkitError unreadableInput(int reason)
{
    return withReason("The input file cannot be read", reason);
}

ToolkitError unwritableOutput(int reason)
{
    return withReason("The output file cannot be written", reason);
}
