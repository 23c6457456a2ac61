#pragma once

#include "Program.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Support {

/// Kinds of system calls that belong together.
namespace SystemCalls {
extern const std::vector<int> kOpen; ///< also what makes a file
extern const std::vector<int> kRead;
extern const std::vector<int> kWrite;
extern const std::vector<int> kSeek;
extern const std::vector<int> kStatus; ///< what tells a file's kind and size
extern const std::vector<int> kPipe;
extern const std::vector<int> kStart;      ///< fork and its kin
extern const std::vector<int> kMap;        ///< where memory and libraries come from
extern const std::vector<int> kChangeFile; ///< its length; a descriptor's flags, one more for it
extern const std::vector<int> kRemove;
extern const std::vector<int> kWait;
extern const std::vector<int> kAll;     ///< all of the above
extern const std::vector<int> kNetwork; ///< connections, and waiting for them
} // namespace SystemCalls

/// What befalls the k-th call of a kind.
struct Fault {
    enum class Kind {
        Fails,            ///< the system call fails with the error `value`, and does nothing
        Halved,           ///< the read or write has half of the size that was asked for
        Signalled,        ///< the signal `value` is sent before it to the process whose call it is
        ProgramSignalled, ///< the same, to the program
        Allocation,       ///< no memory: malloc() and its kin, operator new with them
        Closing,          ///< close() or fclose() does its work and reports an error
    };
    Kind kind;
    std::vector<int> systemCalls = {};
    int value = 0;
    /// The system calls of the program's children count instead of its own, each child alike.
    bool ofChildren = false;
};

/// A run of a program with a fault in it, or a whole one when it has fewer calls.
struct FaultedRun {
    ProgramResult result;
    bool struck;         ///< there was a k-th call
    std::uint64_t calls; ///< how many calls of the kind there were
    int descriptor;      ///< the first argument of the system call that was struck
    std::string where;   ///< for messages: what was struck, and where it crashed
    bool childLeft;      ///< a child of the program's was there long after its end
    std::string crash;   ///< names of the functions in which it crashed; empty when it did not
};

/// Runs a program with a fault at the k-th call behind the begin of main().
/// @param call  its first argument is the program's absolute path, links resolved
/// @param k     from 1; 0 strikes nowhere
/// @throws std::runtime_error also when this system does not let a test listen to system calls
FaultedRun runWithFault(ProgramCall call, const Fault &fault, std::uint64_t k);

} // namespace Support
