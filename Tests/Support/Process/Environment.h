#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace Support {

/// Sets or, with nullopt, unsets an environment variable of this process for as long as it lives;
/// then it is what it was. One thread.
class ScopedEnvironment {
public:
    ScopedEnvironment(const std::string &name, const std::optional<std::string> &value)
        : _name(name)
    {
        if (const char *before = std::getenv(name.c_str()))
            _before = before;
        assign(value);
    }
    ~ScopedEnvironment() { assign(_before); }
    ScopedEnvironment(const ScopedEnvironment &) = delete;
    ScopedEnvironment &operator=(const ScopedEnvironment &) = delete;

private:
    void assign(const std::optional<std::string> &value)
    {
        if (value)
            setenv(_name.c_str(), value->c_str(), 1);
        else
            unsetenv(_name.c_str());
    }

    std::string _name;
    std::optional<std::string> _before;
};

} // namespace Support
