#include "PrinterFeatures.h"

#include "postscriptRules.h"

PrinterFeatures::PrinterFeatures(const std::string &ppdPath) : _ppd(queuePPD(ppdPath)) {}

std::string PrinterFeatures::code(const std::string &option, const std::string &choice) const
{
    const ppd_choice_t *found = choiceNamed(option, choice);
    if (found == nullptr || found->code == nullptr || *found->code == '\0')
        return {};
    if (!isJobControl(option))
        return protectedFeature(option, choice, found->code);
    const auto converted = postscriptFromPJLCode(found->code);
    return converted ? protectedFeature(option, choice, *converted) : std::string();
}

bool PrinterFeatures::has(const std::string &option, const std::string &choice) const
{
    return choiceNamed(option, choice) != nullptr;
}

bool PrinterFeatures::isJobControl(const std::string &option) const
{
    const ppd_option_t *found = optionNamed(option);
    return found != nullptr && found->section == PPD_ORDER_JCL;
}

ppd_option_t *PrinterFeatures::optionNamed(const std::string &option) const
{
    return _ppd ? ppdFindOption(_ppd.get(), option.c_str()) : nullptr;
}

ppd_choice_t *PrinterFeatures::choiceNamed(const std::string &option,
                                           const std::string &choice) const
{
    ppd_option_t *found = optionNamed(option);
    return found != nullptr ? ppdFindChoice(found, choice.c_str()) : nullptr;
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
