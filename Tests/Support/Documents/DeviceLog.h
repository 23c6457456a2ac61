#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Support {

/// Arguments for Ghostscript, before the file, that make it tell in Rendering::log what a document
/// asks its operators for: a line "SET Duplex true " for each setpagedevice, with the keys that it
/// names, in a fixed order; "SET PRIVATE line" for job control in the page data; "SHOW" for each
/// side.
std::vector<std::string> deviceLogArguments();

/// What was asked for last, by key: {"MediaPosition", "2"}, {"Duplex", "true"}; job control under
/// its own name: {"MEDIATYPE", "THICK1"}.
using DeviceState = std::map<std::string, std::string>;

/// The state that each side of a log is shown in; behind the last one, the state at the end: one
/// empty state for an empty log.
std::vector<DeviceState> statesOfSides(std::string_view log);

} // namespace Support
