#include "Printers.h"
#include "inBackground.h"

#include <algorithm>
#include <iterator>
#include <utility>

using Model::Queue;

namespace {

constexpr std::chrono::milliseconds kLookAgain = std::chrono::seconds(10);

} // namespace

Printers::Printers(const std::vector<Model::ServerAddress> &servers, QObject *parent)
    : QObject(parent)
{
    for (const Model::ServerAddress &address : servers)
        _servers.push_back({address});
    connect(&_clock, &QTimer::timeout, this, &Printers::lookAgain);
    _clock.start(kLookAgain);
    lookAgain();
}

void Printers::lookAgain()
{
    for (Server &server : _servers)
        if (!server.isAsked)
            ask(server);
}

void Printers::ask(Server &server)
{
    server.isAsked = true;
    ::ask(
        this, [address = server.address] { return queuesOfThisFilter(address, kServerPatience); },
        [this, &server](Model::QueueList list) { take(server, std::move(list)); });
}

/// A list that is not complete takes nothing away.
void Printers::take(Server &server, Model::QueueList list)
{
    server.isAsked = false;
    server.hasAnswered = true;
    const bool isWell = !list.problem;
    if (isWell || server.list.queues.empty())
        server.list = std::move(list);
    else
        server.list.problem = std::move(list.problem);
    emit answered(server.address, isWell);
}

std::vector<Queue> Printers::all() const
{
    std::vector<Queue> queues;
    for (const Server &server : _servers)
        std::ranges::copy(server.list.queues, std::back_inserter(queues));
    return queues;
}

const Queue *Printers::find(const Model::QueueId &id) const
{
    for (const Server &server : _servers) {
        const auto found = std::ranges::find(server.list.queues, id, &Queue::id);
        if (found != server.list.queues.end())
            return &*found;
    }
    return nullptr;
}

int Printers::others() const
{
    int count = 0;
    for (const Server &server : _servers)
        count += server.list.others;
    return count;
}

std::vector<Model::Words> Printers::problems() const
{
    std::vector<Model::Words> problems;
    for (const Server &server : _servers)
        if (server.list.problem)
            problems.push_back(*server.list.problem);
    return problems;
}

bool Printers::haveAllAnswered() const
{
    return std::ranges::all_of(_servers, &Server::hasAnswered);
}
