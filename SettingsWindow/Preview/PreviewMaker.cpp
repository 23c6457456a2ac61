#include "PreviewMaker.h"

#include "PreviewMessages.h"
#include "PreviewProcess.h"
#include "previewWords.h"

#include <QCache>
#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <cmath>
#include <optional>
#include <tuple>
#include <utility>

namespace {

using PreviewAnswers::Failed;
using PreviewAnswers::Picture;
using PreviewAnswers::Sheets;

/// A picture that is asked for.
struct WantedPicture {
    int sheet;
    Side side;
    QSize box; ///< pixels of the picture
    qreal devicePixelRatio;
};

/// What a picture that was drawn is known by.
struct DrawnPage {
    int page;
    QSize box;
    bool operator==(const DrawnPage &) const = default;
};

size_t qHash(const DrawnPage &drawn, size_t seed = 0)
{
    return qHashMulti(seed, drawn.page, drawn.box.width(), drawn.box.height());
}

/// The pixels for a box in the window's, not more than may be.
QSize boundedBox(QSize pixels, qreal devicePixelRatio, qint64 most)
{
    const double width = std::max(1.0, pixels.width() * devicePixelRatio);
    const double height = std::max(1.0, pixels.height() * devicePixelRatio);
    const double part = std::min(1.0, std::sqrt(static_cast<double>(most) / width / height));
    const auto edge = [part, most](double length) {
        return static_cast<int>(std::clamp(length * part, 1.0, static_cast<double>(most)));
    };
    return {edge(width), edge(height)};
}

/// The bytes are exactly as many as the size asks for.
QImage imageOf(const Picture &picture)
{
    const QImage view(reinterpret_cast<const uchar *>(picture.pixels.constData()),
                      picture.size.width(), picture.size.height(),
                      qsizetype{4} * picture.size.width(), QImage::Format_RGB32);
    return view.copy();
}

} // namespace

/// One job at a time, and within it one request at a time.
class PreviewMaker::Implementation {
public:
    Implementation(PreviewMaker *maker, PreviewPrograms programs, const PreviewLimits &limits)
        : _maker(maker), _programs(std::move(programs)), _limits(limits), _pictures(limits.cache)
    {
        removeFoldersOfEndedWindows();
    }

    void setJob(const PreviewJob &job);
    void show(const WantedPicture &wanted);
    void stop();
    bool isBusy() const { return _isPreparing || _drawing.has_value(); }
    QSize boxFor(QSize pixels, qreal devicePixelRatio) const
    {
        return boundedBox(pixels, devicePixelRatio, _limits.picture);
    }

private:
    /// What is drawn at the moment.
    struct Drawing {
        WantedPicture wanted;
        int page;
    };

    void begin();
    void dropProcess();
    void answer(const PreviewAnswer &answer);
    void take(const Refusal &refusal) { emit _maker->refused(wordsOf(refusal)); }
    void take(Note note) { emit _maker->noted(wordsOf(note)); }
    void take(const Sheets &sheets);
    void take(const Picture &picture);
    void take(const Failed &failed);
    void takeEnd(Failure failure, const QString &detail);
    void drawView();
    int pageOf(const WantedPicture &wanted) const;
    bool deliverKept(const WantedPicture &wanted);
    void deliver(const WantedPicture &wanted, QImage picture);

    PreviewMaker *_maker;
    PreviewPrograms _programs;
    PreviewLimits _limits;
    std::optional<PreviewJob> _job;
    QPointer<PreviewProcess> _process; ///< null when nothing is open; the maker's child
    bool _isPreparing = false;
    QList<Sheet> _sheets;
    std::optional<WantedPicture> _view; ///< asked for last, shown or not
    bool _viewIsWaiting = false;
    std::optional<Drawing> _drawing;
    QCache<DrawnPage, QImage> _pictures; ///< of this job
};

void PreviewMaker::Implementation::setJob(const PreviewJob &job)
{
    dropProcess();
    _pictures.clear();
    _sheets.clear();
    _viewIsWaiting = _view.has_value();
    _job = job;
    begin();
}

void PreviewMaker::Implementation::begin()
{
    _process = new PreviewProcess(_programs, _limits, _maker);
    connect(_process, &PreviewProcess::answered, _maker,
            [this](const PreviewAnswer &message) { answer(message); });
    connect(_process, &PreviewProcess::working, _maker, [this](int command, int percent) {
        emit _maker->progress(
            percent,
            QCoreApplication::translate("Preview", "Preparing the pages, step %L1").arg(command));
    });
    connect(_process, &PreviewProcess::failed, _maker,
            [this](Failure failure, const QString &detail) { takeEnd(failure, detail); });
    _isPreparing = true;
    _process->prepare(*_job);
    emit _maker->progress(-1, QCoreApplication::translate("Preview", "Preparing the pages"));
}

