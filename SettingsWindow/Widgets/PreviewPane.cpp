#include "PreviewPane.h"
#include "SheetView.h"
#include "keys.h"
#include "labels.h"

#include <QBoxLayout>
#include <QFileInfo>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QStyle>
#include <QToolButton>

#include <algorithm>
#include <utility>

namespace {

QToolButton *arrow(QWidget *parent, Qt::ArrowType type, const QString &name)
{
    auto *button = new QToolButton(parent);
    button->setArrowType(type);
    button->setAccessibleName(name);
    button->setToolTip(name);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

/// What is there for a moment only does not move everything else about.
void keepPlaceWhenHidden(QWidget &widget)
{
    QSizePolicy policy = widget.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget.setSizePolicy(policy);
}

} // namespace

PreviewPane::PreviewPane(PreviewPrograms programs, QWidget *parent)
    : QWidget(parent),
      _maker(std::move(programs), {}, this),
      _view(new SheetView(this)),
      _document(plainLabel({}, this)),
      _caption(plainLabel({}, this)),
      _notes(copiedLabel({}, this))
{
    auto *open = new QPushButton(tr("&Open Document…"), this);
    addKeys(open, QKeySequence::Open);
    setTabOrder(open, _view);
    connect(open, &QPushButton::clicked, this, &PreviewPane::documentWanted);
    auto *top = new QHBoxLayout;
    top->addWidget(_document, 1);
    top->addWidget(open);

    _caption->setAlignment(Qt::AlignCenter);
    buildSheetRow();
    buildProgressRow();

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(_view, 1);
    layout->addWidget(_caption);
    layout->addWidget(_sheetRow);
    layout->addWidget(_progressRow);
    layout->addWidget(_notes);

    connect(_view, &SheetView::turned, this, &PreviewPane::turnOver);
    connect(_view, &SheetView::moved, this, &PreviewPane::moveBy);
    connect(_view, &SheetView::resized, this, &PreviewPane::askForPicture);
    connectMaker();
    updateControls();
}

void PreviewPane::buildSheetRow()
{
    _sheetRow = new QWidget(this);
    const bool fromRight = layoutDirection() == Qt::RightToLeft;
    _back = arrow(_sheetRow, fromRight ? Qt::RightArrow : Qt::LeftArrow, tr("Previous sheet"));
    _number = new QSpinBox(_sheetRow);
    _number->setAccessibleName(tr("Sheet in view"));
    _number->setGroupSeparatorShown(true); // as in their count
    _count = new QLabel(_sheetRow);
    _on = arrow(_sheetRow, fromRight ? Qt::LeftArrow : Qt::RightArrow, tr("Next sheet"));
    _turn = new QPushButton(tr("&Turn Over"), _sheetRow);

    auto *layout = new QHBoxLayout(_sheetRow);
    layout->setContentsMargins({});
    layout->addStretch();
    layout->addWidget(_back);
    layout->addWidget(new QLabel(tr("Sheet", "before the number of one"), _sheetRow));
    layout->addWidget(_number);
    layout->addWidget(_count);
    layout->addWidget(_on);
    layout->addSpacing(style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing));
    layout->addWidget(_turn);
    layout->addStretch();
    keepPlaceWhenHidden(*_sheetRow);

    connect(_back, &QToolButton::clicked, this, [this] { moveBy(-1); });
    connect(_on, &QToolButton::clicked, this, [this] { moveBy(1); });
    connect(_turn, &QPushButton::clicked, this, &PreviewPane::turnOver);
    connect(_number, &QSpinBox::valueChanged, this, [this](int number) { showSheet(number - 1); });
}

void PreviewPane::buildProgressRow()
{
    _progressRow = new QWidget(this);
    _progressWords = plainLabel({}, _progressRow);
    _progress = new QProgressBar(_progressRow);
    auto *stop = new QPushButton(tr("&Stop"), _progressRow);
    auto *layout = new QHBoxLayout(_progressRow);
    layout->setContentsMargins({});
    layout->addWidget(_progressWords, 1);
    layout->addWidget(_progress, 1);
    layout->addWidget(stop);
    keepPlaceWhenHidden(*_progressRow);
    connect(stop, &QPushButton::clicked, &_maker, &PreviewMaker::stop);
}

void PreviewPane::connectMaker()
{
    connect(&_maker, &PreviewMaker::sheetsKnown, this, &PreviewPane::learnSheets);
    connect(&_maker, &PreviewMaker::sheetReady, this, &PreviewPane::showPicture);
    connect(&_maker, &PreviewMaker::progress, this, &PreviewPane::showProgress);
    connect(&_maker, &PreviewMaker::refused, this, &PreviewPane::addNote);
    connect(&_maker, &PreviewMaker::noted, this, &PreviewPane::addNote);
    connect(&_maker, &PreviewMaker::failed, this, &PreviewPane::showWords);
    connect(&_maker, &PreviewMaker::stopped, this,
            [this] { showWords(tr("Stopped. The next change begins anew.")); });
}

