#include "PrivateScheduler.h"

#include "Loopback.h"
#include "Waiting.h"

#include <cups/cups.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <grp.h>
#include <memory>
#include <pwd.h>
#include <sstream>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace Support {
namespace {

constexpr char kServerBin[] = KL_CUPS_SERVERBIN;
constexpr char kDataDir[] = KL_CUPS_DATADIR;

/// What the build's sanitizers are told reaches the filters too. Call stacks that do not go by
/// frame pointers, or the known leaks of libcups are not recognised: it is built without. They cost
/// more than all else that a filter does, and those leaks are made two or three calls deep.
constexpr char kPassedEnvironment[] =
    "PassEnv LSAN_OPTIONS UBSAN_OPTIONS\n"
    "SetEnv ASAN_OPTIONS fast_unwind_on_malloc=0:malloc_context_size=5\n";

constexpr char kConfiguration[] = R"(LogLevel debug
MaxLogSize 0
Browsing No
WebInterface Yes
DefaultAuthType None
JobKillDelay 1
PageLogFormat %p %j %P %C
<Location />
  Order allow,deny
  Allow all
</Location>
<Policy default>
  JobPrivateAccess all
  JobPrivateValues none
  SubscriptionPrivateAccess all
  SubscriptionPrivateValues none
  <Limit All>
    Order allow,deny
    Allow all
  </Limit>
</Policy>
)";

using Response = std::unique_ptr<ipp_t, decltype(&ippDelete)>;

/// The scheduler's jobs must not run as root: root's scheduler hands them to "lp", as Debian's
/// does.
std::string jobUser()
{
    if (geteuid() == 0)
        return "User lp\nGroup lp\n";
    return std::string("User ") + getpwuid(geteuid())->pw_name + "\nGroup " +
           getgrgid(getegid())->gr_name + "\n";
}

Response ask(int port, ipp_op_t operation, const char *uriName, const std::string &uri)
{
    http_t *http =
        httpConnect2("127.0.0.1", port, nullptr, AF_INET, HTTP_ENCRYPTION_NEVER, 1, 5000, nullptr);
    if (http == nullptr)
        throw std::runtime_error("the scheduler does not answer");
    ipp_t *request = ippNewRequest(operation);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, uriName, nullptr, uri.c_str());
    Response response(cupsDoRequest(http, request, "/"), ippDelete);
    httpClose(http);
    if (!response || ippGetStatusCode(response.get()) > IPP_STATUS_OK_CONFLICTING)
        throw std::runtime_error(uri + ": " + cupsLastErrorString());
    return response;
}

std::string textOf(const Response &response, const char *name)
{
    ipp_attribute_t *attribute = ippFindAttribute(response.get(), name, IPP_TAG_ZERO);
    const char *text = attribute ? ippGetString(attribute, 0, nullptr) : nullptr;
    return text ? text : "";
}

} // namespace

PrivateScheduler::PrivateScheduler(const std::vector<std::string> &filters, int firstJob,
                                   const std::string &directives)
{
    makeFolders(filters);
    // Where it looks up what it has done before.
    writeFile(_folder.file("cache/job.cache"), "NextJobId " + std::to_string(firstJob) + "\n");
    _port = freePort();
    writeConfiguration(directives);
    start();
}

PrivateScheduler::~PrivateScheduler()
{
    stop();
}

void PrivateScheduler::makeFolders(const std::vector<std::string> &filters) const
{
    // The jobs' user has to get through; the test's folders are its maker's alone.
    fs::permissions(_folder.path(), fs::perms(0755));
    for (const char *name : {"etc", "spool/tmp", "cache", "run", "bin/filter", "bin/backend"})
        fs::create_directories(_folder.file(name));
    for (const char *name : {"cgi-bin", "daemon", "driver", "monitor", "notifier"})
        fs::create_symlink(fs::path(kServerBin) / name, _folder.file("bin/") + name);
    fs::create_symlink(fs::path(kServerBin) / "backend/socket", _folder.file("bin/backend/socket"));
    copyProgram(fs::path(kServerBin) / "backend/ipp", "bin/backend"); // Debian's is root's alone
    for (const auto &filter : fs::directory_iterator(fs::path(kServerBin) / "filter"))
        if (!filter.path().filename().string().starts_with("jobfilter"))
            fs::create_symlink(filter.path(),
                               _folder.file("bin/filter/") + filter.path().filename().string());
    for (const fs::path filter : filters)
        copyProgram(filter, "bin/filter");
    const fs::path modules = fs::path(filters.front()).parent_path().parent_path() / "lib";
    fs::create_directory_symlink(modules, _folder.file("bin/lib"));
}

void PrivateScheduler::copyProgram(const fs::path &program, const std::string &folder) const
{
    const fs::path copy = fs::path(_folder.file(folder)) / program.filename();
    fs::copy_file(program, copy);
    fs::permissions(copy, fs::perms(0755)); // the scheduler refuses what others may change
}

