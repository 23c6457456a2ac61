#pragma once

#include "PPD.h"

// Who prints, as the header's lines USERLOGIN and DOMAINNAME say it, can be pinned by the PPD: then
// the job's own user (the filter's second argument) and the directory are the only sources.

/// The attribute that does so, with any value but "False".
inline constexpr char kPinnedUserAttribute[] = "KLPinnedUser";

/// Whether the PPD does so.
bool pinsUser(const PPD &ppd);

/// The options of a job without those by which it would say who prints, where the PPD pins that:
/// the user, the domain, and whether the domain is looked up, for which the PPD's default remains.
/// Of each that is left out a line is logged, without its value.
JobOptions withoutPinnedUser(JobOptions options, const PPD &ppd);