void PreviewPane::setJob(const PreviewJob &job, ChoiceWords words)
{
    _words = std::move(words);
    _areSheetsOfJob = false;
    if (std::exchange(_path, job.documentPath) != _path)
        showWords({});
    _document->setText(job.documentPath.isEmpty() ? tr("A sample document")
                                                  : QFileInfo(job.documentPath).fileName());
    _document->setToolTip(job.documentPath);
    _notes->clear();
    _maker.setJob(job);
    askForPicture();
}

void PreviewPane::setNoJob()
{
    _maker.stop();
    _notes->clear();
    _areSheetsOfJob = false;
    showWords({});
}

void PreviewPane::learnSheets(const QList<Sheet> &sheets)
{
    _sheets = sheets;
    _areSheetsOfJob = true;
    _sheet = std::clamp<int>(_sheet, 0, std::max(0, static_cast<int>(sheets.size()) - 1));
    showSheet(_sheet);
}

/// Turns to a sheet; the side in view stays the same where the sheet has it.
void PreviewPane::showSheet(int index)
{
    if (index < 0 || index >= _sheets.size())
        return;
    _sheet = index;
    if (!_sheets[index].hasBack())
        _side = Side::Front;
    updateControls();
    askForPicture();
}

void PreviewPane::moveBy(int sheets)
{
    const qint64 last = _sheets.size() - 1;
    showSheet(static_cast<int>(
        std::clamp<qint64>(qint64{_sheet} + sheets, 0, std::max<qint64>(last, 0))));
}

void PreviewPane::turnOver()
{
    if (_sheet >= _sheets.size() || !_sheets[_sheet].hasBack())
        return;
    _side = _side == Side::Front ? Side::Back : Side::Front;
    updateControls();
    askForPicture();
}

void PreviewPane::askForPicture()
{
    _maker.show(_sheet, _side, _view->place(), devicePixelRatioF());
}

/// A picture that comes late, of a side that is no longer in view, is not shown.
void PreviewPane::showPicture(int index, Side side, const QImage &picture)
{
    if (index != _sheet || side != _side || index >= _sheets.size())
        return;
    const Sheet &sheet = _sheets[index];
    _view->showSide(picture, side == Side::Front ? sheet.front : sheet.back, sideInWords());
    _caption->setText(sideInWords() + paperInWords());
}

void PreviewPane::showProgress(int percent, const QString &what)
{
    _busy = !what.isEmpty();
    _progressWords->setText(what);
    _progress->setRange(0, percent < 0 ? 0 : 100);
    _progress->setValue(percent);
    updateControls();
}

void PreviewPane::addNote(const QString &words)
{
    _notes->setText(_notes->text().isEmpty() ? words : _notes->text() + u'\n' + words);
}

/// Shows words in the place of a sheet. The others of the job can still be turned to.
void PreviewPane::showWords(const QString &words)
{
    if (!_areSheetsOfJob)
        _sheets.clear();
    _view->showWords(words);
    _caption->clear();
    updateControls();
}

void PreviewPane::updateControls()
{
    const bool any = !_sheets.isEmpty();
    const int count = static_cast<int>(_sheets.size());
    const bool turnable = _sheet < count && _sheets[_sheet].hasBack();
    const QSignalBlocker quiet(_number);
    _number->setRange(any ? 1 : 0, count);
    _number->setValue(any ? _sheet + 1 : 0);
    _count->setText(tr("of %L1", "after the number of a sheet").arg(count));
    _sheetRow->setVisible(any);
    _back->setEnabled(_sheet > 0);
    _on->setEnabled(_sheet + 1 < count);
    _turn->setEnabled(turnable);
    _view->setTurnable(turnable);
    _progressRow->setVisible(_busy);
}

QString PreviewPane::sideInWords() const
{
    const Sheet &sheet = _sheets[_sheet];
    const bool front = _side == Side::Front;
    switch (sheet.kind) {
    case Sheet::Kind::FrontCover:
        return front ? tr("Front cover, front") : tr("Front cover, back");
    case Sheet::Kind::BackCover:
        return front ? tr("Back cover, front") : tr("Back cover, back");
    case Sheet::Kind::Job:
        break;
    }
    return front ? tr("Sheet %L1, front").arg(_sheet + 1) : tr("Sheet %L1, back").arg(_sheet + 1);
}

QString PreviewPane::paperInWords() const
{
    const Sheet &sheet = _sheets[_sheet];
    QString words;
    if (!sheet.tray.isEmpty())
        words += tr(" · from %1", "a tray").arg(_words(QStringLiteral("InputSlot"), sheet.tray));
    if (!sheet.medium.isEmpty())
        words += tr(" · on %1", "a kind of paper")
                     .arg(_words(QStringLiteral("MediaType"), sheet.medium));
    return words;
}
