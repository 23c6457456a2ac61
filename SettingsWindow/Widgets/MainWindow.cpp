#include "MainWindow.h"
#include "JobsView.h"
#include "KeepDialog.h"
#include "PreviewPane.h"
#include "PrintJob.h"
#include "PrinterRow.h"
#include "SettingsPages.h"
#include "commandLine.h"
#include "inBackground.h"
#include "words.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>

#include <algorithm>
#include <chrono>

using Model::KeptSet;
using Model::Queue;
using Model::Secrets;
using Model::Words;

namespace {

constexpr std::chrono::milliseconds kLookAgain = std::chrono::seconds(10);
constexpr std::chrono::milliseconds kBound =
    std::chrono::seconds(5); // for a server that says nothing
constexpr std::chrono::milliseconds kPreviewDelay{20};

QPushButton *button(const QString &words, const QKeySequence &shortcut, QWidget *parent)
{
    auto *result = new QPushButton(words, parent);
    result->setShortcut(shortcut);
    result->setToolTip(shortcut.toString(QKeySequence::NativeText));
    return result;
}

QString userName()
{
    return qEnvironmentVariable("USER", qEnvironmentVariable("LOGNAME"));
}

/// A command that names the document is used in other folders, too.
QString wholePath(const QString &path)
{
    return path.isEmpty() ? path : QFileInfo(path).absoluteFilePath();
}

} // namespace

MainWindow::MainWindow(Setup setup)
    : _setup(std::move(setup)),
      _document(wholePath(_setup.document)),
      _printerRow(new PrinterRow(this)),
      _stack(new QStackedWidget(this)),
      _message(new QLabel(this)),
      _jobs(new JobsView(this))
{
    setWindowTitle(tr("Print Settings"));
    setAcceptDrops(true);
    _stack->addWidget(makeNoPrinters());
    _stack->addWidget(makeSettings());
    _message->setTextFormat(Qt::PlainText);
    _message->setWordWrap(true);
    _message->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    _message->hide();

    auto *content = new QWidget(this);
    auto *layout = new QVBoxLayout(content);
    layout->addWidget(_printerRow);
    layout->addWidget(_stack, 1);
    layout->addWidget(_message);
    layout->addWidget(_jobs);
    layout->addWidget(makeButtons());
    setCentralWidget(content);

    connectPrinterRow();
    _previewDelay.setSingleShot(true);
    connect(&_previewDelay, &QTimer::timeout, this, &MainWindow::showPreview);
    connect(&_clock, &QTimer::timeout, this, &MainWindow::lookForPrinters);
    _clock.start(kLookAgain);
    lookForPrinters();
}

MainWindow::~MainWindow() = default;

// MARK: what the window is made of

QWidget *MainWindow::makeNoPrinters()
{
    _noPrinters = new QLabel(tr("Looking for printers …"), this);
    _noPrinters->setTextFormat(Qt::PlainText);
    _noPrinters->setWordWrap(true);
    _noPrinters->setAlignment(Qt::AlignCenter);
    _noPrinters->setMargin(3 * fontMetrics().averageCharWidth());
    _noPrinters->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return _noPrinters;
}

QWidget *MainWindow::makeSettings()
{
    auto *splitter = new QSplitter(this);
    _pages = new SettingsPages(splitter);
    _preview = new PreviewPane(_setup.programs, splitter);
    splitter->addWidget(_pages);
    splitter->addWidget(_preview);
    splitter->setStretchFactor(1, 1); // the preview gets what there is to spare
    splitter->setChildrenCollapsible(false);
    connect(_pages, &SettingsPages::edited, this, &MainWindow::edit);
    connect(_preview, &PreviewPane::documentWanted, this, &MainWindow::chooseDocument);
    return splitter;
}

