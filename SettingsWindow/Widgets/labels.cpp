#include "labels.h"
#include "keys.h"

#include <QAccessible>
#include <QComboBox>
#include <QLabel>

QLabel *plainLabel(const QString &words, QWidget *parent)
{
    auto *label = new QLabel(words, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    // By itself a label goes by the direction of its text.
    if (label->layoutDirection() == Qt::RightToLeft)
        label->setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
    return label;
}

QLabel *copiedLabel(const QString &words, QWidget *parent)
{
    QLabel *label = plainLabel(words, parent);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}

void tell(QLabel &label, const QString &words)
{
    if (words == label.text())
        return;
    label.setText(words);
    label.setVisible(!words.isEmpty());
    if (words.isEmpty())
        return;
    QAccessibleEvent alert(&label, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void nameChoices(QComboBox &list, const QString &name)
{
    list.setAccessibleName(name);
    QLabel *label = plainLabel(withoutMnemonic(name), list.parentWidget());
    label->setBuddy(&list);
    label->hide();
}
