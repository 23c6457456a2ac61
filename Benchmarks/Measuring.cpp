#include "Measuring.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void fail(const char *what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

struct Pipe {
    int readEnd;
    int writeEnd;
};

Pipe makePipe()
{
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        fail("pipe");
    return {ends[0], ends[1]};
}

int nowhere()
{
    static const int descriptor = open("/dev/null", O_RDWR | O_CLOEXEC);
    return descriptor;
}

/// Forks; the child takes the descriptors as its standard ones, does the body and ends.
pid_t start(const std::function<void()> &body, int input, int output)
{
    std::fflush(stdout); // or the child would print it again
    const pid_t child = fork();
    if (child < 0)
        fail("fork");
    if (child > 0)
        return child;
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    if (std::getenv("BENCHMARK_ERRORS") == nullptr)
        dup2(nowhere(), STDERR_FILENO);
    body();
    _exit(std::fflush(stdout) == 0 ? EXIT_SUCCESS : EXIT_FAILURE);
}

/// Copies standard input to standard output, the pipe, until its reader has had enough.
void feedFrom(const Pipe &pipe)
{
    close(pipe.readEnd);
    close(pipe.writeEnd);
    static std::array<char, 1 << 17> block;
    for (ssize_t length = 0; (length = read(STDIN_FILENO, block.data(), block.size())) > 0;) {
        for (ssize_t done = 0; done < length;) {
            const ssize_t part =
                write(STDOUT_FILENO, block.data() + done, static_cast<std::size_t>(length - done));
            if (part < 0)
                return;
            done += part;
        }
    }
}

void drain(int descriptor)
{
    static std::array<char, 1 << 17> sink;
    while (read(descriptor, sink.data(), sink.size()) > 0) {
    }
    close(descriptor);
}

double seconds(const timeval &time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void requireSuccess(const std::string &name, int status)
{
    if (status != 0)
        throw std::runtime_error(name + " has failed (BENCHMARK_ERRORS=1 shows what it says)");
}

std::vector<char *> pointers(std::vector<std::string> &texts)
{
    std::vector<char *> result;
    for (std::string &text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

} // namespace

Input::Input(const std::function<void(FILE *)> &fill) : _file(std::tmpfile())
{
    if (_file == nullptr)
        fail("temporary file");
    fill(_file);
    if (std::fflush(_file) != 0)
        fail("temporary file");
}

Input::Input(std::size_t zeros)
    : Input([zeros](FILE *file) {
          if (ftruncate(fileno(file), static_cast<off_t>(zeros)) != 0)
              fail("temporary file");
      })
{
}

Input::~Input()
{
    static_cast<void>(std::fclose(_file));
}

int Input::descriptor() const
{
    lseek(fileno(_file), 0, SEEK_SET);
    return fileno(_file);
}

std::string Input::path() const
{
    return "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(fileno(_file));
}

Sample measure(const std::string &name, const std::function<void()> &body, const Input &input,
               Feed feed)
{
    int source = input.descriptor();
    pid_t feeder = -1;
    if (feed == Feed::pipe) {
        const Pipe in = makePipe();
        feeder = start([in] { feedFrom(in); }, source, in.writeEnd);
        close(in.writeEnd);
        source = in.readEnd;
    }
    const Pipe out = makePipe(); // behind the feeder's start, which must not hold it open

    const auto begin = Clock::now();
    const pid_t child = start(body, source, out.writeEnd);
    close(out.writeEnd);
    if (feeder > 0)
        close(source);
    drain(out.readEnd);
    int status = 0;
    struct rusage usage = {};
    if (wait4(child, &status, 0, &usage) != child)
        fail("wait4");
    const double elapsed = secondsSince(begin);
    if (feeder > 0)
        waitpid(feeder, nullptr, 0);
    requireSuccess(name, status);
    return {seconds(usage.ru_utime) + seconds(usage.ru_stime), elapsed, usage.ru_maxrss};
}

double measureMany(const std::string &name, const std::function<void()> &body, int count,
                   int atOnce)
{
    const auto begin = Clock::now();
    int started = 0;
    for (int ended = 0; ended < count; ++ended) {
        while (started < count && started - ended < atOnce) {
            start(body, nowhere(), nowhere());
            ++started;
        }
        int status = 0;
        if (wait(&status) < 0)
            fail("wait");
        requireSuccess(name, status);
    }
    return secondsSince(begin);
}

double Candidate::median(double Sample::*value) const
{
    std::vector<double> values;
    for (const Sample &sample : samples)
        values.push_back(sample.*value);
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

long Candidate::peakMemory() const
{
    long peak = 0;
    for (const Sample &sample : samples)
        peak = std::max(peak, sample.peakMemory);
    return peak;
}

Candidate program(std::string name, std::vector<std::string> arguments,
                  std::vector<std::string> environment)
{
    return {std::move(name), [arguments, environment]() mutable {
                for (std::string &variable : environment)
                    putenv(variable.data());
                execvp(arguments.front().c_str(), pointers(arguments).data());
                _exit(EXIT_FAILURE);
            }};
}

void compare(const std::string &title, const Input &input, std::vector<Candidate> candidates,
             int rounds, Feed feed)
{
    // Once outside the count: it brings the file and the programs into memory.
    for (const Candidate &candidate : candidates)
        measure(candidate.name, candidate.body, input, feed);
    for (int round = 0; round < rounds; ++round) {
        for (Candidate &candidate : candidates)
            candidate.samples.push_back(measure(candidate.name, candidate.body, input, feed));
    }

    std::printf("\n| %s | CPU ms | ratio | elapsed ms | ratio | peak MiB |\n", title.c_str());
    std::printf("|---|---|---|---|---|---|\n");
    const Candidate &reference = candidates.front();
    for (const Candidate &candidate : candidates) {
        const double processor = candidate.median(&Sample::processorSeconds);
        const double elapsed = candidate.median(&Sample::elapsedSeconds);
        std::printf("| %s | %.1f | %.2f | %.1f | %.2f | %.1f |\n", candidate.name.c_str(),
                    processor * 1e3, processor / reference.median(&Sample::processorSeconds),
                    elapsed * 1e3, elapsed / reference.median(&Sample::elapsedSeconds),
                    static_cast<double>(candidate.peakMemory()) / 1024);
    }
    std::fflush(stdout);
}
