#include "FaultInjection.h"

#include "Descriptor.h"
#include "DescriptorMessage.h"
#include "FaultReport.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <linux/seccomp.h>
#include <memory>
#include <poll.h>
#include <ranges>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace Support {

namespace SystemCalls {
const std::vector<int> kOpen = {SYS_openat, SYS_openat2,
#ifdef SYS_open
                                SYS_open, SYS_creat,
#endif
                                SYS_memfd_create};
const std::vector<int> kRead = {SYS_read, SYS_pread64, SYS_readv, SYS_preadv, SYS_getdents64};
const std::vector<int> kWrite = {SYS_write,           SYS_pwrite64, SYS_writev, SYS_pwritev,
                                 SYS_copy_file_range, SYS_sendfile, SYS_splice};
const std::vector<int> kSeek = {SYS_lseek};
const std::vector<int> kStatus = {SYS_newfstatat, SYS_statx,      SYS_fstat,
#ifdef SYS_stat
                                  SYS_stat,       SYS_lstat,      SYS_access,     SYS_readlink,
#endif
                                  SYS_faccessat,  SYS_faccessat2, SYS_readlinkat, SYS_fstatfs};
const std::vector<int> kPipe = {SYS_pipe2,
#ifdef SYS_pipe
                                SYS_pipe
#endif
};
const std::vector<int> kStart = {SYS_clone, SYS_clone3,
#ifdef SYS_fork
                                 SYS_fork, SYS_vfork
#endif
};
const std::vector<int> kMap = {SYS_mmap, SYS_mremap, SYS_mprotect};
const std::vector<int> kChangeFile = {SYS_ftruncate, SYS_fcntl, SYS_dup};
const std::vector<int> kRemove = {SYS_unlinkat,
#ifdef SYS_unlink
                                  SYS_unlink, SYS_rmdir
#endif
};
const std::vector<int> kWait = {SYS_waitid, SYS_wait4};
// Without sendmsg(2): with it the listener itself is handed over.
const std::vector<int> kNetwork = {SYS_socket,   SYS_connect,    SYS_sendto,      SYS_recvfrom,
                                   SYS_recvmsg,  SYS_getsockopt, SYS_setsockopt,  SYS_getsockname,
                                   SYS_shutdown, SYS_ppoll,      SYS_getpeername, SYS_pselect6,
#ifdef SYS_poll
                                   SYS_poll,     SYS_select
#endif
};

const std::vector<int> kAll = [] {
    std::vector<int> all;
    for (const auto *kind : {&kOpen, &kRead, &kWrite, &kSeek, &kStatus, &kPipe, &kStart, &kMap,
                             &kChangeFile, &kRemove, &kWait})
        all.insert(all.end(), kind->begin(), kind->end());
    return all;
}();
} // namespace SystemCalls

namespace {

using Platform::Descriptor;

// Where the preloaded library finds its ends; far above what programs open.
constexpr int kReportDescriptor = 200;
constexpr int kSocketDescriptor = 201;

using Clock = std::chrono::steady_clock;
/// How long a child may outlive its program.
constexpr auto kPatience = std::chrono::seconds(3);

int checked(int result, const char *what)
{
    if (result < 0)
        throw std::system_error(errno, std::generic_category(), what);
    return result;
}

/// A report that a program can be started with.
class SharedReport {
public:
    SharedReport() : _descriptor(checked(memfd_create("report", MFD_CLOEXEC), "memfd_create"))
    {
        checked(ftruncate(number(), sizeof(FaultReport)), "ftruncate");
        void *memory =
            mmap(nullptr, sizeof(FaultReport), PROT_READ | PROT_WRITE, MAP_SHARED, number(), 0);
        if (memory == MAP_FAILED)
            throw std::system_error(errno, std::generic_category(), "mmap");
        _report = static_cast<FaultReport *>(memory);
    }
    ~SharedReport() { munmap(_report, sizeof *_report); }
    SharedReport(const SharedReport &) = delete;
    SharedReport &operator=(const SharedReport &) = delete;

