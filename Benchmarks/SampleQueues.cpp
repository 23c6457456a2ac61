#include "SampleQueues.h"

#include <regex>

SamplePPDs samplePPDs(const std::string &ppd, const std::string &type,
                      const Support::TemporaryFolder &folder)
{
    const std::string model = Support::readFile(ppd) + "*cupsSNMPSupplies: False\n";
    const std::string plain =
        std::regex_replace(model, std::regex("\\*cups(Pre)?Filter: [^\n]*\n"), "") +
        "*cupsFilter: \"" + type + " 0 -\"\n";
    return {folder.write("ours.ppd", model), folder.write("plain.ppd", plain)};
}
