#pragma once

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QRadioButton;

/// Asks how settings are to be kept: as the user's defaults for the printer or as a set with a
/// name, and with its PIN and passwords or without.
class KeepDialog : public QDialog {
    Q_OBJECT

public:
    /// @param countsFor   what the settings count for beside this printer; empty for nothing
    /// @param sets        the names of the sets that there are, without that of the defaults
    /// @param current     the one that is being changed; empty for none
    /// @param hasSecrets  whether any PIN or password is set
    /// @param whoCanRead  where what is kept lies, and who can read it
    KeepDialog(const QString &printer, const QString &countsFor, const QStringList &sets,
               const QString &current, bool hasSecrets, const QString &whoCanRead, QWidget *parent);

    /// The set's name; empty for the defaults.
    QString set() const;
    bool withSecrets() const;

private:
    void check();

    QRadioButton *_asDefaults; ///< the widget tree's, as the next
    QRadioButton *_asSet;
    QComboBox *_name;
    QLabel *_objection;
    QCheckBox *_secrets;
    QPushButton *_keep;
};
