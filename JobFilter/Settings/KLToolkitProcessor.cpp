#include "KLToolkitProcessor.h"

#include "ChildProcess.h"
#include "KLFileUtilities.h"
#include "MadeFiles.h"
#include "Module.h"
#include "Numbers.h"
#include "ObjectFormat.h"
#include "Text.h"

#include <cmath>
#include <numbers>
#include <stdexcept>
#include <utility>

namespace {

using Arguments = std::vector<std::string>;
using Platform::objectFormat;

constexpr char kErrorDomain[] = "KLToolkitProcessorErrorDomain";
constexpr char kGeneralErrorDomain[] = "NSCocoaErrorDomain";
constexpr int kNoSuchFile = 4;
constexpr int kCommandFailed = 127;

/// A file that is removed unless it is released to the caller.
class OutputFile {
public:
    explicit OutputFile(std::string path) : _path(std::move(path))
    {
        Platform::MadeFiles::setUnfinished(_path, true);
    }
    ~OutputFile()
    {
        if (!_path.empty())
            KLFileUtilities::removeFile(_path);
    }
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    const std::string &path() const { return _path; }
    /// @return the path, whatever the toolkit has left under it
    std::string release()
    {
        KLFileUtilities::takeBack(_path);
        Platform::MadeFiles::setUnfinished(_path, false);
        return std::exchange(_path, {});
    }

private:
    std::string _path;
};

Arguments childArguments(const Arguments &arguments, const std::string &inputPath,
                         const std::string &outputPath)
{
    Arguments all = arguments;
    all.push_back(inputPath);
    all.push_back(outputPath);
    return all;
}

KLError toolkitError(int terminationStatus, std::string errorText)
{
    if (!Platform::isValidUTF8(errorText))
        errorText = "An unknown error occurred and the error information could not be processed.";
    return {kErrorDomain, terminationStatus, std::move(errorText)};
}

void store(std::optional<KLError> *place, KLError error)
{
    if (place != nullptr)
        *place = std::move(error);
}

// --- what the settings ask for ---

std::string textOption(const KLPrintOptions &options, std::string_view key,
                       std::string_view defaultText)
{
    return Platform::description(
        *options.valueForKeyWithDefault(key, KLValue(std::string(defaultText))));
}

std::string watermarkOption(const KLPrintOptions &options, std::string_view name,
                            std::string_view defaultText)
{
    return textOption(options, "com.kalmira.pde.watermark." + std::string(name), defaultText);
}

double watermarkNumber(const KLPrintOptions &options, std::string_view name,
                       std::string_view defaultText)
{
    return Platform::doubleFromText(watermarkOption(options, name, defaultText));
}

// Here each command has defaults of its own; elsewhere the same settings have others.

bool hasPlaceholders(const KLPrintOptions &options)
{
    return watermarkOption(options, "placeholders", "") == "True";
}

/// Whether the job asks for a place that the toolkit has to find, page by page.
bool isPlacedByToolkit(const KLPrintOptions &options)
{
    return !watermarkOption(options, "place", "").empty() ||
           !watermarkOption(options, "distance", "").empty() ||
           !watermarkOption(options, "fit", "").empty() || hasPlaceholders(options);
}

/// Where the text lies, for the page size of the job or, by the toolkit, for that of each page.
Arguments placeArguments(const KLPrintOptions &options, const std::string &text,
                         const KLToolkitProcessor::TextMeasurer &measureText)
{
    const double x = watermarkNumber(options, "x", "50");
    const double y = watermarkNumber(options, "y", "50");
    if (isPlacedByToolkit(options)) {
        const std::string place = watermarkOption(options, "place", "");
        return {"--place", place.empty() ? objectFormat("%f%%,%f%%", x, y) : place};
    }
    const KLWatermarkPosition position =
        watermarkPosition(measureText(text, watermarkOption(options, "font", "Helvetica"),
                                      watermarkNumber(options, "size", "36")),
                          options.pageSize(), watermarkNumber(options, "angle", "0"), x, y);
    return {"--position", objectFormat("%f,%f", position.x, position.y)};
}

/// What only some jobs ask for; without it the command is what it would be.
void appendFurtherWatermarkArguments(const KLPrintOptions &options, Arguments &arguments)
{
    const std::string distance = watermarkOption(options, "distance", "");
    if (!distance.empty())
        arguments.insert(arguments.end(), {"--distance", distance});
    const std::string fit = watermarkOption(options, "fit", "");
    if (!fit.empty())
        arguments.insert(arguments.end(), {"--fit", fit});
    if (hasPlaceholders(options))
        arguments.emplace_back("--placeholders");
    if (watermarkOption(options, "overprint", "") == "True")
        arguments.emplace_back("--overprint");
    const std::string pages = watermarkOption(options, "pages", "");
    if (!pages.empty())
        arguments.insert(arguments.end(), {"--pages", pages});
}

/// @throws std::length_error, see withJobValues()
std::string watermarkText(const KLPrintOptions &options, JobValues job)
{
    std::string text = watermarkOption(options, "text", "");
    if (!hasPlaceholders(options))
        return text;
    job.user = textOption(options, "com.kalmira.username", job.user);
    return withJobValues(text, job);
}

Arguments watermarkArguments(const KLPrintOptions &options, const JobValues &job,
                             const KLToolkitProcessor::TextMeasurer &measureText)
{
    const std::string text = watermarkText(options, job);
    const bool above = watermarkOption(options, "ordering", "0") == "0";
    Arguments arguments = {"watermark", above ? "--above" : "--below",
                           "--font",    watermarkOption(options, "font", "Helvetica"),
                           "--angle",   objectFormat("%f", -watermarkNumber(options, "angle", "0")),
                           "--colour",  watermarkOption(options, "color", "0,0,0")};
    const Arguments place = placeArguments(options, text, measureText);
    arguments.insert(arguments.end(), place.begin(), place.end());
    arguments.insert(arguments.end(),
                     {"--size", watermarkOption(options, "size", "36"), "--text", text});
    appendFurtherWatermarkArguments(options, arguments);
    return arguments;
}

std::string margin(const KLPrintOptions &options, std::string_view key)
{
    const std::string value = textOption(options, key, "Off");
    return value == "Off" ? "0" : value;
}

/// The option with its value, for a job that asks for it.
void appendUnlessOff(Arguments &arguments, const char *option, const std::string &value)
{
    if (value != "Off")
        arguments.insert(arguments.end(), {option, value});
}

Arguments bookletArguments(const KLPrintOptions &options)
{
    const bool leftToRight = textOption(options, "BookletPageLayout", "True") == "True";
    Arguments arguments = {"booklet",
                           "--pagesize",
                           textOption(options, "BookletPaperSize", "None"),
                           "--centremargin",
                           margin(options, "BookletCenterMargin"),
                           "--outermargin",
                           margin(options, "BookletOuterMargin"),
                           "--ordering",
                           leftToRight ? "LTR" : "RTL"};
    appendUnlessOff(arguments, "--signature", textOption(options, "BookletSignatureSheets", "Off"));
    appendUnlessOff(arguments, "--creep", textOption(options, "BookletCreep", "Off"));
    if (textOption(options, "BookletTurnLandscape", "False") == "True")
        arguments.emplace_back("--turn-landscape");
    return arguments;
}

bool usesCover(const KLPrintOptions &options, const std::string &side)
{
    return textOption(options, "Use" + side + "Cover", "False") == "True";
}

/// A side that is off has the style "none"; its paper is named all the same.
std::string coverStyle(const KLPrintOptions &options, const std::string &side)
{
    const std::string style =
        usesCover(options, side) ? textOption(options, side + "CoverPrintStyle", "None") : "None";
    return Platform::lowercaseText(style);
}

std::string paperSource(const KLPrintOptions &options, std::string_view key)
{
    return adjustPaperSourceForToolkit(textOption(options, key, "Auto"));
}

std::string duplexWord(const KLPrintOptions &options)
{
    std::string duplex = textOption(options, "Duplex", "None");
    if (duplex == "None")
        return "none";
    if (duplex == "DuplexTumble")
        return "tumble";
    if (duplex == "DuplexNoTumble")
        return "notumble";
    return duplex;
}

bool wantsCoversInPDF(const KLPrintOptions &options)
{
    return textOption(options, "CoverPagesInPDF", "False") == "True";
}

/// Whether a cover is to be of other paper than the job: from another source or of another medium.
bool wantsOtherPaper(const KLPrintOptions &options, const std::string &side)
{
    const std::string style = coverStyle(options, side);
    if (style != "noprint" && style != "print1" && style != "print")
        return false;
    const std::string medium = textOption(options, side + "CoverMediaType", "None");
    return paperSource(options, side + "CoverSource") != paperSource(options, "InputSlot") ||
           (medium != "None" && medium != textOption(options, "MediaType", "None"));
}

bool isPDF(const std::string &path)
{
    constexpr std::string_view kStart = "%PDF-";
    char start[kStart.size()];
    const Platform::Stream file = KLFileUtilities::openForReading(path);
    return file && std::fread(start, 1, sizeof start, file.get()) == sizeof start &&
           std::string_view(start, sizeof start) == kStart;
}

/// The header and the commands that follow both learn it: the one asks the PPD, the others the
/// store.
void printDuplexWithTumble(KLPrintOptions &options)
{
    options.ppd().mark("Duplex", "DuplexTumble");
    options.setValueForKey("DuplexTumble", "Duplex");
}

} // namespace

