#pragma once

#include "PPD.h"
#include "queueFields.h"

#include <optional>
#include <string>
#include <string_view>

namespace Model {

// A field's value is the name of a choice, "Custom." and what is typed beside choices, "True" or
// "False", or what is typed. The job's option that says it may need another text.

/// Whether it was typed beside choices.
bool isTyped(std::string_view value);

/// Without the "Custom." in front, if any.
std::string_view typedText(std::string_view value);

/// Whether its values are texts that rules can object to.
bool takesText(const QueueField &field);

/// What an option's text is as a value of its field; nullopt when it is none.
std::optional<std::string> valueFromText(const PPD &ppd, const QueueField &field,
                                         const std::string &text);

/// The text of an option that says the value.
std::string textFromValue(const QueueField &field, const std::string &value);

/// The choice of a field that stands for a value of its key; null when there is none.
const Choice *choiceForKey(const PPD &ppd, const QueueField &field, const std::string &value);

/// The value by which an option of the PPD feeds its key that text; nullopt when it cannot.
std::optional<std::string> valueThatFeeds(const PPD &ppd, const QueueField &field,
                                          const std::string &text);

} // namespace Model
