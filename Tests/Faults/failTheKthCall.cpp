// Preloaded into a program under test. What it does begins with main(): the dynamic loader's own
// work at the start is not the program's.
//
// Allocations and closings are counted here, and the k-th fails. System calls are not: the C
// library's streams make theirs without going through a symbol that could be replaced. A filter of
// the kernel's stops them all, and a listener in the test (FaultInjection.cpp) says what becomes of
// each.

#include "DescriptorMessage.h"
#include "FaultReport.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <execinfo.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

using Main = int (*)(int, char **, char **);

bool counting = false; ///< between the begin of main() and its end, in this process
FaultReport *report = nullptr;
std::uint64_t allocationToFail = 0;
std::uint64_t closingToFail = 0;
Main programsMain = nullptr;

[[noreturn]] void giveUp(const char *what)
{
    std::perror(what);
    _exit(98);
}

std::uint64_t numberFrom(const char *variable)
{
    const char *text = std::getenv(variable);
    return text == nullptr ? 0 : std::strtoull(text, nullptr, 10);
}

/// Allocates nothing once it has been called before.
void describeCallers(char *text, std::size_t size)
{
    std::array<void *, 48> callers = {};
    const int count = backtrace(callers.data(), static_cast<int>(callers.size()));
    for (int caller = 0; caller < count && size > 1; ++caller) {
        Dl_info info = {};
        dladdr(callers[static_cast<std::size_t>(caller)], &info);
        const char *file = info.dli_fname == nullptr ? "?" : info.dli_fname;
        const char *slash = std::strrchr(file, '/');
        const int length = std::snprintf(text, size, "%s:%s\n", slash == nullptr ? file : slash + 1,
                                         info.dli_sname == nullptr ? "?" : info.dli_sname);
        const auto used = std::min(static_cast<std::size_t>(length), size - 1);
        text += used;
        size -= used;
    }
}

/// Counts a call. @return whether it is the one that fails
bool strikes(std::uint64_t toFail)
{
    if (!counting || toFail == 0 || ++report->calls != toFail)
        return false;
    counting = false;
    describeCallers(report->struckIn, sizeof report->struckIn);
    report->struck = true;
    return true;
}

void reportCrash(int)
{
    counting = false;
    describeCallers(report->crashedIn, sizeof report->crashedIn);
    // The handler is reset: the fault strikes again behind it, deadly this time.
}

void watchForCrashes()
{
    static std::array<char, 65536> stack;
    stack_t alternative = {};
    alternative.ss_sp = stack.data();
    alternative.ss_size = stack.size();
    sigaltstack(&alternative, nullptr);
    for (const int signalNumber : {SIGSEGV, SIGBUS, SIGABRT, SIGFPE, SIGILL}) {
        struct sigaction action = {};
        action.sa_handler = &reportCrash;
        action.sa_flags = SA_ONSTACK | static_cast<int>(SA_RESETHAND);
        sigaction(signalNumber, &action, nullptr);
    }
}

void sendDescriptor(int socket, int descriptor)
{
    DescriptorMessage sent;
    cmsghdr *header = CMSG_FIRSTHDR(&sent.message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof descriptor);
    std::memcpy(CMSG_DATA(header), &descriptor, sizeof descriptor);
    if (sendmsg(socket, &sent.message, 0) < 0)
        giveUp("sendmsg");
}

/// Has the kernel ask a listener about each of these system calls. @return the listener
int listenTo(const char *systemCalls)
{
    std::array<sock_filter, 128> filter = {};
    unsigned short size = 0;
    filter[size++] = BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr));
    while (*systemCalls != '\0' && size < filter.size() - 3) {
        char *end = nullptr;
        const auto number = static_cast<std::uint32_t>(std::strtoul(systemCalls, &end, 10));
        filter[size++] = BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number, 0, 1);
        filter[size++] = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_USER_NOTIF);
        systemCalls = *end == ',' ? end + 1 : end;
    }
    filter[size++] = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
    const sock_fprog program = {size, filter.data()};
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0); // else only root may
    const long listener =
        syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_NEW_LISTENER, &program);
    if (listener < 0)
        giveUp("seccomp");
    return static_cast<int>(listener);
}

