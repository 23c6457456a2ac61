#pragma once

#include "ScriptedServer.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>

/// A little of what winbindd speaks on its socket, /run/samba/winbindd/pipe: requests and answers
/// of a fixed size each, a length and a number first, then texts at fixed places.
namespace Support::WinbindScript {

inline constexpr std::size_t kAnswerSize = 4008;

/// What the daemon calls its language in its greeting: 32 or, of newer Samba, 33. The client
/// library listens to no other than its own; which that is, is tried out once, at the daemon's
/// socket.
std::uint32_t protocol();

enum Command : std::uint32_t {
    Greeting = 0,
    LookUpSID = 21,
    LookUpName = 22,
    Separator = 33,
    DomainOfHost = 34,
    DomainInformation = 35,
};

/// The places of an answer's texts.
inline constexpr std::size_t kFirstText = 0;
inline constexpr std::size_t kSecondText = 256;
inline constexpr std::size_t kThirdText = 512;

struct Answer {
    bool ok = true;
    std::map<std::size_t, std::string> texts = {};     ///< by their places
    std::map<std::size_t, std::uint32_t> numbers = {}; ///< likewise
};

std::string bytesOf(const Answer &answer);

struct Request {
    std::uint32_t command;
    std::string bytes;

    /// Whether the text stands in it, from its beginning to its end.
    bool holds(const std::string &text) const
    {
        return bytes.find('\0' + text + '\0') != std::string::npos;
    }
};

/// Answers each request.
ScriptedServer::Script answering(const std::function<Answer(const Request &)> &answer);

/// What a daemon of the domain CORP (corp.test) answers, which knows anna of CORP, berta of SALES
/// (sales.test), and a group, printers.
Answer answer(const Request &request);

} // namespace Support::WinbindScript
