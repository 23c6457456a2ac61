#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Support {

// A printer's strict view of a finished job. It knows PJL and what the printer expects of a job,
// shares nothing with the filter, and takes no byte on trust.

/// The three parts of a finished job; together, in this order, they are the job.
struct PJLJob {
    std::string header; ///< up to and including the first "@PJL ENTER LANGUAGE" line
    std::string body;   ///< the page data
    std::string end;    ///< from the last universal exit language marker on
};

/// @return nullopt when the job has no "@PJL ENTER LANGUAGE" line, or no marker behind it.
std::optional<PJLJob> splitPJLJob(std::string_view job);

/// The lines of a text, each with its line feed; a last one without counts too. None for no text.
std::vector<std::string> linesOf(std::string_view text);

/// What is wrong with a finished job, one plain sentence for each problem; empty when nothing is.
///
/// The job is right when
/// - it begins with the universal exit language marker, directly followed by a PJL line, has
///   another one before the job end lines, and no third one anywhere;
/// - every header line is a PJL command of right form (COMMENT, ENTER LANGUAGE, JOB, RDYMSG or
///   SET) that ends with LF or CR LF and holds no other control character;
/// - every DSSC comment is "DSSC PRINT NAME=value" or "DSSC BOX NAME=value";
/// - the lines that the filter itself writes (department code, device colour, colour profiles,
///   user, domain, private print, box, copies) end with CR LF. What the PPD and libcups write may
///   end with LF alone: libcups does so in its "@PJL" and "@PJL JOB NAME" lines;
/// - there is one JOB command at most and one ENTER LANGUAGE, and the page data has no PJL line;
/// - it ends with the lines JOBENDINFO PAGES=1 and JOBENDINFO PAGESIZE= and a paper name, both
///   with CR LF, and "@PJL EOJ" with a bare LF, the one EOJ of the job.
std::vector<std::string> problemsOfPJLJob(std::string_view job);

} // namespace Support
