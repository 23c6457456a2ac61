#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

/// Some of the pages of a document, counted from 1; whether it has so many is not looked at.
class PageSelection {
public:
    /// Every page.
    PageSelection();

    bool contains(std::uint64_t page) const;

private:
    friend std::optional<PageSelection> pageSelectionFromText(std::string_view text);

    static constexpr std::uint64_t kNoEnd = std::numeric_limits<std::uint64_t>::max();

    /// Both ends included.
    struct Range {
        std::uint64_t first = 1;
        std::uint64_t last = kNoEnd;
        std::uint64_t step = 1;
    };

    static std::optional<Range> rangeFromText(std::string_view text);

    std::vector<Range> _ranges;
};

/// A list with commas between, without blanks: a page ("3"), pages from one to another ("2-5"),
/// all from one on ("10-"), "first", "not-first", "odd" and "even". It selects what any of its
/// parts selects.
/// @return nullopt for anything else: the empty text, a page 0, an end before its begin
std::optional<PageSelection> pageSelectionFromText(std::string_view text);
