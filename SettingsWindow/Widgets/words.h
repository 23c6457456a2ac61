#pragma once

#include "Words.h"

#include <QString>

/// The model's words in the reader's language, as plain text.
QString inWords(const Model::Words &words);

/// UTF-8 as the model has it; bytes that are no UTF-8 become U+FFFD.
inline QString fromModel(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
