#include "MainWindow.h"
#include "JobsView.h"
#include "Keeping.h"
#include "PreviewPane.h"
#include "PrintJob.h"
#include "PrinterRow.h"
#include "SettingsPages.h"
#include "commandLine.h"
#include "inBackground.h"
#include "keys.h"
#include "labels.h"
#include "words.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QStackedWidget>

#include <algorithm>
#include <chrono>

using Model::Queue;
using Model::QueueId;
using Model::Secrets;
using Model::Words;

namespace {

constexpr std::chrono::milliseconds kPreviewDelay{20};

QString userName()
{
    return qEnvironmentVariable("USER", qEnvironmentVariable("LOGNAME"));
}

/// A command that names the document is used in other folders, too.
QString wholePath(const QString &path)
{
    return path.isEmpty() ? path : QFileInfo(path).absoluteFilePath();
}

/// Room for the settings and a page beside them, in letters of the font, as far as the screen goes.
QSize sizeToBeginWith(const QWidget &window)
{
    const QFontMetrics letters = window.fontMetrics();
    return QSize(180 * letters.averageCharWidth(), 48 * letters.height())
        .boundedTo(window.screen()->availableSize());
}

} // namespace

MainWindow::MainWindow(Setup setup)
    : _setup(std::move(setup)),
      _document(wholePath(_setup.document)),
      _printers(new Printers(_setup.servers, this)),
      _keeping(new Keeping(_setup.kept, this)),
      _printerRow(new PrinterRow(this)),
      _stack(new QStackedWidget(this)),
      _message(copiedLabel({}, this)),
      _jobs(new JobsView(this))
{
    setWindowTitle(tr("Print Settings"));
    setAcceptDrops(true);
    _stack->addWidget(makeWords());
    _stack->addWidget(makeSettings());
    _message->hide();

    auto *content = new QWidget(this);
    auto *layout = new QVBoxLayout(content);
    layout->addWidget(_printerRow);
    layout->addWidget(_stack, 1);
    layout->addWidget(_message);
    layout->addWidget(_jobs);
    layout->addWidget(makeButtons());
    setCentralWidget(content);
    resize(sizeToBeginWith(*this));

    connectPrinterRow();
    connectKeeping();
    _previewDelay.setSingleShot(true);
    connect(&_previewDelay, &QTimer::timeout, this, &MainWindow::showPreview);
    connect(_printers, &Printers::answered, this, &MainWindow::takePrinters);
    QTimer::singleShot(_setup.patience, this, [this] {
        _isPatient = false;
        beginWithAPrinter();
    });
}

MainWindow::~MainWindow() = default;

// MARK: what the window is made of

QWidget *MainWindow::makeWords()
{
    _words = copiedLabel(tr("Looking for printers …"), this);
    _words->setAlignment(Qt::AlignCenter);
    _words->setMargin(3 * fontMetrics().averageCharWidth());
    return _words;
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
    _keep = new QPushButton(tr("&Keep…"), row);
    _copy = new QPushButton(tr("Cop&y as Command"), row);
    _print = new QPushButton(tr("&Print Now"), row);
    addKeys(_keep, QKeySequence::Save);
    addKeys(_copy, Qt::CTRL | Qt::SHIFT | Qt::Key_C);
    addKeys(_print, QKeySequence::Print);
    _print->setDefault(true);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->addWidget(_keep);
    layout->addWidget(_copy);
    layout->addStretch();
    layout->addWidget(_print);
    connect(_keep, &QPushButton::clicked, this, &MainWindow::keep);
    connect(_copy, &QPushButton::clicked, this, &MainWindow::copyCommand);
    connect(_print, &QPushButton::clicked, this, &MainWindow::printNow);
    updateButtons();
    return row;
}

