#pragma once

#include <QKeySequence>
#include <QString>

class QAbstractButton;

/// Presses a button by keys that count in the whole window; its tool tip says them. (What
/// QAbstractButton::setShortcut() gives a button takes its underlined letter away.)
void addKeys(QAbstractButton *button, const QKeySequence &keys);

/// Text whose "&" is one, for what underlines the letter behind it.
QString withoutMnemonic(QString text);
