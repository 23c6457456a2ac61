#pragma once

#include "Needed.h"
#include "ScriptedServer.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// A little of what SSSD speaks on its socket, /var/lib/sss/pipes/nss: four of the machine's own
/// numbers (the length of all, the command, a status, nothing), then texts.
namespace Support::SSSDScript {

struct Request {
    std::uint32_t command;
    std::string body;
};

std::string bytesOf(const std::vector<std::uint32_t> &numbers);

/// @param status  0 or a system error number
std::string reply(std::uint32_t command, std::uint32_t status, const std::string &body);

/// The body about a user: how many results, and the keys and values of the first.
std::string user(const std::string &keysAndValues, std::uint32_t results = 1);
std::string keyAndValue(const std::string &key, const std::string &value);

/// Greets the client and answers each question with the bytes that `answer` makes of it.
ScriptedServer::Script answering(const std::function<std::string(const Request &)> &answer);
/// The same with a reply of that body and status.
ScriptedServer::Script answeringBody(const std::string &body, std::uint32_t status = 0);

/// Knows one user, whose entry has that distinguished name.
ScriptedServer::Script knowing(const std::string &userName, const std::string &distinguishedName);

} // namespace Support::SSSDScript

/// Stands first in a test whose program hears what a script says: it asks through this library.
#define KL_NEEDS_SSSD_LIBRARY() KL_NEEDS_LIBRARY("libsss_nss_idmap.so.0", "libsss-nss-idmap0")
