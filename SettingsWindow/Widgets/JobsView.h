#pragma once

#include "PrintJob.h"

#include <QTimer>
#include <QWidget>

class QLabel;
class QPushButton;

/// The jobs that were printed from here, each with its state and what the filter or the printer
/// said last, until the printer has it.
class JobsView : public QWidget {
    Q_OBJECT

public:
    explicit JobsView(QWidget *parent = nullptr);

    /// Follows a job.
    /// @param title  of its document
    void follow(const Model::PrintJob &job, const QString &title);

private:
    struct Row {
        int id; ///< the number of the job is one server's alone
        Model::PrintJob job;
        QString title;
        QWidget *widget; ///< the widget tree's, as the next
        QLabel *words;
        QPushButton *button; ///< cancels a job, dismisses one that is at its end
        bool isAtItsEnd = false;
        bool isAsked = false; ///< a question about it is under way
    };
    struct Answer {
        std::optional<Model::JobStatus> status;
        Model::Words whyNot;
    };

    void askAboutAll();
    void ask(int id);
    void take(int id, const Answer &answer);
    void cancelOrDismiss(int id);
    static void showWords(Row &row, const QString &state, const QString &message);
    Row *rowOf(int id);

    std::vector<Row> _rows;
    int _lastId = 0;
    QTimer _clock;
};