QWidget *MainWindow::makeButtons()
{
    auto *row = new QWidget(this);
    _keep = button(tr("&Keep…"), QKeySequence::Save, row);
    _copy = button(tr("Cop&y as Command"), Qt::CTRL | Qt::SHIFT | Qt::Key_C, row);
    _print = button(tr("&Print Now"), QKeySequence::Print, row);
    _print->setDefault(true);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->addWidget(_keep);
    layout->addWidget(_copy);
    layout->addStretch();
    layout->addWidget(_print);
    for (QPushButton *each : {_keep, _copy, _print})
        each->setEnabled(false);
    connect(_keep, &QPushButton::clicked, this, &MainWindow::keep);
    connect(_copy, &QPushButton::clicked, this, &MainWindow::copyCommand);
    connect(_print, &QPushButton::clicked, this, &MainWindow::printNow);
    return row;
}

void MainWindow::connectPrinterRow()
{
    connect(_printerRow, &PrinterRow::printerChosen, this, &MainWindow::choosePrinter);
    connect(_printerRow, &PrinterRow::refreshWanted, this, &MainWindow::lookForPrinters);
    connect(_printerRow, &PrinterRow::ownSettingsChosen, this,
            [this] { beginWithSet(std::nullopt); });
    connect(_printerRow, &PrinterRow::setChosen, this,
            [this](const QString &name) { beginWithSet(name.toStdString()); });
    connect(_printerRow, &PrinterRow::renameWanted, this, &MainWindow::renameSet);
    connect(_printerRow, &PrinterRow::removeWanted, this, &MainWindow::removeSet);
}

// MARK: printers

void MainWindow::lookForPrinters()
{
    if (_isLooking)
        return;
    _isLooking = true;
    inBackground(
        this, [server = _setup.server] { return queuesOfThisFilter(server, kBound); },
        [this](const Model::QueueList &list) {
            _isLooking = false;
            takePrinters(list);
        });
}

/// A server that says nothing, or has lost a printer, takes nothing away of what was set here.
void MainWindow::takePrinters(const Model::QueueList &list)
{
    if (list.problem && !_printers.empty()) {
        say(inWords(*list.problem));
        return;
    }
    _printers = list.queues;
    if (_printers.empty() && _sessions.empty()) {
        showNoPrinters(list);
        return;
    }
    if (_chosen.isEmpty())
        _chosen = printerToBeginWith();
    _printerRow->showPrinters(_printers, _chosen);
    if (const Queue *queue = printer(_chosen))
        lookAt(*queue);
    else
        say(tr("The printer %1 is not there any more. What you have set for it stays as long as "
               "this window "
               "is open.")
                .arg(_chosen));
}

void MainWindow::showNoPrinters(const Model::QueueList &list)
{
    QString words = list.problem ? inWords(*list.problem) + QStringLiteral("\n\n") : QString();
    words += tr("There is no printer here that is driven by jobfilter.");
    if (list.others > 0)
        words += u' ' + tr("(Printers of other kinds that are there: %L1)").arg(list.others);
    words += QStringLiteral("\n\n") +
             tr("Ask the administrator of your printers for a queue with its driver, or add one:") +
             QStringLiteral("\n\nlpadmin -p office -E -v socket://printer.example.com"
                            " -m jobfilter/kalmira-office-mfp.ppd");
    _noPrinters->setText(words);
    _stack->setCurrentWidget(_noPrinters);
}

QString MainWindow::printerToBeginWith()
{
    if (printer(_setup.printer) != nullptr)
        return _setup.printer;
    if (!_setup.printer.isEmpty())
        say(tr("There is no printer %1 that is driven by jobfilter.").arg(_setup.printer));
    const auto standard = std::ranges::find_if(_printers, &Queue::isDefault);
    return fromModel((standard == _printers.end() ? _printers.front() : *standard).name);
}

const Queue *MainWindow::printer(const QString &name) const
{
    const auto found = std::ranges::find(_printers, name.toStdString(), &Queue::name);
    return found == _printers.end() ? nullptr : &*found;
}

void MainWindow::choosePrinter(const QString &name)
{
    _chosen = name;
    say({});
    if (session() != nullptr)
        showSession();
    else
        showNoSession();
    if (const Queue *queue = printer(name))
        lookAt(*queue);
}

