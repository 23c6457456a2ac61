#pragma once

#include "PreviewJob.h"
#include "PreviewMessages.h"

#include <QObject>
#include <QProcess>
#include <QSet>
#include <QTimer>

#include <memory>

class QTemporaryDir;

/// The process that works for one job, with a folder of its own for what it writes. A request at a
/// time. Nothing here waits but the destructor.
class PreviewProcess : public QObject {
    Q_OBJECT

public:
    /// @param parent  destroys it, unless retire() was called
    PreviewProcess(PreviewPrograms programs, const PreviewLimits &limits, QObject *parent);
    /// Ends the process, waits for that, and removes its folder.
    ~PreviewProcess() override;

    /// Starts it. Call this once, before the other.
    void prepare(const PreviewJob &job);
    void draw(const PreviewRequests::Draw &request);

    /// Ends it without waiting: nothing is heard of it any more, and it destroys itself.
    void retire();

signals:
    void answered(const PreviewAnswer &answer);
    /// The toolkit is at work on a large document.
    /// @param command  how many commands of it have begun, as far as that was seen
    /// @param percent  of the document that the last one has written, about
    void working(int command, int percent);
    /// It is of no more use, and why.
    void failed(Failure failure, const QString &detail);

private:
    void request(const PreviewRequest &request, std::chrono::milliseconds limit);
    void readAnswers();
    void lookAtFiles();
    void handleEnd(int exitCode, QProcess::ExitStatus status);
    void fail(Failure failure, const QString &detail = {});
    void endProcess();

    PreviewPrograms _programs;
    PreviewLimits _limits;
    std::unique_ptr<QTemporaryDir> _folder;
    QProcess _process;
    QTimer _clock;
    QTimer _look;              ///< at what the toolkit has written
    qint64 _documentBytes = 0; ///< 0 for the sample
    QSet<QString> _written;    ///< the names of the files that commands have begun
    MessageReader<PreviewAnswer> _reader;
};

/// Removes what processes left behind that were killed together with the window.
void removeFoldersOfEndedWindows();
