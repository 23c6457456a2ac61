#include "CoverPlan.h"

#include "QueuePPD.h"
#include "backCoverPage.h"

#include <algorithm>
#include <cctype>

namespace {

/// The style's name among the job settings.
std::optional<std::string> printStyle(CoverStyle style)
{
    switch (style) {
    case CoverStyle::NoPrint:
        return "NoPrint";
    case CoverStyle::Print1:
        return "Print1";
    case CoverStyle::Print:
        return "Print";
    case CoverStyle::None:
        break;
    }
    return std::nullopt;
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

CoverPlan coverPlan(std::int64_t pages, CoverStyle front, CoverStyle back, bool oneSided)
{
    const std::int64_t backPage =
        backCoverPage(pages, printStyle(back), oneSided, front == CoverStyle::Print1);
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

bool isOneSided(const std::string &duplex, const std::string &ppdPath)
{
    if (duplex == "none")
        return true;
    const auto ppd = queuePPD(ppdPath);
    std::string code = ppd ? ppd->code("Duplex", duplex).value_or("") : "";
    std::erase_if(code, [](unsigned char c) { return std::isspace(c) != 0; });
    std::ranges::transform(code, code.begin(), [](unsigned char c) { return std::tolower(c); });
    return code.find("/duplexfalse") != std::string::npos ||
           code.find("duplex=off") != std::string::npos;
}
