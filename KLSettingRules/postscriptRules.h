#pragma once

#include <optional>
#include <string>
#include <string_view>

// How job settings are said in PostScript. "KMRsetpagedevice" belongs to the printer's own
// PostScript environment; nothing here defines it.

/// The PostScript that gives the printer the same job setting as a PPD choice's PJL code.
///
/// White space and line ends at either end of the code do not count. What remains must begin with
/// kDSSCPrefix; all that follows it goes into a PostScript string unchanged: parentheses,
/// backslashes and inner line ends are not escaped, and a second PJL line is not told apart.
/// @return one call without a line end; nullopt when the code says no DSSC setting (the prefix
///         with nothing behind it loses its blank to the trimming and says none either)
std::optional<std::string> postscriptFromPJLCode(std::string_view code);

/// The PostScript line, line feed included, for "None", "DuplexNoTumble" or "DuplexTumble".
/// @return nullopt for any other setting, one in another letter case included
std::optional<std::string> postscriptForDuplexSetting(std::string_view setting);
