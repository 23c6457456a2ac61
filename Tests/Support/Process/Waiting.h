#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace Support {

/// Waits for something that happens by itself, elsewhere.
/// @param condition  looked at again and again
/// @return whether it came true before the time was over
inline bool comesTrue(const std::function<bool()> &condition,
                      std::chrono::milliseconds limit = std::chrono::seconds(30))
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

} // namespace Support
