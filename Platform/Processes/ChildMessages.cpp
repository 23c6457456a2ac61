#include "ChildMessages.h"

#include "Descriptor.h"
#include "Fork.h"
#include "OpenDescriptors.h"
#include "Pipe.h"
#include "Streams.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <unistd.h>

namespace Platform {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

// On the line a message is its kind, the length of its text (four bytes) and its text.
using Length = std::uint32_t;
constexpr std::size_t kPrefixSize = 1 + sizeof(Length);

/// What the child says last: nothing, for work that came to its end, else why it did not.
constexpr char kEndKind = '\0';

KLError childError(int code, std::string description)
{
    return {"KLChildErrorDomain", code, std::move(description)};
}

/// Allocates nothing: memory may have run out. Ends the process on failure.
void writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
            _exit(EXIT_FAILURE);
        bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
}

/// Leaves the child `sender` and standard error. @return where the sender is now
int keepOnly(int sender)
{
    constexpr int kSender = STDERR_FILENO + 1;
    dup2(sender, kSender);
    const int nothing = open("/dev/null", O_RDWR);
    dup2(nothing, STDIN_FILENO);
    dup2(nothing, STDOUT_FILENO);
    closeDescriptorsFrom(kSender + 1);
    return kSender;
}

/// Takes the child's memory use as it is and allows that much more.
void limitMemory(std::size_t more)
{
    const Stream sizes = openForReading("/proc/self/statm");
    unsigned long pages = 0; // the sixth number: data and stack
    // NOLINTNEXTLINE(cert-err34-c): the kernel's numbers fit
    if (!sizes || std::fscanf(sizes.get(), "%*u %*u %*u %*u %*u %lu", &pages) != 1)
        return;
    const rlim_t most = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + more;
    const rlimit limit = {most, most};
    setrlimit(RLIMIT_DATA, &limit);
}

[[noreturn]] void doWork(const std::function<void(const ChildMessageSender &)> &work, int sender,
                         std::size_t memory)
{
    if (chdir("/") != 0)
        _exit(EXIT_FAILURE);
    const ChildMessageSender messages(keepOnly(sender));
    limitMemory(memory);
    try {
        work(messages);
        messages.send(kEndKind);
    } catch (const std::exception &error) {
        messages.send(kEndKind, *error.what() != '\0' ? error.what() : "unknown reason");
    }
    _exit(EXIT_SUCCESS); // what the parent had buffered is the parent's to write
}

/// Takes the first message off the bytes. @return nullopt while it is not all there
std::optional<ChildMessage> takeMessage(std::string_view &bytes)
{
    Length length = 0;
    if (bytes.size() < kPrefixSize)
        return std::nullopt;
    std::memcpy(&length, bytes.data() + 1, sizeof length);
    if (bytes.size() - kPrefixSize < length)
        return std::nullopt;
    ChildMessage message = {bytes.front(), std::string(bytes.substr(kPrefixSize, length))};
    bytes.remove_prefix(kPrefixSize + length);
    return message;
}

/// Collects the child's messages.
class Receiver {
public:
    Receiver(int descriptor, const ChildLimits &limits) : _descriptor(descriptor), _limits(limits)
    {
    }

    ChildReport receive()
    {
        while (!_ended && !_report.error) {
            if (waitForBytes())
                readBytes();
        }
        return std::move(_report);
    }

private:
    void fail(int code, std::string description)
    {
        _report.error = childError(code, std::move(description));
    }

    bool waitForBytes()
    {
        const auto end = std::min(_limits.deadline, _lastMessage + _limits.silence);
        const auto left = std::chrono::ceil<Milliseconds>(end - Clock::now()).count();
        pollfd wanted = {_descriptor, POLLIN, 0};
        if (left > 0 &&
            poll(&wanted, 1, static_cast<int>(std::min<Milliseconds::rep>(left, 60'000))) > 0)
            return true;
        if (Clock::now() >= end)
            fail(ETIMEDOUT, "No answer in time");
        return false;
    }

    void readBytes()
    {
        std::array<char, 16384> block = {};
        const ssize_t length = read(_descriptor, block.data(), block.size());
        if (length < 0 && errno == EINTR)
            return;
        if (length <= 0)
            return fail(ECHILD, "The answer ended too early");
        _received += static_cast<std::size_t>(length);
        if (_received > _limits.messageBytes)
            return fail(EMSGSIZE, "The answer is too long");
        _pending.append(block.data(), static_cast<std::size_t>(length));
        takeMessages();
    }

    void takeMessages()
    {
        std::string_view rest = _pending;
        while (auto message = takeMessage(rest)) {
            _lastMessage = Clock::now();
            if (message->kind == kEndKind)
                return end(std::move(message->text));
            _report.messages.push_back(std::move(*message));
        }
        _pending.erase(0, _pending.size() - rest.size());
    }

    void end(std::string reason)
    {
        _ended = true;
        if (!reason.empty())
            fail(0, std::move(reason));
    }

    int _descriptor;
    const ChildLimits &_limits;
    Clock::time_point _lastMessage = Clock::now();
    std::size_t _received = 0;
    std::string _pending;
    bool _ended = false;
    ChildReport _report;
};

} // namespace

void ChildMessageSender::send(char kind, std::string_view text) const
{
    const auto length = static_cast<Length>(text.size());
    std::array<char, kPrefixSize> prefix = {kind};
    std::memcpy(prefix.data() + 1, &length, sizeof length);
    writeAll(_descriptor, {prefix.data(), prefix.size()});
    writeAll(_descriptor, text);
}

ChildReport messagesFromChild(const std::function<void(const ChildMessageSender &)> &work,
                              const ChildLimits &limits)
{
    if (Clock::now() >= limits.deadline)
        return {{}, childError(ETIMEDOUT, "No time left")};
    auto pipe = makePipe();
    if (!pipe)
        return {{}, childError(errno, std::strerror(errno))};
    const int sender = pipe->writeEnd.number();
    const pid_t child = forkChild([&] { doWork(work, sender, limits.memory); });
    if (child < 0)
        return {{}, childError(errno, std::strerror(errno))};
    pipe->writeEnd.close(); // so that the child's end is the end of the messages
    ChildReport report = Receiver(pipe->readEnd.number(), limits).receive();
    endForkedChild(child);
    return report;
}

} // namespace Platform
