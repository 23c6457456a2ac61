#include "words.h"

#include <QCoreApplication>

QString inWords(const Model::Words &words)
{
    const std::string english(words.text);
    const QByteArray translated = QCoreApplication::translate("Model", english.c_str()).toUtf8();
    return fromModel(Model::withArguments(
        {translated.data(), static_cast<std::size_t>(translated.size())}, words.arguments));
}