void PrivateScheduler::writeConfiguration(const std::string &directives) const
{
    writeFile(_folder.file("etc/cupsd.conf"),
              kConfiguration + directives + "Listen 127.0.0.1:" + std::to_string(_port) + "\n");
    const std::string top = _folder.path();
    writeFile(_folder.file("etc/cups-files.conf"),
              jobUser() + kPassedEnvironment + "ServerRoot " + top + "/etc\nServerBin " + top +
                  "/bin\nDataDir " + kDataDir + "\nRequestRoot " + top + "/spool\nTempDir " + top +
                  "/spool/tmp\nCacheDir " + top + "/cache\nStateDir " + top + "/run\nErrorLog " +
                  top + "/error_log\nAccessLog " + top + "/access_log\nPageLog " + top +
                  "/page_log\n");
}

void PrivateScheduler::start()
{
    const std::string configuration = _folder.file("etc/cupsd.conf");
    const std::string files = _folder.file("etc/cups-files.conf");
    const std::string program = packagedFile("/usr/sbin/cupsd", "cups-daemon");
    _process = fork();
    if (_process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM); // never outlive a test that crashed
        execl(program.c_str(), "cupsd", "-f", "-c", configuration.c_str(), "-s", files.c_str(),
              nullptr);
        _exit(127);
    }
    if (!comesTrue([this] { return comesUp(); }, std::chrono::seconds(20))) {
        stop();
        throw std::runtime_error("the scheduler does not come up:\n" + log());
    }
}

bool PrivateScheduler::comesUp() const
{
    http_t *http =
        httpConnect2("127.0.0.1", _port, nullptr, AF_INET, HTTP_ENCRYPTION_NEVER, 1, 1000, nullptr);
    httpClose(http);
    return http != nullptr;
}

void PrivateScheduler::stop()
{
    if (_process == 0)
        return;
    kill(_process, SIGTERM);
    const auto hasEnded = [this] { return waitpid(_process, nullptr, WNOHANG) != 0; };
    if (comesTrue(hasEnded, std::chrono::seconds(15)))
        return;
    kill(_process, SIGKILL);
    waitpid(_process, nullptr, 0);
}

std::chrono::duration<double> PrivateScheduler::processorTime() const
{
    const std::string status = readFile("/proc/" + std::to_string(_process) + "/stat");
    std::istringstream fields(status.substr(status.rfind(')') + 1)); // behind number and name
    std::string skipped;
    for (int field = 3; field < 14; ++field)
        fields >> skipped;
    double ticks = 0;
    for (int field = 14; field <= 17; ++field) { // its own and its children's, see proc(5)
        double value = 0;
        fields >> value;
        ticks += value;
    }
    return std::chrono::duration<double>(ticks / static_cast<double>(sysconf(_SC_CLK_TCK)));
}

void PrivateScheduler::crash()
{
    kill(_process, SIGKILL); // first, or it would start others
    waitpid(_process, nullptr, 0);
    _process = 0;
    for (const pid_t process : jobProcesses())
        kill(process, SIGKILL);
}

void PrivateScheduler::comeBack()
{
    start();
}

std::string PrivateScheduler::run(std::vector<std::string> arguments) const
{
    const auto result =
        runProgram({.arguments = arguments,
                    .environment = {{"CUPS_SERVER", "127.0.0.1:" + std::to_string(_port)},
                                    // Where root's settings are kept from CUPS 2.4.10 on.
                                    {"CUPS_SERVERROOT", _folder.path()},
                                    {"HOME", _folder.path()},
                                    {"LC_ALL", "C.UTF-8"}}});
    if (result.exitStatus != 0)
        throw std::runtime_error(arguments[0] + ": " + result.output + result.errors);
    return result.output;
}

void PrivateScheduler::addQueue(const std::string &name, const std::string &ppd,
                                const std::string &deviceURI,
                                const std::vector<std::string> &options) const
{
    std::vector<std::string> arguments = {"lpadmin", "-p", name, "-E", "-v", deviceURI, "-P", ppd};
    arguments.insert(arguments.end(), options.begin(), options.end());
    run(arguments);
}

int PrivateScheduler::submit(const std::vector<std::string> &arguments) const
{
    std::vector<std::string> call = {"lp"};
    call.insert(call.end(), arguments.begin(), arguments.end());
    const std::string answer = run(call); // "request id is QUEUE-17 (1 file(s))"
    const auto end = answer.rfind(" (");
    const auto dash = answer.rfind('-', end);
    if (end == std::string::npos || dash == std::string::npos)
        throw std::runtime_error("lp: " + answer);
    return std::stoi(answer.substr(dash + 1, end - dash - 1));
}

std::set<int> PrivateScheduler::unfinishedJobs(const std::string &queue) const
{
    return listedJobs({"-o", queue});
}

