#pragma once

#include <string>

namespace Support {

/// Takes standard error's place for as long as it lives and keeps one write from the next. One at a
/// time, one thread.
///
/// Holds as much as a pipe does, 64 KiB; what goes beyond is lost.
class CapturedErrors {
public:
    /// @throws std::runtime_error when there is no pipe to be had
    CapturedErrors();
    ~CapturedErrors();
    CapturedErrors(const CapturedErrors &) = delete;
    CapturedErrors &operator=(const CapturedErrors &) = delete;

    /// The bytes of the next write of up to 4 KiB (a longer one is several); empty when there was
    /// none. Each is handed out once.
    std::string nextWrite();
    /// The bytes of all writes that were not handed out yet.
    std::string text();

private:
    int _before;
    int _ends[2];
};

} // namespace Support
