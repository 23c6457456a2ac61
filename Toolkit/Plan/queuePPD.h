#pragma once

#include "openPPD.h"

#include <string>

/// The queue's PPD.
/// @param path  empty when there is none
/// @return none without a path
/// @throws ToolkitError when there is a path and the PPD cannot be read, not even in part
PPD queuePPD(const std::string &path);
