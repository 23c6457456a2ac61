#include "runFilter.h"

#include "KLFileUtilities.h"
#include "KLPJLHandler.h"
#include "KLPrintJob.h"
#include "KLPrintOptions.h"
#include "KLToolkitProcessor.h"
#include "MadeFiles.h"
#include "MemoryShortage.h"
#include "PJL.h"
#include "Streams.h"
#include "WriteLog.h"
#include "domainLookup.h"
#include "headerText.h"
#include "jobHeader.h"
#include "protectedHeader.h"
#include "settingRules.h"
#include "spoolToFile.h"
#include "trustedToolkit.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

/// Where the job's pages lie.
struct JobFile {
    std::string path;
    bool spooled; ///< a file of our own, removed when the job is complete
};

constexpr char kUnableToSpool[] = "Unable to spool print job";
constexpr char kUnableToRead[] = "Unable to read from input";
constexpr char kUnableToProcess[] = "Unable to process input print data";
constexpr char kUnableToProtect[] = "Unable to create the job header of a protected job";

/// True when all of the input, of which nothing was read before, was copied.
bool copyWhole(FILE *input, FILE *output)
{
    if (std::fflush(output) != 0 || !Platform::moveInKernel(input, output))
        return false;
    // The copy takes a read error for the end of the data; a job that lost its end must not pass
    // for complete.
    return spoolToFile(input, output) && std::ferror(input) == 0;
}

JobFile spoolStandardInput(const std::function<bool()> &isWhole)
{
    auto file = KLFileUtilities::makeTemporaryFile();
    if (!file || !copyWhole(stdin, file->stream.get()) ||
        !Platform::closeStream(std::move(file->stream)))
        throw FatalError(kUnableToSpool);
    if (isWhole && !isWhole()) {
        KLFileUtilities::removeFile(file->path);
        throw FatalError(kUnableToSpool);
    }
    return {file->path, true};
}

JobFile secureJobData(const FilterArguments &arguments, const std::function<bool()> &isWhole)
{
    if (arguments.file != nullptr)
        return {arguments.file, false};
    return spoolStandardInput(isWhole);
}

/// What the toolkit has made of a file that was named stays, as a file of whoever named it.
void removeIfSpooled(const JobFile &jobFile)
{
    if (jobFile.spooled)
        KLFileUtilities::removeFile(jobFile.path);
    else
        KLFileUtilities::keepFile(jobFile.path);
}

/// Builds the store with the arguments as defaults.
std::shared_ptr<KLPrintOptions> makeOptions(const FilterArguments &arguments)
{
    auto options = std::make_shared<KLPrintOptions>(arguments.options);
    options->setDefaultValueForKey(arguments.userName, "com.kalmira.username");
    options->setDefaultValueForKey(arguments.jobTitle, "com.kalmira.jobname");
    options->setDefaultValueForKey(arguments.copies, "com.kalmira.copies");
    return options;
}

/// The same, looked through. Nothing is printed of a queue without a usable PPD, nor of a job with
/// a setting that the printer would not take, so the pages are not left lying about.
std::shared_ptr<KLPrintOptions> makeOptionsOrClear(const FilterArguments &arguments,
                                                   const JobFile &jobFile)
{
    try {
        auto options = makeOptions(arguments);
        if (const auto objection = objectionToSettings(*options))
            throw FatalError(*objection);
        return options;
    } catch (const KLNoPPDError &) {
        removeIfSpooled(jobFile);
        throw;
    } catch (const FatalError &) {
        removeIfSpooled(jobFile);
        throw;
    }
}

void settleDomain(KLPrintOptions &options)
{
    if (auto domain = domainForUser(options))
        options.setDefaultValueForKey(std::move(*domain), "com.kalmira.domainname");
}

void logToolkitErrors(const std::vector<KLError> &errors)
{
    for (const KLError &error : errors) {
        WriteLog("ERROR: %@", error.description());
        WriteLog("DEBUG: %@: %@", error.description(), error.underlyingDescription());
    }
}

/// Lets the toolkit rewrite the job; without a toolkit the job stays as it is.
/// @return the path of the file that is the job from here on
std::string applyToolkit(const FilterArguments &arguments, const std::string &jobPath,
                         KLPrintOptions &options)
{
    std::optional<std::string> objection;
    auto toolkit = trustedToolkit(options, &objection);
    if (!toolkit) {
        WriteLog("INFO: A required component could not be found, some print settings may not be "
                 "applied");
        if (objection)
            WriteLog("DEBUG: The toolkit is not used: %@", objection);
        return jobPath;
    }
    KLToolkitProcessor processor(std::move(*toolkit));
    processor.setJobValues({.user = arguments.userName,
                            .title = arguments.jobTitle,
                            .jobId = arguments.jobId,
                            .printed = std::time(nullptr)});
    std::vector<KLError> errors;
    bool coversOfJobsPaper = false;
    auto rewrittenPath = processor.applyToolkitToFileWithOptionsAndReturnErrors(
        jobPath, options, &errors, &coversOfJobsPaper);
    logToolkitErrors(errors);
    if (coversOfJobsPaper)
        WriteLog("INFO: The covers are printed on the paper of the job: a PDF cannot choose trays");
    return rewrittenPath;
}

