#pragma once

#include <cups/ppd.h>

#include <memory>
#include <string>

/// Closes a PPD.
struct PPDCloser {
    void operator()(ppd_file_t *ppd) const { ppdClose(ppd); }
};

/// An opened PPD, or none.
using PPD = std::unique_ptr<ppd_file_t, PPDCloser>;

/// Opens a PPD (format 4.3), all of it: where reading breaks off, libcups by itself would take
/// what came before for the whole.
/// @param whyNot  set when there is none; not null
/// @return no choice is marked in it; none when the path leads to no regular file of at most
///         16 MiB that can be read and is a PPD
PPD openPPD(const std::string &path, std::string *whyNot);