void MainWindow::connectPrinterRow()
{
    connect(_printerRow, &PrinterRow::printerChosen, this, [this](const QueueId &printer) {
        say({}); // what was said of the one before
        choosePrinter(printer);
    });
    connect(_printerRow, &PrinterRow::refreshWanted, _printers, &Printers::lookAgain);
    connect(_printerRow, &PrinterRow::ownSettingsChosen, this,
            [this] { beginWithSet(std::nullopt); });
    connect(_printerRow, &PrinterRow::setChosen, this,
            [this](const QString &name) { beginWithSet(name.toStdString()); });
}

void MainWindow::connectKeeping()
{
    connect(_printerRow, &PrinterRow::renameWanted, this,
            [this] { _keeping->renameSet(*session()); });
    connect(_printerRow, &PrinterRow::removeWanted, this,
            [this] { _keeping->removeSet(*session()); });
    connect(_keeping, &Keeping::ended, this, &MainWindow::say);
    connect(_keeping, &Keeping::changed, this, &MainWindow::takeKept);
}

// MARK: printers

/// A server that has lost a printer takes nothing away of what was set here.
void MainWindow::takePrinters(const Model::ServerAddress &server, bool isWell)
{
    showPrinters();
    if (!_chosen)
        beginWithAPrinter();
    else if (_chosen->server == server && isWell) {
        if (const Queue *queue = _printers->find(*_chosen))
            lookAt(*queue);
        else
            leaveLostPrinter();
    }
}

void MainWindow::showPrinters()
{
    QStringList problems;
    for (const Words &problem : _printers->problems())
        problems << inWords(problem);
    _printerRow->showPrinters(_printers->all(), _chosen, problems.join(u'\n'));
}

/// One that is gone before its settings were there is forgotten.
void MainWindow::leaveLostPrinter()
{
    if (session() == nullptr) {
        _chosen.reset();
        beginWithAPrinter();
        return;
    }
    say(tr("The printer %1 is not there any more. What you have set for it stays as long as this "
           "window is open.")
            .arg(nameOf(*_chosen)));
}

/// Until somebody has chosen one.
void MainWindow::beginWithAPrinter()
{
    if (_chosen)
        return;
    if (const auto printer = printerToBeginWith())
        choosePrinter(*printer);
    else
        showWords(wordsWithoutPrinter());
    showPrinters();
}

/// The standard server goes before the other where both have it.
/// @return nullopt when there is none, or a server that might have it is waited for
std::optional<QueueId> MainWindow::printerToBeginWith()
{
    const std::vector<Queue> printers = _printers->all();
    const auto wanted = std::ranges::find(printers, _setup.printer.toStdString(), &Queue::name);
    const bool isToWait = _isPatient && !_printers->haveAllAnswered();
    if (wanted != printers.end() && (wanted->server.isStandard || !isToWait))
        return wanted->id();
    const bool mayTakeAnother = _printers->haveAllAnswered() || _setup.printer.isEmpty();
    if (printers.empty() || isToWait || !mayTakeAnother)
        return std::nullopt;
    if (!_setup.printer.isEmpty())
        say(tr("There is no printer %1 that is driven by jobfilter.").arg(_setup.printer));
    const auto standard = std::ranges::find_if(printers, &Queue::isDefault);
    return (standard == printers.end() ? printers.front() : *standard).id();
}

/// A server that does not answer may have one: it is asked again.
QString MainWindow::wordsWithoutPrinter() const
{
    if (!_printers->haveAllAnswered() || !_printers->problems().empty())
        return tr("Looking for printers …");
    QString words = tr("There is no printer here that is driven by jobfilter.");
    if (const int others = _printers->others(); others > 0)
        words += u' ' + tr("(Printers of other kinds that are there: %L1)").arg(others);
    return words + QStringLiteral("\n\n") +
           tr("Ask the administrator of your printers for a queue with its driver, or add one:") +
           QStringLiteral("\n\nlpadmin -p office -E -v socket://printer.example.com"
                          " -m jobfilter/kalmira-office-mfp.ppd");
}

