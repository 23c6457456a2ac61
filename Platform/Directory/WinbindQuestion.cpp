#include "WinbindQuestion.h"

#include "ChildMessages.h"
#include "DomainName.h"
#include "LocalDirectoryService.h"
#include "LoginName.h"
#include "Module.h"
#include "WinbindLibrary.h"

#include <memory>
#include <optional>
#include <stdexcept>

namespace Platform {
namespace {

using namespace WinbindLibrary;

template <class Function>
Function *function(const char *name)
{
    return reinterpret_cast<Function *>(symbolFromModule(kFile, name));
}

/// Memory of the library's.
struct Freer {
    void operator()(void *memory) const { function<FreeMemory>(kFreeMemory)(memory); }
};
template <class Value>
using Owned = std::unique_ptr<Value, Freer>;

[[noreturn]] void failWith(int failure)
{
    switch (failure) {
    case kNotAvailable:
        throw std::runtime_error("winbindd does not run, or is not a member of its domain");
    case kDomainNotFound:
    case kUnknownUser:
        throw std::runtime_error("does not know the user, or had no answer from its servers");
    default:
        throw std::runtime_error(std::string("no answer: ") +
                                 function<FailureText>(kFailureText)(failure));
    }
}

std::string text(const char *raw)
{
    return raw != nullptr ? raw : "";
}

/// How users are named here.
struct Membership {
    std::string domain; ///< the short name of the domain that the host is in
    char separator;     ///< behind a domain's name
};

Membership membership()
{
    InterfaceDetails *raw = nullptr;
    if (const int failure = function<GetInterfaceDetails>(kGetInterfaceDetails)(&raw))
        failWith(failure);
    const Owned<InterfaceDetails> details(raw);
    return {text(details->netbiosDomain), details->separator};
}

/// @return nullopt when there is none of that name
std::optional<SecurityIdentifier> identifierOfUser(const std::string &domain,
                                                   const std::string &name)
{
    SecurityIdentifier sid = {};
    int type = 0;
    const int failure =
        function<LookUpName>(kLookUpName)(domain.c_str(), name.c_str(), &sid, &type);
    if (failure == kDomainNotFound || failure == kUnknownUser)
        return std::nullopt;
    if (failure != kSuccess)
        failWith(failure);
    if (type != kUser)
        return std::nullopt;
    return sid;
}

/// The user of the domain that the name carries, else the one of the host's domain whose whole name
/// it is. A daemon that knows names with an @ takes those apart itself.
SecurityIdentifier identifierOf(const std::string &login, const Membership &member)
{
    auto user = nameBehindItsDomain(login, member.separator);
    if (!user)
        user = nameBehindItsDomain(login);
    auto sid = user ? identifierOfUser(user->domain, user->name) : std::nullopt;
    if (!sid)
        sid = identifierOfUser(member.domain, login);
    if (!sid)
        failWith(kUnknownUser);
    return *sid;
}

std::string shortDomainOf(const SecurityIdentifier &user)
{
    char *domain = nullptr;
    char *name = nullptr;
    int type = 0;
    if (const int failure = function<LookUpSID>(kLookUpSID)(&user, &domain, &name, &type))
        failWith(failure);
    const Owned<char> domainOwner(domain);
    const Owned<char> nameOwner(name);
    return text(domain);
}

std::string dnsNameOf(const std::string &shortDomain)
{
    DomainInformation *raw = nullptr;
    const auto ask = function<GetDomainInformation>(kGetDomainInformation);
    if (const int failure = ask(shortDomain.c_str(), &raw))
        failWith(failure);
    const Owned<DomainInformation> information(raw);
    const auto domain = domainName(text(information->dnsName));
    if (!domain)
        throw std::runtime_error("the user's domain " + shortDomain + " has no DNS name");
    return *domain;
}

} // namespace

void askWinbind(const ChildMessageSender &answers, const std::string &userName)
{
    const Membership member = membership();
    answers.send(LocalProgress);
    const SecurityIdentifier user = identifierOf(userName, member);
    answers.send(LocalProgress);
    const std::string shortDomain = shortDomainOf(user);
    answers.send(LocalProgress);
    answers.send(LocalDomain, dnsNameOf(shortDomain));
}

} // namespace Platform
