#pragma once

#include "KLError.h"
#include "KLPrintOptions.h"
#include "TextMeasuring.h"
#include "TrustedProgram.h"
#include "watermarkPlaceholders.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The name under which the toolkit knows a paper source of the printer: "Auto" is "AutoSelect",
/// "SheetFeedBypass" is "Bypass", "AdditionalExternalLCF" is "ExternalLCF2". Any other name, the
/// empty one too, stays as it is; letter case counts.
std::string adjustPaperSourceForToolkit(std::string_view source);

/// A place on the page, in points from its lower left corner.
struct KLWatermarkPosition {
    double x;
    double y;
};

/// Where the toolkit starts a watermark's text so that the text, once turned, is centred on the
/// chosen spot: the lower left corner of its box.
/// @param box    width and height of the text, in points
/// @param page   width and height of the page, in points
/// @param angle  in degrees, clockwise; any value
/// @param spotX  percent of the page's width, from the left; any value
/// @param spotY  percent of the page's height, from below; any value
KLWatermarkPosition watermarkPosition(const Platform::TextSize &box, const KLPageSize &page,
                                      double angle, double spotX, double spotY);

/// The words of the toolkit's command for cover pages, without the files, as the settings ask for
/// it (see KLToolkitProcessor). Where they ask for no covers, both have the style "none".
std::vector<std::string> coverPageArguments(const KLPrintOptions &options);

/// The toolkit: an executable that rewrites a job file, one command at a time (watermark, booklet,
/// cover pages).
///
/// One thread; a call returns when its child has ended. Nothing is logged here: errors go up.
class KLToolkitProcessor {
public:
    /// How the size of a text is found: text, PostScript font name, size in points. Throws
    /// Platform::ModuleError when it cannot be found.
    using TextMeasurer = std::function<Platform::TextSize(
        const std::string &text, const std::string &fontName, double size)>;

    /// (`initWithToolkitPath:`)
    /// @param toolkitPath  the executable's full path; not looked at before it is run.
    /// @param measureText  not empty; only called for a watermark, which fails when it throws
    ///                     Platform::ModuleError
    explicit KLToolkitProcessor(std::string toolkitPath,
                                TextMeasurer measureText = Platform::measureTextWithModule);

    /// The same with a program that has been looked at: the file that is open is the one that runs,
    /// as long as no other path is set.
    explicit KLToolkitProcessor(Platform::TrustedProgram toolkit,
                                TextMeasurer measureText = Platform::measureTextWithModule);

    const std::string &toolkitPath() const { return _toolkit.path; }
    void setToolkitPath(std::string toolkitPath) { _toolkit = {std::move(toolkitPath)}; }

    /// What the placeholders of a watermark stand for; without it, for nothing. The user that the
    /// job's settings name ("com.kalmira.username") stands above the one here.
    void setJobValues(JobValues job) { _job = std::move(job); }

    /// Takes the words of a toolkit that ends at once for the error's description, too. Without
    /// this they are lost, see Platform::ChildProcess::collectErrorText().
    void hearEverything() { _hearsEverything = true; }

    /// Runs one toolkit command: toolkit path, the arguments, the input file, the output file.
    ///
    /// The output is a new temporary file ("toolkit-XXXXXX"). A command that worked consumes its
    /// input: the file is removed, whoever made it.
    /// @param inputPath  a temporary file of this run, or any other; handed on as it is, and not
    ///                   opened here
    /// @param arguments  the command word and its options, handed on as they are
    /// @param error      where an error goes; may be null. It stays as it was on success, and when
    ///                   this throws.
    /// @return the output file's path, a file that then belongs to the caller; open it with
    ///         KLFileUtilities::openForReading(), which refuses it when the toolkit has left
    ///         something else there than a regular file of its own. nullopt on failure: the input
    ///         is untouched, the output gone, and the error is either of
    ///         - NSCocoaErrorDomain, 4: there is no place for the output, or another file has the
    ///           name of the input that this run made; nothing was run
    ///         - KLToolkitProcessorErrorDomain: the toolkit's exit status, or the number of the
    ///           signal that ended it, with its standard error as description (see
    ///           Platform::ChildProcess for a text that comes too early)
    /// @throws Platform::ChildProcessError when the toolkit does not start; input and output as
    ///         after a failure
    std::optional<std::string>
    processWithArgumentsAndReturnError(const std::string &inputPath,
                                       const std::vector<std::string> &arguments,
                                       std::optional<KLError> *error = nullptr) const;

