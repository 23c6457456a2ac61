#include "Server.h"

#include <cups/cups.h>

namespace Model {

ServerAddress ServerAddress::standard()
{
    const std::string host = cupsServer();
    return {host, host.starts_with('/') ? 0 : ippPort(), true};
}

std::string ServerAddress::name() const
{
    return port == 0 ? host : host + ":" + std::to_string(port);
}

} // namespace Model
