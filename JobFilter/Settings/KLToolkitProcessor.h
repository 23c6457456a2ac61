#pragma once

#include "KLError.h"
#include "KLPrintOptions.h"
#include "TextMeasuring.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The name under which the toolkit knows a paper source of the printer; a name without one of its
/// own stays as it is.
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
/// @param angle  in degrees, clockwise
/// @param spotX  percent of the page's width
/// @param spotY  percent of the page's height
KLWatermarkPosition watermarkPosition(const Platform::TextSize &box, const KLPageSize &page,
                                      double angle, double spotX, double spotY);

/// The toolkit: an executable that rewrites a job file, one command at a time (watermark, booklet,
/// cover pages).
///
/// One thread; a call returns when its child has ended. Nothing is logged here: errors go up.
class KLToolkitProcessor {
public:
    /// How the size of a text is found: text, PostScript font name, size in points.
    using TextMeasurer = std::function<Platform::TextSize(
        const std::string &text, const std::string &fontName, double size)>;

    /// (`initWithToolkitPath:`)
    /// @param toolkitPath  the executable's full path; not looked at before it is run.
    /// @param measureText  only called for a watermark
    explicit KLToolkitProcessor(std::string toolkitPath,
                                TextMeasurer measureText = Platform::measureTextWithModule);

    const std::string &toolkitPath() const { return _toolkitPath; }
    void setToolkitPath(std::string toolkitPath) { _toolkitPath = std::move(toolkitPath); }

    /// Runs one toolkit command: toolkit path, the arguments, the input file, the output file.
    ///
    /// The output is a new temporary file ("toolkit-XXXXXX"). A command that worked consumes its
    /// input: the file is removed, whoever made it.
    /// @param arguments  the command word and its options
    /// @param error      where an error goes; may be null
    /// @return the output file's path, a file that then belongs to the caller. nullopt on failure:
    ///         the input is untouched, the output gone, and the error is either of
    ///         - NSCocoaErrorDomain, 4: there is no place for the output; nothing was run
    ///         - KLToolkitProcessorErrorDomain: the toolkit's exit status, or the number of the
    ///           signal that ended it, with its standard error as description (see
    ///           Platform::ChildProcess for a text that comes too early)
    /// @throws Platform::ChildProcessError when the toolkit does not start; input and output as
    ///         after a failure
    std::optional<std::string>
    processWithArgumentsAndReturnError(const std::string &inputPath,
                                       const std::vector<std::string> &arguments,
                                       std::optional<KLError> *error = nullptr);

    /// Runs the commands that the job's settings ask for, each on the file that the last one which
    /// worked has left: watermark, booklet, cover pages.
    ///
    /// After a booklet that worked the job prints duplex with tumble: the PPD's mark and the store
    /// say so.
    /// @param errors  receives the list of errors, also when it is empty; may be null. A command
    ///                that failed, or a watermark that could not be measured, adds one of domain
    ///                KLToolkitProcessorErrorDomain and code 127 with what led to it underneath.
    /// @return the path of the file that is now the job; `jobPath` when no command worked
    /// @throws Platform::ChildProcessError as above
    std::string applyToolkitToFileWithOptionsAndReturnErrors(const std::string &jobPath,
                                                             KLPrintOptions &options,
                                                             std::vector<KLError> *errors);

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
                    Progress &progress);

    std::string _toolkitPath;
    TextMeasurer _measureText;
};
