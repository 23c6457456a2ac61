// What one server carries: jobs a second through a real scheduler, with our programs and without
// them. The jobs wait in their queues before the clock starts, so that nobody has to be as fast in
// sending them.

#include "Measuring.h"
#include "PrivateScheduler.h"
#include "RecordingPrinter.h"
#include "SampleQueues.h"
#include "TemporaryFolder.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Support::PrivateScheduler;
using Support::RecordingPrinter;

constexpr int kQueues = 4;

constexpr char kSmallDocument[] = "%!PS-Adobe-3.0\n%%Pages: 1\n%%EndComments\n%%Page: 1 1\n"
                                  "/Helvetica 12 selectfont 72 720 moveto (One page) show\n"
                                  "showpage\n%%EOF\n";

/// Queues of one kind. The samples are of one job.
struct Queues {
    std::vector<std::string> names;
    Candidate times;
};

/// What is printed on so many queues at once.
struct Load {
    std::string title;
    std::string document;
    int jobs;
    std::size_t queues;
};

class Server {
public:
    Server()
    {
        std::filesystem::permissions(_folder.path(), std::filesystem::perms(0755));
        const auto ppds = samplePPDs(KL_SAMPLE_PPD, "application/vnd.cups-postscript", _folder);
        for (int number = 1; number <= kQueues; ++number) {
            addQueue(_plain, "plain-" + std::to_string(number), ppds.withoutOurPrograms);
            addQueue(_ours, "ours-" + std::to_string(number), ppds.asItIs);
        }
    }

    std::string smallDocument() const { return _folder.write("small.ps", kSmallDocument); }

    /// Prints the load on both kinds of queues in turns.
    void measure(const Load &load, int rounds)
    {
        for (int round = -1; round < rounds; ++round) // the first outside the count
            for (Queues *queues : {&_plain, &_ours}) {
                const Sample sample = print(load, *queues);
                if (round >= 0)
                    queues->times.samples.push_back(sample);
            }
        printTable(load);
    }

private:
    void addQueue(Queues &queues, const std::string &name, const std::string &ppd)
    {
        _scheduler.addQueue(name, ppd, _printer.deviceURI());
        queues.names.push_back(name);
    }

    void forAll(const std::string &command, const Queues &queues) const
    {
        std::vector<std::string> call = {command};
        call.insert(call.end(), queues.names.begin(), queues.names.end());
        _scheduler.run(call);
    }

    /// @return the jobs' numbers
    std::vector<int> submit(const Load &load, const Queues &queues) const
    {
        std::vector<int> jobs;
        for (int job = 0; job < load.jobs; ++job) {
            const std::string &queue = queues.names[static_cast<std::size_t>(job) % load.queues];
            jobs.push_back(_scheduler.submit({"-d", queue, load.document}));
        }
        return jobs;
    }

    Sample print(const Load &load, const Queues &queues)
    {
        forAll("cupsdisable", queues);
        const std::vector<int> jobs = submit(load, queues);
        const auto processorTime = _scheduler.processorTime();
        const auto begin = Clock::now();
        forAll("cupsenable", queues);
        for (const int job : jobs)
            if (_scheduler.waitForJob(job).state != "completed")
                throw std::runtime_error(_scheduler.log(job));
        const std::chrono::duration<double> elapsed = Clock::now() - begin;
        _printer.forgetJobs();
        return {.processorSeconds =
                    (_scheduler.processorTime() - processorTime).count() / load.jobs,
                .elapsedSeconds = elapsed.count() / load.jobs};
    }

    void printTable(const Load &load)
    {
        std::printf("\n| %s | jobs/s | elapsed ms a job | more | CPU ms a job | more |\n"
                    "|---|---|---|---|---|---|\n",
                    load.title.c_str());
        for (const Queues *queues : {&_plain, &_ours}) {
            const double elapsed = queues->times.median(&Sample::elapsedSeconds);
            const double processor = queues->times.median(&Sample::processorSeconds);
            std::printf("| %s | %.1f | %.1f | %.1f | %.1f | %.1f |\n", queues->times.name.c_str(),
                        1 / elapsed, elapsed * 1e3,
                        (elapsed - _plain.times.median(&Sample::elapsedSeconds)) * 1e3,
                        processor * 1e3,
                        (processor - _plain.times.median(&Sample::processorSeconds)) * 1e3);
        }
        std::fflush(stdout);
        for (Queues *queues : {&_plain, &_ours})
            queues->times.samples.clear();
    }

    const Support::TemporaryFolder _folder;
    RecordingPrinter _printer;
    const PrivateScheduler _scheduler{{KL_CHAIN}};
    Queues _plain = {{}, {"without our programs", nullptr}};
    Queues _ours = {{}, {"with them", nullptr}};
};

} // namespace

/// SchedulerBenchmark [ rounds ]
int main(int argc, char *argv[])
{
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 9;
    try {
        Server server;
        server.measure({"one page of PostScript, one queue", server.smallDocument(), 40, 1},
                       rounds);
        server.measure({"one page of PostScript, four queues", server.smallDocument(), 40, kQueues},
                       rounds);
        server.measure({"200 pages of PDF, one queue", KL_DOCUMENT, 4, 1}, rounds);
        server.measure({"200 pages of PDF, four queues", KL_DOCUMENT, 4, kQueues}, rounds);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
