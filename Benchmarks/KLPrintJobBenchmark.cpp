// What the print job stream costs beside cat(1): time, as a ratio, and memory. Every measurement is
// a process of its own that reads a file and writes into a pipe.

#include "KLPJLHandler.h"
#include "KLPrintJob.h"
#include "Measuring.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kMegabyte = 1'000'000;

using Job = std::shared_ptr<KLPrintJob>;

// The candidates.

Candidate cat()
{
    return program("`cat`", {"cat"});
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
    compare(std::to_string(megabytes) + " MB in lines of 60 bytes", lines, lineCandidates(),
            rounds);

    const Input header(fillWithHeader);
    compare("header of a million lines", header,
            {cat(), with("walk, one DSSC line added to each", walkHeader)}, rounds);

    const Input longLine(1000 * kMegabyte);
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
