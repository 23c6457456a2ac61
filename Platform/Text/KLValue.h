#pragma once

#include <cstdint>
#include <string>
#include <variant>

/// A setting's value: UTF-8 text, a signed 64-bit integer or a boolean. The set is closed.
///
/// Integers and booleans are both numbers; a text never is one, whatever it spells.
using KLValue = std::variant<std::string, std::int64_t, bool>;
