#pragma once

#include <string>

// What a queue and a job say about counting pages. Nothing here keeps anything between two calls.

/// Whether a queue's PPD asks for its jobs' pages: the first line "*KLPageAccounting" says True, in
/// quotes or not. Letter case does not count. The PPD is read for that line alone, without the
/// library that reads PPDs, which takes longer to load than most jobs to pass.
/// @param ppdPath  null when there is none
/// @return false as well when it cannot be read
bool asksForPageAccounting(const char *ppdPath);

/// How many copies of each page the header asks for that jobfilter writes for a job.
/// @param options  the job's option string. It counts before `copies` where it says
///                 "com.kalmira.copies".
/// @param copies   the filters' argument of that name
/// @return at least 1, which a printer makes of what is no number from 1 on
int copiesOfHeader(const std::string &options, const std::string &copies);
