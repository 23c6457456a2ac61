#pragma once

#include "TemporaryFolder.h"

#include <string>
#include <sys/types.h>
#include <vector>

namespace Support {

/// One tree of a directory server.
struct DirectoryContext {
    std::string suffix; ///< the distinguished name of its root
    std::string ldif;   ///< its entries, the root first
};

/// A real LDAP server, slapd, on free ports of 127.0.0.1 with a folder of its own.
///
/// Its schema has persons (inetOrgPerson) and domains, and the attributes sAMAccountName and
/// canonicalName for entries of the class "activeDirectoryLike".
class DirectoryServer {
public:
    /// Returns once the server answers.
    /// @param certificate    PEM file; none for a server without TLS
    /// @param key            the certificate's key, a PEM file
    /// @param configuration  further slapd.conf(5) lines in front of the contexts'
    /// @throws std::runtime_error when it does not
    explicit DirectoryServer(const std::vector<DirectoryContext> &contexts,
                             const std::string &certificate = {}, const std::string &key = {},
                             const std::string &configuration = {});
    ~DirectoryServer();
    DirectoryServer(const DirectoryServer &) = delete;
    DirectoryServer &operator=(const DirectoryServer &) = delete;

    /// "ldap://127.0.0.1:" and the port.
    std::string uri() const;
    /// "ldaps://127.0.0.1:" and the port.
    std::string secureURI() const;

private:
    void writeConfiguration(const std::vector<DirectoryContext> &contexts,
                            const std::string &certificate, const std::string &key,
                            const std::string &configuration);
    void start(bool secure);
    void waitUntilItAnswers();

    TemporaryFolder _folder;
    int _port;
    int _securePort;
    pid_t _process = -1;
};

/// A certificate authority of the test's own.
class CertificateAuthority {
public:
    CertificateAuthority();

    /// The authority's own certificate, a PEM file.
    std::string certificate() const { return _folder.file("ca.pem"); }

    struct Certificate {
        std::string certificate; ///< PEM file
        std::string key;         ///< PEM file
    };
    /// Makes a server's certificate.
    /// @param alternativeNames  in openssl's form, e.g. "DNS:localhost,IP:127.0.0.1"
    /// @param days              how long it is valid from now on; below zero for one that was
    Certificate issue(const std::string &alternativeNames, int days = 1);

private:
    TemporaryFolder _folder;
    int _issued = 0;
};

} // namespace Support
