// What the print job stream costs beside cat(1): processor time, as a ratio, and memory.
//
// Every measurement is a process of its own that reads a file and writes into a pipe. Rounds
// alternate between the candidates and the median counts, so that a busy machine disturbs all of
// them alike.

#include "KLPJLHandler.h"
#include "KLPrintJob.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::size_t kMegabyte = 1'000'000;

using Job = std::shared_ptr<KLPrintJob>;

/// Something that copies standard input to standard output.
struct Candidate {
    std::string name;
    std::function<void()> copy;
    std::vector<double> seconds = {}; ///< processor time of each round
    long peakMemory = 0;              ///< KiB
};

[[noreturn]] void fail(const std::string &what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

/// An unnamed file, read from its start.
class Input {
public:
    explicit Input(const std::function<void(FILE *)> &fill) : _file(std::tmpfile())
    {
        if (_file == nullptr)
            fail("temporary file");
        fill(_file);
        if (std::fflush(_file) != 0)
            fail("temporary file");
    }
    ~Input() { std::fclose(_file); }
    Input(const Input &) = delete;
    Input &operator=(const Input &) = delete;

    int descriptor() const
    {
        lseek(fileno(_file), 0, SEEK_SET);
        return fileno(_file);
    }

private:
    FILE *_file;
};

[[noreturn]] void runChild(const std::function<void()> &copy, int input, int output)
{
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    close(input);
    close(output);
    copy();
    _exit(std::fflush(stdout) == 0 ? EXIT_SUCCESS : EXIT_FAILURE);
}

void measure(Candidate &candidate, const Input &input)
{
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        fail("pipe");
    const int descriptor = input.descriptor();
    std::fflush(stdout); // or the child would print it again
    const pid_t child = fork();
    if (child < 0)
        fail("fork");
    if (child == 0)
        runChild(candidate.copy, descriptor, ends[1]);
    close(ends[1]);
    static std::array<char, 1 << 16> sink;
    while (read(ends[0], sink.data(), sink.size()) > 0) {
    }
    close(ends[0]);

    int status = 0;
    struct rusage usage = {};
    if (wait4(child, &status, 0, &usage) != child || status != 0)
        throw std::runtime_error(candidate.name + " has failed");
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    candidate.seconds.push_back(seconds(usage.ru_utime) + seconds(usage.ru_stime));
    candidate.peakMemory = std::max(candidate.peakMemory, usage.ru_maxrss);
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Measures all candidates and prints a table; the first is what the others are compared with.
void compare(const char *title, const Input &input, std::vector<Candidate> candidates, int rounds)
{
    Candidate warmUp = candidates.front(); // brings the file into memory
    measure(warmUp, input);
    for (int round = 0; round < rounds; ++round) {
        for (Candidate &candidate : candidates)
            measure(candidate, input);
    }
    std::printf("\n%-50s %9s %9s %9s\n", title, "CPU s", "ratio", "peak MiB");
    const double reference = median(candidates.front().seconds);
    for (const Candidate &candidate : candidates) {
        const double seconds = median(candidate.seconds);
        std::printf("%-50s %9.3f %9.2f %9.1f\n", candidate.name.c_str(), seconds,
                    seconds / reference, static_cast<double>(candidate.peakMemory) / 1024);
    }
}

// The candidates.

Candidate cat()
{
    return {"cat", [] { execlp("cat", "cat", nullptr); }};
}

/// What reading and writing byte by byte through the streams' buffers takes at the least.
Candidate bytewise()
{
    return {"getc_unlocked, putc_unlocked", [] {
                for (int c = getc_unlocked(stdin); c != EOF; c = getc_unlocked(stdin))
                    putc_unlocked(c, stdout);
            }};
}

Candidate with(const char *name, const std::function<void(const Job &)> &work)
{
    return {name, [work] { work(std::make_shared<KLPrintJob>(stdin, stdout)); }};
}

void processFourPrefixes(const Job &job)
{
    for (const auto *prefix : {"%%Page", "%%Trailer", "@PJL SET", "%%EndSetup"})
        job->whenLineStartsWithStringDo(prefix, [job] { job->insertDataBefore("%%Seen\n"); });
    job->process();
}

std::vector<Candidate> lineCandidates()
{
    return {cat(),
            bytewise(),
            with("passDataThroughUntilEndOfFile",
                 [](const Job &job) { job->passDataThroughUntilEndOfFile(); }),
            with("passDataThroughUntilEndOfLine",
                 [](const Job &job) {
                     while (job->passDataThroughUntilEndOfLine()) {
                     }
                 }),
            with("passDataThroughUntilMarker, without the marker",
                 [](const Job &job) { job->passDataThroughUntilMarker("\x1b%-12345X"); }),
            with("readLine, writeData",
                 [](const Job &job) {
                     while (const auto line = job->readLine())
                         job->writeData(*line);
                 }),
            with("process, four prefixes", processFourPrefixes)};
}

/// Lines of 60 bytes, each tenth one beginning with a registered prefix.
void fillWithLines(FILE *file, std::size_t megabytes)
{
    const std::string other =
        "100 200 moveto (a line of a page description) show" + std::string(9, ' ') + "\n";
    const std::string matching = "%%Page: 1 1" + std::string(48, ' ') + "\n";
    for (std::size_t line = 0; line < megabytes * kMegabyte / 60; ++line)
        std::fputs((line % 10 == 0 ? matching : other).c_str(), file);
}

void fillWithHeader(FILE *file)
{
    std::fputs("\x1b%-12345X", file);
    for (int line = 0; line < 1'000'000; ++line)
        std::fputs("@PJL COMMENT DSSC PRINT SETTING=VALUE\r\n", file);
}

void walkHeader(const Job &job)
{
    KLPJLHandler::enumeratePJLFromPrintJobUsingBlock(
        job, [](KLPJLHandler &handler, const std::string &) {
            if (const auto command = handler.DSSCCommand(); command->starts_with("SETTING="))
                handler.addDSSCLineAfterCurrentLineWithFormat("OTHER=%@", "VALUE");
        });
}

void run(std::size_t megabytes, int rounds)
{
    const Input lines([megabytes](FILE *file) { fillWithLines(file, megabytes); });
    compare((std::to_string(megabytes) + " MB in lines of 60 bytes").c_str(), lines,
            lineCandidates(), rounds);

    const Input header(fillWithHeader);
    compare("header of a million lines", header,
            {cat(), with("walk, one DSSC line added to each", walkHeader)}, rounds);

    const Input longLine([](FILE *file) {
        if (ftruncate(fileno(file), 1000 * static_cast<off_t>(kMegabyte)) != 0)
            fail("temporary file");
    });
    compare("one line of 1 GB", longLine,
            {cat(), with("passDataThroughUntilEndOfLine",
                         [](const Job &job) { job->passDataThroughUntilEndOfLine(); })},
            1);
}

} // namespace

/// KLPrintJobBenchmark [ megabytes [ rounds ] ]
int main(int argc, char *argv[])
{
    try {
        run(argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 100, argc > 2 ? std::atoi(argv[2]) : 9);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