void handOverSystemCalls()
{
    const char *systemCalls = std::getenv(kFaultSystemCalls);
    if (systemCalls == nullptr)
        return;
    const auto socket = static_cast<int>(numberFrom(kFaultSocket));
    const int listener = listenTo(systemCalls);
    sendDescriptor(socket, listener);
    syscall(SYS_close, listener);
    syscall(SYS_close, socket);
}

void shareReport()
{
    const auto descriptor = static_cast<int>(numberFrom(kFaultReport));
    void *memory = mmap(nullptr, sizeof *report, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    if (memory == MAP_FAILED)
        giveUp("mmap");
    report = static_cast<FaultReport *>(memory);
    syscall(SYS_close, descriptor);
}

bool isTheProgram()
{
    const char *wanted = std::getenv(kFaultProgram);
    std::array<char, 4096> path = {};
    return wanted != nullptr && readlink("/proc/self/exe", path.data(), path.size() - 1) > 0 &&
           std::strcmp(wanted, path.data()) == 0;
}

int mainWithFaults(int argc, char **argv, char **environment)
{
    if (!isTheProgram())
        return programsMain(argc, argv, environment);
    shareReport();
    allocationToFail = numberFrom(kFaultAllocation);
    closingToFail = numberFrom(kFaultClosing);
    pthread_atfork(nullptr, nullptr, [] { counting = false; });
    std::array<void *, 1> warmedUp = {};
    backtrace(warmedUp.data(), 1);
    watchForCrashes();
    handOverSystemCalls();
    counting = true;
    return programsMain(argc, argv, environment);
}

[[maybe_unused]] void *noMemory()
{
    errno = ENOMEM;
    return nullptr;
}

template <class Function>
Function next(const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

int __libc_start_main(Main, int, char **, void (*)(), void (*)(), void (*)(), void *);

int __libc_start_main(Main main, int argc, char **argv, void (*init)(), void (*fini)(),
                      void (*loaderFini)(), void *stackEnd)
{
    programsMain = main;
    return next<decltype(&__libc_start_main)>("__libc_start_main")(
        &mainWithFaults, argc, argv, init, fini, loaderFini, stackEnd);
}

// Closed is closed, also when it says that something went wrong.

int close(int descriptor)
{
    const auto result = static_cast<int>(syscall(SYS_close, descriptor));
    if (!strikes(closingToFail))
        return result;
    errno = EIO;
    return -1;
}

int fclose(FILE *stream)
{
    static const auto original = next<int (*)(FILE *)>("fclose");
    const int result = original(stream);
    if (!strikes(closingToFail))
        return result;
    errno = EIO;
    return EOF;
}

// Programs of ours have allocation functions of their own, which call these.

void *__libc_malloc(std::size_t size)
{
    static const auto original = next<void *(*)(std::size_t)>("__libc_malloc");
    return strikes(allocationToFail) ? noMemory() : original(size);
}

void *__libc_calloc(std::size_t count, std::size_t size)
{
    static const auto original = next<void *(*)(std::size_t, std::size_t)>("__libc_calloc");
    return strikes(allocationToFail) ? noMemory() : original(count, size);
}

void *__libc_realloc(void *memory, std::size_t size)
{
    static const auto original = next<void *(*)(void *, std::size_t)>("__libc_realloc");
    return strikes(allocationToFail) ? noMemory() : original(memory, size);
}

void *__libc_memalign(std::size_t alignment, std::size_t size)
{
    static const auto original = next<void *(*)(std::size_t, std::size_t)>("__libc_memalign");
    return strikes(allocationToFail) ? noMemory() : original(alignment, size);
}

// And for those that have none.

void *malloc(std::size_t size) noexcept
{
    return __libc_malloc(size);
}

void *calloc(std::size_t count, std::size_t size) noexcept
{
    return __libc_calloc(count, size);
}

void *realloc(void *memory, std::size_t size) noexcept
{
    return __libc_realloc(memory, size);
}

} // extern "C"
