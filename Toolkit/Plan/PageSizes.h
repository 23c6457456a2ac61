#pragma once

#include <optional>
#include <string>

/// A page's extent in points, both above 0.
struct PageSize {
    double width;
    double height;

    bool operator==(const PageSize &) const = default;
};

/// The page size that a name stands for, upright or not as its owner has it.
///
/// The PPD's own names come first, then the standard ones of PPD files and of PWG 5101.1 ("A4",
/// "Letter", "iso_a4_210x297mm"), names with measures in them included, as libcups reads them.
/// @param ppdPath  the queue's PPD; empty when there is none
/// @return nullopt for a name that neither knows
/// @throws ToolkitError when there is a PPD and it cannot be read
std::optional<PageSize> pageSizeNamed(const std::string &name, const std::string &ppdPath);

/// The page size that the PPD gives a job that asks for none.
/// @param ppdPath  as above
/// @return nullopt when there is no PPD, or when it has no default
/// @throws ToolkitError as above
std::optional<PageSize> defaultPageSize(const std::string &ppdPath);