    int number() const { return _descriptor.number(); }
    const FaultReport *operator->() const { return _report; }

private:
    Descriptor _descriptor;
    FaultReport *_report = nullptr;
};

/// @return -1 when the other end was closed without sending one
int receiveDescriptor(int socket)
{
    DescriptorMessage received;
    int descriptor = -1;
    if (recvmsg(socket, &received.message, MSG_CMSG_CLOEXEC) <= 0)
        return -1;
    if (const cmsghdr *header = CMSG_FIRSTHDR(&received.message))
        std::memcpy(&descriptor, CMSG_DATA(header), sizeof descriptor);
    return descriptor;
}

/// Decides about a program's system calls as long as it runs, on a thread of its own.
class Listener {
public:
    Listener(const Fault &fault, std::uint64_t k) : _fault(fault), _k(k)
    {
        std::array<int, 2> ends = {};
        checked(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), "socketpair");
        _own = Descriptor(ends[0]);
        _programs = Descriptor(ends[1]);
    }

    int programsEnd() const { return _programs.number(); }

    /// The program runs.
    void start(pid_t program)
    {
        _program = program;
        _programs.close();
        _thread = std::thread([this] { listen(); });
    }

    /// The program has ended, and its children ought to have.
    void finish()
    {
        _finishing = true;
        if (_thread.joinable())
            _thread.join();
    }

    std::uint64_t calls = 0;
    bool struck = false;
    int descriptor = -1;
    std::string where;
    bool childLeft = false;

private:
    void listen()
    {
        _listener = Descriptor(receiveDescriptor(_own.number()));
        if (_listener.number() < 0)
            return;
        auto lastSeen = Clock::now();
        while (!childLeft) {
            pollfd wanted = {_listener.number(), POLLIN, 0};
            if (poll(&wanted, 1, 50) > 0 && (wanted.revents & POLLIN) == 0)
                return; // nobody is left to listen to
            if (!_finishing)
                lastSeen = Clock::now();
            childLeft = Clock::now() - lastSeen > kPatience;
            seccomp_notif call = {};
            if (wanted.revents != 0 &&
                ioctl(_listener.number(), SECCOMP_IOCTL_NOTIF_RECV, &call) == 0)
                answer(call);
        }
    }

    void answer(const seccomp_notif &call)
    {
        seccomp_notif_resp response = {};
        response.id = call.id;
        response.flags = SECCOMP_USER_NOTIF_FLAG_CONTINUE;
        const bool counts = (static_cast<pid_t>(call.pid) == _program) != _fault.ofChildren;
        if (counts && ++calls == _k)
            strike(call, response);
        // Fails when the process has been killed meanwhile.
        ioctl(_listener.number(), SECCOMP_IOCTL_NOTIF_SEND, &response);
    }

    void strike(const seccomp_notif &call, seccomp_notif_resp &response)
    {
        struck = true;
        descriptor = static_cast<int>(call.data.args[0]);
        where = description(call);
        switch (_fault.kind) {
        case Fault::Kind::Fails:
            response.flags = 0;
            response.error = -_fault.value;
            break;
        case Fault::Kind::Halved:
            halve(call, response);
            break;
        case Fault::Kind::Signalled:
            kill(static_cast<pid_t>(call.pid), _fault.value);
            break;
        case Fault::Kind::ProgramSignalled:
            kill(_program, _fault.value);
            break;
        default:
            break;
        }
    }

    static std::string description(const seccomp_notif &call)
    {
        const auto number = std::to_string(static_cast<int>(call.data.args[0]));
        std::array<char, 256> name = {};
        if (call.data.nr == SYS_openat || call.data.nr == SYS_newfstatat)
            readMemory(call.pid, call.data.args[1], name.data(), name.size() - 1);
#ifdef SYS_access
        if (call.data.nr == SYS_access)
            readMemory(call.pid, call.data.args[0], name.data(), name.size() - 1);
#endif
        const std::string link = "/proc/" + std::to_string(call.pid) + "/fd/" + number;
        if (name[0] == '\0' && readlink(link.c_str(), name.data(), name.size() - 1) < 0)
            name[0] = '\0';
        return "system call " + std::to_string(call.data.nr) + " on " + number + ", " + name.data();
    }

    /// Memory of the program's, up to the end of a page at least.
    static bool readMemory(__u32 process, std::uint64_t address, void *bytes, std::size_t size)
    {
        const std::size_t toPageEnd = 4096 - address % 4096;
        const iovec here = {bytes, size};
        const std::array<iovec, 2> there = {
            {{reinterpret_cast<void *>(address), std::min(size, toPageEnd)},
             {reinterpret_cast<void *>(address + toPageEnd),
              size > toPageEnd ? size - toPageEnd : 0}}};
        return process_vm_readv(static_cast<pid_t>(process), &here, 1, there.data(), there.size(),
                                0) > 0;
    }

