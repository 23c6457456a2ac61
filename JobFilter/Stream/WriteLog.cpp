#include "WriteLog.h"

#include "Text.h"

#include <algorithm>
#include <unistd.h>

namespace {

/// What fits into one line of the scheduler's, in bytes without the line feed. Behind it the
/// scheduler breaks the line, and takes what the rest begins with for a command.
constexpr std::size_t kLongestLine = 2046;
constexpr std::string_view kCutMark = "...";

void cutToOneLine(std::string &message)
{
    if (message.size() > kLongestLine)
        message.replace(Platform::lengthCutAtCharacter(message, kLongestLine - kCutMark.size()),
                        std::string::npos, kCutMark);
}

} // namespace

std::string onOneLine(std::string message)
{
    std::ranges::replace(message, '\0', ' ');
    const auto lastOther = message.find_last_not_of("\r\n");
    if (lastOther == std::string::npos)
        return message;
    for (std::size_t at = 0; at < lastOther; ++at) {
        if (message[at] == '\r' || message[at] == '\n')
            message[at] = ' ';
    }
    cutToOneLine(message);
    return message;
}

void writeLogLine(const std::string &message)
{
    const std::string line = Platform::objectFormat("%@\n", onOneLine(message));
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
}
