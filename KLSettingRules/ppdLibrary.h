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

/// The options that do not go together with a choice, as they are marked. @return how many
inline int ppdGetConflicts(ppd_file_t *ppd, const char *option, const char *choice,
                           cups_option_t **options)
{
    return cupsGetConflicts(ppd, option, choice, options);
}
#endif
