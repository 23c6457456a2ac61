#include "CoverPlan.h"

#include <algorithm>

namespace {

/// For "print" on both sides: the back cover is the last sheet of two pages. Behind a front cover
/// that holds page 1 alone, sheets begin at even pages, else at odd ones.
std::int64_t lastSheetBegin(std::int64_t pages, bool frontPrintedOnce)
{
    if (pages < 2)
        return -1;
    if (pages == 2)
        return frontPrintedOnce ? 2 : -1;
    return frontPrintedOnce ? pages / 2 * 2 : pages / 2 * 2 + 1;
}

std::optional<CoverSheet> frontCover(std::int64_t pages, CoverStyle style, std::int64_t backPage,
                                     bool oneSided)
{
    switch (style) {
    case CoverStyle::NoPrint:
        return CoverSheet{true, {}};
    case CoverStyle::Print1:
        return CoverSheet{true, {1, 1}};
    case CoverStyle::Print: {
        const bool alone = oneSided || pages == 1 || backPage == 2;
        return CoverSheet{oneSided, {1, alone ? 1 : 2}};
    }
    case CoverStyle::None:
        break;
    }
    return std::nullopt;
}

std::optional<CoverSheet> backCover(std::int64_t pages, CoverStyle style, std::int64_t backPage,
                                    bool oneSided)
{
    if (backPage == -1)
        return std::nullopt;
    return CoverSheet{oneSided || style != CoverStyle::Print, {backPage, pages}};
}

} // namespace

std::int64_t backCoverPage(std::int64_t pages, CoverStyle back, bool oneSided,
                           bool frontPrintedOnce)
{
    switch (back) {
    case CoverStyle::NoPrint:
        return pages + 1;
    case CoverStyle::Print1:
        return pages >= 2 ? pages : -1;
    case CoverStyle::Print:
        if (oneSided)
            return pages >= 2 ? pages : -1;
        return lastSheetBegin(pages, frontPrintedOnce);
    case CoverStyle::None:
        break;
    }
    return -1;
}

CoverPlan coverPlan(std::int64_t pages, CoverStyle front, CoverStyle back, bool oneSided)
{
    const std::int64_t backPage = backCoverPage(pages, back, oneSided, front == CoverStyle::Print1);
    CoverPlan plan;
    plan.front = frontCover(pages, front, backPage, oneSided);
    plan.back = backCover(pages, back, backPage, oneSided);
    plan.job.first = plan.front ? plan.front->pages.size() + 1 : 1;
    plan.job.last = plan.back ? std::min(pages, backPage - 1) : pages;

    if (plan.back) {
        const bool frontIsHalfFull =
            plan.front && !plan.front->oneSided && plan.front->pages.size() == 1;
        plan.blankSideBehindFront = frontIsHalfFull && plan.job.isEmpty();
        plan.blankSideBehindJob = !oneSided && plan.job.size() % 2 == 1;
    }
    return plan;
}
