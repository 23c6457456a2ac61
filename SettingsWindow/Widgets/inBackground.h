#pragma once

#include <QFutureWatcher>
#include <QtConcurrentRun>

#include <utility>

/// Runs work that may wait, on a server say, in another thread, and what follows it in this one:
/// with its result, and only as long as the context lives. The work must not throw, nor use the
/// context.
template <class Work, class Then>
void inBackground(QObject *context, Work work, Then then)
{
    using Result = decltype(work());
    auto *watcher = new QFutureWatcher<Result>(context);
    QObject::connect(watcher, &QFutureWatcher<Result>::finished, context,
                     [watcher, then = std::move(then)]() mutable {
                         watcher->deleteLater();
                         then(watcher->future().takeResult());
                     });
    watcher->setFuture(QtConcurrent::run(std::move(work)));
}
