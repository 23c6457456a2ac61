#include "PJLChecker.h"
#include "PrivateScheduler.h"
#include "RecordingPrinter.h"
#include "TemporaryFolder.h"
#include "Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <regex>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace fs = std::filesystem;

using Support::PrivateScheduler;
using Support::readFile;
using Support::RecordingPrinter;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::SizeIs;

namespace {

/// How many queues hand jobs to one server at the same time.
constexpr std::size_t kQueuesPerServer = 6;
/// A job is on the disk milliseconds after it was taken, not half a minute.
constexpr char kRecordsAtOnce[] = "DirtyCleanInterval 0\n";

/// The sample driver without questions to the printer's SNMP agent, of which ours has none.
std::string serversPPD()
{
    return readFile(KL_SAMPLE_PPD) + "*cupsSNMPSupplies: False\n";
}

/// The same for the queues in front, which hand documents on as they are. See
/// Documentation/servers.md.
std::string frontPPD()
{
    return std::regex_replace(serversPPD(), std::regex("\\*cupsFilter: .*"),
                              "*cupsFilter: \"application/postscript 0 -\"\n"
                              "*cupsFilter: \"application/pdf 0 -\"");
}

/// What is to be seen of one job of many, at its beginning and in its pages.
struct NumberedJob {
    int number;

    std::string code() const { return std::to_string(1000 + number); }
    std::string user() const { return "user" + std::to_string(number); }
    std::string title() const { return "Job " + std::to_string(number); }
    bool isStapled() const { return number % 2 == 0; }

    std::string document() const
    {
        return "%!PS-Adobe-3.0\n%%Pages: 1\n%%EndComments\n%%Page: 1 1\n72 720 moveto "
               "/Helvetica 12 selectfont (Page of job " +
               std::to_string(number) + ".) show\nshowpage\n%%EOF\n";
    }

    std::vector<std::string> options() const
    {
        return {"-U", user(),
                "-t", title(),
                "-o", "KLDepartmentCode=Custom." + code(),
                "-o", isStapled() ? "Staple=UpperLeft" : "TonerSave=True"};
    }

    /// Lines of its header, which no other job's has all of.
    std::vector<std::string> headerLines() const
    {
        const std::string dssc = "@PJL COMMENT DSSC PRINT ";
        return {"@PJL JOB NAME = \"" + title() + "\"",
                dssc + "USERLOGIN=" + user() + "\r\n",
                dssc + "ACCESSCODE=" + code() + "\r\n",
                dssc + "COLORMODE=COLOR\r\n",
                dssc + "STAPLE=" + (isStapled() ? "UPPERLEFT" : "OFF"),
                dssc + "TONERSAVE=" + (isStapled() ? "OFF" : "ON")};
    }
};

/// The job whose page this is; 0 for the page of none.
int numberInPages(const std::string &pages)
{
    std::smatch match;
    return std::regex_search(pages, match, std::regex(R"(\(Page of job (\d+)\.\))"))
               ? std::stoi(match[1])
               : 0;
}

/// A print server and the printer that its queue "office" prints on.
struct Server {
    /// @param ppd  of its queue
    explicit Server(const std::string &ppd)
    {
        scheduler.addQueue("office", ppd, printer.deviceURI(),
                           {"-o", "printer-error-policy=retry-job"});
    }

    RecordingPrinter printer;
    PrivateScheduler scheduler{{KL_CHAIN}, 1, kRecordsAtOnce};
};

/// Two servers with the same driver behind a class "office" of a third, on which people print.
class PrintHouse {
public:
    PrintHouse()
    {
        fs::permissions(_folder.path(), fs::perms(0755));
        const std::string ppd = _folder.write("server.ppd", serversPPD());
        _front = std::make_unique<PrivateScheduler>(std::vector<std::string>{KL_CHAIN}, 1,
                                                    kRecordsAtOnce);
        for (const char *name : {"east", "west"}) {
            _servers.push_back(std::make_unique<Server>(ppd));
            addToClass(_servers.back()->scheduler, queuesOf(name));
        }
        _front->run({"cupsaccept", "office"});
        _front->run({"cupsenable", "office"});
    }

