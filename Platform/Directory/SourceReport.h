#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <utility>

namespace Platform {

/// What a source of the directory service said.
struct SourceReport {
    std::string source; ///< "sssd", "winbind", "ldap", a server's URI, or a node's name
    std::string answer; ///< for an administrator; on one line, but for what comes from the network
    std::chrono::microseconds time; ///< that it took
};

/// Who wants to know that; may be empty.
using SourceObserver = std::function<void(const SourceReport &)>;

/// Measures how long a source takes, from its making on.
class SourceTimer {
public:
    /// @param observer  outlives the timer
    SourceTimer(const SourceObserver &observer, std::string source)
        : _observer(observer), _source(std::move(source))
    {
    }

    /// Tells the observer, if there is one.
    void tell(const std::string &answer) const
    {
        const auto time = std::chrono::steady_clock::now() - _begin;
        if (_observer)
            _observer(
                {_source, answer, std::chrono::duration_cast<std::chrono::microseconds>(time)});
    }

private:
    const SourceObserver &_observer;
    std::string _source;
    std::chrono::steady_clock::time_point _begin = std::chrono::steady_clock::now();
};

} // namespace Platform
