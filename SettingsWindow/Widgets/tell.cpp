#include "tell.h"

#include <QAccessible>
#include <QLabel>

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
