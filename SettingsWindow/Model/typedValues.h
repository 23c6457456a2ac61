#pragma once

#include "Words.h"
#include "queueFields.h"

#include <optional>
#include <string>
#include <string_view>

namespace Model {

/// Why a text must not be typed into a field: what its rules and its kind object to. What the queue
/// has by itself is not asked about.
/// @param text             without the "Custom." in front
/// @param hasPlaceholders  whether the text of a watermark has words in brackets for values
/// @return nullopt when all is well, and for the empty text where none of its rules objects to that
std::optional<Words> objectionToText(const QueueField &field, std::string_view text,
                                     bool hasPlaceholders);

/// The same for the size of a page, by what the PPD allows.
std::optional<Words> objectionToPageSize(const PPD &ppd, std::string_view text);

} // namespace Model
