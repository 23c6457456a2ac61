#include "Cancellation.h"
#include "domainLookup.h"
#include "headerText.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <getopt.h>
#include <grp.h>
#include <pwd.h>
#include <stdexcept>
#include <string>
#include <unistd.h>

// jobfilter-domain: asks for a user's domain as the filter does, and says what the sources say.

namespace {

constexpr int kNoDomain = 1;
constexpr int kWrongCall = 2;

constexpr char kUsage[] =
    "Usage: jobfilter-domain [-u NAME] USER\n"
    "Asks for the user's domain as jobfilter does, and prints what each source says.\n"
    "\n"
    "  -u, --user NAME   ask as this user when root calls (" KL_FILTER_USER ", as filters run)\n"
    "  -h, --help        print this and exit\n"
    "  -V, --version     print the version and exit\n"
    "\n"
    "Status 0: there is a domain; 1: there is none; 2: the call is wrong.\n";

/// What the command line says.
struct Call {
    std::string filterUser = KL_FILTER_USER;
    std::string userName;
};

[[noreturn]] void printAndExit(const char *text)
{
    std::fputs(text, stdout);
    std::exit(EXIT_SUCCESS);
}

[[noreturn]] void refuseCall()
{
    std::fputs(kUsage, stderr);
    std::exit(kWrongCall);
}

Call parseCall(int argc, char *argv[])
{
    static const option options[] = {{"user", required_argument, nullptr, 'u'},
                                     {"help", no_argument, nullptr, 'h'},
                                     {"version", no_argument, nullptr, 'V'},
                                     {nullptr, 0, nullptr, 0}};
    Call call;
    for (int letter = 0; (letter = getopt_long(argc, argv, "u:hV", options, nullptr)) != -1;) {
        if (letter == 'u')
            call.filterUser = optarg;
        else if (letter == 'h')
            printAndExit(kUsage);
        else if (letter == 'V')
            printAndExit("jobfilter-domain " KL_VERSION "\n");
        else
            refuseCall();
    }
    if (optind != argc - 1)
        refuseCall();
    call.userName = argv[optind];
    return call;
}

/// Gives root's rights up: a filter does not have them, so what it may read is what counts.
void becomeFilter(const std::string &filterUser)
{
    if (geteuid() != 0)
        return;
    // cppcheck-suppress getpwnamCalled ; there is one thread
    const passwd *const user = getpwnam(filterUser.c_str());
    if (user == nullptr)
        throw std::runtime_error("no such user: " + filterUser);
    const gid_t group = user->pw_gid;
    if (setgroups(1, &group) != 0 || setgid(group) != 0 || setuid(user->pw_uid) != 0)
        throw std::runtime_error("unable to become " + filterUser + ": " + std::strerror(errno));
}

/// @param text  may come from the network: what would command a terminal is taken out
void printLine(const std::string &text)
{
    std::printf("%s\n", headerText(text).c_str());
    static_cast<void>(std::fflush(stdout)); // the log's lines come in between
}

void printReport(const Platform::SourceReport &report)
{
    char time[32];
    std::snprintf(time, sizeof time, " (%.1f ms)", static_cast<double>(report.time.count()) / 1000);
    printLine(report.source + ": " + report.answer + time);
}

/// Asks, and prints what is said on the way. @return empty when there is no domain
std::string askForDomain(const std::string &userName)
{
    return domainFromDirectory(userName, [](std::optional<KLError> *error) {
        auto directory = openDirectoryOfHost(error, &printReport);
        if (!directory)
            printLine("nobody is asked: " + (*error)->description().value_or(""));
        return directory;
    });
}

int run(const Call &call)
{
    becomeFilter(call.filterUser);
    const std::string domain = askForDomain(call.userName);
    printLine(domain.empty() ? "no domain" : "domain: " + domain);
    return domain.empty() ? kNoDomain : EXIT_SUCCESS;
}

} // namespace

int main(int argc, char *argv[])
{
    Platform::cleanUpWhenCancelled();
    const Call call = parseCall(argc, argv);
    try {
        return run(call);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "jobfilter-domain: %s\n", error.what());
        return kWrongCall;
    }
}
