#include "LDAPQuestions.h"

#include "ChildMessages.h"
#include "DistinguishedName.h"
#include "LDAPConversation.h"

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

/// Reports the entry that a search came upon.
/// @param searched  the context that was searched, when each is; what lies in a deeper one is left
///                  to the search of that
void reportRecord(const ChildMessageSender &answers, const std::optional<std::string> &dn,
                  const NamingContexts &contexts, std::optional<std::size_t> searched)
{
    const auto name = dn ? DistinguishedName::parse(*dn) : std::nullopt;
    const auto context = name ? contexts.holding(*name) : std::nullopt;
    if (!name)
        answers.send(LDAPRecordUnreadable);
    else if (!context)
        answers.send(LDAPRecordOutside);
    else if (!searched || context == searched)
        answers.send(LDAPRecord, std::to_string(*context));
}

} // namespace

void listLDAPServers(const ChildMessageSender &answers)
{
    useOnlyHostConfiguration();
    for (const std::string &uri : configuredServers())
        answers.send(LDAPServer, uri);
}

void findLDAPUser(const ChildMessageSender &answers, const std::string &uri,
                  const std::string &userName)
{
    useOnlyHostConfiguration();
    LDAPConversation server(uri);
    server.connect();
    answers.send(LDAPProgress);

    const auto names = server.valuesOfEntry("", "namingContexts");
    for (const std::string &name : names)
        answers.send(LDAPNode, urlOfEntry(uri, name));

    const NamingContexts contexts(names);
    const auto search = [&](const std::string &base, std::optional<std::size_t> searched) {
        server.searchBelow(base, userFilter(userName),
                           [&](const auto &dn) { reportRecord(answers, dn, contexts, searched); });
        answers.send(LDAPProgress);
    };
    if (const std::string base = server.configuredBase(); !base.empty())
        return search(base, std::nullopt);
    for (std::size_t at = 0; at < names.size(); ++at)
        search(names[at], at);
}

void inspectLDAPNode(const ChildMessageSender &answers, const std::string &url)
{
    useOnlyHostConfiguration();
    const std::string context = entryOfURL(url);
    LDAPConversation server(url);
    server.connect();
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