std::string adjustPaperSourceForToolkit(std::string_view source)
{
    if (source == "Auto")
        return "AutoSelect";
    if (source == "SheetFeedBypass")
        return "Bypass";
    if (source == "AdditionalExternalLCF")
        return "ExternalLCF2";
    return std::string(source);
}

KLWatermarkPosition watermarkPosition(const Platform::TextSize &box, const KLPageSize &page,
                                      double angle, double spotX, double spotY)
{
    const double theta = -angle * std::numbers::pi / 180;
    const double x = -0.5 * box.width;
    const double y = -0.5 * box.height;
    return {x * std::cos(theta) - y * std::sin(theta) + page.width * spotX / 100,
            x * std::sin(theta) + y * std::cos(theta) + page.height * spotY / 100};
}

std::vector<std::string> coverPageArguments(const KLPrintOptions &options)
{
    Arguments arguments = {"coverpages",
                           "--back-style",
                           coverStyle(options, "Back"),
                           "--back-media",
                           textOption(options, "BackCoverMediaType", "None"),
                           "--back-source",
                           paperSource(options, "BackCoverSource"),
                           "--front-style",
                           coverStyle(options, "Front"),
                           "--front-media",
                           textOption(options, "FrontCoverMediaType", "None"),
                           "--front-source",
                           paperSource(options, "FrontCoverSource"),
                           "--source",
                           paperSource(options, "InputSlot"),
                           "--media",
                           textOption(options, "MediaType", "None"),
                           "--duplex",
                           duplexWord(options)};
    if (wantsCoversInPDF(options))
        arguments.emplace_back("--in-pdf");
    return arguments;
}

