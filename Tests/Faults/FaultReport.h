#pragma once

#include <cstdint>

/// What a program with the preloaded library (failTheKthCall.cpp) tells the test that runs it, in
/// memory that both share: it is still there when the program has crashed.
struct FaultReport {
    std::uint64_t calls;  ///< allocations or closings since main() began
    bool struck;          ///< one of them has been made to fail
    char struckIn[8192];  ///< who called, innermost first, a line each
    char crashedIn[8192]; ///< likewise, at a deadly signal
};

// The library's orders come in the environment.

/// The program's path: its children inherit the environment, and are left alone.
constexpr char kFaultProgram[] = "KL_FAULT_PROGRAM";
/// Number of the descriptor of a FaultReport, inherited.
constexpr char kFaultReport[] = "KL_FAULT_REPORT";
/// Number of an inherited socket, which gets the listener that is told of the system calls.
constexpr char kFaultSocket[] = "KL_FAULT_SOCKET";
/// Numbers of those system calls, with commas between them.
constexpr char kFaultSystemCalls[] = "KL_FAULT_SYSTEM_CALLS";
/// Which allocation fails, counted from 1; 0 for none.
constexpr char kFaultAllocation[] = "KL_FAULT_ALLOCATION";
/// Which close() or fclose() says that it failed, counted from 1; 0 for none.
constexpr char kFaultClosing[] = "KL_FAULT_CLOSING";
