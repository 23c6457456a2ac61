#include "keys.h"

#include <QAbstractButton>
#include <QShortcut>

#include <utility>

void addKeys(QAbstractButton *button, const QKeySequence &keys)
{
    auto *shortcut = new QShortcut(keys, button);
    QObject::connect(shortcut, &QShortcut::activated, button, &QAbstractButton::click);
    button->setToolTip(keys.toString(QKeySequence::NativeText));
}

QString withoutMnemonic(QString text)
{
    return std::move(text).replace(u'&', QStringLiteral("&&"));
}