void MainWindow::lookAt(const Queue &queue)
{
    inBackground(
        this,
        [queue, kept = _setup.kept] {
            Findings findings{queue, {}, {}, {}, {}};
            findings.ppd = ppdOf(queue, kBound, &findings.whyNoPPD);
            findings.sets = kept.setsOf(queue.name, &findings.whyNoSets);
            return findings;
        },
        [this](Findings findings) { takeFindings(findings); });
}

void MainWindow::takeFindings(Findings &findings)
{
    if (findings.whyNoSets)
        say(inWords(*findings.whyNoSets));
    const QString name = fromModel(findings.queue.name);
    const auto known = _sessions.find(name);
    if (!findings.ppd) {
        say(inWords(findings.whyNoPPD));
        if (known == _sessions.end() && name == _chosen) {
            _noPrinters->setText(inWords(findings.whyNoPPD));
            _stack->setCurrentWidget(_noPrinters);
        }
        return;
    }
    if (known == _sessions.end())
        beginSession(findings);
    else
        goOnWithSession(known->second, findings);
}

void MainWindow::beginSession(Findings &findings)
{
    std::string whyNot;
    auto ppd = PPD::open(findings.ppd->path(), &whyNot);
    if (!ppd) {
        say(fromModel(whyNot));
        return;
    }
    const QString name = fromModel(findings.queue.name);
    Model::QueueSettings settings(std::move(*ppd), QLocale().name().toStdString(),
                                  findings.queue.defaults);
    _sessions.emplace(
        name,
        Session{findings.queue, std::move(*findings.ppd), std::move(settings), findings.sets, {}});
    if (name != _chosen)
        return;
    // The first one begins as the command line says, if that set is there.
    const std::string wanted = _sessions.size() == 1 ? _setup.set.toStdString() : std::string();
    const bool isThere =
        std::ranges::find(findings.sets, wanted, &KeptSet::name) != findings.sets.end();
    if (!isThere && !wanted.empty())
        say(tr("There is no set %1 for this printer.").arg(_setup.set));
    beginWithSet(isThere ? std::optional(wanted) : std::nullopt);
}

/// A PPD that has changed takes over what was set, as far as it has the same options.
void MainWindow::goOnWithSession(Session &session, Findings &findings)
{
    session.queue = findings.queue;
    session.sets = findings.sets;
    std::string whyNot;
    auto ppd = session.ppd.isSameAs(*findings.ppd) ? std::nullopt
                                                   : PPD::open(findings.ppd->path(), &whyNot);
    if (ppd) {
        const JobOptions options = session.settings.options();
        session.settings = Model::QueueSettings(std::move(*ppd), QLocale().name().toStdString(),
                                                session.queue.defaults);
        session.settings.load(options);
        session.ppd = std::move(*findings.ppd);
    }
    if (fromModel(session.queue.name) != _chosen)
        return;
    if (ppd) {
        say(tr("The driver of this printer was changed. What you had set was taken over."));
        showSession();
    } else
        showSets();
}

JobOptions MainWindow::optionsOf(const Session &session, const std::string &name)
{
    JobOptions options;
    for (const KeptSet &set : session.sets) {
        if (!set.name.empty() && set.name != name)
            continue;
        for (const auto &option : set.options) {
            std::erase_if(options, [&](const auto &one) { return one.first == option.first; });
            options.push_back(option);
        }
    }
    return options;
}

MainWindow::Session *MainWindow::session()
{
    const auto found = _sessions.find(_chosen);
    return found == _sessions.end() ? nullptr : &found->second;
}

// MARK: settings

void MainWindow::edit(const QString &field, const QString &value)
{
    const auto objection = session()->settings.set(field.toStdString(), value.toStdString());
    say(objection ? inWords(*objection) : QString());
    _pages->show(session()->settings);
    _previewDelay.start(kPreviewDelay);
}

void MainWindow::beginWithSet(const std::optional<std::string> &name)
{
    if (session() == nullptr)
        return; // its PPD is not there yet
    Session &current = *session();
    current.set = name;
    current.settings.reset();
    if (name)
        current.settings.load(optionsOf(current, *name));
    showSession();
}

