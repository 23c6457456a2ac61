#include "PrinterRow.h"
#include "labels.h"
#include "words.h"

#include <QAction>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSignalBlocker>
#include <QToolButton>

#include <algorithm>
#include <iterator>
#include <utility>

using Model::Queue;

namespace {

constexpr int kStateRole = Qt::UserRole + 1;
/// Which of the sets an entry is: the data is its name, not valid for the printer's own settings.
constexpr int kSetRole = Qt::UserRole;

/// Whether another server has a printer of that name, too.
bool isAmbiguous(const std::vector<Queue> &queues, const Queue &queue)
{
    return std::ranges::count(queues, queue.name, &Queue::name) > 1;
}

/// The server is named where it is another computer, and where nothing else tells two apart.
QString labelOf(const Queue &queue, bool isAmbiguous)
{
    const QString name = fromModel(queue.name);
    const QString description = fromModel(queue.description);
    QString label = name;
    if (!description.isEmpty() && description != name)
        label += QStringLiteral(" – ") + description;
    if (isAmbiguous || !queue.server.isOwn)
        label += QStringLiteral(" (%1)").arg(nameOf(queue.server));
    return label;
}

QString stateInWords(const Queue &queue)
{
    QStringList words;
    switch (queue.state) {
    case Queue::State::Idle:
        words << PrinterRow::tr("Ready");
        break;
    case Queue::State::Printing:
        words << PrinterRow::tr("Printing");
        break;
    case Queue::State::Stopped:
        words << PrinterRow::tr("Stopped");
        break;
    }
    if (!queue.acceptsJobs)
        words << PrinterRow::tr("takes no jobs");
    if (!queue.location.empty())
        words << fromModel(queue.location);
    if (!queue.stateWords.empty())
        words << fromModel(queue.stateWords);
    return words.join(QStringLiteral(" · "));
}

/// Gives a list entries with these data. One that has them is left alone: somebody may just be
/// choosing from it.
void setEntries(QComboBox &list, const QVariantList &data)
{
    QVariantList there;
    for (int index = 0; index < list.count(); ++index)
        there << list.itemData(index);
    if (there == data)
        return;
    list.clear();
    for (const QVariant &each : data)
        list.addItem({}, each);
}

QLabel *labelFor(const QString &words, QWidget *control, QWidget *parent)
{
    auto *label = new QLabel(words, parent);
    label->setBuddy(control);
    return label;
}

} // namespace

PrinterRow::PrinterRow(QWidget *parent)
    : QWidget(parent),
      _printers(new QComboBox(this)),
      _state(plainLabel({}, this)),
      _problems(copiedLabel({}, this)),
      _sets(new QComboBox(this))
{
    _printers->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    _printers->setMinimumContentsLength(24);
    _printers->setAccessibleName(tr("Printer"));
    _sets->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    _sets->setMinimumContentsLength(20);
    _sets->setAccessibleName(tr("Settings to begin with"));
    _problems->hide();

    auto *menu = new QMenu(this);
    _rename = menu->addAction(tr("&Rename This Set…"), this, &PrinterRow::renameWanted);
    _remove = menu->addAction(tr("Re&move This Set…"), this, &PrinterRow::removeWanted);
    menu->addSeparator();
    QAction *refresh =
        menu->addAction(tr("Look for Printers A&gain"), this, &PrinterRow::refreshWanted);
    refresh->setShortcut(QKeySequence::Refresh);
    addAction(refresh);
    auto *more = new QToolButton(this);
    more->setText(tr("More"));
    more->setMenu(menu);
    more->setPopupMode(QToolButton::InstantPopup);
    more->setFocusPolicy(Qt::StrongFocus);

    auto *layout = new QGridLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(labelFor(tr("P&rinter:"), _printers, this), 0, 0);
    layout->addWidget(_printers, 0, 1);
    layout->addWidget(labelFor(tr("Be&gin with:"), _sets, this), 0, 2);
    layout->addWidget(_sets, 0, 3);
    layout->addWidget(more, 0, 4);
    layout->addWidget(_state, 1, 1, 1, 4);
    layout->addWidget(_problems, 2, 1, 1, 4);
    layout->setColumnStretch(1, 3);
    layout->setColumnStretch(3, 2);

    connect(_printers, &QComboBox::activated, this, &PrinterRow::reportPrinter);
    connect(_printers, &QComboBox::currentIndexChanged, this, &PrinterRow::showState);
    connect(_sets, &QComboBox::activated, this, &PrinterRow::reportSet);
}

void PrinterRow::showPrinters(const std::vector<Queue> &queues,
                              const std::optional<Model::QueueId> &chosen, const QString &problems)
{
    {
        const QSignalBlocker quiet(_printers);
        takeEntries(queues);
        const auto current = chosen ? std::ranges::find(_ids, *chosen) : _ids.end();
        const int index = current == _ids.end() ? -1 : static_cast<int>(current - _ids.begin());
        if (index != _printers->currentIndex())
            _printers->setCurrentIndex(index);
    }
    showState(_printers->currentIndex());
    tell(*_problems, problems);
}

void PrinterRow::takeEntries(const std::vector<Queue> &queues)
{
    std::vector<Model::QueueId> ids;
    std::ranges::transform(queues, std::back_inserter(ids), &Queue::id);
    // A list that stays as it is is left alone: somebody may just be choosing from it.
    if (std::exchange(_ids, ids) != ids) {
        _printers->clear();
        for (std::size_t count = 0; count < ids.size(); ++count)
            _printers->addItem({});
    }
    for (int index = 0; index < _printers->count(); ++index) {
        const Queue &queue = queues[static_cast<std::size_t>(index)];
        _printers->setItemText(index, labelOf(queue, isAmbiguous(queues, queue)));
        _printers->setItemData(index, stateInWords(queue), kStateRole);
        _printers->setItemData(index, stateInWords(queue), Qt::ToolTipRole);
    }
}

void PrinterRow::reportPrinter(int index)
{
    emit printerChosen(_ids[static_cast<std::size_t>(index)]);
}

void PrinterRow::showState(int index)
{
    _state->setText(_printers->itemData(index, kStateRole).toString());
    _printers->setAccessibleDescription(_state->text());
}

void PrinterRow::showSets(bool hasDefaults, const QStringList &names,
                          const std::optional<QString> &chosen, bool isOwn)
{
    QVariantList entries = {QVariant()};
    if (hasDefaults)
        entries << QString();
    for (const QString &name : names)
        entries << name;
    setEntries(*_sets, entries);
    _sets->setCurrentIndex(-1); // what was begun with may be gone
    for (int index = 0; index < _sets->count(); ++index) {
        const QVariant set = _sets->itemData(index, kSetRole);
        if (!set.isValid())
            _sets->setItemText(index, tr("The printer's own settings"));
        else
            _sets->setItemText(index,
                               set.toString().isEmpty() ? tr("My defaults") : set.toString());
        if (chosen ? set.isValid() && set.toString() == *chosen : !set.isValid())
            _sets->setCurrentIndex(index);
    }
    _rename->setEnabled(isOwn && !chosen->isEmpty());
    _remove->setEnabled(isOwn);
}

void PrinterRow::reportSet(int index)
{
    const QVariant set = _sets->itemData(index, kSetRole);
    if (set.isValid())
        emit setChosen(set.toString());
    else
        emit ownSettingsChosen();
}
