#pragma once

#include "Daemon.h"

#include <memory>
#include <string>

/// A real LDAP server of another make, 389 Directory Server, on ports of 127.0.0.1; its one tree is
/// "dc=example,dc=com". To be used on a private host, one at a time.
class DirectoryServer389 {
public:
    static constexpr char kURI[] = "ldap://127.0.0.1:3890";

    /// Makes an instance, which takes some seconds, and starts it.
    /// @param entries  LDIF, without the tree's root
    /// @throws std::runtime_error when that fails
    explicit DirectoryServer389(const std::string &entries);

    /// Changes entries as the directory's manager.
    /// @param changes  LDIF
    void modify(const std::string &changes) const;

private:
    std::unique_ptr<Daemon> _server;
};
