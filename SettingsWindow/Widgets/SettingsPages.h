#pragma once

#include "QueueSettings.h"

#include <QWidget>

class FieldEditor;
class QFormLayout;
class QListWidget;
class QStackedWidget;

/// The settings of a queue on pages, a list of them beside: what the queue has no use for is not
/// there, and a page with nothing on it neither.
class SettingsPages : public QWidget {
    Q_OBJECT

public:
    explicit SettingsPages(QWidget *parent = nullptr);

    /// Shows how the settings stand. Editors are kept where they fit, so that nothing moves under
    /// the fingers of who types.
    void show(const Model::QueueSettings &settings);

    /// Leads to the first field with a problem.
    void goToField(const QString &id);

    int currentPage() const;
    void setCurrentPage(int index);

signals:
    void edited(const QString &id, const QString &value);

private:
    struct PageOfFields {
        Model::Page page;
        std::vector<Model::Field> fields;
    };

    static std::vector<PageOfFields> pagesOf(const Model::QueueSettings &settings);
    bool fits(const std::vector<PageOfFields> &pages) const;
    void build(const std::vector<PageOfFields> &pages);
    void leadKeyboardToFields();
    QWidget *makePage(const PageOfFields &page);
    void addField(QFormLayout &form, const Model::Field &field);
    void markProblems(const std::vector<PageOfFields> &pages, const QSet<QString> &fields);

    QListWidget *_names;                  ///< the widget tree's, as the next
    QStackedWidget *_stack;               ///< a page each, in the same order
    QList<QList<FieldEditor *>> _editors; ///< of each page, in the order of its fields
};
