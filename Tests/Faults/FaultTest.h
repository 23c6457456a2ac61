#pragma once

#include "FaultInjection.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// A fault with the name that messages and figures give it.
struct NamedFault {
    std::string name;
    Support::Fault fault;
};

/// What a program's own system calls and closings can suffer without being cancelled: errors,
/// interruptions, and reads and writes of half the size.
std::vector<NamedFault> faultsOfSystemCalls();

/// Every allocation fails once.
extern const NamedFault kNoMemory;

/// Where there are thousands of calls, every seventh is struck; all of them with KL_EVERY_CALL set
/// in the environment.
std::uint64_t stepOfMany();

/// The signal comes before each system call.
NamedFault signalAtSystemCalls(int signalNumber);

/// Runs programs with faults, in temporary directories of their own.
class FaultTest : public testing::Test {
protected:
    FaultTest();

    /// Runs a program with the fault at its first call, at its second, and so on until there is no
    /// such call any more. The temporary directory is empty before each.
    /// @param call   makes the call anew
    /// @param check  looks at the run; a run that crashes, hangs or leaves a child has failed
    ///               already
    /// @param step   1 for every call; 5 for the first, the sixth, and so on
    /// @return how many calls were struck
    std::uint64_t strikeEveryCall(const NamedFault &fault,
                                  const std::function<Support::ProgramCall()> &call,
                                  const std::function<void(const Support::FaultedRun &)> &check,
                                  std::uint64_t step = 1);

    /// Full paths of what lies in the temporary directory.
    std::vector<std::string> temporaryFiles() const;
    void clearTemporaryFiles() const;

    /// With one small font, and nothing to read but that: what a library opens at its start is not
    /// the program's concern a hundred times over.
    Support::ProgramCall withFewFonts(Support::ProgramCall call) const;

    Support::TemporaryFolder folder;
    const std::string temporaries = folder.file("tmp");

private:
    void makeFonts() const;
};

/// What a program has said, line by line, without the lines' ends.
std::vector<std::string> saidLines(const std::string &text);

/// Whether it was the write of a line to standard error that was struck: the run cannot say so. A
/// line goes out in one write, and no second one makes up for it.
bool lostItsLine(const NamedFault &fault, const Support::FaultedRun &run);
