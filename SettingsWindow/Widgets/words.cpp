#include "words.h"

#include <QCoreApplication>

QString inWords(const Model::Words &words)
{
    return fromModel(Model::inLanguage(words, [](std::string_view english) {
        return QCoreApplication::translate("Model", std::string(english).c_str()).toStdString();
    }));
}
