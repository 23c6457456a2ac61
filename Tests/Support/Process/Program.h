#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace Support {

/// How to run a program.
struct ProgramCall {
    /// The program's path, or its name to be looked up in PATH, and its arguments.
    std::vector<std::string> arguments = {};
    /// Set in addition to the test's own environment; nullopt unsets.
    std::map<std::string, std::optional<std::string>> environment = {};
    std::string input = {};
    /// Then the program and its process group are killed and the call throws.
    std::chrono::seconds timeLimit = std::chrono::seconds(60);
    /// Run in the child just before the program starts, e.g. to close a descriptor or set a limit.
    std::function<void()> inChild = {};
    /// Run in the test as soon as the program has been started.
    std::function<void(pid_t)> afterStart = {};
};

struct ProgramResult {
    std::string output;                          ///< all of its standard output
    std::string errors;                          ///< all of its standard error
    int exitStatus;                              ///< -1 when a signal ended it
    int signal;                                  ///< 0 when it exited
    long peakMemory;                             ///< most resident memory at any time, in KiB
    long pageFaults;                             ///< pages of memory that it got, or got anew
    std::chrono::duration<double> processorTime; ///< all that it took, its own and the system's
};

/// Runs a program to its end with its three standard streams connected to the test.
/// A program that is not there is named on its standard error, and its status is 127, as in a
/// shell.
/// @throws std::runtime_error when there is no process for it or it exceeds its time limit
ProgramResult runProgram(const ProgramCall &call);

/// Runs a program that is no test's subject but must succeed.
/// @return its standard output
/// @throws std::runtime_error, with what the program said, when it fails
std::string runOrThrow(const std::vector<std::string> &arguments);

} // namespace Support
