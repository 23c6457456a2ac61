#pragma once

#include <string>
#include <vector>

namespace Support {

/// Keeps what this process writes to the system's log (syslog(3)) while it lives. One at a time.
///
/// A test that is linked with it never reaches the system's own log: what is written while none
/// lives is dropped.
class SystemLogCapture {
public:
    SystemLogCapture();
    ~SystemLogCapture();
    SystemLogCapture(const SystemLogCapture &) = delete;
    SystemLogCapture &operator=(const SystemLogCapture &) = delete;

    struct Message {
        int priority;
        std::string text;
    };
    const std::vector<Message> &messages() const { return _messages; }
    /// The texts of all messages.
    std::vector<std::string> texts() const;

    /// For the stand-in of syslog(3).
    static void keep(Message message);

private:
    std::vector<Message> _messages;
};

} // namespace Support
