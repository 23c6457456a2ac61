#pragma once

#include <string_view>

/// What the PJL lines begin with that carry the printer's job settings, the blank included. Letter
/// case counts.
inline constexpr std::string_view kDSSCPrefix = "@PJL COMMENT DSSC PRINT ";
