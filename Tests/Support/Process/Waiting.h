#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <thread>

namespace Support {

/// Waits for something that happens by itself, elsewhere.
/// @param condition  looked at every 10 ms at first. The longer it takes, the less often: up to ten
///                   times a second, for looking takes processor time from what is waited for.
/// @return whether it came true before the time was over
inline bool comesTrue(const std::function<bool()> &condition,
                      std::chrono::milliseconds limit = std::chrono::seconds(30))
{
    using std::chrono::milliseconds;
    const auto start = std::chrono::steady_clock::now();
    while (!condition()) {
        const auto waited =
            std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start);
        if (waited > limit)
            return false;
        std::this_thread::sleep_for(std::clamp(waited / 20, milliseconds(10), milliseconds(100)));
    }
    return true;
}

} // namespace Support
