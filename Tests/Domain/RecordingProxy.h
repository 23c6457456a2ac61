#pragma once

#include "ScriptedServer.h"
#include "TemporaryFolder.h"

#include <string>

/// Stands between LDAP clients and the domain controller, on a free port of 127.0.0.1, and keeps
/// what the clients send, byte for byte as it came over the wire.
class RecordingProxy {
public:
    RecordingProxy();

    /// "127.0.0.1:" and the port.
    std::string address() const;
    int port() const { return _server.port(); }
    /// How many clients came so far.
    int connections() const { return _server.connections(); }
    /// What they have sent.
    std::string recorded() const;

private:
    Support::TemporaryFolder _folder;
    Support::ScriptedServer _server;
};