void MainWindow::showSession()
{
    _pages->show(session()->settings);
    _stack->setCurrentIndex(1);
    showSets();
    for (QPushButton *each : {_keep, _copy})
        each->setEnabled(true);
    _print->setEnabled(!_document.isEmpty());
    _print->setToolTip(_document.isEmpty() ? tr("Open a document first") : QString());
    _previewDelay.start(kPreviewDelay);
}

/// Until its PPD is there, nothing can be done with a printer, nor with the one before it.
void MainWindow::showNoSession()
{
    _previewDelay.stop();
    _noPrinters->setText(tr("Looking for printers …"));
    _stack->setCurrentWidget(_noPrinters);
    _printerRow->showSets(false, {}, std::nullopt);
    for (QPushButton *each : {_keep, _copy, _print})
        each->setEnabled(false);
}

void MainWindow::showSets()
{
    const Session &current = *session();
    QStringList names;
    for (const KeptSet &set : current.sets)
        if (!set.name.empty())
            names << fromModel(set.name);
    const bool hasDefaults = names.size() < static_cast<qsizetype>(current.sets.size());
    _printerRow->showSets(hasDefaults, names,
                          current.set ? std::optional(fromModel(*current.set)) : std::nullopt);
}

void MainWindow::showPreview()
{
    const Session &current = *session();
    JobOptions options = current.queue.defaults;
    std::ranges::copy(current.settings.options(), std::back_inserter(options));
    const auto label = [this](const QString &option, const QString &choice) {
        for (const Model::Field &field : session()->settings.fields(Model::Page::Printer))
            if (fromModel(field.id) == option)
                for (const Model::Choice &each : field.choices)
                    if (fromModel(each.name) == choice)
                        return inWords(each.label);
        return choice;
    };
    _preview->setJob({fromModel(current.ppd.path()), fromModel(Model::optionString(options)),
                      _document, userName(), QFileInfo(_document).fileName()},
                     label);
}

void MainWindow::settleOnProblem(const Model::Problem &problem)
{
    _pages->goToField(fromModel(problem.field));
    say(inWords(problem.words));
}

/// Settings with a problem are neither printed nor kept: the first one is gone to.
bool MainWindow::isReadyToUse()
{
    const auto problems = session()->settings.problems();
    if (!problems.empty())
        settleOnProblem(problems.front());
    return problems.empty();
}

// MARK: documents

void MainWindow::chooseDocument()
{
    const QString path = QFileDialog::getOpenFileName(this, tr("Open Document"), _document,
                                                      tr("PDF documents (*.pdf);;All files (*)"));
    if (!path.isEmpty())
        openDocument(path);
}

void MainWindow::openDocument(const QString &path)
{
    _document = wholePath(path);
    if (session() != nullptr)
        showSession();
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    const auto urls = event->mimeData()->urls();
    if (urls.size() == 1 && urls.front().isLocalFile())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    openDocument(event->mimeData()->urls().front().toLocalFile());
}

// MARK: keeping

void MainWindow::keep()
{
    if (!isReadyToUse())
        return;
    const Session &current = *session();
    QStringList names;
    for (const KeptSet &set : current.sets)
        if (!set.name.empty())
            names << fromModel(set.name);
    KeepDialog dialog(_chosen, names, fromModel(current.set.value_or("")),
                      current.settings.hasSecrets(), inWords(_setup.kept.whoCanRead()), this);
    if (dialog.exec() == QDialog::Accepted)
        keepAs(dialog.set().toStdString(),
               dialog.withSecrets() ? Secrets::AsTheyAre : Secrets::LeftOut);
}

/// Print dialogs lay a named set over the user's defaults, so it says what is otherwise there.
void MainWindow::keepAs(const std::string &set, Secrets secrets)
{
    const Model::QueueSettings &settings = session()->settings;
    const KeptSet kept{set, set.empty() ? settings.options(secrets)
                                        : settings.optionsOver(optionsOf(*session(), {}), secrets)};
    changeKept([keeper = _setup.kept, queue = session()->queue.name,
                kept] { return keeper.keep(queue, kept); },
               set.empty() ? tr("Kept as your defaults for %1.").arg(_chosen)
                           : tr("Kept as %1/%2.").arg(_chosen, fromModel(set)),
               set);
}

