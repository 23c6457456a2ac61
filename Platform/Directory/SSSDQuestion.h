#pragma once

#include <string>

namespace Platform {

class ChildMessageSender;

/// Where sssd(8) listens.
inline constexpr char kSSSDSocket[] = "/var/lib/sss/pipes/nss";

/// Asks SSSD for the user's entry in the directory that it has it from, and sends the domain which
/// that entry lies in as a LocalDomain message. The name may carry a domain, as SSSD's settings
/// have it.
///
/// To be asked in a child process (see ChildMessages.h): loads libsss_nss_idmap, and may hang.
/// @throws std::runtime_error when there is no answer, in words for an administrator
void askSSSD(const ChildMessageSender &answers, const std::string &userName);

} // namespace Platform
