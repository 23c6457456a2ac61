#pragma once

#include "QueueSettings.h"

#include <QWidget>

class QLabel;

/// One setting: a control for its kind, and below it what is wrong with what was typed.
///
/// A base for the kinds; make() makes the right one.
class FieldEditor : public QWidget {
    Q_OBJECT

public:
    /// @return the editor for a field of this kind and these choices; the parent's
    static FieldEditor *make(const Model::Field &field, QWidget *parent);

    const QString &id() const { return _fieldId; }

    /// What stands beside the control, and is this editor's child until a form takes it.
    QLabel *label() const { return _label; }

    /// Shows how the field stands. What somebody types just now is left alone when it says the
    /// same.
    void show(const Model::Field &field, const QString &value);

    /// Shows what is wrong with the value; an empty text for nothing.
    void showProblem(const QString &words);

    /// Whether the editor was made for a field like this one, so that it can show it.
    bool fits(const Model::Field &field) const;

signals:
    /// @param value  as Model::QueueSettings::set() takes it
    void edited(const QString &id, const QString &value);

protected:
    FieldEditor(const Model::Field &field, QWidget *parent);

    /// Puts the control into its place, with names for screen readers.
    /// @param control  gets the focus; this editor's child
    /// @param beside   stands behind it; may be null
    void setControl(QWidget *control, QWidget *beside = nullptr);

    virtual void showValue(const Model::Field &field, const QString &value) = 0;

    void report(const QString &value) { emit edited(_fieldId, value); }

private:
    QString _fieldId;
    Model::Field _madeFor;
    QWidget *_control = nullptr;
    QLabel *_label;
    QLabel *_problem;
};
