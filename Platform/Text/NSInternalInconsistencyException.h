#pragma once

#include <stdexcept>

/// An operation was called in a state that does not allow it: a mistake of the calling code.
/// what() is a fixed message for each operation. The operation has had no effect.
class NSInternalInconsistencyException : public std::logic_error {
public:
    using std::logic_error::logic_error;
};
