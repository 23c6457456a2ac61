#pragma once

#include "Descriptor.h"

#include <array>
#include <fcntl.h>
#include <optional>
#include <unistd.h>

namespace Platform {

/// Both ends are closed with this object, or when the process becomes another program.
struct Pipe {
    Descriptor readEnd;
    Descriptor writeEnd;
};

/// @return nullopt with errno set when there is none to be had
inline std::optional<Pipe> makePipe()
{
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return std::nullopt;
    return Pipe{Descriptor(ends[0]), Descriptor(ends[1])};
}

} // namespace Platform
