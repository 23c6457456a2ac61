#include "carryOut.h"

#include "JobControl.h"
#include "OutputFile.h"
#include "PDFCommands.h"
#include "PDFInput.h"
#include "PostScriptCommands.h"
#include "Streams.h"
#include "ToolkitError.h"

#include <cerrno>
#include <string_view>
#include <sys/stat.h>
#include <variant>

namespace {

enum class Format { PostScript, PDF };

/// Why a document of neither format is refused.
/// @param start  the first bytes of it
ToolkitError unknownFormat(std::string_view start)
{
    if (jobControlBefore(start) > 0)
        return ToolkitError(
            "What follows the printer's job control in the input is not PostScript.");
    if (start.find("%!PS-") != std::string_view::npos)
        return ToolkitError("Something other than the printer's job control stands in front of the "
                            "PostScript document.");
    return ToolkitError("The input is neither a PostScript nor a PDF document.");
}

/// Leaves the stream where it stands.
Format formatOf(std::FILE *input)
{
    const InputFile file(input);
    const std::string start =
        withoutJobControl(file).text(0, kLatestPDFStart + kPDFHeader.size() - 1);
    if (start.starts_with("%!")) // whether it keeps the conventions shows when it is read
        return Format::PostScript;
    // Readers of PDF do not mind what stands in front.
    const auto header = start.find(kPDFHeader);
    if (header != std::string::npos && start.substr(0, header).find("%!PS") == std::string::npos)
        return Format::PDF;
    throw unknownFormat(start);
}

/// @param problem  errno of an input that could not be opened
void requireRegularFile(std::FILE *input, int problem)
{
    struct stat status = {};
    if (input == nullptr)
        throw unreadableInput(problem);
    if (fstat(fileno(input), &status) != 0 || !S_ISREG(status.st_mode))
        throw ToolkitError("The input is no regular file.");
}

} // namespace

void carryOut(const Arguments &arguments, const std::string &ppdPath, bool endsProcess,
              Platform::TextSetter &texts)
{
    const Platform::Stream input = Platform::openForReading(arguments.input);
    const int problem = errno;
    // From here on, whatever goes wrong removes the output.
    OutputFile output(arguments.output, input.get());
    const Command command = commandFromArguments(arguments);
    requireRegularFile(input.get(), problem);

    const Job job{.input = input.get(),
                  .output = output.stream(),
                  .texts = texts,
                  .ppdPath = ppdPath,
                  .endsProcess = endsProcess};
    const Format format = formatOf(input.get());
    const auto apply = [&](const auto &request) {
        if (format == Format::PDF)
            applyToPDF(request, job);
        else
            applyToPostScript(request, job);
    };
    std::visit(apply, command);
    output.commit();
}
