#pragma once

#include <string>

namespace Platform {

/// The folder for temporary files: the environment's TMPDIR when set and not empty, else "/tmp".
/// With or without a trailing slash, relative or not, as given; whether it exists is not tested.
/// The environment is asked at each call.
std::string temporaryDirectory();

} // namespace Platform
