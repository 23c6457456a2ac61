#pragma once

#include "Queues.h"
#include "Words.h"

#include <QString>

/// The model's words in the reader's language, as plain text.
QString inWords(const Model::Words &words);

/// What a server is called: "this computer", or its name.
QString nameOf(const Model::ServerAddress &server);

/// What a printer is called: its name, and its server's unless that is this computer.
QString nameOf(const Model::QueueId &printer);

/// UTF-8 as the model has it; bytes that are no UTF-8 become U+FFFD.
inline QString fromModel(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
