// What a job costs from end to end, beside the least that it could cost (floor.cpp), beside cat(1)
// and beside filters that do related work. Documentation/performance.md says how to read it.

#include "Measuring.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t kMegabyte = 1'000'000;
constexpr std::size_t kGigabyte = 1'000'000'000;

/// A document in PostScript with page comments, of about so many bytes: pages of 4,000 lines.
Input document(std::size_t bytes)
{
    return Input([bytes](FILE *file) {
        static constexpr int kLinesOfPage = 4000;
        std::fputs("%!PS-Adobe-3.0\n%%Pages: (atend)\n%%EndComments\n%%EndProlog\n", file);
        int page = 0;
        while (static_cast<std::size_t>(std::ftell(file)) < bytes) {
            ++page;
            std::fprintf(file, "%%%%Page: %d %d\n", page, page);
            for (int line = 0; line < kLinesOfPage; ++line)
                std::fputs("100 200 moveto (a line of a page description, as it is) show\n", file);
            std::fputs("showpage\n", file);
        }
        std::fprintf(file, "%%%%Trailer\n%%%%Pages: %d\n%%%%EOF\n", page);
    });
}

/// A filter of CUPS with a job's arguments; its job comes on standard input.
Candidate filter(const std::string &name, const std::string &path)
{
    return program(name, {path, "1", "anna", "report.ps", "1", ""}, {"PPD=" KL_SAMPLE_PPD});
}

/// The same, with the job's file as an argument.
Candidate filterOfFile(const std::string &name, const std::string &path, const Input &input)
{
    return program(name, {path, "1", "anna", "report.ps", "1", "", input.path()},
                   {"PPD=" KL_SAMPLE_PPD});
}

void measureStartUp(int rounds)
{
    const Input onePage = document(1);
    compare("start-up: a job of one page, from a file", onePage,
            {filterOfFile("floor", KL_FLOOR, onePage),
             filterOfFile("`jobfilter`", KL_JOBFILTER, onePage)},
            rounds);
    compare("start-up: a job of one page, from a pipe", onePage,
            {filter("floor", KL_FLOOR), filter("`jobfilter`", KL_JOBFILTER)}, rounds, Feed::pipe);
}

void measureThroughput(const std::string &size, const Input &input, int rounds)
{
    compare(size + " from a file into a pipe", input,
            {filterOfFile("floor", KL_FLOOR, input), program("`cat`", {"cat", input.path()}),
             filterOfFile("`jobfilter`", KL_JOBFILTER, input),
             filterOfFile("`pstops` of CUPS", KL_FILTERS "/pstops", input),
             filterOfFile("`hpps`", KL_FILTERS "/hpps", input)},
            rounds);
    compare(size + " from a pipe into a pipe", input,
            {filter("floor", KL_FLOOR), program("`cat`", {"cat"}),
             filter("`jobfilter`", KL_JOBFILTER), filter("`pstops` of CUPS", KL_FILTERS "/pstops"),
             filter("`hpps`", KL_FILTERS "/hpps")},
            rounds, Feed::pipe);
}

/// The companion in a queue that asks for page counts, and in one that does not.
std::vector<Candidate> companions()
{
    Candidate counting = filter("`jobfilter-nojcl`, counting pages", KL_NOJCL);
    Candidate silent = program("`jobfilter-nojcl`", {KL_NOJCL, "1", "anna", "report.ps", "1", ""},
                               {"PPD=/dev/null"});
    return {std::move(silent), std::move(counting)};
}

void measureCompanion(const std::string &size, const Input &input, int rounds)
{
    std::vector<Candidate> candidates = companions();
    candidates.insert(candidates.begin(), program("`cat`", {"cat"}));
    compare(size + " through the companion", input, std::move(candidates), rounds, Feed::pipe);
}

void measureMemory(int rounds)
{
    static constexpr std::array<std::size_t, 5> kSizes = {1000, kMegabyte, 100 * kMegabyte,
                                                          kGigabyte, 4 * kGigabyte};
    std::printf("\n| peak memory, MiB | from a file | from a pipe |\n|---|---|---|\n");
    for (const std::size_t size : kSizes) {
        const Input input(size);
        Candidate fromFile = filterOfFile("`jobfilter`", KL_JOBFILTER, input);
        Candidate fromPipe = filter("`jobfilter`", KL_JOBFILTER);
        for (int round = 0; round < (size < kGigabyte ? rounds : 1); ++round) {
            fromFile.samples.push_back(measure(fromFile.name, fromFile.body, input));
            fromPipe.samples.push_back(measure(fromPipe.name, fromPipe.body, input, Feed::pipe));
        }
        std::printf("| %zu kB | %.2f | %.2f |\n", size / 1000,
                    static_cast<double>(fromFile.peakMemory()) / 1024,
                    static_cast<double>(fromPipe.peakMemory()) / 1024);
        std::fflush(stdout);
    }
}

void measureJobsAtOnce(int jobs)
{
    const Input onePage = document(1);
    const Candidate reference = filterOfFile("floor", KL_FLOOR, onePage);
    const Candidate candidate = filterOfFile("`jobfilter`", KL_JOBFILTER, onePage);
    std::printf("\n| jobs at once | floor, jobs/s | `jobfilter`, jobs/s | ratio of times |\n"
                "|---|---|---|---|\n");
    for (const int atOnce : {1, 2, 8, 64}) {
        double floorSeconds = 0;
        double seconds = 0;
        for (int round = 0; round < 4; ++round) { // in turns, as everywhere
            floorSeconds += measureMany(reference.name, reference.body, jobs / 4, atOnce);
            seconds += measureMany(candidate.name, candidate.body, jobs / 4, atOnce);
        }
        std::printf("| %d | %.0f | %.0f | %.2f |\n", atOnce, jobs / floorSeconds, jobs / seconds,
                    seconds / floorSeconds);
        std::fflush(stdout);
    }
}

void run(int rounds)
{
    measureStartUp(20 * rounds);
    measureJobsAtOnce(100 * rounds);
    measureCompanion("a job of one page", document(1), 20 * rounds);
    measureCompanion("200 MB", document(200 * kMegabyte), rounds);
    {
        const Input input = document(42 * kMegabyte);
        measureThroughput("42 MB", input, rounds);
    }
    {
        const Input input = document(kGigabyte);
        measureThroughput("1 GB", input, rounds > 2 ? 3 : 1);
    }
    measureMemory(3);
}

} // namespace

/// JobFilterBenchmark [ rounds ]
int main(int argc, char *argv[])
{
    try {
        run(argc > 1 ? std::atoi(argv[1]) : 9);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
