#include "LocalDirectoryService.h"

#include "ChildMessages.h"
#include "SSSDQuestion.h"
#include "WinbindQuestion.h"

#include <algorithm>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace Platform {

LocalSource sssdSource()
{
    return {"sssd", kSSSDSocket, &askSSSD};
}

LocalSource winbindSource()
{
    return {"winbind", kWinbindSocket, &askWinbind};
}

LocalDirectoryService::LocalDirectoryService(LocalSource source, std::chrono::milliseconds silence,
                                             std::chrono::steady_clock::time_point deadline,
                                             SourceObserver observer)
    : _source(std::move(source)),
      _silence(silence),
      _deadline(deadline),
      _observer(std::move(observer))
{
}

bool LocalDirectoryService::isThere() const
{
    struct stat status = {};
    return stat(_source.socket.c_str(), &status) == 0 && S_ISSOCK(status.st_mode);
}

bool LocalDirectoryService::openAuthenticationNode()
{
    if (isThere())
        return true;
    SourceTimer(_observer, _source.name).tell("is not there: no socket " + _source.socket);
    return false;
}

bool LocalDirectoryService::prepareQueryForUser(const std::string &userName,
                                                std::optional<KLError> *)
{
    _userName = userName;
    return true;
}

std::size_t LocalDirectoryService::runQuery()
{
    const SourceTimer timer(_observer, _source.name);
    const auto question = [&](const ChildMessageSender &answers) {
        _source.question(answers, _userName);
    };
    const ChildReport report =
        messagesFromChild(question, {.deadline = _deadline, .silence = _silence});
    if (report.error) {
        timer.tell(report.error->description().value_or(""));
        return 0;
    }
    const auto domain = std::ranges::find(report.messages, LocalDomain, &ChildMessage::kind);
    if (domain == report.messages.end())
        return 0;
    _domain = domain->text;
    timer.tell("knows the user, in the domain " + _domain);
    return 1;
}

std::optional<DirectoryAttributes> LocalDirectoryService::recordDetails(std::size_t)
{
    return DirectoryAttributes{
        {std::string(kODAttributeTypeMetaNodeLocation), {_source.name + ":" + _domain}}};
}

bool LocalDirectoryService::openNodeNamed(const std::string &, std::optional<KLError> *)
{
    return true; // it has said everything
}

std::optional<DirectoryAttributes> LocalDirectoryService::nodeDetails(std::optional<KLError> *)
{
    return DirectoryAttributes{{std::string(kNativeDomainName), {_domain}}};
}

} // namespace Platform
