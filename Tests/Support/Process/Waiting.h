#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
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

/// Waits for many things that happen by themselves, elsewhere and one after another, for as long as
/// they go on happening: a slow machine has all the time that it needs, and one that stands still
/// does not.
/// @param left        how many are still to come; looked at again and again
/// @param standstill  how long it may take from one of them to the next
/// @return whether all came
inline bool comeOneByOne(const std::function<std::size_t()> &left,
                         std::chrono::milliseconds standstill = std::chrono::seconds(60))
{
    for (std::size_t before = left(); before > 0; before = left())
        if (!comesTrue([&] { return left() < before; }, standstill))
            return false;
    return true;
}

} // namespace Support
