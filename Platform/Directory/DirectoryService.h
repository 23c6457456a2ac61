#pragma once

#include "KLError.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Platform {

/// The attributes of a record or node: a list of values under each name. A name may be missing
/// and a list may be empty.
using DirectoryAttributes = std::map<std::string, std::vector<std::string>, std::less<>>;

/// Of a record: the name of the node that holds it.
inline constexpr std::string_view kODAttributeTypeMetaNodeLocation = "MetaNodeLocation";
/// Of a node: the distinguished name below which its records lie, as the server writes it.
inline constexpr std::string_view kODAttributeTypeLDAPSearchBaseSuffix = "LDAPSearchBaseSuffix";
/// Of a node: the domain name that the directory itself gives it.
inline constexpr std::string_view kNativeDomainName = "dsAttrTypeNative:DomainName";

/// A session with the directory service that knows the host's users.
///
/// Asked in the order of its operations, each once but for recordDetails(): each relies on the
/// success of those before it. Answers come from the network; nothing about their contents is
/// promised but that their size has a limit. An operation returns when its answer is there or its
/// time is over. Places for an error are not null (KLError.h). One thread.
class DirectoryService {
public:
    virtual ~DirectoryService() = default;

    /// Opens the node on which users are authenticated.
    /// @return false when the host has none
    virtual bool openAuthenticationNode() = 0;

    /// Prepares the search for all user records whose name is `userName` (UTF-8, taken literally)
    /// without regard to letter case.
    /// @return false, with the error set, when no such search can be made
    virtual bool prepareQueryForUser(const std::string &userName,
                                     std::optional<KLError> *error) = 0;

    /// Runs the search to its end.
    /// @return how many records were found, in an order that then stands: 0 when the search failed
    ///         or could not be finished, whatever it had found until then
    virtual std::size_t runQuery() = 0;

    /// The attributes of a record.
    /// @param record  less than what runQuery() returned; std::out_of_range is thrown for others
    /// @return nullopt when they cannot be had
    virtual std::optional<DirectoryAttributes> recordDetails(std::size_t record) = 0;

    /// Opens the node of that name, as found under kODAttributeTypeMetaNodeLocation.
    /// @return false, with the error set, when it cannot be opened
    virtual bool openNodeNamed(const std::string &name, std::optional<KLError> *error) = 0;

    /// The attributes of the node opened last by openNodeNamed().
    /// @return nullopt, with the error set, when they cannot be had
    virtual std::optional<DirectoryAttributes> nodeDetails(std::optional<KLError> *error) = 0;
};

/// The first value under a name; nullopt when there is none.
inline std::optional<std::string> firstValue(const DirectoryAttributes &attributes,
                                             std::string_view name)
{
    const auto found = attributes.find(name);
    if (found == attributes.end() || found->second.empty())
        return std::nullopt;
    return found->second.front();
}

} // namespace Platform
