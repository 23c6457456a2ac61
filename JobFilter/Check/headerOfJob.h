#pragma once

#include <string>

/// What becomes of a job.
struct JobHeaderAnswer {
    bool isPrinted;
    std::string text; ///< the header; for a job that is not printed, one line that says why
};

/// The header that a job with these options would get from the PPD that the environment variable
/// "PPD" names, for people to read: the escape character is "<ESC>", and there is no CR.
///
/// The user is the one who asks, the job's number 1, its title "Title"; the domain is not looked
/// up: its line is empty unless the options say it. What the filter logs about the settings goes to
/// standard error.
/// @param optionString  in the syntax of cupsParseOptions()
/// @throws KLNoPPDError when there is no PPD
JobHeaderAnswer headerOfJob(const std::string &optionString);
