#include "checkPPD.h"

#include "PJL.h"
#include "headerMarkers.h"
#include "markerSpelling.h"
#include "settingRules.h"
#include "settingSources.h"
#include "trustedToolkit.h"

#include <algorithm>
#include <sstream>

namespace {

using Mistakes = std::vector<PPDMistake>;

/// A line "cupsFilter" or "cupsPreFilter".
struct FilterLine {
    std::string format; ///< of the data that come in
    std::string program;
};

FilterLine filterLine(const std::string &value)
{
    std::istringstream words(value);
    FilterLine line;
    std::string cost;
    words >> line.format >> cost >> line.program;
    line.program.erase(0, line.program.rfind('/') + 1);
    return line;
}

/// The formats whose data come to the program.
std::vector<std::string> formatsFor(const std::vector<std::string> &lines, std::string_view program)
{
    std::vector<std::string> formats;
    for (const std::string &value : lines) {
        const FilterLine line = filterLine(value);
        if (line.program == program)
            formats.push_back(line.format);
    }
    return formats;
}

std::vector<std::string> preFilters(const PPD &ppd)
{
    std::vector<std::string> lines;
    for (const PPD::Attribute &attribute : ppd.attributes("cupsPreFilter"))
        lines.push_back(attribute.value);
    return lines;
}

bool has(const std::vector<std::string> &formats, const std::string &format)
{
    return std::ranges::find(formats, format) != formats.end();
}

bool takesPDF(const PPD &ppd)
{
    return has(formatsFor(ppd.filters(), "jobfilter-chain"), "application/vnd.cups-pdf") ||
           has(formatsFor(ppd.filters(), "jobfilter"), "application/vnd.cups-pdf");
}

//
// The programs
//

void checkFilters(const PPD &ppd, Mistakes &mistakes)
{
    const auto formats = formatsFor(ppd.filters(), "jobfilter");
    const auto prepared = formatsFor(preFilters(ppd), "jobfilter-nojcl");
    if (formats.empty() && formatsFor(ppd.filters(), "jobfilter-chain").empty()) {
        mistakes.push_back({"No line *cupsFilter names jobfilter-chain.",
                            "Jobs are printed without department code, user, box and password.",
                            "*cupsFilter: \"application/vnd.cups-postscript 0 jobfilter-chain\""});
    }
    for (const std::string &format : formats) {
        if (!has(prepared, format))
            mistakes.push_back(
                {"No line *cupsPreFilter names jobfilter-nojcl for " + format + ".",
                 "The printer sees two headers, and the second has neither user nor password.",
                 "*cupsFilter: \"" + format + " 0 jobfilter-chain\""});
    }
}

/// Why the filter would not run a toolkit of that bundle; nullopt when it would.
std::optional<std::string> objectionToToolkitIn(const std::string &bundlePath)
{
    std::optional<std::string> objection;
    if (trustedToolkitIn(bundlePath, &objection))
        return std::nullopt;
    return objection ? objection : "there is none in " + bundlePath;
}

void checkToolkit(const PPD &ppd, Mistakes &mistakes)
{
    static constexpr char kEffect[] = "Jobs are printed without watermark, booklet and covers.";
    const auto bundle = ppd.attribute("APDialogExtension");
    if (!bundle) {
        mistakes.push_back({"There is no line *APDialogExtension.", kEffect,
                            "Name the folder that has the toolkit in Contents/Linux."});
    } else if (const auto objection = objectionToToolkitIn(*bundle)) {
        mistakes.push_back({"*APDialogExtension names no usable toolkit: " + *objection + ".",
                            kEffect, "Name the folder that has the toolkit in Contents/Linux."});
    }
}

//
// The header's frame
//

void checkHeaderBegin(const PPD &ppd, Mistakes &mistakes)
{
    static constexpr char kCure[] = R"(*JCLBegin: "<1B>%-12345X@PJL JOB<0A>")";
    const auto begin = ppd.headerBegin();
    if (!begin) {
        mistakes.push_back({"There is no line *JCLBegin.",
                            "Jobs have no header: no setting of theirs reaches the printer.",
                            kCure});
    } else if (!begin->starts_with(std::string(kUniversalExitLanguageMarker) + "@PJL")) {
        mistakes.push_back({"*JCLBegin does not begin with the universal exit marker and @PJL.",
                            "The printer may take the header for page data, and copies and the "
                            "job's name are not told to it.",
                            kCure});
    }
}

void checkHeaderEnd(const PPD &ppd, Mistakes &mistakes)
{
    const std::string language = takesPDF(ppd) ? "PDF" : "POSTSCRIPT";
    const std::string cure =
        "*JCLToPSInterpreter: \"@PJL ENTER LANGUAGE = " + language + "<0D><0A>\"";
    const auto end = ppd.headerEnd();
    if (!end) {
        mistakes.push_back({"There is no line *JCLToPSInterpreter.",
                            "Jobs have no header: no setting of theirs reaches the printer.",
                            cure});
    } else if (end->find(kEnterLanguage) == std::string::npos) {
        mistakes.push_back({"*JCLToPSInterpreter does not enter a language.",
                            "The printer takes the pages for job control.", cure});
    } else if (end->find(language) == std::string::npos) {
        mistakes.push_back({"*JCLToPSInterpreter enters another language than *cupsFilter sends.",
                            "The printer prints the pages as text, or nothing.", cure});
    }
}

void checkCharset(const PPD &ppd, Mistakes &mistakes)
{
    if (ppd.attribute("cupsPJLCharset"))
        mistakes.push_back({"There is a line *cupsPJLCharset.",
                            "A long title or user name is cut in the middle of a character.",
                            "Leave it out."});
}

//
// The header's lines
//

/// Calls the function with option, choice and each line of its code that goes into the header.
template <class Function>
void forEachHeaderLine(const PPD &ppd, const Function &function)
{
    for (const PPD::Option &option : ppd.options()) {
        if (!option.jobControl)
            continue;
        for (const PPD::Choice &choice : option.choices) {
            std::istringstream code(choice.code);
            for (std::string line; std::getline(code, line);)
                function(option.keyword + " " + choice.name, line);
        }
    }
}

void checkMarkers(const PPD &ppd, Mistakes &mistakes)
{
    forEachHeaderLine(ppd, [&](const std::string &name, const std::string &line) {
        if (const auto intended = intendedMarkerLine(line))
            mistakes.push_back({"The code of *" + name + " is almost a marker, and is none.",
                                "jobfilter passes the line as it is: what belongs there is "
                                "missing in every job.",
                                "Begin it with \"" + *intended + "\", to the letter."});
    });
}

void checkLineEnds(const PPD &ppd, Mistakes &mistakes)
{
    for (const PPD::Option &option : ppd.options()) {
        for (const PPD::Choice &choice : option.choices) {
            if (option.jobControl && choice.code.starts_with("@PJL") &&
                !choice.code.ends_with("\r\n"))
                mistakes.push_back({"The code of *" + option.keyword + " " + choice.name +
                                        " does not end with CR LF.",
                                    "The next line of the header becomes part of it, and both are "
                                    "lost or misread.",
                                    "End it with <0D><0A>."});
        }
    }
}

/// A mistake when no choice has the marker.
void checkPresence(const PPD &ppd, std::string_view marker, std::string onPaper, Mistakes &mistakes)
{
    bool found = false;
    forEachHeaderLine(ppd, [&](const std::string &, const std::string &line) {
        found = found || isMarkerLine(line, marker);
    });
    if (!found)
        mistakes.push_back({"No option has the marker " + std::string(marker) + " in its code.",
                            std::move(onPaper),
                            "Give an option of JCLSetup the code \"@PJL COMMENT DSSC PRINT " +
                                std::string(marker) + "...<0D><0A>\"."});
}

//
// Typed values and the settings they feed
//

void checkTypedOption(const PPD &ppd, const PPD::Option &option, Mistakes &mistakes)
{
    const bool isField = feeds(ppd, option.keyword);
    if (!ppd.hasChoice(option.keyword, "Custom"))
        mistakes.push_back({"*Custom" + option.keyword + " stands between the option's lines.",
                            "libcups offers no typed values; what a user types is lost.",
                            "Put *Custom... and *ParamCustom... behind the option's end."});
    else if (option.jobControl && !ppd.attribute("Custom" + option.keyword).value_or("").empty())
        mistakes.push_back({"*Custom" + option.keyword + " has a code.",
                            "What a user types goes into the header a second time, as it is.",
                            "Leave the code empty, and let the option feed a setting."});
    else if (option.jobControl && !isField)
        mistakes.push_back({"*" + option.keyword + " takes typed values and feeds no setting.",
                            "What a user types there is lost.",
                            "*KLSettingSource " + option.keyword + ": \"KEY\""});
    else if (!option.jobControl && isField)
        mistakes.push_back({"*" + option.keyword + " takes typed values and is not job control.",
                            "What a user types stands in the page data, codes and passwords too.",
                            "Put it under JCLSetup."});
}

void checkTypedOptions(const PPD &ppd, Mistakes &mistakes)
{
    for (const PPD::Option &option : ppd.options()) {
        if (option.typed)
            checkTypedOption(ppd, option, mistakes);
    }
}

/// A mistake of a line of ours that has no effect.
PPDMistake ineffective(const std::string &name, const PPD::Attribute &line, std::string why,
                       std::string cure)
{
    return {"*" + name + " " + line.specifier + ": \"" + line.value + "\" " + std::move(why),
            "The line has no effect.", std::move(cure)};
}

void checkValuesOfChoices(const PPD &ppd, Mistakes &mistakes)
{
    for (const PPD::Attribute &line : ppd.attributes("KLSettingValue")) {
        const auto dot = line.specifier.find('.');
        const std::string choice =
            dot == std::string::npos ? std::string() : line.specifier.substr(dot + 1);
        if (!ppd.hasChoice(line.specifier.substr(0, dot), choice))
            mistakes.push_back(ineffective("KLSettingValue", line, "names no choice of the PPD.",
                                           "*KLSettingValue OPTION.CHOICE: \"VALUE\""));
    }
}

void checkChosenOptions(const PPD &ppd, Mistakes &mistakes)
{
    for (const PPD::Attribute &line : ppd.attributes("KLChoiceSource")) {
        std::istringstream words(line.value);
        std::string option;
        std::string choice;
        words >> option >> choice;
        if (!ppd.hasChoice(option, choice))
            mistakes.push_back(ineffective("KLChoiceSource", line,
                                           "chooses what the PPD does not "
                                           "have.",
                                           "*KLChoiceSource SOURCE: \"OPTION CHOICE\""));
    }
}

void checkRules(const PPD &ppd, Mistakes &mistakes)
{
    for (const PPD::Attribute &line : ppd.attributes("KLSettingRule")) {
        if (!isSettingRule(line))
            mistakes.push_back(ineffective("KLSettingRule", line, "is no rule.",
                                           "*KLSettingRule Digits: \"KEY FROM TO\", or Characters "
                                           "in place of Digits."));
    }
}

//
// Options by name
//

const PPD::Option *find(const std::vector<PPD::Option> &options, std::string_view keyword)
{
    const auto found = std::ranges::find(options, keyword, &PPD::Option::keyword);
    return found != options.end() ? &*found : nullptr;
}

bool hasChoice(const PPD::Option &option, std::string_view name)
{
    return std::ranges::find(option.choices, name, &PPD::Choice::name) != option.choices.end();
}

void checkCopies(const PPD &ppd, Mistakes &mistakes)
{
    static constexpr char kEffect[] =
        "CUPS' filters repeat the pages for each copy, and the header's copies line multiplies "
        "them.";
    const auto options = ppd.options();
    const PPD::Option *collate = find(options, "Collate");
    if (collate == nullptr || !hasChoice(*collate, "True") || !hasChoice(*collate, "False"))
        mistakes.push_back({"There is no option *Collate with the choices True and False.", kEffect,
                            "Name the option for collating exactly so."});
    if (ppd.repeatsPagesForCopies())
        mistakes.push_back({"*cupsManualCopies is True.", kEffect, "*cupsManualCopies: False"});
}

void checkStoredOnly(const PPD &ppd, Mistakes &mistakes)
{
    const auto options = ppd.options();
    const PPD::Option *printAsWell = find(options, "PrintAsWell");
    if (printAsWell != nullptr && printAsWell->defaultChoice == "False")
        mistakes.push_back({"*DefaultPrintAsWell is False.",
                            "Every job that is stored in a document box is only stored.",
                            "*DefaultPrintAsWell: True"});
}

/// A mistake when the option is there and stands in the other place.
void checkPlace(const PPD &ppd, const std::string &keyword, bool jobControl, std::string onPaper,
                Mistakes &mistakes)
{
    if (ppd.hasOption(keyword) && ppd.isJobControl(keyword) != jobControl)
        mistakes.push_back(
            {"*" + keyword + (jobControl ? " is not job control." : " is job control."),
             std::move(onPaper),
             std::string("Put it under ") + (jobControl ? "JCLSetup." : "AnySetup.")});
}

void checkPlaces(const PPD &ppd, Mistakes &mistakes)
{
    checkPlace(ppd, "Duplex", true, "Booklets are bound at the wrong edge.", mistakes);
    if (takesPDF(ppd))
        return; // there are no covers in PDF
    checkPlace(ppd, "InputSlot", false, "Covers are not taken from their own tray.", mistakes);
    checkPlace(ppd, "MediaType", true, "Covers are not printed on their own media.", mistakes);
}

void checkCommands(const PPD &ppd, Mistakes &mistakes)
{
    if (ppd.attribute("cupsCommands") != "none")
        mistakes.push_back({"There is no line *cupsCommands: \"none\".",
                            "Utility commands are sent to the printer as jobs of their own.",
                            "*cupsCommands: \"none\""});
}

} // namespace

std::vector<PPDMistake> checkPPD(const PPD &ppd)
{
    Mistakes mistakes;
    checkFilters(ppd, mistakes);
    checkHeaderBegin(ppd, mistakes);
    checkHeaderEnd(ppd, mistakes);
    checkPresence(ppd, kPrintModeMarker,
                  "Jobs carry no user, no domain, no private print code and no document box.",
                  mistakes);
    checkMarkers(ppd, mistakes);
    checkLineEnds(ppd, mistakes);
    checkTypedOptions(ppd, mistakes);
    checkValuesOfChoices(ppd, mistakes);
    checkChosenOptions(ppd, mistakes);
    checkRules(ppd, mistakes);
    checkCopies(ppd, mistakes);
    checkStoredOnly(ppd, mistakes);
    checkPlaces(ppd, mistakes);
    checkCharset(ppd, mistakes);
    checkToolkit(ppd, mistakes);
    checkCommands(ppd, mistakes);
    return mistakes;
}
