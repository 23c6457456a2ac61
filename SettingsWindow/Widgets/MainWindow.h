#pragma once

#include "PreviewMaker.h"
#include "Printers.h"
#include "Session.h"

#include <QMainWindow>
#include <QTimer>

#include <chrono>
#include <map>
#include <optional>

class JobsView;
class Keeping;
class PreviewPane;
class PrinterRow;
class QLabel;
class QPushButton;
class QStackedWidget;
class SettingsPages;

/// The window: a printer, its settings, and the pages as they will come out.
///
/// What may wait for a server or a file goes on in other threads; what was set for a printer stays
/// set as long as the window is open, whatever becomes of the printer meanwhile.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    struct Setup {
        PreviewPrograms programs;
        std::vector<Model::ServerAddress> servers; ///< the standard one first
        Model::KeptSettings kept;
        QString printer;  ///< the one to begin with; empty for the user's default
        QString set;      ///< the set to begin with; empty for the user's defaults
        QString document; ///< a PDF file; empty for the sample
        /// For how long the standard server may take before the window begins with another's
        /// printer.
        std::chrono::milliseconds patience = std::chrono::seconds(1);
    };

    explicit MainWindow(Setup setup);
    ~MainWindow() override;

    /// Shows a document; what is no PDF is told of where it would be seen.
    void openDocument(const QString &path);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    QWidget *makeWords();
    QWidget *makeSettings();
    QWidget *makeButtons();
    void connectPrinterRow();
    void connectKeeping();

    // Printers and their PPDs, looked at again and again.
    void takePrinters(const Model::ServerAddress &server, bool isWell);
    void showPrinters();
    void leaveLostPrinter();
    void beginWithAPrinter();
    QString wordsWithoutPrinter() const;
    std::optional<Model::QueueId> printerToBeginWith();
    void choosePrinter(const Model::QueueId &printer);
    void lookAt(const Model::Queue &queue);
    void takeFindings(Findings &findings);
    void beginSession(Findings &findings);
    void beginWithWantedSet(Session &session);
    void goOnWithSession(Session &session, Findings &findings);
    Session *session();

    // Settings.
    void edit(const QString &field, const QString &value);
    void beginWithSet(const std::optional<std::string> &name);
    void showSession();
    void showWords(const QString &words);
    void showSets();
    void showPreview();
    void settleOnProblem(const Model::Problem &problem);
    bool isReadyToUse();

    // What is done with them.
    void chooseDocument();
    void keep();
    QString otherPrintersOfThatName();
    void takeKept(const Model::QueueId &printer, const std::optional<std::string> &set);
    void printNow();
    void copyCommand();
    std::optional<Model::Secrets> secretsForCommand();

    void updateButtons();
    void say(const QString &words);

    Setup _setup;
    std::optional<Model::QueueId> _chosen;
    std::map<Model::QueueId, Session> _sessions;
    QString _document;       ///< empty for the sample
    bool _isPatient = true;  ///< the standard server may still tell of its printers
    bool _isSending = false; ///< a job is on its way to its server
    QTimer _previewDelay;    ///< several changes in a row are one

    Printers *_printers; ///< this object's, as the next
    Keeping *_keeping;
    PrinterRow *_printerRow; ///< the widget tree's, as the next
    QStackedWidget *_stack;  ///< words, or the settings
    QLabel *_words;          ///< in the place of settings
    SettingsPages *_pages;
    PreviewPane *_preview;
    QLabel *_message;
    JobsView *_jobs;
    QPushButton *_keep;
    QPushButton *_copy;
    QPushButton *_print;
};