    /// Reads or writes half of what the program wants, in its stead.
    static void halve(const seccomp_notif &call, seccomp_notif_resp &response)
    {
        const bool reads = call.data.nr == SYS_read || call.data.nr == SYS_pread64;
        const bool writes = call.data.nr == SYS_write || call.data.nr == SYS_pwrite64;
        const bool atPosition = call.data.nr == SYS_pread64 || call.data.nr == SYS_pwrite64;
        if ((!reads && !writes) || call.data.args[2] < 2)
            return;
        const auto process = static_cast<pid_t>(call.pid);
        const Descriptor handle(static_cast<int>(syscall(SYS_pidfd_open, process, 0)));
        const Descriptor file(static_cast<int>(
            syscall(SYS_pidfd_getfd, handle.number(), static_cast<int>(call.data.args[0]), 0)));
        // Nothing is waited for here: what is to be read may be another process's to write, and
        // that one waits for its own answer.
        pollfd ready = {file.number(), POLLIN, 0};
        if (reads && poll(&ready, 1, 0) == 0)
            return;
        std::vector<char> bytes(call.data.args[2] / 2);
        const iovec here = {bytes.data(), bytes.size()};
        const iovec there = {reinterpret_cast<void *>(call.data.args[1]), bytes.size()};
        const auto position = static_cast<off_t>(call.data.args[3]);
        if (writes && process_vm_readv(process, &here, 1, &there, 1, 0) < 0)
            return;
        const ssize_t count =
            reads ? (atPosition ? pread(file.number(), bytes.data(), bytes.size(), position)
                                : read(file.number(), bytes.data(), bytes.size()))
                  : (atPosition ? pwrite(file.number(), bytes.data(), bytes.size(), position)
                                : write(file.number(), bytes.data(), bytes.size()));
        if (reads && count > 0 && process_vm_writev(process, &here, 1, &there, 1, 0) < 0)
            return;
        response.flags = 0;
        response.val = count;
        response.error = count < 0 ? -errno : 0;
    }

    const Fault &_fault;
    const std::uint64_t _k;
    std::atomic<bool> _finishing = false;
    pid_t _program = 0;
    Descriptor _own;
    Descriptor _programs;
    Descriptor _listener;
    std::thread _thread;
};

std::string listOf(const std::vector<int> &numbers)
{
    std::string text;
    for (const int number : numbers)
        text += std::to_string(number) + ",";
    return text;
}

void addOrders(ProgramCall &call, const Fault &fault, std::uint64_t k)
{
    const auto forKind = [&](Fault::Kind kind) {
        return std::to_string(fault.kind == kind ? (k == 0 ? UINT64_MAX : k) : 0);
    };
    call.environment["LD_PRELOAD"] = KL_FAIL_THE_KTH_CALL;
    call.environment[kFaultProgram] = call.arguments.front();
    call.environment[kFaultReport] = std::to_string(kReportDescriptor);
    call.environment[kFaultSocket] = std::to_string(kSocketDescriptor);
    call.environment[kFaultAllocation] = forKind(Fault::Kind::Allocation);
    call.environment[kFaultClosing] = forKind(Fault::Kind::Closing);
    if (!fault.systemCalls.empty())
        call.environment[kFaultSystemCalls] = listOf(fault.systemCalls);
}

} // namespace

FaultedRun runWithFault(ProgramCall call, const Fault &fault, std::uint64_t k)
{
    const SharedReport report;
    Listener listener(fault, k);
    addOrders(call, fault, k);
    call.inChild = [&, before = std::move(call.inChild)] {
        if (before)
            before();
        dup2(report.number(), kReportDescriptor);
        dup2(listener.programsEnd(), kSocketDescriptor);
    };
    call.afterStart = [&, before = std::move(call.afterStart)](pid_t program) {
        listener.start(program);
        if (before)
            before(program);
    };
    FaultedRun run = {};
    try {
        run.result = runProgram(call);
    } catch (...) {
        listener.finish();
        throw;
    }
    listener.finish();
    run.calls = listener.calls + report->calls;
    run.struck = listener.struck || report->struck;
    run.descriptor = listener.descriptor;
    run.childLeft = listener.childLeft;
    run.where = listener.where + report->struckIn;
    run.crash = report->crashedIn;
    return run;
}

} // namespace Support
