#pragma once

#include "Queues.h"

#include <QWidget>

class QAction;
class QComboBox;
class QLabel;

/// Chooses the printer and the set of settings to begin with.
class PrinterRow : public QWidget {
    Q_OBJECT

public:
    explicit PrinterRow(QWidget *parent = nullptr);

    /// Shows the printers; the chosen one stays chosen where it still is. Nobody is told of a
    /// choice.
    void showPrinters(const std::vector<Model::Queue> &queues, const QString &chosen);

    /// Shows the sets of the chosen printer.
    /// @param names   the named ones
    /// @param chosen  nullopt for the printer's own settings, empty for the user's defaults
    void showSets(bool hasDefaults, const QStringList &names, const std::optional<QString> &chosen);

signals:
    void printerChosen(const QString &name);
    void ownSettingsChosen();
    /// @param name  empty for the user's defaults
    void setChosen(const QString &name);
    void renameWanted();
    void removeWanted();
    void refreshWanted();

private:
    void reportSet(int index);
    void showState(int index);

    QComboBox *_printers; ///< the widget tree's, as the next
    QLabel *_state;
    QComboBox *_sets;
    QAction *_rename;
    QAction *_remove;
};
