#pragma once

#include <string_view>

/// A line of PJL that carries one of the printer's job settings, as an object format: the setting
/// takes the place of "%@". This is the only place that spells it.
inline constexpr std::string_view kDSSCLineFormat = "@PJL COMMENT DSSC PRINT %@\r\n";

/// What such a line begins with, the blank included. Letter case counts.
inline constexpr std::string_view kDSSCPrefix =
    kDSSCLineFormat.substr(0, kDSSCLineFormat.find('%'));
static_assert(kDSSCPrefix.size() == 24);
