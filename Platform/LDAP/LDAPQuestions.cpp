#include "LDAPQuestions.h"

#include "ChildMessages.h"
#include "DistinguishedName.h"
#include "DomainName.h"
#include "LDAPConversation.h"
#include "LDAPServers.h"
#include "LoginName.h"
#include "Text.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace Platform {
namespace {

/// The naming contexts of a server, and which of them holds an entry.
class NamingContexts {
public:
    explicit NamingContexts(const std::vector<std::string> &names)
    {
        for (const std::string &name : names)
            _names.push_back(DistinguishedName::parse(name));
    }

    /// The deepest one that the entry is in; nullopt when there is none.
    std::optional<std::size_t> holding(const DistinguishedName &entry) const
    {
        std::optional<std::size_t> found;
        for (std::size_t at = 0; at < _names.size(); ++at) {
            if (_names[at] && entry.isWithin(*_names[at]) &&
                (!found || _names[at]->depth() > _names[*found]->depth()))
                found = at;
        }
        return found;
    }

private:
    std::vector<std::optional<DistinguishedName>> _names;
};

std::string userFilter(const std::string &userName)
{
    const std::string name = escapedForFilter(userName);
    return "(|(uid=" + name + ")(sAMAccountName=" + name + "))";
}

/// An entry that a search came upon.
struct FoundEntry {
    LDAPAnswer kind;     ///< one of the records
    std::string context; ///< of LDAPRecord: the index of its naming context
    std::optional<std::string> domain;
};

/// Whether a domain can be meant by that name: its own, or the short one of Windows' networks,
/// which is the first part of most.
bool isCalled(const std::optional<std::string> &domain, const std::string &name)
{
    return domain &&
           (isEqualText(*domain, name, CaseInsensitiveComparison) ||
            isEqualText(domain->substr(0, domain->find('.')), name, CaseInsensitiveComparison));
}

/// The search for a user on one server.
class UserSearch {
public:
    using EntryAction = std::function<void(const FoundEntry &)>;

    /// @param names  the server's naming contexts
    UserSearch(LDAPConversation &server, const std::vector<std::string> &names,
               const ChildMessageSender &answers)
        : _server(server), _names(names), _contexts(names), _answers(answers)
    {
    }

    /// Reports the entries of that very name. @return their number
    std::size_t reportUser(const std::string &name) const
    {
        std::size_t count = 0;
        search(name, [&](const FoundEntry &entry) {
            ++count;
            report(entry);
        });
        return count;
    }

    /// Reports the entries of the bare name: of several, those of the domain.
    void reportUserOfDomain(const QualifiedName &user) const
    {
        std::vector<FoundEntry> entries;
        search(user.name, [&](const FoundEntry &entry) { entries.push_back(entry); });
        for (const FoundEntry &entry : entries) {
            if (entries.size() == 1 || isCalled(entry.domain, user.domain))
                report(entry);
        }
    }

private:
    void report(const FoundEntry &entry) const { _answers.send(entry.kind, entry.context); }

    void search(const std::string &name, const EntryAction &action) const
    {
        if (const std::string base = _server.configuredBase(); !base.empty())
            return searchBelow(base, name, action, std::nullopt);
        for (std::size_t at = 0; at < _names.size(); ++at)
            searchBelow(_names[at], name, action, at);
    }

    /// @param searched  the context that is searched, when each is; what lies in a deeper one is
    ///                  left to the search of that
    void searchBelow(const std::string &base, const std::string &name, const EntryAction &action,
                     std::optional<std::size_t> searched) const
    {
        _server.searchBelow(base, userFilter(name), [&](const std::optional<std::string> &dn) {
            const auto parsed = dn ? DistinguishedName::parse(*dn) : std::nullopt;
            const auto context = parsed ? _contexts.holding(*parsed) : std::nullopt;
            if (!parsed)
                action({LDAPRecordUnreadable, {}, {}});
            else if (!context)
                action({LDAPRecordOutside, {}, domainOfDistinguishedName(*dn)});
            else if (!searched || context == searched)
                action({LDAPRecord, std::to_string(*context), domainOfDistinguishedName(*dn)});
        });
        _answers.send(LDAPProgress);
    }

    LDAPConversation &_server;
    const std::vector<std::string> &_names;
    NamingContexts _contexts;
    const ChildMessageSender &_answers;
};

void findUserOnServer(const ChildMessageSender &answers, const std::string &uri,
                      const std::string &userName, const LDAPSignIn &signIn)
{
    LDAPConversation server(uri);
    server.connect(signIn);
    answers.send(LDAPProgress);

    const auto names = server.valuesOfEntry("", "namingContexts");
    for (const std::string &name : names)
        answers.send(LDAPNode, urlOfEntry(uri, name));

    const UserSearch search(server, names, answers);
    if (search.reportUser(userName) > 0)
        return;
    if (const auto user = qualifiedName(userName))
        search.reportUserOfDomain(*user);
}

} // namespace

void listLDAPServers(const ChildMessageSender &answers)
{
    useOnlyHostConfiguration();
    for (const std::string &uri : configuredServers())
        answers.send(LDAPServer, uri);
}

void findLDAPUser(const ChildMessageSender &answers, const std::string &uri,
                  const std::string &userName, const LDAPSignIn &signIn)
{
    useOnlyHostConfiguration();
    try {
        findUserOnServer(answers, uri, userName, signIn);
    } catch (const LDAPFailure &failure) {
        throw LDAPFailure(inPlainWords(failure, signIn), failure.resultCode());
    }
}

void inspectLDAPNode(const ChildMessageSender &answers, const std::string &url,
                     const LDAPSignIn &signIn)
{
    useOnlyHostConfiguration();
    const std::string context = entryOfURL(url);
    LDAPConversation server(url);
    server.connect(signIn);
    answers.send(LDAPSearchBase, context);

    const auto domains = server.valuesOfEntry(context, "associatedDomain");
    if (!domains.empty())
        return answers.send(LDAPNativeDomain, domains.front());
    answers.send(LDAPProgress);

    const auto names = server.valuesOfEntry(context, "canonicalName");
    if (names.empty())
        return;
    std::string name = names.front();
    if (name.ends_with('/'))
        name.pop_back();
    answers.send(LDAPNativeDomain, name);
}

} // namespace Platform
