#include "checkPPD.h"
#include "headerOfJob.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string_view>

namespace {

constexpr int kNoMistakes = 0;
constexpr int kMistakes = 1;
constexpr int kNotChecked = 2;

constexpr char kUsage[] =
    "Usage: jobfilter-check-ppd FILE...\n"
    "       jobfilter-check-ppd --header OPTIONS FILE\n"
    "Says what a driver writer has wrong in a PPD that names jobfilter: what becomes of\n"
    "jobs on paper, and how to mend it. The format itself is cupstestppd(1)'s.\n"
    "\n"
    "  --header OPTIONS  the header that a job with these options would get; nothing is\n"
    "                    printed: --header 'PrintMode=Private Duplex=None'\n"
    "  --help            this text\n"
    "  --version         the version\n"
    "\n"
    "Ends with status 0 when there is nothing to mend, 1 when there is (or the job would\n"
    "not be printed), and 2 when a file cannot be read as a PPD. The PPDs of queues are\n"
    "in " KL_QUEUE_PPDS ".\n";

int report(const char *path, const std::vector<PPDMistake> &mistakes)
{
    for (const PPDMistake &mistake : mistakes)
        std::printf("%s: %s\n    On paper: %s\n    To mend it: %s\n", path, mistake.what.c_str(),
                    mistake.onPaper.c_str(), mistake.cure.c_str());
    if (mistakes.empty())
        std::printf("%s: nothing to mend\n", path);
    return mistakes.empty() ? kNoMistakes : kMistakes;
}

int check(const char *path)
{
    std::string whyNot;
    const auto ppd = PPD::open(path, &whyNot);
    if (ppd)
        return report(path, checkPPD(*ppd));
    std::fprintf(stderr, "%s: %s\n", path, whyNot.c_str());
    return kNotChecked;
}

int checkAll(int argc, char *argv[])
{
    int status = kNoMistakes;
    for (int file = 1; file < argc; ++file)
        status = std::max(status, check(argv[file]));
    return std::fflush(stdout) == 0 ? status : kNotChecked;
}

int showHeader(const char *options, const char *path)
{
    setenv("PPD", path, 1);
    const JobHeaderAnswer answer = headerOfJob(options);
    std::fputs(answer.text.c_str(), answer.isPrinted ? stdout : stderr);
    if (std::fflush(stdout) != 0)
        return kNotChecked;
    return answer.isPrinted ? kNoMistakes : kMistakes;
}

} // namespace

int main(int argc, char *argv[])
{
    const std::string_view first = argc > 1 ? argv[1] : "";
    if (argc == 2 && first == "--help")
        return std::fputs(kUsage, stdout) >= 0 ? EXIT_SUCCESS : kNotChecked;
    if (argc == 2 && first == "--version")
        return std::puts("jobfilter-check-ppd " KL_VERSION) >= 0 ? EXIT_SUCCESS : kNotChecked;
    const bool wantsHeader = first == "--header" && argc == 4;
    if (argc < 2 || (first.starts_with('-') && !wantsHeader)) {
        std::fputs(kUsage, stderr);
        return kNotChecked;
    }
    try {
        return wantsHeader ? showHeader(argv[2], argv[3]) : checkAll(argc, argv);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "jobfilter-check-ppd: %s\n", error.what());
        return kNotChecked;
    }
}
