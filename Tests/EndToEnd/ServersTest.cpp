#include "PJLChecker.h"
#include "PrivateScheduler.h"
#include "RecordingPrinter.h"
#include "TemporaryFolder.h"
#include "Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
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
using testing::SizeIs;

namespace {

constexpr int kJobs = 200;
/// How many queues hand jobs to one server at the same time.
constexpr std::size_t kQueuesPerServer = 6;
/// When one of the servers breaks down.
constexpr std::size_t kPrintedBeforeTheCrash = 60;

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
    PrivateScheduler scheduler{{KL_CHAIN}};
};

/// Two servers with the same driver behind a class "office" of a third, on which people print.
class PrintHouse {
public:
    PrintHouse()
    {
        fs::permissions(_folder.path(), fs::perms(0755));
        const std::string ppd = _folder.write("server.ppd", serversPPD());
        _front = std::make_unique<PrivateScheduler>(std::vector<std::string>{KL_CHAIN});
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

    /// @return the job's number on the front
    int submit(const NumberedJob &job) const
    {
        std::vector<std::string> arguments = job.options();
        arguments.insert(arguments.end(), {"-d", "office"});
        arguments.push_back(_folder.write("job.ps", job.document()));
        return _front->submit(arguments);
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
};

/// 200 jobs on the class, in the middle of which the server "east" breaks down for good. They are
/// printed once for all tests.
class ServersTest : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        house = std::make_unique<PrintHouse>();
        submitJobs();
        waitForJobs(kQueuesPerServer);
        for (const int job : house->front().unfinishedJobs("office"))
            heldJobs.insert(submitted.at(job));
        printedWithoutHelp = house->west().printer.jobs().size();
        giveUpEast();
        waitForJobs(0);
        for (const std::string &job : house->printedJobs())
            sort(job);
    }

    static void TearDownTestSuite() { house.reset(); }

    static std::set<int> printedTwice()
    {
        std::set<int> numbers;
        for (const auto &[number, times] : timesPrinted)
            if (times > 1)
                numbers.insert(number);
        return numbers;
    }

    static inline std::unique_ptr<PrintHouse> house;
    static inline std::map<int, int> timesPrinted;       ///< by the job's number
    static inline std::vector<std::string> wrongHeaders; ///< jobs with lines that are not theirs
    static inline std::vector<std::string> cutJobs;
    static inline std::set<int> heldJobs; ///< what the front still counted on east to print
    static inline std::size_t printedWithoutHelp = 0; ///< by west, until somebody gave up east
    static inline std::size_t printedBeforeTheCrash = 0;

private:
    static void submitJobs()
    {
        for (int number = 1; number <= kJobs; ++number) {
            submitted[house->submit({number})] = number;
            crashOnceInTheMiddle();
        }
        while (printedBeforeTheCrash == 0) {
            if (!Support::comesTrue([] { return isInTheMiddle(); }))
                throw std::runtime_error("too few jobs are printed:\n" + house->front().log());
            crashOnceInTheMiddle();
        }
    }

    static bool isInTheMiddle() { return house->printedJobs().size() >= kPrintedBeforeTheCrash; }

    static void crashOnceInTheMiddle()
    {
        if (printedBeforeTheCrash > 0 || !isInTheMiddle())
            return;
        house->east().scheduler.crash();
        printedBeforeTheCrash = house->printedJobs().size();
    }

    /// Waits until no more than so many jobs are unfinished.
    static void waitForJobs(std::size_t left)
    {
        const auto areFew = [left] {
            return house->front().unfinishedJobs("office").size() <= left;
        };
        if (!Support::comesTrue(areFew, std::chrono::seconds(90)))
            throw std::runtime_error("jobs stay unfinished:\n" + house->front().log());
    }

    /// As its administrator does when he knows that it will not come back.
    static void giveUpEast()
    {
        for (const std::string &queue : PrintHouse::queuesOf("east"))
            house->front().run({"cupsdisable", queue});
    }

    static void sort(const std::string &job)
    {
        const auto parts = Support::splitPJLJob(job);
        if (!parts || !Support::problemsOfPJLJob(job).empty()) {
            cutJobs.push_back(job);
            return;
        }
        const NumberedJob expected = {numberInPages(parts->body)};
        timesPrinted[expected.number]++;
        for (const std::string &line : expected.headerLines())
            if (parts->header.find(line) == std::string::npos)
                wrongHeaders.push_back(line + " is not in\n" + parts->header);
    }

    static inline std::map<int, int> submitted; ///< the front's number of each job to its own
};

TEST_F(ServersTest, NoJobIsLost)
{
    EXPECT_THAT(timesPrinted, SizeIs(kJobs));
    EXPECT_FALSE(timesPrinted.contains(0)) << "pages of no job";
}

TEST_F(ServersTest, EachJobHasItsOwnHeader)
{
    EXPECT_THAT(wrongHeaders, IsEmpty());
}

TEST_F(ServersTest, BothServersPrint)
{
    EXPECT_GT(house->east().printer.jobs().size(), kPrintedBeforeTheCrash / 4);
    EXPECT_GT(house->west().printer.jobs().size(), kPrintedBeforeTheCrash / 4);
}

TEST_F(ServersTest, JobsGoOnWithoutTheServerThatIsGone)
{
    EXPECT_LT(printedBeforeTheCrash, static_cast<std::size_t>(kJobs) / 2);
    EXPECT_GE(printedWithoutHelp + house->east().printer.jobs().size(), kJobs - kQueuesPerServer);
}

/// The server could not say any more that they are printed. One for each queue to it at most.
TEST_F(ServersTest, OnlyWhatTheServerHadInHandIsPrintedTwice)
{
    const std::set<int> twice = printedTwice();
    std::cout << twice.size() << " jobs were printed twice, " << cutJobs.size() << " cut off\n";
    EXPECT_THAT(heldJobs, testing::IsSupersetOf(twice));
    EXPECT_LE(twice.size(), kQueuesPerServer);
    EXPECT_LE(cutJobs.size(), 1U); // its queue prints one at a time
}

TEST_F(ServersTest, DialogsOnTheClassHaveTheDriversFields)
{
    EXPECT_THAT(house->front().run({"lpoptions", "-p", "office", "-l"}),
                HasSubstr("KLDepartmentCode"));
}

} // namespace
