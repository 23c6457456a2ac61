#include "TemporaryDirectory.h"

#include <cstdlib>

namespace Platform {

std::string temporaryDirectory()
{
    const char *configured = std::getenv("TMPDIR");
    return configured != nullptr && *configured != '\0' ? configured : "/tmp";
}

} // namespace Platform
