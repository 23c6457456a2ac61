#pragma once

#include <qpdf/QPDF.hh>

#include <string>

namespace Support {

/// Whether the libqpdf that runs is of an older version: each mends more of a damaged document.
/// @param major  the first number of the version
inline bool libqpdfIsBefore(int major)
{
    return std::stoi(QPDF::QPDFVersion()) < major;
}

} // namespace Support
