#include "PrinterFeatures.h"

#include "QueuePPD.h"
#include "postscriptRules.h"

PrinterFeatures::PrinterFeatures(const std::string &ppdPath) : _ppd(queuePPD(ppdPath)) {}

std::string PrinterFeatures::code(const std::string &option, const std::string &choice) const
{
    const auto code = _ppd ? _ppd->code(option, choice) : std::nullopt;
    if (!code || code->empty())
        return {};
    if (!isJobControl(option))
        return protectedFeature(option, choice, *code);
    const auto converted = postscriptFromPJLCode(*code);
    return converted ? protectedFeature(option, choice, *converted) : std::string();
}

bool PrinterFeatures::has(const std::string &option, const std::string &choice) const
{
    return _ppd && _ppd->hasChoice(option, choice);
}

bool PrinterFeatures::isJobControl(const std::string &option) const
{
    return _ppd && _ppd->isJobControl(option);
}

std::string protectedFeature(const std::string &option, const std::string &choice,
                             std::string_view code)
{
    std::string lines = "[{\n%%BeginFeature: *" + option + " " + choice + "\n";
    lines += code;
    if (!code.ends_with('\n'))
        lines += '\n';
    return lines + "%%EndFeature\n} stopped cleartomark\n";
}
