#pragma once

#include "DirectoryService.h"
#include "LDAPSignIn.h"
#include "SourceReport.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Platform {

struct ChildLimits;
struct ChildMessage;

/// How long the directory may keep a job waiting.
struct LDAPTimeLimits {
    /// For connecting, and for each answer.
    std::chrono::milliseconds answer = std::chrono::seconds(5);
    /// For the whole session, from its opening on.
    std::chrono::milliseconds session = std::chrono::seconds(10);
};

/// The directory service of LDAP servers, as the host's ldap.conf(5) names them.
///
/// - The authentication node is all configured servers; the first that answers the query in full
///   is the one that counts.
/// - A user record is an entry whose `uid`, or on Active Directory `sAMAccountName`, is the user's
///   name. It is looked for below the configured base, else below every naming context of the
///   server.
/// - A record's node is the naming context that holds it, named by the LDAP URL of server and
///   context. A record outside all of them names no node; one whose name is unreadable has no
///   details.
/// - A node's native domain name is its `associatedDomain` (RFC 4524), else, on Active Directory,
///   its `canonicalName` without the slash at the end. Its search base suffix is the context's
///   name as the server writes it.
///
/// A name that carries a domain is looked for as it is, and then without the domain.
///
/// Servers are asked from child processes that end with each answer or with the time limit (see
/// ChildMessages.h). Only those load KLDirectoryModule and the client library, and read a password.
/// Errors are those of ChildReport, but for a user name that is not UTF-8.
class LDAPDirectoryService : public DirectoryService {
public:
    /// Opens a session; contacts no server.
    /// @param error     not null
    /// @param observer  told what each server says, while it is asked
    /// @return null, with the error set, when the configuration cannot be had; a configuration that
    ///         names no server is one
    static std::unique_ptr<LDAPDirectoryService> open(std::optional<KLError> *error,
                                                      const LDAPTimeLimits &limits = {},
                                                      LDAPSignIn signIn = {},
                                                      SourceObserver observer = {});

    bool openAuthenticationNode() override;
    /// Contacts no server. Fails for a name that is not UTF-8, in the domain "LDAPErrorDomain",
    /// with code 0.
    bool prepareQueryForUser(const std::string &userName, std::optional<KLError> *error) override;
    std::size_t runQuery() override;
    std::optional<DirectoryAttributes> recordDetails(std::size_t record) override;
    /// Asks all about the node at once. True as soon as its server was reached: whether it answered
    /// is nodeDetails()' to tell.
    bool openNodeNamed(const std::string &name, std::optional<KLError> *error) override;
    std::optional<DirectoryAttributes> nodeDetails(std::optional<KLError> *error) override;

private:
    struct Record {
        bool hasDetails;
        std::optional<std::size_t> node; ///< an index into _nodes
    };
    /// The answer about a node, kept from its opening until it is asked for.
    struct Node {
        DirectoryAttributes attributes;
        std::optional<KLError> error;
    };

    LDAPDirectoryService(const LDAPTimeLimits &limits, LDAPSignIn signIn, SourceObserver observer);
    ChildLimits childLimits() const;
    bool askServer(const std::string &uri);
    void keepRecord(ChildMessage &&message);
    std::string whatWasFound() const;
    std::string whatTheNodeSaid() const;

    std::chrono::milliseconds _answerLimit;
    std::chrono::steady_clock::time_point _deadline;
    LDAPSignIn _signIn;
    SourceObserver _observer;
    std::vector<std::string> _servers;
    std::string _userName;
    std::vector<std::string> _nodes;
    std::vector<Record> _records;
    Node _node;
};

} // namespace Platform
