#include "DirectoryJob.h"

#include "MinimalPPD.h"

namespace Support {
namespace {

/// The line that the printer's user and domain are written in front of.
constexpr char kPrintModeOption[] = R"PPD(*JCLOpenUI *JCLPrintMode/Print Mode: PickOne
*OrderDependency: 10 JCLSetup *JCLPrintMode
*DefaultJCLPrintMode: Normal
*JCLPrintMode Normal/Normal: "@PJL COMMENT DSSC PRINT PRINTMODE=NORMAL<0D><0A>"
*JCLCloseUI: *JCLPrintMode
)PPD";

constexpr std::string_view kNoToolkit =
    "INFO: A required component could not be found, some print settings may not be applied\n";

} // namespace

std::string directoryPPD(const std::string &extraLines)
{
    return minimalPPD(kPrintModeOption + extraLines);
}

std::string domainIn(const ProgramResult &job)
{
    if (job.exitStatus != 0 || job.output.find("\n%!PS\n\033%-12345X") == std::string::npos)
        return "none";
    return textBetween(job.output, "@PJL COMMENT DSSC PRINT DOMAINNAME=", "\r\n").value_or("none");
}

std::string logOf(const ProgramResult &job)
{
    std::string log = job.errors;
    const auto at = log.find(kNoToolkit);
    if (at == std::string::npos)
        return "no line about the toolkit: " + log;
    return log.erase(at, kNoToolkit.size());
}

std::string logOfFound(const std::string &user, const std::string &node, int records)
{
    return "INFO: Found " + std::to_string(records) + " records for user " + user +
           "\nDEBUG: Using " + node + " as the authorisation node\n";
}

std::string logOfNone(const std::string &user)
{
    return "INFO: Found 0 records for user " + user +
           "\nDEBUG: None of the authentication directory services can be queried\n";
}

std::optional<std::string> textBetween(const std::string &text, const std::string &begin,
                                       const std::string &end)
{
    const auto first = text.find(begin);
    const auto last = first == std::string::npos ? first : text.find(end, first + begin.size());
    if (last == std::string::npos)
        return std::nullopt;
    return text.substr(first + begin.size(), last - first - begin.size());
}

} // namespace Support
