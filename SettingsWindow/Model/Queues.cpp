#include "Queues.h"

#include <utility>

namespace Model {

QueueList queuesOfThisFilter(const ServerAddress &, std::chrono::milliseconds)
{
    return {};
}

PPDCopy::PPDCopy(std::string path, std::string bytes)
    : _path(std::move(path)), _bytes(std::move(bytes))
{
}
PPDCopy::PPDCopy(PPDCopy &&other) noexcept = default;
PPDCopy &PPDCopy::operator=(PPDCopy &&other) noexcept = default;
PPDCopy::~PPDCopy() = default;

std::optional<PPDCopy> ppdOf(const Queue &, std::chrono::milliseconds, Words *)
{
    return {};
}

bool namesThisFilter(const PPD &)
{
    return false;
}

} // namespace Model
