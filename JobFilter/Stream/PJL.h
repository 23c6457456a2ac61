#pragma once

#include <string_view>

// The words of the printer job language (PJL) by which both filters find their way. Letter case
// counts in the walk over our own header; KLJobControlStripper, which reads others', ignores it.

/// The universal exit language marker: whatever language the printer speaks, it leaves it and
/// reads PJL from here on. Has no line end.
inline constexpr std::string_view kUniversalExitLanguageMarker = "\033%-12345X";
static_assert(kUniversalExitLanguageMarker.size() == 9);

/// What the line begins with at which PJL ends and the pages begin.
inline constexpr std::string_view kEnterLanguage = "@PJL ENTER LANGUAGE";
