#pragma once

#include <string>

namespace Platform {

/// The folder for temporary files: the environment's TMPDIR when set and not empty, else "/tmp".
/// With or without a trailing slash, as given; whether it exists is not tested.
std::string temporaryDirectory();

} // namespace Platform
