#pragma once

#include "DirectoryService.h"
#include "DirectorySettings.h"
#include "LocalDirectoryService.h"
#include "SourceReport.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Platform {

/// How long the sources may keep a job waiting.
struct DirectoryTimeLimits {
    /// For each answer of a local source.
    std::chrono::milliseconds localAnswer = std::chrono::seconds(3);
    /// For connecting to an LDAP server, and for each of its answers.
    std::chrono::milliseconds serverAnswer = std::chrono::seconds(5);
    /// For the whole session, from its opening on.
    std::chrono::milliseconds session = std::chrono::seconds(10);
};

/// The directory service of a host: its sources, asked one after the other until one has a record
/// of the user. Which, and in what order, a settings file says (see DirectorySettings.h).
///
/// A source that is not there, fails or does not know the user hands on to the next; nobody is
/// asked about what another has said. Only where LDAP is the one source left do its settings'
/// faults end the session.
class DirectorySources : public DirectoryService {
public:
    /// Opens a session; asks nobody.
    /// @param settingsPath  the file need not be there
    /// @param observer      told what each source says, while it is asked
    /// @return null, with the error set, when the settings cannot be used
    static std::unique_ptr<DirectorySources> open(const std::string &settingsPath,
                                                  std::optional<KLError> *error,
                                                  const SourceObserver &observer = {},
                                                  const DirectoryTimeLimits &limits = {});

    bool openAuthenticationNode() override;
    /// Fails for a name that is not UTF-8.
    bool prepareQueryForUser(const std::string &userName, std::optional<KLError> *error) override;
    std::size_t runQuery() override;
    std::optional<DirectoryAttributes> recordDetails(std::size_t record) override;
    bool openNodeNamed(const std::string &name, std::optional<KLError> *error) override;
    std::optional<DirectoryAttributes> nodeDetails(std::optional<KLError> *error) override;

private:
    DirectorySources(const DirectoryTimeLimits &limits, LDAPSignIn signIn, SourceObserver observer);
    void addSource(DirectorySource source);
    void addLocalSource(LocalSource source);
    bool keepOnlyLDAP(std::optional<KLError> *error);
    std::unique_ptr<DirectoryService> openLDAP(std::optional<KLError> *error) const;
    std::size_t runQueryOf(std::unique_ptr<DirectoryService> &source);

    const DirectoryTimeLimits _limits;
    const std::chrono::steady_clock::time_point _deadline;
    const LDAPSignIn _signIn;
    const SourceObserver _observer;
    /// In their order. Null for LDAP that has not been opened: it is when its turn comes.
    std::vector<std::unique_ptr<DirectoryService>> _sources;
    bool _hasLocalSource = false; ///< one whose socket is there
    std::string _userName;
    DirectoryService *_answering = nullptr; ///< the one whose records they are
};

} // namespace Platform
