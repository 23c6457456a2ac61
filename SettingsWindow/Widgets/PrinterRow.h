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

    /// Shows the printers, of which none need be chosen. Nobody is told of a choice.
    /// @param problems  of their servers; empty for none
    void showPrinters(const std::vector<Model::Queue> &queues,
                      const std::optional<Model::QueueId> &chosen, const QString &problems);

    /// Shows the sets of the chosen printer.
    /// @param names   the named ones
    /// @param chosen  nullopt for the printer's own settings, empty for the user's defaults
    /// @param isOwn   whether the chosen one is the user's, to remove
    void showSets(bool hasDefaults, const QStringList &names, const std::optional<QString> &chosen,
                  bool isOwn);

signals:
    void printerChosen(const Model::QueueId &printer);
    void ownSettingsChosen();
    /// @param name  empty for the user's defaults
    void setChosen(const QString &name);
    void renameWanted();
    void removeWanted();
    void refreshWanted();

private:
    void takeEntries(const std::vector<Model::Queue> &queues);
    void reportPrinter(int index);
    void reportSet(int index);
    void showState(int index);

    std::vector<Model::QueueId> _ids; ///< of the printers in the list
    QComboBox *_printers;             ///< the widget tree's, as the next
    QLabel *_state;
    QLabel *_problems;
    QComboBox *_sets;
    QAction *_rename;
    QAction *_remove;
};
