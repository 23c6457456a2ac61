#pragma once

/// The library that reads PPDs, the one that the build names (KL_PPD_LIBRARY): its records and
/// functions, by the names that they have in either library.

#include <cups/cups.h>

#ifdef KL_PPD_FROM_LIBPPD
#include <ppd/ppd.h>
// Its headers define them, and the C++ library's functions of these names would be read as macros.
#undef max
#undef min
#else
#include <cups/ppd.h>

/// Marks the choices that a job's options name. @return whether choices conflict
inline int ppdMarkOptions(ppd_file_t *ppd, int count, cups_option_t *options)
{
    return cupsMarkOptions(ppd, count, options);
}
#endif
