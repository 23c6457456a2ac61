#include "LDAPDirectoryService.h"

#include "ChildMessages.h"
#include "LDAPQuestions.h"
#include "Module.h"
#include "Text.h"

#include <charconv>

namespace Platform {
namespace {

/// Asks a question, in the child. Its module is loaded there, not in this process.
template <class... Arguments>
void ask(const std::string &symbol, const ChildMessageSender &answers, Arguments... arguments)
{
    callModule<const ChildMessageSender &, Arguments...>("KLDirectoryModule.so", symbol, answers,
                                                         arguments...);
}

std::optional<std::size_t> indexFrom(const std::string &text)
{
    std::size_t index = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), index);
    return failure == std::errc() ? std::optional(index) : std::nullopt;
}

} // namespace

LDAPDirectoryService::LDAPDirectoryService(const LDAPTimeLimits &limits, LDAPSignIn signIn,
                                           SourceObserver observer)
    : _answerLimit(limits.answer),
      _deadline(std::chrono::steady_clock::now() + limits.session),
      _signIn(std::move(signIn)),
      _observer(std::move(observer))
{
}

ChildLimits LDAPDirectoryService::childLimits() const
{
    return {.deadline = _deadline, .silence = _answerLimit};
}

std::unique_ptr<LDAPDirectoryService> LDAPDirectoryService::open(std::optional<KLError> *error,
                                                                 const LDAPTimeLimits &limits,
                                                                 LDAPSignIn signIn,
                                                                 SourceObserver observer)
{
    std::unique_ptr<LDAPDirectoryService> service(
        new LDAPDirectoryService(limits, std::move(signIn), std::move(observer)));
    const auto question = [](const ChildMessageSender &answers) {
        ask("KLListLDAPServers", answers);
    };
    const SourceTimer timer(service->_observer, "ldap");
    ChildReport report = messagesFromChild(question, service->childLimits());
    if (report.error) {
        timer.tell(report.error->description().value_or(""));
        *error = std::move(report.error);
        return nullptr;
    }
    if (report.messages.empty())
        timer.tell("is not there: ldap.conf(5) names no server");
    for (ChildMessage &message : report.messages)
        service->_servers.push_back(std::move(message.text));
    return service;
}

bool LDAPDirectoryService::openAuthenticationNode()
{
    return !_servers.empty();
}

bool LDAPDirectoryService::prepareQueryForUser(const std::string &userName,
                                               std::optional<KLError> *error)
{
    if (!isValidUTF8(userName)) {
        error->emplace("LDAPErrorDomain", 0, "The user name is not UTF-8");
        return false;
    }
    _userName = userName;
    return true;
}

std::size_t LDAPDirectoryService::runQuery()
{
    for (const std::string &uri : _servers) {
        if (askServer(uri))
            return _records.size();
    }
    return 0;
}

/// @return false when the server could not be asked or did not answer in full
bool LDAPDirectoryService::askServer(const std::string &uri)
{
    const SourceTimer timer(_observer, uri);
    const auto question = [&](const ChildMessageSender &answers) {
        ask<const std::string &, const std::string &, const LDAPSignIn &>("KLFindLDAPUser", answers,
                                                                          uri, _userName, _signIn);
    };
    ChildReport report = messagesFromChild(question, childLimits());
    if (report.error) {
        timer.tell(report.error->description().value_or(""));
        return false;
    }
    for (ChildMessage &message : report.messages)
        keepRecord(std::move(message));
    timer.tell(whatWasFound());
    return true;
}

void LDAPDirectoryService::keepRecord(ChildMessage &&message)
{
    if (message.kind == LDAPNode)
        _nodes.push_back(std::move(message.text));
    else if (message.kind == LDAPRecord)
        _records.push_back({true, indexFrom(message.text)});
    else if (message.kind == LDAPRecordOutside)
        _records.push_back({true, std::nullopt});
    else if (message.kind == LDAPRecordUnreadable)
        _records.push_back({false, std::nullopt});
}

std::string LDAPDirectoryService::whatWasFound() const
{
    if (!_records.empty())
        return "knows the user: records " + std::to_string(_records.size());
    return _signIn.method == LDAPSignIn::Method::Anonymous
               ? "does not know the user, or shows the entry to nobody who has not signed in"
               : "does not know the user";
}

std::optional<DirectoryAttributes> LDAPDirectoryService::recordDetails(std::size_t record)
{
    const auto [hasDetails, node] = _records.at(record);
    if (!hasDetails)
        return std::nullopt;
    DirectoryAttributes details;
    if (node && *node < _nodes.size())
        details.emplace(kODAttributeTypeMetaNodeLocation, std::vector{_nodes[*node]});
    return details;
}

bool LDAPDirectoryService::openNodeNamed(const std::string &name, std::optional<KLError> *error)
{
    const SourceTimer timer(_observer, name);
    const auto question = [&](const ChildMessageSender &answers) {
        ask<const std::string &, const LDAPSignIn &>("KLInspectLDAPNode", answers, name, _signIn);
    };
    ChildReport report = messagesFromChild(question, childLimits());
    _node = {{}, std::move(report.error)};
    for (ChildMessage &message : report.messages) {
        if (message.kind == LDAPSearchBase)
            _node.attributes.emplace(kODAttributeTypeLDAPSearchBaseSuffix,
                                     std::vector{std::move(message.text)});
        else if (message.kind == LDAPNativeDomain)
            _node.attributes.emplace(kNativeDomainName, std::vector{std::move(message.text)});
    }
    timer.tell(whatTheNodeSaid());
    if (!report.messages.empty())
        return true; // connected: the rest is for nodeDetails() to tell
    *error = _node.error;
    return false;
}

std::string LDAPDirectoryService::whatTheNodeSaid() const
{
    if (_node.error)
        return _node.error->description().value_or("");
    const auto domain = firstValue(_node.attributes, kNativeDomainName);
    return domain ? "holds the user; its domain is " + *domain
                  : "holds the user, and has no domain but what its name spells";
}

std::optional<DirectoryAttributes> LDAPDirectoryService::nodeDetails(std::optional<KLError> *error)
{
    if (!_node.error)
        return _node.attributes;
    *error = _node.error;
    return std::nullopt;
}

} // namespace Platform
