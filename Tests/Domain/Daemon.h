#pragma once

#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

/// A program that runs beside the test until it is ended.
class Daemon {
public:
    /// Starts it in a process group of its own; both its outputs go to a file.
    /// @param arguments  the program's path or name, and its arguments
    /// @param log        the file's path; made or emptied
    Daemon(const std::vector<std::string> &arguments, const std::string &log);
    /// Asks it to end and waits until it has, 10 seconds at most. Then what is left of its process
    /// group is killed.
    ~Daemon();
    Daemon(const Daemon &) = delete;
    Daemon &operator=(const Daemon &) = delete;

    /// Waits until it serves.
    /// @param serves  looked at again and again
    /// @throws std::runtime_error with its log when that takes more than 60 seconds
    void waitUntil(const std::function<bool()> &serves) const;

    /// Stops its process group where it stands, as if it hung; goOn() ends that.
    void hang() const;
    void goOn() const;

private:
    std::string _log;
    pid_t _process;
};
