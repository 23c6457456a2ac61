#pragma once

#include "Daemon.h"
#include "DirectoryServer.h"

#include <memory>
#include <string>

/// A real Active Directory domain controller, Samba's, of the domain "corp.example.test" (CORP), on
/// a host of its own that a link joins to the test's. To be used on a private host (see there).
///
/// Its users, whose names are theirs in this letter case:
///   Anna    deep below organizational units with commas and umlauts in their names
///   O'Brien an apostrophe in the login name too
///   Jürgen  a login name beyond ASCII
/// and a service account with a password, kServiceName.
/// It refuses anonymous clients, and a password over a connection in the clear.
class DomainController {
public:
    static constexpr char kHost[] = "dc.corp.example.test";
    static constexpr char kAddress[] = "10.53.0.1"; ///< it serves the domain's names, too
    static constexpr char kDomain[] = "corp.example.test";
    static constexpr char kAdministratorPassword[] = "Admin-pass-1";
    static constexpr char kServiceName[] = "svc-queue";
    static constexpr char kServicePassword[] = "Service-pass-1";

    /// Provisions it, which takes some seconds, and starts it.
    /// @param certificate  of kHost
    /// @throws std::runtime_error when that fails
    explicit DomainController(const Support::CertificateAuthority::Certificate &certificate);
    ~DomainController();
    DomainController(const DomainController &) = delete;
    DomainController &operator=(const DomainController &) = delete;

    /// Ends it; start() brings it back, with everything that it knew, and waits until it serves.
    void stop();
    void start();

    /// Stops all of its processes where they stand, as if they hung; goOn() ends that.
    void hang() const;
    void goOn() const;

    /// Takes the link to its host down: what is sent to it is lost and nothing comes back.
    void cutLink() const;
    void mendLink() const;

    /// Whether anonymous clients may read the directory.
    void allowAnonymousReading(bool allowed) const;

    /// Writes the service account's keys into a file, as an administrator does for a service.
    void exportKeytab(const std::string &path) const;

private:
    std::unique_ptr<Daemon> _samba;
};
