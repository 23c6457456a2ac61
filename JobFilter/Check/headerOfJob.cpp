#include "headerOfJob.h"

#include "KLPrintOptions.h"
#include "Streams.h"
#include "jobHeader.h"
#include "protectedHeader.h"
#include "settingRules.h"

#include <memory>
#include <new>
#include <pwd.h>
#include <unistd.h>

namespace {

JobName nameOfJob()
{
    // cppcheck-suppress getpwuidCalled ; there is one thread
    const passwd *user = getpwuid(getuid());
    return {1, user != nullptr ? user->pw_name : "user", "Title"};
}

std::shared_ptr<KLPrintOptions> optionsOf(const std::string &optionString, const JobName &job)
{
    auto options = std::make_shared<KLPrintOptions>(optionString);
    options->setDefaultValueForKey(job.user, "com.kalmira.username");
    options->setDefaultValueForKey(job.title, "com.kalmira.jobname");
    options->setDefaultValueForKey("1", "com.kalmira.copies");
    options->setDefaultValueForKey("", "com.kalmira.domainname"); // as when nobody is asked for it
    return options;
}

/// nullopt when there is no room for it.
std::optional<std::string> openHeader(const std::shared_ptr<KLPrintOptions> &options,
                                      const JobName &job)
{
    const Platform::Stream emission = Platform::openTemporary();
    const Platform::Stream output = Platform::openTemporary();
    const auto emitted =
        emission && output ? emittedHeader(options->ppd(), job, emission.get()) : std::nullopt;
    if (!emitted)
        return std::nullopt;
    walkHeader(*emitted, options, output.get());
    return writtenBytes(output.get());
}

std::string readable(const std::string &header)
{
    std::string text;
    for (const char byte : header) {
        if (byte == '\033')
            text += "<ESC>";
        else if (byte != '\r')
            text += byte;
    }
    return text;
}

} // namespace

JobHeaderAnswer headerOfJob(const std::string &optionString)
{
    const JobName job = nameOfJob();
    const auto options = optionsOf(optionString, job);
    if (const auto objection = objectionToSettings(*options))
        return {false, *objection + "\n"};
    if (!asksForProtection(*options)) {
        const auto header = openHeader(options, job);
        if (!header)
            throw std::bad_alloc();
        return {true, readable(*header)};
    }
    const auto header = protectedHeader(options, job);
    if (!header)
        return {false, "Unable to create the job header of a protected job\n"};
    return {true, readable(*header)};
}
