#pragma once

#include <optional>
#include <string>
#include <string_view>

/// What a header line that says almost a marker has wrong.
///
/// Almost: blanks and letter case apart it is the prefix of the printer's settings and a setting
/// whose name differs from a marker's by no more than two letters that are missing, added or
/// exchanged.
/// @return how it should begin; nullopt when the line is a marker, or nothing like one
std::optional<std::string> intendedMarkerLine(std::string_view line);
