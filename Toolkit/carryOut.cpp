#include "carryOut.h"

#include "OutputFile.h"
#include "PDFCommands.h"
#include "PostScriptCommands.h"
#include "Streams.h"
#include "ToolkitError.h"

#include <cerrno>
#include <string_view>
#include <sys/stat.h>
#include <variant>

namespace {

enum class Format { PostScript, PDF };

/// Leaves the stream at its start.
Format formatOf(std::FILE *input)
{
    char start[5] = {};
    const std::size_t size = std::fread(start, 1, sizeof start, input);
    if (std::ferror(input) != 0)
        throw unreadableInput(errno);
    std::rewind(input);
    const std::string_view head(start, size);
    if (head.starts_with("%!")) // whether it keeps the conventions shows when it is read
        return Format::PostScript;
    if (head == "%PDF-")
        return Format::PDF;
    throw ToolkitError("The input is neither a PostScript nor a PDF document.");
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

void carryOut(const Arguments &arguments, const std::string &ppdPath)
{
    const Platform::Stream input = Platform::openForReading(arguments.input);
    const int problem = errno;
    // From here on, whatever goes wrong removes the output.
    OutputFile output(arguments.output, input.get());
    const Command command = commandFromArguments(arguments);
    requireRegularFile(input.get(), problem);

    const Job job{.input = input.get(), .output = output.stream(), .ppdPath = ppdPath};
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
