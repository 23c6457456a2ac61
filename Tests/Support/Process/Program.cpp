#include "Program.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Support {
namespace {

using Clock = std::chrono::steady_clock;

struct Pipe {
    int readEnd = -1;
    int writeEnd = -1;

    Pipe()
    {
        std::array<int, 2> ends = {};
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("pipe: " + std::string(std::strerror(errno)));
        readEnd = ends[0];
        writeEnd = ends[1];
    }
    ~Pipe()
    {
        closeEnd(readEnd);
        closeEnd(writeEnd);
    }
    Pipe(const Pipe &) = delete;
    Pipe &operator=(const Pipe &) = delete;

    static void closeEnd(int &end)
    {
        if (end >= 0)
            close(end);
        end = -1;
    }
};

struct Streams {
    Pipe input;
    Pipe output;
    Pipe errors;
};

[[noreturn]] void becomeProgram(const ProgramCall &call, const Streams &streams)
{
    setpgid(0, 0);
    dup2(streams.input.readEnd, STDIN_FILENO);
    dup2(streams.output.writeEnd, STDOUT_FILENO);
    dup2(streams.errors.writeEnd, STDERR_FILENO);
    for (const auto &[name, value] : call.environment) {
        if (value)
            setenv(name.c_str(), value->c_str(), 1);
        else
            unsetenv(name.c_str());
    }
    std::vector<char *> arguments;
    for (const std::string &argument : call.arguments)
        arguments.push_back(const_cast<char *>(argument.c_str()));
    arguments.push_back(nullptr);
    if (call.inChild)
        call.inChild();
    execvp(arguments[0], arguments.data());
    std::perror(arguments[0]);
    _exit(127);
}

/// Reads what is there. @return false at the end
bool take(int descriptor, std::string &bytes)
{
    std::array<char, 65536> block = {};
    const ssize_t length = read(descriptor, block.data(), block.size());
    if (length > 0)
        bytes.append(block.data(), static_cast<std::size_t>(length));
    return length > 0 || (length < 0 && errno == EAGAIN);
}

/// Feeds the program and collects what it says until both its outputs are closed.
/// @return false when the time limit came first
bool talk(const ProgramCall &call, Streams &streams, ProgramResult &result)
{
    const auto deadline = Clock::now() + call.timeLimit;
    std::size_t fed = 0;
    for (Pipe *pipe : {&streams.output, &streams.errors})
        fcntl(pipe->readEnd, F_SETFL, O_NONBLOCK);
    fcntl(streams.input.writeEnd, F_SETFL, O_NONBLOCK);

    while (streams.output.readEnd >= 0 || streams.errors.readEnd >= 0) {
        if (fed == call.input.size())
            Pipe::closeEnd(streams.input.writeEnd);
        std::array<pollfd, 3> waits = {{{streams.input.writeEnd, POLLOUT, 0},
                                        {streams.output.readEnd, POLLIN, 0},
                                        {streams.errors.readEnd, POLLIN, 0}}};
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0 ||
            poll(waits.data(), waits.size(), static_cast<int>(left.count())) == 0)
            return false;
        if (waits[0].revents != 0) {
            const ssize_t written =
                write(streams.input.writeEnd, call.input.data() + fed, call.input.size() - fed);
            if (written > 0)
                fed += static_cast<std::size_t>(written);
            else if (errno != EAGAIN)
                fed = call.input.size(); // the program does not want the rest
        }
        if (waits[1].revents != 0 && !take(streams.output.readEnd, result.output))
            Pipe::closeEnd(streams.output.readEnd);
        if (waits[2].revents != 0 && !take(streams.errors.readEnd, result.errors))
            Pipe::closeEnd(streams.errors.readEnd);
    }
    return true;
}

std::chrono::microseconds durationOf(const timeval &time)
{
    return std::chrono::seconds(time.tv_sec) + std::chrono::microseconds(time.tv_usec);
}

} // namespace

ProgramResult runProgram(const ProgramCall &call)
{
    Streams streams;
    std::signal(SIGPIPE, SIG_IGN);
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("fork: " + std::string(std::strerror(errno)));
    if (child == 0) {
        std::signal(SIGPIPE, SIG_DFL);
        becomeProgram(call, streams);
    }
    Pipe::closeEnd(streams.input.readEnd);
    Pipe::closeEnd(streams.output.writeEnd);
    Pipe::closeEnd(streams.errors.writeEnd);
    if (call.afterStart)
        call.afterStart(child);

    ProgramResult result = {{}, {}, -1, 0, 0, 0, {}};
    const bool inTime = talk(call, streams, result);
    if (!inTime)
        kill(-child, SIGKILL);
    int status = 0;
    rusage usage = {};
    wait4(child, &status, 0, &usage);
    if (!inTime)
        throw std::runtime_error("time limit exceeded: " + call.arguments.front());
    if (WIFEXITED(status))
        result.exitStatus = WEXITSTATUS(status);
    if (WIFSIGNALED(status))
        result.signal = WTERMSIG(status);
    result.peakMemory = usage.ru_maxrss;
    result.pageFaults = usage.ru_minflt;
    result.processorTime = durationOf(usage.ru_utime) + durationOf(usage.ru_stime);
    return result;
}

std::string runOrThrow(const std::vector<std::string> &arguments)
{
    const ProgramResult result = runProgram({.arguments = arguments});
    if (result.exitStatus != 0)
        throw std::runtime_error(arguments.front() + ": " + result.output + result.errors);
    return result.output;
}

} // namespace Support
