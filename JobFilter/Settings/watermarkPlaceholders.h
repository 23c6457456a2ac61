#pragma once

#include <ctime>
#include <string>
#include <string_view>

/// What a watermark can say of the job. Any bytes; what is no UTF-8 is read as "?".
struct JobValues {
    std::string user = {};
    std::string title = {};
    std::string jobId = {};
    std::time_t printed = 0; ///< when the job is printed
};

/// The text with what the filter knows in the place of "[user]", "[title]", "[job-id]", "[date]"
/// ("2026-11-22") and "[time]" ("14:05", both of the host's time zone).
///
/// All else stays: "[page]" and "[pages]" are the toolkit's, and so are doubled brackets, which
/// stand for single ones, and whatever it refuses. A bracket in a value comes doubled.
/// @throws std::length_error when that makes a text that is too long for a program's argument:
///         more than 100,000 bytes. what() is a sentence for the user.
std::string withJobValues(std::string_view text, const JobValues &job);
