#pragma once

#include "Daemon.h"
#include "Needed.h"

#include <memory>
#include <string>

// How the private host comes to know the domain of the DomainController, step by step as an
// administrator does it.

/// Lets the host ask the domain's names and Kerberos servers, and trust its certificates.
/// @param authority  the certificate authority's own certificate, a PEM file; copied to
/// kAuthorityFile
void meetDomain(const std::string &authority);
inline constexpr char kAuthorityFile[] = "/etc/ssl/certs/example-ca.pem";

/// Joins the domain, for winbind and for SSSD: a machine account and the host's keytab.
void joinDomain();

/// A member's winbind, with nothing in its caches. @return once it serves
std::unique_ptr<Daemon> startWinbind();

/// Stands first in a test, or in its SetUp(), that starts SSSD: not every system has it.
#define KL_NEEDS_SSSD() KL_NEEDS_PROGRAM("sssd", "sssd-ad and sssd-ldap")

/// A host's SSSD, with nothing in its caches.
/// @param configuration  the text of sssd.conf(5)
/// @return once it serves
std::unique_ptr<Daemon> startSSSD(const std::string &configuration);

/// The sssd.conf(5) of a member of the domain.
/// @param domainLines  further lines for the domain's section
std::string memberSSSDConfiguration(const std::string &domainLines = {});

/// The sssd.conf(5) of a host whose users are an LDAP server's.
std::string ldapSSSDConfiguration(const std::string &uri, const std::string &base);
