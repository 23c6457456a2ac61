#include "preparedDocument.h"

#include "Arguments.h"
#include "CoverPlan.h"
#include "Imposition.h"
#include "KLFileUtilities.h"
#include "KLPrintOptions.h"
#include "KLToolkitProcessor.h"
#include "ObjectFormat.h"
#include "Streams.h"
#include "TemporaryDirectory.h"
#include "Text.h"
#include "sampleDocument.h"
#include "sheetsOfJob.h"
#include "trustedToolkit.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

using PreviewRequests::Prepare;

constexpr QSizeF kA4(595, 842);
constexpr char kNoBooklet[] = "Unable to apply booklet mode";
constexpr char kNoCovers[] = "Unable to apply cover pages";

/// What the toolkit has done.
struct ToolkitRun {
    std::string path; ///< of what is now the document
    bool tookPlace = false;
    std::vector<Refusal> refusals = {};
    bool coversOfJobsPaper = false;

    bool hasDone(const char *otherwise) const
    {
        return tookPlace &&
               std::ranges::find(refusals, otherwise, &Refusal::description) == refusals.end();
    }
};

// --- the document ---

std::string inTemporaryDirectory(const char *name)
{
    return Platform::temporaryDirectory() + "/" + name;
}

[[noreturn]] void failForSystem(Failure failure)
{
    throw PreviewFailure(failure, std::to_string(errno));
}

/// The toolkit removes what it has worked on: that must not be the user's file.
std::string linkTo(const std::string &documentPath)
{
    std::string link = inTemporaryDirectory("document.pdf");
    if (symlink(documentPath.c_str(), link.c_str()) != 0)
        failForSystem(Failure::NoPlace);
    return link;
}

std::string writtenSample(const KLPrintOptions &options)
{
    const KLPageSize size = options.pageSize();
    const bool isKnown =
        options.ppd().markedPageSize().has_value() && size.width > 0 && size.height > 0;
    std::string path = inTemporaryDirectory("sample.pdf");
    const std::string bytes = sampleDocument(isKnown ? QSizeF(size.width, size.height) : kA4);
    Platform::Stream file = Platform::openForWriting(path);
    if (!file || std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size() ||
        !Platform::closeStream(std::move(file)))
        failForSystem(Failure::NoPlace);
    return path;
}

/// Says what is wrong with a file that Poppler does not open, or that nobody should open.
/// @throws PreviewFailure unless it begins as a PDF does, anywhere in its first bytes
void refuseWhatIsNoPDF(const std::string &path)
{
    std::array<char, 1024> start = {};
    const Platform::Stream file = Platform::openForReading(path);
    if (!file)
        failForSystem(Failure::DocumentUnreadable);
    struct stat status = {};
    if (fstat(fileno(file.get()), &status) == 0 && !S_ISREG(status.st_mode))
        throw PreviewFailure(Failure::DocumentNoPDF);
    errno = 0;
    const std::size_t count = std::fread(start.data(), 1, start.size(), file.get());
    if (std::ferror(file.get()) != 0)
        failForSystem(Failure::DocumentUnreadable);
    if (count == 0)
        throw PreviewFailure(Failure::DocumentEmpty);
    if (std::string_view(start.data(), count).find("%PDF-") == std::string_view::npos)
        throw PreviewFailure(Failure::DocumentNoPDF);
}

std::unique_ptr<Poppler::Document> opened(const std::string &path, int mostPages)
{
    refuseWhatIsNoPDF(path);
    auto document = Poppler::Document::load(QFile::decodeName(path.c_str()));
    if (document && document->isLocked())
        throw PreviewFailure(Failure::DocumentLocked);
    if (!document)
        throw PreviewFailure(Failure::DocumentDamaged);
    if (document->numPages() < 1)
        throw PreviewFailure(Failure::DocumentEmpty);
    if (document->numPages() > mostPages)
        throw PreviewFailure(Failure::TooManyPages);
    return document;
}

// --- the toolkit ---

KLPrintOptions optionsOf(const Prepare &request)
{
    try {
        KLPrintOptions options(request.optionString.toStdString());
        options.setDefaultValueForKey(request.userName.toStdString(), "com.kalmira.username");
        options.setDefaultValueForKey(request.title.toStdString(), "com.kalmira.jobname");
        return options;
    } catch (const KLNoPPDError &error) {
        throw PreviewFailure(Failure::NoPPD, error.what());
    }
}

Refusal refusalOf(const KLError &error)
{
    return {
        QString::fromStdString(error.description().value_or("")),
        QString::fromStdString(Platform::trimmedText(error.underlyingDescription().value_or("")))};
}

