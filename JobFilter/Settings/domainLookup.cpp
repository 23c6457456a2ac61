#include "domainLookup.h"

#include "DirectorySources.h"
#include "KLPrintOptions.h"
#include "ObjectFormat.h"
#include "Text.h"
#include "WriteLog.h"

#include <array>
#include <cstdlib>
#include <unistd.h>

using Platform::DirectoryAttributes;
using Platform::DirectoryService;
using Platform::firstValue;

namespace {

std::optional<std::string> domainOfHost()
{
    std::array<char, 257> buffer = {}; // one more than asked for: always terminated
    const int result = getdomainname(buffer.data(), 256);
    return domainFromHostAnswer(result, buffer.data());
}

/// What "%@" prints of an error that may be absent.
std::optional<std::string> text(const std::optional<KLError> &error)
{
    return error ? error->description() : std::nullopt;
}

/// Finds the user's records. @return their number; nullopt, logged, when they cannot be asked for
std::optional<std::size_t> findRecords(DirectoryService &directory, const std::string &userName,
                                       const std::optional<KLError> &sessionError)
{
    if (!directory.openAuthenticationNode()) {
        // Opening by type reports no error of its own. On purpose the line carries the session's,
        // which is absent here and prints as "(null)".
        WriteLog("DEBUG: Unable to obtain authentication node: %@", text(sessionError));
        return std::nullopt;
    }
    std::optional<KLError> error;
    if (!directory.prepareQueryForUser(userName, &error)) {
        WriteLog("DEBUG: Unable to query authentication node: %@", text(error));
        return std::nullopt;
    }
    const std::size_t count = directory.runQuery();
    WriteLog("INFO: Found %lu records for user %@", count, userName);
    return count;
}

/// The name of the node that holds the user.
std::optional<std::string> locationOfRecords(DirectoryService &directory, std::size_t count)
{
    std::optional<std::string> location;
    for (std::size_t record = 0; record < count; ++record) {
        // On purpose the last record with details decides, also when it names no node and so
        // clears what an earlier one named (LastRecordWithoutLocationClearsAnEarlierOne).
        if (const auto details = directory.recordDetails(record))
            location = firstValue(*details, Platform::kODAttributeTypeMetaNodeLocation);
    }
    if (!location)
        WriteLog("DEBUG: None of the authentication directory services can be queried");
    return location;
}

std::optional<DirectoryAttributes> inspectNode(DirectoryService &directory,
                                               const std::string &location)
{
    WriteLog("DEBUG: Using %@ as the authorisation node", location);
    std::optional<KLError> error;
    if (!directory.openNodeNamed(location, &error)) {
        WriteLog("ERROR: Unable to inspect directory node %@: %@", location, text(error));
        return std::nullopt;
    }
    auto details = directory.nodeDetails(&error);
    if (!details)
        WriteLog("DEBUG: Unable to inspect attributes of directory node %@: %@", location,
                 text(error));
    return details;
}

std::string domainOfNode(const DirectoryAttributes &node)
{
    if (auto domain = firstValue(node, Platform::kNativeDomainName))
        return *domain;
    const auto searchBase = firstValue(node, Platform::kODAttributeTypeLDAPSearchBaseSuffix);
    if (!searchBase) {
        WriteLog("DEBUG: Unable to query the domain name from the authentication directory "
                 "service node");
        return {};
    }
    const auto domain = domainFromSearchBase(*searchBase);
    if (!domain)
        WriteLog("DEBUG: Unable to parse LDAP search base: %@", *searchBase);
    return domain.value_or(std::string());
}

std::optional<std::string> userNameOfJob(const KLPrintOptions &options)
{
    const auto userName = options.valueForKey("com.kalmira.username");
    return userName ? std::optional(Platform::description(*userName)) : std::nullopt;
}

} // namespace

std::optional<std::string> domainForUser(const KLPrintOptions &options)
{
    if (!options.valueForKeyIsEqualToString("UseOpenDirectoryForAuthentication", "True"))
        return domainOfHost();
    return domainFromDirectory(userNameOfJob(options), [](std::optional<KLError> *error) {
        return openDirectoryOfHost(error);
    });
}

std::unique_ptr<DirectoryService> openDirectoryOfHost(std::optional<KLError> *error,
                                                      const Platform::SourceObserver &observer)
{
    const char *const otherSettings = std::getenv("JOBFILTER_CONF");
    return Platform::DirectorySources::open(
        otherSettings != nullptr ? otherSettings : KL_SETTINGS_FILE, error, observer);
}

std::optional<std::string> domainFromHostAnswer(int result, std::string_view buffer)
{
    if (result <= 0)
        return std::string();
    if (!Platform::isValidUTF8(buffer))
        return std::nullopt;
    return std::string(buffer);
}

std::string domainFromDirectory(const std::optional<std::string> &userName,
                                const DirectoryServiceOpener &openDirectory)
{
    if (!userName) {
        WriteLog("DEBUG: Unable to get username, possible internal inconsistency error");
        return {};
    }
    std::optional<KLError> error;
    const auto directory = openDirectory(&error);
    if (!directory) {
        WriteLog("DEBUG: Unable to create directory services session: %@", text(error));
        return {};
    }
    const auto count = findRecords(*directory, *userName, error);
    if (!count)
        return {};
    const auto location = locationOfRecords(*directory, *count);
    if (!location)
        return {};
    const auto node = inspectNode(*directory, *location);
    return node ? domainOfNode(*node) : std::string();
}

std::optional<std::string> domainFromSearchBase(std::string_view searchBase)
{
    static constexpr std::string_view kDomainComponent = "dc=";
    std::string domain;
    std::string_view separator;
    for (bool more = true; more;) {
        const auto comma = searchBase.find(',');
        const std::string_view piece = searchBase.substr(0, comma);
        if (!piece.starts_with(kDomainComponent))
            return std::nullopt;
        domain.append(separator).append(piece.substr(kDomainComponent.size()));
        separator = ".";
        more = comma != std::string_view::npos;
        searchBase.remove_prefix(more ? comma + 1 : 0);
    }
    return domain;
}
