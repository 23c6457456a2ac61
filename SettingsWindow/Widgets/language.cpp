#include "language.h"

#include <QGuiApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace {

void load(QCoreApplication &program, const QLocale &language, const QString &name,
          const QString &folder)
{
    auto *translator = new QTranslator(&program);
    if (translator->load(language, name, QStringLiteral("_"), folder))
        QCoreApplication::installTranslator(translator);
}

} // namespace

void speakLanguage(QCoreApplication &program, const QLocale &language)
{
    load(program, language, QStringLiteral("qtbase"),
         QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    load(program, language, QStringLiteral("model"), QStringLiteral(":/i18n"));
    load(program, language, QStringLiteral("window"), QStringLiteral(":/i18n"));
    if (language.textDirection() == Qt::RightToLeft)
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
}
