#pragma once

#include "KLValue.h"

#include <optional>
#include <string>

/// An option's value as it may stand in a PJL line: its text form ("%@") with every control
/// character (C0 and DEL) replaced by a blank. An absent value is the empty text.
///
/// This is the only door from option values into PJL. CR, LF and ESC reach the filter inside
/// option values; written as they are, any user's option could speak PJL to the printer. All other
/// bytes stay: percent signs, quotes, backslashes, UTF-8.
std::string headerText(const std::optional<KLValue> &value);