void MainWindow::choosePrinter(const QueueId &printer)
{
    _chosen = printer;
    if (session() != nullptr)
        showSession();
    else
        showWords(tr("Reading the driver of %1 …").arg(nameOf(printer)));
    if (const Queue *queue = _printers->find(printer))
        lookAt(*queue);
}

void MainWindow::lookAt(const Queue &queue)
{
    ask(
        this, [queue, kept = _setup.kept] { return findingsOf(queue, kept); },
        [this](Findings findings) { takeFindings(findings); });
}

void MainWindow::takeFindings(Findings &findings)
{
    const QueueId id = findings.queue.id();
    const auto known = _sessions.find(id);
    const bool isChosen = _chosen == id;
    if (!findings.ppd && isChosen) {
        if (known == _sessions.end())
            showWords(inWords(findings.whyNoPPD));
        else
            say(inWords(findings.whyNoPPD));
    }
    if (findings.whyNoSets && isChosen)
        say(inWords(*findings.whyNoSets));
    if (!findings.ppd)
        return;
    if (known == _sessions.end())
        beginSession(findings);
    else
        goOnWithSession(known->second, findings);
}

void MainWindow::beginSession(Findings &findings)
{
    std::string whyNot;
    auto begun = Session::begin(findings, &whyNot);
    if (!begun) {
        say(fromModel(whyNot));
        return;
    }
    const QueueId id = findings.queue.id();
    Session &session = _sessions.emplace(id, std::move(*begun)).first->second;
    beginWithWantedSet(session);
    if (_chosen == id)
        showSession();
}

/// The first one begins as the command line says, if that set is there; others with the defaults.
void MainWindow::beginWithWantedSet(Session &session)
{
    const std::string wanted = _sessions.size() == 1 ? _setup.set.toStdString() : std::string();
    if (session.hasSet(wanted) || (wanted.empty() && session.hasDefaults()))
        session.beginWith(wanted);
    else if (!wanted.empty())
        say(tr("There is no set %1 for this printer.").arg(_setup.set));
}

void MainWindow::goOnWithSession(Session &session, Findings &findings)
{
    std::string whyNot;
    const bool hasChanged = session.goOn(findings, &whyNot);
    if (_chosen != session.queue().id())
        return;
    if (!whyNot.empty())
        say(fromModel(whyNot));
    if (hasChanged) {
        say(tr("This printer was changed on its server. What you had set was taken over."));
        showSession();
    } else
        showSets();
}

Session *MainWindow::session()
{
    const auto found = _chosen ? _sessions.find(*_chosen) : _sessions.end();
    return found == _sessions.end() ? nullptr : &found->second;
}

// MARK: settings

void MainWindow::edit(const QString &field, const QString &value)
{
    const auto objection = session()->settings().set(field.toStdString(), value.toStdString());
    say(objection ? inWords(*objection) : QString());
    _pages->show(session()->settings());
    _previewDelay.start(kPreviewDelay);
}

void MainWindow::beginWithSet(const std::optional<std::string> &name)
{
    if (session() == nullptr)
        return; // its PPD is not there yet
    session()->beginWith(name);
    showSession();
}

void MainWindow::showSession()
{
    _pages->show(session()->settings());
    _stack->setCurrentIndex(1);
    showSets();
    updateButtons();
    _previewDelay.start(kPreviewDelay);
}

/// Shows words in the place of settings: until they are there nothing can be done with a printer,
/// nor with the one before it.
void MainWindow::showWords(const QString &words)
{
    _previewDelay.stop();
    _preview->setNoJob();
    _words->setText(words);
    _stack->setCurrentWidget(_words);
    _printerRow->showSets(false, {}, std::nullopt, false);
    updateButtons();
}

void MainWindow::showSets()
{
    const Session &current = *session();
    QStringList names;
    for (const std::string &name : current.namesOfSets())
        names << fromModel(name);
    _printerRow->showSets(current.hasDefaults(), names,
                          current.set() ? std::optional(fromModel(*current.set())) : std::nullopt,
                          current.set() && current.hasSet(*current.set()));
}

