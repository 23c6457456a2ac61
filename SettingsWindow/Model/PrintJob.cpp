#include "PrintJob.h"

namespace Model {

Words wordsFor(JobStatus::State)
{
    return {};
}
std::optional<PrintJob> print(const Queue &, const std::string &, const std::string &,
                              const JobOptions &, std::chrono::milliseconds, Words *)
{
    return {};
}
std::optional<JobStatus> statusOf(const PrintJob &, std::chrono::milliseconds, Words *)
{
    return {};
}
std::optional<Words> cancel(const PrintJob &, std::chrono::milliseconds)
{
    return {};
}

} // namespace Model
