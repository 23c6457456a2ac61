#pragma once

#include <optional>
#include <stdexcept>

// What the two filters have in common as programs of the scheduler's, see filter(7).

/// A filter's arguments.
struct FilterArguments {
    const char *jobId;
    const char *userName;
    const char *jobTitle;
    const char *copies;
    const char *options;
    const char *file; ///< null when the job comes on standard input
};

/// Ends the run with a "CRIT: " line that carries what() and with status 1. One line, no line feed.
class FatalError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What a filter says at its end when memory runs out.
inline constexpr char kOutOfMemoryLine[] = "CRIT: Out of memory\n";

/// Makes the process what a filter is to be: standard descriptors that are closed get a stand-in,
/// a reader that has gone and a limit on the size of files are failed writes, and memory that
/// cannot be had ends the run. Call it first thing in main().
void prepareFilterProcess();

/// Answers "--help" and "--version" on standard output, each only when it is the one argument: the
/// scheduler sends none such.
/// @param name     the program's
/// @param purpose  what it does, one sentence
/// @return the exit status of a program that was asked; nullopt when there is work to do
std::optional<int> answeredQuestion(int argc, char *argv[], const char *name, const char *purpose);

/// @return the arguments, which stay argv's; nullopt for any other number than filter(7) has, with
///         the usage text on standard error
std::optional<FilterArguments> filterArguments(int argc, char *argv[]);
