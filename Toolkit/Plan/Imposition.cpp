#include "Imposition.h"

#include "ToolkitError.h"

#include <algorithm>

namespace {

constexpr double kSmallestArea = 36;

} // namespace

std::uint64_t bookletSideCount(std::uint64_t pages)
{
    return (pages + 3) / 4 * 2;
}

SheetSide bookletSide(std::uint64_t side, std::uint64_t pages, Ordering ordering)
{
    // Nested sheets: the outermost carries the first two and the last two pages. On a front the
    // later page is on the left, on a back the earlier one.
    const std::uint64_t early = side + 1;
    const std::uint64_t late = bookletSideCount(pages) * 2 - side;
    const auto page = [pages](std::uint64_t number) {
        return number <= pages ? std::optional(number) : std::nullopt;
    };
    const bool earlyOnTheLeft = (side % 2 == 1) == (ordering == Ordering::LeftToRight);
    if (earlyOnTheLeft)
        return {page(early), page(late)};
    return {page(late), page(early)};
}

PageSize sheetSize(const Booklet &booklet, const std::string &ppdPath)
{
    const auto size = pageSizeNamed(booklet.pageSize, ppdPath);
    if (!size)
        throw ToolkitError("The booklet's page size is not known.");
    return *size;
}

SheetLayout sheetLayout(PageSize sheet, const Booklet &booklet)
{
    const double width = std::max(sheet.width, sheet.height);
    const double height = std::min(sheet.width, sheet.height);
    const Rectangle left = {
        .x = booklet.outerMargin,
        .y = booklet.outerMargin,
        .width = (width - booklet.centreMargin) / 2 - booklet.outerMargin,
        .height = height - 2 * booklet.outerMargin,
    };
    if (left.width < kSmallestArea || left.height < kSmallestArea)
        throw ToolkitError("The booklet's margins leave no room for the pages.");

    Rectangle right = left;
    right.x = (width + booklet.centreMargin) / 2;
    return {width, height, left, right};
}

Placement placementInArea(PageSize page, const Rectangle &area)
{
    const double scale = std::min(area.width / page.width, area.height / page.height);
    return {
        .scale = scale,
        .x = area.x + (area.width - scale * page.width) / 2,
        .y = area.y + (area.height - scale * page.height) / 2,
    };
}