ToolkitRun runToolkit(const Prepare &request, const std::string &path, KLPrintOptions &options)
{
    std::optional<std::string> objection;
    auto toolkit = trustedToolkitIn(request.toolkitBundle.toStdString(), &objection);
    if (!toolkit)
        throw PreviewFailure(Failure::NoToolkit,
                             objection.value_or(request.toolkitBundle.toStdString()));
    KLToolkitProcessor processor(std::move(*toolkit));
    processor.hearEverything();
    processor.setJobValues({.user = request.userName.toStdString(),
                            .title = request.title.toStdString(),
                            .jobId = {},
                            .printed = std::time(nullptr)});
    std::vector<KLError> errors;
    ToolkitRun run = {path, true};
    run.path = processor.applyToolkitToFileWithOptionsAndReturnErrors(path, options, &errors,
                                                                      &run.coversOfJobsPaper);
    std::ranges::transform(errors, std::back_inserter(run.refusals), &refusalOf);
    return run;
}

/// Whether the filter gets the job as a PDF.
bool takesPDF(const PPD &ppd)
{
    return std::ranges::any_of(ppd.filters(), [](std::string_view filter) {
        return filter.starts_with("application/vnd.cups-pdf ") ||
               filter.starts_with("application/pdf ");
    });
}

// --- the sheets ---

QString textOf(const KLPrintOptions &options, std::string_view key, const char *defaultText)
{
    const auto value = options.valueForKeyWithDefault(key, KLValue(std::string(defaultText)));
    return QString::fromStdString(Platform::description(*value));
}

Paper paperOfJob(const KLPrintOptions &options)
{
    return {textOf(options, "InputSlot", "Auto"), textOf(options, "MediaType", "")};
}

/// A cover that asks for no medium of its own is of the job's.
Paper paperOfCover(const KLPrintOptions &options, const std::string &side)
{
    const QString medium = textOf(options, side + "CoverMediaType", "None");
    return {textOf(options, side + "CoverSource", "Auto"),
            medium == "None" ? paperOfJob(options).medium : medium};
}

/// What the toolkit made of the same words.
CoverPages coverPagesOf(const KLPrintOptions &options)
{
    std::vector<std::string> words = coverPageArguments(options);
    words.insert(words.end(), {"input", "output"});
    return std::get<CoverPages>(commandFromArguments(splitArguments(words)));
}

bool makesBooklet(const KLPrintOptions &options)
{
    return textOf(options, "BookletPaperSize", "None") != "None";
}

QList<QSizeF> pageSizes(const Poppler::Document &document)
{
    QList<QSizeF> sizes;
    for (int number = 0; number < document.numPages(); ++number) {
        const auto page = document.page(number);
        const QSizeF size = page ? page->pageSizeF() : QSizeF();
        sizes.append(canBeDrawn(size) ? size : kA4);
    }
    return sizes;
}

/// @param originalPages  of the document before the toolkit
PrintedDocument printedDocument(const Poppler::Document &document, const KLPrintOptions &options,
                                const ToolkitRun &run, int originalPages)
{
    const char *ppdPath = std::getenv("PPD");
    const CoverPages covers = coverPagesOf(options);
    PrintedDocument printed;
    printed.pages = pageSizes(document);
    printed.oneSided = isOneSided(covers.duplex, ppdPath == nullptr ? "" : ppdPath);
    printed.turnedOver = covers.duplex == "tumble" ? Sheet::Edge::Short : Sheet::Edge::Long;
    printed.paper = paperOfJob(options);

    std::int64_t pages = originalPages;
    if (makesBooklet(options) && run.hasDone(kNoBooklet))
        pages = static_cast<std::int64_t>(bookletSideCount(static_cast<std::uint64_t>(pages)));
    if (!run.hasDone(kNoCovers))
        return printed;
    const CoverPlan plan =
        coverPlan(pages, covers.front.style, covers.back.style, printed.oneSided);
    if (plan.front)
        printed.frontCover = run.coversOfJobsPaper ? printed.paper : paperOfCover(options, "Front");
    if (plan.back)
        printed.backCover = run.coversOfJobsPaper ? printed.paper : paperOfCover(options, "Back");
    return printed;
}

} // namespace

PreparedDocument preparedDocument(const Prepare &request)
{
    KLPrintOptions options = optionsOf(request);
    const bool asPDF = takesPDF(options.ppd());
    if (!asPDF)
        options.setValueForKey("True", "CoverPagesInPDF");
    const std::string path = request.documentPath.isEmpty()
                                 ? writtenSample(options)
                                 : linkTo(QFile::encodeName(request.documentPath).toStdString());
    PreparedDocument prepared;
    prepared.document = opened(path, request.pages);
    const int originalPages = prepared.document->numPages();

    ToolkitRun run = {path};
    const bool hasToolkit = options.ppd().attribute("APDialogExtension").has_value();
    if (hasToolkit)
        run = runToolkit(request, path, options);
    else
        prepared.notes.push_back(Note::NoToolkit);
    run.coversOfJobsPaper = run.coversOfJobsPaper && asPDF;
    if (run.coversOfJobsPaper)
        prepared.notes.push_back(Note::CoversOfJobsPaper);
    if (run.path != path)
        prepared.document = opened(run.path, request.pages);
    KLFileUtilities::removeFile(run.path);

    prepared.sheets = sheetsOfJob(printedDocument(*prepared.document, options, run, originalPages));
    prepared.refusals = std::move(run.refusals);
    return prepared;
}
