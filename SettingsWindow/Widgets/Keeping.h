#pragma once

#include "Session.h"

#include <QObject>

#include <functional>

class QWidget;

/// Keeps settings, renames what is kept and removes it, as the user says in dialogs.
class Keeping : public QObject {
    Q_OBJECT

public:
    /// @param window  that the dialogs belong to, and this object; not null
    Keeping(Model::KeptSettings kept, QWidget *window);

    /// Asks how, then keeps what is set.
    /// @param countsFor  what that counts for beside the printer; empty for nothing
    void keep(const Session &session, const QString &countsFor);

    /// The same for the set that was begun with.
    void renameSet(const Session &session);
    void removeSet(const Session &session);

signals:
    /// A change has come to its end: done, or why not.
    void ended(const QString &words);
    /// What is kept for a printer is another now.
    /// @param set  that its settings are those of; nullopt for none
    void changed(const Model::QueueId &printer, const std::optional<std::string> &set);

private:
    using Change = std::function<std::optional<Model::Words>()>;

    void keepAs(const Session &session, const std::string &set, Model::Secrets secrets);
    void carryOut(const Session &session, Change change, const QString &done,
                  const std::optional<std::string> &setAfterwards);

    Model::KeptSettings _kept;
    QWidget *_window; ///< this object's parent
};
