#pragma once

#include "Commands.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

struct Job;

namespace Fuzz {

/// The toolkit's three commands for one input, chosen by the letters of a line: "b" puts the
/// watermark beneath, "d", "e", "i" and "x" place it along the diagonal, at an edge, tiled and by
/// percent of the page, "w" fits it to the width then, "#" gives it placeholders, "2" leaves the
/// first page without it, "v" overprints; "r" orders the booklet from right to left, "s" has a
/// signature for each of its sheets, "c" has creep, "t" turns its landscape pages, "1" has a job of
/// one side. The covers' styles follow from "n", "o", "p" for the front and "N", "O", "P" for the
/// back: blank, printed on one side, printed like the job.
struct ToolkitCommands {
    explicit ToolkitCommands(std::string_view letters);

    Watermark watermark;
    Booklet booklet;
    CoverPages covers;
};

/// Runs a command on a document in a file.
/// @param command  may throw ToolkitError, and nothing else
/// @return what it wrote; nullopt when it refused
std::optional<std::string> outputOf(std::string_view document,
                                    const std::function<void(const Job &)> &command);

} // namespace Fuzz
