#pragma once

#include "Server.h"
#include "Words.h"

#include <chrono>
#include <cups/cups.h>
#include <memory>
#include <optional>
#include <string>

namespace Model {

/// What a server has answered.
using Response = std::unique_ptr<ipp_t, decltype(&ippDelete)>;

/// A connection to a server. It asks nobody for a password: a server that wants one refuses.
///
/// A server that says nothing for as long as the bound, and a second in which libcups waits for
/// nothing else, is given up. (How long the name of a host is looked up is the resolver's to say.)
/// One thread. Can be moved.
class Connection {
public:
    /// @param whyNot  says why there is none; not null
    static std::optional<Connection> open(const ServerAddress &server,
                                          std::chrono::milliseconds bound, Words *whyNot);

    /// Sends a request and waits for what the server says.
    /// @param request  consumed
    /// @param whyNot   says why it failed; not null
    /// @return null when it failed
    Response ask(ipp_t *request, Words *whyNot) const;

    /// What the server has under a path.
    /// @param whyNot  says why it is not there, and stays empty when the server has no such thing;
    ///                not null
    std::optional<std::string> fetch(const std::string &path, Words *whyNot) const;

    /// Why the last call of libcups on it failed.
    Words whyItFailed() const;

    http_t *http() const { return _http.get(); }

private:
    struct Closer {
        void operator()(http_t *http) const { httpClose(http); }
    };

    Connection(http_t *http, ServerAddress server, std::chrono::milliseconds bound);
    bool startFetching(const std::string &path) const;
    std::optional<std::string> readAll() const;

    std::unique_ptr<http_t, Closer> _http;
    ServerAddress _server;
    int _bound; ///< milliseconds
};

/// A request by the user who runs the program.
/// @param queue  that it is about, a class too; empty for none
/// @return the caller's
ipp_t *newRequest(ipp_op_t operation, const std::string &queue);

/// A text of an answer; empty without one.
std::string textOf(const Response &response, const char *attribute);

} // namespace Model
