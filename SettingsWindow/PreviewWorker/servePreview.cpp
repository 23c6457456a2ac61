#include "servePreview.h"

#include "PreviewMessages.h"
#include "preparedDocument.h"

#include <QImage>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <sys/resource.h>
#include <unistd.h>

namespace {

using PreviewAnswers::Failed;
using PreviewAnswers::Picture;
using PreviewAnswers::Sheets;
using PreviewRequests::Draw;
using PreviewRequests::Prepare;

constexpr qint64 kMostBytesOfRequest = qint64{4} << 20;
constexpr double kPointsOfInch = 72;

// --- bounds ---

void lowerLimit(__rlimit_resource resource, rlim_t most)
{
    rlimit limit = {};
    if (getrlimit(resource, &limit) != 0)
        return;
    limit.rlim_cur = std::min(limit.rlim_max, most);
    setrlimit(resource, &limit);
}

/// The toolkit that is started here inherits these.
void limitResources(const Prepare &request)
{
#ifndef KL_SANITIZED // the sanitizers take address space as they please
    lowerLimit(RLIMIT_AS, static_cast<rlim_t>(request.memory));
#endif
    lowerLimit(RLIMIT_FSIZE, static_cast<rlim_t>(request.writing));
    lowerLimit(RLIMIT_CORE, 0);
}

/// From now on; the process ends by SIGXCPU past it.
void allowProcessorTime(qint32 seconds)
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    const auto used = usage.ru_utime.tv_sec + usage.ru_stime.tv_sec + 1;
    lowerLimit(RLIMIT_CPU, static_cast<rlim_t>(used) + static_cast<rlim_t>(seconds));
}

// --- the two streams ---

bool writeWhole(int descriptor, const QByteArray &bytes)
{
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count = write(descriptor, bytes.constData() + written,
                                    static_cast<std::size_t>(bytes.size() - written));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        written += count;
    }
    return true;
}

/// @return false at the end, which the window makes
bool readMore(int descriptor, MessageReader<PreviewRequest> &reader)
{
    std::array<char, 4096> buffer = {};
    ssize_t count = -1;
    do {
        count = read(descriptor, buffer.data(), buffer.size());
    } while (count < 0 && errno == EINTR);
    if (count > 0)
        reader.add(QByteArray(buffer.data(), count));
    return count > 0;
}

// --- pages ---

/// Pixels that Poppler makes of a page's edge.
double pixelsOf(double points, double resolution)
{
    return std::ceil(points * resolution / kPointsOfInch);
}

/// Pixels per inch for a page that fills the box in one direction.
double resolutionFor(QSizeF page, QSize box)
{
    constexpr double kHair = 1 - 1e-9; // for an edge that would be rounded up beyond the box
    const double resolution =
        kPointsOfInch * std::min(box.width() / page.width(), box.height() / page.height());
    const bool fits = pixelsOf(page.width(), resolution) <= box.width() &&
                      pixelsOf(page.height(), resolution) <= box.height();
    return fits ? resolution : resolution * kHair;
}

PreviewAnswer drawnPage(const Poppler::Document &document, const Draw &request)
{
    const auto page = document.page(request.page);
    const QSizeF size = page ? page->pageSizeF() : QSizeF();
    if (!canBeDrawn(size))
        return Failed{Failure::NotDrawn};
    const double resolution = resolutionFor(size, request.box);
    QImage image = page->renderToImage(resolution, resolution);
    image.convertTo(QImage::Format_RGB32);
    if (image.isNull())
        return Failed{Failure::NotDrawn};
    return Picture{image.size(), QByteArray(reinterpret_cast<const char *>(image.constBits()),
                                            image.sizeInBytes())};
}

/// The conversation.
class PreviewServer {
public:
    explicit PreviewServer(int answers) : _answers(answers) {}

    /// @return whether the answer arrived
    bool answer(const PreviewRequest &request)
    {
        if (const auto *prepare = std::get_if<Prepare>(&request))
            return this->prepare(*prepare);
        return draw(std::get<Draw>(request));
    }

private:
    bool prepare(const Prepare &request);
    bool open(const Prepare &request);
    bool draw(const Draw &request);
    bool say(const PreviewAnswer &answer) const { return writeWhole(_answers, bytesOf(answer)); }

    int _answers;
    qint32 _drawingSeconds = 0;
    std::unique_ptr<Poppler::Document> _document;
};

bool PreviewServer::prepare(const Prepare &request)
{
    limitResources(request);
    allowProcessorTime(request.preparingSeconds);
    _drawingSeconds = request.drawingSeconds;
    try {
        return open(request);
    } catch (const PreviewFailure &failure) {
        return say(Failed{failure.failure(), failure.what()});
    } catch (const std::bad_alloc &) {
        return say(Failed{Failure::NoMemory});
    } catch (const std::exception &error) {
        return say(Failed{Failure::Other, error.what()});
    }
}

bool PreviewServer::open(const Prepare &request)
{
    PreparedDocument prepared = preparedDocument(request);
    _document = std::move(prepared.document);
    _document->setRenderHint(Poppler::Document::Antialiasing);
    _document->setRenderHint(Poppler::Document::TextAntialiasing);
    const auto sayIt = [this](const auto &answer) { return say(answer); };
    return std::ranges::all_of(prepared.refusals, sayIt) &&
           std::ranges::all_of(prepared.notes, sayIt) && say(Sheets{std::move(prepared.sheets)});
}

bool PreviewServer::draw(const Draw &request)
{
    if (!_document)
        return say(Failed{Failure::NotDrawn});
    allowProcessorTime(_drawingSeconds);
    return say(drawnPage(*_document, request));
}

} // namespace

int servePreview(const Platform::Descriptor &requests, const Platform::Descriptor &answers)
{
    // What it has to say of damaged documents helps nobody here.
    Poppler::setDebugErrorFunction([](const QString &, const QVariant &) {}, {});
    PreviewServer server(answers.number());
    MessageReader<PreviewRequest> reader(kMostBytesOfRequest);
    do {
        while (const auto request = reader.next()) {
            if (!server.answer(*request))
                return EXIT_FAILURE;
        }
        if (reader.isNonsense())
            return EXIT_FAILURE;
    } while (readMore(requests.number(), reader));
    return EXIT_SUCCESS;
}
