#include "PageSelection.h"

#include <algorithm>
#include <charconv>

namespace {

/// A page's number; one that no document reaches is the largest there is.
std::optional<std::uint64_t> pageFromText(std::string_view text)
{
    std::uint64_t page = 0;
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), page);
    if (end != text.data() + text.size() || problem == std::errc::invalid_argument)
        return std::nullopt;
    if (problem == std::errc::result_out_of_range)
        return std::numeric_limits<std::uint64_t>::max();
    return page > 0 ? std::optional(page) : std::nullopt;
}

} // namespace

PageSelection::PageSelection() : _ranges(1) {}

bool PageSelection::contains(std::uint64_t page) const
{
    return std::ranges::any_of(_ranges, [page](const Range &range) {
        return page >= range.first && page <= range.last && (page - range.first) % range.step == 0;
    });
}

std::optional<PageSelection::Range> PageSelection::rangeFromText(std::string_view text)
{
    if (text == "first")
        return Range{.first = 1, .last = 1};
    if (text == "not-first")
        return Range{.first = 2};
    if (text == "odd")
        return Range{.first = 1, .step = 2};
    if (text == "even")
        return Range{.first = 2, .step = 2};

    const std::size_t hyphen = text.find('-');
    const auto first = pageFromText(text.substr(0, hyphen));
    auto last = first;
    if (hyphen != std::string_view::npos)
        last = hyphen + 1 == text.size() ? kNoEnd : pageFromText(text.substr(hyphen + 1));
    if (!first || !last || *last < *first)
        return std::nullopt;
    return Range{.first = *first, .last = *last};
}

std::optional<PageSelection> pageSelectionFromText(std::string_view text)
{
    PageSelection selection;
    selection._ranges.clear();
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        const auto range = PageSelection::rangeFromText(text.substr(begin, end - begin));
        if (!range)
            return std::nullopt;
        selection._ranges.push_back(*range);
        begin = end + 1;
    }
    return selection;
}
