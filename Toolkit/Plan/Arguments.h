#pragma once

#include "Commands.h"

#include <optional>
#include <string>
#include <vector>

/// An option as it was given.
struct Option {
    std::string name;  ///< "--font"
    std::string value; ///< empty for a flag
};

/// The command line, told apart but not yet understood. Each word is as it was given; the
/// command is one that there is.
struct Arguments {
    std::string command;
    std::vector<Option> options; ///< in the order of the command line
    std::string input;
    std::string output;
};

/// Tells the command line apart: command word, options, input file, output file.
///
/// The words before the first one that is no option of the command are options, each with its
/// value; a value is a value whatever it looks like.
/// @param words  the command line without the program's name
/// @throws ToolkitError for an unknown command or option, for an option without its value and
///         for more or fewer than two files. Which file the output is, is not known then.
Arguments splitArguments(const std::vector<std::string> &words);

/// Understands the options; jobfilter-toolkit(1) has each one's values. The files are not looked
/// at.
/// @param arguments  from splitArguments()
/// @throws ToolkitError for an option that is needed and missing, for a repeated one and for a
/// value that is refused
Command commandFromArguments(const Arguments &arguments);

/// The text that the command line asks for instead of work: "--help" or "--version", alone
/// or behind a command word. Ends in a line feed.
/// @return nullopt when it asks for none
std::optional<std::string> requestedHelp(const std::vector<std::string> &words);
