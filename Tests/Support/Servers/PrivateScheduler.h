#pragma once

#include "Program.h"
#include "TemporaryFolder.h"

#include <chrono>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace Support {

/// How a job stands, in IPP's words (RFC 8011).
struct JobStatus {
    std::string state;          ///< "completed", "canceled", "aborted", "processing", ...
    std::string printerMessage; ///< what the job has told about the printer last
};

/// CUPS' own scheduler, run for a test alone: its configuration, folders and port are private, its
/// filters are Debian's and those of the test. Works as root and as any other user.
///
/// Queues print go to a device URI of the test; clients reach it through the loopback interface
/// only. The destructor ends the scheduler and all its jobs.
class PrivateScheduler {
public:
    /// @param filters   paths of programs that are copied beside CUPS' own filters. The folder
    ///                  "lib" beside the folder of the first, where it finds its modules, is there
    ///                  too.
    /// @param firstJob  the number that its first job gets
    /// @param directives  further lines of its cupsd.conf(5), each with its line feed
    /// @throws std::runtime_error, with the scheduler's log, when it does not come up
    explicit PrivateScheduler(const std::vector<std::string> &filters, int firstJob = 1,
                              const std::string &directives = {});
    ~PrivateScheduler();
    PrivateScheduler(const PrivateScheduler &) = delete;
    PrivateScheduler &operator=(const PrivateScheduler &) = delete;

    /// Runs one of CUPS' client programs (lp, lpadmin, ipptool, ...) on this scheduler.
    /// @throws std::runtime_error, with what it said, unless it ends with status 0
    std::string run(std::vector<std::string> arguments) const;

    // What asks the scheduler throws std::runtime_error, with what it said, when it
    // refuses or does not answer.

    /// Makes a queue that accepts jobs. `options` are further arguments of lpadmin.
    void addQueue(const std::string &name, const std::string &ppd, const std::string &deviceURI,
                  const std::vector<std::string> &options = {}) const;

    /// Runs lp(1) with these arguments. @return the job's number
    int submit(const std::vector<std::string> &arguments) const;

    /// The numbers of the jobs of a queue or class that are not at their end.
    std::set<int> unfinishedJobs(const std::string &queue) const;

    /// The number of the queue's latest job, of whatever program; 0 when there was none.
    int latestJob(const std::string &queue) const;

    /// How the job stands now.
    JobStatus status(int job) const;

    /// Waits until the job is completed, cancelled, aborted or stopped by a filter that failed.
    /// @throws std::runtime_error, with the job's log, after a minute
    JobStatus waitForJob(int job) const;

    /// What the scheduler's record of a job says, for instance as "job-impressions-completed".
    /// @throws std::runtime_error when it has no such number
    int jobNumber(int job, const std::string &attribute) const;

    /// What the page log says of a job, a line each: the page and its copies, "1 3".
    std::vector<std::string> pageLog(int job) const;

    /// The printer's state message, as lpstat(1) shows it.
    std::string printerMessage(const std::string &queue) const;

    /// It listens on 127.0.0.1.
    int port() const { return _port; }

    /// "ipp://127.0.0.1:PORT/printers/QUEUE"
    std::string queueURI(const std::string &queue) const;

    /// "http://127.0.0.1:PORT/printers/QUEUE"
    std::string webPage(const std::string &queue) const;

    /// The lines of the scheduler's error log, those of one job alone when it is not 0.
    std::string log(int job = 0) const;

    /// A folder that the filters can write: their TMPDIR.
    std::string temporaryFolder() const { return _folder.file("spool/tmp"); }
    /// The names of the files in there.
    std::vector<std::string> temporaryFiles() const;

    /// The processes that the scheduler's jobs are made of, Ghostscript and the like included.
    std::vector<pid_t> jobProcesses() const;

    /// What the scheduler and the processes of its jobs that have ended took, user and system.
    std::chrono::duration<double> processorTime() const;

    /// Ends the scheduler and the processes of its jobs at once, as a power failure does: nobody is
    /// told.
    void crash();
    /// Starts it again after a crash, with what it had written to its files.
    /// @throws std::runtime_error, with its log, when it does not come up
    void comeBack();

private:
    void makeFolders(const std::vector<std::string> &filters) const;
    void copyProgram(const std::filesystem::path &program, const std::string &folder) const;
    void writeConfiguration(const std::string &directives) const;
    void start();
    bool comesUp() const;
    std::set<int> listedJobs(const std::vector<std::string> &arguments) const;
    void stop();

    TemporaryFolder _folder;
    int _port = 0;
    pid_t _process = 0; ///< 0 once it has ended
};

/// The option in the form that lp(1) -o takes, quoted so that any value arrives as it is.
std::string lpOption(std::string_view name, std::string_view value);

} // namespace Support
