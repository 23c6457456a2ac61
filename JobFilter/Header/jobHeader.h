#pragma once

#include "PPD.h"

#include <cstddef>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

class KLPrintOptions;

// The PJL header of a job, from what libcups makes of the PPD to what the printer gets.

/// What the header calls the job.
struct JobName {
    int id;
    std::string user;
    std::string title;
};

/// Has libcups make the header that the PPD gives for the marked choices, and makes it fit to be
/// walked.
///
/// User and title begin no line of their own and end no text: libcups gets copies in which each
/// control character is a blank and each double quote an apostrophe. Each byte that is no part of
/// a UTF-8 character is a "?" in the end: a line that is no text would end the walk, and libcups
/// cuts a long user or title where it likes.
/// @param file  empty, open for writing and reading; what it holds afterwards is of no use
/// @return empty when the PPD gives no header; nullopt when it could not be written or read back
std::optional<std::string> emittedHeader(const PPD &ppd, const JobName &job, FILE *file);

/// Walks such a header onto the output; on the way it gets the job's settings (see handlePJL()).
/// Markers that it lacks are logged (see logMissingMarkers()).
/// What becomes of the writing shows at the output.
/// @param options  not null
/// @return how many bytes of the header the walk has left unread
std::size_t walkHeader(const std::string &header, std::shared_ptr<KLPrintOptions> options,
                       FILE *output);

/// All that has been written to a file that is open for writing and reading.
/// @return nullopt when it was not all written or could not be read back
std::optional<std::string> writtenBytes(FILE *file);
