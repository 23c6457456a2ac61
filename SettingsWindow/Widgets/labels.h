#pragma once

#include <QString>

class QComboBox;
class QLabel;
class QWidget;

/// A label for plain text, in as many lines as it takes, which begins where lines begin in the
/// window's language, whatever language the text is in.
QLabel *plainLabel(const QString &words, QWidget *parent);

/// The same for text that somebody may want to copy, with the mouse or with the keyboard alone.
QLabel *copiedLabel(const QString &words, QWidget *parent);

/// Has a label say something, hides one that has nothing to say. Screen readers say it, too, but
/// not again and again.
void tell(QLabel &label, const QString &words);

/// Names a list of choices for screen readers. What is chosen goes for its name else: they look for
/// a label that stands beside it in the same widget, which nobody needs to see.
void nameChoices(QComboBox &list, const QString &name);
