#pragma once

#include <gtest/gtest.h>

namespace Support {

/// Hides the folders where the machine's own services have their sockets (/run, /var/lib) behind
/// empty ones, for this process and those that it starts, for good. Elsewhere nothing changes.
/// @return false, with errno set, where that is not allowed
bool hideServices();

/// A test on a host without services but the test's own; skipped, and it says so, where that
/// cannot be had.
class HiddenServicesTest : public testing::Test {
protected:
    void SetUp() override;
};

} // namespace Support