KLToolkitProcessor::KLToolkitProcessor(std::string toolkitPath, TextMeasurer measureText)
    : KLToolkitProcessor(Platform::TrustedProgram{std::move(toolkitPath)}, std::move(measureText))
{
}

KLToolkitProcessor::KLToolkitProcessor(Platform::TrustedProgram toolkit, TextMeasurer measureText)
    : _toolkit(std::move(toolkit)), _measureText(std::move(measureText))
{
}

std::optional<std::string>
KLToolkitProcessor::processWithArgumentsAndReturnError(const std::string &inputPath,
                                                       const std::vector<std::string> &arguments,
                                                       std::optional<KLError> *error) const
{
    auto outputPath = KLFileUtilities::generateTemporaryFilenameWithPrefix("toolkit");
    if (!outputPath) {
        store(error,
              {kGeneralErrorDomain, kNoSuchFile, "A temporary filename could not be generated."});
        return std::nullopt;
    }
    OutputFile output(std::move(*outputPath));
    if (KLFileUtilities::isReplaced(inputPath)) {
        store(error,
              {kGeneralErrorDomain, kNoSuchFile, "The job's file has been replaced by another."});
        return std::nullopt;
    }
    Platform::ChildProcess toolkit(
        _toolkit.path, childArguments(arguments, inputPath, output.path()), _toolkit.file.number());
    std::string errorText =
        _hearsEverything ? toolkit.collectWholeErrorText() : toolkit.collectErrorText();
    const int status = toolkit.terminationStatus();
    if (status != 0) {
        store(error, toolkitError(status, std::move(errorText)));
        return std::nullopt;
    }
    KLFileUtilities::removeFile(inputPath);
    return output.release();
}

std::string KLToolkitProcessor::applyToolkitToFileWithOptionsAndReturnErrors(
    const std::string &jobPath, KLPrintOptions &options, std::vector<KLError> *errors,
    bool *coversOfJobsPaper)
{
    Progress progress = {jobPath, {}};
    if (!watermarkOption(options, "text", "").empty())
        applyWatermark(options, progress);
    if (textOption(options, "BookletPaperSize", "None") != "None" &&
        runCommand(bookletArguments(options), "Unable to apply booklet mode", progress))
        printDuplexWithTumble(options);
    const bool hasCovers =
        (usesCover(options, "Front") || usesCover(options, "Back")) &&
        runCommand(coverPageArguments(options), "Unable to apply cover pages", progress);

    if (coversOfJobsPaper != nullptr)
        *coversOfJobsPaper =
            hasCovers && wantsCoversInPDF(options) &&
            (wantsOtherPaper(options, "Front") || wantsOtherPaper(options, "Back")) &&
            isPDF(progress.path);
    if (errors != nullptr)
        *errors = std::move(progress.errors);
    return progress.path;
}

void KLToolkitProcessor::applyWatermark(const KLPrintOptions &options, Progress &progress)
{
    static constexpr char kFailure[] = "Unable to apply watermark";
    const auto fail = [&progress](const char *reason) {
        progress.errors.emplace_back(kErrorDomain, kCommandFailed, kFailure,
                                     KLError(kGeneralErrorDomain, kNoSuchFile, reason));
    };
    try {
        runCommand(watermarkArguments(options, _job, _measureText), kFailure, progress);
    } catch (const Platform::ModuleError &error) {
        fail(error.what());
    } catch (const std::length_error &error) {
        fail(error.what());
    }
}

bool KLToolkitProcessor::runCommand(const std::vector<std::string> &arguments, const char *failure,
                                    Progress &progress) const
{
    std::optional<KLError> error;
    auto outputPath = processWithArgumentsAndReturnError(progress.path, arguments, &error);
    if (outputPath)
        progress.path = std::move(*outputPath);
    else
        progress.errors.emplace_back(kErrorDomain, kCommandFailed, failure, std::move(*error));
    return outputPath.has_value();
}
