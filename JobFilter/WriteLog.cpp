#include "WriteLog.h"

#include <unistd.h>

std::string onOneLine(std::string message)
{
    const auto lastOther = message.find_last_not_of("\r\n");
    if (lastOther == std::string::npos)
        return message;
    for (std::size_t at = 0; at < lastOther; ++at) {
        if (message[at] == '\r' || message[at] == '\n')
            message[at] = ' ';
    }
    return message;
}

void writeLogLine(const std::string &message)
{
    const std::string line = Platform::objectFormat("%@\n", onOneLine(message));
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
}
