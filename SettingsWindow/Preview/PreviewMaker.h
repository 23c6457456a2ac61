#pragma once

#include "PreviewJob.h"
#include "Sheet.h"

#include <QImage>
#include <QList>
#include <QObject>
#include <QSize>

#include <memory>

/// Makes the pictures of a job's sheets: the document that the toolkit has worked on, as the filter
/// would call it, drawn by Poppler.
///
/// Both happen in a process of their own, with bounds on memory, time and size, for each job a new
/// one: a document that crashes it costs a picture. This object never waits, and works in the
/// thread that it lives in, whose event loop must run. What a process leaves in the file system is
/// removed when it ends, in whatever way.
class PreviewMaker : public QObject {
    Q_OBJECT

public:
    explicit PreviewMaker(PreviewPrograms programs, const PreviewLimits &limits = {},
                          QObject *parent = nullptr);
    /// Ends what is under way, and waits for that.
    ~PreviewMaker() override;

    /// Begins with a job, in the place of the one before, which is ended. sheetsKnown() or failed()
    /// follows; then the picture that was asked for last, if the job has that sheet and side.
    void setJob(const PreviewJob &job);

    /// Asks for the picture of the side in view: sheetReady() or failed() follows, at once for a
    /// picture that is still there. Only the last one that is asked for counts. May be called
    /// before the sheets are known. Nothing follows for a side that the job has not.
    /// @param pixels            the box that the page is fitted into, not empty, in the window's
    ///                          pixels
    /// @param devicePixelRatio  of the screen; the picture has that many times as many pixels
    void show(int sheet, Side side, QSize pixels, qreal devicePixelRatio = 1);

    /// Whether something is under way that stop() would end.
    bool isBusy() const;

    /// Ends what is under way; stopped() follows, if there was something. What was made by then
    /// stays. The next show() begins anew.
    void stop();

signals:
    /// The sheets of the job, in the order in which they leave the printer; at least one.
    void sheetsKnown(const QList<Sheet> &sheets);
    void sheetReady(int sheet, Side side, const QImage &picture);

    /// The toolkit has refused a part of what the settings ask for, in its words. The sheets follow
    /// as they would be printed: without that part.
    void refused(const QString &words);
    /// Something that the user should know of the sheets that follow.
    void noted(const QString &words);
    /// There is nothing to see, and why.
    void failed(const QString &words);

    /// Work has begun, or gone on.
    /// @param percent  -1 when nobody knows how much there is
    /// @param what     a few words; empty when it has ended
    void progress(int percent, const QString &what);
    /// stop() has ended the work.
    void stopped();

private:
    class Implementation;
    std::unique_ptr<Implementation> _implementation;
};
