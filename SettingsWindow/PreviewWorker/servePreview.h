#pragma once

#include "Descriptor.h"

/// Answers a window's requests (PreviewMessages.h), one after the other, until it says no more:
/// opens the document of the first one, then draws pages of it. Bounds this process as the first
/// one says.
/// @param requests  to be read from
/// @param answers   to be written to, and to nothing else
/// @return the exit status: failure also for requests that are none, and when nobody listens
int servePreview(const Platform::Descriptor &requests, const Platform::Descriptor &answers);
