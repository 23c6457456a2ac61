#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace Support {

/// A server, on a free port of 127.0.0.1 or a socket of the file system, that does what a script
/// says, each connection in a process of its own.
class ScriptedServer {
public:
    /// Serves one connection, in a process of its own: what it changes is not seen by the test. The
    /// socket is closed when it returns.
    /// @param number  0 for the first connection
    using Script = std::function<void(int socket, int number)>;

    /// @param mostConnections  after these the server refuses further ones
    /// @throws std::runtime_error when no port can be had
    explicit ScriptedServer(const Script &script, int mostConnections = 100);
    /// The same on a socket of the file system, which everybody may use.
    /// @param path  its folder is made when it is not there; a file of that name is replaced
    ScriptedServer(const std::string &path, const Script &script, int mostConnections = 100);
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer &) = delete;
    ScriptedServer &operator=(const ScriptedServer &) = delete;

    int port() const { return _port; }
    /// @param scheme  "ldap" or "ldaps"; the server speaks what its script speaks
    std::string uri(const std::string &scheme = "ldap") const;
    /// How many connections were made so far.
    int connections() const { return *_connections; }

private:
    void start(int listener, const Script &script, int mostConnections);

    int _port = 0;
    volatile int *_connections; ///< in memory that the server's process shares
    pid_t _process = -1;
};

// A little LDAP (RFC 4511), as a server speaks it.

struct LDAPRequest {
    int id;           ///< of the message
    int operation;    ///< the operation's tag: 0x63 for a search, 0x42 for the end
    std::string base; ///< of a search
    int scope;        ///< of a search: 0 for the base, 2 for all below it
    std::string bytes;

    /// Whether the text stands anywhere in the request: a filter's value or an attribute's name.
    bool mentions(std::string_view text) const { return bytes.find(text) != std::string::npos; }
};

/// A basic-encoding-rules element of that tag.
std::string berElement(int tag, std::string_view contents);

struct LDAPAttribute {
    std::string name;
    std::vector<std::string> values;
};

/// A search result entry, done (with a result code), and reference, as messages of a request's id.
std::string ldapEntry(int id, std::string_view dn, const std::vector<LDAPAttribute> &attributes);
std::string ldapDone(int id, int resultCode = 0, std::string_view referral = {});
std::string ldapReference(int id, std::string_view uri);

/// Sends everything. @return false when the client has gone
bool sendAll(int socket, std::string_view bytes);

/// Answers each request with the bytes that `reply` gives, until the client goes or asks to.
void serveLDAP(int socket, const std::function<std::string(const LDAPRequest &)> &reply);

} // namespace Support