void MainWindow::renameSet()
{
    const std::string set = session()->set.value_or("");
    bool accepted = false;
    const QString name =
        QInputDialog::getText(this, tr("Rename Set"), tr("New name of %1:").arg(fromModel(set)),
                              QLineEdit::Normal, fromModel(set), &accepted);
    if (accepted && !name.isEmpty())
        changeKept([keeper = _setup.kept, queue = session()->queue.name, set,
                    newName = name.toStdString()] { return keeper.rename(queue, set, newName); },
                   tr("%1 is now %2.").arg(fromModel(set), name), name.toStdString());
}

void MainWindow::removeSet()
{
    const std::string set = session()->set.value_or("");
    const QString question = set.empty() ? tr("Remove your defaults for %1?").arg(_chosen)
                                         : tr("Remove the set %1?").arg(fromModel(set));
    if (QMessageBox::question(this, tr("Remove Set"), question) == QMessageBox::Yes)
        changeKept([keeper = _setup.kept, queue = session()->queue.name,
                    set] { return keeper.remove(queue, set); },
                   tr("Removed. The settings stay as they are on the screen."), std::nullopt);
}

/// Changes what is kept, then looks at it anew. The settings on the screen stay as they are.
void MainWindow::changeKept(std::function<std::optional<Words>()> change, const QString &done,
                            const std::optional<std::string> &setAfterwards)
{
    const QString printer = _chosen;
    inBackground(this, std::move(change),
                 [this, printer, done, setAfterwards](const std::optional<Words> &whyNot) {
                     say(whyNot ? inWords(*whyNot) : done);
                     const auto changed = _sessions.find(printer);
                     if (!whyNot && changed != _sessions.end()) {
                         changed->second.set = setAfterwards;
                         lookAt(changed->second.queue);
                     }
                 });
}

// MARK: printing

void MainWindow::printNow()
{
    if (!isReadyToUse())
        return;
    struct Answer {
        std::optional<Model::PrintJob> job;
        Words whyNot;
    };
    const QString title = QFileInfo(_document).fileName();
    _print->setEnabled(false); // until the server has answered: one press, one job
    inBackground(
        this,
        [queue = session()->queue, path = _document.toStdString(), title = title.toStdString(),
         options = session()->settings.options()] {
            Answer answer;
            answer.job = print(queue, path, title, options, kBound, &answer.whyNot);
            return answer;
        },
        [this, title](const Answer &answer) {
            _print->setEnabled(session() != nullptr && !_document.isEmpty());
            say(answer.job ? QString() : inWords(answer.whyNot));
            if (answer.job)
                _jobs->follow(*answer.job, title);
        });
}

void MainWindow::copyCommand()
{
    if (!isReadyToUse())
        return;
    const Session &current = *session();
    Secrets secrets = Secrets::AsTheyAre;
    if (current.settings.hasSecrets()) {
        const auto answer = QMessageBox::question(
            this, tr("Copy as Command"),
            tr("Put the PIN and passwords into the command? Whoever sees the command can read "
               "them."),
            QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::No);
        if (answer == QMessageBox::Cancel)
            return;
        secrets = answer == QMessageBox::Yes ? Secrets::AsTheyAre : Secrets::Hidden;
    }
    QGuiApplication::clipboard()->setText(fromModel(Model::commandLine(
        current.queue, current.settings.optionsOver(optionsOf(current, {}), secrets),
        _document.toStdString())));
    say(tr("The command is on the clipboard."));
}

/// Screen readers say it, too, but not again and again.
void MainWindow::say(const QString &words)
{
    if (words == _message->text())
        return;
    _message->setText(words);
    _message->setVisible(!words.isEmpty());
    if (words.isEmpty())
        return;
    QAccessibleEvent alert(_message, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}