void PreviewMaker::Implementation::dropProcess()
{
    if (_process)
        _process->retire();
    _process = nullptr;
    _isPreparing = false;
    _drawing.reset();
}

void PreviewMaker::Implementation::show(const WantedPicture &wanted)
{
    _view = wanted;
    _viewIsWaiting = !deliverKept(wanted);
    if (_viewIsWaiting && !_process && _job)
        begin();
    drawView();
}

void PreviewMaker::Implementation::stop()
{
    if (!isBusy())
        return;
    dropProcess();
    _viewIsWaiting = false;
    emit _maker->progress(-1, {});
    emit _maker->stopped();
}

void PreviewMaker::Implementation::answer(const PreviewAnswer &answer)
{
    const bool toDraw = std::holds_alternative<Picture>(answer);
    const bool isAsked = std::holds_alternative<Failed>(answer) ? isBusy()
                         : toDraw                               ? _drawing.has_value()
                                                                : _isPreparing;
    if (!isAsked)
        return takeEnd(Failure::Ended, qt_error_string(EPROTO));
    std::visit([this](const auto &alternative) { take(alternative); }, answer);
}

void PreviewMaker::Implementation::take(const Sheets &sheets)
{
    _isPreparing = false;
    _sheets = sheets.sheets;
    emit _maker->sheetsKnown(_sheets);
    drawView();
}

void PreviewMaker::Implementation::take(const Picture &picture)
{
    const Drawing drawn = *std::exchange(_drawing, std::nullopt);
    QImage image = imageOf(picture);
    _pictures.insert({drawn.page, drawn.wanted.box}, new QImage(image), image.sizeInBytes());
    deliver(drawn.wanted, std::move(image));
    drawView();
}

void PreviewMaker::Implementation::take(const Failed &failed)
{
    if (_isPreparing)
        return takeEnd(failed.failure, failed.detail);
    _drawing.reset();
    emit _maker->failed(wordsOf(failed.failure, failed.detail));
    drawView();
}

/// The next picture that is asked for begins anew, but not the one that was waiting: it might end
/// in the same way, again and again.
void PreviewMaker::Implementation::takeEnd(Failure failure, const QString &detail)
{
    dropProcess();
    _viewIsWaiting = false;
    emit _maker->progress(-1, {});
    emit _maker->failed(wordsOf(failure, detail));
}

void PreviewMaker::Implementation::drawView()
{
    if (!_process || isBusy())
        return;
    const bool isWanted = std::exchange(_viewIsWaiting, false);
    const int page = isWanted ? pageOf(*_view) : -1;
    if (page >= 0 && !deliverKept(*_view)) {
        _drawing = Drawing{*_view, page};
        _process->draw({page, _view->box});
    } else
        emit _maker->progress(-1, {});
}

/// @return -1 when the job has no such sheet or side
int PreviewMaker::Implementation::pageOf(const WantedPicture &wanted) const
{
    if (wanted.sheet < 0 || wanted.sheet >= _sheets.size())
        return -1;
    const Sheet &sheet = _sheets.at(wanted.sheet);
    return wanted.side == Side::Front ? sheet.frontPage : sheet.backPage;
}

/// @return whether the picture was still there
bool PreviewMaker::Implementation::deliverKept(const WantedPicture &wanted)
{
    const QImage *kept = _pictures.object({pageOf(wanted), wanted.box});
    if (kept == nullptr)
        return false;
    deliver(wanted, *kept);
    return true;
}

void PreviewMaker::Implementation::deliver(const WantedPicture &wanted, QImage picture)
{
    picture.setDevicePixelRatio(wanted.devicePixelRatio);
    emit _maker->sheetReady(wanted.sheet, wanted.side, picture);
}

PreviewMaker::PreviewMaker(PreviewPrograms programs, const PreviewLimits &limits, QObject *parent)
    : QObject(parent),
      _implementation(std::make_unique<Implementation>(this, std::move(programs), limits))
{
}

PreviewMaker::~PreviewMaker() = default;

void PreviewMaker::setJob(const PreviewJob &job)
{
    _implementation->setJob(job);
}

void PreviewMaker::show(int sheet, Side side, QSize pixels, qreal devicePixelRatio)
{
    _implementation->show(
        {sheet, side, _implementation->boxFor(pixels, devicePixelRatio), devicePixelRatio});
}

bool PreviewMaker::isBusy() const
{
    return _implementation->isBusy();
}

void PreviewMaker::stop()
{
    _implementation->stop();
}
