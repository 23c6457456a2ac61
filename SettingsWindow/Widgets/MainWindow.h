#pragma once

#include "KeptSettings.h"
#include "PreviewMaker.h"
#include "QueueSettings.h"
#include "Queues.h"

#include <QMainWindow>
#include <QTimer>

#include <map>
#include <optional>

class JobsView;
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
        Model::ServerAddress server;
        Model::KeptSettings kept;
        QString printer;  ///< the one to begin with; empty for the user's default
        QString set;      ///< the set to begin with; empty for the user's defaults
        QString document; ///< a PDF file; empty for the sample
    };

    explicit MainWindow(Setup setup);
    ~MainWindow() override;

    /// Shows a document; what is no PDF is told of where it would be seen.
    void openDocument(const QString &path);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    /// A printer, as it was when it was looked at last, and what is set for it.
    struct Session {
        Model::Queue queue;
        Model::PPDCopy ppd;
        Model::QueueSettings settings;
        std::vector<Model::KeptSet> sets = {};
        std::optional<std::string> set =
            {}; ///< that was begun with; none for the printer's own settings
    };
    /// What was found out about a printer.
    struct Findings {
        Model::Queue queue;
        std::optional<Model::PPDCopy> ppd;
        Model::Words whyNoPPD;
        std::vector<Model::KeptSet> sets;
        std::optional<Model::Words> whyNoSets;
    };

    QWidget *makeSettings();
    QWidget *makeNoPrinters();
    QWidget *makeButtons();
    void connectPrinterRow();

    // Printers and their PPDs, looked at again and again.
    void lookForPrinters();
    void takePrinters(const Model::QueueList &list);
    void showNoPrinters(const Model::QueueList &list);
    QString printerToBeginWith();
    const Model::Queue *printer(const QString &name) const;
    void choosePrinter(const QString &name);
    void lookAt(const Model::Queue &queue);
    void takeFindings(Findings &findings);
    void beginSession(Findings &findings);
    void goOnWithSession(Session &session, Findings &findings);
    Session *session();
    /// What print dialogs and lp(1) make of a set: its options over those that are kept without a
    /// name; an empty name for these alone.
    static JobOptions optionsOf(const Session &session, const std::string &name);

    // Settings.
    void edit(const QString &field, const QString &value);
    void beginWithSet(const std::optional<std::string> &name);
    void showSession();
    void showNoSession();
    void showSets();
    void showPreview();
    void settleOnProblem(const Model::Problem &problem);
    bool isReadyToUse();

    // What is done with them.
    void chooseDocument();
    void keep();
    void keepAs(const std::string &set, Model::Secrets secrets);
    void renameSet();
    void removeSet();
    void changeKept(std::function<std::optional<Model::Words>()> change, const QString &done,
                    const std::optional<std::string> &setAfterwards);
    void printNow();
    void copyCommand();

    void say(const QString &words);

    Setup _setup;
    std::vector<Model::Queue> _printers;
    QString _chosen; ///< the printer's name; empty as long as none is
    std::map<QString, Session> _sessions;
    QString _document; ///< empty for the sample
    bool _isLooking = false;
    QTimer _clock;        ///< looks for printers again
    QTimer _previewDelay; ///< several changes in a row are one

    PrinterRow *_printerRow; ///< the widget tree's, as the next
    QStackedWidget *_stack;  ///< "no printers", or the settings
    QLabel *_noPrinters;
    SettingsPages *_pages;
    PreviewPane *_preview;
    QLabel *_message;
    JobsView *_jobs;
    QPushButton *_keep;
    QPushButton *_copy;
    QPushButton *_print;
};