    const PrivateScheduler &front() const { return *_front; }
    Server &east() { return *_servers[0]; }
    const Server &west() const { return *_servers[1]; }

    /// The front's queues to a server.
    static std::vector<std::string> queuesOf(const std::string &server)
    {
        std::vector<std::string> names;
        for (std::size_t lane = 1; lane <= kQueuesPerServer; ++lane)
            names.push_back("office-" + server + "-" + std::to_string(lane));
        return names;
    }

    void submit(const NumberedJob &job)
    {
        std::vector<std::string> arguments = job.options();
        arguments.insert(arguments.end(), {"-d", "office"});
        arguments.push_back(_folder.write("job.ps", job.document()));
        _numbers[_front->submit(arguments)] = job.number;
    }

    /// Sends so many jobs, numbered from 1.
    /// @param whenPrinted  called once, as soon as at least `few` of them are printed
    void submit(int jobs, std::size_t few, const std::function<void()> &whenPrinted)
    {
        bool isCalled = false;
        const auto lacking = [&] { return few - std::min(few, printedJobs().size()); };
        for (int number = 1; number <= jobs; ++number) {
            submit({number});
            if (!isCalled && lacking() == 0) {
                whenPrinted();
                isCalled = true;
            }
        }
        if (isCalled)
            return;
        if (!Support::comeOneByOne(lacking))
            throw std::runtime_error("too few jobs are printed:\n" + _front->log());
        whenPrinted();
    }

    /// Our numbers of the jobs that the front takes for unfinished.
    std::set<int> unfinishedJobs() const
    {
        std::set<int> numbers;
        for (const int job : _front->unfinishedJobs("office"))
            numbers.insert(_numbers.at(job));
        return numbers;
    }

    /// Waits until no more than so many jobs are unfinished, however long they all take.
    void waitForJobs(std::size_t left) const
    {
        const auto tooMany = [&] {
            return std::max(left, _front->unfinishedJobs("office").size()) - left;
        };
        if (!Support::comeOneByOne(tooMany))
            throw std::runtime_error("jobs stay unfinished:\n" + _front->log());
    }

    /// As its administrator does when he knows that it will not come back.
    void giveUpEast() const
    {
        for (const std::string &queue : queuesOf("east"))
            _front->run({"cupsdisable", queue});
    }

    /// What both printers got.
    std::vector<std::string> printedJobs() const
    {
        std::vector<std::string> all;
        for (const auto &server : _servers)
            for (std::string &job : server->printer.jobs())
                all.push_back(std::move(job));
        return all;
    }

private:
    void addToClass(const PrivateScheduler &server, const std::vector<std::string> &queues) const
    {
        const std::string ppd = _folder.write("front.ppd", frontPPD());
        for (const std::string &queue : queues) {
            _front->addQueue(queue, ppd, server.queueURI("office"),
                             {"-o", "printer-error-policy=retry-job"});
            _front->run({"lpadmin", "-p", queue, "-c", "office"});
        }
    }

    Support::TemporaryFolder _folder;
    std::vector<std::unique_ptr<Server>> _servers;
    std::unique_ptr<PrivateScheduler> _front;
    std::map<int, int> _numbers; ///< the front's number of each job to ours
};

/// What came out of both printers.
class Printed {
public:
    explicit Printed(const std::vector<std::string> &jobs)
    {
        for (const std::string &job : jobs)
            add(job);
    }

    std::set<int> twice() const
    {
        std::set<int> numbers;
        for (const auto &[number, count] : times)
            if (count > 1)
                numbers.insert(number);
        return numbers;
    }

