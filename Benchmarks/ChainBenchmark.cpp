// What a user waits for: a document of 200 pages through a real scheduler's queues, from the start
// of lp(1) until the printer has the last byte, with our programs and without them.

#include "Loopback.h"
#include "Measuring.h"
#include "PrivateScheduler.h"
#include "Program.h"
#include "SampleQueues.h"
#include "TemporaryFolder.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Support::lpOption;
using Support::PrivateScheduler;

/// What a printer got of a job, and when.
struct Delivery {
    Clock::time_point end; ///< of the last byte
    std::size_t size = 0;  ///< bytes
};

/// A network printer that reads as fast as it can.
class Printer {
public:
    Printer() = default;
    ~Printer() { close(_listener.socket); }
    Printer(const Printer &) = delete;
    Printer &operator=(const Printer &) = delete;

    std::string deviceURI() const { return "socket://127.0.0.1:" + std::to_string(_listener.port); }

    /// Waits for a job, and for its end.
    Delivery receive() const
    {
        waitFor(_listener.socket);
        const int connection = accept4(_listener.socket, nullptr, nullptr, SOCK_CLOEXEC);
        Delivery delivery;
        std::array<char, 1 << 16> block = {};
        while (true) {
            waitFor(connection);
            const ssize_t size = read(connection, block.data(), block.size());
            if (size <= 0)
                break;
            delivery.end = Clock::now();
            delivery.size += static_cast<std::size_t>(size);
        }
        close(connection);
        return delivery;
    }

private:
    static void waitFor(int socket)
    {
        static constexpr int kPatience = 120'000; // milliseconds
        pollfd event = {socket, POLLIN, 0};
        if (poll(&event, 1, kPatience) <= 0)
            throw std::runtime_error("no job comes");
    }

    Support::LoopbackListener _listener = Support::listenOnLoopback();
};

/// A way through the scheduler.
struct Route {
    std::string queue;
    std::vector<std::string> options;
    Candidate times; ///< elapsed alone
    std::size_t size = 0;
};

Delivery print(const PrivateScheduler &scheduler, const Printer &printer, const Route &route)
{
    std::vector<std::string> arguments = {"-d", route.queue};
    for (const std::string &option : route.options)
        arguments.insert(arguments.end(), {"-o", option});
    arguments.emplace_back(KL_DOCUMENT);
    const int job = scheduler.submit(arguments);
    const Delivery delivery = printer.receive();
    if (scheduler.waitForJob(job).state != "completed")
        throw std::runtime_error(route.queue + ":\n" + scheduler.log(job));
    return delivery;
}

void measure(const PrivateScheduler &scheduler, const Printer &printer, std::vector<Route> &routes,
             int rounds)
{
    for (int round = -1; round < rounds; ++round) { // the first outside the count
        for (Route &route : routes) {
            const auto begin = Clock::now();
            const Delivery delivery = print(scheduler, printer, route);
            const std::chrono::duration<double> elapsed = delivery.end - begin;
            route.size = delivery.size;
            if (round >= 0)
                route.times.samples.push_back({.elapsedSeconds = elapsed.count()});
        }
    }
}

void printTable(const std::string &title, const std::vector<Route> &routes)
{
    std::printf("\n| %s | elapsed ms | ratio | MB to the printer |\n|---|---|---|---|\n",
                title.c_str());
    const double reference = routes.front().times.median(&Sample::elapsedSeconds);
    for (const Route &route : routes) {
        const double elapsed = route.times.median(&Sample::elapsedSeconds);
        std::printf("| %s | %.0f | %.2f | %.2f |\n", route.times.name.c_str(), elapsed * 1e3,
                    elapsed / reference, static_cast<double>(route.size) / 1e6);
    }
    std::fflush(stdout);
}

/// A queue of the sample driver's model with our programs, and one without them.
void compareQueues(const PrivateScheduler &scheduler, const Printer &printer,
                   const std::string &model, const char *ppdPath, const std::string &type,
                   int rounds)
{
    const Support::TemporaryFolder folder;
    const auto ppds = samplePPDs(ppdPath, type, folder);
    scheduler.addQueue(model + "-plain", ppds.withoutOurPrograms, printer.deviceURI());
    scheduler.addQueue(model, ppds.asItIs, printer.deviceURI());
    const std::vector<std::string> watermark = {
        lpOption("com.kalmira.pde.watermark.text", "DRAFT"),
        lpOption("com.kalmira.pde.watermark.font", "Helvetica-Bold")};
    std::vector<Route> routes = {{model + "-plain", {}, {"without our programs", nullptr}},
                                 {model, {}, {"with them", nullptr}},
                                 {model, watermark, {"with them and a watermark", nullptr}}};
    measure(scheduler, printer, routes, rounds);
    printTable("200 pages of PDF, `lp` to last byte, model for " + model, routes);
}

} // namespace

/// ChainBenchmark [ rounds ]
int main(int argc, char *argv[])
{
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 9;
    try {
        const PrivateScheduler scheduler({KL_JOBFILTER, KL_NOJCL, KL_CHAIN});
        const Printer printer;
        compareQueues(scheduler, printer, "PDF", KL_SAMPLE_PDF_PPD, "application/vnd.cups-pdf",
                      rounds);
        compareQueues(scheduler, printer, "PostScript", KL_SAMPLE_PPD,
                      "application/vnd.cups-postscript", rounds);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
