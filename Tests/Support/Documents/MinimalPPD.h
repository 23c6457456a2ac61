#pragma once

#include <string>
#include <string_view>

namespace Support {

/// The text of a small PPD (format 4.3) that libcups opens: page sizes A4 (default, 595 by 842
/// points) and Letter, a Duplex option (None, DuplexNoTumble, DuplexTumble; default None), and a
/// JCL header made of the universal exit language marker, "@PJL JOB" from libcups, and the line
/// that enters PostScript.
/// @param extraLines  further PPD lines, each with its line feed
std::string minimalPPD(std::string_view extraLines = {});

} // namespace Support
