#pragma once

#include "Commands.h"

#include <cstdint>
#include <optional>
#include <string>

// Which pages of a job go onto its cover sheets and which stay between them.

/// Pages counted from 1, both ends included; empty when last is below first.
struct PageRange {
    std::int64_t first = 1;
    std::int64_t last = 0;

    bool isEmpty() const { return last < first; }
    std::int64_t size() const { return isEmpty() ? 0 : last - first + 1; }
};

/// One sheet of its own.
struct CoverSheet {
    bool oneSided;   ///< printed on its front only, whatever the job does
    PageRange pages; ///< empty for a blank sheet
};

/// What is fed, in this order.
struct CoverPlan {
    std::optional<CoverSheet> front;
    bool blankSideBehindFront = false; ///< fills the front cover before the back cover comes
    PageRange job;
    bool blankSideBehindJob = false; ///< fills the job's last sheet before the back cover comes
    std::optional<CoverSheet> back;
};

/// Every page of the job is in the plan once: on a cover or between. A back cover for which the job
/// has not pages enough is left out (see backCoverPage()); without covers, all pages are the job's.
/// @param pages     of the job, at least 1
/// @param oneSided  whether the job is printed on one side
CoverPlan coverPlan(std::int64_t pages, CoverStyle front, CoverStyle back, bool oneSided);

/// Whether a job is printed on one side: the queue's PPD may have a word of its own for that, whose
/// code tells ("<< /Duplex false >> setpagedevice", "@PJL SET DUPLEX=OFF").
/// @param duplex   "none", or as CoverPages has it; all that is not one-sided is two-sided
/// @param ppdPath  @see queuePPD()
/// @throws ToolkitError when the PPD cannot be read
bool isOneSided(const std::string &duplex, const std::string &ppdPath);
