#include "Keeping.h"
#include "KeepDialog.h"
#include "inBackground.h"
#include "words.h"

#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>

#include <utility>

using Model::Secrets;
using Model::Words;

namespace {

QString nameOf(const Session &session)
{
    return fromModel(session.queue().name);
}

QString setOf(const Session &session)
{
    return fromModel(session.set().value_or(""));
}

} // namespace

Keeping::Keeping(Model::KeptSettings kept, QWidget *window)
    : QObject(window), _kept(std::move(kept)), _window(window)
{
}

void Keeping::keep(const Session &session, const QString &countsFor)
{
    QStringList names;
    for (const std::string &name : session.namesOfSets())
        names << fromModel(name);
    KeepDialog dialog(nameOf(session), countsFor, names, setOf(session),
                      session.settings().hasSecrets(), inWords(_kept.whoCanRead()), _window);
    if (dialog.exec() == QDialog::Accepted)
        keepAs(session, dialog.set().toStdString(),
               dialog.withSecrets() ? Secrets::AsTheyAre : Secrets::LeftOut);
}

void Keeping::keepAs(const Session &session, const std::string &set, Secrets secrets)
{
    carryOut(
        session,
        [kept = _kept, queue = session.queue().name, options = session.toKeep(set, secrets)] {
            return kept.keep(queue, options);
        },
        set.empty() ? tr("Kept as your defaults for %1.").arg(nameOf(session))
                    : tr("Kept as %1/%2.").arg(nameOf(session), fromModel(set)),
        set);
}

void Keeping::renameSet(const Session &session)
{
    const QString set = setOf(session);
    bool accepted = false;
    const QString name =
        QInputDialog::getText(_window, tr("Rename Set"), tr("New name of %1:").arg(set),
                              QLineEdit::Normal, set, &accepted);
    if (accepted && !name.isEmpty())
        carryOut(
            session,
            [kept = _kept, queue = session.queue().name, from = set.toStdString(),
             to = name.toStdString()] { return kept.rename(queue, from, to); },
            tr("%1 is now %2.").arg(set, name), name.toStdString());
}

void Keeping::removeSet(const Session &session)
{
    const QString set = setOf(session);
    const QString question = set.isEmpty() ? tr("Remove your defaults for %1?").arg(nameOf(session))
                                           : tr("Remove the set %1?").arg(set);
    if (QMessageBox::question(_window, tr("Remove Set"), question) == QMessageBox::Yes)
        carryOut(
            session,
            [kept = _kept, queue = session.queue().name, name = set.toStdString()] {
                return kept.remove(queue, name);
            },
            tr("Removed. The settings stay as they are on the screen."), std::nullopt);
}

void Keeping::carryOut(const Session &session, Change change, const QString &done,
                       const std::optional<std::string> &setAfterwards)
{
    ::carryOut(this, std::move(change),
               [this, printer = session.queue().id(), done,
                setAfterwards](const std::optional<Words> &whyNot) {
                   emit ended(whyNot ? inWords(*whyNot) : done);
                   if (!whyNot)
                       emit changed(printer, setAfterwards);
               });
}
