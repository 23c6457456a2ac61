#include "CapturedErrors.h"

#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

namespace Support {

CapturedErrors::CapturedErrors() : _before(dup(STDERR_FILENO))
{
    // A packet pipe gives back one write at a time.
    if (_before < 0 || pipe2(_ends, O_DIRECT | O_NONBLOCK | O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe for standard error");
    dup2(_ends[1], STDERR_FILENO);
}

CapturedErrors::~CapturedErrors()
{
    dup2(_before, STDERR_FILENO);
    for (const int descriptor : {_before, _ends[0], _ends[1]})
        close(descriptor);
}

std::string CapturedErrors::nextWrite()
{
    char bytes[4096];
    const ssize_t length = read(_ends[0], bytes, sizeof bytes);
    return length > 0 ? std::string(bytes, static_cast<std::size_t>(length)) : std::string();
}

std::string CapturedErrors::text()
{
    std::string all;
    for (std::string bytes = nextWrite(); !bytes.empty(); bytes = nextWrite())
        all += bytes;
    return all;
}

} // namespace Support
