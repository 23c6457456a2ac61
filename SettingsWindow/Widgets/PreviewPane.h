#pragma once

#include "PreviewMaker.h"

#include <QWidget>

#include <functional>

class QLabel;
class QProgressBar;
class QPushButton;
class QSpinBox;
class QToolButton;
class SheetView;

/// The sheets of a job as they will come out, one at a time: turned over by a click, with the tray
/// that a cover comes from, what the toolkit says, and how far longer work has come.
///
/// What is said of a sheet is said of the one that is seen; where none is seen, nothing is.
class PreviewPane : public QWidget {
    Q_OBJECT

public:
    /// What a choice of a PPD option is called in the reader's language.
    using ChoiceWords = std::function<QString(const QString &option, const QString &choice)>;

    explicit PreviewPane(PreviewPrograms programs, QWidget *parent = nullptr);

    /// Shows a job in the place of another. The sheet in view stays in view where the new job has
    /// it; until it is there that of the job before is seen, but not under another document's name.
    void setJob(const PreviewJob &job, ChoiceWords words);

    /// Ends what is under way and shows nothing in the place of a job.
    void setNoJob();

signals:
    /// Somebody wants to see another document.
    void documentWanted();

private:
    void buildSheetRow();
    void buildProgressRow();
    void connectMaker();
    void learnSheets(const QList<Sheet> &sheets);
    void showSheet(int index);
    void moveBy(int sheets);
    void turnOver();
    void askForPicture();
    void showPicture(int index, Side side, const QImage &picture);
    void showProgress(int percent, const QString &what);
    void addNote(const QString &words);
    void showWords(const QString &words);
    void updateControls();
    QString sideInWords() const;
    QString paperInWords() const;

    PreviewMaker _maker;
    ChoiceWords _words;
    QString _path;                ///< of the job's document
    QList<Sheet> _sheets;         ///< none where nothing is known of the document
    bool _areSheetsOfJob = false; ///< else of the one before
    int _sheet = 0;               ///< that is to be seen, as the next
    Side _side = Side::Front;
    bool _busy = false;

    // Owned by the widget tree.
    SheetView *_view;
    QLabel *_document;
    QLabel *_caption; ///< which side of what is seen, from which tray
    QLabel *_notes;
    QWidget *_sheetRow;
    QSpinBox *_number;
    QLabel *_count;
    QToolButton *_back;
    QToolButton *_on;
    QPushButton *_turn;
    QWidget *_progressRow;
    QLabel *_progressWords;
    QProgressBar *_progress;
};
