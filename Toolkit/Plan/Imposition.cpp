#include "Imposition.h"

#include "ToolkitError.h"

#include <algorithm>
#include <utility>

namespace {

constexpr double kSmallestArea = 36;

/// The fullest signature: all of the booklet when it has no more sheets than a signature may have.
std::size_t sidesOfSignature(std::size_t pages, const Booklet &booklet)
{
    const std::size_t all = bookletSideCount(pages);
    const bool isOne = booklet.signatureSheets == 0 || booklet.signatureSheets >= all / 2;
    return isOne ? all : static_cast<std::size_t>(booklet.signatureSheets) * 2;
}

/// How far the innermost sheet of the fullest signature sticks out of the outermost one.
double deepestCreep(std::size_t pages, const Booklet &booklet)
{
    const std::size_t sheets = sidesOfSignature(pages, booklet) / 2;
    return sheets == 0 ? 0 : static_cast<double>(sheets - 1) * booklet.creep;
}

} // namespace

std::size_t bookletSideCount(std::size_t pages)
{
    return (pages + 3) / 4 * 2;
}

SheetSide bookletSide(std::size_t side, std::size_t pages, const Booklet &booklet)
{
    const std::size_t sides = sidesOfSignature(pages, booklet);
    const std::size_t first = side / sides * sides; // of the signature, as the last
    const std::size_t last = std::min(first + sides, bookletSideCount(pages)) - 1;

    // Nested sheets: the outermost carries the first two and the last two pages. On a front the
    // later page is on the left, on a back the earlier one.
    const std::size_t early = first + side + 1;
    const std::size_t late = first + 2 * last + 2 - side;
    const auto page = [pages](std::size_t number) {
        return number <= pages ? std::optional(number) : std::nullopt;
    };
    SheetSide content = {page(late), page(early), (side - first) / 2, side == last};
    const bool earlyOnTheLeft = (side % 2 == 1) == (booklet.ordering == Ordering::LeftToRight);
    if (earlyOnTheLeft)
        std::swap(content.left, content.right);
    return content;
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

SheetLayout layoutAtDepth(const SheetLayout &layout, std::size_t depth, std::size_t pages,
                          const Booklet &booklet)
{
    const double deepest = deepestCreep(pages, booklet);
    const double moved = static_cast<double>(depth) * booklet.creep;
    SheetLayout moving = layout;
    moving.left.width -= deepest;
    moving.left.x += moved;
    moving.right.width -= deepest;
    moving.right.x += deepest - moved;
    if (moving.left.width < kSmallestArea)
        throw ToolkitError("The booklet's margins and creep leave no room for the pages.");
    return moving;
}

int turnOfLandscapePages(const Booklet &booklet)
{
    if (!booklet.turnLandscape)
        return 0;
    return booklet.ordering == Ordering::LeftToRight ? 90 : 270;
}

Placement placementInArea(PageSize page, const Rectangle &area, int turn)
{
    if (turn != 0 && page.width > page.height && area.height > area.width) {
        Placement place = placementInArea({page.height, page.width}, area);
        place.turn = turn;
        // Turned counter-clockwise, the page's own corner lies on the right, else on top.
        if (turn == 90)
            place.x += place.scale * page.height;
        else
            place.y += place.scale * page.width;
        return place;
    }
    const double scale = std::min(area.width / page.width, area.height / page.height);
    return {
        .scale = scale,
        .x = area.x + (area.width - scale * page.width) / 2,
        .y = area.y + (area.height - scale * page.height) / 2,
    };
}
