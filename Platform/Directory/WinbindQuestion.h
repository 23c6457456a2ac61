#pragma once

#include <string>

namespace Platform {

class ChildMessageSender;

/// Where winbindd(8) listens.
inline constexpr char kWinbindSocket[] = "/run/samba/winbindd/pipe";

/// Asks winbindd for the user and the DNS name of the user's domain, and sends it as a LocalDomain
/// message, a LocalProgress message after each of its answers before. A name that carries no domain
/// is one of the domain that the host is a member of.
///
/// To be asked in a child process (see ChildMessages.h): loads libwbclient, and may hang.
/// @throws std::runtime_error when there is no answer, in words for an administrator
void askWinbind(const ChildMessageSender &answers, const std::string &userName);

} // namespace Platform
