// The whole filter, from its arguments to the printer's bytes.
//
// Job id, user, title, number of copies and options are a line each; the pages follow. The toolkit
// that the queue has hands on what it is given.

#include "runFilter.h"

#include "Fuzzing.h"
#include "PJLChecker.h"
#include "Queue.h"
#include "TemporaryFolder.h"
#include "Text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::string_view kExit = "\033%-12345X";
constexpr char kToolkit[] = R"(#!/bin/sh
while [ $# -gt 2 ]; do shift; done
exec cat <"$1" >"$2"
)";

/// A queue, and the folders that a job of its may use.
class Queue {
public:
    Queue()
    {
        const std::string bundle = _folder.file("Toolkit.bundle");
        for (const char *part : {"", "/Contents", "/Contents/Linux"})
            mkdir((bundle + part).c_str(), 0700);
        Support::writeFile(bundle + "/Contents/Linux/toolkit", kToolkit);
        chmod((bundle + "/Contents/Linux/toolkit").c_str(), 0700);
        setenv(
            "PPD",
            _folder.write("queue.ppd", Fuzz::queuePPD("*APDialogExtension: \"" + bundle + "\"\n"))
                .c_str(),
            1);
        setenv("TMPDIR", _temporary.path().c_str(), 1);
    }

    /// A file of the scheduler's for the job.
    std::string jobFile(std::string_view pages) const { return _folder.write("job", pages); }
    /// Removes what the job left behind. @return how many files that were
    std::size_t tidy() const
    {
        const auto names = _temporary.names();
        for (const std::string &name : names)
            std::remove(_temporary.file(name).c_str());
        return names.size();
    }

private:
    Support::TemporaryFolder _folder;
    Support::TemporaryFolder _temporary;
};

/// Lets a standard descriptor lead to the file.
void redirect(int descriptor, const std::string &path, int flags)
{
    const Platform::Descriptor file(open(path.c_str(), flags | O_CLOEXEC));
    Fuzz::require(dup2(file.number(), descriptor) == descriptor, "a descriptor can be redirected");
}

/// What the filter writes for the job.
/// @param file  null for the pages on standard input
std::string jobOf(std::array<std::string, 5> arguments, std::string_view pages,
                  const std::string *file)
{
    Fuzz::MemoryFile input;
    Fuzz::MemoryFile output;
    input.assign(pages);
    redirect(STDIN_FILENO, input.path(), O_RDONLY);
    redirect(STDOUT_FILENO, output.path(), O_WRONLY);
    std::rewind(stdin);

    const auto &[id, user, title, copies, options] = arguments;
    const int status = runFilter({id.c_str(), user.c_str(), title.c_str(), copies.c_str(),
                                  options.c_str(), file != nullptr ? file->c_str() : nullptr});
    std::fflush(stdout);
    Fuzz::require(status == 0, "no argument and no page stops a job");
    return output.bytes();
}

/// Header, pages and end of a job stand behind each other, and the pages are as they were.
void requirePages(const std::string &job, std::string_view pages)
{
    const auto parts = Support::splitPJLJob(job);
    Fuzz::require(parts.has_value(), "a job has a header and an end");
    Fuzz::requireEqual(
        pages,
        job.substr(parts->header.size(), std::min(pages.size(), job.size() - parts->header.size())),
        "the pages pass as they are");
    const std::string end = job.substr(parts->header.size() + pages.size());
    Fuzz::require(end.starts_with(kExit) && end.ends_with("\r\n@PJL EOJ\n") &&
                      std::ranges::count(end, '\n') == 3 && std::ranges::count(end, '\033') == 1,
                  "the job's end follows the pages, three lines long");
}

using Arguments = std::array<std::string, 5>;

/// Job id, user, title, copies and options, of any bytes that an argument can have.
Arguments takeArguments(std::string_view &input)
{
    Arguments arguments;
    for (std::string &argument : arguments) {
        argument = Fuzz::takeLine(input);
        argument.resize(std::min(argument.find('\0'), argument.size()));
    }
    // No line ends in a line: these stand for them.
    for (std::string &argument : arguments)
        std::ranges::replace(argument, '\v', '\n');
    return arguments;
}

/// User and title are texts in the header, and no lines.
void requireHeader(const Arguments &arguments, const std::string &job, std::string_view pages)
{
    Arguments plain = arguments;
    plain[1] = plain[2] = "plain";
    const auto header = Support::splitPJLJob(job)->header;
    const auto expected = Support::splitPJLJob(jobOf(plain, pages, nullptr))->header;
    Fuzz::require(std::ranges::count(header, '\n') == std::ranges::count(expected, '\n'),
                  "no user and no title makes a line");
    if (Platform::isValidUTF8(arguments[1]) && Platform::isValidUTF8(arguments[3]) &&
        Platform::isValidUTF8(arguments[4]))
        Fuzz::require(Platform::isValidUTF8(header), "a header is UTF-8");
}

/// Values of options that are words of PJL: what else a user puts there is his printer's to refuse.
bool isAboutWords(const std::string &problem)
{
    return problem.find("@PJL SET COPIES") != std::string::npos ||
           problem.find("JOBENDINFO") != std::string::npos;
}

void requireJob(const std::string &job, std::string_view pages)
{
    requirePages(job, pages);
    if (pages.find(kExit) != std::string_view::npos || pages.find("@PJL") != std::string_view::npos)
        return; // the pages' own
    for (const std::string &problem : Support::problemsOfPJLJob(job))
        Fuzz::require(isAboutWords(problem), problem);
}

} // namespace

void Fuzz::tryInput(std::string_view input)
{
    static const Queue queue;
    const auto arguments = takeArguments(input);
    const std::string spooled = jobOf(arguments, input, nullptr);
    requireJob(spooled, input);
    requireHeader(arguments, spooled, input);
    require(queue.tidy() == 0, "a job leaves nothing lying about");

    const std::string file = queue.jobFile(input);
    requireEqual(spooled, jobOf(arguments, "", &file), "a job in a file is printed as any other");
    // What the toolkit made of a file that is not the filter's own is not removed by the filter.
    require(queue.tidy() <= 1, "a job in a file leaves the toolkit's last file at most");
}
