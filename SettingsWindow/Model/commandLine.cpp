#include "commandLine.h"

namespace Model {

std::string commandLine(const Queue &, const JobOptions &, const std::string &)
{
    return {};
}
std::string optionString(const JobOptions &)
{
    return {};
}

} // namespace Model