int PrivateScheduler::latestJob(const std::string &queue) const
{
    const std::set<int> jobs = listedJobs({"-W", "all", "-o", queue});
    return jobs.empty() ? 0 : *jobs.rbegin();
}

std::set<int> PrivateScheduler::listedJobs(const std::vector<std::string> &arguments) const
{
    std::vector<std::string> call = {"lpstat"};
    call.insert(call.end(), arguments.begin(), arguments.end());
    std::istringstream lines(run(call)); // "QUEUE-17  anna ..."
    std::set<int> jobs;
    for (std::string line; std::getline(lines, line);)
        jobs.insert(std::stoi(line.substr(arguments.back().size() + 1)));
    return jobs;
}

JobStatus PrivateScheduler::status(int job) const
{
    const Response response =
        ask(_port, IPP_OP_GET_JOB_ATTRIBUTES, "job-uri",
            "ipp://127.0.0.1:" + std::to_string(_port) + "/jobs/" + std::to_string(job));
    const int state = ippGetInteger(ippFindAttribute(response.get(), "job-state", IPP_TAG_ENUM), 0);
    return {ippEnumString("job-state", state), textOf(response, "job-printer-state-message")};
}

JobStatus PrivateScheduler::waitForJob(int job) const
{
    JobStatus last;
    const auto hasEnded = [&] {
        last = status(job);
        return last.state == "completed" || last.state == "canceled" || last.state == "aborted" ||
               last.state == "stopped" || last.state == "processing-stopped";
    };
    if (!comesTrue(hasEnded, std::chrono::seconds(60)))
        throw std::runtime_error("job " + std::to_string(job) + " is still " + last.state + ":\n" +
                                 log(job));
    return last;
}

std::string PrivateScheduler::printerMessage(const std::string &queue) const
{
    const Response response =
        ask(_port, IPP_OP_GET_PRINTER_ATTRIBUTES, "printer-uri", queueURI(queue));
    return textOf(response, "printer-state-message");
}

std::string PrivateScheduler::queueURI(const std::string &queue) const
{
    return "ipp://127.0.0.1:" + std::to_string(_port) + "/printers/" + queue;
}

int PrivateScheduler::jobNumber(int job, const std::string &attribute) const
{
    const Response response =
        ask(_port, IPP_OP_GET_JOB_ATTRIBUTES, "job-uri",
            "ipp://127.0.0.1:" + std::to_string(_port) + "/jobs/" + std::to_string(job));
    ipp_attribute_t *const found =
        ippFindAttribute(response.get(), attribute.c_str(), IPP_TAG_INTEGER);
    if (found == nullptr)
        throw std::runtime_error("the job has no " + attribute);
    return ippGetInteger(found, 0);
}

std::vector<std::string> PrivateScheduler::pageLog(int job) const
{
    std::vector<std::string> pages;
    if (!fs::exists(_folder.file("page_log")))
        return pages;
    std::istringstream all(readFile(_folder.file("page_log")));
    std::string queue;
    int number = 0;
    std::string page;
    while (all >> queue >> number && std::getline(all >> std::ws, page))
        if (number == job)
            pages.push_back(page);
    return pages;
}

std::string PrivateScheduler::webPage(const std::string &queue) const
{
    return "http" + queueURI(queue).substr(sizeof "ipp" - 1);
}

std::string PrivateScheduler::log(int job) const
{
    std::istringstream all(readFile(_folder.file("error_log")));
    const std::string ofJob = job == 0 ? "" : "[Job " + std::to_string(job) + "] ";
    std::string lines;
    for (std::string line; std::getline(all, line);)
        if (line.find(ofJob) != std::string::npos)
            lines += line + "\n";
    return lines;
}

std::vector<std::string> PrivateScheduler::temporaryFiles() const
{
    std::vector<std::string> names;
    for (const auto &entry : fs::directory_iterator(temporaryFolder()))
        names.push_back(entry.path().filename());
    return names;
}

std::vector<pid_t> PrivateScheduler::jobProcesses() const
{
    // The scheduler gives each of them its ServerRoot.
    const std::string mark = "CUPS_SERVERROOT=" + _folder.file("etc");
    std::vector<pid_t> processes;
    for (const auto &entry : fs::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") != std::string::npos)
            continue;
        try {
            if (readFile(entry.path() / "environ").find(mark) != std::string::npos)
                processes.push_back(std::stoi(name));
        } catch (const std::runtime_error &) {
            // It has ended meanwhile, or is another user's.
        }
    }
    return processes;
}

std::string lpOption(std::string_view name, std::string_view value)
{
    std::string option = std::string(name) + "='";
    for (const char byte : value) {
        if (byte == '\'' || byte == '\\')
            option += '\\';
        option += byte;
    }
    return option + "'";
}

} // namespace Support
