#pragma once

#include "PPD.h"

#include <optional>
#include <string>

/// The queue's PPD.
/// @param path  empty when there is none
/// @return nullopt without a path
/// @throws ToolkitError when there is a path and the PPD cannot be read, or only a part of it
std::optional<PPD> queuePPD(const std::string &path);