    std::map<int, int> times;              ///< by the job's number; 0 for pages of no job
    std::vector<std::string> wrongHeaders; ///< that lack lines of the job whose pages follow
    std::vector<std::string> cutJobs;

private:
    void add(const std::string &job)
    {
        const auto parts = Support::splitPJLJob(job);
        if (!parts || !Support::problemsOfPJLJob(job).empty()) {
            cutJobs.push_back(job);
            return;
        }
        const NumberedJob expected = {numberInPages(parts->body)};
        times[expected.number]++;
        for (const std::string &line : expected.headerLines())
            if (parts->header.find(line) == std::string::npos)
                wrongHeaders.push_back(line + " is not in\n" + parts->header);
    }
};

/// 200 jobs on the class, in the middle of which the server "east" breaks down for good; 100 in a
/// slow build, with all that it looks at besides. They are printed once for all tests.
class ServersTest : public testing::Test {
protected:
#ifdef NDEBUG
    static constexpr int kJobs = 200;
    static constexpr std::size_t kPrintedBeforeTheCrash = 60;
#else
    static constexpr int kJobs = 100;
    static constexpr std::size_t kPrintedBeforeTheCrash = 30;
#endif

    static void SetUpTestSuite()
    {
        house = std::make_unique<PrintHouse>();
        house->submit(kJobs, kPrintedBeforeTheCrash, [] {
            house->east().scheduler.crash();
            printedAtTheCrash = house->printedJobs().size();
        });
        house->waitForJobs(kQueuesPerServer);
        heldJobs = house->unfinishedJobs();
        house->giveUpEast();
        house->waitForJobs(0);
        printed = std::make_unique<Printed>(house->printedJobs());
    }

    static void TearDownTestSuite()
    {
        printed.reset();
        house.reset();
    }

    static inline std::unique_ptr<PrintHouse> house;
    static inline std::unique_ptr<Printed> printed;
    static inline std::size_t printedAtTheCrash = 0;
    /// What was unfinished until somebody gave up east. It holds no more than its queues do.
    static inline std::set<int> heldJobs;
};

TEST_F(ServersTest, NoJobIsLost)
{
    EXPECT_THAT(printed->times, SizeIs(kJobs));
    EXPECT_FALSE(printed->times.contains(0)) << "pages of no job";
}

TEST_F(ServersTest, EachJobHasItsOwnHeader)
{
    EXPECT_THAT(printed->wrongHeaders, IsEmpty());
}

TEST_F(ServersTest, JobsAreSpreadOverBothServersAndGoOnWithoutTheOneThatIsGone)
{
    EXPECT_GT(house->east().printer.jobs().size(), kPrintedBeforeTheCrash / 4);
    EXPECT_GT(house->west().printer.jobs().size(), kJobs - printedAtTheCrash);
    EXPECT_LT(printedAtTheCrash, kJobs / 2U);
}

/// It could not say any more that they were printed.
TEST_F(ServersTest, OnlyWhatTheServerHadInHandIsPrintedTwice)
{
    const std::set<int> twice = printed->twice();
    std::cout << twice.size() << " of " << kJobs << " jobs were printed twice\n";
    EXPECT_THAT(heldJobs, IsSupersetOf(twice));
    EXPECT_LE(twice.size(), kQueuesPerServer);
    EXPECT_LE(printed->cutJobs.size(), 1U); // its queue prints one at a time
}

TEST_F(ServersTest, DialogsOnTheClassHaveTheDriversFields)
{
    EXPECT_THAT(house->front().run({"lpoptions", "-p", "office", "-l"}),
                HasSubstr("KLDepartmentCode"));
}

TEST(ReturningServerTest, PrintsWhatItHadInHand)
{
    constexpr int kJobs = 40;
    PrintHouse house;
    house.east().printer.stall(true); // so that it has something in hand
    house.submit(kJobs, 10, [&] { house.east().scheduler.crash(); });
    house.waitForJobs(kQueuesPerServer);
    house.east().printer.stall(false);
    house.east().scheduler.comeBack();
    house.waitForJobs(0);

    const Printed printed(house.printedJobs());
    EXPECT_THAT(printed.times, SizeIs(kJobs));
    EXPECT_THAT(printed.wrongHeaders, IsEmpty());
    EXPECT_GE(house.east().printer.jobs().size(), kQueuesPerServer - 1);
    EXPECT_LE(printed.twice().size(), 1U) << "only what was on its way to the printer";
}

} // namespace
