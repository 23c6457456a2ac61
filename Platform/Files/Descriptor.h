#pragma once

#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace Platform {

/// A file descriptor with an owner: closed by the destructor. Moves, and is not copied.
class Descriptor {
public:
    /// @param number  an open descriptor, this object's from now on, or -1 for none.
    explicit Descriptor(int number = -1) : _number(number) {}
    ~Descriptor() { close(); }
    Descriptor(Descriptor &&other) noexcept : _number(std::exchange(other._number, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        close();
        _number = std::exchange(other._number, -1);
        return *this;
    }

    /// -1 when there is none. It stays this object's.
    int number() const { return _number; }

    /// Another one for what is open here; both share its position. Not inherited by children.
    /// @return none, with errno set, when there cannot be one more
    Descriptor duplicate() const { return Descriptor(fcntl(_number, F_DUPFD_CLOEXEC, 0)); }

    /// Gives it up without closing it. @return its number, the caller's now; -1 when there was none
    int release() { return std::exchange(_number, -1); }

    /// Closes it now; nothing happens when there is none. What close() reports is ignored: nothing
    /// that is written is held like this.
    void close()
    {
        if (_number >= 0)
            ::close(_number);
        _number = -1;
    }

private:
    int _number;
};

} // namespace Platform
