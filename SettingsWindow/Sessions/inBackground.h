#pragma once

#include <QFutureWatcher>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <chrono>
#include <utility>

/// For how long a server that says nothing is waited for.
inline constexpr std::chrono::milliseconds kServerPatience = std::chrono::seconds(5);

/// The threads for questions, which nobody waits for when the program ends, and those for deeds,
/// which come to their end. Both have a thread for each: what waits does not hold up the rest.
QThreadPool &questionThreads();
QThreadPool &deedThreads();

/// Waits for all deeds, then ends the program with the status: at once when a question is still
/// waiting for a server.
[[noreturn]] void endProgram(int status);

/// Runs work in one of the threads, and what follows it in this one: with its result, and only as
/// long as the context lives. The work must not throw, nor use the context.
template <class Work, class Then>
void inBackground(QThreadPool &threads, QObject *context, Work work, Then then)
{
    using Result = decltype(work());
    auto *watcher = new QFutureWatcher<Result>(context);
    QObject::connect(watcher, &QFutureWatcher<Result>::finished, context,
                     [watcher, then = std::move(then)]() mutable {
                         watcher->deleteLater();
                         then(watcher->future().takeResult());
                     });
    watcher->setFuture(QtConcurrent::run(&threads, std::move(work)));
}

/// Finds something out, from a server say.
template <class Question, class Then>
void ask(QObject *context, Question question, Then then)
{
    inBackground(questionThreads(), context, std::move(question), std::move(then));
}

/// Changes something: a job, a file. It comes to its end though the window is closed meanwhile.
template <class Deed, class Then>
void carryOut(QObject *context, Deed deed, Then then)
{
    inBackground(deedThreads(), context, std::move(deed), std::move(then));
}
