#pragma once

#include <optional>
#include <stdexcept>
#include <string>

namespace Platform {

/// A protected file cannot be read, or is none; what() names it and the reason.
class ProtectedFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Who may read a protected file besides its owner.
enum class Readers { Everybody, ItsGroup };

/// Reads a file that nobody but root decides about: a regular file of root's which root alone may
/// write, of at most 64 KiB. The file that is looked at is the one that is read.
/// @return nullopt when there is no file of that name
/// @throws ProtectedFileError
std::optional<std::string> readProtectedFile(const std::string &path, Readers most);

} // namespace Platform
