#include "PrintJob.h"

#include "Connection.h"
#include "Descriptor.h"
#include "sentences.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace Model {
namespace {

constexpr std::size_t kBlock = 65536;

JobStatus::State stateOf(int state)
{
    switch (state) {
    case IPP_JSTATE_HELD:
        return JobStatus::State::Held;
    case IPP_JSTATE_PROCESSING:
        return JobStatus::State::Printing;
    case IPP_JSTATE_STOPPED:
        return JobStatus::State::Stopped;
    case IPP_JSTATE_CANCELED:
        return JobStatus::State::Cancelled;
    case IPP_JSTATE_ABORTED:
        return JobStatus::State::Failed;
    case IPP_JSTATE_COMPLETED:
        return JobStatus::State::Printed;
    default:
        return JobStatus::State::Waiting;
    }
}

/// None, with errno set, for what is no regular file: another might have no end.
Platform::Descriptor openDocument(const std::string &path)
{
    Platform::Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (file.number() < 0 || fstat(file.number(), &status) != 0)
        return Platform::Descriptor();
    if (S_ISREG(status.st_mode))
        return file;
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return Platform::Descriptor();
}

/// Adds the options to a request, each to the group that it belongs to.
void addOptions(ipp_t *request, const JobOptions &options)
{
    cups_option_t *list = nullptr;
    int count = 0;
    for (const auto &[name, value] : options)
        count = cupsAddOption(name.c_str(), value.c_str(), count, &list);
    for (const ipp_tag_t group : {IPP_TAG_OPERATION, IPP_TAG_JOB, IPP_TAG_SUBSCRIPTION})
        cupsEncodeOptions2(request, count, list, group);
    cupsFreeOptions(count, list);
}

Words wordsForDocument(const std::string &path, int error)
{
    return {kNoDocument, {asTheyAre(path), asTheyAre(std::strerror(error))}};
}

/// @return the job's number; 0 when there is none
int createJob(const Connection &connection, const std::string &queue, const std::string &title,
              const JobOptions &options, Words *whyNot)
{
    ipp_t *const request = newRequest(IPP_OP_CREATE_JOB, queue);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "job-name", nullptr, title.c_str());
    addOptions(request, options);
    const Response response = connection.ask(request, whyNot);
    if (!response && cupsLastError() == IPP_STATUS_ERROR_NOT_FOUND)
        *whyNot = {kQueueIsGone, {asTheyAre(queue)}};
    return ippGetInteger(ippFindAttribute(response.get(), "job-id", IPP_TAG_INTEGER), 0);
}

/// Sends the whole file as the job's only document.
/// @return why it was not sent; nullopt when it was
std::optional<Words> sendDocument(const Connection &connection, const std::string &queue, int job,
                                  const std::string &path, const Platform::Descriptor &file)
{
    const std::string name = path.substr(path.rfind('/') + 1);
    http_status_t status =
        cupsStartDocument(connection.http(), queue.c_str(), job, name.c_str(), CUPS_FORMAT_AUTO, 1);
    std::vector<char> block(kBlock);
    while (status == HTTP_STATUS_CONTINUE) {
        const ssize_t count = read(file.number(), block.data(), block.size());
        if (count < 0)
            return wordsForDocument(path, errno);
        if (count == 0)
            break;
        status =
            cupsWriteRequestData(connection.http(), block.data(), static_cast<std::size_t>(count));
    }
    if (status == HTTP_STATUS_CONTINUE &&
        cupsFinishDocument(connection.http(), queue.c_str()) <= IPP_STATUS_OK_CONFLICTING)
        return std::nullopt;
    return Words{kNotSent, {connection.whyItFailed()}};
}

} // namespace

Words wordsFor(JobStatus::State state)
{
    switch (state) {
    case JobStatus::State::Waiting:
        return {kWaiting};
    case JobStatus::State::Held:
        return {kHeld};
    case JobStatus::State::Printing:
        return {kPrinting};
    case JobStatus::State::Stopped:
        return {kStopped};
    case JobStatus::State::Printed:
        return {kPrinted};
    case JobStatus::State::Cancelled:
        return {kCancelled};
    case JobStatus::State::Failed:
        break;
    }
    return {kFailed};
}

std::optional<PrintJob> print(const Queue &queue, const std::string &path, const std::string &title,
                              const JobOptions &options, std::chrono::milliseconds bound,
                              Words *whyNot)
{
    const Platform::Descriptor file = openDocument(path);
    if (file.number() < 0) {
        *whyNot = wordsForDocument(path, errno);
        return std::nullopt;
    }
    auto connection = Connection::open(queue.server, bound, whyNot);
    if (!connection)
        return std::nullopt;
    const int number = createJob(*connection, queue.name, title, options, whyNot);
    if (number == 0)
        return std::nullopt;
    const PrintJob job = {queue.server, queue.name, number};
    if (auto objection = sendDocument(*connection, queue.name, number, path, file)) {
        *whyNot = std::move(*objection);
        cancel(job, bound); // nothing would ever come of it
        return std::nullopt;
    }
    return job;
}

std::optional<JobStatus> statusOf(const PrintJob &job, std::chrono::milliseconds bound,
                                  Words *whyNot)
{
    auto connection = Connection::open(job.server, bound, whyNot);
    if (!connection)
        return std::nullopt;
    ipp_t *const request = newRequest(IPP_OP_GET_JOB_ATTRIBUTES, job.queue);
    ippAddInteger(request, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "job-id", job.number);
    const Response response = connection->ask(request, whyNot);
    if (!response) {
        if (cupsLastError() == IPP_STATUS_ERROR_NOT_FOUND)
            *whyNot = {kJobIsGone};
        return std::nullopt;
    }
    const int state = ippGetInteger(ippFindAttribute(response.get(), "job-state", IPP_TAG_ENUM), 0);
    return JobStatus{stateOf(state), textOf(response, "job-printer-state-message")};
}

std::optional<Words> cancel(const PrintJob &job, std::chrono::milliseconds bound)
{
    Words whyNot;
    const auto connection = Connection::open(job.server, bound, &whyNot);
    if (!connection)
        return whyNot;
    if (cupsCancelJob2(connection->http(), job.queue.c_str(), job.number, 0) <=
        IPP_STATUS_OK_CONFLICTING)
        return std::nullopt;
    return connection->whyItFailed();
}

} // namespace Model
