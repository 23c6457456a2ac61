#include "words.h"

#include <QCoreApplication>

QString inWords(const Model::Words &words)
{
    return fromModel(Model::inLanguage(words, [](std::string_view english) {
        return QCoreApplication::translate("Model", std::string(english).c_str()).toStdString();
    }));
}

QString nameOf(const Model::ServerAddress &server)
{
    return server.isOwn ? QCoreApplication::translate("words", "this computer")
                        : fromModel(server.name());
}

QString nameOf(const Model::QueueId &printer)
{
    const QString name = fromModel(printer.name);
    return printer.server.isOwn ? name
                                : QStringLiteral("%1 (%2)").arg(name, nameOf(printer.server));
}
