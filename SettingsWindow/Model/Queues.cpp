#include "Queues.h"

#include "Connection.h"
#include "SettingKeys.h"
#include "optionName.h"
#include "queueFields.h"
#include "sentences.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>
#include <utility>

namespace Model {
namespace {

constexpr const char *kWanted[] = {
    "printer-name",  "printer-info",          "printer-location",      "printer-make-and-model",
    "printer-state", "printer-state-message", "printer-state-reasons", "printer-is-accepting-jobs",
    "printer-type",  "printer-defaults"};

constexpr std::string_view kDefaultEnding = "-default";

std::string firstText(ipp_attribute_t *attribute)
{
    const char *text = ippGetString(attribute, 0, nullptr);
    return text != nullptr ? text : "";
}

//
// What a server says of a queue
//

Queue::State stateOf(int state)
{
    switch (state) {
    case IPP_PSTATE_PROCESSING:
        return Queue::State::Printing;
    case IPP_PSTATE_STOPPED:
        return Queue::State::Stopped;
    default:
        return Queue::State::Idle;
    }
}

/// Whether a default of the queue says something of the fields, under a key of ours or in IPP's
/// words for the PPD's options.
bool isOfFields(const std::string &option)
{
    return findSettingKey(optionName(option).key) != nullptr || option == "media" ||
           option == "sides";
}

/// Adds what a line "OPTION-default" of the server says.
void learnDefault(JobOptions &defaults, const std::string &name, ipp_attribute_t *attribute)
{
    const std::string option = name.substr(0, name.size() - kDefaultEnding.size());
    if (!isOfFields(option))
        return;
    std::string value(ippAttributeString(attribute, nullptr, 0), '\0');
    ippAttributeString(attribute, value.data(), value.size() + 1);
    defaults.emplace_back(option, std::move(value));
}

void learn(Queue &queue, ipp_attribute_t *attribute)
{
    const std::string name = ippGetName(attribute);
    if (name == "printer-name")
        queue.name = firstText(attribute);
    else if (name == "printer-info")
        queue.description = firstText(attribute);
    else if (name == "printer-location")
        queue.location = firstText(attribute);
    else if (name == "printer-make-and-model")
        queue.model = firstText(attribute);
    else if (name == "printer-state-message")
        queue.stateWords = firstText(attribute);
    else if (name == "printer-state")
        queue.state = stateOf(ippGetInteger(attribute, 0));
    else if (name == "printer-is-accepting-jobs")
        queue.acceptsJobs = ippGetBoolean(attribute, 0) != 0;
    else if (name == "printer-type")
        queue.isClass = (ippGetInteger(attribute, 0) & CUPS_PRINTER_CLASS) != 0;
    else if (name.ends_with(kDefaultEnding))
        learnDefault(queue.defaults, name, attribute);
}

std::vector<Queue> queuesIn(const Response &response, const ServerAddress &server)
{
    std::vector<Queue> queues;
    bool isInside = false;
    for (ipp_attribute_t *attribute = ippFirstAttribute(response.get()); attribute != nullptr;
         attribute = ippNextAttribute(response.get())) {
        const bool isOfPrinter =
            ippGetGroupTag(attribute) == IPP_TAG_PRINTER && ippGetName(attribute) != nullptr;
        if (isOfPrinter && !isInside)
            queues.emplace_back().server = server;
        if (isOfPrinter)
            learn(queues.back(), attribute);
        isInside = isOfPrinter;
    }
    std::erase_if(queues, [](const Queue &queue) { return queue.name.empty(); });
    return queues;
}

//
// Its PPD
//

/// Why the file is no PPD of a queue of this filter; nullopt when it is one.
std::optional<Words> objectionToPPD(const std::string &path, const std::string &queue)
{
    std::string whyNot;
    const auto ppd = PPD::open(path, &whyNot);
    if (!ppd)
        return Words{kNoDriver, {asTheyAre(queue), asTheyAre(whyNot)}};
    if (!namesThisFilter(*ppd))
        return Words{kOtherDriver, {asTheyAre(queue)}};
    return std::nullopt;
}

std::optional<std::string> fetchPPD(const Connection &connection, const Queue &queue, Words *whyNot)
{
    const std::string folder = queue.isClass ? "/classes/" : "/printers/";
    return connection.fetch(folder + queue.name + ".ppd", whyNot);
}

/// Whether the queue is one of this filter.
/// @param problem  says why the server does not say, else stays as it is
bool isOfThisFilter(const Connection &connection, const Queue &queue, std::optional<Words> &problem)
{
    Words whyNot;
    auto bytes = fetchPPD(connection, queue, &whyNot);
    if (!bytes) {
        if (!whyNot.isEmpty())
            problem = whyNot;
        return false;
    }
    const auto copy = PPDCopy::of(std::move(*bytes));
    if (!copy)
        problem = {kNoTemporaryFile, {asTheyAre(std::strerror(errno))}};
    return copy && !objectionToPPD(copy->path(), queue.name);
}

void markDefault(std::vector<Queue> &queues, Connection &connection)
{
    const char *const name = cupsGetDefault2(connection.http());
    if (name == nullptr)
        return;
    // The user's own default may be an instance: "office/confidential".
    const std::string_view whole = name;
    const auto found = std::ranges::find(queues, whole.substr(0, whole.find('/')), &Queue::name);
    if (found != queues.end())
        found->isDefault = true;
}

} // namespace

QueueList queuesOfThisFilter(const ServerAddress &server, std::chrono::milliseconds bound)
{
    Words whyNot;
    auto connection = Connection::open(server, bound, &whyNot);
    if (!connection)
        return {.queues = {}, .problem = whyNot};
    ipp_t *const request = newRequest(IPP_OP_CUPS_GET_PRINTERS, {});
    ippAddStrings(request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes",
                  std::size(kWanted), nullptr, kWanted);
    const Response response = connection->ask(request, &whyNot);
    if (!response) {
        const bool hasNone = cupsLastError() == IPP_STATUS_ERROR_NOT_FOUND;
        return {.queues = {}, .problem = hasNone ? std::nullopt : std::optional(whyNot)};
    }
    QueueList list;
    for (Queue &queue : queuesIn(response, server)) {
        if (!list.problem && isOfThisFilter(*connection, queue, list.problem))
            list.queues.push_back(std::move(queue));
        else
            ++list.others;
    }
    if (!list.problem)
        markDefault(list.queues, *connection);
    std::ranges::sort(list.queues, {}, &Queue::name);
    return list;
}

//
// Copies of PPDs
//

std::optional<PPDCopy> PPDCopy::of(std::string bytes)
{
    Platform::Stream file = Platform::openTemporary();
    if (!file || std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size() ||
        std::fflush(file.get()) != 0)
        return std::nullopt;
    return PPDCopy(std::move(file), std::move(bytes));
}

std::string PPDCopy::path() const
{
    return "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(fileno(_file.get()));
}

std::optional<PPDCopy> ppdOf(const Queue &queue, std::chrono::milliseconds bound, Words *whyNot)
{
    *whyNot = {};
    auto connection = Connection::open(queue.server, bound, whyNot);
    auto bytes = connection ? fetchPPD(*connection, queue, whyNot) : std::nullopt;
    if (!bytes) {
        if (whyNot->isEmpty())
            *whyNot = {kQueueIsGone, {asTheyAre(queue.name)}};
        return std::nullopt;
    }
    auto copy = PPDCopy::of(std::move(*bytes));
    if (!copy) {
        *whyNot = {kNoTemporaryFile, {asTheyAre(std::strerror(errno))}};
        return std::nullopt;
    }
    if (auto objection = objectionToPPD(copy->path(), queue.name)) {
        *whyNot = std::move(*objection);
        return std::nullopt;
    }
    return copy;
}

} // namespace Model
