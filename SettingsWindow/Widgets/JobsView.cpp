#include "JobsView.h"
#include "inBackground.h"
#include "labels.h"
#include "words.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <algorithm>
#include <chrono>

using Model::JobStatus;
using Model::PrintJob;

namespace {

constexpr std::chrono::milliseconds kPace = std::chrono::seconds(1);

} // namespace

JobsView::JobsView(QWidget *parent) : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    setAccessibleName(tr("Jobs printed from here"));
    hide();
    connect(&_clock, &QTimer::timeout, this, &JobsView::askAboutAll);
}

void JobsView::follow(const PrintJob &job, const QString &title)
{
    auto *widget = new QWidget(this);
    QLabel *words = copiedLabel({}, widget);
    auto *button = new QPushButton(tr("Cancel Job"), widget);
    auto *row = new QHBoxLayout(widget);
    row->setContentsMargins({});
    row->addWidget(words, 1);
    row->addWidget(button);
    layout()->addWidget(widget);

    const int id = ++_lastId;
    connect(button, &QPushButton::clicked, this, [this, id] { cancelOrDismiss(id); });
    _rows.push_back({id, job, title, widget, words, button});
    showWords(_rows.back(), inWords(wordsFor(JobStatus::State::Waiting)), {});
    show();
    _clock.start(kPace);
    ask(id);
}

void JobsView::askAboutAll()
{
    if (std::ranges::all_of(_rows, &Row::isAtItsEnd))
        _clock.stop();
    for (const Row &row : _rows)
        if (!row.isAtItsEnd && !row.isAsked)
            ask(row.id);
}

void JobsView::ask(int id)
{
    Row *row = rowOf(id);
    row->isAsked = true;
    ::ask(
        this,
        [job = row->job] {
            Answer answer;
            answer.status = statusOf(job, kServerPatience, &answer.whyNot);
            return answer;
        },
        [this, id](const Answer &answer) { take(id, answer); });
}

void JobsView::take(int id, const Answer &answer)
{
    Row *row = rowOf(id);
    if (row == nullptr)
        return;
    row->isAsked = false;
    if (!answer.status) {
        showWords(*row, inWords(answer.whyNot), {});
        return;
    }
    showWords(*row, inWords(wordsFor(answer.status->state)), fromModel(answer.status->message));
    if (answer.status->isAtItsEnd()) {
        row->isAtItsEnd = true;
        row->button->setText(tr("Dismiss"));
    }
}

void JobsView::showWords(Row &row, const QString &state, const QString &message)
{
    QString words = tr("%1 (job %2 on %3): %4")
                        .arg(row.title, QString::number(row.job.number),
                             nameOf(Model::QueueId{row.job.server, row.job.queue}), state);
    if (!message.isEmpty())
        words += u'\n' + message;
    row.words->setText(words);
    row.button->setAccessibleName(row.button->text() + QStringLiteral(": ") + row.title);
}

void JobsView::cancelOrDismiss(int id)
{
    Row *row = rowOf(id);
    if (row == nullptr)
        return;
    if (!row->isAtItsEnd) {
        carryOut(
            this, [job = row->job] { return cancel(job, kServerPatience); },
            [this, id](const std::optional<Model::Words> &whyNot) {
                if (Row *cancelled = rowOf(id); whyNot && cancelled != nullptr)
                    showWords(*cancelled, inWords(*whyNot), {});
            });
        return;
    }
    row->widget->deleteLater();
    std::erase_if(_rows, [id](const Row &each) { return each.id == id; });
    setVisible(!_rows.empty());
}

JobsView::Row *JobsView::rowOf(int id)
{
    const auto found = std::ranges::find(_rows, id, &Row::id);
    return found == _rows.end() ? nullptr : &*found;
}
