#pragma once

#include "DirectoryService.h"
#include "SourceReport.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace Platform {

class ChildMessageSender;

/// What the messages that come in answer to a local source's question mean.
enum LocalAnswer : char {
    LocalProgress = 'p', ///< one more answer is in
    LocalDomain = 'd',   ///< the user's domain, in lower case
};

/// A program of this host's that knows the users of the domain which the host belongs to.
struct LocalSource {
    std::string name;   ///< "sssd"
    std::string socket; ///< where the program listens
    /// Asked in a child process. Sends a LocalDomain message, or throws in words for an
    /// administrator.
    std::function<void(const ChildMessageSender &answers, const std::string &userName)> question;
};

/// SSSD and winbind.
LocalSource sssdSource();
LocalSource winbindSource();

/// The directory service behind a local source.
///
/// A user whom the source knows has one record, on a node that is named after source and domain,
/// "sssd:corp.example.com", and has the domain as its native domain name.
class LocalDirectoryService : public DirectoryService {
public:
    /// @param silence   how long each of the source's answers may take
    /// @param deadline  when all must be done
    LocalDirectoryService(LocalSource source, std::chrono::milliseconds silence,
                          std::chrono::steady_clock::time_point deadline,
                          SourceObserver observer = {});

    /// Whether the program's socket is there.
    bool isThere() const;

    /// The same; the observer is told when it is not.
    bool openAuthenticationNode() override;
    bool prepareQueryForUser(const std::string &userName, std::optional<KLError> *error) override;
    std::size_t runQuery() override;
    std::optional<DirectoryAttributes> recordDetails(std::size_t record) override;
    bool openNodeNamed(const std::string &name, std::optional<KLError> *error) override;
    std::optional<DirectoryAttributes> nodeDetails(std::optional<KLError> *error) override;

private:
    LocalSource _source;
    std::chrono::milliseconds _silence;
    std::chrono::steady_clock::time_point _deadline;
    SourceObserver _observer;
    std::string _userName;
    std::string _domain; ///< of the user who was found
};

} // namespace Platform
