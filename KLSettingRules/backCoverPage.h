#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// The job's page, counted from 1, at which the back cover begins; -1 for no back cover.
///
/// Keeps no state; nothing fails.
///
/// A blank back cover ("NoPrint") follows the last page, however few or many there are: nothing is
/// checked. Printed on one side ("Print1") it holds the last page. Printed like the job ("Print")
/// it is the last sheet of a job of two sides: sheets begin at even pages behind a front cover that
/// holds page 1 alone, else at odd ones, and so the result may be one page past the last.
/// @param totalPages        the job's pages, of any value
/// @param printStyle        the back cover's; letter case counts; nullopt or unknown for none
/// @param oneSided          whether the job prints on one side
/// @param frontPrintedOnce  whether a front cover in the style "Print1" is wanted
std::int64_t backCoverPage(std::int64_t totalPages, const std::optional<std::string> &printStyle,
                           bool oneSided, bool frontPrintedOnce);