/// What the header calls the job.
JobName jobName(const FilterArguments &arguments)
{
    // NOLINTNEXTLINE(cert-err34-c): an id that is no number counts as 0
    return {std::atoi(arguments.jobId), arguments.userName, arguments.jobTitle};
}

/// Walks the PJL header onto standard output; on the way it gets the job's settings. Without a
/// place to put it the job is printed all the same.
void writeOpenHeader(const FilterArguments &arguments,
                     const std::shared_ptr<KLPrintOptions> &options)
{
    const Platform::Stream file = Platform::openTemporary();
    if (!file) {
        WriteLog("ERROR: Unable to create the job header, the job's settings may not be applied");
        return; // like a PPD that gives no header
    }
    const auto header = emittedHeader(options->ppd(), jobName(arguments), file.get());
    if (!header)
        throw FatalError(kUnableToProcess);
    walkHeader(*header, options, stdout);
}

/// As long as it lives, memory that runs out ends the run as a protected job without its header
/// does.
class MemoryForProtection {
public:
    explicit MemoryForProtection(const JobFile &jobFile) : _jobFile(jobFile)
    {
        take("CRIT: Unable to create the job header of a protected job\n", true);
    }
    ~MemoryForProtection() { take(kOutOfMemoryLine, false); }
    MemoryForProtection(const MemoryForProtection &) = delete;
    MemoryForProtection &operator=(const MemoryForProtection &) = delete;

private:
    void take(const char *line, bool removePages) const
    {
        if (_jobFile.spooled)
            Platform::MadeFiles::setUnfinished(_jobFile.path, removePages);
        Platform::endWhenMemoryRunsOut(line);
    }

    const JobFile &_jobFile;
};

/// nullopt also for lack of memory.
std::optional<std::string> makeProtectedHeader(const FilterArguments &arguments,
                                               const std::shared_ptr<KLPrintOptions> &options,
                                               const JobFile &jobFile)
{
    const MemoryForProtection memory(jobFile);
    try {
        return protectedHeader(options, jobName(arguments));
    } catch (const std::bad_alloc &) {
        return std::nullopt;
    }
}

/// The same for a job that asked for protection: without a header that says so it prints nothing,
/// and its pages are not left lying about.
void writeProtectedHeader(const FilterArguments &arguments,
                          const std::shared_ptr<KLPrintOptions> &options, const JobFile &jobFile)
{
    const auto header = makeProtectedHeader(arguments, options, jobFile);
    if (!header) {
        removeIfSpooled(jobFile);
        throw FatalError(kUnableToProtect);
    }
    if (std::fwrite(header->data(), 1, header->size(), stdout) != header->size())
        throw FatalError(kUnableToProcess);
}

void writeHeader(const FilterArguments &arguments, const std::shared_ptr<KLPrintOptions> &options,
                 const JobFile &jobFile)
{
    if (asksForProtection(*options))
        writeProtectedHeader(arguments, options, jobFile);
    else
        writeOpenHeader(arguments, options);
}

void writeBody(FILE *job)
{
    // Bytes that are still buffered are part of the copy.
    if (!copyWhole(job, stdout) || std::fflush(stdout) != 0)
        throw FatalError(kUnableToProcess);
}

void writeJobEnd(const KLPrintOptions &options)
{
    const auto pageSize = headerText(options.valueForKeyWithDefault("PageSize", "A4"));
    std::string end(kUniversalExitLanguageMarker);
    // Pages are not counted: every job says one.
    end += KLPJLHandler::formatDSSCLine("JOBENDINFO PAGES=%lu", 1UL);
    end += KLPJLHandler::formatDSSCLine("JOBENDINFO PAGESIZE=%@", pageSize);
    end += "@PJL EOJ\n"; // a bare line feed, and no exit language behind it
    const std::size_t written = std::fwrite(end.data(), 1, end.size(), stdout);
    if (written != end.size() || std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        throw FatalError(kUnableToProcess);
}

void printJob(const FilterArguments &arguments, const std::function<bool()> &isWhole)
{
    JobFile jobFile = secureJobData(arguments, isWhole);
    const auto options = makeOptionsOrClear(arguments, jobFile);
    settleDomain(*options);
    jobFile.path = applyToolkit(arguments, jobFile.path, *options);

    const Platform::Stream job = KLFileUtilities::openForReading(jobFile.path);
    if (!job)
        throw FatalError(kUnableToRead);

    writeHeader(arguments, options, jobFile);
    writeBody(job.get());
    writeJobEnd(*options);
    removeIfSpooled(jobFile);
}

/// Writes the "CRIT: " line. @return the exit status
int fail(const char *reason)
{
    std::fprintf(stderr, "%s\n", onOneLine(std::string("CRIT: ") + reason).c_str());
    return EXIT_FAILURE;
}

} // namespace

int runFilter(const FilterArguments &arguments, const std::function<bool()> &isWhole)
{
    try {
        printJob(arguments, isWhole);
    } catch (const std::bad_alloc &) {
        return fail("Out of memory");
    } catch (const std::exception &error) {
        return fail(error.what());
    }
    return EXIT_SUCCESS;
}