void MainWindow::showPreview()
{
    const Session &current = *session();
    // The preview may ask when another printer is chosen already: sessions stay where they are.
    const auto label = [&current](const QString &option, const QString &choice) {
        const auto words = current.labelOf(option.toStdString(), choice.toStdString());
        return words ? inWords(*words) : choice;
    };
    _preview->setJob({fromModel(current.ppdPath()), fromModel(current.optionStringOfJob()),
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
    const auto problems = session()->settings().problems();
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

// MARK: what is done with the settings

void MainWindow::keep()
{
    if (isReadyToUse())
        _keeping->keep(*session(), otherPrintersOfThatName());
}

/// What is kept has the name of a printer, and nothing of its server.
QString MainWindow::otherPrintersOfThatName()
{
    const std::vector<Queue> printers = _printers->all();
    const bool isOnlyOne = std::ranges::count(printers, _chosen->name, &Queue::name) <= 1;
    return isOnlyOne && _chosen->server.isStandard
               ? QString()
               : tr("They count for every printer of the name %1, whatever server it is on.")
                     .arg(fromModel(_chosen->name));
}

/// Looks anew at what is kept. The settings on the screen stay as they are.
void MainWindow::takeKept(const QueueId &printer, const std::optional<std::string> &set)
{
    _sessions.at(printer).setSet(set);
    for (const auto &[id, session] : _sessions)
        if (id.name == printer.name)
            lookAt(session.queue());
}

void MainWindow::printNow()
{
    if (!isReadyToUse())
        return;
    struct Answer {
        std::optional<Model::PrintJob> job;
        Words whyNot;
    };
    const QString title = QFileInfo(_document).fileName();
    _isSending = true;
    updateButtons();
    carryOut(
        this,
        [queue = session()->queue(), path = _document.toStdString(), title = title.toStdString(),
         options = session()->settings().options()] {
            Answer answer;
            answer.job = print(queue, path, title, options, kServerPatience, &answer.whyNot);
            return answer;
        },
        [this, title](const Answer &answer) {
            _isSending = false;
            updateButtons();
            say(answer.job ? QString() : inWords(answer.whyNot));
            if (answer.job)
                _jobs->follow(*answer.job, title);
        });
}

void MainWindow::copyCommand()
{
    if (!isReadyToUse())
        return;
    const auto secrets = secretsForCommand();
    if (!secrets)
        return;
    QGuiApplication::clipboard()->setText(fromModel(Model::commandLine(
        session()->queue(), session()->optionsForCommand(*secrets), _document.toStdString())));
    say(tr("The command is on the clipboard."));
}

/// Asks what is to become of them, if there are any; nullopt when there is to be no command.
std::optional<Secrets> MainWindow::secretsForCommand()
{
    if (!session()->settings().hasSecrets())
        return Secrets::AsTheyAre;
    const auto answer = QMessageBox::question(
        this, tr("Copy as Command"),
        tr("Put the PIN and passwords into the command? Whoever sees the command can read "
           "them."),
        QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::No);
    if (answer == QMessageBox::Cancel)
        return std::nullopt;
    return answer == QMessageBox::Yes ? Secrets::AsTheyAre : Secrets::Hidden;
}

/// One press of Print Now is one job: it is not possible while one is on its way.
void MainWindow::updateButtons()
{
    const bool hasSettings = session() != nullptr;
    _keep->setEnabled(hasSettings);
    _copy->setEnabled(hasSettings);
    _print->setEnabled(hasSettings && !_document.isEmpty() && !_isSending);
    _print->setToolTip(hasSettings && _document.isEmpty()
                           ? tr("Open a document first")
                           : QKeySequence(QKeySequence::Print).toString(QKeySequence::NativeText));
}

void MainWindow::say(const QString &words)
{
    tell(*_message, words);
}
