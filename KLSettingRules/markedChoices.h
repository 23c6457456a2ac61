#pragma once

#include <string>
#include <utility>
#include <vector>

struct ppd_file_s; // the PPD library's own record

/// Option keyword and choice name of every choice that is marked in the PPD's groups, in PPD
/// order: groups, then their options, then their choices. An option of which several choices are
/// marked comes up once for each. Subgroups are not looked at. (libcups 2.x makes none: it puts
/// the options that a PPD declares inside one into the group around it.) Empty when none is marked.
std::vector<std::pair<std::string, std::string>> markedChoices(const ppd_file_s &ppd);
