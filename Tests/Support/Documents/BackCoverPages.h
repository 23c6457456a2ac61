#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace Support {

/// Where the back cover begins in jobs of -2 to 12 pages, -1 for nowhere. Worked out by hand.
struct BackCoverPages {
    static constexpr std::int64_t kFewest = -2;
    static constexpr std::int64_t kMost = 12;
    std::array<std::int64_t, kMost - kFewest + 1> pages;

    std::int64_t forTotal(std::int64_t total) const
    {
        return pages.at(static_cast<std::size_t>(total - kFewest));
    }
};

// clang-format off
//                                             total: -2  -1   0   1   2  3  4  5  6  7  8  9  10  11  12
inline constexpr BackCoverPages kBehindTheLast = {{{  -1,  0,  1,  2,  3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}}};
inline constexpr BackCoverPages kLast          = {{{  -1, -1, -1, -1,  2, 3, 4, 5, 6, 7, 8,  9, 10, 11, 12}}};
inline constexpr BackCoverPages kLastEven      = {{{  -1, -1, -1, -1,  2, 2, 4, 4, 6, 6, 8,  8, 10, 10, 12}}};
inline constexpr BackCoverPages kLastOdd       = {{{  -1, -1, -1, -1, -1, 3, 5, 5, 7, 7, 9,  9, 11, 11, 13}}};
inline constexpr BackCoverPages kNever         = {{{  -1, -1, -1, -1, -1,-1,-1,-1,-1,-1,-1, -1, -1, -1, -1}}};
// clang-format on

} // namespace Support