    /// Runs the commands that the job's settings ask for, each on the file that the last one which
    /// worked has left, in this order. A value is read in its text form and compared exactly,
    /// letter case included; numbers are read as far as they go (Platform::doubleFromText()).
    ///
    /// watermark, when the text is not empty. Keys begin with "com.kalmira.pde.watermark.":
    /// - "text", default empty; "font", a PostScript name, default "Helvetica"; "color", default
    ///   "0,0,0": handed on as they are
    /// - "size", points, default "36": handed on as it is, and read to measure the text
    /// - "angle", degrees, clockwise, default "0": handed on negated
    /// - "x" and "y", percent of the page from the lower left, default "50": with the text's size
    ///   and KLPrintOptions::pageSize() they make the position (see watermarkPosition())
    /// - "ordering", default "0": that is above the page's marks, all else below
    /// - "overprint", default "False": "True" adds an argument
    /// - "pages", default empty for all: anything else is added and handed on as it is
    /// - "place", "distance", "fit", default empty: anything else is handed on as it is, and the
    ///   toolkit finds the position, page by page; by "x" and "y" where there is no "place"
    /// - "placeholders", default "False": with "True" the text gets what setJobValues() has told,
    ///   and the toolkit puts the others in and finds the position
    ///
    /// booklet, when "BookletPaperSize", default "None", is not "None" (the empty text is a name
    /// too):
    /// - "BookletCenterMargin" and "BookletOuterMargin", lengths as jobfilter-toolkit(1) reads
    /// them, default
    ///   "Off", which is 0
    /// - "BookletPageLayout", default "True": that is from left to right, all else right to left
    /// - "BookletSignatureSheets", a number of sheets, and "BookletCreep", a length, default "Off":
    ///   handed on as they are, and not at all when they are "Off"
    /// - "BookletTurnLandscape", default "False": landscape pages are turned when it is "True"
    /// When it worked, the job prints duplex with tumble: the PPD's mark and the store's "Duplex"
    /// become "DuplexTumble", for the cover pages and for the header.
    ///
    /// coverpages, when "UseFrontCover" or "UseBackCover", default "False", is "True":
    /// - "FrontCoverPrintStyle" and "BackCoverPrintStyle", default "None": in lower case, and
    ///   "none" for a side that is off
    /// - "FrontCoverMediaType", "BackCoverMediaType" and, of the job itself, "MediaType", default
    ///   "None"
    /// - "FrontCoverSource", "BackCoverSource" and, of the job itself, "InputSlot", default "Auto",
    ///   by the toolkit's names (see adjustPaperSourceForToolkit())
    /// - "Duplex", default "None": "none", "tumble" for "DuplexTumble", "notumble" for
    ///   "DuplexNoTumble", any other as it is
    /// - "CoverPagesInPDF", default "False": "True" asks for the covers of a PDF document, too
    ///
    /// The words of the command lines, in order, are in jobfilter-toolkit(1).
    /// @param jobPath  consumed by the first command that works
    /// @param errors   receives the list of errors, in the place of what it held, also when it is
    ///                 empty; may be null. A command that failed, or a watermark that could not be
    ///                 measured or is too long, adds one of domain KLToolkitProcessorErrorDomain
    ///                 and code 127 with what led to it underneath:
    ///                 processWithArgumentsAndReturnError()'s error, or NSCocoaErrorDomain, 4 with
    ///                 the reason in words. The descriptions are "Unable to apply watermark",
    ///                 "Unable to apply booklet mode" and "Unable to apply cover pages".
    /// @param coversOfJobsPaper  receives whether a cover that was to come from another source or
    ///                 to be of another medium than the job is of the job's paper, as the job is a
    ///                 PDF document; may be null
    /// @return the path of the file that is now the job, the caller's; `jobPath` when no command
    ///         worked
    /// @throws Platform::ChildProcessError as above; what earlier commands left is not known then
    std::string applyToolkitToFileWithOptionsAndReturnErrors(const std::string &jobPath,
                                                             KLPrintOptions &options,
                                                             std::vector<KLError> *errors,
                                                             bool *coversOfJobsPaper = nullptr);

private:
    /// How far the commands have come.
    struct Progress {
        std::string path; ///< what the next command works on
        std::vector<KLError> errors;
    };

    void applyWatermark(const KLPrintOptions &options, Progress &progress);
    /// @param failure  what the command's error says
    /// @return whether the command worked
    bool runCommand(const std::vector<std::string> &arguments, const char *failure,
                    Progress &progress) const;

    Platform::TrustedProgram _toolkit; ///< its file is none when only the path was given
    TextMeasurer _measureText;
    JobValues _job;
    bool _hearsEverything = false;
};
